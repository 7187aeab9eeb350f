#pragma once
// Helpers for writing rows of the member table. Each subsystem adds its own rows
// from its own folder through one of the add...Members functions below.

#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/members.h>

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace quorvane {

void addColumnMembers(std::vector<MemberInfo>& table);      // src/columns
void addCatalogueMembers(std::vector<MemberInfo>& table);   // src/catalogue
void addSlotMembers(std::vector<MemberInfo>& table);        // src/slots
void addAppointmentMembers(std::vector<MemberInfo>& table); // src/appointments
void addPatientMembers(std::vector<MemberInfo>& table);     // src/patient
void addCommandMembers(std::vector<MemberInfo>& table);     // src/commands
void addWeekViewMembers(std::vector<MemberInfo>& table);    // src/weekview
void addPrintMembers(std::vector<MemberInfo>& table);       // src/print

namespace members {

// Hands what a member left in its by-reference copies back to the caller's
// arguments, when the member returns and when it fails part way: a reference
// would have kept the change either way.
class WriteBack {
public:
    explicit WriteBack(std::function<void()> back) : back_(std::move(back)) {}
    ~WriteBack() { back_(); }
    WriteBack(const WriteBack&) = delete;
    WriteBack& operator=(const WriteBack&) = delete;

private:
    std::function<void()> back_;
};

using T = DeclaredType;
using Args = std::span<Variant>;

inline const std::string& str(const Variant& v) {
    static const std::string empty;
    const std::string* s = v.asString();
    return s ? *s : empty;
}

inline AppointmentRef appointmentOf(const Variant& v) {
    const ObjectRef o = v.toObject();
    if (!o) return nullptr;
    auto app = std::dynamic_pointer_cast<Appointment>(o);
    if (!app) throw TypeMismatch("an object that is no appointment");
    return app;
}

inline MemberInfo getter(std::string name, T type, std::function<Variant(ctlScheduler&)> read) {
    return {
        std::move(name), MemberKind::PropertyGet, {}, type, [read = std::move(read)](ctlScheduler& c, Args) {
            return read(c);
        }};
}

inline MemberInfo setter(std::string name, T type, std::function<void(ctlScheduler&, const Variant&)> write) {
    return {std::move(name),
            MemberKind::PropertyLet,
            {{"value", type, false}},
            T::None,
            [write = std::move(write)](ctlScheduler& c, Args a) {
                write(c, a[0]);
                return Variant();
            }};
}

// The parameters a column's and a week day's appointment are added with: the
// six they share, then the one that says where it goes.
inline std::vector<MemberParam> appointmentParams(MemberParam first, MemberParam last) {
    return {std::move(first),
            {"strDescription", T::String, true},
            {"dtStartDateTime", T::Date, true},
            {"dtEndDateTime", T::Date, true},
            {"strAppID", T::String, true},
            {"strStatus", T::String, true},
            std::move(last)};
}

inline MemberInfo method(std::string name, std::vector<MemberParam> params, T result,
                         std::function<Variant(ctlScheduler&, Args)> run) {
    return {std::move(name), MemberKind::Method, std::move(params), result, std::move(run)};
}

// A method without arguments whose result, if it declares one, stays empty.
inline MemberInfo command(std::string name, T result, void (ctlScheduler::*run)()) {
    return method(std::move(name), {}, result, [run](ctlScheduler& c, Args) {
        (c.*run)();
        return Variant();
    });
}

} // namespace members
} // namespace quorvane
