// The members of this subsystem as the member table lists them by name.

#include "control/member_builders.h"

namespace quorvane {

using namespace members;
using T = DeclaredType;

namespace {

// Ten members of one family: the name with the column number in it, each bound
// to one function with its column index.
void family(std::vector<MemberInfo>& t, const char* before, const char* after, T type,
            std::string (ctlScheduler::*read)(int) const,
            void (ctlScheduler::*write)(int, const std::string&)) {
    for (int index = 0; index < kColumns; ++index) {
        const std::string name = before + std::to_string(index + 1) + after;
        if (read)
            t.push_back(
                getter(name, type, [read, index](ctlScheduler& c) { return Variant((c.*read)(index)); }));
        t.push_back(setter(name, type,
                           [write, index](ctlScheduler& c, const Variant& v) { (c.*write)(index, str(v)); }));
    }
}

void variantFamily(std::vector<MemberInfo>& t, const char* before, const char* after,
                   Variant (ctlScheduler::*read)(int) const,
                   void (ctlScheduler::*write)(int, const Variant&)) {
    for (int index = 0; index < kColumns; ++index) {
        const std::string name = before + std::to_string(index + 1) + after;
        t.push_back(getter(name, T::Variant, [read, index](ctlScheduler& c) { return (c.*read)(index); }));
        t.push_back(setter(name, T::Variant,
                           [write, index](ctlScheduler& c, const Variant& v) { (c.*write)(index, v); }));
    }
}

} // namespace

void addColumnMembers(std::vector<MemberInfo>& t) {
    using C = ctlScheduler;
    family(t, "ResourceCatType", "", T::String, nullptr, &C::setResourceCatType);
    family(t, "Resource", "", T::String, nullptr, &C::setResource);
    family(t, "DayIncrement", "", T::String, &C::DayIncrement, &C::setDayIncrement);
    family(t, "Resource", "Value", T::String, &C::ResourceValue, &C::setResourceValue);
    family(t, "Resource", "ValueListIndex", T::String, &C::ResourceValueListIndex,
           &C::setResourceValueListIndex);
    family(t, "Resource", "ListIndex", T::String, &C::ResourceListIndex, &C::setResourceListIndex);
    variantFamily(t, "Resource", "TopIndex", &C::ResourceTopIndex, &C::setResourceTopIndex);
    variantFamily(t, "Resource", "Date", &C::ResourceDate, &C::setResourceDate);

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
