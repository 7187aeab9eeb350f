// The current appointment pane: hidden fields that mirror one appointment for
// the host, and four visible ones that carry what the appointment object has no
// field for. The words in the visible fields belong to the appointment last
// loaded or named, which is what the save checks.

#include <QuorvaneScheduler/control_internals.h>

#include "appointments/messages.h"

namespace quorvane {

// Touches neither objCurrentApp, txtAppPatEID nor any visible field. A tag that
// is not present leaves the id and the recurrence id as they were, so during a
// drag txtAppAppointmentId keeps the whole tag until a named appointment comes.
void ctlScheduler::SetCurrentApp(const AppointmentRef& Appointment) {
    if (!Appointment) throw ObjectRequired("no appointment to show");
    w_.txtAppStartDateTime.text = generalDateText(Appointment->StartDateTime);
    w_.txtAppEndDateTime.text = generalDateText(Appointment->EndDateTime);
    w_.txtAppDescription.text = Appointment->Text;
    w_.txtAppKey.text = std::to_string(Appointment->Key());
    w_.txtAppStatus.text = GetStatus(Appointment);
    if (!isPresent(Appointment->Tag)) return;
    const std::vector<std::string> fields = splitFields(Appointment->Tag, '~');
    w_.txtAppAppointmentId.text = fieldAt(fields, 0);
    w_.txtAppRecurrenceId.text = fieldAt(fields, 1);
}

void ctlScheduler::ClearAdditionalAppInfo() {
    w_.txtAppChiefComplaint.text.clear();
    w_.txtAppComments.text.clear();
    w_.txtAppRefProvider.text.clear();
    w_.txtAppPriorAuthNum.text.clear();
    w_.txtAppRefProviderEID.text.clear();
}

// Keys are compared as numbers and not tied to a column: the same key in another
// column counts as the same appointment.
void ctlScheduler::ClearAdditionalAppInfoOnSelect() {
    const AppointmentRef selected =
        GetDayView(w_.txtResourceFocus.text)->appointmentSet().GetSelectedAppointment();
    if (!selected) return;
    if (w_.txtAppKey.text.empty() || textToLong(w_.txtAppKey.text) != selected->Key())
        ClearAdditionalAppInfo();
}

void ctlScheduler::cmdLoad_Click() {
    state_.strAppointmentTypeID.clear();
    const AppointmentRef selected =
        GetDayView(w_.txtResourceFocus.text)->appointmentSet().GetSelectedAppointment();
    if (!selected) return;
    if (isPresent(selected->Tag)) state_.strCurrentAppId = tagField(selected->Tag, 0);
    beginBusy();
    SetCurrentApp(selected);
    const std::string strResourceNumber = w_.txtResourceFocus.text;
    host().AppointmentSelected(strResourceNumber);
}

// An appointment without a tag passes the check: there is no id to compare.
void ctlScheduler::cmdSaveAdditionalAppInfo_Click() {
    const std::string strResourceEID = FocusedResourceValue();
    const AppointmentRef selected =
        GetDayView(w_.txtResourceFocus.text)->appointmentSet().GetSelectedAppointment();
    if (!selected) {
        platform_.msgBox(messages::kNoAppointment);
        return;
    }
    if (isPresent(selected->Tag) && tagField(selected->Tag, 0) != state_.strCurrentAppId) {
        platform_.msgBox(messages::kSaveMismatch);
        return;
    }
    beginBusy();
    SetCurrentApp(selected);
    host().SaveAdditionalAppInfo(strResourceEID);
}

} // namespace quorvane
