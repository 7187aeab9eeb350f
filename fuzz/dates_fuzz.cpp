// libFuzzer target: date texts and the Variant conversions.
//
// Each line of the input is one text. It goes through both date parsers and
// every conversion of a Variant holding it; its first eight bytes, read as a
// double, go through the printing of dates and numbers and the conversions of a
// Variant holding a number of each type. Checks besides the rule of every target:
//   - parseDate fails, with TypeMismatch, exactly when tryParseDate returns
//     false, and otherwise gives the same value;
//   - a parsed date prints (generalDateText) and the print parses back to the
//     same value; any date that prints at all parses back to a value that prints
//     the same, and its time text (timeTextOf) parses back to its minute of the day;
//   - a Variant holding a date text converts to that date;
//   - a number prints as a text that reads back as a number printing the same.

#include "fuzz_support.h"

#include <QuorvaneScheduler/members.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace quorvane::fuzz {
namespace {

// Lines per input: more only repeat what the first ones did.
constexpr int kMaxLines = 8;

std::string describe(OleDate d) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.17g", d.value);
    return buffer;
}

// Every conversion a Variant offers, and every declared type a member argument
// is converted to; each one returns or fails with a run-time error.
void convertAll(const Variant& v) {
    attempt([&] { (void)v.toString(); });
    attempt([&] { (void)v.toInteger(); });
    attempt([&] { (void)v.toLong(); });
    attempt([&] { (void)v.toSingle(); });
    attempt([&] { (void)v.toDouble(); });
    attempt([&] { (void)v.toBoolean(); });
    attempt([&] { (void)v.toDate(); });
    attempt([&] { (void)v.toObject(); });
    for (const DeclaredType t : {DeclaredType::String, DeclaredType::Integer, DeclaredType::Long,
                                 DeclaredType::Single, DeclaredType::Double, DeclaredType::Boolean,
                                 DeclaredType::Date, DeclaredType::Object, DeclaredType::Appointment})
        attempt([&] { (void)convertTo(v, t); });
}

void checkParsers(std::string_view text) {
    OleDate tried;
    const bool ok = tryParseDate(text, tried);
    OleDate parsed;
    bool threw = false;
    try {
        parsed = parseDate(text);
    } catch (const TypeMismatch&) {
        threw = true;
    } catch (const RuntimeError& e) {
        fault("parseDate failed with " + std::string(errorKindName(e.kind())));
    }
    if (threw == ok)
        fault(std::string("the parsers disagree whether \"") + std::string(text) + "\" is a date");
    if (!ok) return;
    if (!(parsed == tried))
        fault("the parsers read \"" + std::string(text) + "\" as " + describe(parsed) + " and " +
              describe(tried));

    std::string printed;
    if (!attempt([&] { printed = generalDateText(parsed); }))
        fault("a parsed date does not print: " + describe(parsed));
    OleDate back;
    if (!tryParseDate(printed, back) || !(back == parsed))
        fault("\"" + printed + "\" does not parse back to " + describe(parsed));
    // A Variant holding the text converts through the same reading.
    if (!(Variant(std::string(text)).toDate() == parsed))
        fault("a Variant holding \"" + std::string(text) + "\" converts to another date");
}

// A value that prints parses back to a value that prints the same: the print
// keeps the whole second, and a later print of the parsed value must not drift.
void checkPrintedDate(OleDate d) {
    std::string printed;
    if (!attempt([&] { printed = generalDateText(d); })) return;
    OleDate back;
    if (!tryParseDate(printed, back))
        fault("\"" + printed + "\", the print of " + describe(d) + ", is no date");
    std::string again;
    if (!attempt([&] { again = generalDateText(back); }) || again != printed)
        fault("\"" + printed + "\" parses to a value that prints \"" + again + "\"");

    // What painting relies on: the time text reads back as the same time of day.
    const std::string time = timeTextOf(d);
    OleDate t;
    if (!tryParseDate(time, t)) fault("the time text \"" + time + "\" of " + describe(d) + " is no date");
    if (minuteOfDay(t) != minuteOfDay(d))
        fault("the time text \"" + time + "\" of " + describe(d) + " is another minute of the day");

    attempt([&] { (void)shortDateText(d); });
    attempt([&] { (void)shortTimeText(d); });
    attempt([&] { (void)mmddyyyyText(d); });
    attempt([&] { (void)datePart(d); });
    attempt([&] { (void)timePart(d); });
}

// The print of a number reads back as a number that prints the same. Past
// about 1E+300 the fifteen digits may round above the largest Double, which
// reads back as an Overflow, as on the platform.
void checkPrintedNumber(double d) {
    if (!std::isfinite(d)) return;
    const std::string printed = numberText(d);
    double back = 0;
    if (!attempt([&] { back = textToNumber(printed); })) {
        if (std::fabs(d) < 1e300) fault("\"" + printed + "\", the print of a number, does not read back");
        return;
    }
    if (numberText(back) != printed)
        fault("\"" + printed + "\" reads back as a number that prints \"" + numberText(back) + "\"");
}

void checkLine(std::string_view text) {
    checkParsers(text);
    convertAll(Variant(std::string(text)));
    double number = 0;
    if (attempt([&] { number = textToNumber(text); })) checkPrintedNumber(number);
    attempt([&] { (void)textToInteger(text); });
    attempt([&] { (void)textToLong(text); });

    if (text.size() < sizeof(double)) return;
    double d;
    std::memcpy(&d, text.data(), sizeof d);
    checkPrintedDate(OleDate(d));
    checkPrintedNumber(d);
    convertAll(Variant(d));
    convertAll(Variant(OleDate(d)));
    convertAll(Variant(static_cast<float>(d)));
    std::int32_t i;
    std::memcpy(&i, text.data(), sizeof i);
    convertAll(Variant(i));
    convertAll(Variant(static_cast<std::int16_t>(i)));
    convertAll(Variant((i & 1) != 0));
    attempt([&] { (void)toInteger(d); });
    attempt([&] { (void)toLong(d); });
    (void)format00(static_cast<std::int64_t>(i) * i * (i < 0 ? -1 : 1));

    // Date arithmetic and building with the same bytes as fields and steps.
    std::int16_t f[4];
    std::memcpy(f, text.data(), sizeof f);
    attempt([&] { checkPrintedDate(makeDate(f[0], f[1], f[2])); });
    attempt([&] { checkPrintedDate(makeDateTime(f[0], f[1], f[2], f[3], f[1], f[2])); });
    attempt([&] { checkPrintedDate(addDays(OleDate(d), i)); });
    attempt([&] { checkPrintedDate(addMinutes(OleDate(d), std::int64_t{i} * f[3])); });
    attempt([&] { (void)minutesBetween(OleDate(d), OleDate(f[0])); });
}

} // namespace
} // namespace quorvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quorvane::fuzz;
    const auto text = inputOf(data, size);
    if (!text) return 0;
    std::string_view input = *text;
    for (int n = 0; n < kMaxLines && !input.empty(); ++n) {
        const std::size_t end = input.find('\n');
        checkLine(input.substr(0, end));
        input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
    }
    return 0;
}
