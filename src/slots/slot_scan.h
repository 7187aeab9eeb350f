#pragma once
// The search for a column's selected slot, written against any view that offers
// Increments, BusinessHoursBegin, BusinessHoursEnd and TimeSlotSelected, so the
// rules of the walk can be tried on business hours that a real day view never
// shows.

#include <QuorvaneScheduler/components/day_view.h>
#include <QuorvaneScheduler/ole_date.h>

#include <cstdint>
#include <string>

namespace quorvane::slots {

// Minutes per slot by Increments code, 0 for a code outside the table.
inline int minutesOfIncrements(std::int32_t code) {
    if (code < 0 || code >= static_cast<std::int32_t>(kIncrementMinutes.size())) return 0;
    return kIncrementMinutes[static_cast<std::size_t>(code)];
}

// The scan asks every column on the same day, whatever day the column shows: the
// view looks only at the time of day, and a booking joins the time found to the
// column's own date.
inline OleDate onScanDay(const std::string& timeText) { return parseDate("1/1/2000 " + timeText); }

// Walks the business hours from their begin in steps of the slot length and
// gives the first candidate the view reports as selected, with `found` set. The
// walk counts from the begin time, not from midnight, so a begin of 8:10 on a
// 15-minute grid asks 8:10, 8:25 and so on. With nothing found, or no room
// between begin and end, it gives the begin time with `found` false: a booking
// reads the flag, never the value, to tell the two apart.
template <class View> OleDate scanSelectedSlot(const View& view, bool& found) {
    found = false;
    const int minutes = minutesOfIncrements(view.Increments());
    const int step = minutes == 0 ? 60 : minutes;
    OleDate candidate = onScanDay(generalDateText(view.BusinessHoursBegin()));
    // An end at midnight stands for the end of the day, not for an empty range;
    // the walk then stops short of 11:59 PM.
    const OleDate end = view.BusinessHoursEnd();
    const OleDate limit = onScanDay(end == parseDate("12:00:00 AM") ? "11:59:00 PM" : generalDateText(end));
    while (candidate < limit) {
        if (view.TimeSlotSelected(candidate)) {
            found = true;
            return candidate;
        }
        candidate = addMinutes(candidate, step);
    }
    return onScanDay(generalDateText(view.BusinessHoursBegin()));
}

} // namespace quorvane::slots
