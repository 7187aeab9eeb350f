// Pixels at known points of the painted window, at device pixel ratios 1 and
// 2: a template cell, an appointment's box, the selected slot, the line of the
// current time, and an appointment's edge, which must fall on whole device
// pixels with nothing blended beside it.

#include <QuorvaneScheduler/control_internals.h>
#include "window_fixture.h"

#include <QCalendarWidget>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <QTextCharFormat>

namespace quorvane::test {
namespace {

TEST_F(WindowTest, PixelsAtKnownPointsAtBothRatios) {
    QTest::mouseClick(&day(1), Qt::LeftButton, {}, at(1, 16, 0));
    const PVDayView::Box grace = model(1).appointmentBoxes().front();
    const int nowRow = model(1).pixelOfMinute(10 * 60 + 45);
    auto point = [&](int column, int x, int y) {
        return day(column).mapTo(window.get(), day(column).fromView({x, y}));
    };
    // clang-format off
    const struct { const char* what; QPoint at; QColor color; } probes[] = {
        {"lunch template cell", inWindow(0, at(0, 12, 30)), QColor(0xC0, 0xC0, 0xC0)},
        {"appointment box", point(1, grace.right - 3, grace.bottom - 3), QColor(0, 255, 0)},
        {"selected slot", inWindow(1, at(1, 16, 0)), selectedSlotColour()},
        {"current time", point(1, grace.right + 2, nowRow), QColor(0xd0, 0x20, 0x20)},
        {"bare cell in business hours", inWindow(0, at(0, 16, 30)), QColor(Qt::white)},
        {"template cell of the second column", point(1, grace.left + 5, 5), QColor(0xFF, 0xE0, 0xA0)},
        {"bare cell after business hours", inWindow(1, at(1, 18, 0)), QColor(Qt::white).darker(108)},
    };
    // clang-format on
    for (const qreal ratio : {1.0, 2.0}) {
        const QImage image = shot(ratio);
        for (const auto& p : probes)
            EXPECT_EQ(image.pixelColor(p.at * ratio).name().toStdString(), p.color.name().toStdString())
                << p.what << " at ratio " << ratio;
        // The box's right edge: every device pixel of its border is the
        // border's colour, and the next one the cell's, at both ratios.
        const QPoint edge = point(1, grace.right - 1, (grace.top + grace.bottom) / 2) * ratio;
        for (int dx = 0; dx < ratio; ++dx)
            EXPECT_EQ(image.pixelColor(edge + QPoint(dx, 0)).name().toStdString(), "#505050")
                << "ratio " << ratio;
        EXPECT_EQ(image.pixelColor(edge + QPoint(int(ratio), 0)).name().toStdString(), "#ffffff")
            << "ratio " << ratio;
        saveShot(image, ratio == 1.0 ? "day" : "day@2x");
    }
}

// The other models as Qt widgets: the calendar's marks in bold, a read-only
// field in the button face with the model's text, a pick list's items.
TEST_F(WindowTest, ModelsShownAsQtWidgets) {
    auto* calendar = window->findChild<QCalendarWidget*>("calCalendar");
    ASSERT_TRUE(calendar);
    EXPECT_EQ(calendar->dateTextFormat(QDate(2008, 1, 15)).fontWeight(), QFont::Bold);
    EXPECT_NE(calendar->dateTextFormat(QDate(2008, 1, 16)).fontWeight(), QFont::Bold);
    auto* name = window->findChild<QLineEdit*>("txtPatName");
    ASSERT_TRUE(name);
    EXPECT_TRUE(name->isReadOnly());
    EXPECT_EQ(name->text(), "Edsger Dijkstra");
    EXPECT_EQ(name->palette().color(QPalette::Base), qColorOf(TextField::kButtonFace));
    auto* increments = window->findChild<QComboBox*>("cmbDayIncrement(1)");
    ASSERT_TRUE(increments);
    EXPECT_EQ(increments->count(), 5);
    EXPECT_EQ(increments->currentText(), "30");
}

} // namespace
} // namespace quorvane::test
