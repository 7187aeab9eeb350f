#include "control/control_fixture.h"

using namespace quorvane;
using quorvane::test::ControlFixture;

namespace {
const char* kGroups = "10~Main Office~Y~501~Provider One~Staff~Surgery~~10~Main Office~Y~502~Provider "
                      "Two~Staff~Nursing~~20~Annex~N~610~Room A~Rooms~Exam";
}

// The worked catalogue brought up as a host does: views, defaults, then groups.
struct ColumnDatesTest : ControlFixture {
    void bringUp(const char* defaults = "10~Main Office~501~1~~10~Main Office~502~2") {
        control->ResizeControl(700, 1000);
        control->setResourceGroupViews("10~Main Office~2~4~~20~Annex~1~1");
        control->setResourceGroupDefaults(defaults);
        control->setResourceGroups(kGroups);
        log.clear();
    }
    PVDayView& view(int i) { return *control->widgets().dvwResource[i]; }
    OleDate day(int d) const { return makeDate(2008, 1, d); }
    std::vector<std::string> events() const {
        std::vector<std::string> out;
        for (const auto& l : log)
            if (l.rfind("event", 0) == 0) out.push_back(l);
        return out;
    }
};

TEST_F(ColumnDatesTest, CollisionMovesOnInTheDirectionOfTravelWithTwoEvents) {
    bringUp();
    auto& w = control->widgets();
    w.cmbResource[1].setText("Provider One"); // column 2 now shows column 1's resource, a day later
    EXPECT_EQ(view(1).CurrentDate(), day(16));
    log.clear();

    // Arriving from a later date on column 1's date: lands one day earlier.
    view(1).setCurrentDate(day(15));
    EXPECT_EQ(view(1).CurrentDate(), day(14));
    EXPECT_EQ(events(), (std::vector<std::string>{"event ResourceOnClick(2, 501, 1/14/2008)",
                                                  "event ResourceOnClick(2, 501, 1/14/2008)"}));
    // Arriving from an earlier date: lands one day later.
    view(1).setCurrentDate(day(13));
    log.clear();
    view(1).setCurrentDate(day(15));
    EXPECT_EQ(view(1).CurrentDate(), day(16));
    EXPECT_EQ(events().size(), 2u);

    // With another resource the move lands where it was aimed, with one event.
    w.cmbResource[1].setText("Provider Two");
    log.clear();
    view(1).setCurrentDate(day(15));
    EXPECT_EQ(view(1).CurrentDate(), day(15));
    EXPECT_EQ(events().size(), 1u);

    // One date stands marked: the date of the column changed last.
    const auto marked = w.calCalendar->markedDates();
    ASSERT_EQ(marked.size(), 1u);
    EXPECT_EQ(marked[0], day(15));
}

TEST_F(ColumnDatesTest, LoadColumnPassesForwardOnceAndNeverLooksBack) {
    bringUp("10~Main Office~501~1");
    auto& w = control->widgets();
    // A third column loads at the date of the first, moves past it, then past
    // the second.
    w.cmbResourceCatType[1].setText("Staff");
    w.cmbResource[1].setText("Provider One");
    EXPECT_EQ(view(1).CurrentDate(), day(16));
    w.cmbResourceCatType[2].setText("Staff");
    w.cmbResource[2].setText("Provider One");
    EXPECT_EQ(view(2).CurrentDate(), day(17));
    EXPECT_EQ(w.txtResourceFocus.text, "3");
    EXPECT_EQ(view(2).ViewMode, 1);
    EXPECT_EQ(w.cmbResourceValue[2].text(), "501");

    // Column 1 a day later than columns 2 and 3: column 3 moves past column 2
    // onto column 1's date, and the pass does not notice.
    control->widgets().cmbResourceGroup.setText("Main Office");
    view(0).setCurrentDate(day(16));
    w.cmbResourceCatType[1].setText("Staff");
    w.cmbResource[1].setText("Provider One");
    w.cmbResourceCatType[2].setText("Staff");
    w.cmbResource[2].setText("Provider One");
    EXPECT_EQ(view(1).CurrentDate(), day(15));
    EXPECT_EQ(view(2).CurrentDate(), day(16));
    EXPECT_EQ(view(0).CurrentDate(), day(16));
}

TEST_F(ColumnDatesTest, ShowTodayWalksTheColumnsWithTheHost) {
    bringUp();
    view(1).setCurrentDate(day(20));
    view(4).setCurrentDate(day(21));
    log.clear();
    control->mnoShowToday_Click();
    EXPECT_EQ(view(1).CurrentDate(), day(15));
    EXPECT_TRUE(control->state().blnShowTodayRunning);
    control->CheckLoadAllToday("2");
    // Column 5 has no resource, like column 3 on today: two columns without a
    // selection count as showing the same one, so it lands a day before.
    EXPECT_EQ(view(4).CurrentDate(), day(14));
    EXPECT_TRUE(control->state().blnShowTodayRunning);
    control->setUserControlEnabled(false);
    control->CheckLoadAllToday("5");
    EXPECT_FALSE(control->state().blnShowTodayRunning);
    EXPECT_FALSE(control->UserControlEnabled()) << "the call that ends the walk does not enable";
    control->CheckLoadAllToday("5");
    EXPECT_TRUE(control->UserControlEnabled());
    EXPECT_EQ(events().size(), 3u) << "one, then two for the landing after the collision, then none";

    // A walk whose host calls back from inside each move: the flag written after
    // the move wins over the nested call's.
    view(1).setCurrentDate(day(22));
    control->setUserControlEnabled(false);
    onEvent = [this](std::string_view n, std::vector<Variant>& args) {
        if (n == "ResourceOnClick") control->CheckLoadAllToday(args[0].toString());
    };
    control->mnoShowToday_Click();
    EXPECT_EQ(view(1).CurrentDate(), day(15));
    EXPECT_TRUE(control->UserControlEnabled()) << "the nested call of the first move found the walk idle";
    EXPECT_TRUE(control->state().blnShowTodayRunning) << "written after the move";

    EXPECT_THROW(control->CheckLoadAllToday("x"), TypeMismatch);
    onEvent = nullptr;
    control->mnoShowToday_Click();
    control->CheckLoadAllToday("10");
    EXPECT_FALSE(control->state().blnShowTodayRunning);
}

TEST_F(ColumnDatesTest, TopTimeIsRememberedFromTheFirstRequestAndFromScrolling) {
    bringUp();
    const struct {
        OleDate given;
        const char* remembered;
    } rows[] = {
        {makeDate(2008, 1, 5), "12:00:00 AM"},
        {makeDate(2008, 12, 15), "12/15/2008"},
        {makeDateTime(2008, 1, 15, 9, 30, 0), " 9:30:00 AM"},
        {makeDateTime(2008, 1, 15, 10, 30, 0), "10:30:00 AM"},
    };
    for (const auto& row : rows) {
        control->widgets().cmbResource[0].setText("Provider One"); // clears the memory
        control->DisplayTopIndex(row.given, "1");
        EXPECT_EQ(control->state().strColumnTopTime[0], row.remembered);
        control->DisplayTopIndex(makeDateTime(2008, 1, 15, 14, 0, 0), "1");
        EXPECT_EQ(minuteOfDay(view(0).TopIndex()), minuteOfDay(parseDate(row.remembered)))
            << "the second request does not win";
    }
    view(0).userScroll(makeTime(9, 0, 0));
    EXPECT_EQ(control->state().strColumnTopTime[0], "1/15/2008 9:00:00 AM");
    view(0).setTopIndex(makeTime(8, 0, 0));
    EXPECT_EQ(control->state().strColumnTopTime[0], "1/15/2008 9:00:00 AM")
        << "10 characters: not remembered";

    int yields = 0;
    platform.doEvents = [&] { ++yields; };
    control->widgets().cmbDayIncrement[0].setText("15");
    EXPECT_EQ(view(0).Increments(), 2);
    EXPECT_EQ(control->state().strColumnTopTime[0], " 9:00:00 AM") << "shortened to the time text";
    EXPECT_EQ(yields, 1);
    EXPECT_THROW(control->DisplayTopIndex(makeTime(9, 0, 0), "11"), SubscriptOutOfRange);
}

TEST_F(ColumnDatesTest, GroupSelectionResetsEveryColumn) {
    bringUp();
    view(7).setCurrentDate(day(3));
    control->AddAppointment("8", "x", day(3), day(3), "1", "", "", "2");
    log.clear();
    control->widgets().cmbResourceGroup.setText("Annex");
    EXPECT_EQ(view(7).CurrentDate(), day(15));
    EXPECT_EQ(view(7).appointmentSet().Count(), 0);
    EXPECT_EQ(control->widgets().cmbNumOfSchedules.text(), "1");
    EXPECT_TRUE(view(0).Visible);
    EXPECT_FALSE(view(1).Visible);
    EXPECT_EQ(control->widgets().sbSchedule.max, 1);
    EXPECT_TRUE(events().empty()) << "Annex has no default rows";
    EXPECT_EQ(control->widgets().cmbResourceCatType[4].listCount(), 2);
}

TEST_F(ColumnDatesTest, SetResourceAndDateAsksBeforeSwitchingGroups) {
    bringUp();
    struct Answers : MessageBoxService {
        std::vector<std::string> asked;
        MsgBoxResult answer = MsgBoxResult::Yes;
        MsgBoxResult show(std::string_view text, MsgBoxButtons, std::string_view title) override {
            asked.push_back(std::string(text) + "|" + std::string(title));
            return answer;
        }
    } boxes;
    platform.messageBoxes = &boxes;
    EXPECT_EQ(control->SetResourceAndDate("999", 1, "1/20/2008"), Variant(std::int16_t(1)));
    EXPECT_EQ(control->SetResourceAndDate("610", 1, "1/20/2008"), Variant(std::int16_t(1)));
    ASSERT_EQ(boxes.asked.size(), 2u);
    EXPECT_EQ(boxes.asked[0],
              "The selected resource is not available to you.  Please contact you System Administrator.|");
    EXPECT_EQ(boxes.asked[1],
              "The selected resource is not available in the 'Main Office' group, but is available "
              "in the 'Annex' group.\r\nDo you wish to switch to the new group before proceeding?|"
              "Scheduler");
    EXPECT_EQ(control->widgets().cmbResourceGroup.text(), "Annex");
    log.clear();
    EXPECT_EQ(control->SetResourceAndDate("610", 4, "1/20/2008 10:00 AM"), Variant(std::int16_t(0)));
    EXPECT_EQ(view(0).CurrentDate(), day(20)) << "column 4 is beyond the one on screen: column 1 takes it";
    EXPECT_EQ(events(), (std::vector<std::string>{"event ResourceOnClick(1, 610, 1/15/2008)",
                                                  "event ResourceOnClick(1, 610, 1/20/2008)"}));
    EXPECT_EQ(control->ResourceNumber(), "1");
}
