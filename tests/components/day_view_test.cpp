#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/components/day_view.h>
#include <QuorvaneScheduler/errors.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using Point = std::optional<std::pair<int, int>>;
using Log = std::vector<std::string>;

OleDate at(int h, int m) { return makeDateTime(2008, 1, 15, h, m, 0); }
std::string arg(std::int16_t v) { return std::to_string(v); }
std::string arg(float v) { return std::to_string(std::lround(v)); }
std::string arg(OleDate d) { return generalDateText(d); }
std::string arg(const AppointmentRef& a) { return std::to_string(a->Key()); }
std::string text(const std::optional<OleDate>& t) { return t ? generalDateText(*t) : "none"; }

// Views on 1/15/2008 whose events all go to one log; `hook` runs after each line.
struct DayViewTest : ::testing::Test {
    DayViewTest() { listen(view), listen(other); }

    template <class... A> std::function<void(std::int16_t, A...)> logger(const char* name) {
        return [this, name](std::int16_t index, A... a) {
            std::string line = name + ("(" + arg(index));
            ((line += "," + arg(a)), ...);
            log.push_back(line + ")");
            if (const auto h = hook) h(name); // a hook may replace itself
        };
    }
    void listen(PVDayView& v) {
        // clang-format off
        hooksOf(v).GotFocus = logger<>("GotFocus"), hooksOf(v).Click = logger<>("Click"), hooksOf(v).DblClick = logger<>("DblClick");
        hooksOf(v).MouseButton = logger<std::int16_t, std::int16_t, float, float>("MouseButton");
        hooksOf(v).AfterAdd = logger<AppointmentRef>("AfterAdd"), hooksOf(v).BeforeRemove = logger<AppointmentRef>("BeforeRemove");
        hooksOf(v).AfterResize = logger<AppointmentRef>("AfterResize"), hooksOf(v).BeforeDrag = logger<AppointmentRef>("BeforeDrag");
        hooksOf(v).AfterDrag = logger<AppointmentRef>("AfterDrag"), hooksOf(v).DateChange = logger<OleDate>("DateChange");
        hooksOf(v).TopIndexChange = logger<OleDate>("TopIndexChange"), hooksOf(v).TimeSlotSelect = logger<OleDate>("TimeSlotSelect");
        // clang-format on
    }
    // The events since the last call, or "refused" for a gesture that did nothing.
    std::string took(bool done) {
        std::string s;
        for (const std::string& line : std::exchange(log, {}))
            s += line + " ";
        return done ? s.substr(0, s.size() - !s.empty()) : s + "refused";
    }
    std::string selectedSlots() const {
        std::string s;
        for (int m = 0; m < 1440; m += 30)
            if (view.TimeSlotSelected(makeTime(m / 60, m % 60, 0)))
                s += shortTimeText(makeTime(m / 60, m % 60, 0)) + " ";
        return s;
    }
    // "KEY:Text" per appointment, with * when Selected, or with its times.
    static std::string keys(const PVDayView& v, bool times = false) {
        std::string s;
        for (const AppointmentRef& a : v.appointmentSet().items()) {
            s += std::to_string(a->Key()) + ":" + a->Text + (a->Selected() ? "*" : "");
            s +=
                (times ? "@" + generalDateText(a->StartDateTime) + "-" + shortTimeText(a->EndDateTime) : "") +
                " ";
        }
        return s;
    }

    Platform platform;
    // Before the views, which take today as their date when they are built.
    bool todayFixed = (platform.clock.setToday(makeDate(2008, 1, 15)), true);
    PVDayView view{platform, 2}, other{platform, 5};
    Log log;
    std::function<void(const std::string& event)> hook;
};

TEST_F(DayViewTest, PropertiesCellsAndFailures) {
    view.setCurrentDate(at(17, 0)); // the same day: no event
    view.setCurrentDate(makeDateTime(2008, 2, 1, 9, 0, 0));
    view.setTopIndex(makeTime(8, 0, 0));
    view.setTopIndex(at(9, 0));
    EXPECT_EQ(log, (Log{"DateChange(2,1/15/2008)", "TopIndexChange(2,1/15/2008 9:00:00 AM)"}));
    EXPECT_EQ(view.CurrentDate(), makeDate(2008, 2, 1));

    // Cells keep selection and colour whatever the slot length; only the time of day counts.
    view.setTimeSlotColor(at(9, 0), at(9, 25), 7);
    view.setTimeSlotColor(at(11, 0), at(10, 0), 8); // end before start: nothing
    view.setTimeSlotSelected(makeDateTime(2000, 1, 1, 9, 10, 0), true);
    // "increments hh:mm" of each probe: selected (+/-) and colour.
    std::string probes;
    for (const auto& [inc, h, m] : std::vector<std::array<int, 3>>{
             {1, 9, 0}, {1, 9, 29}, {1, 9, 30}, {2, 9, 15}, {4, 9, 25}, {0, 9, 0}, {3, 10, 0}}) {
        view.setIncrements(inc);
        probes += (view.TimeSlotSelected(makeTime(h, m, 0)) ? "+" : "-") +
                  std::to_string(view.TimeSlotColor(makeTime(h, m, 0)) == 7) + " ";
    }
    EXPECT_EQ(probes, "+1 +1 -0 +1 +1 -1 -0 ");

    const OleDate nan(std::numeric_limits<double>::quiet_NaN());
    EXPECT_THROW(view.setIncrements(5), InvalidPropertyValue);
    EXPECT_THROW(view.setIncrements(-1), InvalidPropertyValue);
    EXPECT_EQ(view.Increments(), 3);
    EXPECT_THROW(view.setCurrentDate(nan), InvalidProcedureCall);
    EXPECT_THROW(view.setTopIndex(OleDate(1e18)), InvalidProcedureCall);
    EXPECT_THROW(view.TimeSlotSelected(nan), InvalidProcedureCall);
    EXPECT_THROW(view.userClickAt(nan), InvalidProcedureCall);
    EXPECT_THROW(view.appointmentSet().Add("x", nan, at(9, 0)), InvalidProcedureCall);
    EXPECT_EQ(view.CurrentDate(), makeDate(2008, 2, 1));
    EXPECT_EQ(log.size(), 2u);
}

TEST_F(DayViewTest, GeometryAndHitTest) {
    // 1440 x 7020 twips: 96 pixels wide (ruler 0..39, appointments 40..81, free strip 82..95), 23 rows
    // of 20 pixels. Overlapping appointments take lanes: two share 40..60 and 61..81.
    AppointmentSet& set = view.appointmentSet();
    set.Add("nine", at(9, 0), at(10, 0));
    set.Add("early", at(7, 0), at(9, 0));
    set.Add("evening", at(20, 0), at(21, 0));
    set.Add("tomorrow", makeDateTime(2008, 1, 16, 9, 0, 0), makeDateTime(2008, 1, 16, 10, 0, 0));
    set.Add("empty", at(12, 0), at(12, 0));
    set.Add("late", at(18, 0), makeDateTime(2008, 1, 16, 2, 0, 0));
    set.Add("overlap", at(9, 30), at(9, 45));
    // increments, top, a time and its point, a key and its appointment's point
    const std::tuple<int, OleDate, OleDate, Point, std::int32_t, Point> cases[] = {
        // clang-format off
        {1, at(8, 0), at(9, 30), {{89, 70}}, 1, {{50, 60}}}, // "nine" shares its rows with "overlap"
        {1, at(8, 0), at(7, 59), std::nullopt, 2, {{61, 20}}}, {1, at(8, 0), at(19, 29), {{89, 450}}, 3, std::nullopt},
        {1, at(8, 0), at(19, 30), std::nullopt, 4, std::nullopt}, {1, at(8, 0), at(12, 0), {{89, 170}}, 5, std::nullopt},
        {1, at(8, 0), at(12, 0), {{89, 170}}, 6, {{50, 430}}}, {0, at(8, 40), at(9, 59), {{89, 30}}, 1, {{50, 30}}},
        {4, at(8, 0), at(8, 7), {{89, 30}}, 7, {{71, 390}}},
        {0, at(22, 0), at(23, 59), {{89, 30}}, 6, {{50, 20}}}, // the grid ends at midnight
        // clang-format on
    };
    for (const auto& [increments, top, time, point, key, app] : cases) {
        view.setIncrements(increments);
        view.setTopIndex(timePart(top));
        EXPECT_EQ(view.pointOfTime(time), point) << increments << " " << generalDateText(time);
        EXPECT_EQ(view.pointOfAppointment(key), app) << increments << " key " << key;
    }
    view.setIncrements(1);
    view.setTopIndex(makeTime(8, 0, 0));
    auto hit = [&](int x, int y) { return set.HitTest(x, y) ? set.HitTest(x, y)->Key() : 0; };
    const std::vector<std::pair<int, int>> hits{{40, 40}, {60, 79}, {70, 79},  {82, 60},  {50, 80}, {50, 39},
                                                {70, 65}, {50, 65}, {50, 459}, {50, 460}, {39, 40}, {-1, 40}};
    std::vector<int> found;
    for (const auto& [x, y] : hits)
        found.push_back(hit(x, y));
    // Each overlapping appointment is found in its own lane, and keeps the lane
    // where its partner has ended.
    EXPECT_EQ(found, (std::vector<int>{1, 1, 0, 0, 0, 2, 7, 1, 6, 0, 0, 0}));

    view.Width = 0, view.Height = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(view.visibleRows(), 0);
    EXPECT_EQ(view.pointOfTime(at(9, 0)), std::nullopt);
    EXPECT_EQ(view.pointOfAppointment(1), std::nullopt);
    EXPECT_EQ(hit(0, 0), 0);
}

TEST_F(DayViewTest, KeysAndRemoveUnderReentrantHandlers) {
    // What the first BeforeRemove's handler does, the keys left, and the BeforeRemoves raised.
    const std::tuple<const char*, std::function<void(PVDayView&)>, const char*, int> cases[] = {
        {"plain", [](PVDayView&) {}, "2:b ", 1},
        {"Undo keeps it", [](PVDayView& v) { v.Undo(); }, "1:a 2:b ", 1},
        {"handler empties the set", [](PVDayView& v) { v.appointmentSet().RemoveAll(); }, "", 1},
        {"handler removes it first", [](PVDayView& v) { v.appointmentSet().Remove(1); }, "2:b ", 2},
        {"Undo after a nested gesture cancels this removal, not the gesture",
         [](PVDayView& v) { v.userType(at(10, 0), "typed"), v.Undo(); }, "1:a 2:b 3:typed ", 1},
    };
    for (const auto& [name, handler, left, beforeRemoves] : cases) {
        PVDayView v(platform, 2);
        listen(v);
        v.appointmentSet().Add("a", at(9, 0), at(9, 30));
        v.appointmentSet().Add("b", at(9, 30), at(10, 0));
        const AppointmentRef first = v.appointmentSet().FirstAppointment();
        log.clear();
        hook = [&, &handler = handler](const std::string&) { hook = nullptr, handler(v); };
        v.appointmentSet().Remove(1);
        v.Undo(); // nothing is left to take back once the removal has ended
        EXPECT_EQ(keys(v), left) << name;
        EXPECT_EQ(std::count(log.begin(), log.end(), "BeforeRemove(2,1)"), beforeRemoves) << name;
        EXPECT_EQ(first->view(), v.appointmentSet().Item(1) ? &v : nullptr) << name;
    }

    // A key no appointment has fails; an appointment outlives its view.
    auto owner = std::make_unique<PVDayView>(platform, 0);
    const AppointmentRef d = owner->appointmentSet().Add("d", at(9, 0), at(9, 30));
    EXPECT_THROW(owner->appointmentSet().Remove(2), InvalidProcedureCall);
    owner.reset();
    EXPECT_EQ(d->view(), nullptr);
}

TEST_F(DayViewTest, ClicksRaiseTheirEventsInOrder) {
    view.appointmentSet().Add("a", at(9, 0), at(10, 0));
    view.appointmentSet().Add("b", at(11, 0), at(11, 30))->setSelected(true);
    EXPECT_EQ(took(view.userClickAt(at(9, 40))),
              "GotFocus(2) MouseButton(2,1,0,1335,1050) TimeSlotSelect(2,1/15/2008 9:30:00 AM) Click(2)");
    EXPECT_EQ(took(view.userClickAt(at(12, 0), true)), "MouseButton(2,2,0,1335,2550)");
    EXPECT_EQ(selectedSlots(), "09:30 ");
    EXPECT_EQ(took(view.userClickOn(1)), "MouseButton(2,1,0,915,900) Click(2)");
    EXPECT_EQ(took(view.userClickOn(2, true)), "MouseButton(2,2,0,915,1950)");
    EXPECT_EQ(keys(view), "1:a* 2:b ");
    EXPECT_EQ(took(view.userDblClickOn(2)), "MouseButton(2,1,0,915,1950) Click(2) DblClick(2)");
    EXPECT_EQ(keys(view), "1:a 2:b* ");
    view.userSlot(makeTime(14, 10, 0));
    EXPECT_EQ(took(true), "TimeSlotSelect(2,1/15/2008 2:00:00 PM)");
    EXPECT_EQ(took(view.userClickAt(at(20, 0))), "refused");
    EXPECT_EQ(took(view.userDblClickOn(9)), "refused");
    EXPECT_EQ(selectedSlots(), "14:00 ");
    EXPECT_EQ(platform.container.activeControl(), "dvwResource(2)");
}

TEST_F(DayViewTest, EditsAndTheirUndo) {
    std::string undoIn;
    hook = [&](const std::string& event) {
        if (event == undoIn) view.Undo();
    };
    EXPECT_EQ(took(view.userType(at(9, 40), "new")), "AfterAdd(2,1)");
    undoIn = "AfterAdd";
    EXPECT_EQ(took(view.userType(at(11, 0), "x")), "AfterAdd(2,2)");
    EXPECT_EQ(keys(view, true), "1:new@1/15/2008 9:30:00 AM-10:00 ");
    EXPECT_EQ(took(view.userResize(1, makeDateTime(2009, 5, 5, 11, 0, 0))), "AfterResize(2,1)");
    undoIn = "AfterResize";
    EXPECT_EQ(took(view.userResize(1, at(12, 0))), "AfterResize(2,1)");
    EXPECT_EQ(took(view.userResize(1, at(7, 0))), "refused"); // above the grid
    undoIn = "BeforeRemove";
    EXPECT_EQ(took(view.userDelete(1)), "BeforeRemove(2,1)");
    EXPECT_EQ(keys(view, true), "1:new@1/15/2008 9:30:00 AM-11:00 ");
    view.userScroll(makeTime(7, 0, 0));
    view.userScroll(at(7, 0));
    view.userDate(makeDate(2008, 1, 16));
    EXPECT_EQ(took(true), "TopIndexChange(2,1/15/2008 7:00:00 AM) DateChange(2,1/15/2008)");
    EXPECT_EQ(took(view.userResize(1, at(12, 0))), "refused"); // not on the date shown
    undoIn.clear();
    EXPECT_EQ(took(view.userDelete(1)), "BeforeRemove(2,1)");
    EXPECT_EQ(took(view.userDelete(1)), "refused");
    EXPECT_EQ(view.appointmentSet().Count(), 0);
}

TEST_F(DayViewTest, DragStepsUndoAndHandlersThatEmptyTheSets) {
    const std::string add = "BeforeDrag(2,1) AfterAdd(5,1)", moved = "1:a@1/16/2008 10:00:00 AM-11:30 ";
    struct Case {
        std::string undoIn, emptyIn, events;
        const char* source;
        const char* target; // nothing: the drop is on the source itself
    } cases[] = {
        {"", "", add + " AfterDrag(5,1) BeforeRemove(2,1)", "", moved.c_str()},
        {"AfterAdd", "", add + " BeforeRemove(2,1)", "", ""},
        {"AfterDrag", "", add + " AfterDrag(5,1) BeforeRemove(2,1)", "", ""},
        {"BeforeRemove", "", add + " AfterDrag(5,1) BeforeRemove(2,1)", "1:a@1/15/2008 9:00:00 AM-10:30 ",
         moved.c_str()},
        {"", "BeforeDrag", "BeforeDrag(2,1)", "", ""},
        {"", "AfterAdd", add, "", ""},
        {"", "AfterDrag", add + " AfterDrag(5,1)", "", ""},
        {"", "", "BeforeDrag(2,1) AfterAdd(2,2) AfterDrag(2,2) BeforeRemove(2,1)",
         "2:a@1/15/2008 10:00:00 AM-11:30 ", nullptr},
    };
    for (const Case& c : cases) {
        PVDayView source(platform, 2), target(platform, 5);
        listen(source), listen(target);
        target.setCurrentDate(makeDate(2008, 1, 16));
        const AppointmentRef original = source.appointmentSet().Add("a", at(9, 0), at(10, 30));
        original->Tag = "1204~~5531", original->BackColor = 255;
        PVDayView& to = c.target ? target : source;
        hook = [&](const std::string& event) {
            if (event == c.undoIn) (event == "BeforeRemove" ? source : to).Undo();
            if (event == c.emptyIn) source.appointmentSet().RemoveAll(), to.appointmentSet().RemoveAll();
        };
        log.clear();
        EXPECT_EQ(took(source.userDrag(1, to, makeTime(10, 0, 0))), c.events) << c.undoIn << c.emptyIn;
        EXPECT_EQ(keys(source, true), c.source) << c.events;
        EXPECT_EQ(keys(target, true), c.target ? c.target : "") << c.events;
        for (const AppointmentRef& copy : to.appointmentSet().items())
            EXPECT_EQ(copy->Tag + "/" + std::to_string(copy->BackColor), "1204~~5531/255") << c.events;
    }
    hook = nullptr;
    view.appointmentSet().Add("a", at(9, 0), at(10, 0));
    EXPECT_EQ(took(view.userDrag(1, other, makeTime(22, 0, 0))), "refused"); // outside the target's grid
    EXPECT_EQ(took(view.userDrag(2, other, makeTime(10, 0, 0))), "refused");
}

TEST_F(DayViewTest, HandlerThatDropsItselfRunsToItsEnd) {
    view.appointmentSet().Add("a", at(9, 0), at(10, 0));
    Log ran;
    // Each handler empties its own event and then still reads its captured name.
    auto once = [&ran](std::function<void(std::int16_t, AppointmentRef)>& event, std::string name) {
        event = [&event, &ran, name](std::int16_t, AppointmentRef) { event = nullptr, ran.push_back(name); };
    };
    once(hooksOf(view).BeforeDrag, "BeforeDrag"), once(hooksOf(other).AfterAdd, "AfterAdd");
    once(hooksOf(other).AfterDrag, "AfterDrag"), once(hooksOf(view).BeforeRemove, "BeforeRemove");
    hooksOf(other).Click = [this, &ran, name = std::string("Click")](std::int16_t) {
        hooksOf(other).Click = nullptr, ran.push_back(name);
    };
    EXPECT_TRUE(view.userDrag(1, other, makeTime(10, 0, 0)));
    EXPECT_TRUE(other.userClickOn(1));
    EXPECT_TRUE(other.userClickOn(1));
    EXPECT_EQ(ran, (Log{"BeforeDrag", "AfterAdd", "AfterDrag", "BeforeRemove", "Click"}));
}

// The inverse mappings a window relies on: pixel to time, the resize edge, where
// a drag lands, and the press at a point, each checked against the forward
// mapping so the two can never disagree. The view is 200 pixels wide, 10 rows from 8 AM.
struct DayViewGeometryTest : DayViewTest {
    DayViewGeometryTest() { view.Width = 3000, view.Height = 3000, view.setTopIndex(makeTime(8, 0, 0)); }
};

TEST_F(DayViewGeometryTest, PixelRowsAndTimes) {
    // increments, a pixel row, the time there to the minute, the slot of its row
    const std::tuple<int, int, const char*, const char*> cases[] = {
        // clang-format off
        {1, 0, "1/15/2008 8:00:00 AM", "1/15/2008 8:00:00 AM"}, {1, 19, "1/15/2008 8:28:00 AM", "1/15/2008 8:00:00 AM"},
        {1, 20, "1/15/2008 8:30:00 AM", "1/15/2008 8:30:00 AM"}, {4, 30, "1/15/2008 8:07:00 AM", "1/15/2008 8:05:00 AM"},
        {0, 199, "1/15/2008 5:57:00 PM", "1/15/2008 5:00:00 PM"},
        {1, 200, "none", "none"}, {1, -1, "none", "none"}, // below the last row, above the first
        // clang-format on
    };
    for (const auto& [increments, y, time, slot] : cases) {
        view.setIncrements(increments);
        EXPECT_EQ(text(view.timeAtPixel(y)), time) << increments << "/" << y;
        EXPECT_EQ(text(view.slotAtPixel(y)), slot) << increments << "/" << y;
        const auto t = view.timeAtPixel(y);
        EXPECT_LE(t ? view.pixelOfMinute(minuteOfDay(*t)) : y, y)
            << "a time's row starts at or above the pixel";
    }
    view.setIncrements(1);
    EXPECT_EQ(view.pixelOfMinute(7 * 60), -40);
    // The grid ends with the day: from 11 PM only two rows remain.
    view.setTopIndex(makeTime(23, 0, 0));
    EXPECT_EQ(view.gridRows(), 2);
    EXPECT_EQ(text(view.timeAtPixel(40)), "none");
}

TEST_F(DayViewGeometryTest, ResizeEdgeAndEnd) {
    view.setIncrements(1); // 30 minutes
    AppointmentSet& set = view.appointmentSet();
    set.Add("long", at(9, 0), at(10, 0));    // rows 40..79
    set.Add("short", at(11, 0), at(11, 5));  // rows 120..123: a band of 2
    set.Add("below", at(12, 30), at(14, 0)); // its end lies under the last row shown
    std::string edges;                       // the key whose edge lies under x 60, at each row
    for (const int y : {75, 76, 80, 121, 123, 199})
        edges += std::to_string(view.resizeEdgeAt(60, y) ? view.resizeEdgeAt(60, y)->Key() : 0);
    EXPECT_EQ(edges, "010020") << "the band is 4 rows, 2 on a short one, none where the grid cuts the end";

    // The end a pull of a key's edge to a row gives: no lower than the start of the last row.
    const std::tuple<std::int32_t, int, const char*> cases[] = {
        {1, 89, "1/15/2008 10:00:00 AM"},  {1, 131, "1/15/2008 11:30:00 AM"}, {1, 10, "1/15/2008 9:30:00 AM"},
        {1, 500, "1/15/2008 12:30:00 PM"}, {2, 0, "1/15/2008 11:30:00 AM"},   {9, 90, "none"}};
    for (const auto& [key, y, end] : cases)
        EXPECT_EQ(text(view.resizeEndAt(key, y)), end) << key << "/" << y;
    // Whatever it gives, the gesture takes.
    EXPECT_TRUE(view.userResize(1, *view.resizeEndAt(1, 500)));
}

TEST_F(DayViewGeometryTest, WhereADragLands) {
    view.setIncrements(1);
    PVDayView target(platform, 1);
    target.Width = 3000, target.Height = 3000;
    target.setIncrements(2); // 15 minutes, from 10 AM
    target.setTopIndex(makeTime(10, 0, 0));
    view.appointmentSet().Add("a", at(9, 0), at(10, 0));
    const int grab = *view.grabMinutes(1, 50); // 15 minutes below the start
    EXPECT_EQ(grab, 15);
    // At 40, 10:30 under the pointer less the grab; at 50, 10:22 less the grab is still
    // nearer to 10:15; above the grid the drop is kept on the first row.
    const std::pair<int, const char*> cases[] = {{40, "1/15/2008 10:15:00 AM"},
                                                 {50, "1/15/2008 10:15:00 AM"},
                                                 {51, "1/15/2008 10:30:00 AM"},
                                                 {0, "1/15/2008 10:00:00 AM"},
                                                 {900, "1/15/2008 12:15:00 PM"}};
    for (const auto& [y, start] : cases)
        EXPECT_EQ(text(target.dropStartAt(y, grab)), start) << y;
    EXPECT_EQ(view.grabMinutes(2, 50), std::nullopt);
    target.Height = 0;
    EXPECT_EQ(target.dropStartAt(40, grab), std::nullopt);
}

// The window's press carries the pointer itself in MouseButton; the console's
// aimed clicks are covered by the gesture tests. Scrolling stops at the day's ends.
TEST_F(DayViewGeometryTest, PressAtAPointAndScrollWithinTheDay) {
    view.setIncrements(1);
    view.appointmentSet().Add("a", at(9, 0), at(10, 0));
    Log seen; // the press and scroll events alone
    hooksOf(view).MouseButton = [&](std::int16_t, std::int16_t b, std::int16_t, float x, float y) {
        seen.push_back(std::to_string(b) + "@" + std::to_string(int(x)) + "," + std::to_string(int(y)));
    };
    hooksOf(view).TopIndexChange = [&](std::int16_t, OleDate t) { seen.push_back(generalDateText(t)); };
    EXPECT_TRUE(view.userPressAt(60, 50));        // on the appointment
    EXPECT_TRUE(view.userPressAt(180, 25, true)); // beside it
    EXPECT_FALSE(view.userPressAt(60, 200));
    EXPECT_FALSE(view.userPressAt(200, 20));
    EXPECT_TRUE(view.appointmentSet().Item(1)->Selected());
    for (const int rows : {-3, -100, 100, 100})
        if (const auto top = view.topAfterScroll(rows)) view.userScroll(*top);
    // 48 rows a day, 10 shown: the last top row is 38, 7 PM.
    EXPECT_EQ(seen,
              (Log{"1@900,750", "2@2700,375", "1/15/2008 6:30:00 AM", "1/15/2008", "1/15/2008 7:00:00 PM"}));
}

} // namespace
} // namespace quorvane
