#include <QuorvaneScheduler/control_internals.h>
#include "control/control_fixture.h"
#include "slots/slot_scan.h"

#include <set>

using namespace quorvane;
using SlotFixture = quorvane::test::ControlFixture;

namespace {

OleDate scanDay(int h, int m) { return makeDateTime(2000, 1, 1, h, m, 0); }

// Business hours that a real view never shows, and a record of every time the
// scan asks about.
struct FakeView {
    std::int32_t increments = 1;
    OleDate begin = makeTime(8, 0, 0), end = makeTime(17, 0, 0);
    std::set<int> selectedMinutes;
    mutable std::vector<OleDate> asked;

    std::int32_t Increments() const { return increments; }
    OleDate BusinessHoursBegin() const { return begin; }
    OleDate BusinessHoursEnd() const { return end; }
    bool TimeSlotSelected(OleDate t) const {
        asked.push_back(t);
        return selectedMinutes.count(minuteOfDay(t)) > 0;
    }
};

constexpr int hm(int h, int m) { return h * 60 + m; }

TEST(SlotScan, WalksBusinessHoursFromTheirBegin) {
    struct Row {
        const char* name;
        std::int32_t increments;
        int begin, end;         // minutes of the day; an end of 0 is midnight
        std::set<int> selected; // minutes of the day
        int found;              // the minute found, -1 for none
        std::size_t asks;
    };
    // clang-format off
    const Row rows[] = {
        {"quarter hours from 8:00",              2, hm(8, 0),   hm(17, 0), {hm(8, 30)},           hm(8, 30),  3},
        {"counted from the begin, not midnight", 2, hm(8, 10),  hm(17, 0), {hm(8, 25)},           hm(8, 25),  2},
        {"off the begin's steps is never asked", 2, hm(8, 10),  hm(9, 0),  {hm(8, 30)},           -1,         4},
        {"the earlier of two",                   1, hm(8, 0),   hm(17, 0), {hm(10, 0), hm(9, 0)}, hm(9, 0),   3},
        {"at the end is outside",                1, hm(8, 0),   hm(17, 0), {hm(17, 0)},           -1,         18},
        {"before the begin is outside",          1, hm(8, 0),   hm(17, 0), {hm(7, 30)},           -1,         18},
        {"end at midnight runs to 11:59 PM",     4, hm(23, 40), 0,         {hm(23, 55)},          hm(23, 55), 4},
        {"end at midnight leaves 11:59 PM out",  4, hm(23, 59), 0,         {hm(23, 59)},          -1,         0},
        {"begin at the end",                     1, hm(17, 0),  hm(17, 0), {hm(17, 0)},           -1,         0},
        {"begin after the end",                  1, hm(18, 0),  hm(9, 0),  {hm(18, 0)},           -1,         0},
        {"unknown code steps by the hour",       7, hm(8, 0),   hm(17, 0), {hm(8, 30)},           -1,         9},
        {"unknown code finds on the hour",       7, hm(8, 0),   hm(17, 0), {hm(9, 0)},            hm(9, 0),   2},
    };
    // clang-format on
    const auto time = [](int minute) { return makeTime(minute / 60, minute % 60, 0); };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        FakeView view{row.increments, time(row.begin), time(row.end), row.selected, {}};
        bool found = row.found < 0;
        const int expected = row.found < 0 ? row.begin : row.found;
        EXPECT_EQ(slots::scanSelectedSlot(view, found), scanDay(expected / 60, expected % 60));
        EXPECT_EQ(found, row.found >= 0);
        EXPECT_EQ(view.asked.size(), row.asks);
        for (OleDate t : view.asked)
            EXPECT_EQ(datePart(t), makeDate(2000, 1, 1));
    }
}

TEST(SlotScan, MinutesByIncrementsCode) {
    const std::pair<std::int32_t, int> rows[] = {{0, 60}, {1, 30}, {2, 15}, {3, 10}, {4, 5}, {-1, 0}, {5, 0}};
    for (const auto& [code, minutes] : rows)
        EXPECT_EQ(slots::minutesOfIncrements(code), minutes) << code;
}

struct TimeSlotTest : SlotFixture {
    OleDate lastSlot(int entry) const { return stateOf(*control).dtLastSlot[static_cast<std::size_t>(entry)]; }
    // The non-empty entries of dtLastSlot, as "entry@H:MM".
    std::string entries() const {
        std::string s;
        for (int e = 0; e < 12; ++e)
            if (const OleDate t = lastSlot(e); t != OleDate())
                s += (s.empty() ? "" : " ") + std::to_string(e) + "@" + generalDateText(timePart(t));
        return s;
    }
};

TEST_F(TimeSlotTest, OnlyTheLastColumnClickedKeepsItsSlot) {
    view(0).userSlot(at(9, 0));
    EXPECT_EQ(lastSlot(1), at(9, 0));
    view(2).userSlot(at(10, 0));
    EXPECT_EQ(entries(), "3@10:00:00 AM");
    EXPECT_FALSE(view(0).TimeSlotSelected(at(9, 0)));
    EXPECT_TRUE(view(2).TimeSlotSelected(at(10, 0)));

    // A second click in the same column replaces the entry alone.
    view(2).userSlot(at(11, 0));
    EXPECT_EQ(entries(), "3@11:00:00 AM");

    // The tenth column uses entry 10 and is cleared like any other.
    view(9).userSlot(at(8, 30));
    EXPECT_EQ(entries(), "10@8:30:00 AM");
    EXPECT_FALSE(view(2).TimeSlotSelected(at(11, 0)));
    EXPECT_TRUE(log.empty()) << "selection is no business of the host";
}

// A number spares its column, anything else clears every column; a failed
// number clears nothing.
TEST_F(TimeSlotTest, ClearTimeSlotsSparesOneColumnOrNone) {
    // clang-format off
    const std::tuple<Variant, bool, std::optional<ErrorKind>> rows[] = {
        {Variant("4"), true, {}}, {Variant(std::int16_t(4)), true, {}}, {Variant("4.4"), true, {}},
        {Variant("1"), false, {}}, {Variant("0"), false, {}}, {Variant("11"), false, {}}, {Variant("-5"), false, {}},
        {Variant(), false, {}}, {Variant("four"), true, ErrorKind::TypeMismatch},
        {Variant("99999"), true, ErrorKind::Overflow}};
    // clang-format on
    for (const auto& [argument, kept, error] : rows) {
        SCOPED_TRACE(argument.toString());
        view(3).userSlot(at(9, 0));
        EXPECT_EQ(failureOf([&] { control->ClearTimeSlots(argument); }), error);
        EXPECT_EQ(view(3).TimeSlotSelected(at(9, 0)), kept);
        EXPECT_EQ(entries(), kept ? "4@9:00:00 AM" : "");
    }
}

// Slots without an entry, or with an entry that has no date, are never taken
// away by a click elsewhere.
TEST_F(TimeSlotTest, ClearingLeavesSlotsItHasNoDatedEntryFor) {
    control->setResourceTimeSlotSelected(2, at(9, 30), true);
    EXPECT_EQ(log, std::vector<std::string>{"changed Resource3TimeSlotSelected"});
    view(0).userSlot(at(8, 0));
    EXPECT_TRUE(view(2).TimeSlotSelected(at(9, 30)));
    EXPECT_EQ(control->getSelectedTimeSlot(view(2)), makeDateTime(2000, 1, 1, 9, 30, 0));
    EXPECT_TRUE(stateOf(*control).blnSlotFound);

    control->dvwResource_TimeSlotSelect(4, makeTime(10, 0, 0)); // a slot without its date
    view(4).setTimeSlotSelected(at(10, 0), true);
    EXPECT_FALSE(view(0).TimeSlotSelected(at(8, 0)));
    control->RemoveTimeSlotSelected(view(4));
    EXPECT_TRUE(view(4).TimeSlotSelected(at(10, 0)));
    EXPECT_EQ(lastSlot(5), makeTime(10, 0, 0));
}

// A date change keeps a column's selection and its entry, which still clears the
// slot on the new date; a column load takes the selection away from every other
// column and keeps its own.
TEST_F(TimeSlotTest, DateChangesKeepTheSlotAndLoadsClearTheOthers) {
    control->setResourceGroupViews("10~Main~2~4");
    control->setResourceGroupDefaults("10~Main~501~1~~10~Main~502~2");
    control->setResourceGroups("10~Main~Y~501~P~Staff~S~~10~Main~Y~502~Q~Staff~N");
    view(1).userSlot(at(9, 30));
    view(1).userDate(makeDate(2008, 1, 16));
    EXPECT_TRUE(view(1).TimeSlotSelected(at(9, 30)));
    EXPECT_EQ(lastSlot(2), at(9, 30));
    view(0).userSlot(at(9, 15));
    EXPECT_FALSE(view(1).TimeSlotSelected(at(9, 30)));
    control->RefreshSchedule(2);
    EXPECT_FALSE(view(0).TimeSlotSelected(at(9, 15)));
    EXPECT_EQ(entries(), "");
    view(1).userSlot(at(9, 45));
    control->RefreshSchedule(2);
    EXPECT_EQ(entries(), "2@9:45:00 AM");
    EXPECT_TRUE(view(1).TimeSlotSelected(at(9, 45)));
}

TEST_F(TimeSlotTest, RefreshTimeslotsRepaintsTheDayAndKeepsTheSlotLength) {
    control->AddResourceTemplate(at(9, 0), at(10, 0), "Block", "#FF0000", "2", "Y");
    view(1).setIncrements(2);
    control->RefreshTimeslots("2");
    for (OleDate t : {at(0, 0), at(9, 0), at(23, 55)})
        EXPECT_EQ(view(1).TimeSlotColor(t), view(1).DayBackColor());
    EXPECT_EQ(view(1).Increments(), 2);

    control->AddResourceTemplate(at(9, 0), at(10, 0), "Block", "#FF0000", "2", "Y");
    const std::pair<const char*, ErrorKind> bad[] = {{"0", ErrorKind::SubscriptOutOfRange},
                                                     {"11", ErrorKind::SubscriptOutOfRange},
                                                     {"two", ErrorKind::TypeMismatch}};
    for (const auto& row : bad) {
        const char* number = row.first;
        EXPECT_EQ(failureOf([&] { control->RefreshTimeslots(number); }), row.second) << number;
        EXPECT_EQ(view(1).TimeSlotColor(at(9, 0)), 255);
    }
}

TEST_F(TimeSlotTest, TenNamesEachReachTheirOwnColumn) {
    for (int n = 1; n <= kColumns; ++n) {
        const std::string name = "Resource" + std::to_string(n) + "TimeSlotSelected";
        SCOPED_TRACE(name);
        log.clear();
        invoke(name, MemberKind::PropertyLet, {Variant(at(9, 0)), Variant(true)});
        EXPECT_EQ(log, std::vector<std::string>{"changed " + name});
        for (int i = 0; i < kColumns; ++i)
            EXPECT_EQ(view(i).TimeSlotSelected(at(9, 0)), i == n - 1);
        EXPECT_EQ(invoke(name, MemberKind::PropertyGet, {Variant("9:00 AM")}), Variant(true));
        view(n - 1).setTimeSlotSelected(at(9, 0), false);
    }
    EXPECT_EQ(lastSlot(1), OleDate()) << "a host's write keeps no entry";

    log.clear();
    EXPECT_THROW(
        invoke("Resource1TimeSlotSelected", MemberKind::PropertyLet, {Variant("nine"), Variant(true)}),
        TypeMismatch);
    EXPECT_TRUE(log.empty()) << "a failed write reports nothing";
}

// A view outside the columns keeps its slot at the unused ends of the memory,
// entry 0 for index -1 and 11 for index 10; past those there is no entry.
TEST_F(TimeSlotTest, ViewsOutsideTheColumnsUseTheSpareEntries) {
    for (const std::int16_t index : {std::int16_t(-1), std::int16_t(10)}) {
        PVDayView outside(platform, index);
        control->dvwResource_TimeSlotSelect(index, at(10, 0));
        EXPECT_EQ(lastSlot(index + 1), at(10, 0));
        outside.setTimeSlotSelected(at(10, 0), true);
        control->RemoveTimeSlotSelected(outside);
        EXPECT_FALSE(outside.TimeSlotSelected(at(10, 0)));
        EXPECT_EQ(lastSlot(index + 1), OleDate());
    }
    for (const std::int16_t index : {std::int16_t(-2), std::int16_t(11)}) {
        PVDayView outside(platform, index);
        EXPECT_THROW(control->RemoveTimeSlotSelected(outside), SubscriptOutOfRange);
        EXPECT_THROW(control->dvwResource_TimeSlotSelect(index, at(10, 0)), SubscriptOutOfRange);
    }
}

// Through the member table a day view argument must be a day view: Nothing is
// an ObjectRequired, another object or a text a TypeMismatch, and the call fails
// before any column is touched.
TEST_F(TimeSlotTest, DayViewArgumentsMustBeDayViews) {
    setColours();
    control->AddAppointment("1", "Visit", at(9, 0), at(9, 30), "1", "Scheduled", "", "5");
    view(0).userSlot(at(9, 0));
    const std::pair<Variant, ErrorKind> rows[] = {
        {Variant(ObjectRef(set(0).FirstAppointment())), ErrorKind::TypeMismatch},
        {Variant(ObjectRef()), ErrorKind::ObjectRequired},
        {Variant("1"), ErrorKind::TypeMismatch}};
    for (const char* name : {"getSelectedTimeSlot", "RemoveTimeSlotSelected", "IntervalInMinutes"}) {
        for (const auto& [argument, kind] : rows)
            EXPECT_EQ(failureOf([&] { invoke(name, MemberKind::Method, {argument}); }), kind)
                << name << int(kind);
    }
    EXPECT_EQ(entries(), "1@9:00:00 AM");
    EXPECT_TRUE(view(0).TimeSlotSelected(at(9, 0)));
    EXPECT_EQ(invoke("IntervalInMinutes", MemberKind::Method,
                     {Variant(ObjectRef(widgetsOf(*control).dvwResource[9]))}),
              Variant(std::int16_t(30)));
}

} // namespace
