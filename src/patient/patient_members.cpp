// The members of the patient panel as the member table lists them by name.

#include "control/member_builders.h"

namespace quorvane {

using namespace members;

void addPatientMembers(std::vector<MemberInfo>& t) {
    t.push_back(command("PatientLoaded", T::None, &ctlScheduler::PatientLoaded));
    t.push_back(command("ClearPatient", T::Variant, &ctlScheduler::ClearPatient));
}

} // namespace quorvane
