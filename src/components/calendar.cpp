#include <QuorvaneScheduler/components/day_view.h>
#include <QuorvaneScheduler/components/widgets.h>
#include <QuorvaneScheduler/errors.h>

#include <algorithm>

namespace quorvane {

namespace {

// Marks are kept by day number, so any time of day names its date.
std::int32_t dayNumberOf(OleDate d) {
    if (!(d.value > -657435.0 && d.value < 2958466.0)) throw InvalidProcedureCall("date value out of range");
    return static_cast<std::int32_t>(datePart(d).value);
}

} // namespace

PVCalendar::PVCalendar(Platform& platform) : value_(platform.clock.today()) {}

bool PVCalendar::DateSelected(OleDate d) const {
    return std::binary_search(marked_.begin(), marked_.end(), dayNumberOf(d));
}

void PVCalendar::setDateSelected(OleDate d, bool on) {
    const std::int32_t day = dayNumberOf(d);
    const auto it = std::lower_bound(marked_.begin(), marked_.end(), day);
    const bool present = it != marked_.end() && *it == day;
    if (on && !present) marked_.insert(it, day);
    if (!on && present) marked_.erase(it);
}

void PVCalendar::userPick(OleDate d) {
    const auto gesture = userGesture("calendar %", {Variant(datePart(d))});
    value_ = OleDate(static_cast<double>(dayNumberOf(d)));
    if (!Change) return;
    const std::function<void(OleDate)> handler = Change;
    handler(value_);
}

std::vector<OleDate> PVCalendar::markedDates() const {
    std::vector<OleDate> dates;
    dates.reserve(marked_.size());
    for (const std::int32_t day : marked_)
        dates.emplace_back(static_cast<double>(day));
    return dates;
}

} // namespace quorvane
