#pragma once
// Every call the desk makes into the control goes through here, by the member's
// name, as a scripting host would make it. One place sees all of them, so a
// recording can write each as the console's own command.

#include <QuorvaneScheduler/ctl_scheduler.h>
#include <QuorvaneScheduler/members.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace practice {

class ControlSession {
public:
    explicit ControlSession(quorvane::ctlScheduler& control) : control_(control) {}

    quorvane::Variant call(std::string_view method, std::vector<quorvane::Variant> args = {});
    void set(std::string_view property, quorvane::Variant value);
    quorvane::Variant get(std::string_view property);
    std::string text(std::string_view property) { return get(property).toString(); }

    quorvane::ctlScheduler& control() { return control_; }

    // Hears each call before it runs: "call", "set" or "get", the name, the arguments.
    std::function<void(std::string_view verb, std::string_view name,
                       const std::vector<quorvane::Variant>& args)>
        onCall;

private:
    quorvane::Variant invoke(std::string_view verb, std::string_view name, quorvane::MemberKind kind,
                             std::vector<quorvane::Variant> args);
    quorvane::ctlScheduler& control_;
};

} // namespace practice
