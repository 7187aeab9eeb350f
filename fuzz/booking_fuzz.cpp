// libFuzzer target: booking, tags and statuses, and the user's gestures on the
// day views around them.
//
// The control starts with the practice of openPractice (Main selected, columns
// 1 to 3 loaded). The input is a script (see fuzz_support.h) of these commands.
// N is a one-based column number as text, passed as it stands to the control's
// methods; a gesture needs a column 1 to 10. APP names an appointment: "N:key"
// one of column N's, "#k" one the host has held on to (possibly removed since),
// anything else none.
//   P id|name     the panel's patient   K comment|chief  the user types in the pane
//   Q text        ClearCommentsEnabled  Z c1|..|c6   the six status colours, in the
//                                       order Cancelled, Confirmed, CheckedIn,
//                                       CheckedOut, NoShow, Scheduled
//   T N|types     SetAppointmentType    B            ScheduleApp
//   M n           the type submenu: 0 General, 1 to 50 mnoSchedulePatientType
//   A N|text|start|end|id|status|recurrence|patient  AddAppointment
//   I N|id|key|patient  SetAppId        S APP|status SetStatus
//   s APP         GetStatus             k APP        CheckCurrentAppStatus
//   U APP|status  UpdateStatus          u status     UpdateCurrentAppStatus
//   m n           item n of the appointment menu     n n  item n of the other menu
//   e             mnoDeleteApp_Click    L            cmdLoad_Click
//   v             the pane's Save button             F    FocusControl
//   R N           RefreshSchedule       D N|minutes  DayIncrementN
//   p N|time      DisplayTopIndex       H flags      what the host answers (below)
//   Y / N         answer Yes / No to questions
// Gestures, each on column N's day view:
//   c N|time  click at      C N|time  right click at    l N|time  select the slot
//   o N|key   click on      O N|key   right click on    b N|key   double click on
//   y N|time|text  type     z N|key|end  resize         x N|key   delete
//   d N|key|N2|time  drag to column N2                  w N|date  the user's date
//   g N|time  scroll to
// The grid of a column whose slot length was never picked shows 5-minute slots
// from 8:00 AM, so the first two hours or so; D brings the longer slots.
//
// The host answers AddApptWithPatient with SetAppId and FocusControl ("a" in
// the flags), UpdateAppStatus with UpdateCurrentAppStatus and FocusControl
// ("s"), and the other busy events with FocusControl ("f"); all three at start.
// Then, from inside any of its events, and from the message loop the control
// yields to when it moves a column's top time, it runs its next line.
//
// Checks besides the rule of every target: in every day view the keys grow in
// the order of the set, every appointment there knows its view, and at most one
// is selected.

#include "fuzz_support.h"

#include <QuorvaneScheduler/control_internals.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quorvane::fuzz {
namespace {

// Appointments the host holds on to, the oldest dropped first.
constexpr std::size_t kKept = 32;

class BookingHost final : public ctlSchedulerEvents {
public:
    explicit BookingHost(std::string_view input) : script(input) {}

    void AddApptWithPatient(Str strResourceNumber, Str) override {
        if (answerBookings) {
            SchedulerWidgets& w = widgetsOf(*control);
            const std::int32_t key = numberArg(w.txtAppKey.text);
            const std::string patient = w.txtAppPatEID.text;
            attempt(
                [&] { control->SetAppId(strResourceNumber, "B" + std::to_string(++booked), key, patient); });
            attempt([&] { control->FocusControl(); });
        }
        reenter();
    }
    void UpdateAppStatus(Str, Variant& strStatus) override {
        if (answerStatus) {
            attempt([&] { control->UpdateCurrentAppStatus(strStatus.toString()); });
            attempt([&] { control->FocusControl(); });
        }
        reenter();
    }
    void ResourceOnClick(std::int16_t, Str, const Variant&) override { reenter(); }
    void ResourceBeforeRemove(Str, Str) override { endBusyAndReenter(); }
    void ResourceAfterResize(Str, Str) override { endBusyAndReenter(); }
    void ResourceAfterDrag(Str, Str) override { endBusyAndReenter(); }
    void AppointmentSelected(Str) override { endBusyAndReenter(); }
    void SaveAdditionalAppInfo(Str) override { endBusyAndReenter(); }

    void run(const Line& line);
    void keep(const AppointmentRef& app);
    void keepAll();

    Script script;
    ctlScheduler* control = nullptr;
    ScriptedBoxes* boxes = nullptr;
    bool answerBookings = true, answerStatus = true, endBusy = true;
    int booked = 0;
    std::vector<AppointmentRef> kept;

private:
    void reenter() {
        keepAll();
        script.runHostLine([this](const Line& line) { run(line); });
    }
    void endBusyAndReenter() {
        if (endBusy) attempt([&] { control->FocusControl(); });
        reenter();
    }
    AppointmentRef appointment(std::string_view ref);
    PVDayView* view(std::string_view number);
};

void BookingHost::keep(const AppointmentRef& app) {
    if (!app || std::find(kept.begin(), kept.end(), app) != kept.end()) return;
    if (kept.size() == kKept) kept.erase(kept.begin());
    kept.push_back(app);
}

void BookingHost::keepAll() {
    keep(stateOf(*control).objCurrentApp);
    for (const DayViewRef& v : widgetsOf(*control).dvwResource)
        for (const AppointmentRef& app : v->appointmentSet().items())
            keep(app);
}

PVDayView* BookingHost::view(std::string_view number) {
    const int index = indexArg(number);
    if (index < 0 || index >= kColumns) return nullptr;
    return widgetsOf(*control).dvwResource[static_cast<std::size_t>(index)].get();
}

AppointmentRef BookingHost::appointment(std::string_view ref) {
    if (!ref.empty() && ref[0] == '#') {
        if (kept.empty()) return nullptr;
        return kept[static_cast<std::size_t>(numberArg(ref.substr(1)) & 0x7fffffff) % kept.size()];
    }
    const std::size_t colon = ref.find(':');
    PVDayView* v = colon == std::string_view::npos ? nullptr : view(ref.substr(0, colon));
    return v ? v->appointmentSet().Item(numberArg(ref.substr(colon + 1))) : nullptr;
}

// Item n of a menu, counted round the menu; separators have no handler.
void clickMenuItem(const PopupMenu& menu, std::string_view n) {
    if (menu.items.empty()) return;
    MenuItem* item = menu.items[static_cast<std::size_t>(numberArg(n) & 0x7fffffff) % menu.items.size()];
    if (item->onClick) item->onClick();
}

void BookingHost::run(const Line& line) {
    ctlScheduler& c = *control;
    SchedulerWidgets& w = widgetsOf(c);
    const std::string text(line.args);
    const auto two = argsOf(line.args, 2);
    const auto three = argsOf(line.args, 3);
    switch (line.command) {
    case 'P':
        w.txtPatEID.text = two[0];
        w.txtPatName.text = two[1];
        return;
    case 'K':
        w.txtAppComments.userType(two[0]);
        w.txtAppChiefComplaint.userType(two[1]);
        return;
    case 'Q':
        return c.setClearCommentsEnabled(text);
    case 'Z': {
        const auto a = argsOf(line.args, 6);
        c.ccCancelled = numberArg(a[0]), c.ccConfirmed = numberArg(a[1]), c.ccCheckedIn = numberArg(a[2]);
        c.ccCheckedOut = numberArg(a[3]), c.ccNoShow = numberArg(a[4]), c.ccScheduled = numberArg(a[5]);
        return;
    }
    case 'T':
        return c.SetAppointmentType(two[1], two[0]);
    case 'B':
        return c.ScheduleApp();
    case 'M': {
        const int n = numberArg(text);
        if (n == 0 && w.mnoSchedulePatientGeneral.onClick) w.mnoSchedulePatientGeneral.onClick();
        if (n >= 1 && n <= static_cast<int>(w.mnoSchedulePatientType.size())) {
            const MenuItem& item = w.mnoSchedulePatientType[static_cast<std::size_t>(n - 1)];
            if (item.onClick) item.onClick();
        }
        return;
    }
    case 'A': {
        const auto a = argsOf(line.args, 8);
        return c.AddAppointment(a[0], a[1], dateArg(a[2]), dateArg(a[3]), a[4], a[5], a[6], a[7]);
    }
    case 'I': {
        const auto a = argsOf(line.args, 4);
        return c.SetAppId(a[0], a[1], numberArg(a[2]), a[3]);
    }
    case 'S':
        return c.SetStatus(appointment(two[0]), two[1]);
    case 's':
        (void)c.GetStatus(appointment(text));
        return;
    case 'k':
        return c.CheckCurrentAppStatus(appointment(text));
    case 'U':
        return c.UpdateStatus(appointment(two[0]), two[1]);
    case 'u':
        return c.UpdateCurrentAppStatus(text);
    case 'm':
        return clickMenuItem(w.mnuRightClickSchedulerApp, text);
    case 'n':
        return clickMenuItem(w.mnuRightClickScheduler, text);
    case 'e':
        return c.mnoDeleteApp_Click();
    case 'L':
        return c.cmdLoad_Click();
    case 'v':
        if (w.cmdSaveAdditionalAppInfo.onClick) w.cmdSaveAdditionalAppInfo.onClick();
        return;
    case 'F':
        return c.FocusControl();
    case 'R':
        return c.RefreshSchedule(numberArg<std::int16_t>(text));
    case 'D':
        return c.setDayIncrement(indexArg(two[0]), two[1]);
    case 'p':
        c.DisplayTopIndex(dateArg(two[1]), two[0]);
        return;
    case 'H':
        answerBookings = text.find('a') != std::string::npos;
        answerStatus = text.find('s') != std::string::npos;
        endBusy = text.find('f') != std::string::npos;
        return;
    default:
        if (boxes->take(line.command)) return;
        break;
    }

    // The gestures, on a column's day view.
    PVDayView* v = view(two[0]);
    if (!v) return;
    switch (line.command) {
    case 'c':
        v->userClickAt(dateArg(two[1]));
        return;
    case 'C':
        v->userClickAt(dateArg(two[1]), true);
        return;
    case 'l':
        v->userSlot(dateArg(two[1]));
        return;
    case 'o':
        v->userClickOn(numberArg(two[1]));
        return;
    case 'O':
        v->userClickOn(numberArg(two[1]), true);
        return;
    case 'b':
        v->userDblClickOn(numberArg(two[1]));
        return;
    case 'y':
        v->userType(dateArg(three[1]), three[2]);
        return;
    case 'z':
        v->userResize(numberArg(three[1]), dateArg(three[2]));
        return;
    case 'x':
        v->userDelete(numberArg(two[1]));
        return;
    case 'w':
        v->userDate(dateArg(two[1]));
        return;
    case 'g':
        v->userScroll(dateArg(two[1]));
        return;
    case 'd': {
        const auto a = argsOf(line.args, 4);
        if (PVDayView* target = view(a[2])) v->userDrag(numberArg(a[1]), *target, dateArg(a[3]));
        return;
    }
    default:
        return;
    }
}

void checkViews(const ctlScheduler& c) {
    for (const DayViewRef& v : widgetsOf(c).dvwResource) {
        const auto& items = v->appointmentSet().items();
        int selected = 0;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (items[i]->view() != v.get()) fault("an appointment of a set does not know its view");
            if (i > 0 && items[i - 1]->Key() >= items[i]->Key()) fault("keys out of order in a set");
            selected += items[i]->Selected() ? 1 : 0;
        }
        if (selected > 1) fault(std::to_string(selected) + " appointments selected in one view");
    }
}

} // namespace
} // namespace quorvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quorvane::fuzz;
    return playInput<BookingHost>(data, size, [](BookingHost& host, Harness& h) {
        quorvane::ctlScheduler& c = *h.control;
        c.ccCancelled = 255, c.ccConfirmed = 65280, c.ccCheckedIn = 16711680;
        c.ccCheckedOut = 8421504, c.ccNoShow = 32896, c.ccScheduled = 8388736;
        attempt([&] { openPractice(c); });
        host.script.runTop(
            [&](const Line& line) {
                host.run(line);
                host.keepAll();
            },
            [&] { checkViews(c); });
    });
}
