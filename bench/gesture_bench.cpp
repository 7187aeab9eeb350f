// Every kind of gesture and command in a full schedule: ten columns, each with N
// appointments (300, and ten times that) and 101 templates, and a host that
// answers every event as a practice's software does. Run with
// --benchmark_repetitions to read medians; the 3000 rows show how each kind
// grows with the size of a day.

#include <QuorvaneScheduler/control_internals.h>

#include <benchmark/benchmark.h>

#include <string>

using namespace quorvane;

namespace {

struct YesBoxes final : MessageBoxService {
    MsgBoxResult show(std::string_view, MsgBoxButtons buttons, std::string_view) override {
        return buttons == MsgBoxButtons::OK ? MsgBoxResult::OK : MsgBoxResult::Yes;
    }
};

// A practice's host: it loads a column when asked, names bookings, applies the
// statuses asked for and ends every busy phase.
class PracticeHost final : public ctlSchedulerEvents {
public:
    PracticeHost(ctlScheduler& c, int perColumn) : c_(c), perColumn_(perColumn) { c_.setEventSink(this); }

    bool loading = true;

    void ResourceOnClick(std::int16_t n, const std::string&, const Variant& date) override {
        if (loading) load(std::to_string(n), date.toDate());
    }
    void load(const std::string& column, OleDate day) {
        loadAppointments(column, day);
        for (int t = 0; t < kTemplatesPerColumn; ++t) {
            const OleDate start = addMinutes(day, 6 * 60 + t * 5);
            c_.AddResourceTemplate(start, addMinutes(start, 30), "Block", t % 2 ? "#80FF80" : "C0C0FF",
                                   column, "Y");
        }
    }
    void loadAppointments(const std::string& column, OleDate day) {
        for (int i = 0; i < perColumn_; ++i) {
            // Spread over the business day, so that many of them stand side by side.
            const OleDate start = addMinutes(day, 8 * 60 + (i * 540) / perColumn_);
            c_.AddAppointment(column, "Patient " + std::to_string(i), start, addMinutes(start, 15),
                              std::to_string(1000 + i), "Scheduled", i % 7 ? "" : "77",
                              std::to_string(5000 + i));
        }
    }
    void AddApptWithPatient(const std::string& column, const std::string&) override {
        c_.SetAppId(column, "9000", std::stoi(widgetsOf(c_).txtAppKey.text), "5531");
        c_.FocusControl();
    }
    void UpdateAppStatus(const std::string&, Variant& status) override {
        c_.UpdateCurrentAppStatus(status.toString());
        c_.FocusControl();
    }
    void ResourceBeforeRemove(const std::string&, const std::string&) override { c_.FocusControl(); }
    void ResourceAfterResize(const std::string&, const std::string&) override { c_.FocusControl(); }
    void ResourceAfterDrag(const std::string&, const std::string&) override { c_.FocusControl(); }

private:
    ctlScheduler& c_;
    int perColumn_;
};

std::string groupsText() {
    std::string s;
    for (const char* group : {"10~Main Office", "20~Annex"})
        for (int r = 1; r <= kColumns; ++r)
            s += std::string(s.empty() ? "" : "~~") + group + "~Y~" + std::to_string(500 + r) + "~Resource " +
                 std::to_string(r) + "~Providers~Dentists";
    return s;
}

std::string defaultsText() {
    std::string s;
    for (const char* group : {"10~Main Office", "20~Annex"})
        for (int c = 1; c <= kColumns; ++c)
            s += std::string(s.empty() ? "" : "~~") + group + "~" + std::to_string(500 + c) + "~" +
                 std::to_string(c);
    return s;
}

// A control in a full schedule of N appointments a column.
struct Schedule {
    explicit Schedule(int perColumn) : host(control, perColumn) {
        platform.clock.setToday(makeDate(2026, 11, 23));
        platform.messageBoxes = &boxes;
        control.ccScheduled = 1, control.ccConfirmed = 2, control.ccCheckedIn = 3;
        control.ccCheckedOut = 4, control.ccNoShow = 5, control.ccCancelled = 6;
        control.ResizeControl(900, 1800);
        control.setResourceGroupViews("10~Main Office~5~10~~20~Annex~5~10");
        control.setResourceGroupDefaults(defaultsText());
        control.setResourceGroups(groupsText()); // Annex, the last flagged group
        for (int i = 0; i < kColumns; ++i)
            control.setDayIncrement(i, "15");
        widgetsOf(control).txtPatEID.text = "5531";
        widgetsOf(control).txtPatName.text = "Ada Byron";
    }
    PVDayView& view(int i) { return *widgetsOf(control).dvwResource[static_cast<std::size_t>(i)]; }
    // The earliest appointment of a column, which stands at the top of its grid.
    std::int32_t firstKey(int i) { return view(i).appointmentSet().FirstAppointment()->Key(); }

    Platform platform;
    YesBoxes boxes;
    ctlScheduler control{platform};
    PracticeHost host;
};

OleDate at(int h, int m) { return makeTime(h, m, 0); }

void BM_ClickOnASlot(benchmark::State& state) {
    Schedule s(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(s.view(0).userClickAt(at(9, 15)));
}

void BM_ClickOnAnAppointment(benchmark::State& state) {
    Schedule s(static_cast<int>(state.range(0)));
    const std::int32_t key = s.firstKey(0);
    for (auto _ : state)
        benchmark::DoNotOptimize(s.view(0).userClickOn(key));
}

// Back and forth between two columns: each drop makes a new appointment in the
// target and removes the original, so the sets keep their sizes.
void BM_DragAcrossColumns(benchmark::State& state) {
    Schedule s(static_cast<int>(state.range(0)));
    int from = 0, to = 1;
    std::int32_t key = s.firstKey(from);
    for (auto _ : state) {
        s.view(from).userDrag(key, s.view(to), at(8, 0));
        key = s.view(to).appointmentSet().items().back()->Key();
        std::swap(from, to);
    }
    if (s.view(0).appointmentSet().Count() + s.view(1).appointmentSet().Count() != 2 * state.range(0))
        state.SkipWithError("a drag lost or doubled an appointment");
}

void BM_Resize(benchmark::State& state) {
    Schedule s(static_cast<int>(state.range(0)));
    const std::int32_t key = s.firstKey(0);
    bool longer = false;
    for (auto _ : state)
        s.view(0).userResize(key, (longer = !longer) ? at(8, 45) : at(8, 15));
}

// The user's Delete answered Yes; the appointment comes back between runs.
void BM_Delete(benchmark::State& state) {
    Schedule s(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        s.control.AddAppointment("1", "Gone", makeDateTime(2026, 11, 23, 8, 0, 0),
                                 makeDateTime(2026, 11, 23, 8, 15, 0), "1", "Scheduled", "", "2");
        const std::int32_t key = s.view(0).appointmentSet().items().back()->Key();
        state.ResumeTiming();
        s.view(0).userDelete(key);
    }
}

// A right click on an appointment, "Check In", and the host's answer.
void BM_StatusChange(benchmark::State& state) {
    Schedule s(static_cast<int>(state.range(0)));
    const std::int32_t key = s.firstKey(0);
    for (auto _ : state) {
        s.view(0).userClickOn(key, true);
        widgetsOf(s.control).mnoCheckIn.onClick();
    }
}

// A click on a slot, a plain booking, and the host's SetAppId and FocusControl;
// the booking is taken away again between runs.
void BM_BookingWithHandshake(benchmark::State& state) {
    Schedule s(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        s.view(0).userClickAt(at(9, 15));
        s.control.ScheduleApp();
        state.PauseTiming();
        s.view(0).appointmentSet().Remove(s.view(0).appointmentSet().items().back()->Key());
        state.ResumeTiming();
    }
}

// The control's share of a group switch: every column reset and emptied, its
// grid wiped and its default loaded. The host answers each ResourceOnClick, but
// its own loading of the days is refilled between runs and not counted (the
// templates the switch forgets need no refill: it wipes the grids regardless).
void BM_GroupSwitch(benchmark::State& state) {
    Schedule s(static_cast<int>(state.range(0)));
    s.host.loading = false;
    PickList& groups = widgetsOf(s.control).cmbResourceGroup;
    int next = 0;
    for (auto _ : state) {
        state.PauseTiming();
        for (int c = 1; c <= kColumns; ++c)
            s.host.loadAppointments(std::to_string(c), s.view(c - 1).CurrentDate());
        state.ResumeTiming();
        groups.setListIndex(next);
        next = 1 - next;
    }
}

// The whole switch as the user waits for it, the host loading ten full days.
void BM_GroupSwitchWithReload(benchmark::State& state) {
    Schedule s(static_cast<int>(state.range(0)));
    PickList& groups = widgetsOf(s.control).cmbResourceGroup;
    int next = 0;
    for (auto _ : state) {
        groups.setListIndex(next);
        next = 1 - next;
    }
}

#define GESTURE(name) BENCHMARK(name)->Arg(300)->Arg(3000)->Unit(benchmark::kMicrosecond)
GESTURE(BM_ClickOnASlot);
GESTURE(BM_ClickOnAnAppointment);
GESTURE(BM_DragAcrossColumns);
GESTURE(BM_Resize);
GESTURE(BM_Delete);
GESTURE(BM_StatusChange);
GESTURE(BM_BookingWithHandshake);
GESTURE(BM_GroupSwitch)->Iterations(200);
BENCHMARK(BM_GroupSwitchWithReload)->Arg(300)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
