#pragma once
// ctlScheduler: the embeddable appointment-scheduling control. The host drives it
// through the members below and hears from it through ctlSchedulerEvents. The
// control stores nothing: what it knows lives in this object and in its widgets,
// and dies with it.

#include <QuorvaneScheduler/export.h>
#include <QuorvaneScheduler/components/day_view.h>
#include <QuorvaneScheduler/components/platform.h>
#include <QuorvaneScheduler/errors.h>
#include <QuorvaneScheduler/events.h>
#include <QuorvaneScheduler/variant.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

inline constexpr int kColumns = 10;            // the schedule columns, always ten
inline constexpr int kTemplatesPerColumn = 101; // the templates a column holds at most
inline constexpr int kTemplateFields = 6;       // the fields kept of each template

// The control's state record, its widgets and its week form. Their types are
// the control's own and its front ends', declared in a header that is not
// installed: a host reaches what they hold through the members below.
struct SchedulerState;
class TextField;
class Button;
class MenuItem;
class PickList;
struct SchedulerWidgets;
struct WeekViewForm;
struct ControlParts;
struct ControlInternals;

// The control. A host makes one on its platform, hooks its events with
// setEventSink, and drives it through the members below.
class QUORVANE_EXPORT ctlScheduler {
public:
    // Creation. The platform must outlive the control.
    explicit ctlScheduler(Platform& platform);
    ~ctlScheduler();
    ctlScheduler(const ctlScheduler&) = delete;
    ctlScheduler& operator=(const ctlScheduler&) = delete;

    // The host's side of the events; nullptr for none. Not owned.
    void setEventSink(ctlSchedulerEvents* sink) { events_ = sink; }
    ctlSchedulerEvents* eventSink() const { return events_; }

    // Public variables: the six status colours and a number kept for the host.
    std::int32_t ccCancelled = 0;
    std::int32_t ccConfirmed = 0;
    std::int32_t ccCheckedIn = 0;
    std::int32_t ccCheckedOut = 0;
    std::int32_t ccNoShow = 0;
    std::int32_t ccScheduled = 0;
    std::int16_t intResourceCount = 0;

    // Control shell.
    bool UserControlEnabled() const;
    void setUserControlEnabled(bool on);
    void FocusControl();
    void setImagingEnabled(const std::string& value);
    void setClearCommentsEnabled(const std::string& value);
    const std::string& TaskingEnabled() const;
    void setTaskingEnabled(const std::string& value);
    std::string ResourceNumber() const;
    std::string AppointmentTypeID() const;
    void SetAppointmentType(const std::string& strTypeInfo, const std::string& strResourceNumber);
    DayViewRef GetDayView(const std::string& strResourceNumber) const;
    void UserControl_Initialize();

    // Appointments and status.
    void AddAppointment(const std::string& strResourceNumber, const std::string& strDescription,
                        OleDate dtStartDateTime, OleDate dtEndDateTime, const std::string& strAppID,
                        const std::string& strStatus, const std::string& strAppRecurrenceId,
                        const std::string& strPatientEID);
    void SetAppId(const std::string& strResourceNumber, const std::string& strAppID, std::int32_t lngAppKey,
                  const std::string& strPatEID);
    void SetStatus(const AppointmentRef& app, const std::string& strStatus);
    std::string GetStatus(const AppointmentRef& app) const;

    // The current appointment pane. SetCurrentApp copies an appointment into the
    // hidden fields; the visible ones are the user's and the host's.
    void SetCurrentApp(const AppointmentRef& Appointment);
    void ClearAdditionalAppInfo();
    // Clears the pane only when the focused column's selected appointment is
    // another than the one whose key the pane holds.
    void ClearAdditionalAppInfoOnSelect();
    void cmdLoad_Click();

    // Booking: a plain booking of the panel's patient into the focused column's
    // selected slot. The host hears AddApptWithPatient with the control disabled.
    void ScheduleApp();

    // Status commands: the user's request reaches the host, whose answer paints.
    void UpdateStatus(const AppointmentRef& app, const std::string& strStatus);
    void UpdateCurrentAppStatus(const std::string& strStatus);
    void CheckCurrentAppStatus(const AppointmentRef& app);
    void mnoConfirm_Click();
    void mnoCheckIn_Click();
    void mnoCheckOut_Click();
    void mnoNoShow_Click();

    // Removes objCurrentApp from the focused column by its key; the view then
    // asks BeforeRemove, and the question follows.
    void mnoDeleteApp_Click();

    // The patient panel. The host writes the Pat... properties, then calls
    // PatientLoaded, which applies the insurance, notice and photo rules.
    void PatientLoaded();
    void ClearPatient();
    void cmdClear_Click() { ClearPatient(); }

    // Commands a host may run as the user would.
    void cmdOpenPatient_Click();
    void cmdPatientSearch_Click();
    void cmdValidatePatient_Click();
    void NextAvailableClick();
    void mnoFindNextAvailable_Click() { NextAvailableClick(); }
    void mnoFindNextAvailableApp_Click() { NextAvailableClick(); }
    void mnoSearchAppointments_Click();
    void mnoSearchAppointmentsApp_Click() { mnoSearchAppointments_Click(); }
    void mnoAddEditRecurrenceApp_Click();
    void mnoRefreshAllSchedules_Click();
    void mnoRefreshAllSchedulesApp_Click() { mnoRefreshAllSchedules_Click(); }
    void mnoPrintSuperbillApp_Click();

    // A key the user presses while `focused` has the focus (nullptr when no text
    // field has it): the control sees it first, then the field. A handler that
    // moves the focus does not redirect the press, and a handler that fails
    // reports to the container and lets the field have the key all the same.
    void userKeyPress(int code, TextField* focused);

    // The week view: the host fills the prepared form inside or after OnWeekLoad
    // and shows it with ShowWkvw. Days count from 1 for appointments and from 0
    // for templates.
    void mnoWeekView_Click();
    void LoadWeekView(const std::string& strScheduledEID, const std::string& strScheduledName,
                      OleDate dtCurrentDate);
    // Returns when the user has closed the form.
    void ShowWkvw();
    void AddWkvwAppointment(const std::string& strResourceNumber, const std::string& strDescription,
                            OleDate dtStartDateTime, OleDate dtEndDateTime, const std::string& strAppID,
                            const std::string& strStatus, std::int16_t intDayOfWeek);
    void ClearWeekView();
    // Take the leading "#" off the caller's colour; AddTemplateWeekview also moves
    // the caller's end one minute back.
    void AddAllDayTemplateWeekview(std::string& strColor, std::int16_t intDay);
    void AddTemplateWeekview(const Variant& intDay, const OleDate& dtStartDateTime, OleDate& dtEndDateTime,
                             const std::string& strDescription, std::string& strColor);
    void RefreshTimeslotsWeekview(std::int16_t intDay);
    // The week form, made at its first use.
    WeekViewForm& frmWeekView();

    // The printout: the day of the focused column described for the host's PrintDay.
    void mnoPrint_Click();

    // Column array and layout.
    void ResizeControl(std::int16_t intHeight, std::int16_t intWidth);
    Variant ModifySchedules(std::string& intNumOfSchedules);
    void setNumOfSchedules(const std::string& value);
    void cmbNumOfSchedules_Click();
    void sbSchedule_Change();

    // The column families, by column index 0 to 9: ResourceCatType1 to
    // ResourceCatType10 reach index 0 to 9, and so on.
    void setResourceCatType(int index, const std::string& value);
    void setResource(int index, const std::string& value);
    std::string DayIncrement(int index) const;
    void setDayIncrement(int index, const std::string& value);
    std::string ResourceValue(int index) const;
    void setResourceValue(int index, const std::string& value);
    std::string ResourceValueListIndex(int index) const;
    void setResourceValueListIndex(int index, const std::string& value);
    std::string ResourceListIndex(int index) const;
    void setResourceListIndex(int index, const std::string& value);
    Variant ResourceTopIndex(int index) const;
    void setResourceTopIndex(int index, const Variant& value);
    Variant ResourceDate(int index) const;
    void setResourceDate(int index, const Variant& value);

    // The text-field properties. Each getter gives its field's text; each setter
    // sets it and reports the change under the property's name, as the same
    // write by name does.
    // The patient the panel shows, by the host's identifier.
    const std::string& PatEID() const;
    void setPatEID(const std::string& value);
    // The patient panel. PatientLoaded applies what the host wrote here; setPatName also
    // sets the name field's tool tip.
    const std::string& PatName() const;
    void setPatName(const std::string& value);
    const std::string& PatHomePhone() const;
    void setPatHomePhone(const std::string& value);
    const std::string& PatHomePhoneExt() const;
    void setPatHomePhoneExt(const std::string& value);
    const std::string& PatWorkPhone() const;
    void setPatWorkPhone(const std::string& value);
    const std::string& PatWorkPhoneExt() const;
    void setPatWorkPhoneExt(const std::string& value);
    const std::string& PatOtherPhone() const;
    void setPatOtherPhone(const std::string& value);
    const std::string& PatOtherPhoneExt() const;
    void setPatOtherPhoneExt(const std::string& value);
    const std::string& PatPriIns() const;
    void setPatPriIns(const std::string& value);
    const std::string& PatSecIns() const;
    void setPatSecIns(const std::string& value);
    const std::string& PatChartNumber() const;
    void setPatChartNumber(const std::string& value);
    const std::string& PatPCP() const;
    void setPatPCP(const std::string& value);
    const std::string& PatBalance30() const;
    void setPatBalance30(const std::string& value);
    const std::string& PatBalance60() const;
    void setPatBalance60(const std::string& value);
    const std::string& PatBalance90() const;
    void setPatBalance90(const std::string& value);
    const std::string& PatBalance180() const;
    void setPatBalance180(const std::string& value);
    const std::string& PatSex() const;
    void setPatSex(const std::string& value);
    const std::string& PatDOB() const;
    void setPatDOB(const std::string& value);
    const std::string& PatPrimaryCoPay() const;
    void setPatPrimaryCoPay(const std::string& value);
    const std::string& PatSecondaryCoPay() const;
    void setPatSecondaryCoPay(const std::string& value);
    // The appointment pane: the user's and the host's notes on the current appointment.
    const std::string& AppComments() const;
    void setAppComments(const std::string& value);
    const std::string& AppChiefComplaint() const;
    void setAppChiefComplaint(const std::string& value);
    const std::string& AppRefProvider() const;
    void setAppRefProvider(const std::string& value);
    const std::string& AppPriorAuthNum() const;
    void setAppPriorAuthNum(const std::string& value);
    // The current appointment, as SetCurrentApp copied it. AppKey is the appointment's
    // Key as decimal text (appKeyValue reads it as a number).
    const std::string& AppPatEID() const;
    void setAppPatEID(const std::string& value);
    const std::string& AppStatus() const;
    void setAppStatus(const std::string& value);
    const std::string& AppRefProviderEID() const;
    void setAppRefProviderEID(const std::string& value);
    const std::string& AppStartDateTime() const;
    void setAppStartDateTime(const std::string& value);
    const std::string& AppEndDateTime() const;
    void setAppEndDateTime(const std::string& value);
    const std::string& AppDescription() const;
    void setAppDescription(const std::string& value);
    const std::string& AppAppointmentId() const;
    void setAppAppointmentId(const std::string& value);
    const std::string& AppRecurrenceId() const;
    void setAppRecurrenceId(const std::string& value);
    const std::string& AppKey() const;
    void setAppKey(const std::string& value);
    // AppKey as the appointment key it names; none when it holds no whole number.
    std::optional<std::int32_t> appKeyValue() const;

    // Values the patient panel and its commands read later; each write reports
    // under the property's own name.
    const std::string& PatDOD() const;
    void setPatDOD(const std::string& value);
    const std::string& PatPrimaryActive() const;
    void setPatPrimaryActive(const std::string& value);
    const std::string& PatSecondaryActive() const;
    void setPatSecondaryActive(const std::string& value);
    const std::string& PhotoServerUsed() const;
    void setPhotoServerUsed(const std::string& value);
    const std::string& PhotoServerPath() const;
    void setPhotoServerPath(const std::string& value);
    const std::string& PhotoImageId() const;
    void setPhotoImageId(const std::string& value);
    const std::string& PhotoSaveLoc() const;
    void setPhotoSaveLoc(const std::string& value);

    // Column dates and day increments.
    void calCalendar_Change(OleDate newDate);
    void dvwResource_DateChange(std::int16_t Index, OleDate dtOldDate);
    Variant ResetCalendar(const OleDate& dtOldDate);
    void ResetColumn(std::int16_t Index);
    void mnoShowToday_Click();
    Variant CheckLoadAllToday(const std::string& strCurrentResource);
    void cmbDayIncrement_Click(std::int16_t Index);
    Variant DisplayTopIndex(const OleDate& dtStartDateTime, const std::string& strResourceNumber);
    void dvwResource_TopIndexChange(std::int16_t Index, OleDate dtTopTime);

    // Groups, views and category lists.
    void cmbResourceGroup_Click();
    void cmbResourceCatType_Click(std::int16_t Index);

    // Column resource binding and refresh.
    Variant SetResourceAndDate(const std::string& strResourceId, std::int16_t intResourceNumber,
                               const std::string& strDate);
    void RefreshSchedule(std::int16_t intResourceNumber);
    void cmbResource_Click(std::int16_t Index);

    // Resource catalogue strings.
    // Write-only: each reports under its own name, then rebuilds its table. The
    // tables cannot be read back. Assign the views and the defaults before the
    // groups, which select the default group at once; the resources after them.
    void setResources(const std::string& value);
    void setResourceGroups(const std::string& value);
    void setResourceGroupDefaults(const std::string& value);
    void setResourceGroupViews(const std::string& value);

    // Time slots and templates.
    // The earliest selected slot within business hours, dated 1/1/2000, or the
    // start of business hours; blnSlotFound tells which.
    OleDate getSelectedTimeSlot(PVDayView& dvwResource);
    void RemoveTimeSlotSelected(PVDayView& dvwResource);
    void ClearTimeSlots(const Variant& strResourceSelected);
    std::int16_t IntervalInMinutes(PVDayView& dvwResource);
    void RefreshTimeslots(const std::string& strResourceNumber);
    // Resource1TimeSlotSelected to Resource10TimeSlotSelected, by column index 0 to 9.
    bool ResourceTimeSlotSelected(int index, OleDate TimeSlot) const;
    void setResourceTimeSlotSelected(int index, OleDate TimeSlot, bool value);
    void dvwResource_TimeSlotSelect(std::int16_t Index, OleDate TimeSlot);
    void AddResourceTemplate(OleDate dtStartDateTime, OleDate dtEndDateTime,
                             const std::string& strDescription, const std::string& strColor,
                             const std::string& strResourceNumber, const std::string& strAddNow);
    // Takes the leading "#" off the caller's colour and moves the caller's end one minute back.
    void AddExistingTemplate(const OleDate& dtStartDateTime, OleDate& dtEndDateTime,
                             const std::string& strDescription, std::string& strColor,
                             const std::string& strResourceNumber);
    // Takes the leading "#" off the caller's string.
    std::int32_t vbRGBVal(std::string& WebRGBString);
    // The column's grid back to the bare colour, its stored templates untouched;
    // the column code runs it when a group is chosen.
    void wipeTemplates(int index);
    // Wipes the column and paints its stored templates again in the order they
    // came; the column code runs it when the slot length changes.
    void replayTemplates(int index);
    // The description of the latest stored template of a column that covers a
    // time of day, for what the grid tells a reader; empty when none does.
    std::string templateAt(int index, OleDate timeOfDay) const;

    // Helpers the rest of the control shares.
    std::int16_t FocusedColumnIndex() const;
    std::string FocusedResourceValue() const;

    // The platform the control runs on.
    Platform& platform() const { return platform_; }
    // The names of the control's text fields and buttons, as its change
    // reports and a test container name them.
    static std::vector<std::string> textFieldNames();
    static std::vector<std::string> buttonNames();

private:
    friend struct ControlInternals;
    // Widgets by the name the container reports; nullptr for none.
    TextField* findTextField(std::string_view name);
    Button* findButton(std::string_view name);
    MenuItem* findMenuItem(std::string_view name);

    void beginBusy();
    void designWidgets();
    void placeFormWidgets(); // the panel, the pane and the buttons on the form
    void designMenus();
    void wireMenus();

    // The day views' events.
    void dvwResource_GotFocus(std::int16_t Index);
    void dvwResource_MouseButton(std::int16_t Index, std::int16_t Button, std::int16_t Shift, float X,
                                 float Y);
    void dvwResource_Click(std::int16_t Index);
    void dvwResource_DblClick(std::int16_t Index);
    void dvwResource_AfterAdd(std::int16_t Index, const AppointmentRef& Appointment);
    void dvwResource_BeforeRemove(std::int16_t Index, const AppointmentRef& Appointment);
    void dvwResource_AfterResize(std::int16_t Index, const AppointmentRef& Appointment);
    void dvwResource_BeforeDrag(std::int16_t Index, const AppointmentRef& Appointment);
    void dvwResource_AfterDrag(std::int16_t Index, const AppointmentRef& Appointment);
    void dvwResource_AppointmentChangeRefused(std::int16_t Index, const AppointmentRef& Appointment);
    void dvwResource_ViewChangeRefused(std::int16_t Index);
    // "Error(N-WHAT): this appointment has lost index", N the column number.
    void lostIndex(std::int16_t Index, const char* what);
    // A finished change for the host: a busy phase, the pane filled with the
    // appointment, then the event with the column's resource and number.
    void handChangeToHost(std::int16_t Index, const AppointmentRef& Appointment,
                          void (ctlSchedulerEvents::*event)(Str, Str));

    // Booking.
    void LoadAppointmentTypes(const std::string& strTypeInfo);
    void mnoSchedulePatientGeneral_Click();
    void mnoSchedulePatientType_Click(std::int16_t Index);
    void ScheduleAppWithInfo(const std::string& strDuration, const std::string& strComments,
                             const std::string& strChiefComplaint, const std::string& strAppointmentTypeID);
    void clearCommentsForBooking();
    MenuItem& typeItem(int Index); // mnoSchedulePatientType(Index), Index 1 to 50

    void cmdSaveAdditionalAppInfo_Click();
    void mnoScheduled_Click();
    void mnoCancelled_Click();

    // The week form's own routines.
    void ClearWkvw();
    void cmdClose_Click();
    // Steps shared by the paints of templates: the colour value, the end one minute
    // back, and both times reduced to their time of day.
    struct TemplatePaint {
        OleDate start, end;
        std::int32_t colour;
    };
    TemplatePaint prepareTemplatePaint(const OleDate& dtStartDateTime, OleDate& dtEndDateTime,
                                       std::string& strColor);

    // The patient panel.
    void ShowInsuranceState();
    void ShowPatientNotice();
    void ShowPhotoState();
    void cmdCalendar_Click();
    void cmdPatientPhoto_Click();
    void RaiseQuickScan(std::int16_t intScanNumber);

    // Command routing.
    void wireCommands();
    void UserControl_KeyPress(std::int16_t KeyAscii);
    void cmdCommentQuickComment_Click();
    void cmdChiefComplainQuickComment_Click();
    void panelPatientCommand(void (ctlSchedulerEvents::*raise)(Str)); // needs txtPatEID
    void quickComments(const TextField& field, const char* type);     // needs a chart number
    void mnoPrintDaysFacesheets_Click();
    void mnoPrintDaySuperbills_Click();
    // The ten appointment commands: the tag of objCurrentApp must be present and
    // name a patient; `raise` gets its appointment id and patient id.
    void appointmentCommand(
        const std::function<void(const std::string& appId, const std::string& patientId)>& raise);
    // The CurrentDate of the focused column's view, as text.
    std::string focusedScheduleDate() const;
    // Runs one handler of a user's gesture; a run-time error it leaves untrapped
    // goes to the container.
    void fromUser(const std::function<void()>& handler);
    // Hooks the control's handlers to the events of its widgets.
    void wireHandlers();
    // The catalogue strings into their tables, and the category lists of the
    // current group.
    void LoadResources(std::string_view strResources);
    void LoadResourceGroups(std::string_view strResourceGroups);
    void LoadResourceGroupDefaults(std::string_view strResourceGroupDefaults);
    void LoadResourceGroupViews(std::string_view strResourceGroupViews);
    void FillCategoryLists();
    void setText(TextField& field, const std::string& value, const char* name);
    void setField(std::string& field, const std::string& value, const char* name);
    // The host's side of the events; a control without one raises into nothing.
    ctlSchedulerEvents& host();

    void SetColumnTopTime(const OleDate& dtStartDateTime, const std::string& strResourceNumber,
                          bool blnForce);
    void ApplyGroupColumnsShown();
    void ApplyGroupView();
    void SetColumnVisible(std::int16_t intColumn, bool blnVisible);
    void SetColumnDefault(const std::string& strGroupId, const std::string& strResourceValue,
                          const std::string& strColumnNumber);
    void FillResourcesByCatType(const std::string& strText, std::int16_t intColumnNumber);
    void FillResourcesBySubType(const std::string& strText, std::int16_t intColumnNumber);
    void FillResources(int field, const std::string& strText, std::int16_t intColumnNumber);
    void LoadColumn(std::int16_t Index);
    void raiseResourceOnClick(std::int16_t Index);
    // The column of a one-based number given as text; SubscriptOutOfRange outside 1 to 10.
    std::size_t columnOfNumber(const std::string& number) const;
    // Puts the slot length that the list shows on the day view; leaves it alone
    // when the list shows none of the five lengths.
    void SetDayViewIncrement(PickList& cmbDayIncrement, PVDayView& dvwResource);

    Platform& platform_;
    ctlSchedulerEvents* events_ = nullptr;
    std::unique_ptr<ControlParts> parts_;
    SchedulerState& state_;
    SchedulerWidgets& w_;
};

// The tag string: appointment id, recurrence id and patient id joined by "~".
QUORVANE_EXPORT std::string makeTag(const std::string& appId, const std::string& recurrenceId, const std::string& patientId);
// Field `index` of a tag split on every "~"; SubscriptOutOfRange past the last
// field, and for any field of an empty tag.
QUORVANE_EXPORT std::string tagField(const std::string& tag, std::size_t index);
// A tag or a recurrence id counts as present when blanks trimmed leave characters.
QUORVANE_EXPORT bool isPresent(const std::string& text);
// A column index 0 to 9 as an array subscript; SubscriptOutOfRange, naming the
// column number, for any other.
QUORVANE_EXPORT std::size_t columnIndex(int index);
// Blanks trimmed from both ends.
QUORVANE_EXPORT std::string trimBlanks(const std::string& text);
// The text split on every `separator`, as the platform splits: an empty text
// gives no fields at all, so even its field 0 is out of range.
QUORVANE_EXPORT std::vector<std::string> splitFields(const std::string& text, char separator);
// Field `index` of split fields; SubscriptOutOfRange past the last.
QUORVANE_EXPORT std::string fieldAt(const std::vector<std::string>& fields, std::size_t index);
// The time of day of a date as its general text gives it: the last 11
// characters, a one-digit hour bringing a leading blank along, or "12:00:00 AM"
// for a text of 8 characters or fewer. A date-only text of 9 or 10 characters is
// taken whole, and parses back to the same time of day, midnight.
QUORVANE_EXPORT std::string timeTextOf(OleDate d);

} // namespace quorvane
