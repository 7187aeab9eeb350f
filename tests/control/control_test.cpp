#include <QuorvaneScheduler/control_internals.h>
#include "control_fixture.h"

#include <QuorvaneScheduler/members.h>

using namespace quorvane;
using quorvane::test::ControlFixture;

using AppointmentTest = ControlFixture;
using ControlTest = ControlFixture;

// A removed appointment is no longer named through its set. The status of one a
// reload took away, and hosts that re-enter from inside events, are scenarios.
TEST_F(AppointmentTest, AppointmentOutlivesItsSet) {
    control->AddAppointment("1", "Visit", at(9, 0), at(9, 30), "1", "Scheduled", "", "2");
    const AppointmentRef app = set(0).FirstAppointment();
    set(0).RemoveAll();
    control->SetAppId("1", "5", app->Key(), "6");
    EXPECT_EQ(app->Tag, "1~~2");
}

// An event's by-reference argument comes back as the host left it.
TEST_F(AppointmentTest, ByReferenceEventArgumentsComeBack) {
    onEvent = [](std::string_view, std::vector<Variant>& args) { args[1] = Variant("Checked-In"); };
    Variant status("Scheduled");
    control->eventSink()->UpdateAppStatus("501", status);
    EXPECT_EQ(status, Variant("Checked-In"));
}

// What a view reports as refused, the control takes back at once.
TEST_F(AppointmentTest, RefusedChangesAreTakenBack) {
    PVDayView& view = *widgetsOf(*control).dvwResource[1];
    hooksOf(view).AfterAdd = [&](std::int16_t i, AppointmentRef a) { hooksOf(view).AppointmentChangeRefused(i, a); };
    view.userType(at(9, 0), "Walk-in");
    EXPECT_EQ(view.appointmentSet().Count(), 0);
    hooksOf(view).AfterResize = [&](std::int16_t i, AppointmentRef) { hooksOf(view).ViewChangeRefused(i); };
    const AppointmentRef app = view.appointmentSet().Add("Visit", at(9, 0), at(9, 30));
    view.userResize(app->Key(), at(10, 0));
    EXPECT_EQ(app->EndDateTime, at(9, 30));
}

TEST(EventTable, ThirtySevenEventsInInterfaceOrder) {
    const auto& table = eventTable();
    ASSERT_EQ(table.size(), 37u);
    EXPECT_EQ(table.front().name, "ValidatePatient");
    EXPECT_EQ(table[16].name, "ResourceOnClick");
    EXPECT_EQ(table[16].params[0].type, VariantType::Integer);
    EXPECT_EQ(table.back().name, "OpenOfficeCommunication");
    ASSERT_NE(findEvent("UpdateAppStatus"), nullptr);
    EXPECT_TRUE(findEvent("UpdateAppStatus")->params[1].byRef);
    EXPECT_EQ(findEvent("Nonesuch"), nullptr);
}

// The day's description for the printout: only hours of the business times, two
// digits for month and day, the slot length at its natural width.
TEST_F(ControlTest, PrintoutDescribesTheFocusedColumnsDay) {
    control->setResourceGroupViews("10~Main~1~1");
    control->setResourceGroupDefaults("10~Main~501~1");
    control->setResourceGroups("10~Main~Y~501~Dr. Ortiz~Providers~Dentists");
    PVDayView& view = *widgetsOf(*control).dvwResource[0];
    // clang-format off
    const struct { std::int32_t increments; OleDate date, begin, end; const char* info; } rows[] = {
        {0, makeDate(2008, 1, 5), makeTime(8, 30, 0), makeTime(17, 0, 0), "20080105~60~08~17"},
        {4, makeDate(2008, 12, 25), makeTime(0, 0, 0), makeTime(0, 0, 0), "20081225~5~00~00"},
        {2, makeDate(987, 3, 9), makeTime(7, 59, 59), makeTime(23, 59, 0), "9870309~15~07~23"},
    };
    // clang-format on
    for (const auto& row : rows) {
        view.setIncrements(row.increments);
        view.setBusinessHours(row.begin, row.end);
        widgetsOf(*control).dvwResource[0]->setCurrentDate(row.date);
        log.clear();
        control->mnoPrint_Click();
        EXPECT_EQ(log, (std::vector<std::string>{"event PrintDay(501, " + std::string(row.info) + ")"}));
    }
}

// A failure says which member failed and why; the kind stays the one a host catches.
TEST_F(ControlTest, FailuresNameTheMemberAndTheReason) {
    auto whatOf = [&](const char* name, MemberKind kind, std::vector<Variant> args) {
        try {
            invokeMember(*control, *findMember(name, kind), args);
        } catch (const RuntimeError& e) {
            return std::string(errorKindName(e.kind())) + " " + e.what();
        }
        return std::string("no failure");
    };
    EXPECT_EQ(whatOf("GetDayView", MemberKind::Method, {Variant("11")}),
              "SubscriptOutOfRange GetDayView: \"11\" names no column");
    EXPECT_EQ(whatOf("ResizeControl", MemberKind::Method, {Variant("tall"), Variant(1)}),
              "TypeMismatch ResizeControl: \"tall\" is not a number");
    EXPECT_EQ(whatOf("intResourceCount", MemberKind::PropertyLet, {Variant(70000)}),
              "Overflow intResourceCount: 70000 does not fit a 16-bit integer");
    EXPECT_EQ(whatOf("GetStatus", MemberKind::Method, {Variant(ObjectRef())}),
              "ObjectRequired GetStatus: no appointment to read");
    EXPECT_EQ(whatOf("SetAppId", MemberKind::Method, {Variant("1")}),
              "InvalidProcedureCall SetAppId: 4 arguments wanted, not 1");
    // A direct call names no member: the caller knows which one it made.
    try {
        control->GetDayView("0");
        FAIL();
    } catch (const SubscriptOutOfRange& e) {
        EXPECT_STREQ(e.what(), "\"0\" names no column");
    }
}
