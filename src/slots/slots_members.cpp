// The members of this subsystem as the member table lists them by name.

#include "control/member_builders.h"

namespace quorvane {

using namespace members;
using T = DeclaredType;

void addSlotMembers(std::vector<MemberInfo>& t) {
    (void)t;
}

} // namespace quorvane
