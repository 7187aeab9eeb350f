// The inverse mappings a window relies on: pixel to time, the resize edge, where
// a drag lands, and the press at a point, each checked against the forward
// mapping so the two can never disagree.

#include <QuorvaneScheduler/components/day_view.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace quorvane {
namespace {

OleDate at(int h, int m) { return makeDateTime(2008, 1, 15, h, m, 0); }
std::string text(const std::optional<OleDate>& t) { return t ? generalDateText(*t) : "none"; }

struct DayViewGeometryTest : ::testing::Test {
    DayViewGeometryTest() {
        platform.clock.setToday(makeDate(2008, 1, 15));
        view = std::make_unique<PVDayView>(platform, 0);
        view->Width = 3000, view->Height = 3000; // 200 pixels wide, 10 rows
        view->setTopIndex(makeTime(8, 0, 0));
    }
    Platform platform;
    std::unique_ptr<PVDayView> view;
};

TEST_F(DayViewGeometryTest, PixelRowsAndTimes) {
    struct Case {
        int increments, y;
        const char* time; // at the pixel, to the minute
        const char* slot; // the slot of its row
    } cases[] = {
        {1, 0, "1/15/2008 8:00:00 AM", "1/15/2008 8:00:00 AM"},
        {1, 19, "1/15/2008 8:28:00 AM", "1/15/2008 8:00:00 AM"},
        {1, 20, "1/15/2008 8:30:00 AM", "1/15/2008 8:30:00 AM"},
        {4, 30, "1/15/2008 8:07:00 AM", "1/15/2008 8:05:00 AM"},
        {0, 199, "1/15/2008 5:57:00 PM", "1/15/2008 5:00:00 PM"},
        {1, 200, "none", "none"}, // below the last row
        {1, -1, "none", "none"},
    };
    for (const Case& c : cases) {
        view->setIncrements(c.increments);
        EXPECT_EQ(text(view->timeAtPixel(c.y)), c.time) << c.increments << "/" << c.y;
        EXPECT_EQ(text(view->slotAtPixel(c.y)), c.slot) << c.increments << "/" << c.y;
        if (const auto t = view->timeAtPixel(c.y)) {
            EXPECT_LE(view->pixelOfMinute(minuteOfDay(*t)), c.y)
                << "a time's row starts at or above the pixel";
        }
    }
    view->setIncrements(1);
    EXPECT_EQ(view->pixelOfMinute(7 * 60), -40);
    // The grid ends with the day: from 11 PM only two rows remain.
    view->setTopIndex(makeTime(23, 0, 0));
    EXPECT_EQ(view->gridRows(), 2);
    EXPECT_EQ(text(view->timeAtPixel(40)), "none");
}

TEST_F(DayViewGeometryTest, ResizeEdgeAndEnd) {
    view->setIncrements(1); // 30 minutes
    AppointmentSet& set = view->appointmentSet();
    set.Add("long", at(9, 0), at(10, 0));    // rows 40..79
    set.Add("short", at(11, 0), at(11, 5));  // rows 120..123: a band of 2
    set.Add("below", at(12, 30), at(14, 0)); // its end lies under the last row shown
    std::string edges;                       // the key whose edge lies under x 60, at each row
    for (const int y : {75, 76, 80, 121, 123, 199})
        edges += std::to_string(view->resizeEdgeAt(60, y) ? view->resizeEdgeAt(60, y)->Key() : 0);
    EXPECT_EQ(edges, "010020") << "the band is 4 rows, 2 on a short one, none where the grid cuts the end";

    struct Case {
        std::int32_t key;
        int y;
        const char* end;
    } cases[] = {
        {1, 89, "1/15/2008 10:00:00 AM"},
        {1, 131, "1/15/2008 11:30:00 AM"},
        {1, 10, "1/15/2008 9:30:00 AM"},
        {1, 500, "1/15/2008 12:30:00 PM"}, // no lower than the start of the last row
        {2, 0, "1/15/2008 11:30:00 AM"},
        {9, 90, "none"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(text(view->resizeEndAt(c.key, c.y)), c.end) << c.key << "/" << c.y;
    // Whatever it gives, the gesture takes.
    EXPECT_TRUE(view->userResize(1, *view->resizeEndAt(1, 500)));
}

TEST_F(DayViewGeometryTest, WhereADragLands) {
    view->setIncrements(1);
    PVDayView target(platform, 1);
    target.Width = 3000, target.Height = 3000;
    target.setIncrements(2); // 15 minutes, from 10 AM
    target.setTopIndex(makeTime(10, 0, 0));
    view->appointmentSet().Add("a", at(9, 0), at(10, 0));
    const int grab = *view->grabMinutes(1, 50); // 15 minutes below the start
    EXPECT_EQ(grab, 15);
    struct Case {
        int y;
        const char* start;
    } cases[] = {
        {40, "1/15/2008 10:15:00 AM"}, // 10:30 under the pointer, less the grab
        {50, "1/15/2008 10:15:00 AM"}, // 10:22 less the grab: still nearer to 10:15
        {51, "1/15/2008 10:30:00 AM"},  {0, "1/15/2008 10:00:00 AM"}, // kept on the first row
        {900, "1/15/2008 12:15:00 PM"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(text(target.dropStartAt(c.y, grab)), c.start) << c.y;
    EXPECT_EQ(view->grabMinutes(2, 50), std::nullopt);
    target.Height = 0;
    EXPECT_EQ(target.dropStartAt(40, grab), std::nullopt);
}

// The window's press carries the pointer itself in MouseButton; the console's
// aimed clicks are covered by the gesture tests. Scrolling stops at the day's ends.
TEST_F(DayViewGeometryTest, PressAtAPointAndScrollWithinTheDay) {
    view->setIncrements(1);
    view->appointmentSet().Add("a", at(9, 0), at(10, 0));
    std::vector<std::string> log;
    view->MouseButton = [&](std::int16_t, std::int16_t b, std::int16_t, float x, float y) {
        log.push_back(std::to_string(b) + "@" + std::to_string(int(x)) + "," + std::to_string(int(y)));
    };
    view->TopIndexChange = [&](std::int16_t, OleDate t) { log.push_back(generalDateText(t)); };
    EXPECT_TRUE(view->userPressAt(60, 50));        // on the appointment
    EXPECT_TRUE(view->userPressAt(180, 25, true)); // beside it
    EXPECT_FALSE(view->userPressAt(60, 200));
    EXPECT_FALSE(view->userPressAt(200, 20));
    EXPECT_TRUE(view->appointmentSet().Item(1)->Selected());
    for (const int rows : {-3, -100, 100, 100})
        if (const auto top = view->topAfterScroll(rows)) view->userScroll(*top);
    // 48 rows a day, 10 shown: the last top row is 38, 7 PM.
    EXPECT_EQ(log, (std::vector<std::string>{"1@900,750", "2@2700,375", "1/15/2008 6:30:00 AM", "1/15/2008",
                                             "1/15/2008 7:00:00 PM"}));
}

} // namespace
} // namespace quorvane
