#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include <QApplication>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    quorvane::SchedulerWidget window;
    return window.control().ResourceNumber() == "1" ? 0 : 1;
}
