// How a column comes to show a resource: the control empties it, tells the host
// which resource and date it now wants, and the host answers by loading it.

#include <QuorvaneScheduler/control_internals.h>

#include "catalogue/catalogue_grammar.h"

namespace quorvane {

namespace {
using catalogue::GroupFields;
} // namespace

void ctlScheduler::cmbResource_Click(std::int16_t Index) {
    state_.strColumnTopTime[Index].clear(); // the next DisplayTopIndex takes effect again
    state_.intTemplateCount[Index] = 0;
    LoadColumn(Index);
}

void ctlScheduler::LoadColumn(std::int16_t Index) {
    // The dates written here are no requests of the user: the date-change
    // handler stays silent until the event below.
    state_.blnSuppressColumnEvents = true;
    for (int i = 0; i < kColumns; ++i)
        if (i != Index) RemoveTimeSlotSelected(*w_.dvwResource[i]);
    PVDayView& view = *w_.dvwResource[Index];
    view.ViewMode = 1;
    w_.txtResourceFocus.text = std::to_string(Index + 1);
    view.appointmentSet().RemoveAll();
    w_.cmbResourceValue[Index].setListIndex(w_.cmbResource[Index].listIndex());
    ResetCalendar(view.CurrentDate());
    // One forward pass that never looks back: a column passed earlier is not
    // compared again after a later move. Only the loading column moves.
    for (int i = 0; i < kColumns; ++i) {
        if (i == Index) continue;
        if (w_.cmbResource[Index].text() == w_.cmbResource[i].text() &&
            view.CurrentDate() == w_.dvwResource[i]->CurrentDate())
            view.setCurrentDate(addDays(view.CurrentDate(), 1));
    }
    state_.blnSuppressColumnEvents = false;
    w_.calCalendar->setDateSelected(view.CurrentDate(), true);
    raiseResourceOnClick(Index);
}

void ctlScheduler::RefreshSchedule(std::int16_t intResourceNumber) {
    if (intResourceNumber < 1 || intResourceNumber > kColumns) return;
    const auto index = static_cast<std::int16_t>(intResourceNumber - 1);
    if (!w_.dvwResource[index]->Visible) return;
    LoadColumn(index);
}

Variant ctlScheduler::SetResourceAndDate(const std::string& strResourceId, std::int16_t intResourceNumber,
                                         const std::string& strDate) {
    std::int16_t result = 1;
    // A column beyond those on screen is replaced by the first, silently.
    int column = intResourceNumber - 1;
    if (column > textToInteger(w_.cmbNumOfSchedules.text()) - 1) column = 0;

    const StringTable& groups = state_.arrResourceGroups;
    if (!groups.isSet()) throw SubscriptOutOfRange("ResourceGroups was never assigned");
    const std::string group = w_.cmbResourceGroup.text();
    int row = -1;
    bool inGroup = false;
    for (int r = 0; r < groups.rows(); ++r) {
        if (groups.at(r, GroupFields::ResourceValue) != strResourceId) continue;
        row = r;
        if (groups.at(r, GroupFields::GroupName) == group) {
            inGroup = true;
            break;
        }
    }

    if (inGroup) {
        columnIndex(column);
        const std::string category(groups.at(row, GroupFields::ResourceCatType));
        const std::string name(groups.at(row, GroupFields::ResourceName));
        const std::string value(groups.at(row, GroupFields::ResourceValue));
        w_.cmbResourceCatType[column].setText(category);
        w_.cmbResource[column].setText(name); // loads with the date the column had
        // Another date is an ordinary date change: a second ResourceOnClick.
        w_.dvwResource[column]->setCurrentDate(parseDate(strDate.substr(0, 10)));
        // Two resources of one category may share a name: set the identifier
        // right, after the events have gone out.
        w_.cmbResourceValue[column].setText(value);
        result = 0;
    } else if (row < 0) {
        platform_.msgBox(
            "The selected resource is not available to you.  Please contact you System Administrator.");
    } else {
        const std::string other(groups.at(row, GroupFields::GroupName));
        const std::string question = "The selected resource is not available in the '" + group +
                                     "' group, but is available in the '" + other + "' group.\r\n" +
                                     "Do you wish to switch to the new group before proceeding?";
        if (platform_.msgBox(question, MsgBoxButtons::YesNo, "Scheduler") == MsgBoxResult::Yes)
            w_.cmbResourceGroup.setText(other);
    }
    return Variant(result);
}

} // namespace quorvane
