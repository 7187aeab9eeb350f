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
        v.GotFocus = logger<>("GotFocus"), v.Click = logger<>("Click"), v.DblClick = logger<>("DblClick");
        v.MouseButton = logger<std::int16_t, std::int16_t, float, float>("MouseButton");
        v.AfterAdd = logger<AppointmentRef>("AfterAdd"),
        v.BeforeRemove = logger<AppointmentRef>("BeforeRemove");
        v.AfterResize = logger<AppointmentRef>("AfterResize"),
        v.BeforeDrag = logger<AppointmentRef>("BeforeDrag");
        v.AfterDrag = logger<AppointmentRef>("AfterDrag"), v.DateChange = logger<OleDate>("DateChange");
        v.TopIndexChange = logger<OleDate>("TopIndexChange"),
        v.TimeSlotSelect = logger<OleDate>("TimeSlotSelect");
    }
    // The events since the last call, or "refused" for a gesture that did nothing.
    std::string took(bool done) {
        std::string s;
        for (const std::string& line : log)
            s += (s.empty() ? "" : " ") + line;
        log.clear();
        return done ? s : s + "refused";
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
        for (const AppointmentRef& a : v.appointmentSet().items())
            s +=
                std::to_string(a->Key()) + ":" + a->Text + (a->Selected() ? "*" : "") +
                (times ? "@" + generalDateText(a->StartDateTime) + "-" + shortTimeText(a->EndDateTime) : "") +
                " ";
        return s;
    }

    Platform platform;
    // Before the views, which take today as their date when they are built.
    bool todayFixed = (platform.clock.setToday(makeDate(2008, 1, 15)), true);
    PVDayView view{platform, 2}, other{platform, 5};
    Log log;
    std::function<void(const std::string& event)> hook;
};
struct AppointmentSetTest : DayViewTest {};
struct GestureTest : DayViewTest {};

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
    struct Case {
        int increments, topH, topM;
        OleDate t;
        Point time;
        std::int32_t key;
        Point app;
    } cases[] = {
        {1, 8, 0, at(9, 30), {{89, 70}}, 1, {{50, 60}}}, // "nine" shares its rows with "overlap"
        {1, 8, 0, at(7, 59), std::nullopt, 2, {{61, 20}}},
        {1, 8, 0, at(19, 29), {{89, 450}}, 3, std::nullopt},
        {1, 8, 0, at(19, 30), std::nullopt, 4, std::nullopt},
        {1, 8, 0, at(12, 0), {{89, 170}}, 5, std::nullopt},
        {1, 8, 0, at(12, 0), {{89, 170}}, 6, {{50, 430}}},
        {0, 8, 40, at(9, 59), {{89, 30}}, 1, {{50, 30}}},
        {4, 8, 0, at(8, 7), {{89, 30}}, 7, {{71, 390}}},
        {0, 22, 0, at(23, 59), {{89, 30}}, 6, {{50, 20}}}, // the grid ends at midnight
    };
    for (const Case& c : cases) {
        view.setIncrements(c.increments);
        view.setTopIndex(makeTime(c.topH, c.topM, 0));
        EXPECT_EQ(view.pointOfTime(c.t), c.time) << c.increments << " " << generalDateText(c.t);
        EXPECT_EQ(view.pointOfAppointment(c.key), c.app) << c.increments << " key " << c.key;
    }
    view.setIncrements(1);
    view.setTopIndex(makeTime(8, 0, 0));
    auto hit = [&](int x, int y) { return set.HitTest(x, y) ? set.HitTest(x, y)->Key() : 0; };
    const std::vector<std::pair<int, int>> hits{{40, 40}, {60, 79}, {70, 79}, {82, 60}, {50, 80}, {50, 39},
                                                {70, 65}, {50, 65}, {50, 459}, {50, 460}, {39, 40}, {-1, 40}};
    std::vector<int> found;
    for (const auto& [x, y] : hits)
        found.push_back(hit(x, y));
    // Each overlapping appointment is found in its own lane, and keeps the lane
    // where its partner has ended.
    EXPECT_EQ(found, (std::vector<int>{1, 1, 0, 0, 0, 2, 7, 1, 6, 0, 0, 0}));
    for (const std::int32_t key : {1, 2, 6, 7}) {
        const auto p = view.pointOfAppointment(key);
        EXPECT_EQ(hit(p->first, p->second), key) << "the point of an appointment finds it again";
    }

    view.Width = 0, view.Height = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(view.visibleRows(), 0);
    EXPECT_EQ(view.pointOfTime(at(9, 0)), std::nullopt);
    EXPECT_EQ(view.pointOfAppointment(1), std::nullopt);
    EXPECT_EQ(hit(0, 0), 0);
}

TEST_F(AppointmentSetTest, KeysAndRemoveUnderReentrantHandlers) {
    struct Case {
        const char* name;
        std::function<void(PVDayView&)> handler; // of the first BeforeRemove
        const char* left;
        int beforeRemoves;
    };
    const std::vector<Case> cases{
        {"plain", [](PVDayView&) {}, "2:b ", 1},
        {"Undo keeps it", [](PVDayView& v) { v.Undo(); }, "1:a 2:b ", 1},
        {"handler empties the set", [](PVDayView& v) { v.appointmentSet().RemoveAll(); }, "", 1},
        {"handler removes it first", [](PVDayView& v) { v.appointmentSet().Remove(1); }, "2:b ", 2},
        {"Undo after a nested gesture cancels this removal, not the gesture",
         [](PVDayView& v) { v.userType(at(10, 0), "typed"), v.Undo(); }, "1:a 2:b 3:typed ", 1},
    };
    for (const Case& c : cases) {
        PVDayView v(platform, 2);
        listen(v);
        v.appointmentSet().Add("a", at(9, 0), at(9, 30));
        v.appointmentSet().Add("b", at(9, 30), at(10, 0));
        const AppointmentRef first = v.appointmentSet().FirstAppointment();
        log.clear();
        hook = [&](const std::string&) { hook = nullptr, c.handler(v); };
        v.appointmentSet().Remove(1);
        v.Undo(); // nothing is left to take back once the removal has ended
        EXPECT_EQ(keys(v), c.left) << c.name;
        EXPECT_EQ(std::count(log.begin(), log.end(), "BeforeRemove(2,1)"), c.beforeRemoves) << c.name;
        EXPECT_EQ(first->view(), v.appointmentSet().Item(1) ? &v : nullptr) << c.name;
    }

    auto owner = std::make_unique<PVDayView>(platform, 0);
    AppointmentSet& set = owner->appointmentSet();
    for (const char* text : {"a", "b", "c"})
        set.Add(text, at(9, 0), at(9, 30));
    set.Remove(2);
    EXPECT_THROW(set.Remove(2), InvalidProcedureCall);
    EXPECT_EQ(set.NextAppointment(set.FirstAppointment())->Key(), 3);
    set.RemoveAll();
    const AppointmentRef d = set.Add("d", at(9, 0), at(9, 30));
    EXPECT_EQ(d->Key(), 4) << "keys are never given twice";
    EXPECT_EQ(d->BackColor, PVDayView::kDefaultAppointmentColor);
    owner.reset();
    EXPECT_EQ(d->view(), nullptr);
}

TEST_F(GestureTest, ClicksRaiseTheirEventsInOrder) {
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

TEST_F(GestureTest, EditsAndTheirUndo) {
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

TEST_F(GestureTest, DragStepsUndoAndHandlersThatEmptyTheSets) {
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

TEST_F(GestureTest, HandlerThatDropsItselfRunsToItsEnd) {
    view.appointmentSet().Add("a", at(9, 0), at(10, 0));
    Log ran;
    // Each handler empties its own event and then still reads its captured name.
    auto once = [&ran](std::function<void(std::int16_t, AppointmentRef)>& event, std::string name) {
        event = [&event, &ran, name](std::int16_t, AppointmentRef) { event = nullptr, ran.push_back(name); };
    };
    once(view.BeforeDrag, "BeforeDrag"), once(other.AfterAdd, "AfterAdd");
    once(other.AfterDrag, "AfterDrag"), once(view.BeforeRemove, "BeforeRemove");
    other.Click = [this, &ran, name = std::string("Click")](std::int16_t) {
        other.Click = nullptr, ran.push_back(name);
    };
    EXPECT_TRUE(view.userDrag(1, other, makeTime(10, 0, 0)));
    EXPECT_TRUE(other.userClickOn(1));
    EXPECT_TRUE(other.userClickOn(1));
    EXPECT_EQ(ran, (Log{"BeforeDrag", "AfterAdd", "AfterDrag", "BeforeRemove", "Click"}));
}

} // namespace
} // namespace quorvane
