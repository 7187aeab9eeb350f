// The window's hot paths, offscreen: painting a full schedule (ten columns of
// 300 appointments and 101 templates each), and one step of a drag across
// columns (the move's handling and the repaint of the two columns it touches).
// Both have to stay under 8 ms, half a frame at 60 Hz. Each is also printed as
// a ratio to painting ten empty columns.

#include <QuorvaneScheduler/qt/day_view_widget.h>
#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>

namespace {

using namespace quorvane;

constexpr int kColumnsShown = 10;
constexpr int kAppointments = 300;

std::string joined(int count, const std::function<std::string(int)>& entry) {
    std::string s;
    for (int i = 1; i <= count; ++i)
        s += (i > 1 ? "~~" : "") + entry(i);
    return s;
}

// A group of ten columns, five on screen, each loaded with its day.
std::unique_ptr<SchedulerWidget> schedule(bool full) {
    auto w = std::make_unique<SchedulerWidget>();
    ctlScheduler& c = w->control();
    c.platform().clock.setToday(makeDate(2008, 1, 15));
    c.ccScheduled = 16761024, c.ccConfirmed = 65535, c.ccCheckedIn = 65280;
    c.ccCheckedOut = 12632256, c.ccNoShow = 255, c.ccCancelled = 8421504;
    w->resize(1000, 700);
    w->show();
    c.setResourceGroupViews("10~Main Office~5~10");
    c.setResourceGroupDefaults(joined(kColumnsShown, [](int i) {
        return "10~Main Office~" + std::to_string(500 + i) + "~" + std::to_string(i);
    }));
    c.setResourceGroups(joined(kColumnsShown, [](int i) {
        return "10~Main Office~Y~" + std::to_string(500 + i) + "~Dr. " + std::to_string(i) +
               "~Providers~Dentists";
    }));
    const char* statuses[] = {"Scheduled", "Confirmed", "Checked-In", "Checked-Out", "No-Show", "Cancelled"};
    for (int col = 1; full && col <= kColumnsShown; ++col) {
        const std::string number = std::to_string(col);
        c.RefreshTimeslots(number);
        for (int t = 0; t < kTemplatesPerColumn; ++t) {
            const OleDate start = makeDateTime(2008, 1, 15, 8 + t * 7 / 60, t * 7 % 60, 0);
            c.AddResourceTemplate(start, addMinutes(start, 10), "Block", t % 2 ? "#C0C0C0" : "#FFE0A0",
                                  number, "Y");
        }
        // Spread over the rows shown, so that they overlap in lanes.
        for (int a = 0; a < kAppointments; ++a) {
            const int minute = 8 * 60 + (a * 23) % 690;
            const OleDate start = makeDateTime(2008, 1, 15, minute / 60, minute % 60, 0);
            c.AddAppointment(number, "Patient " + std::to_string(a), start, addMinutes(start, 30),
                             std::to_string(1000 + a), statuses[a % 6], "", std::to_string(5000 + a));
        }
    }
    w->refresh();
    return w;
}

void paintAll(SchedulerWidget& w, std::vector<QImage>& images) {
    for (int i = 0; i < kColumnsShown; ++i) {
        DayViewWidget* v = w.dayView(i);
        QImage& image = images[static_cast<std::size_t>(i)];
        if (image.size() != v->size()) image = QImage(v->size(), QImage::Format_ARGB32_Premultiplied);
        v->render(&image);
    }
}

void paintSchedule(benchmark::State& state, bool full) {
    const auto w = schedule(full);
    std::vector<QImage> images(kColumnsShown);
    for (auto _ : state) {
        paintAll(*w, images);
        benchmark::DoNotOptimize(images.front().constBits());
    }
}

void BM_PaintTenEmptyColumns(benchmark::State& state) { paintSchedule(state, false); }
void BM_PaintFullSchedule(benchmark::State& state) { paintSchedule(state, true); }

void send(QWidget* to, QEvent::Type type, QPoint pos, Qt::MouseButtons buttons) {
    QMouseEvent e(type, QPointF(pos), QPointF(to->mapToGlobal(pos)),
                  type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(to, &e);
}

// An appointment of the first column held over the second; each step moves the
// pointer a row and repaints both columns.
void BM_DragStepAcrossColumns(benchmark::State& state) {
    const auto w = schedule(true);
    DayViewWidget* source = w->dayView(0);
    DayViewWidget* target = w->dayView(1);
    const auto p = source->view().pointOfAppointment(1);
    const QPoint from = source->fromView({p->first, p->second});
    send(source, QEvent::MouseButtonPress, from, Qt::LeftButton);
    const QPoint over = source->mapFromGlobal(target->mapToGlobal(QPoint(target->width() / 3, 100)));
    std::vector<QImage> images(2);
    for (auto& image : images)
        image = QImage(source->size(), QImage::Format_ARGB32_Premultiplied);
    int step = 0;
    for (auto _ : state) {
        send(source, QEvent::MouseMove, over + QPoint(0, (step++ % 8) * 20), Qt::LeftButton);
        source->render(&images[0]);
        target->render(&images[1]);
        benchmark::DoNotOptimize(images[1].constBits());
    }
    send(source, QEvent::MouseButtonRelease, source->rect().center(), Qt::NoButton);
}

BENCHMARK(BM_PaintTenEmptyColumns)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PaintFullSchedule)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DragStepAcrossColumns)->Unit(benchmark::kMillisecond);

// Keeps each benchmark's time, to print the ratios to the empty columns last.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& r : runs)
            if (r.run_type == Run::RT_Iteration || r.aggregate_name == "mean")
                times_[r.run_name.function_name] = r.GetAdjustedRealTime();
        ConsoleReporter::ReportRuns(runs);
    }
    void printRatios() const {
        const auto empty = times_.find("BM_PaintTenEmptyColumns");
        if (empty == times_.end() || empty->second <= 0) return;
        for (const auto& [name, time] : times_)
            std::printf("%-28s %8.3f ms  %6.2f x ten empty columns\n", name.c_str(), time,
                        time / empty->second);
    }

private:
    std::map<std::string, double> times_;
};

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
