#include <QuorvaneScheduler/errors.h>
#include <QuorvaneScheduler/ole_date.h>

#include "runtime/arith.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane {

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
// 1 January 100 and 31 December 9999, the first and last day a date can hold.
constexpr std::int64_t kMinDay = -657434;
constexpr std::int64_t kMaxDay = 2958465;
constexpr std::int64_t kMinSecond = kMinDay * kSecondsPerDay;
constexpr std::int64_t kMaxSecond = kMaxDay * kSecondsPerDay + kSecondsPerDay - 1;
// Day number of 1 January 1970, the origin of the civil-calendar arithmetic below.
constexpr std::int64_t kUnixEpochDay = 25569;

// Proleptic Gregorian calendar in days since 1970-01-01 (H. Hinnant's algorithms).
std::int64_t daysFromCivil(std::int64_t y, std::int64_t m, std::int64_t d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yoe = y - era * 400;
    const std::int64_t doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

void civilFromDays(std::int64_t z, int& year, int& month, int& day) {
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const std::int64_t doe = z - era * 146097;
    const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const std::int64_t mp = (5 * doy + 2) / 153;
    const std::int64_t d = doy - (153 * mp + 2) / 5 + 1;
    const std::int64_t m = mp < 10 ? mp + 3 : mp - 9;
    year = static_cast<int>(yoe + era * 400 + (m <= 2));
    month = static_cast<int>(m);
    day = static_cast<int>(d);
}

std::int64_t dayNumber(std::int64_t y, std::int64_t m, std::int64_t d) {
    return daysFromCivil(y, m, d) + kUnixEpochDay;
}

int daysInMonth(int year, int month) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month == 2 && ((year % 4 == 0 && year % 100 != 0) || year % 400 == 0)) return 29;
    return kDays[month - 1];
}

// A date value as whole seconds on a straight time line, rounded to the nearest
// second. The stored value runs backwards within a day before the epoch (-1.25 is
// 6:00 AM on day -1), so the fraction is taken by magnitude.
std::int64_t linearSeconds(OleDate d) {
    const double v = d.value;
    if (!(v > static_cast<double>(kMinDay - 1) && v < static_cast<double>(kMaxDay + 1)))
        throw Overflow("date value out of range");
    const double whole = std::trunc(v);
    const double fraction = std::fabs(v - whole);
    const auto secondOfDay = static_cast<std::int64_t>(std::floor(fraction * kSecondsPerDay + 0.5));
    const std::int64_t s = static_cast<std::int64_t>(whole) * kSecondsPerDay + secondOfDay;
    // Rounding may carry the last representable second past 31 December 9999.
    return s > kMaxSecond ? kMaxSecond : s;
}

// The stored value of a point on the straight time line; nothing when the day
// lies outside the years 100 to 9999.
std::optional<OleDate> encodeSeconds(std::int64_t s) {
    if (s < kMinSecond || s > kMaxSecond) return std::nullopt;
    const std::int64_t day = floorDiv(s, kSecondsPerDay);
    const double time = static_cast<double>(s - day * kSecondsPerDay) / kSecondsPerDay;
    const double whole = static_cast<double>(day);
    return OleDate(day >= 0 ? whole + time : whole - time);
}

OleDate encodeOrFail(std::int64_t s) {
    if (auto d = encodeSeconds(s)) return *d;
    throw InvalidProcedureCall("date out of range");
}

// Fields of DateSerial and TimeSerial are 16-bit on the platform.
void checkField(int v) {
    if (v < -32768 || v > 32767) throw Overflow("date field out of range");
}

// The day number of a DateSerial: months and days outside their range roll into
// the neighbouring months and years; years 0-99 are read as two-digit years.
std::int64_t serialDay(int year, int month, int day) {
    checkField(year);
    checkField(month);
    checkField(day);
    std::int64_t y = year;
    if (y >= 0 && y <= 29)
        y += 2000;
    else if (y >= 30 && y <= 99)
        y += 1900;
    const std::int64_t months = y * 12 + (month - 1);
    const std::int64_t firstOfMonth =
        dayNumber(floorDiv(months, 12), months - floorDiv(months, 12) * 12 + 1, 1);
    return firstOfMonth + (day - 1);
}

std::int64_t serialSeconds(int hour, int minute, int second) {
    checkField(hour);
    checkField(minute);
    checkField(second);
    return std::int64_t{hour} * 3600 + std::int64_t{minute} * 60 + second;
}

std::string twoDigits(int n) {
    std::string s(2, '0');
    s[0] = static_cast<char>('0' + n / 10 % 10);
    s[1] = static_cast<char>('0' + n % 10);
    return s;
}

std::string fourDigits(int n) { return twoDigits(n / 100) + twoDigits(n % 100); }

std::string dateText(const DateParts& p) {
    return std::to_string(p.month) + "/" + std::to_string(p.day) + "/" + fourDigits(p.year);
}

std::string longTimeText(const DateParts& p) {
    const int hour12 = p.hour % 12 == 0 ? 12 : p.hour % 12;
    return std::to_string(hour12) + ":" + twoDigits(p.minute) + ":" + twoDigits(p.second) +
           (p.hour < 12 ? " AM" : " PM");
}

// ---- parsing ----------------------------------------------------------------

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
char upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

struct Number {
    int value = 0;
    int digits = 0;
};

class DateScanner {
public:
    explicit DateScanner(std::string_view s) : s_(s) {}

    bool atEnd() const { return i_ >= s_.size(); }
    char peek(std::size_t ahead = 0) const { return i_ + ahead < s_.size() ? s_[i_ + ahead] : '\0'; }
    bool peekIsDigit() const { return !atEnd() && isDigit(s_[i_]); }
    std::size_t skipBlanks() {
        const std::size_t start = i_;
        while (!atEnd() && isBlank(s_[i_]))
            ++i_;
        return i_ - start;
    }
    std::size_t position() const { return i_; }
    void rewind(std::size_t position) { i_ = position; }
    bool accept(char c) {
        if (atEnd() || s_[i_] != c) return false;
        ++i_;
        return true;
    }
    // A run of at most four digits; a longer run is no part of a date.
    std::optional<Number> number() {
        Number n;
        while (!atEnd() && isDigit(s_[i_])) {
            if (++n.digits > 4) return std::nullopt;
            n.value = n.value * 10 + (s_[i_] - '0');
            ++i_;
        }
        if (n.digits == 0) return std::nullopt;
        return n;
    }
    // "AM" or "PM" in any case: 0 for AM, 1 for PM, nothing when neither follows.
    std::optional<int> meridiem() {
        const char a = upper(peek()), m = upper(peek(1));
        if ((a != 'A' && a != 'P') || m != 'M') return std::nullopt;
        const char after = peek(2);
        if (i_ + 2 < s_.size() && !isBlank(after)) return std::nullopt;
        i_ += 2;
        return a == 'P' ? 1 : 0;
    }

private:
    std::string_view s_;
    std::size_t i_ = 0;
};

std::optional<int> yearOf(Number n) {
    if (n.digits <= 2) return n.value < 30 ? 2000 + n.value : 1900 + n.value;
    if (n.value < 100) return std::nullopt;
    return n.value;
}

bool validDay(int year, int month, int day) {
    return month >= 1 && month <= 12 && day >= 1 && day <= daysInMonth(year, month);
}

// M/D/Y (or Y-M-D when the first number has three or more digits), the
// separator being "/" or "-". A day number that fits no month while the month
// number would fit as a day is read the other way round, as the platform does.
std::optional<std::int64_t> scanDate(DateScanner& in, Number first) {
    const char sep = in.peek();
    if (!in.accept('/') && !in.accept('-')) return std::nullopt;
    auto second = in.number();
    if (!second || !in.accept(sep)) return std::nullopt;
    auto third = in.number();
    if (!third) return std::nullopt;

    int year, month, day;
    if (first.digits >= 3) {
        if (first.value < 100) return std::nullopt;
        year = first.value, month = second->value, day = third->value;
    } else {
        auto y = yearOf(*third);
        if (!y) return std::nullopt;
        year = *y, month = first.value, day = second->value;
        if (month > 12 && day <= 12) std::swap(month, day);
    }
    if (!validDay(year, month, day)) return std::nullopt;
    return dayNumber(year, month, day);
}

// H:MM, H:MM:SS or H, each with an optional AM/PM; the bare hour needs the AM/PM.
std::optional<std::int64_t> scanTime(DateScanner& in, Number hour) {
    int minute = 0, second = 0;
    bool clock = false;
    if (in.accept(':')) {
        auto m = in.number();
        if (!m || m->digits > 2) return std::nullopt;
        minute = m->value;
        if (in.accept(':')) {
            auto s = in.number();
            if (!s || s->digits > 2) return std::nullopt;
            second = s->value;
        }
        clock = true;
    }
    if (hour.digits > 2 || minute > 59 || second > 59) return std::nullopt;

    int h = hour.value;
    const std::size_t beforeBlanks = in.position();
    in.skipBlanks();
    auto pm = in.meridiem();
    // Blanks not followed by AM/PM separate the time from what comes next.
    if (!pm) in.rewind(beforeBlanks);
    if (pm) {
        if (h > 12) return std::nullopt;
        h = h % 12 + (*pm ? 12 : 0);
    } else if (!clock || h > 23) {
        return std::nullopt;
    }
    return std::int64_t{h} * 3600 + minute * 60 + second;
}

std::optional<OleDate> scanDateText(std::string_view text) {
    DateScanner in(text);
    in.skipBlanks();
    std::optional<std::int64_t> day, time;
    while (!in.atEnd()) {
        // Date and time come apart by blanks; the time's own AM/PM has been read by scanTime.
        if ((day || time) && in.skipBlanks() == 0) return std::nullopt;
        if (in.atEnd()) break;
        auto first = in.number();
        if (!first) return std::nullopt;
        const char next = in.peek();
        if (next == '/' || next == '-') {
            if (day) return std::nullopt;
            day = scanDate(in, *first);
            if (!day) return std::nullopt;
        } else {
            if (time) return std::nullopt;
            time = scanTime(in, *first);
            if (!time) return std::nullopt;
        }
    }
    if (!day && !time) return std::nullopt;
    const std::int64_t seconds = time.value_or(0);
    if (!day) return OleDate(static_cast<double>(seconds) / kSecondsPerDay);
    return encodeSeconds(*day * kSecondsPerDay + seconds);
}

} // namespace

DateParts splitDate(OleDate d) {
    const std::int64_t s = linearSeconds(d);
    const std::int64_t day = floorDiv(s, kSecondsPerDay);
    const auto secondOfDay = static_cast<int>(s - day * kSecondsPerDay);
    DateParts p;
    civilFromDays(day - kUnixEpochDay, p.year, p.month, p.day);
    p.hour = secondOfDay / 3600;
    p.minute = secondOfDay / 60 % 60;
    p.second = secondOfDay % 60;
    return p;
}

OleDate makeDate(int year, int month, int day) {
    return encodeOrFail(serialDay(year, month, day) * kSecondsPerDay);
}

OleDate makeTime(int hour, int minute, int second) {
    return encodeOrFail(serialSeconds(hour, minute, second));
}

OleDate makeDateTime(int year, int month, int day, int hour, int minute, int second) {
    return encodeOrFail(serialDay(year, month, day) * kSecondsPerDay + serialSeconds(hour, minute, second));
}

OleDate datePart(OleDate d) {
    return OleDate(static_cast<double>(floorDiv(linearSeconds(d), kSecondsPerDay)));
}

OleDate timePart(OleDate d) {
    const std::int64_t s = linearSeconds(d);
    return OleDate(static_cast<double>(s - floorDiv(s, kSecondsPerDay) * kSecondsPerDay) / kSecondsPerDay);
}

int minuteOfDay(OleDate d) {
    const std::int64_t s = linearSeconds(d);
    return static_cast<int>((s - floorDiv(s, kSecondsPerDay) * kSecondsPerDay) / 60);
}

OleDate addDays(OleDate d, int days) {
    return encodeOrFail(linearSeconds(d) + std::int64_t{days} * kSecondsPerDay);
}

OleDate addMinutes(OleDate d, std::int64_t minutes) {
    // Far past the whole calendar; keeps the product below from overflowing.
    constexpr std::int64_t kLimit = (kMaxSecond - kMinSecond) / 60 + 1;
    if (minutes > kLimit || minutes < -kLimit) throw InvalidProcedureCall("date out of range");
    return encodeOrFail(linearSeconds(d) + minutes * 60);
}

std::int64_t minutesBetween(OleDate a, OleDate b) {
    return floorDiv(linearSeconds(b), 60) - floorDiv(linearSeconds(a), 60);
}

std::string generalDateText(OleDate d) {
    const DateParts p = splitDate(d);
    const bool noDate = p.year == 1899 && p.month == 12 && p.day == 30;
    const bool noTime = p.hour == 0 && p.minute == 0 && p.second == 0;
    if (noDate) return longTimeText(p);
    if (noTime) return dateText(p);
    return dateText(p) + " " + longTimeText(p);
}

std::string shortDateText(OleDate d) { return dateText(splitDate(d)); }

std::string shortTimeText(OleDate d) {
    const DateParts p = splitDate(d);
    return twoDigits(p.hour) + ":" + twoDigits(p.minute);
}

std::string mmddyyyyText(OleDate d) {
    const DateParts p = splitDate(d);
    return twoDigits(p.month) + "/" + twoDigits(p.day) + "/" + fourDigits(p.year);
}

std::string format00(std::int64_t n) {
    // Through the unsigned magnitude, so the most negative value has one too.
    const std::uint64_t magnitude = n < 0 ? 0 - static_cast<std::uint64_t>(n) : static_cast<std::uint64_t>(n);
    std::string digits = std::to_string(magnitude);
    if (digits.size() < 2) digits.insert(0, 1, '0');
    return n < 0 ? "-" + digits : digits;
}

OleDate parseDate(std::string_view text) {
    if (auto d = scanDateText(text)) return *d;
    throw TypeMismatch("not a date: \"" + std::string(text.substr(0, 64)) + "\"");
}

bool tryParseDate(std::string_view text, OleDate& out) {
    auto d = scanDateText(text);
    if (!d) return false;
    out = *d;
    return true;
}

} // namespace quorvane
