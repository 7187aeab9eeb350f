// Several desks on one practice: a PostgreSQL server of the test's own, in a
// temporary folder on a Unix socket, and two desks on it. A booking on one
// shows on the other, a move of one appointment by both is refused on the
// second, and a server stopped and started in the middle of a run of bookings
// loses none that were confirmed.

#include "desk_fixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace quorvane;
using namespace practice;
using practice::test::Desk;

namespace {

// A cluster of the test's own. The server refuses to run as root, so a root
// test runs its programs as the postgres user the package made.
class Server {
public:
    Server() {
        QFile::setPermissions(dir_.path(), QFileDevice::Permissions(0x7777));
        const QStringList bins = QDir("/usr/lib/postgresql").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        if (!bins.isEmpty()) bin_ = "/usr/lib/postgresql/" + bins.last() + "/bin/";
    }
    ~Server() { stop(); }

    bool start() {
        if (!QFile::exists(dir_.path() + "/data/PG_VERSION") &&
            !run("initdb", {"-D", data(), "-A", "trust", "-U", "postgres", "--no-sync", "-E", "UTF8"}))
            return false;
        return run("pg_ctl", {"-D", data(), "-l", dir_.path() + "/log", "-w", "-o",
                              "-k " + dir_.path() + " -c listen_addresses='' -F -p 5432", "start"}) &&
               (created_ || (created_ = run("createdb", {"-h", dir_.path(), "-U", "postgres", "practice"})));
    }
    void stop() {
        if (QFile::exists(data() + "/postmaster.pid"))
            run("pg_ctl", {"-D", data(), "-m", "fast", "-w", "stop"});
    }
    QString location() const { return "postgresql://postgres@localhost/practice?host=" + dir_.path(); }
    bool available() const { return !bin_.isEmpty() && QFile::exists(bin_ + "initdb"); }

private:
    QString data() const { return dir_.path() + "/data"; }
    bool run(const QString& program, const QStringList& args) {
        QProcess p;
        if (::geteuid() == 0)
            p.start("runuser", QStringList{"-u", "postgres", "--", bin_ + program} + args);
        else
            p.start(bin_ + program, args);
        return p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    }
    QTemporaryDir dir_;
    QString bin_;
    bool created_ = false;
};

// Lets the event loop deliver the other desk's notices, up to a second.
bool within(const std::function<bool()>& done, int ms = 1000) {
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

bool shows(Desk& desk, int column, const std::string& text, OleDate start) {
    for (const AppointmentRef& a : desk.set(column).items())
        if (a->Text == text && a->StartDateTime == start) return true;
    return false;
}

struct SharedDesks : ::testing::Test {
    void SetUp() override {
        if (!server.available()) GTEST_SKIP() << "no PostgreSQL server programs on this machine";
        ASSERT_TRUE(server.start());
    }
    Server server;
};

TEST_F(SharedDesks, ABookingOnOneDeskShowsOnTheOther) {
    Desk front(server.location(), "front");
    Desk back(server.location(), "back");
    EXPECT_EQ(back.set(2).Count(), 6);
    back.control.widgets().dvwResource[1]->setTopIndex(makeDateTime(2026, 11, 23, 9, 0, 0));
    front.book(2, 13, 0, "5503");
    EXPECT_TRUE(within([&] { return shows(back, 2, "Grace Hopper", makeDateTime(2026, 11, 23, 13, 0, 0)); }));
    EXPECT_EQ(back.control.widgets().dvwResource[1]->TopIndex(), makeDateTime(2026, 11, 23, 9, 0, 0))
        << "the reloaded column keeps the top of its grid";
    EXPECT_TRUE(front.told.empty() && back.told.empty());
}

TEST_F(SharedDesks, TheSecondMoveOfOneAppointmentIsRefused) {
    Desk front(server.location(), "front");
    Desk back(server.location(), "back");
    PVDayView& frontView = *front.control.widgets().dvwResource[0];
    PVDayView& backView = *back.control.widgets().dvwResource[0];
    // Both desks show the first appointment; the front desk moves it first.
    ASSERT_TRUE(frontView.userDrag(front.set(1).FirstAppointment()->Key(), frontView, makeTime(11, 0, 0)));
    ASSERT_TRUE(backView.userDrag(back.set(1).FirstAppointment()->Key(), backView, makeTime(11, 30, 0)));
    ASSERT_EQ(back.told.size(), 1u);
    EXPECT_NE(back.told[0].find("Another desk changed this appointment first"), std::string::npos);
    const std::string& moved = front.set(1).items().back()->Text;
    EXPECT_TRUE(shows(back, 1, moved, makeDateTime(2026, 11, 23, 11, 0, 0))) << "reloaded as it is now";
    EXPECT_FALSE(shows(back, 1, moved, makeDateTime(2026, 11, 23, 11, 30, 0)));
    EXPECT_EQ(back.set(1).Count(), 6) << "nothing lost or doubled";
    EXPECT_TRUE(back.control.UserControlEnabled());
}

TEST_F(SharedDesks, AServerStoppedAndStartedLosesNoConfirmedBooking) {
    Desk desk(server.location(), "desk");
    desk.host.loadPatient("5501");
    std::vector<qint64> confirmed;
    for (int i = 0; i < 12; ++i) {
        if (i == 4) server.stop();
        if (i == 8) {
            ASSERT_TRUE(server.start());
            ASSERT_TRUE(desk.host.retry());
            EXPECT_TRUE(desk.control.UserControlEnabled());
        }
        if (!desk.control.UserControlEnabled()) {
            EXPECT_TRUE(desk.host.offline()) << "refused while the server is away";
            continue;
        }
        desk.control.widgets().dvwResource[2]->userClickAt(makeTime(8 + i % 5, 15 * (i / 5), 0));
        desk.control.ScheduleApp();
        const AppointmentRef booked = desk.set(3).GetSelectedAppointment();
        if (booked && !booked->Tag.empty()) confirmed.push_back(std::stoll(tagField(booked->Tag, 0)));
    }
    EXPECT_EQ(confirmed.size(), 8u);
    ASSERT_FALSE(desk.told.empty());
    EXPECT_NE(desk.told[0].find("cannot be reached"), std::string::npos) << desk.told[0];
    PracticeStore check("check");
    check.open(server.location(), practice::test::kToday);
    for (const qint64 id : confirmed)
        EXPECT_EQ(check.appointment(id).resource, "503");
}

} // namespace
