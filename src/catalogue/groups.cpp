// Selecting a group: every column reset, the group's view laid out and shown,
// the category lists rebuilt and the default resources put into their columns.
// The current group is nothing but the text of cmbResourceGroup.

#include <QuorvaneScheduler/control_internals.h>

#include "catalogue/catalogue_grammar.h"

namespace quorvane {

namespace {

using catalogue::DefaultFields;
using catalogue::GroupFields;
using catalogue::ViewFields;

// A table the host never sent cannot be walked.
const StringTable& walked(const StringTable& table) {
    if (!table.isSet()) throw SubscriptOutOfRange("a catalogue table that was never assigned");
    return table;
}

} // namespace

void ctlScheduler::cmbResourceGroup_Click() {
    state_.blnSuppressColumnEvents = true;
    for (std::int16_t i = 0; i < kColumns; ++i)
        ResetColumn(i);
    state_.blnSuppressColumnEvents = false;
    ApplyGroupColumnsShown();
    FillCategoryLists();
    ApplyGroupView();
}

// Runs the layout for the view's number of columns, while the scroll bar still
// holds the tag and maximum of the group before.
void ctlScheduler::ApplyGroupColumnsShown() {
    const StringTable& views = walked(state_.arrResourceGroupViews);
    const std::string group = w_.cmbResourceGroup.text();
    for (int r = 0; r < views.rows(); ++r) {
        if (views.at(r, ViewFields::GroupName) == group) {
            const std::string shown(views.at(r, ViewFields::ColumnsShown));
            w_.cmbNumOfSchedules.setText(shown);
            return;
        }
    }
}

void ctlScheduler::ApplyGroupView() {
    for (std::int16_t i = 0; i < kColumns; ++i)
        SetColumnVisible(i, false);
    w_.sbSchedule.setMax(1);
    {
        const StringTable& views = walked(state_.arrResourceGroupViews);
        const std::string group = w_.cmbResourceGroup.text();
        for (int r = 0; r < views.rows(); ++r) {
            if (views.at(r, ViewFields::GroupName) != group) continue;
            const std::string total(views.at(r, ViewFields::ColumnsTotal));
            const std::int16_t columns = textToInteger(total);
            for (int i = 0; i <= columns - 1; ++i) {
                columnIndex(i);
                SetColumnVisible(static_cast<std::int16_t>(i), true);
            }
            w_.sbSchedule.tag = total;
            const int beyond = columns - textToInteger(w_.cmbNumOfSchedules.text());
            if (beyond > 0) w_.sbSchedule.setMax(toInteger(beyond + 1));
            break;
        }
    }
    // Each default may load its column and raise ResourceOnClick, in which the
    // host may call back in and even send new tables: the table is read anew at
    // every row, and a row's fields are copied before anything runs.
    for (int r = 0; r < walked(state_.arrResourceGroupDefaults).rows(); ++r) {
        const StringTable& defaults = state_.arrResourceGroupDefaults;
        if (defaults.at(r, DefaultFields::GroupName) != w_.cmbResourceGroup.text()) continue;
        const std::string groupId(defaults.at(r, DefaultFields::GroupId));
        const std::string value(defaults.at(r, DefaultFields::ResourceValue));
        const std::string column(defaults.at(r, DefaultFields::ColumnNumber));
        SetColumnDefault(groupId, value, column);
    }
}

void ctlScheduler::SetColumnVisible(std::int16_t intColumn, bool blnVisible) {
    columnIndex(intColumn);
    w_.cmbResourceCatType[intColumn].visible = blnVisible;
    w_.cmbDayIncrement[intColumn].visible = blnVisible;
    w_.cmbResource[intColumn].visible = blnVisible;
    w_.dvwResource[intColumn]->Visible = blnVisible;
}

void ctlScheduler::SetColumnDefault(const std::string& strGroupId, const std::string& strResourceValue,
                                    const std::string& strColumnNumber) {
    const std::int16_t column = toInteger(textToNumber(strColumnNumber) - 1);
    const StringTable& groups = walked(state_.arrResourceGroups);
    const std::string group = w_.cmbResourceGroup.text();
    // The identifier is the most telling of the three, so it is compared first.
    const int rows = groups.rows();
    for (int r = 0; r < rows; ++r) {
        if (!StringTable::same(groups.at(r, GroupFields::ResourceValue), strResourceValue) ||
            !StringTable::same(groups.at(r, GroupFields::GroupName), group) ||
            !StringTable::same(groups.at(r, GroupFields::GroupId), strGroupId))
            continue;
        columnIndex(column);
        const std::string category(groups.at(r, GroupFields::ResourceCatType));
        const std::string name(groups.at(r, GroupFields::ResourceName));
        w_.cmbResourceCatType[column].setText(
            category);                        // fills the column's resources with the whole category
        w_.cmbResource[column].setText(name); // loads the column
        return;
    }
}

// The level of an item is known only by its form: a sub-type stands indented.
void ctlScheduler::cmbResourceCatType_Click(std::int16_t Index) {
    const std::string text = w_.cmbResourceCatType[Index].text();
    const auto number = static_cast<std::int16_t>(Index + 1);
    if (!text.empty() && text[0] == ' ')
        FillResourcesBySubType(trimBlanks(text), number);
    else
        FillResourcesByCatType(trimBlanks(text), number);
}

void ctlScheduler::FillResourcesByCatType(const std::string& strText, std::int16_t intColumnNumber) {
    FillResources(GroupFields::ResourceCatType, strText, intColumnNumber);
}

void ctlScheduler::FillResourcesBySubType(const std::string& strText, std::int16_t intColumnNumber) {
    FillResources(GroupFields::ResourceSubType, strText, intColumnNumber);
}

// The two lists are filled item for item, so item k of both is one record.
void ctlScheduler::FillResources(int field, const std::string& strText, std::int16_t intColumnNumber) {
    const int column = intColumnNumber - 1;
    columnIndex(column);
    PickList& values = w_.cmbResourceValue[column];
    PickList& names = w_.cmbResource[column];
    values.clear();
    names.clear();
    const StringTable& groups = walked(state_.arrResourceGroups);
    const std::string& group = w_.cmbResourceGroup.text();
    const int rows = groups.rows();
    for (int r = 0; r < rows; ++r) {
        if (!StringTable::same(groups.at(r, field), strText) ||
            !StringTable::same(groups.at(r, GroupFields::GroupName), group))
            continue;
        values.addItem(std::string(groups.at(r, GroupFields::ResourceValue)));
        names.addItem(std::string(groups.at(r, GroupFields::ResourceName)));
    }
}

} // namespace quorvane
