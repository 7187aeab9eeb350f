#include "control_fixture.h"

using namespace quorvane;
using quorvane::test::ControlFixture;

using ShellTest = ControlFixture;

TEST_F(ShellTest, CreationLeavesEverythingHiddenAndUnselected) {
    const auto& w = control->widgets();
    const auto& s = control->state();
    for (int i = 0; i < kColumns; ++i) {
        SCOPED_TRACE(i);
        EXPECT_FALSE(w.dvwResource[i]->Visible);
        EXPECT_FALSE(w.cmbResource[i].visible);
        EXPECT_FALSE(w.cmbResourceCatType[i].visible);
        EXPECT_EQ(w.cmbResource[i].listCount(), 0);
        EXPECT_EQ(w.cmbResourceValue[i].listCount(), 0);
        ASSERT_EQ(w.cmbDayIncrement[i].listCount(), 5);
        EXPECT_EQ(w.cmbDayIncrement[i].list(0), "5");
        EXPECT_EQ(w.cmbDayIncrement[i].list(4), "60");
        EXPECT_EQ(w.cmbDayIncrement[i].listIndex(), -1);
        EXPECT_EQ(w.dvwResource[i]->ViewMode, 0);
        EXPECT_EQ(w.dvwResource[i]->Top, 3105);
    }
    ASSERT_EQ(w.cmbNumOfSchedules.listCount(), 5);
    EXPECT_EQ(w.cmbNumOfSchedules.list(0), "1");
    EXPECT_EQ(w.cmbNumOfSchedules.listIndex(), -1);
    EXPECT_EQ(w.cmbResourceGroup.listCount(), 0);
    EXPECT_EQ(w.sbSchedule.min, 1);
    EXPECT_EQ(w.sbSchedule.max, 5);
    EXPECT_EQ(w.sbSchedule.value, 1);
    EXPECT_TRUE(w.sbSchedule.visible);
    EXPECT_TRUE(w.calCalendar->visible);
    EXPECT_FALSE(w.cmdTasking.visible);
    EXPECT_FALSE(w.cmdQuickScan.visible);

    EXPECT_EQ(control->ResourceNumber(), "1");
    EXPECT_EQ(control->AppointmentTypeID(), "");
    EXPECT_EQ(s.lngScheduleWidth, 14990);
    EXPECT_EQ(s.strImagingEnabled, "N");
    EXPECT_FALSE(s.blnAppMoving);
    EXPECT_FALSE(s.arrResourceGroups.isSet());
    EXPECT_EQ(platform.commonControlsInitialised, 1);
    EXPECT_TRUE(control->UserControlEnabled());
    EXPECT_TRUE(log.empty()) << "creation reports nothing";
}

TEST_F(ShellTest, InitializeAgainAppendsScheduleCountsButRefillsColumnLists) {
    control->UserControl_Initialize();
    EXPECT_EQ(control->widgets().cmbNumOfSchedules.listCount(), 10);
    for (int i = 0; i < kColumns; ++i)
        EXPECT_EQ(control->widgets().cmbDayIncrement[i].listCount(), 5);
}

TEST_F(ShellTest, ImagingShowsScanButtonsOnlyForCapitalY) {
    const auto& w = control->widgets();
    const struct {
        const char* value;
        bool shown;
    } rows[] = {{"Y", true}, {"y", false}, {"Y", true}, {"Yes", false}, {"", false}};
    for (const auto& row : rows) {
        control->setImagingEnabled(row.value);
        EXPECT_EQ(w.cmdQuickScan.visible, row.shown) << row.value;
        EXPECT_EQ(w.cmdQuickScanI1.visible, row.shown) << row.value;
        EXPECT_EQ(w.cmdQuickScanI2.visible, row.shown) << row.value;
        EXPECT_EQ(control->state().strImagingEnabled, row.value);
    }
    EXPECT_TRUE(log.empty()) << "ImagingEnabled makes no change report";
}

TEST_F(ShellTest, TaskingButtonOnceShownStaysShown) {
    control->setTaskingEnabled("True");
    EXPECT_FALSE(control->widgets().cmdTasking.visible);
    control->setTaskingEnabled("true");
    EXPECT_TRUE(control->widgets().cmdTasking.visible);
    control->setTaskingEnabled("false");
    EXPECT_TRUE(control->widgets().cmdTasking.visible);
    EXPECT_EQ(control->TaskingEnabled(), "false");
    EXPECT_EQ(log, (std::vector<std::string>(3, "changed TaskingEnabled")));
}

TEST_F(ShellTest, ClearCommentsFlagFollowsEveryWrite) {
    control->setClearCommentsEnabled("Y");
    EXPECT_TRUE(control->state().blnClearCommentsEnabled);
    control->setClearCommentsEnabled("N");
    EXPECT_FALSE(control->state().blnClearCommentsEnabled);
    control->setClearCommentsEnabled("Y");
    control->setClearCommentsEnabled("y");
    EXPECT_FALSE(control->state().blnClearCommentsEnabled);
    EXPECT_TRUE(log.empty());
}

TEST_F(ShellTest, BusyPhaseLastsThroughHostCallsUntilTheHostEndsIt) {
    control->setUserControlEnabled(false);
    setColours();
    control->AddAppointment("1", "Visit", at(9, 0), at(9, 30), "1", "Scheduled", "", "2");
    control->SetAppointmentType("a|b", "2");
    EXPECT_THROW(control->SetAppointmentType("x", "11"), SubscriptOutOfRange);
    EXPECT_FALSE(control->UserControlEnabled()) << "neither calls nor failures enable the control";

    control->FocusControl();
    EXPECT_TRUE(control->UserControlEnabled());
    EXPECT_EQ(platform.container.activeControl(), "txtAppChiefComplaint");

    control->setUserControlEnabled(false);
    control->setUserControlEnabled(true);
    EXPECT_TRUE(control->UserControlEnabled());
    EXPECT_EQ(log, (std::vector<std::string>{"changed UserControlEnabled", "changed UserControlEnabled",
                                             "changed UserControlEnabled"}));
}

TEST_F(ShellTest, FocusControlEndsInChiefComplaintEvenWhenAlreadyEnabled) {
    control->widgets().cmdPatientSearch.enabled = false;
    platform.container.setActiveControl("txtPatName");
    control->FocusControl();
    EXPECT_EQ(platform.container.activeControl(), "txtAppChiefComplaint");
    EXPECT_TRUE(control->UserControlEnabled());
}

TEST_F(ShellTest, ColumnNumbersOutsideTheArrayFailWithoutChange) {
    const struct {
        const char* number;
        ErrorKind kind;
    } rows[] = {{"0", ErrorKind::SubscriptOutOfRange},  {"11", ErrorKind::SubscriptOutOfRange},
                {"-3", ErrorKind::SubscriptOutOfRange}, {"abc", ErrorKind::TypeMismatch},
                {"", ErrorKind::TypeMismatch},          {"70000", ErrorKind::Overflow}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.number);
        try {
            control->SetAppointmentType("1|Visit", row.number);
            ADD_FAILURE() << "no failure";
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.kind(), row.kind);
        }
        EXPECT_THROW(control->GetDayView(row.number), RuntimeError);
    }
    for (int i = 0; i < kColumns; ++i)
        EXPECT_EQ(control->widgets().dvwResource[i]->Tag, "");

    control->SetAppointmentType("1|Visit", " 3 ");
    EXPECT_EQ(control->widgets().dvwResource[2]->Tag, "1|Visit");
    EXPECT_EQ(control->GetDayView("10"), control->widgets().dvwResource[9]);
}

TEST_F(ShellTest, FocusedColumnComesFromTheFocusText) {
    auto& w = control->widgets();
    EXPECT_EQ(control->FocusedColumnIndex(), 0);
    w.txtResourceFocus.text = "";
    EXPECT_EQ(control->FocusedColumnIndex(), 0);
    w.txtResourceFocus.text = "4";
    w.cmbResourceValue[3].addItem("501");
    w.cmbResourceValue[3].setListIndex(0);
    EXPECT_EQ(control->FocusedColumnIndex(), 3);
    EXPECT_EQ(control->FocusedResourceValue(), "501");
    w.txtResourceFocus.text = "12";
    EXPECT_THROW(control->FocusedResourceValue(), SubscriptOutOfRange);
}
