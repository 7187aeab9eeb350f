// Several desks on one practice, on a PostgreSQL server of the test's own: both
// come back by themselves after their server restarts, losing and doubling
// nothing, and each shows the other's bookings; a notice that is not a desk's never
// ends a desk; desks that start together set up one practice; two desks
// racing for one slot cannot both win it.

#include <QuorvaneScheduler/control_internals.h>
#include "desk_fixture.h"
#include "local_pg_server.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QtSql/QSqlQuery>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sys/wait.h>

using namespace quorvane;
using namespace practice;
using practice::test::Desk;
using practice::local::Server;

namespace {

// Lets the event loop deliver the other desk's notices and run its timers, up
// to `ms`.
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

// What a desk shows in its first three columns, by id, start and end, and what
// the store holds for the same resources and days.
using Grid = std::set<std::tuple<std::string, double, double>>;
Grid shown(Desk& desk) {
    Grid out;
    for (int column = 1; column <= 3; ++column)
        for (const AppointmentRef& a : desk.set(column).items())
            out.emplace(a->Tag.empty() ? "unsaved" : tagField(a->Tag, 0), a->StartDateTime.value,
                        a->EndDateTime.value);
    return out;
}
Grid stored(Desk& desk, PracticeStore& store) {
    Grid out;
    for (int column = 1; column <= 3; ++column)
        for (const StoredAppointment& a :
             store.appointments(QString::fromStdString(desk.control.ResourceValue(column - 1)),
                                widgetsOf(desk.control).dvwResource[static_cast<std::size_t>(column - 1)]->CurrentDate()))
            out.emplace(std::to_string(a.id), a.start.value, a.end.value);
    return out;
}

// One desk idle, the other in a run of bookings; the server restarted cleanly,
// then stopped as by a power cut and started again. Both desks notice, keep
// their grids, and come back by themselves within seconds of the server.
TEST_F(SharedDesks, BothDesksComeBackAfterTheirServerRestarts) {
    Desk idle(server.location(), "idle");
    Desk busy(server.location(), "busy");
    busy.host.loadPatient("5501");
    const OleDate top = makeDateTime(2026, 11, 23, 9, 0, 0);
    widgetsOf(idle.control).dvwResource[0]->setTopIndex(top);
    std::vector<qint64> confirmed;
    int slot = 0;
    auto bookNext = [&] {
        // Dr. Ortiz's afternoon is free from 1:15 PM on.
        const qint64 id = busy.bookAt(1, 13 + (slot + 1) / 4, 15 * ((slot + 1) % 4));
        if (id) confirmed.push_back(id), ++slot;
        return id;
    };
    for (const char* outage : {"restart", "immediate"}) {
        SCOPED_TRACE(outage);
        for (int i = 0; i < 3; ++i)
            ASSERT_NE(bookNext(), 0) << slot << " " << (busy.told.empty() ? "" : busy.told.back());
        const Grid before = shown(idle);
        if (std::string(outage) == "restart") {
            ASSERT_TRUE(server.restart());
        } else {
            server.stop("immediate");
            const std::size_t toldBefore = busy.told.size();
            EXPECT_EQ(bookNext(), 0) << "nothing is stored while the server is away";
            EXPECT_EQ(busy.told.size(), toldBefore + 1) << "the user is told why";
            EXPECT_TRUE(busy.host.offline()) << (busy.told.empty() ? "" : busy.told.back());
            EXPECT_FALSE(busy.control.UserControlEnabled());
            EXPECT_TRUE(within([&] { return idle.host.offline(); }, 5000)) << "an idle desk notices within 5 s";
            EXPECT_FALSE(idle.control.UserControlEnabled());
            EXPECT_EQ(shown(idle), before) << "the grid stays as it was loaded";
            EXPECT_FALSE(std::ranges::any_of(shown(busy), [](const auto& a) { return std::get<0>(a) == "unsaved"; }))
                << "the refused booking is gone from the grid";
            // QUORVANE_OUTAGE_SECONDS=65 plays a server that stays away for over a minute.
            within([] { return false; }, qEnvironmentVariableIntValue("QUORVANE_OUTAGE_SECONDS") * 1000);
            EXPECT_TRUE(idle.host.offline() && busy.host.offline());
            ASSERT_TRUE(server.start());
        }
        // Back within 10 s: the busy desk books again, and the idle desk hears it.
        qint64 again = 0;
        EXPECT_TRUE(within(
            [&] { return !idle.host.offline() && busy.control.UserControlEnabled() && (again = bookNext()) != 0; },
            10000));
        EXPECT_TRUE(idle.control.UserControlEnabled());
        const std::string tag = std::to_string(again);
        EXPECT_TRUE(within([&] {
            return std::ranges::any_of(shown(idle), [&](const auto& a) { return std::get<0>(a) == tag; });
        })) << "the idle desk listens again";
    }
    EXPECT_EQ(widgetsOf(idle.control).dvwResource[0]->TopIndex(), top) << "reloads keep the top of the grid";
    PracticeStore check("check");
    check.open(server.location(), practice::test::kToday);
    EXPECT_EQ(shown(idle), stored(idle, check));
    EXPECT_EQ(shown(busy), stored(busy, check));
    for (const qint64 id : confirmed)
        EXPECT_EQ(check.appointment(id).resource, "501");
    EXPECT_EQ(check.appointments("501", practice::test::kToday).size(), 6 + confirmed.size())
        << "no booking lost or stored twice";
}

// Notices from any client: garbage, empty, the largest a server carries, and a
// desk's own for a resource whose value holds "|" and letters beyond ASCII.
TEST_F(SharedDesks, ANoticeNeverEndsADesk) {
    {
        Desk setUp(server.location(), "setup");
        QSqlQuery q(setUp.store.database());
        ASSERT_TRUE(q.exec("UPDATE group_members SET default_column = 0 WHERE resource_value = '503'"));
        ASSERT_TRUE(q.exec("INSERT INTO resources VALUES ('R|ö', 'Dr. Öztürk', 'Providers', 'Dentists')"));
        ASSERT_TRUE(q.exec("INSERT INTO group_members VALUES ('10', 'R|ö', 3, 9)"));
    }
    Desk desk(server.location(), "desk");
    ASSERT_EQ(desk.control.ResourceValue(2), "R|ö");
    widgetsOf(desk.control).txtAppComments.text = "typed, not yet saved";
    for (const QString& payload : {QString("501|tomorrow"), QString(), QString("{\"resource\": 501}"),
                                   QString("{\"resource\": \"501\", \"day\": \"2026-02-30\"}"), QString(7999, 'x')})
        ASSERT_TRUE(server.psql("NOTIFY schedule_changed, '" + payload + "'")) << payload.left(40).toStdString();
    within([] { return false; }, 500);
    ASSERT_TRUE(server.psql("INSERT INTO appointments (resource_value, start_at, end_at, description, patient_id, "
                            "status) VALUES ('R|ö', '2026-11-23 15:00:00', '2026-11-23 15:30:00', 'Ada Byron', "
                            "'5501', 'Scheduled')"));
    ASSERT_TRUE(server.psql("SELECT pg_notify('schedule_changed', '" +
                            PracticeStore::noticeOf("R|ö", practice::test::kToday) + "')"));
    EXPECT_TRUE(within([&] { return shows(desk, 3, "Ada Byron", makeDateTime(2026, 11, 23, 15, 0, 0)); }));
    EXPECT_EQ(widgetsOf(desk.control).txtAppComments.text, "typed, not yet saved");
}

// Four desks started at one moment on a server's empty database: one sets the
// practice up, the others wait for it and open it.
TEST_F(SharedDesks, DesksStartingTogetherSetUpOnePractice) {
    int go[2];
    ASSERT_EQ(::pipe(go), 0);
    std::vector<pid_t> desks;
    for (int i = 0; i < 4; ++i) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::close(go[1]);
            char c;
            (void)!::read(go[0], &c, 1);
            try {
                Desk desk(server.location(), "desk");
                ::_exit(desk.set(1).Count() == 6 && desk.told.empty() ? 0 : 3);
            } catch (const std::exception& e) {
                std::fprintf(stderr, "desk %d: %s\n", i, e.what());
                ::_exit(2);
            }
        }
        desks.push_back(child);
    }
    ::close(go[0]);
    ::close(go[1]); // all four go
    for (const pid_t child : desks) {
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "a desk failed to start: " << status;
    }
    PracticeStore check("check");
    check.open(server.location(), practice::test::kToday);
    QSqlQuery q(check.database());
    ASSERT_TRUE(q.exec("SELECT (SELECT count(*) FROM practice_groups), (SELECT count(*) FROM patients)") && q.next());
    EXPECT_EQ(q.value(0).toInt(), 2);
    EXPECT_EQ(q.value(1).toInt(), 30);
    EXPECT_EQ(check.appointmentCount(), 240) << "the demo practice seeded once";
}

TEST_F(SharedDesks, PatientSearchIgnoresCaseAndTakesWildcardsAsTyped) {
    Desk desk(server.location(), "desk");
    practice::test::expectSearchFoldsCase(desk.store);
}

} // namespace
