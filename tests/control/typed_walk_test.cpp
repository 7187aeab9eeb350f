// Both doors to every member: the typed C++ call and the call by name, each on
// a control brought up by the same script, must leave the same transcript
// (change reports, events, message boxes) and give the same result or fail
// the same way.

#include <QuorvaneScheduler/ctl_scheduler.h>
#include <QuorvaneScheduler/members.h>
#include <QuorvaneScheduler/script/console.h>

#include "control/text_properties.h"
#include "morning_script.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <sstream>

using namespace quorvane;

namespace {

// The morning, with its first appointment current and a chart number.
const std::string kSetup = std::string(test::kMorning) + "call SetCurrentApp(app(0, 1))\nset PatChartNumber = \"C-17\"\n";

using Args = std::function<std::vector<Variant>(ctlScheduler&)>;
using Typed = std::function<Variant(ctlScheduler&)>;

struct Door {
    std::ostringstream out;
    host::Console console{out, makeDate(2008, 1, 15)};
    Door() {
        std::ostringstream err;
        if (console.run("setup", kSetup, err) != 0) ADD_FAILURE() << err.str();
        out.str("");
    }
};

std::string describe(const Variant& v) {
    if (v.type() == VariantType::Object) return v.isNothing() ? "Nothing" : "an object";
    return std::to_string(static_cast<int>(v.type())) + ":" + v.toString();
}

std::string outcome(Door& door, const std::function<Variant()>& call) {
    std::string result;
    try {
        result = "= " + describe(call());
    } catch (const RuntimeError& e) {
        result = "fails " + std::to_string(static_cast<int>(e.kind()));
    }
    return door.out.str() + result;
}

std::set<std::pair<std::string, MemberKind>> walked;

void agree(const std::string& name, MemberKind kind, const Args& args, const Typed& typed) {
    const MemberInfo* byName = findMember(name, kind);
    ASSERT_TRUE(byName) << name << " is not reachable by name";
    EXPECT_TRUE(walked.insert({name, kind}).second) << name << " walked twice";
    Door a, b;
    const std::string viaType = outcome(a, [&] { return typed(a.console.control()); });
    const std::string viaName = outcome(b, [&] {
        std::vector<Variant> given = args(b.console.control());
        return invokeMember(b.console.control(), *byName, given);
    });
    EXPECT_EQ(viaType, viaName) << name << (kind == MemberKind::PropertyLet ? " (write)" : "");
}

Args none() {
    return [](ctlScheduler&) { return std::vector<Variant>{}; };
}
Args values(std::vector<Variant> v) {
    return [v](ctlScheduler&) { return v; };
}
Typed done(std::function<void(ctlScheduler&)> f) {
    return [f](ctlScheduler& c) {
        f(c);
        return Variant();
    };
}
AppointmentRef first(ctlScheduler& c) { return c.GetDayView("1")->appointmentSet().FirstAppointment(); }
Args withFirst(std::vector<Variant> rest = {}) {
    return [rest](ctlScheduler& c) {
        std::vector<Variant> v{Variant(ObjectRef(first(c)))};
        v.insert(v.end(), rest.begin(), rest.end());
        return v;
    };
}
Args withView(std::vector<Variant> rest = {}) {
    return [rest](ctlScheduler& c) {
        std::vector<Variant> v{Variant(ObjectRef(c.GetDayView("1")))};
        v.insert(v.end(), rest.begin(), rest.end());
        return v;
    };
}

const OleDate kDay = makeDate(2008, 1, 16);
const OleDate kNine = makeDateTime(2008, 1, 15, 9, 0, 0), kTen = makeDateTime(2008, 1, 15, 10, 0, 0);

void walkProperties() {
    const auto get = MemberKind::PropertyGet, let = MemberKind::PropertyLet;
#define QUORVANE_AGREE_TEXT(Name)                                                                                 \
    agree(#Name, get, none(), [](ctlScheduler& c) { return Variant(c.Name()); });                                 \
    agree(#Name, let, values({"7 x"}), done([](ctlScheduler& c) { c.set##Name("7 x"); }));
    QUORVANE_TEXT_PROPERTIES(QUORVANE_AGREE_TEXT)

    const std::pair<const char*, std::int32_t ctlScheduler::*> colours[] = {
        {"ccCancelled", &ctlScheduler::ccCancelled}, {"ccConfirmed", &ctlScheduler::ccConfirmed},
        {"ccCheckedIn", &ctlScheduler::ccCheckedIn}, {"ccCheckedOut", &ctlScheduler::ccCheckedOut},
        {"ccNoShow", &ctlScheduler::ccNoShow},       {"ccScheduled", &ctlScheduler::ccScheduled}};
    for (const auto& [name, field] : colours) {
        agree(name, get, none(), [f = field](ctlScheduler& c) { return Variant(c.*f); });
        agree(name, let, values({std::int32_t{42}}), done([f = field](ctlScheduler& c) { c.*f = 42; }));
    }
    agree("intResourceCount", get, none(), [](ctlScheduler& c) { return Variant(c.intResourceCount); });
    agree("intResourceCount", let, values({std::int16_t{3}}), done([](ctlScheduler& c) { c.intResourceCount = 3; }));

    using Write = void (ctlScheduler::*)(const std::string&);
#define QUORVANE_AGREE_FIELD(Name, field) QUORVANE_AGREE_TEXT(Name)
    QUORVANE_FIELD_PROPERTIES(QUORVANE_AGREE_FIELD)
#undef QUORVANE_AGREE_FIELD
#undef QUORVANE_AGREE_TEXT
    agree("TaskingEnabled", get, none(), [](ctlScheduler& c) { return Variant(c.TaskingEnabled()); });
    agree("TaskingEnabled", let, values({"Y"}), done([](ctlScheduler& c) { c.setTaskingEnabled("Y"); }));
    const std::pair<const char*, Write> writeOnly[] = {
        {"ImagingEnabled", &ctlScheduler::setImagingEnabled},
        {"ClearCommentsEnabled", &ctlScheduler::setClearCommentsEnabled},
        {"NumOfSchedules", &ctlScheduler::setNumOfSchedules},
        {"Resources", &ctlScheduler::setResources},
        {"ResourceGroups", &ctlScheduler::setResourceGroups},
        {"ResourceGroupDefaults", &ctlScheduler::setResourceGroupDefaults},
        {"ResourceGroupViews", &ctlScheduler::setResourceGroupViews}};
    for (const auto& [name, write] : writeOnly)
        agree(name, let, values({"3"}), done([w = write](ctlScheduler& c) { (c.*w)("3"); }));
    agree("ResourceNumber", get, none(), [](ctlScheduler& c) { return Variant(c.ResourceNumber()); });
    agree("AppointmentTypeID", get, none(), [](ctlScheduler& c) { return Variant(c.AppointmentTypeID()); });
    agree("UserControlEnabled", get, none(), [](ctlScheduler& c) { return Variant(c.UserControlEnabled()); });
    agree("UserControlEnabled", let, values({false}), done([](ctlScheduler& c) { c.setUserControlEnabled(false); }));

    for (int i = 0; i < kColumns; ++i) {
        const std::string n = std::to_string(i + 1);
        agree("ResourceCatType" + n, let, values({"Providers"}),
              done([i](ctlScheduler& c) { c.setResourceCatType(i, "Providers"); }));
        agree("Resource" + n, let, values({"Dr. Park"}), done([i](ctlScheduler& c) { c.setResource(i, "Dr. Park"); }));
        agree("DayIncrement" + n, get, none(), [i](ctlScheduler& c) { return Variant(c.DayIncrement(i)); });
        agree("DayIncrement" + n, let, values({"15"}), done([i](ctlScheduler& c) { c.setDayIncrement(i, "15"); }));
        using ReadAt = std::string (ctlScheduler::*)(int) const;
        using WriteAt = void (ctlScheduler::*)(int, const std::string&);
        const std::tuple<std::string, ReadAt, WriteAt> family[] = {
            {"Value", &ctlScheduler::ResourceValue, &ctlScheduler::setResourceValue},
            {"ValueListIndex", &ctlScheduler::ResourceValueListIndex, &ctlScheduler::setResourceValueListIndex},
            {"ListIndex", &ctlScheduler::ResourceListIndex, &ctlScheduler::setResourceListIndex}};
        for (const auto& [after, read, write] : family) {
            agree("Resource" + n + after, get, none(), [i, r = read](ctlScheduler& c) { return Variant((c.*r)(i)); });
            agree("Resource" + n + after, let, values({"1"}), done([i, w = write](ctlScheduler& c) { (c.*w)(i, "1"); }));
        }
        agree("Resource" + n + "TimeSlotSelected", get, values({kNine}),
              [i](ctlScheduler& c) { return Variant(c.ResourceTimeSlotSelected(i, kNine)); });
        agree("Resource" + n + "TimeSlotSelected", let, values({kNine, true}),
              done([i](ctlScheduler& c) { c.setResourceTimeSlotSelected(i, kNine, true); }));
        agree("Resource" + n + "TopIndex", get, none(), [i](ctlScheduler& c) { return c.ResourceTopIndex(i); });
        agree("Resource" + n + "TopIndex", let, values({kTen}),
              done([i](ctlScheduler& c) { c.setResourceTopIndex(i, Variant(kTen)); }));
        agree("Resource" + n + "Date", get, none(), [i](ctlScheduler& c) { return c.ResourceDate(i); });
        agree("Resource" + n + "Date", let, values({kDay}), done([i](ctlScheduler& c) { c.setResourceDate(i, Variant(kDay)); }));
    }
}

void walkMethods() {
    const auto call = [](const char* name, const Args& args, const Typed& typed) {
        agree(name, MemberKind::Method, args, typed);
    };
    // The commands without arguments.
#define QUORVANE_COMMAND(Name) call(#Name, none(), done([](ctlScheduler& c) { c.Name(); }));
    QUORVANE_COMMAND(ScheduleApp) QUORVANE_COMMAND(mnoCheckIn_Click) QUORVANE_COMMAND(mnoNoShow_Click)
    QUORVANE_COMMAND(cmdClear_Click) QUORVANE_COMMAND(mnoConfirm_Click) QUORVANE_COMMAND(mnoCheckOut_Click)
    QUORVANE_COMMAND(cmdLoad_Click) QUORVANE_COMMAND(cmdOpenPatient_Click) QUORVANE_COMMAND(cmdPatientSearch_Click)
    QUORVANE_COMMAND(mnoPrint_Click) QUORVANE_COMMAND(mnoShowToday_Click) QUORVANE_COMMAND(cmdValidatePatient_Click)
    QUORVANE_COMMAND(mnoFindNextAvailable_Click) QUORVANE_COMMAND(mnoFindNextAvailableApp_Click)
    QUORVANE_COMMAND(mnoSearchAppointments_Click) QUORVANE_COMMAND(mnoSearchAppointmentsApp_Click)
    QUORVANE_COMMAND(mnoAddEditRecurrenceApp_Click) QUORVANE_COMMAND(mnoRefreshAllSchedules_Click)
    QUORVANE_COMMAND(mnoRefreshAllSchedulesApp_Click) QUORVANE_COMMAND(mnoDeleteApp_Click)
    QUORVANE_COMMAND(mnoPrintSuperbillApp_Click) QUORVANE_COMMAND(UserControl_Initialize)
    QUORVANE_COMMAND(mnoWeekView_Click) QUORVANE_COMMAND(ClearAdditionalAppInfoOnSelect)
    QUORVANE_COMMAND(ClearAdditionalAppInfo) QUORVANE_COMMAND(ShowWkvw) QUORVANE_COMMAND(ClearWeekView)
    QUORVANE_COMMAND(ClearPatient) QUORVANE_COMMAND(NextAvailableClick) QUORVANE_COMMAND(PatientLoaded)
    QUORVANE_COMMAND(FocusControl)
#undef QUORVANE_COMMAND

    call("SetResourceAndDate", values({"502", std::int16_t{1}, "1/16/2008"}),
         [](ctlScheduler& c) { return c.SetResourceAndDate("502", 1, "1/16/2008"); });
    call("ResizeControl", values({std::int16_t{600}, std::int16_t{900}}), done([](ctlScheduler& c) { c.ResizeControl(600, 900); }));
    call("calCalendar_Change", values({kDay}), done([](ctlScheduler& c) { c.calCalendar_Change(kDay); }));
    call("UpdateStatus", withFirst({"Checked-In"}), done([](ctlScheduler& c) { c.UpdateStatus(first(c), "Checked-In"); }));
    call("UpdateCurrentAppStatus", values({"No-Show"}), done([](ctlScheduler& c) { c.UpdateCurrentAppStatus("No-Show"); }));
    call("CheckCurrentAppStatus", withFirst(), done([](ctlScheduler& c) { c.CheckCurrentAppStatus(first(c)); }));
    call("ClearTimeSlots", values({"1"}), done([](ctlScheduler& c) { c.ClearTimeSlots(Variant("1")); }));
    call("RefreshSchedule", values({std::int16_t{2}}), done([](ctlScheduler& c) { c.RefreshSchedule(2); }));
    call("SetCurrentApp", withFirst(), done([](ctlScheduler& c) { c.SetCurrentApp(first(c)); }));
    call("LoadWeekView", values({"501", "Dr. Ortiz", kDay}),
         done([](ctlScheduler& c) { c.LoadWeekView("501", "Dr. Ortiz", kDay); }));
    call("AddWkvwAppointment", values({"1", "Ada", kNine, kTen, "9", "Scheduled", std::int16_t{2}}),
         done([](ctlScheduler& c) { c.AddWkvwAppointment("1", "Ada", kNine, kTen, "9", "Scheduled", 2); }));
    call("AddAppointment", values({"2", "Alan Kay", kNine, kTen, "1202", "Scheduled", "", "5502"}),
         done([](ctlScheduler& c) { c.AddAppointment("2", "Alan Kay", kNine, kTen, "1202", "Scheduled", "", "5502"); }));
    call("CheckLoadAllToday", values({"1"}), [](ctlScheduler& c) { return c.CheckLoadAllToday("1"); });
    call("SetStatus", withFirst({"Cancelled"}), done([](ctlScheduler& c) { c.SetStatus(first(c), "Cancelled"); }));
    call("GetStatus", withFirst(), [](ctlScheduler& c) { return Variant(c.GetStatus(first(c))); });
    call("SetAppId", [](ctlScheduler& c) { return std::vector<Variant>{"1", "1301", first(c)->Key(), "5503"}; },
         done([](ctlScheduler& c) { c.SetAppId("1", "1301", first(c)->Key(), "5503"); }));
    call("GetDayView", values({"2"}), [](ctlScheduler& c) { return Variant(ObjectRef(c.GetDayView("2"))); });
    call("RemoveTimeSlotSelected", withView(), done([](ctlScheduler& c) { c.RemoveTimeSlotSelected(*c.GetDayView("1")); }));
    call("getSelectedTimeSlot", withView(), [](ctlScheduler& c) { return Variant(c.getSelectedTimeSlot(*c.GetDayView("1"))); });
    call("ResetCalendar", values({kDay}), [](ctlScheduler& c) { return c.ResetCalendar(kDay); });
    call("AddResourceTemplate", values({kNine, kTen, "Lunch", "#C0C0C0", "1", "Y"}),
         done([](ctlScheduler& c) { c.AddResourceTemplate(kNine, kTen, "Lunch", "#C0C0C0", "1", "Y"); }));
    call("AddExistingTemplate", values({kNine, kTen, "Lunch", "#C0C0C0", "1"}), done([](ctlScheduler& c) {
             OleDate end = kTen;
             std::string colour = "#C0C0C0";
             c.AddExistingTemplate(kNine, end, "Lunch", colour, "1");
         }));
    call("DisplayTopIndex", values({kTen, "1"}), [](ctlScheduler& c) { return c.DisplayTopIndex(kTen, "1"); });
    call("AddAllDayTemplateWeekview", values({"#C0C0C0", std::int16_t{2}}), done([](ctlScheduler& c) {
             std::string colour = "#C0C0C0";
             c.AddAllDayTemplateWeekview(colour, 2);
         }));
    call("AddTemplateWeekview", values({std::int16_t{2}, kNine, kTen, "Lunch", "#C0C0C0"}), done([](ctlScheduler& c) {
             OleDate end = kTen;
             std::string colour = "#C0C0C0";
             c.AddTemplateWeekview(Variant(std::int16_t{2}), kNine, end, "Lunch", colour);
         }));
    call("vbRGBVal", values({"#102030"}), [](ctlScheduler& c) {
        std::string colour = "#102030";
        return Variant(c.vbRGBVal(colour));
    });
    call("IntervalInMinutes", withView(), [](ctlScheduler& c) { return Variant(c.IntervalInMinutes(*c.GetDayView("1"))); });
    call("RefreshTimeslots", values({"1"}), done([](ctlScheduler& c) { c.RefreshTimeslots("1"); }));
    call("RefreshTimeslotsWeekview", values({std::int16_t{2}}), done([](ctlScheduler& c) { c.RefreshTimeslotsWeekview(2); }));
    call("ModifySchedules", values({"3"}), [](ctlScheduler& c) {
        std::string n = "3";
        return c.ModifySchedules(n);
    });
    call("SetAppointmentType", values({"New Patient|45|First visit|Intake|7", "1"}),
         done([](ctlScheduler& c) { c.SetAppointmentType("New Patient|45|First visit|Intake|7", "1"); }));
}

} // namespace

// The walk covers the interface's 329 members, each side of a property
// counted, and nothing answers by name that the walk did not call.
TEST(InterfaceWalk, TheTypedCallAndTheCallByNameAgreeForEveryMember) {
    walked.clear();
    walkProperties();
    walkMethods();
    EXPECT_EQ(walked.size(), 329u);
    for (const MemberInfo& m : memberTable())
        EXPECT_TRUE(walked.count({m.name, m.kind})) << m.name << " answers by name but is no member of the interface";
}
