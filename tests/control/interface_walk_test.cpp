// The methods of the interface by name, each with the parameters, types and
// passing the interface declares (the typed walk covers every member's
// existence and behaviour).

#include <QuorvaneScheduler/members.h>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

using namespace quorvane;

namespace {

// The 62 methods in the order of the interface, each with its declared
// signature: S string, I 16-bit, L 32-bit, D date, V Variant, O object,
// A appointment, & by reference; after the ")" the result, - for none.
const char* const kMethods[] = {
    "SetResourceAndDate(SIS)V", "ResizeControl(II)-", "calCalendar_Change(D)-", "ScheduleApp()V",
    "UpdateStatus(A&S&)-", "UpdateCurrentAppStatus(S)-", "mnoCheckIn_Click()-", "mnoNoShow_Click()-",
    "cmdClear_Click()-", "mnoConfirm_Click()-", "mnoCheckOut_Click()-", "cmdLoad_Click()-",
    "cmdOpenPatient_Click()-", "cmdPatientSearch_Click()-", "mnoPrint_Click()-", "mnoShowToday_Click()-",
    "cmdValidatePatient_Click()-", "CheckCurrentAppStatus(A&)V", "ClearTimeSlots(V&)V",
    "mnoFindNextAvailable_Click()-", "mnoFindNextAvailableApp_Click()-", "mnoSearchAppointments_Click()-",
    "mnoSearchAppointmentsApp_Click()-", "mnoAddEditRecurrenceApp_Click()-", "mnoRefreshAllSchedules_Click()-",
    "mnoRefreshAllSchedulesApp_Click()-", "mnoDeleteApp_Click()-", "mnoPrintSuperbillApp_Click()-",
    "UserControl_Initialize()-", "RefreshSchedule(I)-", "mnoWeekView_Click()-", "ClearAdditionalAppInfoOnSelect()V",
    "ClearAdditionalAppInfo()V", "SetCurrentApp(A&)V", "LoadWeekView(S&S&D&)V", "ShowWkvw()V",
    "AddWkvwAppointment(S&S&D&D&S&S&I&)V", "ClearWeekView()V", "AddAppointment(S&S&D&D&S&S&S&S&)V",
    "CheckLoadAllToday(S&)V", "SetStatus(A&S&)V", "GetStatus(A&)S", "SetAppId(S&S&L&S&)V", "GetDayView(S&)O",
    "RemoveTimeSlotSelected(O&)V", "getSelectedTimeSlot(O&)D", "ResetCalendar(D&)V", "ClearPatient()V",
    "NextAvailableClick()V", "AddResourceTemplate(DDSSSS)V", "AddExistingTemplate(D&D&S&S&S&)V",
    "DisplayTopIndex(D&S&)V", "AddAllDayTemplateWeekview(S&I&)V", "AddTemplateWeekview(V&D&D&S&S&)V",
    "vbRGBVal(S&)L", "IntervalInMinutes(O&)I", "RefreshTimeslots(S&)V", "RefreshTimeslotsWeekview(I&)V",
    "ModifySchedules(S&)V", "PatientLoaded()-", "SetAppointmentType(SS)-", "FocusControl()-"};

std::string nameOf(const std::string& signature) { return signature.substr(0, signature.find('(')); }

std::string signatureOf(const MemberInfo& m) {
    // The codes in the order of DeclaredType; no method takes or gives a Single, Double or Boolean.
    const auto code = [](DeclaredType t) { return "-SIL???DVOA"[static_cast<int>(t)]; };
    std::string s = m.name + "(";
    for (const MemberParam& p : m.params)
        s += std::string(1, code(p.type)) + (p.byRef ? "&" : "");
    return s + ")" + code(m.result);
}

} // namespace

TEST(InterfaceWalk, EveryMethodHasItsDeclaredSignature) {
    std::set<std::string> methods;
    for (const char* signature : kMethods) {
        methods.insert(nameOf(signature));
        const MemberInfo* m = findMember(nameOf(signature), MemberKind::Method);
        ASSERT_NE(m, nullptr) << signature;
        EXPECT_EQ(signatureOf(*m), signature);
    }
    for (const MemberInfo& m : memberTable())
        EXPECT_TRUE(m.kind != MemberKind::Method || methods.count(m.name)) << m.name;
}
