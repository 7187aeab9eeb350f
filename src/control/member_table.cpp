// The members of the control by name. Each row converts nothing itself: the
// arguments reach it in their declared types (see invokeMember).

#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/members.h>

#include "member_builders.h"
#include "control/text_properties.h"

#include <cstddef>

namespace quorvane {

namespace {

using namespace members;

// A public variable: read and write, no report.
template <class Field>
void variable(std::vector<MemberInfo>& t, const char* name, T type, Field ctlScheduler::*field) {
    t.push_back(getter(name, type, [field](ctlScheduler& c) { return Variant(c.*field); }));
    t.push_back(setter(name, type, [field, type](ctlScheduler& c, const Variant& v) {
        c.*field = static_cast<Field>(type == T::Integer ? v.toInteger() : v.toLong());
    }));
}

// A string property, through its typed getter and setter.
void textField(std::vector<MemberInfo>& t, const char* name, const std::string& (ctlScheduler::*read)() const,
               void (ctlScheduler::*write)(const std::string&)) {
    t.push_back(getter(name, T::String, [read](ctlScheduler& c) { return Variant((c.*read)()); }));
    t.push_back(setter(name, T::String, [write](ctlScheduler& c, const Variant& v) { (c.*write)(str(v)); }));
}

std::vector<MemberInfo> buildTable() {
    std::vector<MemberInfo> t;

    variable(t, "ccCancelled", T::Long, &ctlScheduler::ccCancelled);
    variable(t, "ccConfirmed", T::Long, &ctlScheduler::ccConfirmed);
    variable(t, "ccCheckedIn", T::Long, &ctlScheduler::ccCheckedIn);
    variable(t, "ccCheckedOut", T::Long, &ctlScheduler::ccCheckedOut);
    variable(t, "ccNoShow", T::Long, &ctlScheduler::ccNoShow);
    variable(t, "ccScheduled", T::Long, &ctlScheduler::ccScheduled);
    variable(t, "intResourceCount", T::Integer, &ctlScheduler::intResourceCount);

    t.push_back(setter("ImagingEnabled", T::String,
                       [](ctlScheduler& c, const Variant& v) { c.setImagingEnabled(str(v)); }));
    t.push_back(setter("ClearCommentsEnabled", T::String,
                       [](ctlScheduler& c, const Variant& v) { c.setClearCommentsEnabled(str(v)); }));
    t.push_back(
        getter("ResourceNumber", T::String, [](ctlScheduler& c) { return Variant(c.ResourceNumber()); }));
    t.push_back(getter("AppointmentTypeID", T::String,
                       [](ctlScheduler& c) { return Variant(c.AppointmentTypeID()); }));
    t.push_back(
        getter("TaskingEnabled", T::String, [](ctlScheduler& c) { return Variant(c.TaskingEnabled()); }));
    t.push_back(setter("TaskingEnabled", T::String,
                       [](ctlScheduler& c, const Variant& v) { c.setTaskingEnabled(str(v)); }));

#define QUORVANE_TEXT_MEMBER(Name) textField(t, #Name, &ctlScheduler::Name, &ctlScheduler::set##Name);
    QUORVANE_TEXT_PROPERTIES(QUORVANE_TEXT_MEMBER)
#undef QUORVANE_TEXT_MEMBER

    // Fields of the state record, each with a getter and a setter that reports.
#define QUORVANE_FIELD_MEMBER(Name, field) textField(t, #Name, &ctlScheduler::Name, &ctlScheduler::set##Name);
    QUORVANE_FIELD_PROPERTIES(QUORVANE_FIELD_MEMBER)
#undef QUORVANE_FIELD_MEMBER

    t.push_back(getter("UserControlEnabled", T::Boolean,
                       [](ctlScheduler& c) { return Variant(c.UserControlEnabled()); }));
    t.push_back(setter("UserControlEnabled", T::Boolean,
                       [](ctlScheduler& c, const Variant& v) { c.setUserControlEnabled(v.toBoolean()); }));

    std::vector<MemberParam> addParams =
        appointmentParams({"strResourceNumber", T::String, true}, {"strAppRecurrenceId", T::String, true});
    addParams.push_back({"strPatientEID", T::String, true});
    t.push_back(method("AddAppointment", std::move(addParams),
                       T::Variant, [](ctlScheduler& c, Args a) {
                           c.AddAppointment(str(a[0]), str(a[1]), a[2].toDate(), a[3].toDate(), str(a[4]),
                                            str(a[5]), str(a[6]), str(a[7]));
                           return Variant();
                       }));
    t.push_back(method("SetStatus", {{"app", T::Appointment, true}, {"strStatus", T::String, true}},
                       T::Variant, [](ctlScheduler& c, Args a) {
                           c.SetStatus(appointmentOf(a[0]), str(a[1]));
                           return Variant();
                       }));
    t.push_back(method("GetStatus", {{"app", T::Appointment, true}}, T::String,
                       [](ctlScheduler& c, Args a) { return Variant(c.GetStatus(appointmentOf(a[0]))); }));
    t.push_back(method("SetAppId",
                       {{"strResourceNumber", T::String, true},
                        {"strAppID", T::String, true},
                        {"lngAppKey", T::Long, true},
                        {"strPatEID", T::String, true}},
                       T::Variant, [](ctlScheduler& c, Args a) {
                           c.SetAppId(str(a[0]), str(a[1]), a[2].toLong(), str(a[3]));
                           return Variant();
                       }));
    t.push_back(method("GetDayView", {{"strResourceNumber", T::String, true}}, T::Object,
                       [](ctlScheduler& c, Args a) { return Variant(ObjectRef(c.GetDayView(str(a[0])))); }));
    t.push_back(method("UserControl_Initialize", {}, T::None, [](ctlScheduler& c, Args) {
        c.UserControl_Initialize();
        return Variant();
    }));
    t.push_back(method("SetAppointmentType", {{"strTypeInfo", T::String}, {"strResourceNumber", T::String}},
                       T::None, [](ctlScheduler& c, Args a) {
                           c.SetAppointmentType(str(a[0]), str(a[1]));
                           return Variant();
                       }));
    t.push_back(method("FocusControl", {}, T::None, [](ctlScheduler& c, Args) {
        c.FocusControl();
        return Variant();
    }));
    addColumnMembers(t);
    addCatalogueMembers(t);
    addSlotMembers(t);
    addAppointmentMembers(t);
    addCommandMembers(t);
    addPatientMembers(t);
    addWeekViewMembers(t);
    addPrintMembers(t);
    return t;
}

} // namespace

const std::vector<MemberInfo>& memberTable() {
    static const std::vector<MemberInfo> table = buildTable();
    return table;
}

const MemberInfo* findMember(std::string_view name, MemberKind kind) {
    for (const MemberInfo& m : memberTable())
        if (m.kind == kind && m.name == name) return &m;
    return nullptr;
}

bool memberExists(std::string_view name) {
    for (const MemberInfo& m : memberTable())
        if (m.name == name) return true;
    return false;
}

Variant convertTo(const Variant& value, DeclaredType type) {
    switch (type) {
    case T::None:
    case T::Variant:
        return value;
    case T::String:
        return Variant(value.toString());
    case T::Integer:
        return Variant(value.toInteger());
    case T::Long:
        return Variant(value.toLong());
    case T::Single:
        return Variant(value.toSingle());
    case T::Double:
        return Variant(value.toDouble());
    case T::Boolean:
        return Variant(value.toBoolean());
    case T::Date:
        return Variant(value.toDate());
    case T::Object:
        return Variant(value.toObject());
    case T::Appointment:
        return Variant(ObjectRef(appointmentOf(value)));
    }
    return value;
}

Variant invokeMember(ctlScheduler& control, const MemberInfo& member, std::vector<Variant>& args) {
    if (args.size() != member.params.size()) {
        InvalidProcedureCall e(std::to_string(member.params.size()) + " arguments wanted, not " +
                               std::to_string(args.size()));
        e.setMember(member.name);
        throw e;
    }
    std::vector<Variant> converted;
    converted.reserve(args.size());
    try {
        for (std::size_t i = 0; i < args.size(); ++i)
            converted.push_back(convertTo(args[i], member.params[i].type));
    } catch (RuntimeError& e) {
        e.setMember(member.name);
        throw;
    }
    const std::vector<Variant> passed = converted;
    // A caller's variable keeps its own type unless the member wrote to it; what
    // the member wrote before it failed stays written, as it would through a
    // reference.
    auto writeBack = [&] {
        for (std::size_t i = 0; i < args.size(); ++i)
            if (member.params[i].byRef && !(converted[i] == passed[i])) args[i] = converted[i];
    };
    Variant result;
    try {
        result = member.invoke(control, converted);
    } catch (RuntimeError& e) {
        writeBack();
        e.setMember(member.name);
        throw;
    } catch (...) {
        writeBack();
        throw;
    }
    writeBack();
    return result;
}

} // namespace quorvane
