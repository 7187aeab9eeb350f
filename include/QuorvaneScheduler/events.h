#pragma once
// The control's outgoing interface: the 37 events, in the order of the
// interface. A host implements ctlSchedulerEvents and hands it to the control;
// a raise is a plain synchronous call into it, and the host may call the control
// again from inside any of them.

#include <QuorvaneScheduler/ole_date.h>
#include <QuorvaneScheduler/variant.h>

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

using Str = const std::string&;

class ctlSchedulerEvents {
public:
    virtual ~ctlSchedulerEvents() = default;

    virtual void ValidatePatient(Str /*strPatientEID*/) {}
    // strStatus is passed by reference and holds a string.
    virtual void UpdateAppStatus(Str /*strResourceEID*/, Variant& /*strStatus*/) {}
    virtual void SaveAdditionalAppInfo(Str /*strResourceEID*/) {}
    virtual void PrintDay(Str /*ResourceEID*/, Str /*ScheduleInfo*/) {}
    virtual void PrintResourceSuperbills(Str /*ResourceEID*/, Str /*strScheduleDate*/) {}
    virtual void AddApptWithPatient(Str /*strResourceNumber*/, Str /*strResourceEID*/) {}
    virtual void PatientSearch() {}
    virtual void AppointmentSearch(Str /*strResourceNumber*/) {}
    virtual void AddEditRecurrence(Str /*strAppInfo*/, Str /*strResourceNumber*/) {}
    virtual void OnWeekLoad(Str /*strScheduledEID*/, OleDate /*strCurrentDate*/) {}
    virtual void OpenPatient(Str /*strPatientEID*/) {}
    virtual void OpenPatientHistory(Str /*strPatientEID*/) {}
    virtual void AppointmentSelected(Str /*strResourceNumber*/) {}
    virtual void ResourceBeforeRemove(Str /*strResourceValue*/, Str /*strResourceNumber*/) {}
    virtual void ResourceAfterResize(Str /*strResourceValue*/, Str /*strResourceNumber*/) {}
    virtual void ResourceAfterDrag(Str /*strResourceValue*/, Str /*strResourceNumber*/) {}
    // strResourceDate holds the date as the day view gives it.
    virtual void ResourceOnClick(std::int16_t /*intResourceNumber*/, Str /*strResourceValue*/,
                                 const Variant& /*strResourceDate*/) {}
    virtual void NextAvailable(Str /*strResourceEID*/, Str /*strResourceNumber*/) {}
    virtual void RefreshAllSchedules() {}
    virtual void RefreshAllDisplayAll() {}
    // Part of the interface, never raised by the control.
    virtual void RefreshSchedule(Str /*strResourceNumber*/) {}
    virtual void RefProviderSearch() {}
    virtual void PrintSuperbill(Str /*strAppID*/, Str /*strPatientEID*/) {}
    virtual void PrintDaysFacesheets(Str /*ResourceEID*/, Str /*strScheduleDate*/) {}
    virtual void PrintFaceSheet(Str /*strAppID*/, Str /*strPatientEID*/) {}
    virtual void DisplayPhoto(Str /*strServerUsed*/, Str /*strServerPath*/, Str /*strImageId*/,
                              Str /*strSaveLocation*/) {}
    virtual void HidePhoto() {}
    virtual void DisplayQuickScan(Str /*strPatientEID*/, std::int16_t /*intScanNumber*/) {}
    virtual void QuickComments(Str /*strText*/, Str /*strType*/) {}
    virtual void DisplayTasking() {}
    virtual void DisplayRecallSetup(Str /*strPatientEID*/) {}
    virtual void DisplayRecallList() {}
    virtual void DisplayLegend() {}
    virtual void PrintTxPlan(Str /*strAppID*/, Str /*strPatientEID*/, Str /*strScheduleDate*/) {}
    virtual void OpenQuickPay(Str /*strAppID*/, Str /*strPatientEID*/) {}
    virtual void OpenAuthorization(Str /*strAppID*/, Str /*strPatientEID*/) {}
    virtual void OpenOfficeCommunication(Str /*strPatientEID*/) {}
};

// One event of the interface as a host sees it by name.
struct EventParam {
    std::string_view name;
    VariantType type; // String, Integer, Date or Empty (a Variant)
    bool byRef = false;
};
struct EventInfo {
    std::string_view name;
    std::vector<EventParam> params;
};
// The 37 events in the order of the interface.
const std::vector<EventInfo>& eventTable();
const EventInfo* findEvent(std::string_view name);

// Hears every event by name, with its arguments as Variants. A by-reference
// argument the handler changes in `args` goes back to the control.
class EventsByName final : public ctlSchedulerEvents {
public:
    using Handler = std::function<void(std::string_view name, std::vector<Variant>& args)>;
    explicit EventsByName(Handler handler) : handler_(std::move(handler)) {}

    void ValidatePatient(Str a) override { fire("ValidatePatient", {a}); }
    void UpdateAppStatus(Str a, Variant& status) override;
    void SaveAdditionalAppInfo(Str a) override { fire("SaveAdditionalAppInfo", {a}); }
    void PrintDay(Str a, Str b) override { fire("PrintDay", {a, b}); }
    void PrintResourceSuperbills(Str a, Str b) override { fire("PrintResourceSuperbills", {a, b}); }
    void AddApptWithPatient(Str a, Str b) override { fire("AddApptWithPatient", {a, b}); }
    void PatientSearch() override { fire("PatientSearch", {}); }
    void AppointmentSearch(Str a) override { fire("AppointmentSearch", {a}); }
    void AddEditRecurrence(Str a, Str b) override { fire("AddEditRecurrence", {a, b}); }
    void OnWeekLoad(Str a, OleDate d) override { fire("OnWeekLoad", {a, d}); }
    void OpenPatient(Str a) override { fire("OpenPatient", {a}); }
    void OpenPatientHistory(Str a) override { fire("OpenPatientHistory", {a}); }
    void AppointmentSelected(Str a) override { fire("AppointmentSelected", {a}); }
    void ResourceBeforeRemove(Str a, Str b) override { fire("ResourceBeforeRemove", {a, b}); }
    void ResourceAfterResize(Str a, Str b) override { fire("ResourceAfterResize", {a, b}); }
    void ResourceAfterDrag(Str a, Str b) override { fire("ResourceAfterDrag", {a, b}); }
    void ResourceOnClick(std::int16_t n, Str a, const Variant& d) override {
        fire("ResourceOnClick", {n, a, d});
    }
    void NextAvailable(Str a, Str b) override { fire("NextAvailable", {a, b}); }
    void RefreshAllSchedules() override { fire("RefreshAllSchedules", {}); }
    void RefreshAllDisplayAll() override { fire("RefreshAllDisplayAll", {}); }
    void RefreshSchedule(Str a) override { fire("RefreshSchedule", {a}); }
    void RefProviderSearch() override { fire("RefProviderSearch", {}); }
    void PrintSuperbill(Str a, Str b) override { fire("PrintSuperbill", {a, b}); }
    void PrintDaysFacesheets(Str a, Str b) override { fire("PrintDaysFacesheets", {a, b}); }
    void PrintFaceSheet(Str a, Str b) override { fire("PrintFaceSheet", {a, b}); }
    void DisplayPhoto(Str a, Str b, Str c, Str d) override { fire("DisplayPhoto", {a, b, c, d}); }
    void HidePhoto() override { fire("HidePhoto", {}); }
    void DisplayQuickScan(Str a, std::int16_t n) override { fire("DisplayQuickScan", {a, n}); }
    void QuickComments(Str a, Str b) override { fire("QuickComments", {a, b}); }
    void DisplayTasking() override { fire("DisplayTasking", {}); }
    void DisplayRecallSetup(Str a) override { fire("DisplayRecallSetup", {a}); }
    void DisplayRecallList() override { fire("DisplayRecallList", {}); }
    void DisplayLegend() override { fire("DisplayLegend", {}); }
    void PrintTxPlan(Str a, Str b, Str c) override { fire("PrintTxPlan", {a, b, c}); }
    void OpenQuickPay(Str a, Str b) override { fire("OpenQuickPay", {a, b}); }
    void OpenAuthorization(Str a, Str b) override { fire("OpenAuthorization", {a, b}); }
    void OpenOfficeCommunication(Str a) override { fire("OpenOfficeCommunication", {a}); }

private:
    void fire(std::string_view name, std::vector<Variant> args) {
        if (handler_) handler_(name, args);
    }
    Handler handler_;
};

} // namespace quorvane
