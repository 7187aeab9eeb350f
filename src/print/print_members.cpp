// The members of the printout as the member table lists them by name.

#include "control/member_builders.h"

namespace quorvane {

using namespace members;

void addPrintMembers(std::vector<MemberInfo>& t) {
    t.push_back(command("mnoPrint_Click", T::None, &ctlScheduler::mnoPrint_Click));
}

} // namespace quorvane
