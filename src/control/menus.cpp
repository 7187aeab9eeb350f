// The two context menus as the form designer left them, and the handlers of
// their items. A right click in a day view opens one of them (see
// day_view_handlers.cpp); every other rule of a command lives with its subsystem.

#include <QuorvaneScheduler/control_internals.h>

namespace quorvane {

namespace {

using W = SchedulerWidgets;

struct MenuRow {
    MenuItem W::*item;
    const char* name;
    const char* caption; // MenuItem::kSeparator for a line
};

const MenuRow kSchedulerMenu[] = {
    {&W::mnoSchedulePatient, "mnoSchedulePatient", "Schedule Patient"},
    {&W::mnoFindNextAvailable, "mnoFindNextAvailable", "Find Next Available"},
    {&W::mnoSearchAppointments, "mnoSearchAppointments", "Search Appointments"},
    {&W::mnoRecallList, "mnoRecallList", "Recall List"},
    {&W::mnoShowToday, "mnoShowToday", "Show Today"},
    {&W::mnoWeekView, "mnoWeekView", "Week View"},
    {&W::mnoLine1, "mnoLine1", MenuItem::kSeparator},
    {&W::mnoPrintDaysFacesheets, "mnoPrintDaysFacesheets", "Print Day's Facesheets"},
    {&W::mnoPrintDaySuperbills, "mnoPrintDaySuperbills", "Print Day's Superbills"},
    {&W::mnoPrint, "mnoPrint", "Print Schedule"},
    {&W::mnoLine2, "mnoLine2", MenuItem::kSeparator},
    {&W::mnoDisplayAll, "mnoDisplayAll", "Display All Appointments"},
    {&W::mnoRefreshAllSchedules, "mnoRefreshAllSchedules", "Refresh All Schedules (Ctrl+Z)"},
};

const MenuRow kAppointmentMenu[] = {
    {&W::mnoScheduled, "mnoScheduled", "Scheduled"},
    {&W::mnoConfirm, "mnoConfirm", "Confirm"},
    {&W::mnoCheckIn, "mnoCheckIn", "Check In"},
    {&W::mnoCheckOut, "mnoCheckOut", "Check Out"},
    {&W::mnoNoShow, "mnoNoShow", "No Show"},
    {&W::mnoCancelled, "mnoCancelled", "Cancel"},
    {&W::mnoHorizontalLine1, "mnoHorizontalLine1", MenuItem::kSeparator},
    {&W::mnoAddEditRecurrenceApp, "mnoAddEditRecurrenceApp", "Add/Edit Recurrence"},
    {&W::mnoAddToRecallList, "mnoAddToRecallList", "Add to Recall List"},
    {&W::mnuRecallList, "mnuRecallList", "Recall List"},
    {&W::mnoFindNextAvailableApp, "mnoFindNextAvailableApp", "Find Next Available"},
    {&W::mnoSearchAppointmentsApp, "mnoSearchAppointmentsApp", "Search Appointments"},
    {&W::mnoValidatePatientApp, "mnoValidatePatientApp", "Validate Patient"},
    {&W::mnoLine3, "mnoLine3", MenuItem::kSeparator},
    {&W::mnoOfficeCommunication, "mnoOfficeCommunication", "Office Communication"},
    {&W::mnoOpenPatientSetup, "mnoOpenPatientSetup", "Patient Setup"},
    {&W::mnoOpenPatientHistory, "mnoOpenPatientHistory", "Patient History"},
    {&W::mnoOpenQuickPay, "mnoOpenQuickPay", "Quick Pay"},
    {&W::mnoAuthorization, "mnoAuthorization", "Authorization"},
    {&W::mnoHorizontalLine4, "mnoHorizontalLine4", MenuItem::kSeparator},
    {&W::mnoPrintSuperbillApp, "mnoPrintSuperbillApp", "Print Superbill"},
    {&W::mnoPrintFaceSheet, "mnoPrintFaceSheet", "Print Face Sheet"},
    {&W::mnoPrintTreatmentPlan, "mnoPrintTreatmentPlan", "Print Treatment Plan"},
    {&W::mnoLine4, "mnoLine4", MenuItem::kSeparator},
    {&W::mnoRefreshAllSchedulesApp, "mnoRefreshAllSchedulesApp", "Refresh All Schedules (Ctrl+Z)"},
    {&W::mnoHorizontalLine2, "mnoHorizontalLine2", MenuItem::kSeparator},
    {&W::mnoDeleteApp, "mnoDeleteApp", "Delete"},
};

void build(W& w, PopupMenu& menu, const char* name, const auto& rows) {
    menu.name = name;
    menu.caption = "Scheduler";
    menu.visible = false;
    for (const MenuRow& row : rows) {
        MenuItem& item = w.*row.item;
        item.name = row.name;
        item.caption = row.caption;
        menu.items.push_back(&item);
        w.menuItems.push_back(&item);
    }
}

} // namespace

void ctlScheduler::designMenus() {
    build(w_, w_.mnuRightClickScheduler, "mnuRightClickScheduler", kSchedulerMenu);
    build(w_, w_.mnuRightClickSchedulerApp, "mnuRightClickSchedulerApp", kAppointmentMenu);

    // The type submenu: "General", then fifty entries that only a column's type
    // string shows.
    MenuItem& general = w_.mnoSchedulePatientGeneral;
    general.name = "mnoSchedulePatientGeneral";
    general.caption = "General";
    w_.mnoSchedulePatient.children.push_back(&general);
    w_.menuItems.push_back(&general);
    for (int i = 1; i <= static_cast<int>(w_.mnoSchedulePatientType.size()); ++i) {
        MenuItem& item = typeItem(i);
        item.name = "mnoSchedulePatientType(" + std::to_string(i) + ")";
        item.caption = "Type" + std::to_string(i);
        item.visible = false;
        w_.mnoSchedulePatient.children.push_back(&item);
        w_.menuItems.push_back(&item);
    }
}

MenuItem& ctlScheduler::typeItem(int Index) {
    if (Index < 1 || Index > static_cast<int>(w_.mnoSchedulePatientType.size()))
        throw SubscriptOutOfRange("no appointment type entry " + std::to_string(Index) + " in the menu");
    return w_.mnoSchedulePatientType[static_cast<std::size_t>(Index - 1)];
}

void ctlScheduler::wireMenus() {
    w_.mnoSchedulePatientGeneral.onClick = [this] { mnoSchedulePatientGeneral_Click(); };
    for (int i = 1; i <= static_cast<int>(w_.mnoSchedulePatientType.size()); ++i)
        typeItem(i).onClick = [this, i] { mnoSchedulePatientType_Click(static_cast<std::int16_t>(i)); };
    w_.mnoShowToday.onClick = [this] { mnoShowToday_Click(); };
    w_.mnoWeekView.onClick = [this] { mnoWeekView_Click(); };
    w_.mnoPrint.onClick = [this] { mnoPrint_Click(); };

    w_.mnoScheduled.onClick = [this] { mnoScheduled_Click(); };
    w_.mnoConfirm.onClick = [this] { mnoConfirm_Click(); };
    w_.mnoCheckIn.onClick = [this] { mnoCheckIn_Click(); };
    w_.mnoCheckOut.onClick = [this] { mnoCheckOut_Click(); };
    w_.mnoNoShow.onClick = [this] { mnoNoShow_Click(); };
    w_.mnoCancelled.onClick = [this] { mnoCancelled_Click(); };
    w_.mnoDeleteApp.onClick = [this] { mnoDeleteApp_Click(); };
}

} // namespace quorvane
