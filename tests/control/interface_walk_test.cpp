// Walks the whole interface by name: every property side the control offers a
// host exists with its access, every method is there with its declared
// arguments, and nothing answers to a name the interface does not have.

#include <QuorvaneScheduler/members.h>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

using namespace quorvane;

namespace {

enum Access { Read = 1, Write = 2, Both = 3 };

std::vector<std::pair<std::string, Access>> interfaceProperties() {
    std::vector<std::pair<std::string, Access>> p;
    for (const char* n : {"ccCancelled", "ccConfirmed", "ccCheckedIn", "ccCheckedOut", "ccNoShow", "ccScheduled",
                          "intResourceCount", "PhotoServerUsed", "PhotoServerPath", "PhotoImageId", "PhotoSaveLoc",
                          "PatEID", "AppPatEID", "AppStatus", "AppComments", "AppChiefComplaint", "AppRefProvider",
                          "AppPriorAuthNum", "AppRefProviderEID", "PatName", "PatHomePhone", "PatHomePhoneExt",
                          "PatWorkPhone", "PatWorkPhoneExt", "PatOtherPhone", "PatOtherPhoneExt", "PatPriIns",
                          "PatSecIns", "PatChartNumber", "PatPCP", "PatBalance30", "PatBalance60", "PatBalance90",
                          "PatBalance180", "PatSex", "PatDOB", "PatDOD", "PatPrimaryCoPay", "PatPrimaryActive",
                          "PatSecondaryActive", "PatSecondaryCoPay", "AppStartDateTime", "AppEndDateTime",
                          "AppDescription", "AppAppointmentId", "AppRecurrenceId", "AppKey", "UserControlEnabled",
                          "TaskingEnabled"})
        p.emplace_back(n, Both);
    for (const char* n : {"ImagingEnabled", "ClearCommentsEnabled", "NumOfSchedules", "Resources", "ResourceGroups",
                          "ResourceGroupDefaults", "ResourceGroupViews"})
        p.emplace_back(n, Write);
    for (const char* n : {"ResourceNumber", "AppointmentTypeID"}) p.emplace_back(n, Read);
    for (int n = 1; n <= 10; ++n) {
        const std::string c = std::to_string(n);
        p.emplace_back("ResourceCatType" + c, Write);
        p.emplace_back("Resource" + c, Write);
        p.emplace_back("DayIncrement" + c, Both);
        for (const char* after : {"Value", "ValueListIndex", "ListIndex", "TimeSlotSelected", "TopIndex", "Date"})
            p.emplace_back("Resource" + c + after, Both);
    }
    return p;
}

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

TEST(InterfaceWalk, EveryPropertySideExistsWithItsAccess) {
    const auto properties = interfaceProperties();
    int sides = 0;
    for (const auto& [name, access] : properties) {
        SCOPED_TRACE(name);
        EXPECT_EQ(findMember(name, MemberKind::PropertyGet) != nullptr, (access & Read) != 0);
        EXPECT_EQ(findMember(name, MemberKind::PropertyLet) != nullptr, (access & Write) != 0);
        EXPECT_EQ(findMember(name, MemberKind::Method), nullptr);
        sides += (access & Read ? 1 : 0) + (access & Write ? 1 : 0);
    }
    EXPECT_EQ(sides + static_cast<int>(std::size(kMethods)), 329) << "the interface counts each side as a member";
}

TEST(InterfaceWalk, NothingElseAnswers) {
    std::set<std::string> properties, methods;
    for (const char* signature : kMethods)
        methods.insert(nameOf(signature));
    for (const auto& [name, access] : interfaceProperties()) properties.insert(name);
    std::set<std::pair<std::string, MemberKind>> seen;
    for (const MemberInfo& m : memberTable()) {
        EXPECT_TRUE(seen.insert({m.name, m.kind}).second) << m.name << " is listed twice";
        EXPECT_TRUE(m.invoke && (m.kind != MemberKind::PropertyLet || !m.params.empty())) << m.name;
        if (m.kind == MemberKind::Method)
            EXPECT_TRUE(methods.count(m.name)) << m.name << " is no method of the interface";
        else
            EXPECT_TRUE(properties.count(m.name)) << m.name << " is no property of the interface";
    }
    for (const char* signature : kMethods) {
        const MemberInfo* m = findMember(nameOf(signature), MemberKind::Method);
        ASSERT_NE(m, nullptr) << signature;
        EXPECT_EQ(signatureOf(*m), signature);
    }
}
