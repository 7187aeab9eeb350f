// The desk's window where the screen and the store could part ways, played as
// a receptionist would with real mouse and key events: a typed block nobody
// stored, a delete after a refused move, a store that fails under every kind
// of gesture, and one visit's notes kept out of the next.

#include "morning.h"

#include <QuorvaneScheduler/qt/day_view_widget.h>

#include <QApplication>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QtSql/QSqlQuery>

#include <gtest/gtest.h>

#include <memory>

using namespace quorvane;

namespace practice {
namespace {

const OleDate kToday = makeDate(2026, 11, 23);

struct DeskFaults : ::testing::Test {
    void SetUp() override {
        desk = std::make_unique<DeskWindow>(database, kToday, OpenMode::Demo);
        desk->setUnattended(true);
        desk->show();
        user = std::make_unique<DeskUser>(*desk);
        user->settle();
        other.open(database, kToday);
    }
    AppointmentSet& set(int column) { return desk->scheduler().dayView(column)->view().appointmentSet(); }
    DayViewWidget& day(int column) { return *desk->scheduler().dayView(column); }
    QWidget* widget(const char* name) { return desk->scheduler().findChild<QWidget*>(name); }
    QString status() { return desk->statusBar()->currentMessage(); }
    qint64 idOf(const AppointmentRef& a) { return std::stoll(tagField(a->Tag, 0)); }
    void doubleClickOn(int column, std::int32_t key) {
        const auto p = *day(column).view().pointOfAppointment(key);
        QTest::mouseDClick(&day(column), Qt::LeftButton, {}, day(column).fromView({p.first, p.second}));
        user->settle();
    }
    void type(const char* field, const char* text) {
        QTest::keyClicks(widget(field), text);
        user->settle();
    }
    void book(int column, OleDate time, const char* item) {
        user->clickAt(column, time);
        user->clickAt(column, time, Qt::RightButton);
        user->pick(item);
    }

    QTemporaryDir dir;
    QString database = dir.filePath("practice.sqlite");
    std::unique_ptr<DeskWindow> desk;
    std::unique_ptr<DeskUser> user;
    PracticeStore other{"other desk"};
};

// Typing on a slot offers nothing at the desk. Where a host turns the slot
// editor on, the typed block is never stored, and the desk refuses to load or
// save notes for it rather than act on the appointment the pane showed before.
TEST_F(DeskFaults, ABlockNobodyStoredIsNeverActedOn) {
    user->clickAt(0, makeTime(11, 0, 0));
    QTest::keyClicks(&day(0), "Walk in");
    QTest::keyClick(&day(0), Qt::Key_Return);
    EXPECT_FALSE(day(0).slotEditor());
    EXPECT_EQ(set(0).Count(), 6);

    const AppointmentRef first = set(0).FirstAppointment();
    doubleClickOn(0, first->Key());
    desk->scheduler().setSlotEditorEnabled(true);
    user->clickAt(0, makeTime(11, 0, 0));
    QTest::keyClicks(&day(0), "Walk in");
    QTest::keyClick(day(0).slotEditor(), Qt::Key_Return);
    user->settle();
    const AppointmentRef typed = set(0).items().back();
    ASSERT_TRUE(typed->Tag.empty());
    doubleClickOn(0, typed->Key());
    EXPECT_TRUE(status().contains("not stored, so there is nothing to load")) << status().toStdString();
    type("txtAppComments", "allergic to penicillin");
    QTest::mouseClick(widget("cmdSaveAdditionalAppInfo"), Qt::LeftButton);
    user->settle();
    EXPECT_TRUE(status().contains("not stored, so its notes cannot be saved")) << status().toStdString();
    EXPECT_EQ(other.appointment(idOf(first)).comments, "") << "nothing written onto the visit before";
    EXPECT_TRUE(desk->control().UserControlEnabled());
}

// Another desk changed the appointment first: the move is refused, the desk
// reloads once the drag is over, and the user's next Delete asks and is stored.
TEST_F(DeskFaults, AfterARefusedMoveTheNextDeleteAsksAndIsStored) {
    const StoredAppointment first = other.appointments("501", kToday).front();
    other.setStatus(first.id, first.version, "Confirmed");
    user->drag(0, set(0).FirstAppointment()->Key(), 1, makeTime(11, 0, 0));
    EXPECT_TRUE(status().contains("Another desk changed this appointment first")) << status().toStdString();
    EXPECT_EQ(set(0).Count(), 6);
    const AppointmentRef doomed = set(1).FirstAppointment();
    const qint64 id = idOf(doomed);
    user->clickOn(1, doomed->Key());
    QTest::keyClick(&day(1), Qt::Key_Delete);
    user->settle();
    EXPECT_TRUE(status().contains("Are you sure")) << "the question was asked: " << status().toStdString();
    EXPECT_THROW(other.appointment(id), StoreError) << "the removal is stored";
    EXPECT_EQ(set(1).Count(), 5);
}

// The store fails under a status, a drag, a booking, a load and a save: each is
// told, the grid keeps what the store last gave, and the window stays enabled.
TEST_F(DeskFaults, AFailingStoreLeavesTheWindowWorking) {
    QSqlQuery(other.database()).exec("ALTER TABLE appointments RENAME TO appointments_away");
    const std::int32_t second = set(1).FirstAppointment()->Key();
    user->clickOn(1, second, Qt::RightButton);
    user->pick("mnoCheckIn");
    EXPECT_TRUE(desk->control().UserControlEnabled());
    user->drag(0, set(0).FirstAppointment()->Key(), 1, makeTime(11, 0, 0));
    EXPECT_TRUE(desk->control().UserControlEnabled());
    desk->setNextPatient("5503");
    QTest::mouseClick(widget("cmdPatientSearch"), Qt::LeftButton);
    book(0, makeTime(11, 0, 0), "mnoSchedulePatientGeneral");
    EXPECT_TRUE(desk->control().UserControlEnabled());
    doubleClickOn(1, set(1).FirstAppointment()->Key());
    QTest::mouseClick(widget("cmdSaveAdditionalAppInfo"), Qt::LeftButton);
    user->settle();
    EXPECT_TRUE(desk->control().UserControlEnabled());
    EXPECT_TRUE(status().contains("could not be")) << status().toStdString();
    EXPECT_EQ(set(0).Count(), 6) << "the grid keeps what the store last gave";
    EXPECT_EQ(set(1).Count(), 6);

    QSqlQuery(other.database()).exec("ALTER TABLE appointments_away RENAME TO appointments");
    book(0, makeTime(11, 0, 0), "mnoSchedulePatientGeneral");
    EXPECT_EQ(set(0).Count(), 7);
    EXPECT_FALSE(set(0).GetSelectedAppointment()->Tag.empty());
}

// A booking starts from an empty pane; a typed booking brings its presets.
// Save says what it saved, and the tool tip shows the notes.
TEST_F(DeskFaults, OneVisitsNotesNeverLeakIntoTheNext) {
    desk->setNextPatient("5503");
    QTest::mouseClick(widget("cmdPatientSearch"), Qt::LeftButton);
    book(0, makeTime(11, 0, 0), "mnoSchedulePatientType(1)");
    const StoredAppointment intake = other.appointment(idOf(set(0).GetSelectedAppointment()));
    EXPECT_EQ(intake.chiefComplaint + "|" + intake.comments, "Intake|First visit");
    book(0, makeTime(13, 30, 0), "mnoSchedulePatientGeneral");
    const AppointmentRef general = set(0).GetSelectedAppointment();
    const StoredAppointment stored = other.appointment(idOf(general));
    EXPECT_EQ(stored.chiefComplaint + "|" + stored.comments, "|");

    doubleClickOn(0, general->Key());
    type("txtAppComments", "Bring x-rays");
    QTest::mouseClick(widget("cmdSaveAdditionalAppInfo"), Qt::LeftButton);
    user->settle();
    EXPECT_EQ(status(), "Saved the notes of Grace Hopper, 1:30 PM");
    EXPECT_EQ(other.appointment(idOf(general)).comments, "Bring x-rays");
    EXPECT_EQ(desk->scheduler().appointmentToolTip(general),
              "Grace Hopper\n1:30 PM to 1:45 PM, Scheduled\nComments: Bring x-rays");
}

} // namespace
} // namespace practice
