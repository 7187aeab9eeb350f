#pragma once
// Dates as the platform keeps them: days since 30 December 1899 as a double,
// the fraction being the time of day. Before the epoch the integer part still
// counts days and the fraction is measured forward from that day's midnight, so
// -1.25 is 29 December 1899, 6:00 AM.

#include <QuorvaneScheduler/export.h>

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

namespace quorvane {

// A date and time as the platform keeps it: days since 30 December 1899.
struct QUORVANE_EXPORT OleDate {
    // The days, the fraction being the time of day.
    double value = 0.0;

    constexpr OleDate() = default;
    // The date `v` days after the epoch.
    constexpr explicit OleDate(double v) : value(v) {}
    // Dates compare as their day counts.
    friend constexpr bool operator==(OleDate, OleDate) = default;
    friend constexpr auto operator<=>(OleDate a, OleDate b) { return a.value <=> b.value; }
};

// Calendar fields of a date, with the time rounded to the nearest second.
struct QUORVANE_EXPORT DateParts {
    int year = 1899; // the year, 100 to 9999
    int month = 12;  // the month, 1 to 12
    int day = 30;    // the day of the month
    int hour = 0;    // the hour, 0 to 23
    int minute = 0;  // the minute
    int second = 0;  // the second
};

// A value outside 1 January 100 .. 31 December 9999 (or NaN) is an Overflow,
// here and in every function below that reads a date.
QUORVANE_EXPORT DateParts splitDate(OleDate d);
// Builds a date from its fields; a field out of range is an Overflow or an
// InvalidProcedureCall, as the platform reports an impossible date.
// Like DateSerial/TimeSerial: fields past their range roll over (month 13 is
// January of the next year, day 0 the last day of the month before), years
// 0-29 and 30-99 are 2000-2029 and 1930-1999, a field outside the 16-bit range
// is an Overflow and a result outside the years 100..9999 InvalidProcedureCall.
QUORVANE_EXPORT OleDate makeDate(int year, int month, int day);
QUORVANE_EXPORT OleDate makeTime(int hour, int minute, int second);
QUORVANE_EXPORT OleDate makeDateTime(int year, int month, int day, int hour, int minute, int second);

QUORVANE_EXPORT OleDate datePart(OleDate d); // the day at midnight
QUORVANE_EXPORT OleDate timePart(OleDate d); // the time of day alone, on 30 December 1899
QUORVANE_EXPORT int minuteOfDay(OleDate d);  // 0..1439, from the rounded time of day
// Steps work on the value rounded to the second and keep the time of day across
// the epoch; a result outside the years 100..9999 is an InvalidProcedureCall.
QUORVANE_EXPORT OleDate addDays(OleDate d, int days);
QUORVANE_EXPORT OleDate addMinutes(OleDate d, std::int64_t minutes);
// Whole minutes from a to b, as the platform's DateDiff("n", a, b) counts them.
QUORVANE_EXPORT std::int64_t minutesBetween(OleDate a, OleDate b);

// The general date text: "1/15/2008 9:30:00 AM"; a value at midnight prints as the
// date alone ("1/15/2008"), a value with no date part as the time alone
// ("9:30:00 AM"), and 0 as "12:00:00 AM".
QUORVANE_EXPORT std::string generalDateText(OleDate d);
QUORVANE_EXPORT std::string shortDateText(OleDate d); // "Short Date": M/D/YYYY
QUORVANE_EXPORT std::string shortTimeText(OleDate d); // "Short Time": HH:MM on the 24-hour clock
QUORVANE_EXPORT std::string mmddyyyyText(OleDate d);  // the format "mm/dd/yyyy": 01/05/2008
QUORVANE_EXPORT std::string format00(std::int64_t n); // the number format "00": 7 -> "07", 123 -> "123"

// Reads a date text as the platform does: a date alone (M/D/YYYY, M/D/YY,
// YYYY-MM-DD), a time alone (H:MM, H:MM:SS, with or without AM/PM, or H AM),
// a date and a time in either order, with blanks around. A date without its year
// is rejected (there is no clock to take it from). Text that is no date fails
// with TypeMismatch.
QUORVANE_EXPORT OleDate parseDate(std::string_view text);
// Same, without throwing: false when the text is no date.
QUORVANE_EXPORT bool tryParseDate(std::string_view text, OleDate& out);

} // namespace quorvane
