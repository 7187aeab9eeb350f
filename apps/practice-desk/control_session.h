#pragma once
// Every call the desk makes into the control goes through here, by the member's
// name, as a scripting host would make it. One place sees all of them, so a
// recording can write each as the console's own command.
//
// A call the control fails is the desk's mistake, not the user's: like a
// scripted host, the desk hears it (onRefused), takes Empty for its result and
// goes on, so that a failure inside an event never reaches back into the control.

#include "session_recorder.h"

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

    // Hears the calls and writes that change the control; reads are not heard.
    SessionRecorder* recorder = nullptr;
    std::function<void(std::string_view member, const quorvane::RuntimeError& e)> onRefused;

private:
    quorvane::Variant invoke(std::string_view verb, std::string_view name, quorvane::MemberKind kind,
                             std::vector<quorvane::Variant> args);
    quorvane::ctlScheduler& control_;
};

} // namespace practice
