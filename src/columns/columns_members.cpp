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
}

} // namespace quorvane
