// Booking: the panel's patient into the selected slot of the focused column,
// plainly or by one of the column's appointment types. The control puts the
// appointment on the day view at once, with an empty tag, and hands it to the
// host with AddApptWithPatient; the host names it with SetAppId and ends the
// busy phase.

#include <QuorvaneScheduler/control_internals.h>

#include "appointments/messages.h"
#include "slots/slot_scan.h"

namespace quorvane {

namespace {

// Fields of one entry of a type string.
constexpr std::size_t kTypeDuration = 1, kTypeComment = 2, kTypeChiefComplaint = 3, kTypeId = 4;

// The preset first and the user's words after it; a preset the text already
// holds is not repeated, so a second booking of one type adds nothing.
std::string mergePreset(const std::string& preset, const std::string& text) {
    if (text.empty()) return preset;
    if (preset.empty()) return text;
    if (text.find(preset) != std::string::npos) return text;
    if (preset.back() == '.') return preset + "  " + text;
    return preset + ".  " + text;
}

} // namespace

// Runs each time a column's view takes the focus, so the menu shows that column's
// types by the time its context menu opens. An entry past the fiftieth has no
// menu entry and fails there; an empty entry has no caption and fails after it
// was shown with an empty tag, which books plainly.
void ctlScheduler::LoadAppointmentTypes(const std::string& strTypeInfo) {
    for (MenuItem& item : w_.mnoSchedulePatientType)
        item.visible = false;
    if (strTypeInfo.empty()) return;
    const std::vector<std::string> entries = splitFields(strTypeInfo, '~');
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::vector<std::string> fields = splitFields(entries[i], '|');
        MenuItem& item = typeItem(static_cast<int>(i) + 1);
        item.visible = true;
        item.tag = entries[i];
        item.caption = fieldAt(fields, 0);
    }
}

// Before any check, so a booking that is refused has still wiped them.
void ctlScheduler::clearCommentsForBooking() {
    if (!state_.blnClearCommentsEnabled) return;
    w_.txtAppComments.text.clear();
    w_.txtAppChiefComplaint.text.clear();
}

void ctlScheduler::ScheduleApp() {
    clearCommentsForBooking();
    ScheduleAppWithInfo("", "", "", "");
}

void ctlScheduler::mnoSchedulePatientGeneral_Click() { ScheduleApp(); }

// An entry of fewer than five fields fails at the first field it lacks, in the
// order the fields are read: comment, chief complaint, duration, type id.
void ctlScheduler::mnoSchedulePatientType_Click(std::int16_t Index) {
    const std::string tag = typeItem(Index).tag;
    if (tag.empty()) {
        ScheduleApp();
        return;
    }
    const std::vector<std::string> fields = splitFields(tag, '|');
    clearCommentsForBooking();
    const std::string comments = mergePreset(fieldAt(fields, kTypeComment), w_.txtAppComments.text);
    const std::string chief = mergePreset(fieldAt(fields, kTypeChiefComplaint), w_.txtAppChiefComplaint.text);
    const std::string duration = fieldAt(fields, kTypeDuration);
    ScheduleAppWithInfo(duration, comments, chief, fieldAt(fields, kTypeId));
}

void ctlScheduler::ScheduleAppWithInfo(const std::string& strDuration, const std::string& strComments,
                                       const std::string& strChiefComplaint,
                                       const std::string& strAppointmentTypeID) {
    const DayViewRef view = GetDayView(w_.txtResourceFocus.text);
    const std::string strResourceEID = FocusedResourceValue();
    if (!isPresent(w_.txtPatEID.text)) {
        platform_.msgBox(messages::kNoPatient);
        return;
    }
    if (!isPresent(strResourceEID)) {
        platform_.msgBox(messages::kNoResource);
        return;
    }
    // Only the focused column's slot counts; the time found is joined to the
    // column's own date through their texts, which drops the seconds.
    const OleDate slot = getSelectedTimeSlot(*view);
    const OleDate start = parseDate(shortDateText(view->CurrentDate()) + " " + shortTimeText(slot));
    if (!state_.blnSlotFound) {
        platform_.msgBox(messages::kNoSlot);
        return;
    }
    // A duration that is no number fails here, before anything is booked.
    const std::int64_t minutes = strDuration.empty() ? slots::minutesOfIncrements(view->Increments())
                                                     : toLong(textToNumber(strDuration));
    const OleDate end = addMinutes(start, minutes);

    if (!strComments.empty()) w_.txtAppComments.text = strComments;
    if (!strChiefComplaint.empty()) w_.txtAppChiefComplaint.text = strChiefComplaint;
    const std::string text = w_.txtPatName.text;
    w_.txtAppRecurrenceId.text.clear();
    const AppointmentRef app = view->appointmentSet().Add(text, start, end);
    w_.txtAppPatEID.text = w_.txtPatEID.text;
    beginBusy();
    SetCurrentApp(app);
    state_.strAppointmentTypeID = strAppointmentTypeID;
    app->setSelected(true);
    const std::string strResourceNumber = w_.txtResourceFocus.text;
    host().AddApptWithPatient(strResourceNumber, strResourceEID);
}

} // namespace quorvane
