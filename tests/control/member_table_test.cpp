#include "control_fixture.h"

#include <QuorvaneScheduler/members.h>

#include <set>

using namespace quorvane;
using quorvane::test::ControlFixture;

using MemberTableTest = ControlFixture;

TEST(MemberTable, EachNameHasAtMostOneReaderWriterOrMethod) {
    std::set<std::pair<std::string, MemberKind>> seen;
    for (const MemberInfo& m : memberTable()) {
        EXPECT_TRUE(seen.insert({m.name, m.kind}).second) << m.name;
        EXPECT_TRUE(m.invoke) << m.name;
        if (m.kind == MemberKind::PropertyLet) {
            EXPECT_FALSE(m.params.empty()) << m.name << " needs its value";
        }
        if (m.kind == MemberKind::Method) {
            EXPECT_FALSE(findMember(m.name, MemberKind::PropertyGet)) << m.name;
        }
    }
    // Read-only, write-only and both, as the interface has them.
    EXPECT_TRUE(findMember("ResourceNumber", MemberKind::PropertyGet));
    EXPECT_FALSE(findMember("ResourceNumber", MemberKind::PropertyLet));
    EXPECT_FALSE(findMember("ImagingEnabled", MemberKind::PropertyGet));
    EXPECT_TRUE(findMember("TaskingEnabled", MemberKind::PropertyLet));
    EXPECT_TRUE(findMember("TaskingEnabled", MemberKind::PropertyGet));
    EXPECT_FALSE(memberExists("strImagingEnabled")) << "private state is not a member";
    EXPECT_FALSE(memberExists("beginBusy"));
}

TEST_F(MemberTableTest, ArgumentsConvertAsTheirDeclaredTypes) {
    setColours();
    const MemberInfo* add = findMember("AddAppointment", MemberKind::Method);
    ASSERT_TRUE(add);
    std::vector<Variant> args{Variant(std::int16_t(1)),
                              Variant("Visit"),
                              Variant("1/15/2008 9:00 AM"),
                              Variant(at(9, 30).value),
                              Variant(std::int32_t(77)),
                              Variant("Scheduled"),
                              Variant(),
                              Variant(2.0)};
    const std::vector<Variant> before = args;
    invokeMember(*control, *add, args);
    const AppointmentRef app = set(0).FirstAppointment();
    ASSERT_TRUE(app);
    EXPECT_EQ(app->StartDateTime, at(9, 0));
    EXPECT_EQ(app->Tag, "77~~2");
    EXPECT_EQ(args, before) << "by-reference arguments the member left alone keep their own types";

    std::vector<Variant> shortArgs{Variant("1")};
    EXPECT_THROW(invokeMember(*control, *add, shortArgs), InvalidProcedureCall);

    const MemberInfo* setId = findMember("SetAppId", MemberKind::Method);
    std::vector<Variant> badKey{Variant("1"), Variant("9"), Variant("2.5e10"), Variant("3")};
    EXPECT_THROW(invokeMember(*control, *setId, badKey), Overflow);
    std::vector<Variant> textKey{Variant("1"), Variant("9"), Variant(" 1 "), Variant("3")};
    invokeMember(*control, *setId, textKey);
    EXPECT_EQ(app->Tag, "9~~3");

    const MemberInfo* colour = findMember("ccNoShow", MemberKind::PropertyLet);
    std::vector<Variant> value{Variant("255")};
    invokeMember(*control, *colour, value);
    EXPECT_EQ(control->ccNoShow, 255);
    EXPECT_EQ(convertTo(Variant(ObjectRef(app)), DeclaredType::Appointment), Variant(ObjectRef(app)));
    EXPECT_THROW(convertTo(Variant(ObjectRef(control->widgets().dvwResource[0])), DeclaredType::Appointment),
                 TypeMismatch);
}

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
