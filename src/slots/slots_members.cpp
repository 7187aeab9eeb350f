// The members of this subsystem as the member table lists them by name.

#include "control/member_builders.h"

namespace quorvane {

using namespace members;
using T = DeclaredType;

namespace {

// An object argument that must be a day view: Nothing is an ObjectRequired, any
// other object a TypeMismatch.
PVDayView& dayViewOf(const Variant& v) {
    const ObjectRef o = v.toObject();
    if (!o) throw ObjectRequired("Nothing where a day view belongs");
    auto* view = dynamic_cast<PVDayView*>(o.get());
    if (!view) throw TypeMismatch("an object that is no day view");
    return *view;
}

const MemberParam kDayViewParam{"dvwResource", T::Object, true};

} // namespace

void addSlotMembers(std::vector<MemberInfo>& t) {
    // Resource1TimeSlotSelected to Resource10TimeSlotSelected: ten names, the
    // column bound in.
    for (int index = 0; index < kColumns; ++index) {
        const std::string name = "Resource" + std::to_string(index + 1) + "TimeSlotSelected";
        t.push_back({name,
                     MemberKind::PropertyGet,
                     {{"TimeSlot", T::Date}},
                     T::Boolean,
                     [index](ctlScheduler& c, Args a) {
                         return Variant(c.ResourceTimeSlotSelected(index, a[0].toDate()));
                     }});
        t.push_back({name,
                     MemberKind::PropertyLet,
                     {{"TimeSlot", T::Date}, {"value", T::Boolean}},
                     T::None,
                     [index](ctlScheduler& c, Args a) {
                         c.setResourceTimeSlotSelected(index, a[0].toDate(), a[1].toBoolean());
                         return Variant();
                     }});
    }

    t.push_back(method("ClearTimeSlots", {{"strResourceSelected", T::Variant, true}}, T::Variant,
                       [](ctlScheduler& c, Args a) {
                           c.ClearTimeSlots(a[0]);
                           return Variant();
                       }));
    t.push_back(method("RemoveTimeSlotSelected", {kDayViewParam}, T::Variant, [](ctlScheduler& c, Args a) {
        c.RemoveTimeSlotSelected(dayViewOf(a[0]));
        return Variant();
    }));
    t.push_back(method("getSelectedTimeSlot", {kDayViewParam}, T::Date, [](ctlScheduler& c, Args a) {
        return Variant(c.getSelectedTimeSlot(dayViewOf(a[0])));
    }));
    t.push_back(method("IntervalInMinutes", {kDayViewParam}, T::Integer, [](ctlScheduler& c, Args a) {
        return Variant(c.IntervalInMinutes(dayViewOf(a[0])));
    }));
    t.push_back(method("RefreshTimeslots", {{"strResourceNumber", T::String, true}}, T::Variant,
                       [](ctlScheduler& c, Args a) {
                           c.RefreshTimeslots(str(a[0]));
                           return Variant();
                       }));

    t.push_back(method("AddResourceTemplate",
                       {{"dtStartDateTime", T::Date},
                        {"dtEndDateTime", T::Date},
                        {"strDescription", T::String},
                        {"strColor", T::String},
                        {"strResourceNumber", T::String},
                        {"strAddNow", T::String}},
                       T::Variant, [](ctlScheduler& c, Args a) {
                           c.AddResourceTemplate(a[0].toDate(), a[1].toDate(), str(a[2]), str(a[3]),
                                                 str(a[4]), str(a[5]));
                           return Variant();
                       }));
    // The caller's end time and colour come back changed, as the control left them.
    t.push_back(method("AddExistingTemplate",
                       {{"dtStartDateTime", T::Date, true},
                        {"dtEndDateTime", T::Date, true},
                        {"strDescription", T::String, true},
                        {"strColor", T::String, true},
                        {"strResourceNumber", T::String, true}},
                       T::Variant, [](ctlScheduler& c, Args a) {
                           OleDate end = a[1].toDate();
                           std::string colour = str(a[3]);
                           const WriteBack back([&] {
                               a[1] = Variant(end);
                               a[3] = Variant(colour);
                           });
                           c.AddExistingTemplate(a[0].toDate(), end, str(a[2]), colour, str(a[4]));
                           return Variant();
                       }));
    t.push_back(method("vbRGBVal", {{"WebRGBString", T::String, true}}, T::Long, [](ctlScheduler& c, Args a) {
        std::string text = str(a[0]);
        const WriteBack back([&] { a[0] = Variant(text); });
        return Variant(c.vbRGBVal(text));
    }));
}

} // namespace quorvane
