#pragma once
// The morning most control and window tests start from, as a host script: two
// columns of 30-minute slots on 1/15/2008 from 8 AM, in the first two
// overlapping appointments and a lunch block, in the second one appointment,
// and a patient on the panel.

namespace quorvane::test {

inline constexpr const char* kMorning = R"(set ccScheduled = 16761024
set ccConfirmed = 65535
set ccCheckedIn = 65280
set ccCheckedOut = 12632256
set ccNoShow = 255
set ccCancelled = 8421504
call ResizeControl(700, 1000)
set ResourceGroupViews = "10~Main Office~2~2"
set ResourceGroupDefaults = "10~Main Office~501~1~~10~Main Office~502~2"
set ResourceGroups = "10~Main Office~Y~501~Dr. Ortiz~Providers~Dentists~~10~Main Office~Y~502~Dr. Park~Providers~Hygiene"
set DayIncrement1 = "30"
set DayIncrement2 = "30"
call AddAppointment("1", "Ada Byron", #1/15/2008 9:00 AM#, #1/15/2008 10:00 AM#, "1201", "Confirmed", "77", "5501")
call AddAppointment("1", "Alan Kay", #1/15/2008 9:30 AM#, #1/15/2008 10:30 AM#, "1202", "Scheduled", "", "5502")
call AddAppointment("2", "Grace Hopper", #1/15/2008 11:00 AM#, #1/15/2008 11:30 AM#, "1301", "Checked-In", "", "5503")
call RefreshTimeslots("1")
call RefreshTimeslots("2")
call AddResourceTemplate(#1/15/2008 12:00 PM#, #1/15/2008 1:00 PM#, "Lunch", "#C0C0C0", "1", "Y")
call AddResourceTemplate(#1/15/2008 7:00 AM#, #1/15/2008 9:00 AM#, "Surgery", "#FFE0A0", "2", "Y")
set PatEID = "5531"
set PatName = "Edsger Dijkstra"
)";

} // namespace quorvane::test
