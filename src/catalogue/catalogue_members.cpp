// The members of this subsystem as the member table lists them by name.

#include "control/member_builders.h"

namespace quorvane {

using namespace members;
using T = DeclaredType;

// The four catalogue strings are write-only: there is no getter to list.
void addCatalogueMembers(std::vector<MemberInfo>& t) {
    t.push_back(
        setter("Resources", T::String, [](ctlScheduler& c, const Variant& v) { c.setResources(str(v)); }));
    t.push_back(setter("ResourceGroups", T::String,
                       [](ctlScheduler& c, const Variant& v) { c.setResourceGroups(str(v)); }));
    t.push_back(setter("ResourceGroupDefaults", T::String,
                       [](ctlScheduler& c, const Variant& v) { c.setResourceGroupDefaults(str(v)); }));
    t.push_back(setter("ResourceGroupViews", T::String,
                       [](ctlScheduler& c, const Variant& v) { c.setResourceGroupViews(str(v)); }));

    t.push_back(
        method("SetResourceAndDate",
               {{"strResourceId", T::String}, {"intResourceNumber", T::Integer}, {"strDate", T::String}},
               T::Variant, [](ctlScheduler& c, Args a) {
                   return c.SetResourceAndDate(str(a[0]), a[1].toInteger(), str(a[2]));
               }));
    t.push_back(
        method("RefreshSchedule", {{"intResourceNumber", T::Integer}}, T::None, [](ctlScheduler& c, Args a) {
            c.RefreshSchedule(a[0].toInteger());
            return Variant();
        }));
}

} // namespace quorvane
