#include <QuorvaneScheduler/ctl_scheduler.h>

#include <iostream>
#include <string>

using namespace quorvane;

// The practice's side of the events. A booking waits on the grid with an empty
// tag and the control disabled: store it, name it, colour it, end the busy phase.
class Host : public ctlSchedulerEvents {
public:
    explicit Host(ctlScheduler& c) : c_(c) { c_.setEventSink(this); }
    void AddApptWithPatient(const std::string& column, const std::string& /*resource*/) override {
        const std::int32_t key = c_.appKeyValue().value(); // the AppKey property, as a key
        c_.SetAppId(column, "1204", key, c_.AppPatEID());
        c_.SetStatus(c_.GetDayView(column)->appointmentSet().Item(key), "Scheduled");
        c_.FocusControl();
    }

private:
    ctlScheduler& c_;
};

int main() {
    Platform platform; // message boxes, today's date, the container
    platform.clock.setToday(parseDate("11/23/2026"));
    ctlScheduler control(platform);
    Host host(control);

    // Six different status colours, before the first appointment.
    control.ccScheduled = 0xFFC0C0, control.ccConfirmed = 0xC0FFC0, control.ccCheckedIn = 0x80FF80;
    control.ccCheckedOut = 0xC0C0C0, control.ccNoShow = 0x8080FF, control.ccCancelled = 0x4040C0;
    // The catalogue: views and defaults first, the groups last, which loads column 1.
    control.setResourceGroupViews("10~Main Office~1~1");
    control.setResourceGroupDefaults("10~Main Office~501~1");
    control.setResourceGroups("10~Main Office~Y~501~Dr. Ortiz~Providers~Dentists");

    // A patient on the panel, a selected slot, and a plain booking.
    control.setPatEID("5531");
    control.setPatName("Ada Byron");
    control.setResourceTimeSlotSelected(0, parseDate("9:30 AM"), true);
    control.ScheduleApp();

    const AppointmentRef app = control.GetDayView("1")->appointmentSet().FirstAppointment();
    std::cout << app->Text << " " << app->Tag << " " << control.GetStatus(app) << "\n";
    // Ada Byron 1204~~5531 Scheduled
}
