#pragma once
// Hands each event of the control to several sinks in turn (the desk's answer,
// the window that shows it), with a hook before and after each, where a
// recording of the session hears the event by name.

#include <QuorvaneScheduler/events.h>

#include <functional>
#include <string_view>
#include <vector>

namespace practice {

class EventTee final : public quorvane::ctlSchedulerEvents {
public:
    using Str = const std::string&;
    using Variant = quorvane::Variant;
    std::vector<quorvane::ctlSchedulerEvents*> sinks;
    std::function<void(std::string_view name, const std::vector<Variant>& args)> before;
    std::function<void()> after;

private:
    // `after` runs however the sinks end, a failure of one included.
    struct Done {
        EventTee* tee;
        ~Done() {
            if (tee->after) tee->after();
        }
    };

public:

#define QUORVANE_TEE(Name, Params, Args, Values)                                                             \
    void Name Params override {                                                                              \
        if (before) before(#Name, Values);                                                                   \
        const Done done{this};                                                                               \
        for (quorvane::ctlSchedulerEvents * sink : sinks)                                                    \
            sink->Name Args;                                                                                 \
    }
    QUORVANE_TEE(ValidatePatient, (Str a), (a), {a})
    QUORVANE_TEE(UpdateAppStatus, (Str a, Variant& b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(SaveAdditionalAppInfo, (Str a), (a), {a})
    QUORVANE_TEE(PrintDay, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(PrintResourceSuperbills, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(AddApptWithPatient, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(PatientSearch, (), (), {})
    QUORVANE_TEE(AppointmentSearch, (Str a), (a), {a})
    QUORVANE_TEE(AddEditRecurrence, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(OnWeekLoad, (Str a, quorvane::OleDate b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(OpenPatient, (Str a), (a), {a})
    QUORVANE_TEE(OpenPatientHistory, (Str a), (a), {a})
    QUORVANE_TEE(AppointmentSelected, (Str a), (a), {a})
    QUORVANE_TEE(ResourceBeforeRemove, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(ResourceAfterResize, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(ResourceAfterDrag, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(ResourceOnClick, (std::int16_t a, Str b, const Variant& c), (a, b, c),
                 (std::vector<Variant>{a, b, c}))
    QUORVANE_TEE(NextAvailable, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(RefreshAllSchedules, (), (), {})
    QUORVANE_TEE(RefreshAllDisplayAll, (), (), {})
    QUORVANE_TEE(RefreshSchedule, (Str a), (a), {a})
    QUORVANE_TEE(RefProviderSearch, (), (), {})
    QUORVANE_TEE(PrintSuperbill, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(PrintDaysFacesheets, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(PrintFaceSheet, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(DisplayPhoto, (Str a, Str b, Str c, Str d), (a, b, c, d), (std::vector<Variant>{a, b, c, d}))
    QUORVANE_TEE(HidePhoto, (), (), {})
    QUORVANE_TEE(DisplayQuickScan, (Str a, std::int16_t b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(QuickComments, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(DisplayTasking, (), (), {})
    QUORVANE_TEE(DisplayRecallSetup, (Str a), (a), {a})
    QUORVANE_TEE(DisplayRecallList, (), (), {})
    QUORVANE_TEE(DisplayLegend, (), (), {})
    QUORVANE_TEE(PrintTxPlan, (Str a, Str b, Str c), (a, b, c), (std::vector<Variant>{a, b, c}))
    QUORVANE_TEE(OpenQuickPay, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(OpenAuthorization, (Str a, Str b), (a, b), (std::vector<Variant>{a, b}))
    QUORVANE_TEE(OpenOfficeCommunication, (Str a), (a), {a})
#undef QUORVANE_TEE
};

} // namespace practice
