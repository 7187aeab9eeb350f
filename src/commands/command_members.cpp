// The members of the commands (the menus' items, the buttons, the keys) as the
// member table lists them by name.

#include "control/member_builders.h"

namespace quorvane {

using namespace members;

void addCommandMembers(std::vector<MemberInfo>& t) {
    using C = ctlScheduler;
    const std::pair<const char*, void (C::*)()> commands[] = {
        {"cmdClear_Click", &C::cmdClear_Click},
        {"cmdOpenPatient_Click", &C::cmdOpenPatient_Click},
        {"cmdPatientSearch_Click", &C::cmdPatientSearch_Click},
        {"cmdValidatePatient_Click", &C::cmdValidatePatient_Click},
        {"mnoFindNextAvailable_Click", &C::mnoFindNextAvailable_Click},
        {"mnoFindNextAvailableApp_Click", &C::mnoFindNextAvailableApp_Click},
        {"mnoSearchAppointments_Click", &C::mnoSearchAppointments_Click},
        {"mnoSearchAppointmentsApp_Click", &C::mnoSearchAppointmentsApp_Click},
        {"mnoAddEditRecurrenceApp_Click", &C::mnoAddEditRecurrenceApp_Click},
        {"mnoRefreshAllSchedules_Click", &C::mnoRefreshAllSchedules_Click},
        {"mnoRefreshAllSchedulesApp_Click", &C::mnoRefreshAllSchedulesApp_Click},
        {"mnoPrintSuperbillApp_Click", &C::mnoPrintSuperbillApp_Click},
    };
    for (const auto& [name, run] : commands)
        t.push_back(command(name, T::None, run));
    t.push_back(command("NextAvailableClick", T::Variant, &C::NextAvailableClick));
}

} // namespace quorvane
