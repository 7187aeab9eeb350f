// Templates: the host's coloured blocks of time, kept per column, painted on the
// day view's slots, and painted again after anything that loses the colours.
// Also the colour strings that every colour from the host arrives as.

#include <QuorvaneScheduler/control_internals.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace quorvane {

namespace {

// A wipe paints twice. On a view that simply overwrites colours the first paint
// leaves nothing to see, but it is part of the wipe all the same.
constexpr const char* kWipeFirstColour = "#000001";
// The colour of a grid with no template on it.
constexpr const char* kBareGridColour = "#C0C000";
// Prints as a date alone, 8 characters, so its time of day is 12:00:00 AM, and
// one minute before it is 11:59:00 PM: a wipe covers the whole day.
constexpr const char* kWipeDate = "1/1/1900 12:00:00 AM";

enum TemplateField { kStart = 0, kEnd = 1, kDescription = 2, kColour = 3, kResourceNumber = 4 };

// The time of day that a paint uses, cut from the value's default text. A text
// of 8 characters or fewer is a date at midnight. The last 11 characters hold
// the time, with a leading blank for a one-digit hour; a date-only text of 9 or
// 10 characters is taken whole and reads back as that date at midnight, which is
// the same time of day.
OleDate paintTime(OleDate d) { return parseDate(timeTextOf(d)); }

// Two characters from `first`, read as hexadecimal. A part cut short to one digit
// still converts; a missing one does not, which is what makes a colour of fewer
// than five digits fail.
std::int32_t colourPart(const std::string& digits, std::size_t first) {
    return textToInteger("&H" + (first < digits.size() ? digits.substr(first, 2) : std::string()));
}

} // namespace

// Only one "#" goes, and it goes from the caller's string before the digits are
// read, so a colour that then fails to convert has lost it all the same.
std::int32_t ctlScheduler::vbRGBVal(std::string& WebRGBString) {
    if (!WebRGBString.empty() && WebRGBString.front() == '#') WebRGBString.erase(0, 1);
    const std::int32_t red = colourPart(WebRGBString, 0);
    const std::int32_t green = colourPart(WebRGBString, 2);
    const std::int32_t blue = colourPart(WebRGBString, 4);
    // The text runs red, green, blue; the value keeps red in its low byte.
    return red + 256 * green + 65536 * blue;
}

// The steps up to the column lookup act on the caller's own variables, so a
// host that passes a bad column number still finds its colour without the "#"
// and its end one minute earlier.
ctlScheduler::TemplatePaint ctlScheduler::prepareTemplatePaint(const OleDate& dtStartDateTime,
                                                               OleDate& dtEndDateTime,
                                                               std::string& strColor) {
    const std::int32_t colour = vbRGBVal(strColor);
    // The view colours both ends of the range, so a block up to 10:00 would
    // otherwise take the 10:00 slot as well.
    dtEndDateTime = addMinutes(dtEndDateTime, -1);
    return {paintTime(dtStartDateTime), paintTime(dtEndDateTime), colour};
}

void ctlScheduler::AddExistingTemplate(const OleDate& dtStartDateTime, OleDate& dtEndDateTime,
                                       const std::string& /*strDescription*/, std::string& strColor,
                                       const std::string& strResourceNumber) {
    const TemplatePaint paint = prepareTemplatePaint(dtStartDateTime, dtEndDateTime, strColor);
    PVDayView& view = *GetDayView(strResourceNumber);
    // Painted on the 5-minute grid, so a block keeps its own edges whatever slot
    // length the column shows; the list then puts the column's length back.
    view.setIncrements(4);
    view.setTimeSlotColor(paint.start, paint.end, paint.colour);
    SetDayViewIncrement(w_.cmbDayIncrement[static_cast<std::size_t>(view.Index())], view);
}

void ctlScheduler::AddResourceTemplate(OleDate dtStartDateTime, OleDate dtEndDateTime,
                                       const std::string& strDescription, const std::string& strColor,
                                       const std::string& strResourceNumber, const std::string& strAddNow) {
    const std::size_t column = static_cast<std::size_t>(GetDayView(strResourceNumber)->Index());
    const int row = state_.intTemplateCount[column];
    // Both limits are checked before anything is written: a refused template
    // leaves the column's rows and count as they were.
    if (row < 0 || row >= kTemplatesPerColumn)
        throw SubscriptOutOfRange("column " + std::to_string(column + 1) + " holds " +
                                  std::to_string(kTemplatesPerColumn) + " templates already");
    const auto r = static_cast<std::size_t>(row);
    auto& fields = (*state_.varResourceTemplates)[column];
    fields[kStart][r] = Variant(dtStartDateTime);
    fields[kEnd][r] = Variant(dtEndDateTime);
    fields[kDescription][r] = Variant(strDescription);
    fields[kColour][r] = Variant(strColor);
    fields[kResourceNumber][r] = Variant(strResourceNumber);
    ++state_.intTemplateCount[column];
    // Stored and counted before the paint: a colour that does not convert fails
    // this call, and the template stays for every later replay to meet.
    if (strAddNow == "Y") {
        std::string colour = strColor;
        AddExistingTemplate(dtStartDateTime, dtEndDateTime, strDescription, colour, strResourceNumber);
    }
}

void ctlScheduler::wipeTemplates(int index) {
    columnIndex(index);
    const std::string number = std::to_string(index + 1);
    for (const char* wipeColour : {kWipeFirstColour, kBareGridColour}) {
        // Fresh values for each paint, since a paint moves its end back a minute.
        OleDate end = parseDate(kWipeDate);
        std::string colour = wipeColour;
        AddExistingTemplate(parseDate(kWipeDate), end, std::string(), colour, number);
    }
}

// The rows are painted in the order they arrived, so where blocks overlap the
// latest one shows, as it did when the host painted them. A stored colour that
// does not convert stops the replay there with the failure: the rows before it
// stand painted, the store is untouched, and the failure goes to whoever changed
// the slot length.
void ctlScheduler::replayTemplates(int index) {
    if (index < 0 || index >= kColumns) throw SubscriptOutOfRange();
    const auto column = static_cast<std::size_t>(index);
    const int count = std::min<int>(state_.intTemplateCount[column], kTemplatesPerColumn);
    wipeTemplates(index);
    const auto& fields = (*state_.varResourceTemplates)[column];
    for (int row = 0; row < count; ++row) {
        const auto r = static_cast<std::size_t>(row);
        // Copies: the paint changes its end and colour, and the store must not.
        const OleDate start = fields[kStart][r].toDate();
        OleDate end = fields[kEnd][r].toDate();
        std::string colour = fields[kColour][r].toString();
        AddExistingTemplate(start, end, fields[kDescription][r].toString(), colour,
                            fields[kResourceNumber][r].toString());
    }
}

std::string ctlScheduler::templateAt(int index, OleDate timeOfDay) const {
    if (index < 0 || index >= kColumns) return {};
    const auto column = static_cast<std::size_t>(index);
    const auto& fields = (*state_.varResourceTemplates)[column];
    const int minute = minuteOfDay(timeOfDay);
    for (int row = std::min<int>(state_.intTemplateCount[column], kTemplatesPerColumn) - 1; row >= 0; --row) {
        const auto r = static_cast<std::size_t>(row);
        const Variant& start = fields[kStart][r];
        const Variant& end = fields[kEnd][r];
        if (start.type() != VariantType::Date || end.type() != VariantType::Date) continue;
        const int from = minuteOfDay(start.toDate());
        const int to = minuteOfDay(end.toDate());
        // An end at midnight closes the day.
        if (from <= minute && minute < (to == 0 ? 24 * 60 : to)) return fields[kDescription][r].toString();
    }
    return {};
}

} // namespace quorvane
