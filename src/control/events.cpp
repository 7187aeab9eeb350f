#include <QuorvaneScheduler/events.h>

namespace quorvane {

void EventsByName::UpdateAppStatus(Str strResourceEID, Variant& strStatus) {
    std::vector<Variant> args{strResourceEID, strStatus};
    if (handler_) handler_("UpdateAppStatus", args);
    strStatus = args.at(1);
}

namespace {
constexpr VariantType S = VariantType::String;
constexpr VariantType I = VariantType::Integer;
constexpr VariantType D = VariantType::Date;
constexpr VariantType V = VariantType::Empty; // declared as Variant

std::vector<EventInfo> buildTable() {
    return {
        {"ValidatePatient", {{"strPatientEID", S}}},
        {"UpdateAppStatus", {{"strResourceEID", S}, {"strStatus", V, true}}},
        {"SaveAdditionalAppInfo", {{"strResourceEID", S}}},
        {"PrintDay", {{"ResourceEID", S}, {"ScheduleInfo", S}}},
        {"PrintResourceSuperbills", {{"ResourceEID", S}, {"strScheduleDate", S}}},
        {"AddApptWithPatient", {{"strResourceNumber", S}, {"strResourceEID", S}}},
        {"PatientSearch", {}},
        {"AppointmentSearch", {{"strResourceNumber", S}}},
        {"AddEditRecurrence", {{"strAppInfo", S}, {"strResourceNumber", S}}},
        {"OnWeekLoad", {{"strScheduledEID", S}, {"strCurrentDate", D}}},
        {"OpenPatient", {{"strPatientEID", S}}},
        {"OpenPatientHistory", {{"strPatientEID", S}}},
        {"AppointmentSelected", {{"strResourceNumber", S}}},
        {"ResourceBeforeRemove", {{"strResourceValue", S}, {"strResourceNumber", S}}},
        {"ResourceAfterResize", {{"strResourceValue", S}, {"strResourceNumber", S}}},
        {"ResourceAfterDrag", {{"strResourceValue", S}, {"strResourceNumber", S}}},
        {"ResourceOnClick", {{"intResourceNumber", I}, {"strResourceValue", S}, {"strResourceDate", V}}},
        {"NextAvailable", {{"strResourceEID", S}, {"strResourceNumber", S}}},
        {"RefreshAllSchedules", {}},
        {"RefreshAllDisplayAll", {}},
        {"RefreshSchedule", {{"strResourceNumber", S}}},
        {"RefProviderSearch", {}},
        {"PrintSuperbill", {{"strAppID", S}, {"strPatientEID", S}}},
        {"PrintDaysFacesheets", {{"ResourceEID", S}, {"strScheduleDate", S}}},
        {"PrintFaceSheet", {{"strAppID", S}, {"strPatientEID", S}}},
        {"DisplayPhoto",
         {{"strServerUsed", S}, {"strServerPath", S}, {"strImageId", S}, {"strSaveLocation", S}}},
        {"HidePhoto", {}},
        {"DisplayQuickScan", {{"strPatientEID", S}, {"intScanNumber", I}}},
        {"QuickComments", {{"strText", S}, {"strType", S}}},
        {"DisplayTasking", {}},
        {"DisplayRecallSetup", {{"strPatientEID", S}}},
        {"DisplayRecallList", {}},
        {"DisplayLegend", {}},
        {"PrintTxPlan", {{"strAppID", S}, {"strPatientEID", S}, {"strScheduleDate", S}}},
        {"OpenQuickPay", {{"strAppID", S}, {"strPatientEID", S}}},
        {"OpenAuthorization", {{"strAppID", S}, {"strPatientEID", S}}},
        {"OpenOfficeCommunication", {{"strPatientEID", S}}},
    };
}
} // namespace

const std::vector<EventInfo>& eventTable() {
    static const std::vector<EventInfo> table = buildTable();
    return table;
}

const EventInfo* findEvent(std::string_view name) {
    for (const auto& e : eventTable())
        if (e.name == name) return &e;
    return nullptr;
}

} // namespace quorvane
