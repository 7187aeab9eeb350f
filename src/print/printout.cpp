// "Print Schedule": the day of the focused column described in one string for
// the host's printout, as date~slot minutes~first business hour~last.

#include <QuorvaneScheduler/control_internals.h>

#include "slots/slot_scan.h"

namespace quorvane {

void ctlScheduler::mnoPrint_Click() {
    const std::string resource = FocusedResourceValue();
    if (!isPresent(resource)) {
        platform_.msgBox("You must select a resource");
        return;
    }
    const DayViewRef view = GetDayView(w_.txtResourceFocus.text);
    const int minutes = slots::minutesOfIncrements(view->Increments());
    // The hours alone: 8:30 prints as 08, and a day ending at midnight as 00.
    const DateParts day = splitDate(view->CurrentDate());
    const DateParts begin = splitDate(view->BusinessHoursBegin());
    const DateParts end = splitDate(view->BusinessHoursEnd());
    const std::string info = std::to_string(day.year) + format00(day.month) + format00(day.day) + "~" +
                             std::to_string(minutes) + "~" + format00(begin.hour) + "~" + format00(end.hour);
    host().PrintDay(resource, info);
}

} // namespace quorvane
