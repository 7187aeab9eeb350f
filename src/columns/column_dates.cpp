// Each column's date, slot length and top of the grid, the calendar that follows
// the column in focus, and the Show Today walk that moves the columns to today
// one at a time, each waiting for the host to load the one before.

#include <QuorvaneScheduler/control_internals.h>

namespace quorvane {

void ctlScheduler::calCalendar_Change(OleDate newDate) {
    GetDayView(w_.txtResourceFocus.text)->setCurrentDate(newDate);
}

// Runs inside every assignment of another date to a column. The collision move
// below is such an assignment too, so this handler runs nested for it, to the
// end, before the outer pass goes on: the host hears ResourceOnClick twice for
// the final date, the inner one first.
void ctlScheduler::dvwResource_DateChange(std::int16_t Index, OleDate dtOldDate) {
    if (state_.blnSuppressColumnEvents) return;
    ResetCalendar(dtOldDate);
    PVDayView& view = *w_.dvwResource[Index];
    for (int i = 0; i < kColumns; ++i) {
        if (i == Index) continue;
        if (w_.cmbResource[Index].text() == w_.cmbResource[i].text() &&
            view.CurrentDate() == w_.dvwResource[i]->CurrentDate()) {
            const int step = dtOldDate > view.CurrentDate() ? -1 : 1; // on in the direction of travel
            view.setCurrentDate(addDays(view.CurrentDate(), step));
        }
    }
    w_.calCalendar->setDateSelected(view.CurrentDate(), true);
    view.appointmentSet().RemoveAll();
    state_.intTemplateCount[Index] = 0;
    raiseResourceOnClick(Index);
}

Variant ctlScheduler::ResetCalendar(const OleDate& dtOldDate) {
    const OleDate old = dtOldDate; // the caller's date may be a column's, which the loop does not move
    w_.calCalendar->setDateSelected(old, false);
    for (const auto& view : w_.dvwResource)
        w_.calCalendar->setDateSelected(view->CurrentDate(), false);
    return Variant();
}

// Runs with the date-change handler silenced, for every column at a group
// selection.
void ctlScheduler::ResetColumn(std::int16_t Index) {
    PVDayView& view = *w_.dvwResource[Index];
    w_.calCalendar->setDateSelected(view.CurrentDate(), false);
    view.setCurrentDate(platform_.clock.today());
    view.appointmentSet().RemoveAll();
    state_.intTemplateCount[Index] = 0;
    wipeTemplates(Index);
}

// Moves the first column that is not on today; the host's CheckLoadAllToday,
// once it has loaded that column, moves the next.
void ctlScheduler::mnoShowToday_Click() {
    state_.blnShowTodayRunning = false;
    const OleDate today = platform_.clock.today();
    for (const auto& view : w_.dvwResource) {
        if (view->CurrentDate() != today) {
            view->setCurrentDate(today);
            // Set after the move: a CheckLoadAllToday from the host's handler of
            // this first move still finds the walk idle.
            state_.blnShowTodayRunning = true;
            return;
        }
    }
}

Variant ctlScheduler::CheckLoadAllToday(const std::string& strCurrentResource) {
    const std::int16_t next = textToInteger(strCurrentResource);
    if (!state_.blnShowTodayRunning) {
        setUserControlEnabled(true);
        return Variant();
    }
    const OleDate today = platform_.clock.today();
    bool found = false;
    for (int i = next; i <= kColumns - 1; ++i) {
        if (i < 0) throw SubscriptOutOfRange("no column " + std::to_string(i + 1));
        PVDayView& view = *w_.dvwResource[static_cast<std::size_t>(i)];
        if (view.CurrentDate() != today) {
            view.setCurrentDate(today);
            found = true;
            break;
        }
    }
    // Written after the move, so it overrides whatever a call nested in the
    // host's handler of that move has written.
    state_.blnShowTodayRunning = found;
    return Variant();
}

void ctlScheduler::cmbDayIncrement_Click(std::int16_t Index) {
    SetDayViewIncrement(w_.cmbDayIncrement[Index], *w_.dvwResource[Index]);
    replayTemplates(Index); // the grid changed its unit: lay the colours on it anew
    if (!state_.strColumnTopTime[Index].empty())
        SetColumnTopTime(parseDate(state_.strColumnTopTime[Index]), std::to_string(Index + 1), true);
}

Variant ctlScheduler::DisplayTopIndex(const OleDate& dtStartDateTime, const std::string& strResourceNumber) {
    SetColumnTopTime(dtStartDateTime, strResourceNumber, false);
    return Variant();
}

// Only the first time named after a resource pick decides; later calls from
// refreshes and date changes bring the grid back to the remembered time.
void ctlScheduler::SetColumnTopTime(const OleDate& dtStartDateTime, const std::string& strResourceNumber,
                                    bool blnForce) {
    const std::size_t column = columnOfNumber(strResourceNumber);
    const std::string timeText = timeTextOf(dtStartDateTime);
    PVDayView& view = *w_.dvwResource[column];
    std::string& memory = state_.strColumnTopTime[column];
    if (memory.empty() || blnForce) {
        memory = timeText;
        // The one place the control yields: a pick of the user may run here,
        // before the grid has moved.
        platform_.yieldToMessageLoop();
        view.setTopIndex(parseDate(timeText));
    } else {
        view.setTopIndex(parseDate(memory));
    }
}

// What the user scrolled to wins over what the host asks for, but only a text
// longer than 10 characters is remembered: a time alone with a one-digit hour
// is not.
void ctlScheduler::dvwResource_TopIndexChange(std::int16_t Index, OleDate dtTopTime) {
    const std::string text = generalDateText(dtTopTime);
    if (text.size() > 10) state_.strColumnTopTime[Index] = text;
}

std::string timeTextOf(OleDate d) {
    const std::string text = generalDateText(d);
    if (text.size() <= 8) return "12:00:00 AM";
    return text.size() > 11 ? text.substr(text.size() - 11) : text;
}

std::size_t ctlScheduler::columnOfNumber(const std::string& number) const {
    const int index = textToInteger(number) - 1;
    if (index < 0 || index >= kColumns) throw SubscriptOutOfRange("\"" + number + "\" names no column");
    return static_cast<std::size_t>(index);
}

void ctlScheduler::raiseResourceOnClick(std::int16_t Index) {
    const auto number = static_cast<std::int16_t>(Index + 1);
    const std::string value = w_.cmbResourceValue[Index].text();
    const Variant date(w_.dvwResource[Index]->CurrentDate());
    host().ResourceOnClick(number, value, date);
}

} // namespace quorvane
