#pragma once
// Run-time errors. A failed call reaches the host as one of these exceptions,
// thrown at the step where the call fails; nothing inside the control catches it.

#include <QuorvaneScheduler/export.h>

#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace quorvane {

// The kinds of run-time error the control raises, as the platform numbers them.
enum class ErrorKind {
    TypeMismatch,
    Overflow,
    SubscriptOutOfRange,
    DivisionByZero,
    InvalidProcedureCall,
    InvalidPropertyValue,
    ObjectRequired,
};

// The kind's name as the console prints it: "TypeMismatch", "Overflow", ...
QUORVANE_EXPORT std::string_view errorKindName(ErrorKind kind) noexcept;

// what() reads "MEMBER: reason" once the member whose call failed is known
// (a call by name through the member table names it), and the reason alone
// before that: `GetDayView: "11" names no column`.
class QUORVANE_EXPORT RuntimeError : public std::exception {
public:
    // An error of a kind, for a reason.
    RuntimeError(ErrorKind kind, std::string reason)
        : kind_(kind), reason_(std::move(reason)), what_(reason_) {}
    // The kind, the reason, and the member whose call failed (empty until known).
    ErrorKind kind() const noexcept { return kind_; }
    const std::string& reason() const noexcept { return reason_; }
    const std::string& member() const noexcept { return member_; }
    // A call that fails inside another names the outer member: the last to be set.
    void setMember(std::string member) {
        member_ = std::move(member);
        what_ = member_ + ": " + reason_;
    }
    // "MEMBER: reason", or the reason alone.
    const char* what() const noexcept override { return what_.c_str(); }

private:
    ErrorKind kind_;
    std::string reason_;
    std::string member_;
    std::string what_;
};

// One type per kind, so a host can catch the one it expects.
template <ErrorKind K> class QUORVANE_EXPORT RuntimeErrorOf : public RuntimeError {
public:
    // An error of this kind; the kind's name is the default reason.
    explicit RuntimeErrorOf(const std::string& what = std::string(errorKindName(K)))
        : RuntimeError(K, what) {}
};

// The error of each kind, by name.
using TypeMismatch = RuntimeErrorOf<ErrorKind::TypeMismatch>;
using Overflow = RuntimeErrorOf<ErrorKind::Overflow>;
using SubscriptOutOfRange = RuntimeErrorOf<ErrorKind::SubscriptOutOfRange>;
using DivisionByZero = RuntimeErrorOf<ErrorKind::DivisionByZero>;
using InvalidProcedureCall = RuntimeErrorOf<ErrorKind::InvalidProcedureCall>;
using InvalidPropertyValue = RuntimeErrorOf<ErrorKind::InvalidPropertyValue>;
using ObjectRequired = RuntimeErrorOf<ErrorKind::ObjectRequired>;

} // namespace quorvane
