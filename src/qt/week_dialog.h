#pragma once
// The week form as a modal dialog: it shows the form's resource and its seven
// days, and returns when the user has closed it.

namespace quorvane {

class SchedulerWidget;
struct WeekViewForm;

void runWeekDialog(SchedulerWidget& owner, WeekViewForm& form);

} // namespace quorvane
