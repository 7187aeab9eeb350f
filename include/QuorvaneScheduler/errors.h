#pragma once
// Run-time errors. A failed call reaches the host as one of these exceptions,
// thrown at the step where the call fails; nothing inside the control catches it.

#include <stdexcept>
#include <string>
#include <string_view>

namespace quorvane {

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
std::string_view errorKindName(ErrorKind kind) noexcept;

class RuntimeError : public std::runtime_error {
public:
    RuntimeError(ErrorKind kind, const std::string& what) : std::runtime_error(what), kind_(kind) {}
    ErrorKind kind() const noexcept { return kind_; }

private:
    ErrorKind kind_;
};

// One type per kind, so a host can catch the one it expects.
template <ErrorKind K> class RuntimeErrorOf : public RuntimeError {
public:
    explicit RuntimeErrorOf(const std::string& what = std::string(errorKindName(K)))
        : RuntimeError(K, what) {}
};

using TypeMismatch = RuntimeErrorOf<ErrorKind::TypeMismatch>;
using Overflow = RuntimeErrorOf<ErrorKind::Overflow>;
using SubscriptOutOfRange = RuntimeErrorOf<ErrorKind::SubscriptOutOfRange>;
using DivisionByZero = RuntimeErrorOf<ErrorKind::DivisionByZero>;
using InvalidProcedureCall = RuntimeErrorOf<ErrorKind::InvalidProcedureCall>;
using InvalidPropertyValue = RuntimeErrorOf<ErrorKind::InvalidPropertyValue>;
using ObjectRequired = RuntimeErrorOf<ErrorKind::ObjectRequired>;

} // namespace quorvane
