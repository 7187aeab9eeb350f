#include "control_session.h"

#include <QuorvaneScheduler/errors.h>

using namespace quorvane;

namespace practice {

Variant ControlSession::invoke(std::string_view verb, std::string_view name, MemberKind kind,
                               std::vector<Variant> args) {
    const MemberInfo* member = findMember(name, kind);
    if (!member) throw InvalidProcedureCall("the control has no member " + std::string(name));
    SessionRecorder* heard = verb == "get" ? nullptr : recorder;
    if (heard) heard->hostCall(verb, name, args);
    try {
        Variant result = invokeMember(control_, *member, args);
        if (heard) heard->hostCallDone(verb, result);
        return result;
    } catch (const RuntimeError& e) {
        if (heard) heard->hostCallFailed(e);
        if (onRefused) onRefused(name, e);
        return {};
    }
}

Variant ControlSession::call(std::string_view method, std::vector<Variant> args) {
    return invoke("call", method, MemberKind::Method, std::move(args));
}

void ControlSession::set(std::string_view property, Variant value) {
    invoke("set", property, MemberKind::PropertyLet, {std::move(value)});
}

Variant ControlSession::get(std::string_view property) {
    return invoke("get", property, MemberKind::PropertyGet, {});
}

} // namespace practice
