// Where the patient panel, the appointment pane and the buttons stand on the
// control's form, in twips. The columns below them are placed by the layout
// code at each resize; these stay where the form designer put them. A field's
// label stands to its left, so each field leaves room for its label there.

#include <QuorvaneScheduler/control_internals.h>

namespace quorvane {

namespace {

using W = SchedulerWidgets;

constexpr float kRowHeight = 315;
constexpr float kRowStep = 360;
constexpr float kFirstRow = 30;
constexpr float kButtonWidth = 330;

float row(int n) { return kFirstRow + kRowStep * static_cast<float>(n); }

struct Place {
    WidgetBase* widget;
    float left;
    int row;
    float width;
    int rows = 1; // a field of several lines spans rows
};

// The row of the two column lists: the picture buttons after them, the pane's
// last field and its Save button at the right, the photo switch at the left.
const std::pair<Button W::*, float> kButtonRow[] = {
    {&W::cmdCalendar, 3450},        {&W::cmdPatientPhoto, 3840},   {&W::cmdOpenPatient, 8000},
    {&W::cmdValidatePatient, 8390}, {&W::cmdPrintSuperbill, 8780}, {&W::cmdLegend, 9170},
    {&W::cmdTasking, 9560},         {&W::cmdQuickScan, 9950},      {&W::cmdQuickScanI1, 10340},
    {&W::cmdQuickScanI2, 10730},
};
constexpr float kButtonRowTop = 1920;

} // namespace

void ctlScheduler::placeFormWidgets() {
    // Three blocks right of the calendar: the patient and his phones, his insurance
    // and balances, and the pane of the current appointment.
    const Place places[] = {
        {&w_.txtPatName, 4650, 0, 2300},
        {&w_.cmdPatientSearch, 6990, 0, kButtonWidth},
        {&w_.txtPatHomePhone, 4650, 1, 1400},
        {&w_.txtPatHomePhoneExt, 6450, 1, 550},
        {&w_.txtPatWorkPhone, 4650, 2, 1400},
        {&w_.txtPatWorkPhoneExt, 6450, 2, 550},
        {&w_.txtPatOtherPhone, 4650, 3, 1400},
        {&w_.txtPatOtherPhoneExt, 6450, 3, 550},
        {&w_.txtPatChartNumber, 4650, 4, 1400},
        {&w_.txtPatSex, 6450, 4, 550},

        {&w_.txtPatPriIns, 8700, 0, 1300},
        {&w_.txtPatPrimaryCoPay, 10620, 0, 600},
        {&w_.txtPatSecIns, 8700, 1, 1300},
        {&w_.txtPatSecondaryCoPay, 10620, 1, 600},
        {&w_.txtPatPCP, 8700, 2, 2520},
        {&w_.txtPatDOB, 8700, 3, 1300},
        {&w_.txtPatBalance30, 8700, 4, 615},
        {&w_.txtPatBalance60, 9335, 4, 615},
        {&w_.txtPatBalance90, 9970, 4, 615},
        {&w_.txtPatBalance180, 10605, 4, 615},

        {&w_.txtAppChiefComplaint, 12900, 0, 1450, 2},
        {&w_.cmdChiefComplainQuickComment, 14380, 0, kButtonWidth},
        {&w_.txtAppComments, 12900, 2, 1450, 2},
        {&w_.cmdCommentQuickComment, 14380, 2, kButtonWidth},
        {&w_.txtAppRefProvider, 12900, 4, 1450},
        {&w_.cmdRefProvider, 14380, 4, kButtonWidth},
    };

    for (const Place& p : places) {
        WidgetBase& w = *p.widget;
        w.left = p.left, w.top = row(p.row), w.width = p.width;
        w.height = kRowHeight + kRowStep * static_cast<float>(p.rows - 1);
    }
    for (const auto& [button, left] : kButtonRow) {
        Button& b = w_.*button;
        b.left = left, b.top = kButtonRowTop, b.width = kButtonWidth, b.height = kRowHeight;
    }
    TextField& auth = w_.txtAppPriorAuthNum;
    auth.left = 12900, auth.top = kButtonRowTop, auth.width = 1000, auth.height = kRowHeight;
    Button& save = w_.cmdSaveAdditionalAppInfo;
    save.left = 13950, save.top = kButtonRowTop, save.width = 760, save.height = kRowHeight;
}

} // namespace quorvane
