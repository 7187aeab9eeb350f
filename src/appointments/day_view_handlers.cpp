// What the control does with the day views' notifications: it keeps the focused
// column, opens the two context menus, writes back what a drag may have taken
// from an appointment, asks before a removal, and hands each finished change to
// the host in a busy phase. No handler here looks at a status: the one condition
// on an appointment is that its tag is present, since without one the host
// cannot be told which appointment changed.
//
// Every raise to the host may re-enter: a host can reload the column, remove the
// appointment or start another gesture from inside. The handlers therefore hold
// the appointment by a shared reference and compute each event's arguments
// before they raise it; nothing of theirs runs after the raise but step 6 of
// AfterDrag.

#include <QuorvaneScheduler/control_internals.h>

#include "appointments/messages.h"

namespace quorvane {

namespace {
// MouseButton carries twips; a view's pixel is always 15 of them here.
constexpr double kTwipsPerPixel = 15.0;
std::string columnNumber(std::int16_t Index) { return std::to_string(Index + 1); }
} // namespace

void ctlScheduler::lostIndex(std::int16_t Index, const char* what) {
    platform_.msgBox("Error(" + columnNumber(Index) + "-" + what + messages::kLostIndexTail);
}

void ctlScheduler::handChangeToHost(std::int16_t Index, const AppointmentRef& Appointment,
                                    void (ctlSchedulerEvents::*event)(Str, Str)) {
    beginBusy();
    SetCurrentApp(Appointment);
    const std::string value = w_.cmbResourceValue[Index].text();
    (host().*event)(value, columnNumber(Index));
}

void ctlScheduler::dvwResource_GotFocus(std::int16_t Index) {
    LoadAppointmentTypes(w_.dvwResource[Index]->Tag);
}

// The focus moves for any button on any column, so the commands of a menu act on
// the column clicked.
void ctlScheduler::dvwResource_MouseButton(std::int16_t Index, std::int16_t Button, std::int16_t /*Shift*/,
                                           float X, float Y) {
    w_.txtResourceFocus.text = columnNumber(Index);
    PVDayView& view = *w_.dvwResource[Index];
    if (view.ViewMode != 1 || Button != 2) return;
    const AppointmentRef app =
        view.appointmentSet().HitTest(toLong(X / kTwipsPerPixel), toLong(Y / kTwipsPerPixel));
    if (!app) {
        w_.mnuRightClickScheduler.popup(X, Y);
        return;
    }
    state_.objCurrentApp = app;
    // A tag without a second field, such as that of a booking the host never
    // named, fails here, before any menu opens.
    const std::string recurrence = tagField(app->Tag, 1);
    w_.mnoAddEditRecurrenceApp.caption = isPresent(recurrence) ? "Edit Recurrence" : "Add Recurrence";
    CheckCurrentAppStatus(app);
    w_.mnuRightClickSchedulerApp.popup(X, Y);
}

// On a column that was never loaded a click does nothing; there the focus number
// moves only with MouseButton.
void ctlScheduler::dvwResource_Click(std::int16_t Index) {
    if (w_.dvwResource[Index]->ViewMode == 0) return;
    w_.txtResourceFocus.text = columnNumber(Index);
    ClearAdditionalAppInfoOnSelect();
}

void ctlScheduler::dvwResource_DblClick(std::int16_t /*Index*/) { cmdLoad_Click(); }

// A drop on a column that is not in use is taken back, and the moved appointment
// is put back into the column it came from, with its times, text and tag, in the
// view's default colour until the host reloads that column.
void ctlScheduler::dvwResource_AfterAdd(std::int16_t Index, const AppointmentRef& Appointment) {
    PVDayView& view = *w_.dvwResource[Index];
    if (!isPresent(Appointment->Text)) {
        view.Undo();
        return;
    }
    if (view.ViewMode != 0) return;
    view.Undo();
    const AppointmentRef moved = state_.objMoveApp;
    if (!moved) throw ObjectRequired("no appointment was being moved");
    const std::string text = moved->Text;
    const OleDate start = moved->StartDateTime, end = moved->EndDateTime;
    const AppointmentRef restored =
        GetDayView(state_.strMoveFromColumn)->appointmentSet().Add(text, start, end);
    restored->Tag = moved->Tag;
}

// The removal of a move passes silently. Any other asks the user; only Yes
// reaches the host. An appointment without a tag goes with no question.
void ctlScheduler::dvwResource_BeforeRemove(std::int16_t Index, const AppointmentRef& Appointment) {
    if (state_.blnAppMoving) {
        state_.blnAppMoving = false;
        return;
    }
    if (!isPresent(Appointment->Tag)) {
        lostIndex(Index, "Remove");
        return;
    }
    if (platform_.msgBox(messages::kRemoveQuestion, MsgBoxButtons::YesNo) != MsgBoxResult::Yes) {
        w_.dvwResource[Index]->Undo();
        return;
    }
    handChangeToHost(Index, Appointment, &ctlSchedulerEvents::ResourceBeforeRemove);
}

// The new size stands on the screen also when the host cannot be told.
void ctlScheduler::dvwResource_AfterResize(std::int16_t Index, const AppointmentRef& Appointment) {
    if (!isPresent(Appointment->Tag)) {
        lostIndex(Index, "Resize");
        return;
    }
    handChangeToHost(Index, Appointment, &ctlSchedulerEvents::ResourceAfterResize);
}

// Saves what the drop may lose: the whole tag (in txtAppAppointmentId), the
// length, and the status, which is only a colour.
void ctlScheduler::dvwResource_BeforeDrag(std::int16_t Index, const AppointmentRef& Appointment) {
    state_.objMoveApp = Appointment;
    w_.txtAppAppointmentId.text = Appointment->Tag;
    const std::int64_t minutes = minutesBetween(Appointment->StartDateTime, Appointment->EndDateTime);
    if (minutes < INT32_MIN || minutes > INT32_MAX)
        throw Overflow("an appointment of " + std::to_string(minutes) + " minutes");
    w_.txtAppDuration.text = std::to_string(minutes);
    state_.strMoveStatus = GetStatus(Appointment);
    state_.blnAppMoving = true;
    state_.strMoveFromColumn = columnNumber(Index);
}

// `Appointment` is what now stands in the target column, which need not be the
// object BeforeDrag saw: its tag, colour and length come back from what was
// saved, and only its start is the drop's.
void ctlScheduler::dvwResource_AfterDrag(std::int16_t Index, const AppointmentRef& Appointment) {
    Appointment->Tag = w_.txtAppAppointmentId.text;
    SetStatus(Appointment, state_.strMoveStatus);
    if (!w_.txtAppDuration.text.empty())
        Appointment->EndDateTime =
            addMinutes(Appointment->StartDateTime, toLong(textToNumber(w_.txtAppDuration.text)));
    if (!isPresent(Appointment->Tag)) {
        lostIndex(Index, "Drag"); // the target's number, not the source's
        return;
    }
    handChangeToHost(Index, Appointment, &ctlSchedulerEvents::ResourceAfterDrag);
    // After the host's handling, and over whatever it did to the flag: the
    // source's removal is still to come and must pass silently. A move that began
    // in the first column leaves the flag as BeforeDrag set it.
    if (state_.strMoveFromColumn != "1") state_.blnAppMoving = true;
}

void ctlScheduler::dvwResource_AppointmentChangeRefused(std::int16_t Index, const AppointmentRef&) {
    w_.dvwResource[Index]->Undo();
}

void ctlScheduler::dvwResource_ViewChangeRefused(std::int16_t Index) { w_.dvwResource[Index]->Undo(); }

void ctlScheduler::mnoDeleteApp_Click() {
    const std::size_t index = columnIndex(FocusedColumnIndex());
    if (!state_.objCurrentApp) throw ObjectRequired("no context menu has opened on an appointment");
    w_.dvwResource[index]->appointmentSet().Remove(state_.objCurrentApp->Key());
}

} // namespace quorvane
