#pragma once
// The grammar shared by the four catalogue strings, and the field numbers of the
// tables they become. A string is a list of records separated by "~~", a record a
// list of fields separated by "~". There is no escape and no quoting, and nothing
// is trimmed or converted: a field is stored as the text it is.

#include <QuorvaneScheduler/string_table.h>

#include <string_view>

namespace quorvane::catalogue {

inline constexpr std::string_view kRecordSeparator = "~~";
inline constexpr char kFieldSeparator = '~';
// Rows are counted in a 16-bit signed counter, so a string holds at most this
// many records.
inline constexpr int kMaxRecords = 32767;

// arrResourceGroups: one row for each resource in each group.
struct GroupFields {
    enum : int {
        GroupId,
        GroupName,
        DefaultFlag,
        ResourceValue,
        ResourceName,
        ResourceCatType,
        ResourceSubType,
        Count
    };
};

// arrResourceGroupDefaults: one row for each column a group pre-fills.
struct DefaultFields {
    enum : int { GroupId, GroupName, ResourceValue, ColumnNumber, Count };
};

// arrResourceGroupViews: one row per group.
struct ViewFields {
    enum : int { GroupId, GroupName, ColumnsShown, ColumnsTotal, Count };
};

// arrResources: four fields whose meaning is the host's.
inline constexpr int kResourceFields = 4;

// Rebuilds `table` from `text`, one row per record in the order of the string,
// keeping fields 0 to fields - 1 of each record and dropping any surplus.
//
// The split runs in two passes: the whole string on "~~" from the left, then each
// record on "~". Two adjacent tildes therefore always end a record, and of three
// in a row the third opens the next record with an empty first field.
//
// Fails, leaving `table` exactly as it was, when the text holds no record (an
// empty string: SubscriptOutOfRange, since a table of no rows cannot be sized) or
// more records than a row counter holds (Overflow). Fails with
// SubscriptOutOfRange at the first field a record lacks; by then the table has its
// new size, everything before the fault is filled, and the rest are empty.
QUORVANE_EXPORT void parseCatalogue(std::string_view text, int fields, StringTable& table);

} // namespace quorvane::catalogue
