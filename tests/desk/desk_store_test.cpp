// The practice desk's store and its answers to the control's events, without a
// window: a demo database seeds a practice the control can show, old layouts
// migrate, double bookings are refused, a desk killed in the middle of bookings
// loses none that were committed, and a database that cannot be written or read
// gives its message and no crash.

#include <QuorvaneScheduler/control_internals.h>
#include "desk_fixture.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QtSql/QSqlQuery>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace quorvane;
using namespace practice;
using practice::test::Desk;
using practice::test::kToday;

namespace {

struct DeskStore : ::testing::Test {
    QTemporaryDir dir;
    QString path = dir.filePath("practice.sqlite");
};

TEST_F(DeskStore, ANewDatabaseSeedsAPracticeTheControlShows) {
    Desk desk(path);
    EXPECT_EQ(desk.store.schemaVersion(), PracticeStore::kSchemaVersion);
    EXPECT_EQ(widgetsOf(desk.control).cmbResourceGroup.text(), "Main Office");
    EXPECT_EQ(desk.control.ResourceValue(0), "501");
    EXPECT_EQ(desk.set(1).Count(), 6) << "Monday's day of Dr. Ortiz";
    EXPECT_EQ(desk.control.GetStatus(desk.set(1).FirstAppointment()), "Scheduled");
    EXPECT_EQ(widgetsOf(desk.control).dvwResource[0]->TimeSlotColor(makeTime(12, 30, 0)), 0xC0C0C0)
        << "the lunch break is painted";
    EXPECT_EQ(desk.store.findPatients("Hopper").size(), 1u);
    EXPECT_TRUE(desk.told.empty());
}

TEST_F(DeskStore, MigrationsBringAnOldDatabaseForward) {
    {
        PracticeStore old("old");
        old.openAt(path, 1);
        EXPECT_EQ(old.schemaVersion(), 1);
        QSqlQuery(old.database())
            .exec(
                "INSERT INTO appointments (resource_value, start_at, end_at, description, patient_id, "
                "status) "
                "VALUES ('501', '2026-11-23 09:00:00', '2026-11-23 09:30:00', 'Kept', '5501', 'Scheduled')");
    }
    PracticeStore store("new");
    store.open(path, kToday);
    EXPECT_EQ(store.schemaVersion(), PracticeStore::kSchemaVersion);
    const std::vector<StoredAppointment> kept = store.appointments("501", kToday);
    ASSERT_EQ(kept.size(), 1u) << "an old database is not seeded again";
    EXPECT_EQ(kept[0].description, "Kept");
    EXPECT_EQ(kept[0].version, 1);
}

TEST_F(DeskStore, AReadOnlyOrLockedDatabaseIsToldNotCrashedOn) {
    {
        // Another program holds the database in a write of its own.
        Desk desk(path, "locked");
        PracticeStore other("other");
        other.open(path, kToday);
        ASSERT_TRUE(QSqlQuery(other.database()).exec("BEGIN IMMEDIATE"));
        desk.book(1, 15, 0, "5502");
        ASSERT_EQ(desk.told.size(), 1u);
        EXPECT_NE(desk.told[0].find("in use by another program"), std::string::npos) << desk.told[0];
        EXPECT_NE(desk.told[0].find(path.toStdString()), std::string::npos) << "the message names the file";
        // A reload that cannot read keeps what the store last gave.
        desk.host.otherDeskChanged("501", kToday);
        EXPECT_EQ(desk.set(1).Count(), 6) << "never an empty day";
        QSqlQuery(other.database()).exec("ROLLBACK");
    }
    ASSERT_EQ(::chmod(path.toLocal8Bit().constData(), 0444), 0);
    {
        Desk desk(path, "readonly");
        const int before = desk.set(3).Count();
        desk.book(3, 15, 0, "5504");
        ASSERT_EQ(desk.told.size(), 1u);
        EXPECT_NE(desk.told[0].find("can only be read"), std::string::npos) << desk.told[0];
        EXPECT_EQ(desk.set(3).Count(), before) << "the refused booking is gone from the grid";
        EXPECT_TRUE(desk.control.UserControlEnabled());
    }
    // A damaged file is the program's to refuse: DeskStart.ADamagedDatabaseIsNamedAndNotOpened.
}

// Two live appointments of one resource may not overlap unless the practice
// allows it: a booking, a drop and a status that would do so are refused by
// name, and the grid shows what is stored.
TEST_F(DeskStore, DoubleBookingsAreRefusedUnlessThePracticeAllowsThem) {
    Desk desk(path);
    desk.book(1, 8, 15, "5503");
    ASSERT_EQ(desk.told.size(), 1u);
    EXPECT_NE(desk.told[0].find("Dr. Ortiz already has"), std::string::npos) << desk.told[0];
    EXPECT_EQ(desk.set(1).Count(), 6) << "the refused booking is gone from the grid";
    EXPECT_TRUE(desk.control.UserControlEnabled());

    PVDayView& first = *widgetsOf(desk.control).dvwResource[0];
    const AppointmentRef moved = desk.set(1).FirstAppointment();
    ASSERT_TRUE(first.userDrag(moved->Key(), first, makeTime(9, 30, 0)));
    desk.settle();
    ASSERT_EQ(desk.told.size(), 2u);
    EXPECT_NE(desk.told[1].find("so the move was not stored"), std::string::npos) << desk.told[1];
    EXPECT_EQ(desk.set(1).FirstAppointment()->StartDateTime, makeDateTime(2026, 11, 23, 8, 0, 0));

    desk.store.setAllowDoubleBooking(true);
    desk.book(1, 8, 15, "5503");
    EXPECT_EQ(desk.told.size(), 2u);
    EXPECT_EQ(desk.set(1).Count(), 7);
}

// Another desk's change reloads a column; the slot length the user chose for
// it stays.
TEST_F(DeskStore, TheSlotLengthTheUserChoseSurvivesAReload) {
    Desk desk(path);
    desk.control.setDayIncrement(0, "30");
    desk.host.otherDeskChanged("501", kToday);
    EXPECT_EQ(desk.control.DayIncrement(0), "30");
    EXPECT_EQ(desk.set(1).Count(), 6);
}

TEST_F(DeskStore, PatientSearchIgnoresCaseAndTakesWildcardsAsTyped) {
    Desk desk(path);
    practice::test::expectSearchFoldsCase(desk.store);
}

// A desk killed with SIGKILL in the middle of a run of bookings leaves a sound
// database with every booking it had committed.
TEST_F(DeskStore, AKilledDeskLosesNoCommittedBooking) {
    { Desk seed(path, "seed"); }
    int pipeEnds[2];
    ASSERT_EQ(::pipe(pipeEnds), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::close(pipeEnds[0]);
        PracticeStore store("child");
        store.open(path, kToday);
        for (int i = 0;; ++i) {
            StoredAppointment a;
            a.resource = "503", a.description = "Booking " + QString::number(i), a.patientId = "5501";
            a.status = "Scheduled";
            a.start = addMinutes(makeDateTime(2027, 1, 4, 8, 0, 0), 15 * i);
            a.end = addMinutes(a.start, 15);
            const qint64 id = store.addAppointment(a);
            if (::write(pipeEnds[1], &id, sizeof id) != sizeof id) ::_exit(1);
        }
    }
    ::close(pipeEnds[1]);
    std::vector<qint64> committed;
    qint64 id = 0;
    while (committed.size() < 200 && ::read(pipeEnds[0], &id, sizeof id) == sizeof id)
        committed.push_back(id);
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    while (::read(pipeEnds[0], &id, sizeof id) == sizeof id)
        committed.push_back(id);
    ::close(pipeEnds[0]);
    ASSERT_EQ(committed.size() >= 200, true);

    PracticeStore store("after");
    store.open(path, kToday);
    QSqlQuery check(store.database());
    ASSERT_TRUE(check.exec("PRAGMA integrity_check") && check.next());
    EXPECT_EQ(check.value(0).toString(), "ok");
    for (const qint64 booked : committed)
        EXPECT_EQ(store.appointment(booked).resource, "503");
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
