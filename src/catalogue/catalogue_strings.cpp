// The four catalogue strings: their setters, the tables they become, the list of
// groups and the category lists of the current group.

#include <QuorvaneScheduler/control_internals.h>

#include "catalogue/catalogue_grammar.h"

#include <string>
#include <string_view>

namespace quorvane {

using catalogue::GroupFields;
using catalogue::parseCatalogue;

namespace {

// Two blanks after the full stop: the words are the system's own.
constexpr std::string_view kNoGroupsMessage =
    "You have not been assigned any scheduler groups.  Please contact your System Administrator.";

// A second-level item of the category list is its sub-type behind these blanks;
// the leading blank is all that tells the levels apart when an item is picked.
constexpr std::string_view kSubTypeIndent = "     ";

} // namespace

// Each setter reports before it parses, so a string that fails still shows as
// changed to the container.
void ctlScheduler::setResources(const std::string& value) {
    platform_.container.propertyChanged("Resources");
    LoadResources(value);
}

void ctlScheduler::setResourceGroups(const std::string& value) {
    platform_.container.propertyChanged("ResourceGroups");
    LoadResourceGroups(value);
}

void ctlScheduler::setResourceGroupDefaults(const std::string& value) {
    platform_.container.propertyChanged("ResourceGroupDefaults");
    LoadResourceGroupDefaults(value);
}

void ctlScheduler::setResourceGroupViews(const std::string& value) {
    platform_.container.propertyChanged("ResourceGroupViews");
    LoadResourceGroupViews(value);
}

// No operation of the control reads arrResources; assigning it still rebuilds
// the category lists, which a host that assigns it after the groups relies on.
void ctlScheduler::LoadResources(std::string_view strResources) {
    parseCatalogue(strResources, catalogue::kResourceFields, state_.arrResources);
    FillCategoryLists();
}

void ctlScheduler::LoadResourceGroupDefaults(std::string_view strResourceGroupDefaults) {
    parseCatalogue(strResourceGroupDefaults, catalogue::DefaultFields::Count,
                   state_.arrResourceGroupDefaults);
}

void ctlScheduler::LoadResourceGroupViews(std::string_view strResourceGroupViews) {
    parseCatalogue(strResourceGroupViews, catalogue::ViewFields::Count, state_.arrResourceGroupViews);
}

// The one catalogue string the control answers itself when it is empty: a user
// without groups is told so, and the table and the group list keep what they had.
void ctlScheduler::LoadResourceGroups(std::string_view strResourceGroups) {
    if (strResourceGroups.empty()) {
        w_.sbSchedule.visible = false;
        platform_.msgBox(kNoGroupsMessage);
        return;
    }
    // Every row is parsed before the group list is touched: a string that fails
    // leaves the list and its selection as they were.
    parseCatalogue(strResourceGroups, GroupFields::Count, state_.arrResourceGroups);

    // One item per run of equal GroupId, in the order of the string. The list is
    // not emptied first, so a second assignment appends; only the first row of a
    // run counts for the flag. The walk raises nothing, so views into the table
    // stay valid until the selection below.
    const StringTable& groups = state_.arrResourceGroups;
    std::string_view lastGroupId;
    std::string_view defaultGroupName;
    for (int row = 0; row < groups.rows(); ++row) {
        const std::string_view groupId = groups.at(row, GroupFields::GroupId);
        if (groupId == lastGroupId) continue;
        const std::string_view groupName = groups.at(row, GroupFields::GroupName);
        w_.cmbResourceGroup.addItem(std::string(groupName));
        lastGroupId = groupId;
        // Of several flagged groups the last one wins.
        if (groups.at(row, GroupFields::DefaultFlag) == "Y") defaultGroupName = groupName;
    }

    // Selecting runs the list's click handling before the setter returns, and
    // that may re-enter the control and replace the table: the name goes in as a
    // copy of its own.
    if (!defaultGroupName.empty()) w_.cmbResourceGroup.setText(std::string(defaultGroupName));
}

// Rebuilds the category lists of all ten columns from the rows of the current
// group: a category item each time the category changes from the row before, and
// under it an indented item each time the sub-type changes. Only runs are looked
// at, so a value that comes back after a gap is listed again. The resource lists
// are emptied too: they belonged to the categories that are gone.
void ctlScheduler::FillCategoryLists() {
    for (int i = 0; i < kColumns; ++i) {
        w_.cmbResourceCatType[i].clear();
        w_.cmbResource[i].clear();
        w_.cmbResourceValue[i].clear();
    }

    // A table never set fails here, after the lists were emptied.
    const StringTable& groups = state_.arrResourceGroups;
    const int rows = groups.walkRows();
    const std::string currentGroup = w_.cmbResourceGroup.text();
    auto addToAllColumns = [this](std::string_view item) {
        for (PickList& list : w_.cmbResourceCatType)
            list.addItem(std::string(item));
    };

    std::string_view lastCategory;
    std::string_view lastSubType;
    std::string subTypeItem;
    for (int row = 0; row < rows; ++row) {
        if (!StringTable::same(groups.at(row, GroupFields::GroupName), currentGroup)) continue;
        // An empty field lists nothing; only the last field of a string can be
        // empty, so this spares the last row's empty sub-type an item of blanks.
        const std::string_view category = groups.at(row, GroupFields::ResourceCatType);
        if (!category.empty() && !StringTable::same(category, lastCategory)) {
            addToAllColumns(category);
            lastCategory = category;
            lastSubType = {};
        }
        const std::string_view subType = groups.at(row, GroupFields::ResourceSubType);
        if (!subType.empty() && !StringTable::same(subType, lastSubType)) {
            subTypeItem.assign(kSubTypeIndent).append(subType);
            addToAllColumns(subTypeItem);
            lastSubType = subType;
        }
    }
}

} // namespace quorvane
