// The commands of the two context menus, the buttons and the keys. Nearly all of
// them are the host's work: the control makes sure a patient or an appointment
// is at hand, then raises the one event of the command with its identifiers,
// taken from txtPatEID, txtResourceFocus, FocusedResourceValue and the tag of
// objCurrentApp. A command that finds what it needs missing shows its message
// and stops; none of them changes the control's state or disables it.

#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/errors.h>

namespace quorvane {

namespace {
constexpr const char* kNoPatientSelected = "No Patient is selected";
constexpr const char* kSelectAPatient = "Please select a patient";
constexpr std::size_t kTagAppId = 0, kTagPatientId = 2;
} // namespace

void ctlScheduler::fromUser(const std::function<void()>& handler) { platform_.container.runForUser(handler); }

std::string ctlScheduler::focusedScheduleDate() const {
    return Variant(GetDayView(w_.txtResourceFocus.text)->CurrentDate()).toString();
}

// ---- the panel's buttons ---------------------------------------------------------

void ctlScheduler::panelPatientCommand(void (ctlSchedulerEvents::*raise)(Str)) {
    if (!isPresent(w_.txtPatEID.text)) {
        platform_.msgBox(kNoPatientSelected);
        return;
    }
    const std::string patient = w_.txtPatEID.text;
    (host().*raise)(patient);
}

void ctlScheduler::cmdOpenPatient_Click() { panelPatientCommand(&ctlSchedulerEvents::OpenPatient); }
void ctlScheduler::cmdValidatePatient_Click() { panelPatientCommand(&ctlSchedulerEvents::ValidatePatient); }

// The quick comments test the chart number, not the identifier.
void ctlScheduler::quickComments(const TextField& field, const char* type) {
    if (w_.txtPatChartNumber.text.empty()) {
        platform_.msgBox(kSelectAPatient);
        return;
    }
    const std::string text = field.text;
    host().QuickComments(text, type);
}

void ctlScheduler::cmdCommentQuickComment_Click() { quickComments(w_.txtAppComments, "Comment"); }
void ctlScheduler::cmdChiefComplainQuickComment_Click() { quickComments(w_.txtAppChiefComplaint, "Chief"); }

// The panel is empty while the host searches.
void ctlScheduler::cmdPatientSearch_Click() {
    ClearPatient();
    host().PatientSearch();
}

// ---- commands of the free part of a column ------------------------------------------

void ctlScheduler::NextAvailableClick() {
    const std::string value = FocusedResourceValue();
    const std::string number = w_.txtResourceFocus.text;
    host().NextAvailable(value, number);
}

void ctlScheduler::mnoSearchAppointments_Click() {
    const std::string number = w_.txtResourceFocus.text;
    host().AppointmentSearch(number);
}

void ctlScheduler::mnoRefreshAllSchedules_Click() { host().RefreshAllSchedules(); }

// No test for a resource here, unlike the printout of the day.
void ctlScheduler::mnoPrintDaysFacesheets_Click() {
    const std::string value = FocusedResourceValue();
    const std::string date = focusedScheduleDate();
    host().PrintDaysFacesheets(value, date);
}

void ctlScheduler::mnoPrintDaySuperbills_Click() {
    const std::string value = FocusedResourceValue();
    const std::string date = focusedScheduleDate();
    host().PrintResourceSuperbills(value, date);
}

// ---- commands of an appointment --------------------------------------------------

// The whole tag, possibly empty: no test here.
void ctlScheduler::mnoAddEditRecurrenceApp_Click() {
    if (!state_.objCurrentApp) throw ObjectRequired("no context menu has opened on an appointment");
    const std::string tag = state_.objCurrentApp->Tag;
    const std::string number = w_.txtResourceFocus.text;
    host().AddEditRecurrence(tag, number);
}

// The fields go out as they stand in the tag, untrimmed.
void ctlScheduler::appointmentCommand(
    const std::function<void(const std::string& appId, const std::string& patientId)>& raise) {
    if (!state_.objCurrentApp) throw ObjectRequired("no context menu has opened on an appointment");
    const std::string tag = state_.objCurrentApp->Tag;
    if (!isPresent(tag)) {
        platform_.msgBox("Error: Appointment information is blank");
        return;
    }
    const std::vector<std::string> fields = splitFields(tag, '~');
    const std::string patient = fieldAt(fields, kTagPatientId);
    if (!isPresent(patient)) {
        platform_.msgBox("Error: Patient ID is blank");
        return;
    }
    raise(fields[kTagAppId], patient);
}

void ctlScheduler::mnoPrintSuperbillApp_Click() {
    appointmentCommand(
        [this](const std::string& app, const std::string& patient) { host().PrintSuperbill(app, patient); });
}

// ---- keys ------------------------------------------------------------------------------

// Control characters only; the key goes on to the focused widget in every case.
void ctlScheduler::UserControl_KeyPress(std::int16_t KeyAscii) {
    switch (KeyAscii) {
    case 26: // Ctrl+Z
        mnoRefreshAllSchedules_Click();
        break;
    case 15: // Ctrl+O
        cmdPatientSearch_Click();
        break;
    case 19: // Ctrl+S
        cmdSaveAdditionalAppInfo_Click();
        break;
    default:
        break;
    }
}

void ctlScheduler::userKeyPress(int code, TextField* focused) {
    const auto gesture = platform_.container.userGesture(focused ? "key % in " + focused->name : "key %",
                                                         {Variant(static_cast<std::int32_t>(code))});
    fromUser([&] { UserControl_KeyPress(static_cast<std::int16_t>(code)); });
    if (focused && focused->onKeyPress) {
        const std::function<void(int)> handler = focused->onKeyPress;
        fromUser([&] { handler(code); });
    }
}

// ---- wiring ---------------------------------------------------------------------------

void ctlScheduler::wireCommands() {
    constexpr int kCtrlQ = 17;
    w_.txtAppChiefComplaint.onKeyPress = [this](int code) {
        if (code == kCtrlQ) cmdChiefComplainQuickComment_Click();
    };
    w_.txtAppComments.onKeyPress = [this](int code) {
        if (code == kCtrlQ) cmdCommentQuickComment_Click();
    };

    w_.cmdPatientSearch.onClick = [this] { cmdPatientSearch_Click(); };
    w_.cmdOpenPatient.onClick = [this] { cmdOpenPatient_Click(); };
    w_.cmdValidatePatient.onClick = [this] { cmdValidatePatient_Click(); };
    w_.cmdPrintSuperbill.onClick = [this] {
        const std::string patient = w_.txtPatEID.text;
        host().PrintSuperbill("0", patient);
    };
    w_.cmdLegend.onClick = [this] { host().DisplayLegend(); };
    w_.cmdTasking.onClick = [this] { host().DisplayTasking(); };
    w_.cmdRefProvider.onClick = [this] { host().RefProviderSearch(); };
    w_.cmdCommentQuickComment.onClick = [this] { cmdCommentQuickComment_Click(); };
    w_.cmdChiefComplainQuickComment.onClick = [this] { cmdChiefComplainQuickComment_Click(); };
    w_.cmdCalendar.onClick = [this] { cmdCalendar_Click(); };
    w_.cmdPatientPhoto.onClick = [this] { cmdPatientPhoto_Click(); };
    w_.cmdQuickScan.onClick = [this] { RaiseQuickScan(1); };
    w_.cmdQuickScanI1.onClick = [this] { RaiseQuickScan(2); };
    w_.cmdQuickScanI2.onClick = [this] { RaiseQuickScan(3); };

    w_.mnoFindNextAvailable.onClick = [this] { mnoFindNextAvailable_Click(); };
    w_.mnoSearchAppointments.onClick = [this] { mnoSearchAppointments_Click(); };
    w_.mnoRecallList.onClick = [this] { host().DisplayRecallList(); };
    w_.mnoPrintDaysFacesheets.onClick = [this] { mnoPrintDaysFacesheets_Click(); };
    w_.mnoPrintDaySuperbills.onClick = [this] { mnoPrintDaySuperbills_Click(); };
    w_.mnoDisplayAll.onClick = [this] { host().RefreshAllDisplayAll(); };
    w_.mnoRefreshAllSchedules.onClick = [this] { mnoRefreshAllSchedules_Click(); };

    w_.mnoAddEditRecurrenceApp.onClick = [this] { mnoAddEditRecurrenceApp_Click(); };
    w_.mnuRecallList.onClick = [this] { host().DisplayRecallList(); };
    w_.mnoFindNextAvailableApp.onClick = [this] { mnoFindNextAvailableApp_Click(); };
    w_.mnoSearchAppointmentsApp.onClick = [this] { mnoSearchAppointmentsApp_Click(); };
    w_.mnoRefreshAllSchedulesApp.onClick = [this] { mnoRefreshAllSchedulesApp_Click(); };
    w_.mnoPrintSuperbillApp.onClick = [this] { mnoPrintSuperbillApp_Click(); };

    using Raise = void (ctlSchedulerEvents::*)(Str);
    const std::pair<MenuItem*, Raise> byPatient[] = {
        {&w_.mnoAddToRecallList, &ctlSchedulerEvents::DisplayRecallSetup},
        {&w_.mnoValidatePatientApp, &ctlSchedulerEvents::ValidatePatient},
        {&w_.mnoOfficeCommunication, &ctlSchedulerEvents::OpenOfficeCommunication},
        {&w_.mnoOpenPatientSetup, &ctlSchedulerEvents::OpenPatient},
        {&w_.mnoOpenPatientHistory, &ctlSchedulerEvents::OpenPatientHistory},
    };
    // The event goes into each lambda by an init-capture: clang 14 cannot capture
    // a structured binding.
    for (const auto& [item, event] : byPatient)
        item->onClick = [this, raise = event] {
            appointmentCommand(
                [&](const std::string&, const std::string& patient) { (host().*raise)(patient); });
        };
    using RaiseBoth = void (ctlSchedulerEvents::*)(Str, Str);
    const std::pair<MenuItem*, RaiseBoth> byAppointment[] = {
        {&w_.mnoOpenQuickPay, &ctlSchedulerEvents::OpenQuickPay},
        {&w_.mnoAuthorization, &ctlSchedulerEvents::OpenAuthorization},
        {&w_.mnoPrintFaceSheet, &ctlSchedulerEvents::PrintFaceSheet},
    };
    for (const auto& [item, event] : byAppointment)
        item->onClick = [this, raise = event] {
            appointmentCommand(
                [&](const std::string& app, const std::string& patient) { (host().*raise)(app, patient); });
        };
    // The treatment plan reads the date after the tests pass.
    w_.mnoPrintTreatmentPlan.onClick = [this] {
        appointmentCommand([this](const std::string& app, const std::string& patient) {
            const std::string date = focusedScheduleDate();
            host().PrintTxPlan(app, patient, date);
        });
    };
}

} // namespace quorvane
