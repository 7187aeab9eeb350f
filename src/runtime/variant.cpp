#include <QuorvaneScheduler/errors.h>
#include <QuorvaneScheduler/variant.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

namespace quorvane {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
char upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

std::string_view trimBlanks(std::string_view s) {
    while (!s.empty() && isBlank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back()))
        s.remove_suffix(1);
    return s;
}

[[noreturn]] void notANumber(std::string_view s) {
    throw TypeMismatch("\"" + std::string(s.substr(0, 64)) + "\" is not a number");
}

int hexDigit(char c) {
    if (isDigit(c)) return c - '0';
    c = upper(c);
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// "&H1F" and "&O17". As with the platform's literals, a value that fits in 16
// bits is read as a 16-bit two's complement number ("&HFFFF" is -1), anything
// wider as a 32-bit one; past 32 bits is an Overflow.
double radixNumber(std::string_view s, std::string_view whole) {
    const int radix = upper(s[1]) == 'H' ? 16 : 8;
    s.remove_prefix(2);
    if (s.empty()) notANumber(whole);
    std::uint64_t value = 0;
    for (char c : s) {
        const int digit = hexDigit(c);
        if (digit < 0 || digit >= radix) notANumber(whole);
        value = value * static_cast<std::uint64_t>(radix) + static_cast<std::uint64_t>(digit);
        if (value > 0xFFFFFFFFu)
            throw Overflow("\"" + std::string(whole.substr(0, 64)) + "\" is past 32 bits");
    }
    if (value <= 0xFFFFu)
        return value >= 0x8000u ? static_cast<double>(value) - 65536.0 : static_cast<double>(value);
    return value >= 0x80000000u ? static_cast<double>(value) - 4294967296.0 : static_cast<double>(value);
}

// Decimal text: optional sign, digits with optional thousands commas between them,
// optional fraction and exponent (E or D). The syntax is checked here so that the
// conversion proper only ever sees plain digits.
double decimalNumber(std::string_view s, std::string_view whole) {
    std::size_t i = 0;
    bool negative = false;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) negative = s[i++] == '-';

    std::string buffer;
    std::int64_t significantIntegerDigits = 0, leadingFractionZeros = 0;
    bool anyDigit = false, nonZero = false;
    while (i < s.size()) {
        if (isDigit(s[i])) {
            if (s[i] != '0') nonZero = true;
            if (nonZero) ++significantIntegerDigits;
            buffer += s[i++];
            anyDigit = true;
        } else if (s[i] == ',' && anyDigit && i + 1 < s.size() && isDigit(s[i + 1])) {
            ++i;
        } else {
            break;
        }
    }
    if (i < s.size() && s[i] == '.') {
        buffer += s[i++];
        while (i < s.size() && isDigit(s[i])) {
            if (s[i] != '0') nonZero = true;
            if (!nonZero) ++leadingFractionZeros;
            buffer += s[i++];
            anyDigit = true;
        }
    }
    if (!anyDigit) notANumber(whole);

    std::int64_t exponent = 0;
    if (i < s.size() && (upper(s[i]) == 'E' || upper(s[i]) == 'D')) {
        ++i;
        bool negativeExponent = false;
        if (i < s.size() && (s[i] == '+' || s[i] == '-')) negativeExponent = s[i++] == '-';
        if (i == s.size() || !isDigit(s[i])) notANumber(whole);
        // Saturate: any exponent this large already decides the outcome.
        while (i < s.size() && isDigit(s[i])) {
            if (exponent < 100000000) exponent = exponent * 10 + (s[i] - '0');
            ++i;
        }
        if (negativeExponent) exponent = -exponent;
    }
    if (i != s.size()) notANumber(whole);
    if (!nonZero) return 0.0;

    buffer += 'e';
    buffer += std::to_string(exponent);
    double value = 0.0;
    const auto [end, ec] = std::from_chars(buffer.data(), buffer.data() + buffer.size(), value);
    const std::int64_t magnitude =
        (significantIntegerDigits > 0 ? significantIntegerDigits : -leadingFractionZeros) + exponent;
    if (ec == std::errc::result_out_of_range) {
        if (magnitude > 0) throw Overflow("\"" + std::string(whole.substr(0, 64)) + "\" is past a Double");
        return 0.0;
    }
    if (ec != std::errc() || end != buffer.data() + buffer.size()) notANumber(whole);
    if (!std::isfinite(value))
        throw Overflow("\"" + std::string(whole.substr(0, 64)) + "\" is past a Double");
    return negative ? -value : value;
}

// Round half to even; the caller checks the range before any cast.
double roundHalfEven(double d) {
    const double lower = std::floor(d);
    const double diff = d - lower;
    if (diff > 0.5) return lower + 1.0;
    if (diff < 0.5) return lower;
    return std::fmod(lower, 2.0) == 0.0 ? lower : lower + 1.0;
}

template <typename Int> Int roundToInt(double d) {
    const char* kind = sizeof(Int) == 2 ? " does not fit a 16-bit integer" : " does not fit a 32-bit integer";
    if (std::isnan(d)) throw Overflow(std::string("NaN") + kind);
    const double r = roundHalfEven(d);
    if (!(r >= static_cast<double>(std::numeric_limits<Int>::min()) &&
          r <= static_cast<double>(std::numeric_limits<Int>::max())))
        throw Overflow(numberText(d) + kind);
    return static_cast<Int>(r);
}

// Lays out a number given in scientific form by to_chars ("-1.2345e+04") as the
// platform prints it: trailing zeros dropped, plain digits for exponents from -5
// up to below `precision`, otherwise mantissa and a signed two-digit exponent.
std::string layoutNumber(std::string_view scientific, int precision) {
    std::string out;
    std::size_t i = 0;
    if (i < scientific.size() && scientific[i] == '-') {
        out += '-';
        ++i;
    }
    std::string digits;
    for (; i < scientific.size() && scientific[i] != 'e'; ++i)
        if (isDigit(scientific[i])) digits += scientific[i];
    int exponent = 0;
    if (i < scientific.size())
        std::from_chars(scientific.data() + i + 1 + (scientific[i + 1] == '+'),
                        scientific.data() + scientific.size(), exponent);
    while (digits.size() > 1 && digits.back() == '0')
        digits.pop_back();
    if (digits.empty()) digits = "0";

    if (exponent >= precision || exponent < -5) {
        out += digits[0];
        if (digits.size() > 1) out += "." + digits.substr(1);
        out += exponent < 0 ? "E-" : "E+";
        const std::string e = std::to_string(exponent < 0 ? -exponent : exponent);
        out += (e.size() < 2 ? "0" : "") + e;
    } else if (exponent >= 0) {
        const auto integerDigits = static_cast<std::size_t>(exponent) + 1;
        if (digits.size() <= integerDigits) {
            out += digits + std::string(integerDigits - digits.size(), '0');
        } else {
            out += digits.substr(0, integerDigits) + "." + digits.substr(integerDigits);
        }
    } else {
        out += "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
    }
    return out;
}

template <typename Real> std::string realText(Real r, int precision) {
    if (std::isnan(r)) return "-1.#IND";
    if (std::isinf(r)) return r < 0 ? "-1.#INF" : "1.#INF";
    if (r == 0) return "0";
    char buffer[64];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, r, std::chars_format::scientific, precision - 1);
    return layoutNumber(std::string_view(buffer, static_cast<std::size_t>(result.ptr - buffer)), precision);
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (upper(a[i]) != upper(b[i])) return false;
    return true;
}

// The platform keeps dates between 1 January 100 and 31 December 9999.
OleDate checkedDate(double d) {
    if (!(d > -657435.0 && d < 2958466.0)) throw Overflow("date value out of range");
    return OleDate(d);
}

template <class... Fs> struct Overloaded : Fs... { using Fs::operator()...; };
template <class... Fs> Overloaded(Fs...) -> Overloaded<Fs...>;

} // namespace

std::int16_t toInteger(double d) { return roundToInt<std::int16_t>(d); }
std::int32_t toLong(double d) { return roundToInt<std::int32_t>(d); }

double textToNumber(std::string_view s) {
    const std::string_view t = trimBlanks(s);
    if (t.size() >= 2 && t[0] == '&' && (upper(t[1]) == 'H' || upper(t[1]) == 'O')) return radixNumber(t, s);
    return decimalNumber(t, s);
}

std::int16_t textToInteger(std::string_view s) { return toInteger(textToNumber(s)); }
std::int32_t textToLong(std::string_view s) { return toLong(textToNumber(s)); }

std::string numberText(double d) { return realText(d, 15); }
std::string singleText(float f) { return realText(f, 7); }

std::string Variant::toString() const {
    return std::visit(
        Overloaded{
            [](std::monostate) -> std::string { return {}; },
            [](const std::string& s) { return s; },
            [](std::int16_t i) { return std::to_string(i); },
            [](std::int32_t l) { return std::to_string(l); },
            [](float f) { return singleText(f); },
            [](double d) { return numberText(d); },
            [](bool b) -> std::string { return b ? "True" : "False"; },
            [](OleDate d) { return generalDateText(d); },
            [](const ObjectRef&) -> std::string { throw TypeMismatch("an object where a text belongs"); },
        },
        v_);
}

double Variant::toDouble() const {
    return std::visit(
        Overloaded{
            [](std::monostate) { return 0.0; },
            [](const std::string& s) { return textToNumber(s); },
            [](std::int16_t i) { return static_cast<double>(i); },
            [](std::int32_t l) { return static_cast<double>(l); },
            [](float f) { return static_cast<double>(f); },
            [](double d) { return d; },
            [](bool b) { return b ? -1.0 : 0.0; },
            [](OleDate d) { return d.value; },
            [](const ObjectRef&) -> double { throw TypeMismatch("an object where a number belongs"); },
        },
        v_);
}

std::int16_t Variant::toInteger() const {
    if (const auto* i = std::get_if<std::int16_t>(&v_)) return *i;
    return quorvane::toInteger(toDouble());
}

std::int32_t Variant::toLong() const {
    if (const auto* l = std::get_if<std::int32_t>(&v_)) return *l;
    return quorvane::toLong(toDouble());
}

float Variant::toSingle() const {
    if (const auto* f = std::get_if<float>(&v_)) return *f;
    return quorvane::toSingle(toDouble());
}

bool Variant::toBoolean() const {
    if (const auto* s = std::get_if<std::string>(&v_)) {
        const std::string_view t = trimBlanks(*s);
        if (equalsIgnoringCase(t, "True")) return true;
        if (equalsIgnoringCase(t, "False")) return false;
        return textToNumber(*s) != 0.0;
    }
    if (const auto* b = std::get_if<bool>(&v_)) return *b;
    return toDouble() != 0.0;
}

OleDate Variant::toDate() const {
    if (const auto* d = std::get_if<OleDate>(&v_)) return *d;
    if (const auto* s = std::get_if<std::string>(&v_)) {
        OleDate parsed;
        if (tryParseDate(*s, parsed)) return parsed;
        return checkedDate(textToNumber(*s));
    }
    return checkedDate(toDouble());
}

ObjectRef Variant::toObject() const {
    if (const auto* o = std::get_if<ObjectRef>(&v_)) return *o;
    if (isEmpty()) return nullptr;
    throw TypeMismatch(toString().substr(0, 64) + " where an object belongs");
}

float toSingle(double d) {
    if (std::isnan(d) || std::fabs(d) > static_cast<double>(std::numeric_limits<float>::max()))
        throw Overflow(numberText(d) + " does not fit a Single");
    return static_cast<float>(d);
}

} // namespace quorvane
