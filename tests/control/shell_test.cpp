#include "control_fixture.h"

using namespace quorvane;
using quorvane::test::ControlFixture;

using ShellTest = ControlFixture;

TEST_F(ShellTest, FocusControlEndsInChiefComplaintEvenWhenAlreadyEnabled) {
    control->widgets().cmdPatientSearch.enabled = false;
    platform.container.setActiveControl("txtPatName");
    control->FocusControl();
    EXPECT_EQ(platform.container.activeControl(), "txtAppChiefComplaint");
    EXPECT_TRUE(control->UserControlEnabled());
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
