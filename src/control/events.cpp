#include <QuorvaneScheduler/events.h>

namespace quorvane {

namespace {
constexpr VariantType S = VariantType::String;
constexpr VariantType I = VariantType::Integer;
constexpr VariantType D = VariantType::Date;
constexpr VariantType V = VariantType::Empty; // declared as Variant

constexpr bool R = true; // by reference

std::vector<EventInfo> buildTable() {
#define QUORVANE_EVENT_ROW(Name, Params, Args, Table) {#Name, {QUORVANE_UNWRAP Table}},
    return {QUORVANE_EVENTS(QUORVANE_EVENT_ROW)};
#undef QUORVANE_EVENT_ROW
}
} // namespace

const std::vector<EventInfo>& eventTable() {
    static const std::vector<EventInfo> table = buildTable();
    return table;
}

const EventInfo* findEvent(std::string_view name) {
    for (const auto& e : eventTable())
        if (e.name == name) return &e;
    return nullptr;
}

} // namespace quorvane
