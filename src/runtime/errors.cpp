#include <QuorvaneScheduler/errors.h>

namespace quorvane {

std::string_view errorKindName(ErrorKind kind) noexcept {
    switch (kind) {
    case ErrorKind::TypeMismatch:
        return "TypeMismatch";
    case ErrorKind::Overflow:
        return "Overflow";
    case ErrorKind::SubscriptOutOfRange:
        return "SubscriptOutOfRange";
    case ErrorKind::DivisionByZero:
        return "DivisionByZero";
    case ErrorKind::InvalidProcedureCall:
        return "InvalidProcedureCall";
    case ErrorKind::InvalidPropertyValue:
        return "InvalidPropertyValue";
    case ErrorKind::ObjectRequired:
        return "ObjectRequired";
    }
    // Only reachable through a value cast from outside the enumeration.
    return "RuntimeError";
}

} // namespace quorvane
