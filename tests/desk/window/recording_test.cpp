// Sessions at the desk's window, recorded and replayed by the host console: the
// console prints for the recorded script exactly the transcript the desk wrote
// live, byte for byte.

#include "morning.h"

#include <QuorvaneScheduler/script/console.h>

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>
#include <QDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace quorvane;

namespace practice {
namespace {

const OleDate kToday = makeDate(2026, 11, 23);

std::string slurp(const QString& path) {
    std::ifstream in(path.toStdString(), std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

using Session = std::function<void(DeskWindow&, DeskUser&, const QString& database)>;

struct Case {
    const char* name;
    Session play;
    const char* shows; // a line the live transcript must hold
};

std::int32_t firstKey(DeskWindow& desk, const char* column) {
    return desk.control().GetDayView(column)->appointmentSet().FirstAppointment()->Key();
}

const Case kCases[] = {
    {"a booking",
     [](DeskWindow& desk, DeskUser& user, const QString&) {
         desk.setNextPatient("5503");
         QTest::mouseClick(desk.scheduler().findChild<QWidget*>("cmdPatientSearch"), Qt::LeftButton);
         user.clickAt(0, makeTime(11, 0, 0));
         user.clickAt(0, makeTime(11, 0, 0), Qt::RightButton);
         user.pick("mnoSchedulePatientGeneral");
         QTest::keyClicks(desk.scheduler().findChild<QWidget*>("txtAppComments"), "Late");
     },
     "event AddApptWithPatient(\"1\", \"501\")"},
    // The keyboard alone: Ctrl+O, the grid by arrows, the menu by keys, a move
    // to the next column and a longer visit by Ctrl and Shift arrows.
    {"a booking by keys",
     [](DeskWindow& desk, DeskUser& user, const QString&) {
         desk.setNextPatient("5503");
         desk.scheduler().findChild<QWidget*>("txtAppChiefComplaint")->setFocus();
         user.key(Qt::Key_O, Qt::ControlModifier);
         ASSERT_TRUE(user.tabTo(0));
         user.key(Qt::Key_Home);
         for (int i = 0; i < 12; ++i)
             user.key(Qt::Key_Down);
         user.key(Qt::Key_F10, Qt::ShiftModifier);
         ASSERT_TRUE(user.pickByKeys("mnoSchedulePatientGeneral"));
         user.key(Qt::Key_Right, Qt::ControlModifier);
         user.key(Qt::Key_Down, Qt::ShiftModifier);
     },
     "event ResourceAfterResize(\"502\", \"2\")"},
    // Another desk changed the appointment first: the move is refused, and the
    // desk reloads its columns once the control has finished the drag.
    {"a drag across columns that the desk refuses",
     [](DeskWindow& desk, DeskUser& user, const QString& database) {
         PracticeStore other("other desk");
         other.open(database, kToday);
         const StoredAppointment first = other.appointments("501", kToday).front();
         other.setStatus(first.id, first.version, "Confirmed");
         user.drag(0, firstKey(desk, "1"), 1, makeTime(12, 45, 0));
     },
     "> call RefreshSchedule(1)\nevent ResourceOnClick(1, \"501\", #11/23/2026#)"},
    {"a status change",
     [](DeskWindow& desk, DeskUser& user, const QString&) {
         user.clickOn(1, firstKey(desk, "2"), Qt::RightButton);
         user.pick("mnoCheckIn");
     },
     "event UpdateAppStatus(\"502\", \"Checked-In\")"},
    {"a group switch", [](DeskWindow&, DeskUser& user, const QString&) { user.choose("cmbResourceGroup", 1); },
     "event ResourceOnClick(1, \"610\", #11/23/2026#)"},
    {"the week view",
     [](DeskWindow& desk, DeskUser& user, const QString&) {
         // The user reads the week, then closes it with its own button.
         auto* reader = new QTimer(&desk);
         QObject::connect(reader, &QTimer::timeout, [reader] {
             if (QWidget* week = QApplication::activeModalWidget()) {
                 reader->stop();
                 if (const QString folder = qEnvironmentVariable("QUORVANE_SCREENSHOTS"); !folder.isEmpty()) {
                     QDir().mkpath(folder);
                     week->grab().save(QDir(folder).filePath("desk-week.png"));
                 }
                 QTest::mouseClick(week->findChild<QWidget*>("cmdClose"), Qt::LeftButton);
             }
         });
         reader->start(20);
         user.clickAt(0, makeTime(11, 30, 0), Qt::RightButton);
         user.pick("mnoWeekView");
     },
     "modal frmWeekView"},
    {"a deletion answered No",
     [](DeskWindow& desk, DeskUser& user, const QString&) {
         desk.setNextAnswer(MsgBoxResult::No);
         user.clickOn(0, firstKey(desk, "1"), Qt::RightButton);
         user.pick("mnoDeleteApp");
     },
     ") -> No"},
};

TEST(Recording, EverySessionReplaysToItsOwnTranscript) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        QTemporaryDir dir;
        const QString database = dir.filePath("practice.sqlite");
        std::string script, live;
        {
            DeskWindow desk(database, kToday, OpenMode::Demo);
            desk.setUnattended(true);
            desk.show();
            DeskUser user(desk);
            ASSERT_TRUE(desk.startRecording(dir.filePath("session.host"), dir.filePath("live.txt")));
            user.settle();
            c.play(desk, user, database);
            desk.stopRecording();
            script = slurp(dir.filePath("session.host"));
            live = slurp(dir.filePath("live.txt"));
        }
        std::ostringstream replayed, err;
        host::Console console(replayed, kToday);
        EXPECT_EQ(console.run("session.host", script, err), 0) << err.str();
        EXPECT_EQ(replayed.str(), live) << script;
        EXPECT_NE(live.find(c.shows), std::string::npos) << live;
    }
}

// A host that loads the second column again from inside the first one's load:
// a raise nested in a raise of the same event must find its handlers in place.
TEST(Recording, ARaiseInsideARaiseOfTheSameEventReplays) {
    Platform platform;
    platform.clock.setToday(kToday);
    ctlScheduler control(platform);
    std::ostringstream script, live;
    {
        SessionRecorder recorder(&script, &live, kToday, platform.screen);
        ControlSession session(control);
        session.recorder = &recorder;
        bool reloaded = false;
        EventsByName host([&](std::string_view name, std::vector<Variant>& args) {
            if (name != "ResourceOnClick") return;
            session.call("DisplayTopIndex", {Variant(makeDateTime(2026, 11, 23, 9, 0, 0)), args[0]});
            if (args[0].toLong() == 1 && !std::exchange(reloaded, true))
                session.call("RefreshSchedule", {Variant(std::int16_t{2})});
        });
        EventTee tee;
        tee.sinks = {&host};
        tee.before = [&](std::string_view name, const std::vector<Variant>& args) { recorder.eventRaised(name, args); };
        tee.after = [&] { recorder.eventDone(); };
        control.setEventSink(&tee);
        platform.container.onPropertyChanged = [&](std::string_view name) { recorder.changed(name); };
        session.set("ResourceGroupViews", Variant("10~Main Office~2~2"));
        session.set("ResourceGroupDefaults", Variant("10~Main Office~501~1~~10~Main Office~502~2"));
        session.set("ResourceGroups", Variant("10~Main Office~Y~501~One~Staff~A~~10~Main Office~N~502~Two~Staff~A"));
        control.setEventSink(nullptr);
    }
    std::ostringstream replayed, err;
    host::Console console(replayed, kToday);
    EXPECT_EQ(console.run("nested.host", script.str(), err), 0) << err.str();
    EXPECT_EQ(replayed.str(), live.str()) << script.str();
    EXPECT_NE(live.str().find("\n  event ResourceOnClick(2, "), std::string::npos) << live.str();
}

} // namespace
} // namespace practice
