#pragma once
// ctlScheduler: the embeddable appointment-scheduling control. The host drives it
// through the members below and hears from it through ctlSchedulerEvents. The
// control stores nothing: what it knows lives in this object and in its widgets,
// and dies with it.

#include <QuorvaneScheduler/components/day_view.h>
#include <QuorvaneScheduler/components/platform.h>
#include <QuorvaneScheduler/components/widgets.h>
#include <QuorvaneScheduler/events.h>
#include <QuorvaneScheduler/string_table.h>
#include <QuorvaneScheduler/variant.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

inline constexpr int kColumns = 10;
inline constexpr int kTemplatesPerColumn = 101;
inline constexpr int kTemplateFields = 6;

// The control's private state record, each field under its own name.
struct SchedulerState {
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

// Every widget of the control. All exist from creation; none is created or
// destroyed later.
struct SchedulerWidgets {
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
    Button cmdPatientSearch;

    PopupMenu mnuRightClickScheduler, mnuRightClickSchedulerApp;
    // Every menu item of both menus and their submenus, by name.
    std::vector<MenuItem*> menuItems;
};

class ctlScheduler {
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
    const std::string& TaskingEnabled() const { return state_.strTaskingEnabled; }
    void setTaskingEnabled(const std::string& value);
    std::string ResourceNumber() const;
    std::string AppointmentTypeID() const { return state_.strAppointmentTypeID; }
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

    // Column array and layout.
    void ResizeControl(std::int16_t intHeight, std::int16_t intWidth);
    Variant ModifySchedules(std::string& intNumOfSchedules);
    void setNumOfSchedules(const std::string& value);
    void cmbNumOfSchedules_Click();
    void sbSchedule_Change();

    // Resource catalogue strings.

    // Time slots and templates.

    // Helpers the rest of the control shares.
    std::int16_t FocusedColumnIndex() const;
    std::string FocusedResourceValue() const;

    // Inspection: the state record and the widgets, for a test container.
    const SchedulerState& state() const { return state_; }
    SchedulerWidgets& widgets() { return w_; }
    const SchedulerWidgets& widgets() const { return w_; }
    Platform& platform() const { return platform_; }
    // Widgets by the name the container reports; nullptr for none.
    TextField* findTextField(std::string_view name);
    Button* findButton(std::string_view name);
    MenuItem* findMenuItem(std::string_view name);

private:
    void beginBusy();
    void designWidgets();
    // Hooks the control's handlers to the events of its widgets.
    void wireHandlers();

    Platform& platform_;
    ctlSchedulerEvents* events_ = nullptr;
    SchedulerState state_;
    SchedulerWidgets w_;
};

// The tag string: appointment id, recurrence id and patient id joined by "~".
std::string makeTag(const std::string& appId, const std::string& recurrenceId, const std::string& patientId);
// Field `index` of a tag split on every "~"; SubscriptOutOfRange past the last field.
std::string tagField(const std::string& tag, int index);
// A tag or a recurrence id counts as present when blanks trimmed leave characters.
bool isPresent(const std::string& text);
// Blanks trimmed from both ends.
std::string trimBlanks(const std::string& text);

} // namespace quorvane
