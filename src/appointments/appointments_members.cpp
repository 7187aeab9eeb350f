// The members of the appointment commands as the member table lists them by name.

#include "control/member_builders.h"

namespace quorvane {

using namespace members;

namespace {

MemberInfo onAppointment(const char* name, const char* param,
                         void (ctlScheduler::*run)(const AppointmentRef&)) {
    return method(name, {{param, T::Appointment, true}}, T::Variant, [run](ctlScheduler& c, Args a) {
        (c.*run)(appointmentOf(a[0]));
        return Variant();
    });
}

} // namespace

void addAppointmentMembers(std::vector<MemberInfo>& t) {
    t.push_back(command("ScheduleApp", T::Variant, &ctlScheduler::ScheduleApp));
    t.push_back(method("UpdateStatus", {{"app", T::Appointment, true}, {"strStatus", T::String, true}},
                       T::None, [](ctlScheduler& c, Args a) {
                           c.UpdateStatus(appointmentOf(a[0]), str(a[1]));
                           return Variant();
                       }));
    t.push_back(
        method("UpdateCurrentAppStatus", {{"strStatus", T::String}}, T::None, [](ctlScheduler& c, Args a) {
            c.UpdateCurrentAppStatus(str(a[0]));
            return Variant();
        }));
    t.push_back(command("mnoCheckIn_Click", T::None, &ctlScheduler::mnoCheckIn_Click));
    t.push_back(command("mnoNoShow_Click", T::None, &ctlScheduler::mnoNoShow_Click));
    t.push_back(command("mnoConfirm_Click", T::None, &ctlScheduler::mnoConfirm_Click));
    t.push_back(command("mnoCheckOut_Click", T::None, &ctlScheduler::mnoCheckOut_Click));
    t.push_back(command("cmdLoad_Click", T::None, &ctlScheduler::cmdLoad_Click));
    t.push_back(onAppointment("CheckCurrentAppStatus", "app", &ctlScheduler::CheckCurrentAppStatus));
    t.push_back(command("mnoDeleteApp_Click", T::None, &ctlScheduler::mnoDeleteApp_Click));
    t.push_back(
        command("ClearAdditionalAppInfoOnSelect", T::Variant, &ctlScheduler::ClearAdditionalAppInfoOnSelect));
    t.push_back(command("ClearAdditionalAppInfo", T::Variant, &ctlScheduler::ClearAdditionalAppInfo));
    t.push_back(onAppointment("SetCurrentApp", "Appointment", &ctlScheduler::SetCurrentApp));
}

} // namespace quorvane
