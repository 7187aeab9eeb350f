// A small host: brings the control up the way a practice's application does,
// loads a morning into the first column, and prints what the column shows.

#include <QuorvaneScheduler/ctl_scheduler.h>

#include <cstdio>
#include <iostream>

using namespace quorvane;

namespace {

// The practice's side of the events: it hears every event by name.
class MorningHost {
public:
    explicit MorningHost(ctlScheduler& control)
        : control_(control), sink_([](std::string_view name, std::vector<Variant>& args) {
              std::cout << "event " << name << "(";
              for (std::size_t i = 0; i < args.size(); ++i)
                  std::cout << (i ? ", " : "") << args[i].toString();
              std::cout << ")\n";
          }) {
        control_.setEventSink(&sink_);
    }

private:
    ctlScheduler& control_;
    EventsByName sink_;
};

void show(ctlScheduler& control, const std::string& column) {
    const DayViewRef view = control.GetDayView(column);
    std::cout << "Column " << column << ", " << generalDateText(view->CurrentDate()) << ":\n";
    for (AppointmentRef app = view->appointmentSet().FirstAppointment(); app;
         app = view->appointmentSet().NextAppointment(app)) {
        std::printf("  %-8s %-8s %-24s %-12s tag %s\n", shortTimeText(app->StartDateTime).c_str(),
                    shortTimeText(app->EndDateTime).c_str(), app->Text.c_str(),
                    control.GetStatus(app).c_str(), app->Tag.c_str());
    }
}

} // namespace

int main() {
    Platform platform;
    platform.clock.setToday(makeDate(2026, 11, 23));
    platform.container.onPropertyChanged = [](std::string_view name) {
        std::cout << "changed " << name << "\n";
    };

    ctlScheduler control(platform);
    MorningHost host(control);

    control.ccScheduled = 0xFFC0C0;
    control.ccConfirmed = 0xC0FFC0;
    control.ccCheckedIn = 0x80FF80;
    control.ccCheckedOut = 0xC0C0C0;
    control.ccNoShow = 0x8080FF;
    control.ccCancelled = 0x4040C0;
    control.setTaskingEnabled("true");

    const OleDate day = control.GetDayView("1")->CurrentDate();
    auto at = [&](int h, int m) { return OleDate(day.value + makeTime(h, m, 0).value); };
    control.AddAppointment("1", "Ada Byron", at(8, 0), at(8, 30), "1201", "Checked-In", "", "5501");
    control.AddAppointment("1", "Grace Hopper", at(8, 30), at(9, 0), "1202", "Confirmed", "77", "5502");
    control.AddAppointment("1", "Alan Kay", at(9, 0), at(9, 15), "1203", "Scheduled", "", "5503");
    control.AddAppointment("1", "Edsger Dijkstra", at(9, 15), at(9, 45), "1204", "Cancelled", "", "5504");

    // A walk-in booked at the desk: it stands with an empty tag until the host
    // has stored it and names it.
    const AppointmentRef walkIn =
        control.GetDayView("1")->appointmentSet().Add("Barbara Liskov", at(10, 0), at(10, 30));
    control.SetAppId("1", "1205", walkIn->Key(), "5505");
    control.SetStatus(walkIn, "Scheduled");
    control.FocusControl();

    show(control, "1");
    std::cout << "Focus: " << platform.container.activeControl()
              << ", enabled: " << (control.UserControlEnabled() ? "True" : "False") << "\n";
    return 0;
}
