// The demo practice as a screen reader reads it through Qt's accessibility
// interfaces: the day view, its slots and appointments by name, a name on
// every field, list and button, and the focus event an arrow key raises.

#include "morning.h"

#include <QuorvaneScheduler/qt/day_view_widget.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <iostream>

using namespace quorvane;

namespace practice {
namespace {

std::vector<QString> heard; // names of what the focus events point at

void listen(QAccessibleEvent* event) {
    if (event->type() != QAccessible::Focus) return;
    if (QAccessibleInterface* target = event->accessibleInterface())
        heard.push_back(target->text(QAccessible::Name));
}

QStringList namesOf(QAccessibleInterface* table) {
    QStringList names;
    for (int i = 0; i < table->childCount(); ++i)
        names << table->child(i)->text(QAccessible::Name);
    return names;
}

TEST(DeskWindowOnAFile, AReaderHearsTheGridAndEveryControlByName) {
    QTemporaryDir dir;
    DeskWindow desk(dir.filePath("practice.sqlite"), makeDate(2026, 11, 23), OpenMode::Demo);
    desk.setUnattended(true);
    desk.show();
    DeskUser user(desk);
    user.settle();
    DayViewWidget& day = *desk.scheduler().dayView(0);

    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&day);
    ASSERT_TRUE(table);
    EXPECT_EQ(table->role(), QAccessible::Table);
    EXPECT_EQ(table->text(QAccessible::Name), "Dr. Ortiz, Monday, November 23, 2026");
    const QStringList names = namesOf(table);
    EXPECT_TRUE(names.contains("9:30 AM, free"));
    EXPECT_TRUE(names.contains("12:15 PM, Lunch"));
    EXPECT_TRUE(names.contains("Ada Byron (R), 8:00 AM to 8:30 AM, Scheduled"));
    EXPECT_TRUE(names.contains("Donald Knuth, 12:45 PM to 1:15 PM, No-Show"));
    for (int i = 0; i < table->childCount(); ++i) {
        QAccessibleInterface* part = table->child(i);
        EXPECT_EQ(table->indexOfChild(part), i);
        EXPECT_EQ(part->parent(), table);
    }
    std::cout << "A slot reads \"" << names.at(names.indexOf("12:15 PM, Lunch")).toStdString()
              << "\"; an appointment reads \"" << names.filter("Ada Byron").first().toStdString() << "\"\n";

    // The keys move the part a reader finds focused.
    day.setFocus();
    QTest::keyClick(&day, Qt::Key_Home);
    QTest::keyClick(&day, Qt::Key_Down);
    user.settle();
    QAccessibleInterface* focused = table->focusChild();
    ASSERT_TRUE(focused);
    EXPECT_EQ(focused->text(QAccessible::Name), "8:15 AM, free");
    EXPECT_TRUE(focused->state().focused && focused->state().selected);
    // Each column's date stands over it, today's marked in words.
    auto* header = desk.scheduler().findChild<QWidget*>("dateHeader(0)");
    ASSERT_TRUE(header && header->isVisible());
    EXPECT_EQ(qobject_cast<QLabel*>(header)->text(), "Today Mon 11/23");
    EXPECT_EQ(header->accessibleName(), "Monday, November 23, 2026, today");
    if (const QString folder = qEnvironmentVariable("QUORVANE_SCREENSHOTS"); !folder.isEmpty()) {
        QDir().mkpath(folder);
        desk.grab().save(QDir(folder).filePath("desk-focused-slot.png"));
        const QPoint at = header->mapTo(&desk, QPoint(0, 0));
        desk.grab(QRect(0, at.y() - 26, desk.width(), header->height() + 90)).save(QDir(folder).filePath("desk-header.png"));
    }
    QTest::keyClick(&day, Qt::Key_Tab);
    user.settle();
    EXPECT_EQ(table->focusChild()->text(QAccessible::Name), "Ada Byron (R), 8:00 AM to 8:30 AM, Scheduled");
    EXPECT_EQ(table->focusChild()->role(), QAccessible::ListItem);
    // Its tool tip, which is its description, names status and type on the grid's clock.
    const QString tip = table->focusChild()->text(QAccessible::Description);
    EXPECT_TRUE(tip.contains("8:00 AM to 8:30 AM, Scheduled")) << tip.toStdString();
    EXPECT_TRUE(tip.contains("Type: New Patient")) << tip.toStdString();

    // Every field, list and button a user can reach has a name, and a button
    // that shows a picture or "..." has a tool tip too.
    EXPECT_EQ(desk.scheduler().findChild<QWidget*>("txtPatHomePhoneExt")->accessibleName(), "Home Phone Ext");
    EXPECT_EQ(desk.scheduler().findChild<QWidget*>("cmdPatientSearch")->accessibleName(), "Search for a Patient");
    EXPECT_EQ(desk.scheduler().findChild<QWidget*>("cmbNumOfSchedules")->accessibleName(),
              "Number of columns shown");
    for (QWidget* w : desk.scheduler().findChildren<QWidget*>()) {
        if (!w->isVisible() || !(qobject_cast<QAbstractButton*>(w) || qobject_cast<QComboBox*>(w) ||
                                 qobject_cast<QLineEdit*>(w) || qobject_cast<QPlainTextEdit*>(w)))
            continue;
        if (qobject_cast<QLineEdit*>(w) && qobject_cast<QComboBox*>(w->parent())) continue;
        QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(w);
        EXPECT_FALSE(iface->text(QAccessible::Name).isEmpty()) << w->objectName().toStdString();
        if (auto* b = qobject_cast<QAbstractButton*>(w); b && (b->text().isEmpty() || b->text() == "...")) {
            EXPECT_FALSE(b->toolTip().isEmpty()) << w->objectName().toStdString();
        }
    }
}

// Qt tells a reader of focus moves only where an assistive-technology bridge
// is on: tests/access/with_session.sh gives it one, and ctest runs this test there.
TEST(DeskWindowWithAReader, AnArrowKeyTellsTheReaderWhereTheFocusWent) {
    QTemporaryDir dir;
    DeskWindow desk(dir.filePath("practice.sqlite"), makeDate(2026, 11, 23), OpenMode::Demo);
    desk.setUnattended(true);
    desk.show();
    desk.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&desk));
    if (!QAccessible::isActive())
        GTEST_SKIP() << "no assistive-technology bridge is on; tests/access/with_session.sh starts one";
    DeskUser user(desk);
    user.settle();
    DayViewWidget& day = *desk.scheduler().dayView(0);
    const QAccessible::UpdateHandler before = QAccessible::installUpdateHandler(listen);
    heard.clear();
    day.setFocus();
    QTest::keyClick(&day, Qt::Key_Home);
    QTest::keyClick(&day, Qt::Key_Down);
    user.settle();
    QAccessible::installUpdateHandler(before);
    ASSERT_FALSE(heard.empty());
    EXPECT_EQ(heard.back(), "8:15 AM, free");
}

} // namespace
} // namespace practice
