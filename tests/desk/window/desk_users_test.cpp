// Who is at the desk, as its window shows it: a patient's history with a visit
// that was removed and what happened to each visit; the idle lock hiding the
// practice and giving it back, with what was typed in the pane, only for the
// right password.

#include "local_pg_server.h"
#include "morning.h"

#include <QuorvaneScheduler/control_internals.h>

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <QuorvaneScheduler/qt/day_view_widget.h>

#include <gtest/gtest.h>

using namespace quorvane;

namespace practice {
namespace {

const OleDate kToday = makeDate(2026, 11, 23);

// A new practice opened by its administrator.
Opening administrator() { return {OpenMode::Demo, {"ines", "admin pass 1"}, {}}; }

// QUORVANE_SCREENSHOTS=DIR keeps the pictures for a look.
void keep(QWidget& widget, const char* name) {
    const QString folder = qEnvironmentVariable("QUORVANE_SCREENSHOTS");
    if (!folder.isEmpty()) widget.grab().save(QDir(folder).filePath(name));
}

// The grid's key of the first appointment stored for `resource` today.
std::int32_t keyOfFirst(DeskWindow& desk, const char* resource, StoredAppointment* stored = nullptr) {
    const StoredAppointment first = desk.store().appointments(resource, kToday).front();
    if (stored) *stored = first;
    for (const AppointmentRef& a : widgetsOf(desk.control()).dvwResource[0]->appointmentSet().items())
        if (tagField(a->Tag, 0) == std::to_string(first.id)) return a->Key();
    return -1;
}

TEST(DeskUsers, APatientsHistoryShowsARemovedVisitAndWhatHappenedToIt) {
    QTemporaryDir dir;
    DeskWindow desk(dir.filePath("practice.sqlite"), kToday, administrator());
    desk.setUnattended(true);
    desk.show();
    DeskUser user(desk);
    user.settle();
    StoredAppointment ada;
    user.clickOn(0, keyOfFirst(desk, "501", &ada));
    user.key(Qt::Key_Delete); // the question is answered Yes
    ASSERT_THROW(desk.store().appointment(ada.id), StoreError) << "the visit is removed";

    desk.host().OpenPatientHistory(ada.patientId.toStdString());
    user.settle();
    auto* history = desk.findChild<QDialog*>("patientHistory");
    ASSERT_TRUE(history && history->isVisible());
    EXPECT_EQ(history->windowTitle(), "History of " + desk.store().patient(ada.patientId).name);
    auto* visits = history->findChild<QTableWidget*>("visits");
    QTableWidgetItem* removed = nullptr;
    for (int row = 0; row < visits->rowCount(); ++row)
        if (visits->item(row, 2)->text().startsWith("Removed")) removed = visits->item(row, 0);
    ASSERT_TRUE(removed) << "a removed visit is in the list";
    EXPECT_EQ(visits->item(removed->row(), 2)->text(), "Removed (was Scheduled)");
    EXPECT_TRUE(removed->font().strikeOut());
    QTest::mouseClick(visits->viewport(), Qt::LeftButton, {}, visits->visualItemRect(removed).center());
    auto* trail = history->findChild<QListWidget*>("trail");
    QStringList lines;
    for (int i = 0; i < trail->count(); ++i)
        lines << trail->item(i)->text();
    ASSERT_EQ(lines.size(), 2) << lines.join("\n").toStdString();
    EXPECT_TRUE(lines[0].contains("the practice's set-up at " + PracticeStore::deskName() + ": booked Ada Byron"))
        << lines[0].toStdString();
    EXPECT_TRUE(lines[1].contains("ines at " + PracticeStore::deskName() + ": removed Ada Byron, 11/23/2026 8:00 AM "
                                                                            "with Dr. Ortiz"))
        << lines[1].toStdString();
    keep(*history, "patient-history.png");
}

TEST(DeskUsers, TheIdleLockHidesThePracticeAndGivesItBackWithWhatWasTyped) {
    QTemporaryDir dir;
    DeskWindow desk(dir.filePath("practice.sqlite"), kToday, administrator());
    desk.setUnattended(true);
    ASSERT_TRUE(desk.startRecording(dir.filePath("session.host"), dir.filePath("session.transcript")));
    desk.show();
    DeskUser user(desk);
    user.settle();
    user.clickOn(0, keyOfFirst(desk, "501"));
    auto* comments = desk.findChild<QPlainTextEdit*>("txtAppComments");
    ASSERT_TRUE(comments);
    QTest::mouseClick(comments->viewport(), Qt::LeftButton);
    QTest::keyClicks(comments, "Allergic to latex");
    const QString typed = comments->toPlainText();

    desk.setIdleLock(std::chrono::milliseconds(300));
    for (int waited = 0; !desk.locked() && waited < 3000; waited += 50)
        QTest::qWait(50);
    ASSERT_TRUE(desk.locked());
    EXPECT_FALSE(desk.scheduler().isVisible()) << "no patient's name stays in sight";
    keep(desk, "idle-lock.png");
    const int shown = desk.control().GetDayView("1")->appointmentSet().Count();
    QTest::keyClick(desk.scheduler().dayView(0), Qt::Key_Delete);
    EXPECT_EQ(desk.control().GetDayView("1")->appointmentSet().Count(), shown) << "keys do not reach the grid";

    auto* password = desk.findChild<QLineEdit*>("lockPassword");
    desk.store().addUser("maria", "front desk 1", Role::FrontDesk);
    QTest::keyClicks(password, "admin pass 2");
    QTest::keyClick(password, Qt::Key_Return);
    EXPECT_TRUE(desk.locked());
    EXPECT_TRUE(desk.findChild<QLabel*>("lockMessage")->text().contains("did not accept the user name and password"));
    EXPECT_TRUE(password->text().isEmpty());
    // Another user logs in instead; the administrator's menu goes with its user.
    auto* who = desk.findChild<QLineEdit*>("lockUser");
    EXPECT_EQ(who->text(), "ines");
    EXPECT_TRUE(desk.findChild<QMenu*>("practiceMenu")->menuAction()->isVisible());
    who->selectAll();
    QTest::keyClicks(who, "maria");
    QTest::keyClicks(password, "front desk 1");
    QTest::mouseClick(desk.findChild<QPushButton*>("unlock"), Qt::LeftButton);
    EXPECT_FALSE(desk.locked());
    EXPECT_EQ(desk.store().userName(), "maria");
    EXPECT_FALSE(desk.findChild<QMenu*>("practiceMenu")->menuAction()->isVisible());
    desk.setIdleLock(std::chrono::milliseconds(0));
    EXPECT_TRUE(desk.scheduler().isVisible());
    EXPECT_EQ(comments->toPlainText(), typed) << "nothing typed in the pane is lost";
    EXPECT_EQ(widgetsOf(desk.control()).txtAppComments.text, typed.toStdString());
    desk.stopRecording();
    for (const char* file : {"session.host", "session.transcript"}) {
        QFile recorded(dir.filePath(file));
        ASSERT_TRUE(recorded.open(QIODevice::ReadOnly));
        const QByteArray text = recorded.readAll();
        EXPECT_TRUE(text.contains("Allergic to latex")) << file << " holds the session";
        EXPECT_FALSE(text.contains("admin pass")) << file << " holds no password";
    }
}

// An attended desk setting up a new practice asks for its first
// administrator, and asks again when the answer will not do.
TEST(DeskUsers, ANewPracticeAsksForItsFirstAdministrator) {
    QTemporaryDir dir;
    std::vector<QString> asked;
    Opening opening{OpenMode::Demo, {}, [&](const QString& why, bool first) -> std::optional<Login> {
                        EXPECT_TRUE(first);
                        asked.push_back(why);
                        return Login{"ines", asked.size() == 1 ? "short" : "admin pass 1"};
                    }};
    DeskWindow desk(dir.filePath("practice.sqlite"), kToday, opening);
    ASSERT_EQ(asked.size(), 2u);
    EXPECT_TRUE(asked[1].contains("a password of 8 characters or more")) << asked[1].toStdString();
    EXPECT_EQ(desk.store().userName(), "ines");
    EXPECT_EQ(desk.store().role(), Role::Administrator);
}

// A server's URL that names nobody: the desk asks, and asks again with the
// server's refusal until it lets the user in.
TEST(DeskUsers, ADeskOnAServerAsksWhoIsThereUntilTheServerLetsThemIn) {
    local::Server server;
    if (!server.available()) GTEST_SKIP() << "no PostgreSQL server programs on this machine";
    server.requirePasswords();
    ASSERT_TRUE(server.start());
    {
        PracticeStore setUp("setup");
        setUp.open(server.location(), kToday, OpenMode::Demo);
    }
    ASSERT_TRUE(server.psql("CREATE ROLE maria LOGIN PASSWORD 'front-desk pass' IN ROLE front_desk"));
    std::vector<QString> asked;
    Opening opening{OpenMode::Existing, {}, [&](const QString& why, bool first) -> std::optional<Login> {
                        EXPECT_FALSE(first);
                        asked.push_back(why);
                        return Login{"maria", asked.size() == 1 ? "not it" : "front-desk pass"};
                    }};
    DeskWindow desk(QString("postgresql://127.0.0.1:%1/practice?sslmode=require").arg(server.port()), kToday, opening);
    ASSERT_EQ(asked.size(), 2u);
    EXPECT_TRUE(asked[0].isEmpty());
    EXPECT_TRUE(asked[1].contains("did not accept the user name and password of \"maria\"")) << asked[1].toStdString();
    EXPECT_EQ(desk.store().userName(), "maria");
    EXPECT_EQ(desk.store().role(), Role::FrontDesk);
    EXPECT_FALSE(desk.windowTitle().contains("pass"));
    EXPECT_EQ(desk.control().GetDayView("1")->appointmentSet().Count(), 6);
}

} // namespace
} // namespace practice
