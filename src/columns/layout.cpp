// Where the ten columns stand. All ten are placed on one row whatever their
// visibility; N on screen means each is about one Nth of the shared width, and
// the rest lie past the right edge until the scroll bar moves the row.

#include <QuorvaneScheduler/control_internals.h>

namespace quorvane {

namespace {

constexpr double kRightMargin = 100;
constexpr float kLowestScrollTop = 4100;
constexpr double kGapTerm = 5;
constexpr double kSpacing = 15;
constexpr double kDayIncrementOffset = 680;

// Widths are kept by the widgets as singles: one that does not fit a Single is
// an overflow, a negative one is refused, and the call fails at that step.
float widthValue(double w) {
    const float width = toSingle(w);
    if (width < 0) throw InvalidPropertyValue("a width below 0");
    return width;
}

float resourceListWidth(float columnWidth) {
    return columnWidth - kDayIncrementOffset > 0 ? static_cast<float>(columnWidth - kDayIncrementOffset)
                                                 : 0.0f;
}

} // namespace

void ctlScheduler::ResizeControl(std::int16_t intHeight, std::int16_t intWidth) {
    const Screen& screen = platform_.screen;
    ScrollBar& sb = w_.sbSchedule;
    sb.top = toSingle(intHeight * static_cast<double>(screen.twipsPerPixelY) - sb.height);
    const double width = intWidth * static_cast<double>(screen.twipsPerPixelX) - kRightMargin;
    sb.width = widthValue(width);
    // The day views never get shorter than the lowest top allows, even if the
    // bar then lies below the visible area.
    if (sb.top < kLowestScrollTop) sb.top = kLowestScrollTop;
    for (auto& view : w_.dvwResource)
        view->Height = sb.top - view->Top;
    state_.lngScheduleWidth = toLong(width);
    if (w_.cmbNumOfSchedules.text().empty()) return; // the widths wait for a number of columns
    std::string number = Variant(textToInteger(w_.cmbNumOfSchedules.text())).toString();
    ModifySchedules(number);
}

Variant ctlScheduler::ModifySchedules(std::string& intNumOfSchedules) {
    const double n = textToNumber(intNumOfSchedules);
    for (int i = 0; i < kColumns; ++i) {
        PVDayView& view = *w_.dvwResource[i];
        if (n == 0) throw DivisionByZero("no columns to share the width");
        view.Width = widthValue(state_.lngScheduleWidth / n - (n - 1) * kGapTerm);
        // Column 0 keeps its left edge. Column 1 follows it with no gap, as if
        // column 0 stood at 0; every later column adds the spacing.
        if (i == 1) {
            view.Left = toSingle(view.Width + kSpacing);
        } else if (i > 1) {
            const PVDayView& before = *w_.dvwResource[i - 1];
            view.Left = toSingle(static_cast<double>(before.Left) + before.Width + kSpacing);
        }
        if (i == 0) {
            w_.cmbResourceCatType[0].width = view.Width;
            w_.cmbResource[0].width = resourceListWidth(view.Width);
        } else {
            w_.cmbResourceCatType[i].left = view.Left;
            w_.cmbResourceCatType[i].width = view.Width;
            w_.cmbResource[i].width = resourceListWidth(view.Width);
            w_.cmbDayIncrement[i].left = view.Left;
            w_.cmbResource[i].left = toSingle(view.Left + kDayIncrementOffset);
        }
    }
    // Lowering the maximum can pull the value down and so scroll the row in the
    // middle of this layout.
    w_.sbSchedule.setMax(1);
    if (!w_.sbSchedule.tag.empty()) {
        const std::int16_t total = textToInteger(w_.sbSchedule.tag);
        if (total - n > 0) w_.sbSchedule.setMax(toInteger(total - n + 1));
    }
    return Variant();
}

void ctlScheduler::setNumOfSchedules(const std::string& value) { w_.cmbNumOfSchedules.setText(value); }

void ctlScheduler::cmbNumOfSchedules_Click() {
    std::string number = Variant(textToInteger(w_.cmbNumOfSchedules.text())).toString();
    ModifySchedules(number);
}

// Column V - 1 comes to the left edge and the others follow at exactly one
// width apart; unlike a layout, no spacing is added between them.
void ctlScheduler::sbSchedule_Change() {
    for (int i = 0; i < kColumns; ++i) {
        const std::int16_t value = w_.sbSchedule.value; // read anew: a handler may have moved it
        PVDayView& view = *w_.dvwResource[i];
        const auto factor = static_cast<std::int16_t>(i + 1 - value);
        view.Left = toSingle(static_cast<double>(view.Width) * factor + kSpacing);
        w_.cmbResourceCatType[i].left = view.Left;
        w_.cmbDayIncrement[i].left = view.Left;
        w_.cmbResource[i].left = toSingle(view.Left + kDayIncrementOffset);
    }
}

} // namespace quorvane
