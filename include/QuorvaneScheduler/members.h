#pragma once
// The members of the control reachable by name, as a scripting host or a test
// container sees them: each with its kind, its parameters with their declared
// types and passing, and its result. A family of ten members is ten names mapped
// to one function with the column bound in.

#include <QuorvaneScheduler/export.h>
#include <QuorvaneScheduler/variant.h>

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

class ctlScheduler;

// A property's read, a property's write, or a method.
enum class MemberKind { PropertyGet, PropertyLet, Method };

// Declared types of parameters and results. Variant takes any value as it is;
// None is a method without result.
enum class DeclaredType {
    None,
    String,
    Integer,
    Long,
    Single,
    Double,
    Boolean,
    Date,
    Variant,
    Object,
    Appointment
};

// A parameter as the interface declares it.
struct QUORVANE_EXPORT MemberParam {
    std::string name;                          // as the interface spells it
    DeclaredType type = DeclaredType::Variant; // what an argument is converted to
    bool byRef = false;                        // whether the member's change goes back to the caller
};

// A member as a host by name calls it.
struct QUORVANE_EXPORT MemberInfo {
    std::string name;                     // as the interface spells it
    MemberKind kind = MemberKind::Method; // which side of a property, or a method
    // For a property: its index parameters (none, or the time slot of the
    // TimeSlotSelected family); the value of a write comes last in `args`.
    std::vector<MemberParam> params;
    DeclaredType result = DeclaredType::None; // the type of what it gives
    // Runs the member on arguments already converted to their declared types;
    // by-reference arguments are left changed in `args`.
    std::function<Variant(ctlScheduler&, std::span<Variant> args)> invoke;
};

// Every member, readers and writers of one property as separate rows.
QUORVANE_EXPORT const std::vector<MemberInfo>& memberTable();
QUORVANE_EXPORT const MemberInfo* findMember(std::string_view name, MemberKind kind);
QUORVANE_EXPORT bool memberExists(std::string_view name);

// Converts a value to a declared type as the platform converts a Variant:
// TypeMismatch for a text that is no number, Overflow past the range.
QUORVANE_EXPORT Variant convertTo(const Variant& value, DeclaredType type);

// Calls a member by name: converts the arguments, runs it, and writes back into
// `args` each by-reference argument the member changed. The wrong number of
// arguments is an InvalidProcedureCall.
QUORVANE_EXPORT Variant invokeMember(ctlScheduler& control, const MemberInfo& member, std::vector<Variant>& args);

} // namespace quorvane
