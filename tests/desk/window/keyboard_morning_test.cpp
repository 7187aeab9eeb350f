// A morning at the front desk with the keyboard alone, the desk attended: its
// patient search and its question are real dialogs, answered by keys. Not one
// mouse event reaches the application, and the store holds each step.

#include <QuorvaneScheduler/control_internals.h>
#include "morning.h"

#include <QuorvaneScheduler/qt/day_view_widget.h>

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace quorvane;

namespace practice {
namespace {

const OleDate kToday = makeDate(2026, 11, 23);

struct MouseCounter : QObject {
    int seen = 0;
    bool eventFilter(QObject*, QEvent* e) override {
        const auto t = e->type();
        if (t == QEvent::MouseButtonPress || t == QEvent::MouseButtonRelease || t == QEvent::MouseButtonDblClick ||
            t == QEvent::Wheel)
            ++seen;
        return false;
    }
};

// Runs `answer` on the next modal dialog, from the event loop its exec() turns.
void whenModal(std::function<void(QWidget*)> answer) {
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, [poll, answer] {
        if (QWidget* dialog = QApplication::activeModalWidget()) {
            poll->deleteLater();
            poll->stop();
            answer(dialog);
        }
    });
    poll->start(10);
}

void press(QWidget* dialog, Qt::Key key) { QTest::keyClick(dialog->focusWidget() ? dialog->focusWidget() : dialog, key); }

TEST(DeskByKeys, AWholeMorningWithoutTheMouse) {
    QTemporaryDir dir;
    DeskWindow desk(dir.filePath("practice.sqlite"), kToday, OpenMode::Demo);
    desk.show();
    desk.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&desk));
    MouseCounter mouse;
    qApp->installEventFilter(&mouse);
    QStringList heard;
    QObject::connect(&desk.scheduler(), &SchedulerWidget::eventRaised,
                     [&](const QString& name, const QVariantList&) { heard << name; });
    DeskUser user(desk);
    user.settle();
    auto stored = [&](const char* resource) {
        for (const StoredAppointment& a : desk.store().appointments(resource, kToday))
            if (a.description.startsWith("Grace Hopper")) return std::optional<StoredAppointment>(a);
        return std::optional<StoredAppointment>();
    };

    // Ctrl+O in the pane: the patient search, typed into and taken with Return.
    QWidget* pane = desk.scheduler().findChild<QWidget*>("txtAppChiefComplaint");
    pane->setFocus();
    whenModal([](QWidget* dialog) {
        QTest::keyClicks(dialog->focusWidget(), "Grace");
        press(dialog, Qt::Key_Return);
    });
    user.key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(widgetsOf(desk.control()).txtPatName.text, "Grace Hopper");

    // To Dr. Ortiz's grid, down to 11:00, and booked there from the menu.
    ASSERT_TRUE(user.tabTo(0));
    user.key(Qt::Key_Home);
    for (int i = 0; i < 12; ++i)
        user.key(Qt::Key_Down);
    user.key(Qt::Key_Return);
    ASSERT_TRUE(user.pickByKeys("mnoSchedulePatientGeneral"));
    std::optional<StoredAppointment> visit = stored("501");
    ASSERT_TRUE(visit);
    EXPECT_EQ(generalDateText(visit->start), "11/23/2026 11:00:00 AM");

    // The keys stay on the grid after a menu's command; Tab goes from visit
    // to visit, and the menu checks one in.
    EXPECT_EQ(QApplication::focusWidget(), desk.scheduler().dayView(0));
    DayViewWidget& ortiz = *desk.scheduler().dayView(0);
    for (int i = 0; i < 10; ++i) {
        const AppointmentRef at = ortiz.view().appointmentSet().GetSelectedAppointment();
        if (at && at->Text.starts_with("Grace Hopper")) break;
        user.key(Qt::Key_Tab);
    }
    user.key(Qt::Key_Menu);
    ASSERT_TRUE(user.pickByKeys("mnoCheckIn"));
    EXPECT_EQ(stored("501")->status, "Checked-In");

    // To Dr. Park's column at the same time, then a slot longer.
    user.key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_FALSE(stored("501"));
    visit = stored("502");
    ASSERT_TRUE(visit);
    EXPECT_EQ(generalDateText(visit->start), "11/23/2026 11:00:00 AM");
    EXPECT_EQ(visit->status, "Checked-In");
    const std::int64_t length = minutesBetween(visit->start, visit->end);
    user.key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(minutesBetween(stored("502")->start, stored("502")->end), length + 15);
    user.key(Qt::Key_Down, Qt::ControlModifier); // a slot later, as long
    EXPECT_EQ(generalDateText(stored("502")->start), "11/23/2026 11:15:00 AM");

    // Delete asks first; Enter on the question would keep it, so the user
    // tabs to Yes and takes it with the space bar.
    whenModal([](QWidget* dialog) {
        auto* box = qobject_cast<QMessageBox*>(dialog);
        ASSERT_TRUE(box);
        EXPECT_EQ(box->defaultButton(), box->button(QMessageBox::No));
        for (int i = 0; i < 4 && !box->button(QMessageBox::Yes)->hasFocus(); ++i)
            press(dialog, Qt::Key_Tab);
        press(dialog, Qt::Key_Space);
    });
    user.key(Qt::Key_Delete);
    EXPECT_FALSE(stored("502"));

    // Right from the last column shown scrolls the columns on to the next;
    // Left past the first shown scrolls them back.
    DayViewWidget& third = *desk.scheduler().dayView(2);
    ASSERT_TRUE(third.isVisible());
    EXPECT_GT(third.geometry().right(), desk.scheduler().width());
    user.key(Qt::Key_Right);
    EXPECT_EQ(QApplication::focusWidget(), &third);
    EXPECT_LE(third.geometry().right(), desk.scheduler().width());
    EXPECT_EQ(widgetsOf(desk.control()).sbSchedule.value, 2);
    user.key(Qt::Key_Left);
    EXPECT_EQ(widgetsOf(desk.control()).sbSchedule.value, 2) << "the second column is in view";
    user.key(Qt::Key_Left);
    EXPECT_EQ(QApplication::focusWidget(), desk.scheduler().dayView(0));
    EXPECT_EQ(widgetsOf(desk.control()).sbSchedule.value, 1);

    qApp->removeEventFilter(&mouse);
    EXPECT_EQ(mouse.seen, 0);
    for (const char* event : {"PatientSearch", "AddApptWithPatient", "UpdateAppStatus", "ResourceAfterDrag",
                              "ResourceAfterResize", "ResourceBeforeRemove"})
        EXPECT_TRUE(heard.contains(event)) << event;
}

} // namespace
} // namespace practice
