#pragma once
// Hands each event of the control to several sinks in turn (the desk's answer,
// the window that shows it), with a hook before and after each, where a
// recording of the session hears the event by name.

#include <QuorvaneScheduler/events.h>

#include <functional>
#include <string_view>
#include <vector>

namespace practice {

class EventTee final : public quorvane::ctlSchedulerEvents {
public:
    using Str = const std::string&;
    using Variant = quorvane::Variant;
    std::vector<quorvane::ctlSchedulerEvents*> sinks;
    std::function<void(std::string_view name, const std::vector<Variant>& args)> before;
    std::function<void()> after;

private:
    // `after` runs however the sinks end, a failure of one included.
    struct Done {
        EventTee* tee;
        ~Done() {
            if (tee->after) tee->after();
        }
    };

public:

    using OleDate = quorvane::OleDate;
#define QUORVANE_TEE(Name, Params, Args, Table)                                                              \
    void Name Params override {                                                                              \
        if (before) before(#Name, quorvane::detail::asVariants(QUORVANE_UNWRAP Args));                       \
        const Done done{this};                                                                               \
        for (quorvane::ctlSchedulerEvents * sink : sinks)                                                    \
            sink->Name Args;                                                                                 \
    }
    QUORVANE_EVENTS(QUORVANE_TEE)
#undef QUORVANE_TEE
};

} // namespace practice
