#pragma once
// The inside of the control, for its own code and its front ends (the Qt
// widget, the console, the desk, the tests): the state record, the widgets,
// the week form, and the doors to them that the public header keeps shut.
// This header is not installed; a host never sees these types.

#include <QuorvaneScheduler/export.h>
#include <QuorvaneScheduler/ctl_scheduler.h>
#include <QuorvaneScheduler/components/week_view.h>
#include <QuorvaneScheduler/components/widgets.h>
#include <QuorvaneScheduler/string_table.h>

namespace quorvane {

// The control's private state record, each field under its own name.
struct QUORVANE_EXPORT SchedulerState {
    std::int32_t lngScheduleWidth = 14990;
    std::string strImagingEnabled = "N";
    std::string strTaskingEnabled;
    bool blnClearCommentsEnabled = false;
    AppointmentRef objCurrentApp;
    std::string strCurrentAppId;
    std::string strAppointmentTypeID;
    bool blnSlotFound = false;
    bool blnAppMoving = false;
    std::string strMoveFromColumn;
    std::string strMoveStatus;
    AppointmentRef objMoveApp;
    bool blnShowTodayRunning = false;
    bool blnSuppressColumnEvents = false;
    bool blnPhotoShown = false;
    std::string strPatDOD;
    std::string strPatPrimaryActive;
    std::string strPatSecondaryActive;
    std::string strPhotoServerUsed;
    std::string strPhotoServerPath;
    std::string strPhotoImageId;
    std::string strPhotoSaveLoc;
    StringTable arrResourceGroups;
    StringTable arrResourceGroupDefaults;
    StringTable arrResourceGroupViews;
    StringTable arrResources;
    std::array<std::string, kColumns> strColumnTopTime;
    std::array<std::int16_t, kColumns> intTemplateCount{};
    // Column, field, template number; a cell holds a date or a string.
    using TemplateStore =
        std::array<std::array<std::array<Variant, kTemplatesPerColumn>, kTemplateFields>, kColumns>;
    std::unique_ptr<TemplateStore> varResourceTemplates = std::make_unique<TemplateStore>();
    std::array<OleDate, 12> dtLastSlot{};
};

// The week form: one resource's week, filled by the host and shown modally.
struct QUORVANE_EXPORT WeekViewForm : Form {
    explicit WeekViewForm(Platform& platform) : wvwWeekView(platform) {}
    Label Label1;
    TextField txtResource;
    IGWeekView wvwWeekView;
    Button cmdClose;
};

// Every widget of the control. All exist from creation; none is created or
// destroyed later, but for the week form, which is made at its first use.
struct QUORVANE_EXPORT SchedulerWidgets {
    std::array<DayViewRef, kColumns> dvwResource;
    std::array<PickList, kColumns> cmbResourceCatType;
    std::array<PickList, kColumns> cmbResource;
    std::array<PickList, kColumns> cmbResourceValue;
    std::array<PickList, kColumns> cmbDayIncrement;
    PickList cmbResourceGroup;
    PickList cmbNumOfSchedules;
    ScrollBar sbSchedule;
    std::unique_ptr<PVCalendar> calCalendar;
    TextField txtResourceFocus;

    // The current appointment, hidden.
    TextField txtAppAppointmentId, txtAppKey, txtAppPatEID, txtAppStatus, txtAppDescription,
        txtAppStartDateTime, txtAppEndDateTime, txtAppDuration, txtAppRecurrenceId, txtAppRefProviderEID;
    // The appointment pane.
    TextField txtAppComments, txtAppChiefComplaint, txtAppRefProvider, txtAppPriorAuthNum;
    // The patient, hidden, and the patient panel.
    TextField txtPatEID;
    TextField txtPatName, txtPatHomePhone, txtPatHomePhoneExt, txtPatWorkPhone, txtPatWorkPhoneExt,
        txtPatOtherPhone, txtPatOtherPhoneExt, txtPatPriIns, txtPatSecIns, txtPatChartNumber, txtPatPCP,
        txtPatBalance30, txtPatBalance60, txtPatBalance90, txtPatBalance180, txtPatSex, txtPatDOB,
        txtPatPrimaryCoPay, txtPatSecondaryCoPay;

    Button cmdTasking, cmdQuickScan, cmdQuickScanI1, cmdQuickScanI2, cmdCalendar, cmdPatientPhoto;
    Button cmdPatientSearch, cmdOpenPatient, cmdValidatePatient, cmdPrintSuperbill, cmdLegend;
    // Beside the appointment pane.
    Button cmdRefProvider, cmdCommentQuickComment, cmdChiefComplainQuickComment, cmdSaveAdditionalAppInfo;

    // mnuRightClickScheduler, on a free part of a column.
    MenuItem mnoSchedulePatient, mnoSchedulePatientGeneral;
    std::array<MenuItem, 50> mnoSchedulePatientType; // the menu's indices 1 to 50 at 0 to 49
    MenuItem mnoFindNextAvailable, mnoSearchAppointments, mnoRecallList, mnoShowToday, mnoWeekView, mnoLine1,
        mnoPrintDaysFacesheets, mnoPrintDaySuperbills, mnoPrint, mnoLine2, mnoDisplayAll,
        mnoRefreshAllSchedules;
    // mnuRightClickSchedulerApp, on an appointment.
    MenuItem mnoScheduled, mnoConfirm, mnoCheckIn, mnoCheckOut, mnoNoShow, mnoCancelled, mnoHorizontalLine1,
        mnoAddEditRecurrenceApp, mnoAddToRecallList, mnuRecallList, mnoFindNextAvailableApp,
        mnoSearchAppointmentsApp, mnoValidatePatientApp, mnoLine3, mnoOfficeCommunication,
        mnoOpenPatientSetup, mnoOpenPatientHistory, mnoOpenQuickPay, mnoAuthorization, mnoHorizontalLine4,
        mnoPrintSuperbillApp, mnoPrintFaceSheet, mnoPrintTreatmentPlan, mnoLine4, mnoRefreshAllSchedulesApp,
        mnoHorizontalLine2, mnoDeleteApp;

    PopupMenu mnuRightClickScheduler, mnuRightClickSchedulerApp;
    // Every menu item of both menus and their submenus, by name.
    std::vector<MenuItem*> menuItems;

    std::unique_ptr<WeekViewForm> frmWeekView; // none until its first use

    // txtPatEID and the fields of the patient panel, in the order a clearing empties them.
    std::array<TextField*, 20> patientFields() {
        return {&txtPatEID,       &txtPatName,         &txtPatHomePhone,    &txtPatHomePhoneExt,
                &txtPatWorkPhone, &txtPatWorkPhoneExt, &txtPatOtherPhone,   &txtPatOtherPhoneExt,
                &txtPatPriIns,    &txtPatSecIns,       &txtPatChartNumber,  &txtPatPCP,
                &txtPatBalance30, &txtPatBalance60,    &txtPatBalance90,    &txtPatBalance180,
                &txtPatSex,       &txtPatDOB,          &txtPatPrimaryCoPay, &txtPatSecondaryCoPay};
    }
};

// What a control holds besides its platform and its host.
struct QUORVANE_EXPORT ControlParts {
    SchedulerState state;
    SchedulerWidgets widgets;
};

// The front ends' doors into a control.
struct QUORVANE_EXPORT ControlInternals {
    static SchedulerWidgets& widgets(ctlScheduler& c) { return c.w_; }
    static const SchedulerWidgets& widgets(const ctlScheduler& c) { return c.w_; }
    static const SchedulerState& state(const ctlScheduler& c) { return c.state_; }
    static TextField* findTextField(ctlScheduler& c, std::string_view name) { return c.findTextField(name); }
    static Button* findButton(ctlScheduler& c, std::string_view name) { return c.findButton(name); }
    static MenuItem* findMenuItem(ctlScheduler& c, std::string_view name) { return c.findMenuItem(name); }
};

// The events of a day view, for the control that connects them and the tests
// that stand in for it.
inline PVDayView::Hooks& hooksOf(PVDayView& view) { return view.hooks_; }

inline SchedulerWidgets& widgetsOf(ctlScheduler& c) { return ControlInternals::widgets(c); }
inline const SchedulerWidgets& widgetsOf(const ctlScheduler& c) { return ControlInternals::widgets(c); }
inline const SchedulerState& stateOf(const ctlScheduler& c) { return ControlInternals::state(c); }

} // namespace quorvane
