#include "control_fixture.h"

#include <QuorvaneScheduler/members.h>

using namespace quorvane;
using quorvane::test::ControlFixture;

using MemberTableTest = ControlFixture;

// A failure says which member failed and why; the kind stays the one a host catches.
TEST_F(MemberTableTest, FailuresNameTheMemberAndTheReason) {
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
