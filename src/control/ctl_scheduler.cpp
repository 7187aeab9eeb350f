// The control object: creation, the design state of its widgets, and the busy
// phase with the three ways out of it.

#include <QuorvaneScheduler/control_internals.h>

#include <cstdint>

namespace quorvane {

namespace {

void place(WidgetBase& w, float left, float top, float width, float height) {
    w.left = left, w.top = top, w.width = width, w.height = height;
}

void name(WidgetBase& w, Container& c, std::string n, bool visible) {
    w.name = std::move(n);
    w.container = &c;
    w.visible = visible;
}

std::string indexed(const char* base, int i) { return std::string(base) + "(" + std::to_string(i) + ")"; }

} // namespace

namespace {

struct NamedField {
    TextField SchedulerWidgets::*field;
    const char* name;
    bool visible;
    const char* label = ""; // the caption beside it; one label stands over the four balances
};
using W = SchedulerWidgets;
const NamedField kTextFields[] = {
    {&W::txtAppAppointmentId, "txtAppAppointmentId", false},
    {&W::txtAppKey, "txtAppKey", false},
    {&W::txtAppPatEID, "txtAppPatEID", false},
    {&W::txtAppStatus, "txtAppStatus", false},
    {&W::txtAppDescription, "txtAppDescription", false},
    {&W::txtAppStartDateTime, "txtAppStartDateTime", false},
    {&W::txtAppEndDateTime, "txtAppEndDateTime", false},
    {&W::txtAppDuration, "txtAppDuration", false},
    {&W::txtAppRecurrenceId, "txtAppRecurrenceId", false},
    {&W::txtAppRefProviderEID, "txtAppRefProviderEID", false},
    {&W::txtAppComments, "txtAppComments", true, "Comments"},
    {&W::txtAppChiefComplaint, "txtAppChiefComplaint", true, "Chief Complaint"},
    {&W::txtAppRefProvider, "txtAppRefProvider", true, "Ref Provider"},
    {&W::txtAppPriorAuthNum, "txtAppPriorAuthNum", true, "Prior Auth #"},
    {&W::txtPatEID, "txtPatEID", false},
    {&W::txtPatName, "txtPatName", true, "Patient"},
    {&W::txtPatHomePhone, "txtPatHomePhone", true, "Home Phone"},
    {&W::txtPatHomePhoneExt, "txtPatHomePhoneExt", true, "Ext"},
    {&W::txtPatWorkPhone, "txtPatWorkPhone", true, "Work Phone"},
    {&W::txtPatWorkPhoneExt, "txtPatWorkPhoneExt", true, "Ext"},
    {&W::txtPatOtherPhone, "txtPatOtherPhone", true, "Other Phone"},
    {&W::txtPatOtherPhoneExt, "txtPatOtherPhoneExt", true, "Ext"},
    {&W::txtPatPriIns, "txtPatPriIns", true, "Primary Ins"},
    {&W::txtPatSecIns, "txtPatSecIns", true, "Secondary Ins"},
    {&W::txtPatChartNumber, "txtPatChartNumber", true, "Chart #"},
    {&W::txtPatPCP, "txtPatPCP", true, "PCP"},
    {&W::txtPatBalance30, "txtPatBalance30", true, "30/60/90/91+"},
    {&W::txtPatBalance60, "txtPatBalance60", true},
    {&W::txtPatBalance90, "txtPatBalance90", true},
    {&W::txtPatBalance180, "txtPatBalance180", true},
    {&W::txtPatSex, "txtPatSex", true, "Sex"},
    {&W::txtPatDOB, "txtPatDOB", true, "DOB"},
    {&W::txtPatPrimaryCoPay, "txtPatPrimaryCoPay", true, "CoPay"},
    {&W::txtPatSecondaryCoPay, "txtPatSecondaryCoPay", true, "CoPay"},
    {&W::txtResourceFocus, "txtResourceFocus", false},
};

struct NamedButton {
    Button SchedulerWidgets::*button;
    const char* name;
    bool visible;
    const char* caption; // empty for a button that shows a picture
    const char* toolTip;
};
const NamedButton kButtons[] = {
    {&W::cmdTasking, "cmdTasking", false, "", "Open Office Communication Window"},
    {&W::cmdQuickScan, "cmdQuickScan", false, "", "Open Quick Scan Window"},
    {&W::cmdQuickScanI1, "cmdQuickScanI1", false, "", "Open Quick Scan Window"},
    {&W::cmdQuickScanI2, "cmdQuickScanI2", false, "", "Open Quick Scan Window"},
    {&W::cmdCalendar, "cmdCalendar", false, "", "Display Calendar"},
    {&W::cmdPatientPhoto, "cmdPatientPhoto", false, "", "Display Patient Photo"},
    {&W::cmdPatientSearch, "cmdPatientSearch", true, "...", "Search for a Patient (SHIFT+CTRL+O)"},
    {&W::cmdOpenPatient, "cmdOpenPatient", true, "", "Open Patient"},
    {&W::cmdValidatePatient, "cmdValidatePatient", true, "", "Validate Patient"},
    {&W::cmdPrintSuperbill, "cmdPrintSuperbill", true, "", "Print Patient's Superbill"},
    {&W::cmdLegend, "cmdLegend", true, "", "Open Template Key"},
    {&W::cmdRefProvider, "cmdRefProvider", true, "...", ""},
    {&W::cmdCommentQuickComment, "cmdCommentQuickComment", true, "...",
     "Open Quick Comment screen for Comments field"},
    {&W::cmdChiefComplainQuickComment, "cmdChiefComplainQuickComment", true, "...",
     "Open Quick Comment Screen for Chief Complaint field"},
    {&W::cmdSaveAdditionalAppInfo, "cmdSaveAdditionalAppInfo", true, "Save",
     "Save the Referring Provider and Comments for the selected appointment (SHIFT+CTRL+S)"},
};

// Fields the user reads but does not edit: no tab stop, the button face behind.
void readOnly(TextField& f) {
    f.locked = true;
    f.tabStop = false;
    f.backColor = TextField::kButtonFace;
}

// The look of the pane's and the patient panel's visible fields.
void designFields(SchedulerWidgets& w) {
    readOnly(w.txtAppRefProvider);
    w.txtAppPriorAuthNum.maxLength = 25;
    for (TextField* f : {&w.txtAppChiefComplaint, &w.txtAppComments}) {
        f->multiLine = true;
        f->maxLength = 300;
    }
    for (TextField* f : w.patientFields())
        readOnly(*f);
    for (TextField* f : {&w.txtPatPrimaryCoPay, &w.txtPatSecondaryCoPay, &w.txtPatBalance30,
                         &w.txtPatBalance60, &w.txtPatBalance90, &w.txtPatBalance180})
        f->rightAligned = true;
}

} // namespace

TextField* ctlScheduler::findTextField(std::string_view n) {
    for (const NamedField& f : kTextFields)
        if (n == f.name) return &(w_.*f.field);
    return nullptr;
}

Button* ctlScheduler::findButton(std::string_view n) {
    for (const NamedButton& b : kButtons)
        if (n == b.name) return &(w_.*b.button);
    return nullptr;
}

std::vector<std::string> ctlScheduler::textFieldNames() {
    std::vector<std::string> names;
    for (const NamedField& f : kTextFields)
        names.emplace_back(f.name);
    return names;
}

std::vector<std::string> ctlScheduler::buttonNames() {
    std::vector<std::string> names;
    for (const NamedButton& b : kButtons)
        names.emplace_back(b.name);
    return names;
}

MenuItem* ctlScheduler::findMenuItem(std::string_view n) {
    for (MenuItem* item : w_.menuItems)
        if (item->name == n) return item;
    return nullptr;
}

ctlScheduler::ctlScheduler(Platform& platform)
    : platform_(platform), parts_(std::make_unique<ControlParts>()), state_(parts_->state), w_(parts_->widgets) {
    designWidgets();
    for (MenuItem* item : w_.menuItems)
        item->container = &platform_.container;
    wireHandlers();
    UserControl_Initialize();
}

ctlScheduler::~ctlScheduler() {
    // The day views may outlive the control through a host's references; they
    // must not call back into a control that is gone.
    for (auto& view : w_.dvwResource) {
        if (!view) continue;
        hooksOf(*view).GotFocus = nullptr, hooksOf(*view).MouseButton = nullptr, hooksOf(*view).Click = nullptr;
        hooksOf(*view).DblClick = nullptr, hooksOf(*view).AfterAdd = nullptr, hooksOf(*view).BeforeRemove = nullptr;
        hooksOf(*view).AfterResize = nullptr, hooksOf(*view).BeforeDrag = nullptr, hooksOf(*view).AfterDrag = nullptr;
        hooksOf(*view).AppointmentChangeRefused = nullptr, hooksOf(*view).ViewChangeRefused = nullptr;
        hooksOf(*view).DateChange = nullptr, hooksOf(*view).TopIndexChange = nullptr, hooksOf(*view).TimeSlotSelect = nullptr;
    }
}

// The widgets as the form designer left them, before creation runs.
void ctlScheduler::designWidgets() {
    Container& c = platform_.container;
    for (int i = 0; i < kColumns; ++i) {
        auto index = static_cast<std::int16_t>(i);
        w_.dvwResource[i] = std::make_shared<PVDayView>(platform_, index);
        PVDayView& view = *w_.dvwResource[i];
        view.Visible = false;
        view.Left = 15, view.Top = 3105, view.Width = 1440, view.Height = 7020;

        name(w_.cmbResourceCatType[i], c, indexed("cmbResourceCatType", i), false);
        place(w_.cmbResourceCatType[i], 15, 2385, 1440, 315);
        name(w_.cmbDayIncrement[i], c, indexed("cmbDayIncrement", i), false);
        place(w_.cmbDayIncrement[i], 15, 2745, 675, 315);
        name(w_.cmbResource[i], c, indexed("cmbResource", i), false);
        place(w_.cmbResource[i], 690, 2745, 765, 315);
        name(w_.cmbResourceValue[i], c, indexed("cmbResourceValue", i), false);
    }
    name(w_.cmbNumOfSchedules, c, "cmbNumOfSchedules", true);
    place(w_.cmbNumOfSchedules, 4950, 1920, 600, 315);
    name(w_.cmbResourceGroup, c, "cmbResourceGroup", true);
    place(w_.cmbResourceGroup, 6180, 1920, 1725, 315);
    name(w_.sbSchedule, c, "sbSchedule", true);
    place(w_.sbSchedule, 0, 10140, 14520, 285);

    w_.calCalendar = std::make_unique<PVCalendar>(platform_);
    name(*w_.calCalendar, c, "calCalendar", true);
    place(*w_.calCalendar, 15, 30, 3330, 2295);

    w_.txtResourceFocus.text = "1";

    for (const NamedField& f : kTextFields) {
        name(w_.*f.field, c, f.name, f.visible);
        (w_.*f.field).label = f.label;
    }
    for (const NamedButton& b : kButtons) {
        Button& button = w_.*b.button;
        name(button, c, b.name, b.visible);
        button.caption = b.caption;
        button.toolTipText = b.toolTip;
    }
    designFields(w_);
    placeFormWidgets();
    designMenus();
}

void ctlScheduler::wireHandlers() {
    w_.cmbNumOfSchedules.onClick = [this] { cmbNumOfSchedules_Click(); };
    w_.sbSchedule.onChange = [this] { sbSchedule_Change(); };
    w_.cmbResourceGroup.onClick = [this] { cmbResourceGroup_Click(); };
    w_.calCalendar->Change = [this](OleDate d) { calCalendar_Change(d); };
    for (int i = 0; i < kColumns; ++i) {
        const auto index = static_cast<std::int16_t>(i);
        w_.cmbDayIncrement[i].onClick = [this, index] { cmbDayIncrement_Click(index); };
        w_.cmbResourceCatType[i].onClick = [this, index] { cmbResourceCatType_Click(index); };
        w_.cmbResource[i].onClick = [this, index] { cmbResource_Click(index); };
        PVDayView& view = *w_.dvwResource[i];
        hooksOf(view).DateChange = [this](std::int16_t Index, OleDate old) { dvwResource_DateChange(Index, old); };
        hooksOf(view).TopIndexChange = [this](std::int16_t Index, OleDate top) {
            dvwResource_TopIndexChange(Index, top);
        };
    }
    for (const DayViewRef& view : w_.dvwResource) {
        PVDayView& v = *view;
        hooksOf(v).TimeSlotSelect = [this](std::int16_t Index, OleDate TimeSlot) {
            dvwResource_TimeSlotSelect(Index, TimeSlot);
        };
        hooksOf(v).GotFocus = [this](std::int16_t Index) { dvwResource_GotFocus(Index); };
        hooksOf(v).MouseButton = [this](std::int16_t Index, std::int16_t Button, std::int16_t Shift, float X,
                               float Y) { dvwResource_MouseButton(Index, Button, Shift, X, Y); };
        hooksOf(v).Click = [this](std::int16_t Index) { dvwResource_Click(Index); };
        hooksOf(v).DblClick = [this](std::int16_t Index) { dvwResource_DblClick(Index); };
        hooksOf(v).AfterAdd = [this](std::int16_t Index, AppointmentRef a) { dvwResource_AfterAdd(Index, a); };
        hooksOf(v).BeforeRemove = [this](std::int16_t Index, AppointmentRef a) { dvwResource_BeforeRemove(Index, a); };
        hooksOf(v).AfterResize = [this](std::int16_t Index, AppointmentRef a) { dvwResource_AfterResize(Index, a); };
        hooksOf(v).BeforeDrag = [this](std::int16_t Index, AppointmentRef a) { dvwResource_BeforeDrag(Index, a); };
        hooksOf(v).AfterDrag = [this](std::int16_t Index, AppointmentRef a) { dvwResource_AfterDrag(Index, a); };
        hooksOf(v).AppointmentChangeRefused = [this](std::int16_t Index, AppointmentRef a) {
            dvwResource_AppointmentChangeRefused(Index, a);
        };
        hooksOf(v).ViewChangeRefused = [this](std::int16_t Index) { dvwResource_ViewChangeRefused(Index); };
    }
    w_.cmdSaveAdditionalAppInfo.onClick = [this] { cmdSaveAdditionalAppInfo_Click(); };
    wireMenus();
    wireCommands();
}

// Creation, and the public handler of the same name. Run again by a host, it
// appends the items of cmbNumOfSchedules once more, while the column lists are
// cleared and refilled.
void ctlScheduler::UserControl_Initialize() {
    ++platform_.commonControlsInitialised; // InitCommonControls
    state_.blnAppMoving = false;
    state_.blnSuppressColumnEvents = false;
    state_.lngScheduleWidth = 14990;
    state_.strImagingEnabled = "N";
    for (int i = 0; i < kColumns; ++i) {
        w_.cmbResourceValue[i].clear();
        w_.cmbResource[i].clear();
        w_.cmbDayIncrement[i].clear();
        for (const char* minutes : {"5", "10", "15", "30", "60"})
            w_.cmbDayIncrement[i].addItem(minutes);
    }
    for (const char* n : {"1", "2", "3", "4", "5"})
        w_.cmbNumOfSchedules.addItem(n);
    state_.blnPhotoShown = false;
}

bool ctlScheduler::UserControlEnabled() const { return platform_.container.enabled(); }

void ctlScheduler::setUserControlEnabled(bool on) {
    platform_.container.setEnabled(on);
    platform_.container.propertyChanged("UserControlEnabled");
}

// Seven requests disable the whole control before they reach the host, so the
// user can do nothing until the host has stored or fetched what it needs. Only
// the host ends this: the control never enables itself again.
ctlSchedulerEvents& ctlScheduler::host() {
    static ctlSchedulerEvents nobody;
    return events_ ? *events_ : nobody;
}

void ctlScheduler::beginBusy() { platform_.container.setEnabled(false); }

void ctlScheduler::FocusControl() {
    platform_.container.setEnabled(true);
    if (w_.cmdPatientSearch.enabled)
        w_.cmdPatientSearch.setFocus();
    else
        w_.txtPatName.setFocus();
    w_.txtAppChiefComplaint.setFocus();
}

void ctlScheduler::setImagingEnabled(const std::string& value) {
    state_.strImagingEnabled = value;
    const bool on = value == "Y";
    w_.cmdQuickScan.visible = on;
    w_.cmdQuickScanI1.visible = on;
    w_.cmdQuickScanI2.visible = on;
}

void ctlScheduler::setClearCommentsEnabled(const std::string& value) {
    state_.blnClearCommentsEnabled = value == "Y";
}

// Only the exact word shows the button, and nothing hides it again.
void ctlScheduler::setTaskingEnabled(const std::string& value) {
    state_.strTaskingEnabled = value;
    if (value == "true") w_.cmdTasking.visible = true;
    platform_.container.propertyChanged("TaskingEnabled");
}

std::string ctlScheduler::ResourceNumber() const { return w_.txtResourceFocus.text; }

void ctlScheduler::SetAppointmentType(const std::string& strTypeInfo, const std::string& strResourceNumber) {
    GetDayView(strResourceNumber)->Tag = strTypeInfo;
}

DayViewRef ctlScheduler::GetDayView(const std::string& strResourceNumber) const {
    return w_.dvwResource[columnOfNumber(strResourceNumber)];
}

std::int16_t ctlScheduler::FocusedColumnIndex() const {
    const std::string& text = w_.txtResourceFocus.text;
    if (text.empty()) return 0;
    const std::int16_t number = textToInteger(text);
    if (number == INT16_MIN) // the subtraction would leave the 16-bit range
        throw Overflow("the focused column " + text + " does not fit a 16-bit integer");
    return static_cast<std::int16_t>(number - 1);
}

std::string ctlScheduler::FocusedResourceValue() const {
    return w_.cmbResourceValue[columnIndex(FocusedColumnIndex())].text();
}

std::size_t columnIndex(int index) {
    if (index < 0 || index >= kColumns) throw SubscriptOutOfRange("no column " + std::to_string(index + 1));
    return static_cast<std::size_t>(index);
}

} // namespace quorvane
