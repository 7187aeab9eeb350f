#pragma once
// The control's outgoing interface: the 37 events, in the order of the
// interface. A host implements ctlSchedulerEvents and hands it to the control;
// a raise is a plain synchronous call into it, and the host may call the control
// again from inside any of them.

#include <QuorvaneScheduler/export.h>
#include <QuorvaneScheduler/event_list.h>
#include <QuorvaneScheduler/ole_date.h>
#include <QuorvaneScheduler/variant.h>

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

// How the events take their strings.
using Str = const std::string&;

namespace detail {
template <class... T> constexpr void unused(const T&...) {}
// The arguments of a raise as a host by name sees them.
template <class... T> std::vector<Variant> asVariants(const T&... params) { return {Variant(params)...}; }
// What a host by name left in a by-reference argument goes back to it; the
// others are the control's own.
inline void takeBack(const Variant& value, Variant& param) { param = value; }
template <class T> void takeBack(const Variant&, const T&) {}
template <class... T> void takeBackAll(const std::vector<Variant>& args, T&... params) {
    std::size_t i = 0;
    ((i < args.size() ? takeBack(args[i], params) : void(), ++i), ...);
    (void)i;
}
} // namespace detail

// The events (see event_list.h): UpdateAppStatus's strStatus is passed by
// reference and holds a string; ResourceOnClick's strResourceDate holds the date
// as the day view gives it; RefreshSchedule is part of the interface but never
// raised by the control.
class QUORVANE_EXPORT ctlSchedulerEvents {
public:
    virtual ~ctlSchedulerEvents() = default;

#define QUORVANE_EVENT_SINK(Name, Params, Args, Table) \
    virtual void Name Params { detail::unused(QUORVANE_UNWRAP Args); }
    QUORVANE_EVENTS(QUORVANE_EVENT_SINK)
#undef QUORVANE_EVENT_SINK
};

// One event of the interface as a host sees it by name.
struct QUORVANE_EXPORT EventParam {
    std::string_view name; // as the interface spells it
    VariantType type; // String, Integer, Date or Empty (a Variant)
    // Whether a handler's change goes back to the control.
    bool byRef = false;
};
// An event: its name and its parameters in order.
struct QUORVANE_EXPORT EventInfo {
    std::string_view name;          // as the interface spells it
    std::vector<EventParam> params; // in the order of the interface
};
// The 37 events in the order of the interface.
QUORVANE_EXPORT const std::vector<EventInfo>& eventTable();
// An event by name; nullptr for a name the interface has not.
QUORVANE_EXPORT const EventInfo* findEvent(std::string_view name);

// Hears every event by name, with its arguments as Variants. A by-reference
// argument the handler changes in `args` goes back to the control.
class QUORVANE_EXPORT EventsByName final : public ctlSchedulerEvents {
public:
    // The handler of every event, and the sink that calls it.
    using Handler = std::function<void(std::string_view name, std::vector<Variant>& args)>;
    explicit EventsByName(Handler handler) : handler_(std::move(handler)) {}

#define QUORVANE_EVENT_BY_NAME(Name, Params, Args, Table)                                                    \
    void Name Params override {                                                                              \
        std::vector<Variant> args = detail::asVariants(QUORVANE_UNWRAP Args);                                \
        fire(#Name, args);                                                                                   \
        detail::takeBackAll(args QUORVANE_COMMA_ARGS Args);                                                  \
    }
    QUORVANE_EVENTS(QUORVANE_EVENT_BY_NAME)
#undef QUORVANE_EVENT_BY_NAME

private:
    void fire(std::string_view name, std::vector<Variant>& args) {
        if (handler_) handler_(name, args);
    }
    Handler handler_;
};

} // namespace quorvane
