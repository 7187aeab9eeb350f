// Time-slot selection: the slot length of a column, the rule that only one column
// carries a selected slot, the search for that slot when a booking asks, and the
// host's repaint of a grid.

#include <QuorvaneScheduler/control_internals.h>

#include "slots/slot_scan.h"

#include <array>
#include <cstddef>
#include <string>

namespace quorvane {

namespace {

// dtLastSlot keeps column index i at entry i + 1.
OleDate& lastSlotOf(std::array<OleDate, 12>& dtLastSlot, int index) {
    const int entry = index + 1;
    if (entry < 0 || entry >= static_cast<int>(dtLastSlot.size()))
        throw SubscriptOutOfRange("no slot memory for a day view of index " + std::to_string(index));
    return dtLastSlot[static_cast<std::size_t>(entry)];
}

// An entry with no date part holds nothing to clear, which covers both the zero
// date and a slot that arrived as a bare time.
bool isEmptySlot(OleDate slot) { return mmddyyyyText(slot) == "12/30/1899"; }

} // namespace

OleDate ctlScheduler::getSelectedTimeSlot(PVDayView& dvwResource) {
    return slots::scanSelectedSlot(dvwResource, state_.blnSlotFound);
}

void ctlScheduler::RemoveTimeSlotSelected(PVDayView& dvwResource) {
    OleDate& slot = lastSlotOf(state_.dtLastSlot, dvwResource.Index());
    // A column that never reported a slot, or was cleared since, is not asked at
    // all: its view may hold a slot that the host set, and that one stays.
    if (isEmptySlot(slot)) return;
    dvwResource.setTimeSlotSelected(slot, false);
    slot = parseDate("12/30/1899");
}

void ctlScheduler::ClearTimeSlots(const Variant& strResourceSelected) {
    // Converted before any column is touched, so a text that is no number leaves
    // every selection standing. A number outside 1 to 10 spares no column.
    const int spared = strResourceSelected.toInteger() - 1;
    for (int i = 0; i < kColumns; ++i)
        if (i != spared) RemoveTimeSlotSelected(*w_.dvwResource[static_cast<std::size_t>(i)]);
}

std::int16_t ctlScheduler::IntervalInMinutes(PVDayView& dvwResource) {
    return static_cast<std::int16_t>(slots::minutesOfIncrements(dvwResource.Increments()));
}

void ctlScheduler::RefreshTimeslots(const std::string& strResourceNumber) {
    GetDayView(strResourceNumber)->paintBareDay();
}

bool ctlScheduler::ResourceTimeSlotSelected(int index, OleDate TimeSlot) const {
    return w_.dvwResource[columnIndex(index)]->TimeSlotSelected(TimeSlot);
}

// A slot set here has no entry in dtLastSlot, so a click in another column does
// not take it away; only the view itself or another write does.
void ctlScheduler::setResourceTimeSlotSelected(int index, OleDate TimeSlot, bool value) {
    w_.dvwResource[columnIndex(index)]->setTimeSlotSelected(TimeSlot, value);
    platform_.container.propertyChanged("Resource" + std::to_string(index + 1) + "TimeSlotSelected");
}

// The clearing spares the column that reported, so a second click in the same
// column only replaces its entry; the earlier slot there is the view's affair.
void ctlScheduler::dvwResource_TimeSlotSelect(std::int16_t Index, OleDate TimeSlot) {
    lastSlotOf(state_.dtLastSlot, Index) = TimeSlot;
    ClearTimeSlots(Variant(std::to_string(Index + 1)));
}

void ctlScheduler::SetDayViewIncrement(PickList& cmbDayIncrement, PVDayView& dvwResource) {
    const std::string& text = cmbDayIncrement.text();
    for (std::size_t code = 0; code < kIncrementMinutes.size(); ++code) {
        if (text == std::to_string(kIncrementMinutes[code])) {
            dvwResource.setIncrements(static_cast<std::int32_t>(code));
            return;
        }
    }
}

} // namespace quorvane
