// The members of this subsystem as the member table lists them by name.

#include "control/member_builders.h"

namespace quorvane {

using namespace members;
using T = DeclaredType;

void addColumnMembers(std::vector<MemberInfo>& t) {
    t.push_back(method("ResizeControl", {{"intHeight", T::Integer}, {"intWidth", T::Integer}}, T::None,
                       [](ctlScheduler& c, Args a) {
                           c.ResizeControl(a[0].toInteger(), a[1].toInteger());
                           return Variant();
                       }));
    t.push_back(method("ModifySchedules", {{"intNumOfSchedules", T::String, true}}, T::Variant,
                       [](ctlScheduler& c, Args a) {
                           std::string number = str(a[0]);
                           Variant result = c.ModifySchedules(number);
                           a[0] = Variant(number);
                           return result;
                       }));
    t.push_back(setter("NumOfSchedules", T::String,
                       [](ctlScheduler& c, const Variant& v) { c.setNumOfSchedules(str(v)); }));

    t.push_back(method("calCalendar_Change", {{"newDate", T::Date}}, T::None, [](ctlScheduler& c, Args a) {
        c.calCalendar_Change(a[0].toDate());
        return Variant();
    }));
    t.push_back(method("CheckLoadAllToday", {{"strCurrentResource", T::String, true}}, T::Variant,
                       [](ctlScheduler& c, Args a) { return c.CheckLoadAllToday(str(a[0])); }));
    t.push_back(method("ResetCalendar", {{"dtOldDate", T::Date, true}}, T::Variant,
                       [](ctlScheduler& c, Args a) { return c.ResetCalendar(a[0].toDate()); }));
    t.push_back(method(
        "DisplayTopIndex", {{"dtStartDateTime", T::Date, true}, {"strResourceNumber", T::String, true}},
        T::Variant, [](ctlScheduler& c, Args a) { return c.DisplayTopIndex(a[0].toDate(), str(a[1])); }));
    t.push_back(method("mnoShowToday_Click", {}, T::None, [](ctlScheduler& c, Args) {
        c.mnoShowToday_Click();
        return Variant();
    }));
}

} // namespace quorvane
