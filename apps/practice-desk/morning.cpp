// A morning at the desk, played with real mouse and key events on the window
// when no person sits in front of it: the day on screen, a patient found, a
// booking from the context menu, a drag to the other column, a status, the
// week of a resource and the printout of the day. Each step leaves a
// screenshot in the folder given.

#include "morning.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QMenu>
#include <QPainter>
#include <QPdfWriter>
#include <QTest>
#include <QTimer>

#include <QuorvaneScheduler/qt/day_view_widget.h>

#include <cstdio>

using namespace quorvane;

namespace practice {

namespace {
QPoint toPoint(std::pair<int, int> p) { return {p.first, p.second}; }
} // namespace

DeskUser::DeskUser(DeskWindow& desk) : desk_(desk) {}

void DeskUser::settle() {
    for (int i = 0; i < 5; ++i)
        QApplication::processEvents();
}

void DeskUser::clickAt(int column, OleDate time, Qt::MouseButton button) {
    DayViewWidget& w = *desk_.scheduler().dayView(column);
    QTest::mouseClick(&w, button, {}, w.fromView(toPoint(*w.view().pointOfTime(time))));
    settle();
}

void DeskUser::clickOn(int column, std::int32_t key, Qt::MouseButton button) {
    DayViewWidget& w = *desk_.scheduler().dayView(column);
    QTest::mouseClick(&w, button, {}, w.fromView(toPoint(*w.view().pointOfAppointment(key))));
    settle();
}

void DeskUser::pick(const char* item) {
    QMenu* menu = desk_.scheduler().openMenu();
    if (!menu) return;
    if (auto* action = menu->findChild<QAction*>(item)) action->trigger();
    menu->close();
    settle();
}

void DeskUser::drag(int fromColumn, std::int32_t key, int toColumn, OleDate time,
                    const std::function<void()>& beforeDrop) {
    DayViewWidget& from = *desk_.scheduler().dayView(fromColumn);
    DayViewWidget& to = *desk_.scheduler().dayView(toColumn);
    const QPoint start = from.fromView(toPoint(*from.view().pointOfAppointment(key)));
    const QPoint target = to.mapTo(&desk_, to.fromView(toPoint(*to.view().pointOfTime(time))));
    QTest::mousePress(&from, Qt::LeftButton, {}, start);
    const QPoint startInWindow = from.mapTo(&desk_, start);
    for (int step = 1; step <= 6; ++step) {
        const QPoint p = startInWindow + (target - startInWindow) * step / 6;
        QMouseEvent move(QEvent::MouseMove, from.mapFrom(&desk_, p), from.mapToGlobal(from.mapFrom(&desk_, p)),
                         Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&from, &move);
    }
    settle();
    if (beforeDrop) beforeDrop();
    QTest::mouseRelease(&from, Qt::LeftButton, {}, from.mapFrom(&desk_, target));
    settle();
}

void DeskUser::choose(const char* list, int steps) {
    auto* box = desk_.scheduler().findChild<QWidget*>(list);
    for (int i = 0; i < steps; ++i)
        QTest::keyClick(box, Qt::Key_Down);
    settle();
}

void DeskUser::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    // A window manager gives the window back its focus when its dialog
    // closes; the offscreen platform has none to do it.
    if (!QApplication::focusWidget() && !QApplication::activeModalWidget()) {
        desk_.activateWindow();
        (void)QTest::qWaitForWindowActive(&desk_);
    }
    if (QWidget* focus = QApplication::focusWidget()) QTest::keyClick(focus, key, modifiers);
    settle();
}

bool DeskUser::tabTo(int column) {
    QWidget* grid = desk_.scheduler().dayView(column);
    for (int i = 0; i < 80 && QApplication::focusWidget() != grid; ++i) {
        key(Qt::Key_Tab);
    }
    return QApplication::focusWidget() == grid;
}

bool DeskUser::pickByKeys(const char* item) {
    QMenu* menu = desk_.scheduler().openMenu();
    for (int i = 0; menu && i < 60; ++i) {
        QAction* active = menu->activeAction();
        if (active && active->objectName() == QLatin1String(item)) {
            QTest::keyClick(menu, Qt::Key_Return);
            settle();
            return true;
        }
        QMenu* sub = active ? active->menu() : nullptr;
        if (sub && sub->findChild<QAction*>(item)) {
            QTest::keyClick(menu, Qt::Key_Right);
            settle();
            menu = sub;
            continue;
        }
        QTest::keyClick(menu, Qt::Key_Down);
    }
    return false;
}

namespace {

class Morning : DeskUser {
public:
    Morning(DeskWindow& desk, QString folder) : DeskUser(desk), desk_(desk), folder_(std::move(folder)) {}

    QStringList run() {
        QDir().mkpath(folder_);
        desk_.setUnattended(true);
        desk_.setPrintFolder(folder_);
        desk_.show();
        settle();
        shot("day.png");

        // The front desk looks a patient up (Ctrl+O) and books her into a free
        // slot of Dr. Ortiz's column from the context menu.
        desk_.setNextPatient("5503");
        QTest::keyClick(desk_.scheduler().findChild<QWidget*>("txtAppChiefComplaint"), Qt::Key_O,
                        Qt::ControlModifier);
        settle();
        clickAt(0, makeTime(11, 0, 0), Qt::LeftButton);
        clickAt(0, makeTime(11, 0, 0), Qt::RightButton);
        shot("menu.png");
        pick("mnoSchedulePatientGeneral");

        // Dr. Ortiz's first patient is moved to Dr. Park's afternoon.
        const std::int32_t key = desk_.control().GetDayView("1")->appointmentSet().FirstAppointment()->Key();
        drag(0, key, 1, makeTime(11, 0, 0), [this] { shot("drag.png"); });

        // The patient in Dr. Park's column checks in.
        const AppointmentRef moved = desk_.control().GetDayView("2")->appointmentSet().items().back();
        clickOn(1, moved->Key(), Qt::RightButton);
        pick("mnoCheckIn");

        // The week of Dr. Ortiz, read and closed.
        clickAt(0, makeTime(11, 30, 0), Qt::RightButton);
        QTimer::singleShot(200, [this] {
            if (QWidget* week = QApplication::activeModalWidget()) {
                week->grab().save(QDir(folder_).filePath("week.png"));
                shots_ << QDir(folder_).filePath("week.png");
                week->close();
            }
        });
        pick("mnoWeekView");

        // The printout of Dr. Ortiz's day.
        clickAt(0, makeTime(11, 30, 0), Qt::RightButton);
        pick("mnoPrint");
        printoutShot();
        return shots_;
    }

private:
    // The window, with a context menu that stands open drawn where it stands.
    void shot(const char* name) {
        QImage image = desk_.grab().toImage();
        if (QMenu* menu = desk_.scheduler().openMenu()) {
            QPainter p(&image);
            p.drawPixmap(desk_.mapFromGlobal(menu->pos()), menu->grab());
        }
        const QString path = QDir(folder_).filePath(name);
        image.save(path);
        shots_ << path;
    }
    // The printout's first page, drawn as the PDF draws it.
    void printoutShot() {
        const DeskWindow::Printout& printed = desk_.lastPrintout();
        if (printed.path.isEmpty()) return;
        QImage page(1240, 1754, QImage::Format_RGB32);
        QPainter painter(&page);
        paintPrintout(painter, QRectF(0, 0, page.width(), page.height()), printed.resourceName, printed.info,
                      desk_.store().appointments(printed.resource, printed.day));
        painter.end();
        const QString path = QDir(folder_).filePath("printout.png");
        page.save(path);
        shots_ << path << printed.path;
    }

    DeskWindow& desk_;
    QString folder_;
    QStringList shots_;
};

} // namespace

QStringList playMorning(DeskWindow& desk, const QString& folder) { return Morning(desk, folder).run(); }

} // namespace practice
