// The members of the week view as the member table lists them by name.

#include "control/member_builders.h"

namespace quorvane {

using namespace members;

void addWeekViewMembers(std::vector<MemberInfo>& t) {
    t.push_back(command("mnoWeekView_Click", T::None, &ctlScheduler::mnoWeekView_Click));
    t.push_back(method("LoadWeekView",
                       {{"strScheduledEID", T::String, true},
                        {"strScheduledName", T::String, true},
                        {"dtCurrentDate", T::Date, true}},
                       T::Variant, [](ctlScheduler& c, Args a) {
                           c.LoadWeekView(str(a[0]), str(a[1]), a[2].toDate());
                           return Variant();
                       }));
    t.push_back(command("ShowWkvw", T::Variant, &ctlScheduler::ShowWkvw));
    t.push_back(method("AddWkvwAppointment",
                       appointmentParams({"strResourceNumber", T::String, true}, {"intDayOfWeek", T::Integer, true}),
                       T::Variant, [](ctlScheduler& c, Args a) {
                           c.AddWkvwAppointment(str(a[0]), str(a[1]), a[2].toDate(), a[3].toDate(), str(a[4]),
                                                str(a[5]), a[6].toInteger());
                           return Variant();
                       }));
    t.push_back(command("ClearWeekView", T::Variant, &ctlScheduler::ClearWeekView));
    t.push_back(method("AddAllDayTemplateWeekview",
                       {{"strColor", T::String, true}, {"intDay", T::Integer, true}}, T::Variant,
                       [](ctlScheduler& c, Args a) {
                           std::string colour = str(a[0]);
                           WriteBack back([&] { a[0] = Variant(colour); });
                           c.AddAllDayTemplateWeekview(colour, a[1].toInteger());
                           return Variant();
                       }));
    t.push_back(method("AddTemplateWeekview",
                       {{"intDay", T::Variant, true},
                        {"dtStartDateTime", T::Date, true},
                        {"dtEndDateTime", T::Date, true},
                        {"strDescription", T::String, true},
                        {"strColor", T::String, true}},
                       T::Variant, [](ctlScheduler& c, Args a) {
                           OleDate end = a[2].toDate();
                           std::string colour = str(a[4]);
                           WriteBack back([&] {
                               a[2] = Variant(end);
                               a[4] = Variant(colour);
                           });
                           c.AddTemplateWeekview(a[0], a[1].toDate(), end, str(a[3]), colour);
                           return Variant();
                       }));
    t.push_back(method("RefreshTimeslotsWeekview", {{"intDay", T::Integer, true}}, T::Variant,
                       [](ctlScheduler& c, Args a) {
                           c.RefreshTimeslotsWeekview(a[0].toInteger());
                           return Variant();
                       }));
}

} // namespace quorvane
