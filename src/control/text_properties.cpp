// The text-field properties, typed. The member table reaches the same functions
// by name, so a write reports the same change through either door.

#include <QuorvaneScheduler/ctl_scheduler.h>

#include <QuorvaneScheduler/control_internals.h>

#include "control/text_properties.h"

#include <charconv>

namespace quorvane {

#define QUORVANE_TEXT_PROPERTY(Name)                                                                               \
    const std::string& ctlScheduler::Name() const { return w_.txt##Name.text; }                                    \
    void ctlScheduler::set##Name(const std::string& value) { setText(w_.txt##Name, value, #Name); }
QUORVANE_TEXT_PROPERTIES(QUORVANE_TEXT_PROPERTY)
#undef QUORVANE_TEXT_PROPERTY

#define QUORVANE_FIELD_PROPERTY(Name, field)                                                                       \
    const std::string& ctlScheduler::Name() const { return state_.field; }                                         \
    void ctlScheduler::set##Name(const std::string& value) { setField(state_.field, value, #Name); }
QUORVANE_FIELD_PROPERTIES(QUORVANE_FIELD_PROPERTY)
#undef QUORVANE_FIELD_PROPERTY

const std::string& ctlScheduler::TaskingEnabled() const { return state_.strTaskingEnabled; }
std::string ctlScheduler::AppointmentTypeID() const { return state_.strAppointmentTypeID; }

void ctlScheduler::setField(std::string& field, const std::string& value, const char* name) {
    field = value;
    platform_.container.propertyChanged(name);
}

void ctlScheduler::setText(TextField& field, const std::string& value, const char* name) {
    field.text = value;
    // The patient's name is read whole in its tool tip, where the field cuts it.
    if (&field == &w_.txtPatName) field.toolTipText = value;
    platform_.container.propertyChanged(name);
}

std::optional<std::int32_t> ctlScheduler::appKeyValue() const {
    const std::string& text = w_.txtAppKey.text;
    std::int32_t key = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), key);
    if (error != std::errc() || end != text.data() + text.size() || text.empty()) return std::nullopt;
    return key;
}

} // namespace quorvane
