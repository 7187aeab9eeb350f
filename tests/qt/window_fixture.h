#pragma once
// A window on a control that the host console has brought up from a script,
// and a transcript of what reaches the host, written as the console writes
// it: so a gesture of the mouse can be compared line by line with the
// console's gesture of the same name.

#include <QuorvaneScheduler/qt/day_view_widget.h>
#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include <QuorvaneScheduler/script/console.h>

#include "morning_script.h"

#include <QImage>
#include <QString>

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace quorvane::test {

using Lines = std::vector<std::string>;


// What the console prints for `gestures` run after `setup`, less the commands
// and what the host's handlers print: the events, message boxes, menus and
// change reports, in order.
Lines consoleTranscript(const std::string& setup, const std::string& gestures);

struct WindowTest : ::testing::Test {
    WindowTest();
    ~WindowTest() override;

    DayViewWidget& day(int index) { return *window->dayView(index); }
    PVDayView& model(int index) { return day(index).view(); }
    // The widget point a console gesture aims at: an appointment's centre, or a
    // slot's row in the free strip beside the appointments.
    QPoint on(int column, std::int32_t key);
    QPoint at(int column, int hour, int minute);
    // A point of a day view in the window's coordinates.
    QPoint inWindow(int column, QPoint p) { return day(column).mapTo(window.get(), p); }
    // Press, move in steps, release: a drag of the left button on a day view.
    void drag(DayViewWidget& w, QPoint from, QPoint to, int steps = 4);
    // The answer the user gives the next Yes/No box, as the console's "answer".
    void answerNext(bool yes) { answers.push_back(yes); }
    // Lines logged since the last call.
    Lines took() { return std::exchange(log, {}); }
    // The window as the screen shows it at a device pixel ratio, with an open
    // menu drawn where it stands.
    QImage shot(qreal ratio = 1.0);
    void saveShot(const QImage& image, const char* name);

    std::ostringstream consoleOut;
    std::unique_ptr<host::Console> console;
    std::unique_ptr<SchedulerWidget> window;
    Lines log;
    std::vector<bool> answers;
};

} // namespace quorvane::test
