// The user's status requests. The control only passes them on: it makes the
// appointment current and asks the host, whose answer paints the new colour.

#include <QuorvaneScheduler/control_internals.h>

#include "appointments/messages.h"

#include <utility>

namespace quorvane {

// The status already shown is asked for again all the same; nothing here
// compares it, and nothing remembers the request.
void ctlScheduler::UpdateStatus(const AppointmentRef& app, const std::string& strStatus) {
    const std::string strResourceEID = FocusedResourceValue();
    if (!app) {
        platform_.msgBox(messages::kNoAppointment);
        return;
    }
    beginBusy();
    SetCurrentApp(app);
    // The event takes a Variant by reference; what the host leaves in it stays there.
    Variant status(strStatus);
    host().UpdateAppStatus(strResourceEID, status);
}

// Acts on the appointment of the last context menu, whatever the host means.
void ctlScheduler::UpdateCurrentAppStatus(const std::string& strStatus) {
    SetStatus(state_.objCurrentApp, strStatus);
}

void ctlScheduler::CheckCurrentAppStatus(const AppointmentRef& app) {
    const std::pair<MenuItem*, const char*> entries[] = {
        {&w_.mnoScheduled, "Scheduled"},  {&w_.mnoConfirm, "Confirmed"}, {&w_.mnoCheckIn, "Checked-In"},
        {&w_.mnoCheckOut, "Checked-Out"}, {&w_.mnoNoShow, "No-Show"},    {&w_.mnoCancelled, "Cancelled"},
    };
    for (const auto& [item, status] : entries)
        item->checked = false;
    const std::string status = GetStatus(app);
    for (const auto& [item, name] : entries)
        if (status == name) item->checked = true;
}

void ctlScheduler::mnoScheduled_Click() { UpdateStatus(state_.objCurrentApp, "Scheduled"); }
void ctlScheduler::mnoConfirm_Click() { UpdateStatus(state_.objCurrentApp, "Confirmed"); }
void ctlScheduler::mnoCheckIn_Click() { UpdateStatus(state_.objCurrentApp, "Checked-In"); }
void ctlScheduler::mnoCheckOut_Click() { UpdateStatus(state_.objCurrentApp, "Checked-Out"); }
void ctlScheduler::mnoNoShow_Click() { UpdateStatus(state_.objCurrentApp, "No-Show"); }
void ctlScheduler::mnoCancelled_Click() { UpdateStatus(state_.objCurrentApp, "Cancelled"); }

} // namespace quorvane
