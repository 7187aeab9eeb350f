// The column families of properties. Each reaches one widget of its column; a
// write to a pick list selects an item, which runs the list's click handling
// before the write returns, and the change report comes after that, so a write
// that fails reports nothing.

#include <QuorvaneScheduler/control_internals.h>

namespace quorvane {

namespace {

// A column index from a C++ host; the family's names only ever give 0 to 9.
std::size_t col(int index) { return columnIndex(index); }

std::string indexText(int listIndex) { return std::to_string(listIndex); }

std::string familyName(const char* before, int index, const char* after) {
    return before + std::to_string(index + 1) + after;
}

} // namespace

void ctlScheduler::setResourceCatType(int index, const std::string& value) {
    w_.cmbResourceCatType[col(index)].setText(value);
}

void ctlScheduler::setResource(int index, const std::string& value) {
    w_.cmbResource[col(index)].setText(value);
}

std::string ctlScheduler::DayIncrement(int index) const { return w_.cmbDayIncrement[col(index)].text(); }

void ctlScheduler::setDayIncrement(int index, const std::string& value) {
    w_.cmbDayIncrement[col(index)].setText(value);
    platform_.container.propertyChanged(familyName("DayIncrement", index, ""));
}

std::string ctlScheduler::ResourceValue(int index) const { return w_.cmbResourceValue[col(index)].text(); }

void ctlScheduler::setResourceValue(int index, const std::string& value) {
    w_.cmbResourceValue[col(index)].setText(value);
    platform_.container.propertyChanged(familyName("Resource", index, "Value"));
}

std::string ctlScheduler::ResourceValueListIndex(int index) const {
    return indexText(w_.cmbResourceValue[col(index)].listIndex());
}

// Moves the key list alone: the resource list keeps its selection and the
// column is not loaded. It reports under its sister's name.
void ctlScheduler::setResourceValueListIndex(int index, const std::string& value) {
    PickList& list = w_.cmbResourceValue[col(index)];
    list.setListIndex(textToInteger(value));
    platform_.container.propertyChanged(familyName("Resource", index, "ListIndex"));
}

std::string ctlScheduler::ResourceListIndex(int index) const {
    return indexText(w_.cmbResource[col(index)].listIndex());
}

void ctlScheduler::setResourceListIndex(int index, const std::string& value) {
    PickList& list = w_.cmbResource[col(index)];
    list.setListIndex(textToInteger(value)); // loads the column
    platform_.container.propertyChanged(familyName("Resource", index, "ListIndex"));
}

Variant ctlScheduler::ResourceTopIndex(int index) const {
    return Variant(w_.dvwResource[col(index)]->TopIndex());
}

void ctlScheduler::setResourceTopIndex(int index, const Variant& value) {
    PVDayView& view = *w_.dvwResource[col(index)];
    view.setTopIndex(value.toDate());
    platform_.container.propertyChanged(familyName("Resource", index, "TopIndex"));
}

Variant ctlScheduler::ResourceDate(int index) const {
    return Variant(w_.dvwResource[col(index)]->CurrentDate());
}

// Another date is an ordinary date change: the column empties and the host
// hears ResourceOnClick before the report.
void ctlScheduler::setResourceDate(int index, const Variant& value) {
    PVDayView& view = *w_.dvwResource[col(index)];
    view.setCurrentDate(value.toDate());
    platform_.container.propertyChanged(familyName("Resource", index, "Date"));
}

} // namespace quorvane
