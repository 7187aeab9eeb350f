#pragma once
// The platform's Variant: what crosses the boundary by name (events heard by
// name, the console's arguments) and what a member declared as Variant takes.

#include <QuorvaneScheduler/export.h>
#include <QuorvaneScheduler/ole_date.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

namespace quorvane {

// Base of the objects a Variant can carry: day views and appointments.
class QUORVANE_EXPORT Object {
public:
    virtual ~Object() = default;
};
// A shared reference to an object; empty for Nothing.
using ObjectRef = std::shared_ptr<Object>;

// What a Variant holds, in the order of the alternatives.
enum class VariantType { Empty, String, Integer, Long, Single, Double, Boolean, Date, Object };

// A value of any of the platform's types, as members take and give them.
class QUORVANE_EXPORT Variant {
public:
    // A value of each type the platform has; the default is Empty.
    Variant() = default;
    Variant(std::string s) : v_(std::move(s)) {}
    Variant(const char* s) : v_(std::string(s)) {}
    Variant(std::string_view s) : v_(std::string(s)) {}
    Variant(std::int16_t i) : v_(i) {}
    Variant(std::int32_t l) : v_(l) {}
    Variant(float f) : v_(f) {}
    Variant(double d) : v_(d) {}
    Variant(bool b) : v_(b) {}
    Variant(OleDate d) : v_(d) {}
    Variant(ObjectRef o) : v_(std::move(o)) {}

    // The type of the value held.
    VariantType type() const noexcept { return static_cast<VariantType>(v_.index()); }
    // Whether nothing was ever assigned.
    bool isEmpty() const noexcept { return type() == VariantType::Empty; }
    // An object-typed Variant that holds no object is the platform's Nothing.
    bool isNothing() const noexcept { return type() == VariantType::Object && !std::get<ObjectRef>(v_); }

    // Conversions as the platform makes them. Each throws the platform's error:
    // TypeMismatch for a text that is no number or date, Overflow past the
    // range of the target type. A fraction becomes an integer by rounding half
    // to even (2.5 -> 2, 3.5 -> 4).
    std::string toString() const;   // numbers as the platform prints them, dates as the general date text,
                                    // Booleans as "True"/"False"
    std::int16_t toInteger() const; // 16-bit
    std::int32_t toLong() const;    // 32-bit
    float toSingle() const;
    double toDouble() const;
    bool toBoolean() const;     // numbers: nonzero is True; text "True"/"False" (any case) or a number
    OleDate toDate() const;     // numbers are days; text is parsed as a date
    ObjectRef toObject() const; // Empty is Nothing; anything else that is no object: TypeMismatch

    // Direct access when the type is known.
    const std::string* asString() const noexcept { return std::get_if<std::string>(&v_); }

    // Equal in type and value.
    friend bool operator==(const Variant&, const Variant&) = default;

private:
    std::variant<std::monostate, std::string, std::int16_t, std::int32_t, float, double, bool, OleDate,
                 ObjectRef>
        v_;
};

// Platform number conversions used directly by the control.
QUORVANE_EXPORT std::int16_t toInteger(double d); // round half to even; Overflow outside -32768..32767
QUORVANE_EXPORT std::int32_t toLong(double d);    // round half to even; Overflow outside the 32-bit range
QUORVANE_EXPORT float toSingle(double d);         // Overflow past the range of a Single, and for NaN
// Blanks around allowed, thousands commas between digits, an E or D exponent,
// "&H"/"&O" forms (a value that fits 16 bits is 16-bit two's complement, "&HFFFF" is -1).
// TypeMismatch for no number, Overflow past the range of a Double.
QUORVANE_EXPORT double textToNumber(std::string_view s);
QUORVANE_EXPORT std::int16_t textToInteger(std::string_view s);
QUORVANE_EXPORT std::int32_t textToLong(std::string_view s);
// Numbers as text, as the platform's Str/CStr print them: 1.5 -> "1.5", 14900 -> "14900",
// Single with at most 7 significant digits, Double with at most 15, no exponent for
// ordinary magnitudes.
QUORVANE_EXPORT std::string numberText(double d);
QUORVANE_EXPORT std::string singleText(float f);

} // namespace quorvane
