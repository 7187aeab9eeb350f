#include <QuorvaneScheduler/control_internals.h>
#include "control/control_fixture.h"
#include <cmath>

using namespace quorvane;
using quorvane::test::ControlFixture;

struct LayoutTest : ControlFixture {
    SchedulerWidgets& w() { return widgetsOf(*control); }
};

TEST_F(LayoutTest, ResizeThenEachNumberOfColumns) {
    control->ResizeControl(700, 1000);
    EXPECT_FLOAT_EQ(w().sbSchedule.top, 10215);
    EXPECT_FLOAT_EQ(w().sbSchedule.width, 14900);
    EXPECT_EQ(stateOf(*control).lngScheduleWidth, 14900);
    for (int i = 0; i < kColumns; ++i)
        EXPECT_FLOAT_EQ(view(i).Height, 7110);
    EXPECT_FLOAT_EQ(view(1).Width, 1440) << "no number selected yet: widths wait";

    // clang-format off
    const struct { const char* n; float width, left1, left2, left3, resource; } rows[] = {
        {"1", 14900, 14915, 29830, 44745, 14220},
        {"2", 7445, 7460, 14920, 22380, 6765},
        {"3", 4956.667f, 4971.667f, 9943.333f, 14915, 4276.667f},
        {"4", 3710, 3725, 7450, 11175, 3030},
        {"5", 2960, 2975, 5950, 8925, 2280},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.n);
        control->setNumOfSchedules(row.n);
        EXPECT_FLOAT_EQ(view(0).Width, row.width);
        EXPECT_FLOAT_EQ(view(0).Left, 15);
        EXPECT_FLOAT_EQ(view(1).Left, row.left1);
        EXPECT_FLOAT_EQ(view(2).Left, row.left2);
        EXPECT_FLOAT_EQ(view(3).Left, row.left3);
        EXPECT_FLOAT_EQ(w().cmbResource[3].width, row.resource);
        EXPECT_FLOAT_EQ(w().cmbResource[3].left, row.left3 + 680);
        EXPECT_FLOAT_EQ(w().cmbDayIncrement[3].left, row.left3);
        EXPECT_FLOAT_EQ(w().cmbResourceCatType[3].width, row.width);
        EXPECT_FLOAT_EQ(w().cmbResource[0].left, 690) << "column 0 keeps its design lefts";
        EXPECT_EQ(w().sbSchedule.max, 1) << "no view yet: nothing to scroll";
    }
    // A resize with a number selected lays the columns out again; too short a
    // control keeps the bar at its lowest top.
    control->ResizeControl(100, 800);
    EXPECT_FLOAT_EQ(view(0).Width, 2360);
    EXPECT_FLOAT_EQ(w().sbSchedule.top, 4100);
    EXPECT_FLOAT_EQ(view(0).Height, 995);
    EXPECT_TRUE(log.empty()) << "layout reports nothing";
}

TEST_F(LayoutTest, ScrollingPlacesColumnValueMinusOneAtTheEdge) {
    control->ResizeControl(700, 1000);
    w().sbSchedule.tag = "4";
    control->setNumOfSchedules("3");
    EXPECT_EQ(w().sbSchedule.max, 2);
    w().sbSchedule.setValue(2);
    EXPECT_NEAR(view(0).Left, -4941.667, 0.001);
    EXPECT_FLOAT_EQ(view(1).Left, 15);
    EXPECT_NEAR(view(2).Left, 4971.667, 0.001);
    EXPECT_NEAR(view(3).Left, 9928.333, 0.001);
    EXPECT_NEAR(w().cmbResource[0].left, -4941.667 + 680, 0.001);

    // A later layout lowers the maximum to 1 before it sets it again, and the
    // bar keeps its value in range: the value falls to 1, which scrolls the
    // row home in the middle of the layout.
    control->ResizeControl(700, 1000);
    EXPECT_EQ(w().sbSchedule.value, 1);
    EXPECT_EQ(w().sbSchedule.max, 2);
    EXPECT_FLOAT_EQ(view(0).Left, 15);
    EXPECT_NEAR(view(1).Left, 4971.667, 0.001);

    // A view that now fits pulls the value back, which scrolls the row home.
    w().sbSchedule.tag = "2";
    control->setNumOfSchedules("3");
    EXPECT_EQ(w().sbSchedule.max, 1);
    EXPECT_EQ(w().sbSchedule.value, 1);
    EXPECT_FLOAT_EQ(view(0).Left, 15);
    EXPECT_NEAR(view(1).Left, 4956.667 + 15, 0.001);
}

TEST_F(LayoutTest, FailuresStopWhereTheyHappen) {
    control->ResizeControl(700, 1000);
    std::string zero = "0", text = "many", six = "6";
    EXPECT_THROW(control->ModifySchedules(zero), DivisionByZero);
    EXPECT_THROW(control->ModifySchedules(text), TypeMismatch);
    EXPECT_FLOAT_EQ(view(1).Width, 1440) << "nothing has moved";
    EXPECT_THROW(control->setNumOfSchedules("6"), InvalidPropertyValue);
    EXPECT_EQ(w().cmbNumOfSchedules.listIndex(), -1);
    control->ModifySchedules(six);
    EXPECT_NEAR(view(9).Width, 14900 / 6.0 - 25, 0.001) << "the method itself sets no limit";

    w().sbSchedule.tag = "lots";
    w().sbSchedule.setMax(3);
    EXPECT_THROW(control->setNumOfSchedules("2"), TypeMismatch);
    EXPECT_EQ(w().sbSchedule.max, 1) << "fails after the columns are placed, with the maximum at 1";
    EXPECT_FLOAT_EQ(view(9).Width, 7445);

    // A width that does not fit a Single overflows before it is stored, so a
    // scroll afterwards still places finite columns.
    std::string tiny = "1E-300";
    EXPECT_THROW(control->ModifySchedules(tiny), Overflow);
    EXPECT_FLOAT_EQ(view(0).Width, 7445);
    w().sbSchedule.setMax(5);
    w().sbSchedule.setValue(4);
    for (int i = 0; i < kColumns; ++i)
        EXPECT_TRUE(std::isfinite(view(i).Left)) << i;

    EXPECT_THROW(control->ResizeControl(700, 5), InvalidPropertyValue);
    std::string many = "1000";
    EXPECT_THROW(control->ModifySchedules(many), InvalidPropertyValue) << "a negative width is refused";
}
