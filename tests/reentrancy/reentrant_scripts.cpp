// Writes a seeded host script in which the host re-enters the control from
// inside its events: handlers on all 37 events reload columns, switch groups,
// assign the catalogue again, add and delete appointments, change dates and run
// menu commands, while the user clicks, drags, resizes, deletes and answers
// message boxes, and gestures run from inside handlers several levels deep.
//
// The script is grown against a live console, so every gesture aims at
// something that is there when it runs; a block that still ends in a script
// error is taken back (the console is rebuilt from the script so far) and
// another is drawn. The script therefore runs to its end by construction; what
// the test checks is that it does so under the sanitizers, and prints the same
// transcript in every build.
//
// usage: reentrant-scripts SEED LINES > script.host

#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/script/console.h>

#include <iostream>
#include <random>
#include <sstream>

using namespace quorvane;
using namespace quorvane::host;

namespace {

using Lines = std::vector<std::string>;

Lines linesOf(const char* text) {
    Lines out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        out.push_back(line);
    return out;
}

const char* const kPreamble = R"(today #1/15/2008#
set ccScheduled = 16761024
set ccConfirmed = 65535
set ccCheckedIn = 65280
set ccCheckedOut = 12632256
set ccNoShow = 255
set ccCancelled = 8421504
set ImagingEnabled = "Y"
set TaskingEnabled = "true"
call ResizeControl(700, 1000)
set ResourceGroupViews = "10~Main Office~2~3~~20~Annex~1~1"
set ResourceGroupDefaults = "10~Main Office~501~1~~10~Main Office~502~2~~20~Annex~610~1"
set ResourceGroups = "10~Main Office~Y~501~Dr. Ortiz~Providers~Dentists~~10~Main Office~Y~502~Dr. Park~Providers~Hygiene~~10~Main Office~Y~503~Room B~Rooms~Exam~~20~Annex~N~610~Room A~Rooms~Exam"
)";

// The host's standing answers: it loads a column when asked, ends every busy
// phase, names bookings and fills the week and the panel. None raises its own
// event again, so they cannot recurse.
const char* const kStandingHandlers =
    R"(on ResourceOnClick call AddAppointment($1, "Stored", #1/15/2008 9:00 AM#, #1/15/2008 9:30 AM#, "1000", "Scheduled", "", "55")
on ResourceOnClick call AddAppointment($1, "Series", #1/15/2008 10:00 AM#, #1/15/2008 11:00 AM#, "1001", "Confirmed", "77", "56")
on ResourceOnClick call AddResourceTemplate(#1/15/2008 12:00 PM#, #1/15/2008 1:00 PM#, "Lunch", "#C0C0C0", $1, "Y")
on ResourceOnClick call DisplayTopIndex(#1/15/2008 8:00 AM#, $1)
on AddApptWithPatient call SetAppId($1, "2000", ${AppKey}, "57")
on AddApptWithPatient call FocusControl
on UpdateAppStatus call UpdateCurrentAppStatus($2)
on UpdateAppStatus call FocusControl
on SaveAdditionalAppInfo call FocusControl
on AppointmentSelected call FocusControl
on ResourceBeforeRemove call FocusControl
on ResourceAfterResize call FocusControl
on ResourceAfterDrag call FocusControl
on OnWeekLoad call AddWkvwAppointment("1", "Week", #1/15/2008 9:00 AM#, #1/15/2008 9:30 AM#, "3000", "Scheduled", 2)
on OnWeekLoad call ShowWkvw
on PatientSearch set PatEID = "58"
on PatientSearch set PatName = "Ada Byron"
on PatientSearch call PatientLoaded
)";

// What a handler may do from inside any event: never a script error, whatever
// state the control is in when it runs.
const Lines kReentrantCommands = linesOf(R"(call RefreshSchedule(1)
call RefreshSchedule(2)
call RefreshSchedule(3)
user pick cmbResourceGroup "Annex"
user pick cmbResourceGroup "Main Office"
set ResourceGroups = "10~Main Office~Y~501~Dr. Ortiz~Providers~Dentists"
set Resources = "1~2~3~4"
call AddAppointment("1", "Inside", #1/15/2008 9:15 AM#, #1/15/2008 9:45 AM#, "1100", "No-Show", "", "59")
call AddAppointment("2", "Inside", #1/15/2008 2:00 PM#, #1/15/2008 3:00 PM#, "1101", "Scheduled", "9", "60")
call SetResourceAndDate("502", 1, "1/16/2008")
set Resource1Date = #1/17/2008#
set Resource2Date = #1/15/2008#
set DayIncrement1 = "15"
set DayIncrement2 = "60"
call mnoDeleteApp_Click
call mnoCheckIn_Click
call mnoWeekView_Click
call mnoPrint_Click
call ScheduleApp
call cmdLoad_Click
call cmdPatientSearch_Click
call NextAvailableClick
call mnoShowToday_Click
call UpdateCurrentAppStatus("Cancelled")
call SetAppointmentType("New|45|First|Intake|7~Short|||", "1")
call ClearPatient
call FocusControl
set UserControlEnabled = False
answer Yes
answer No
user key 26
user key 19
user calendar #1/16/2008#
user date dvwResource(0) #1/15/2008#
user slot dvwResource(1) #9:00 AM#
user scroll dvwResource(0) to #11:00 AM#
user type txtAppComments "From inside"
user click cmdValidatePatient
get ResourceNumber)");

// The items each right-click menu offers a pick; some twice, to draw them more often.
const Lines kFreeSlotPicks =
    linesOf("mnoSchedulePatientGeneral\nmnoFindNextAvailable\nmnoPrint\nmnoWeekView\n"
            "mnoShowToday\nmnoRefreshAllSchedules\nmnoSchedulePatientGeneral");
const Lines kAppointmentPicks = linesOf("mnoCheckIn\nmnoConfirm\nmnoCancelled\nmnoDeleteApp\n"
                                        "mnoAddEditRecurrenceApp\nmnoOpenQuickPay\nmnoDeleteApp");

struct Generator {
    Generator(unsigned seed, int lines) : rng_(seed), lines_(lines) { rebuild(); }

    std::string run() {
        for (const std::string fixed :
             {kPreamble, kStandingHandlers, "set PatEID = \"57\"\nset PatName = \"Grace Hopper\"\n"})
            if (!tryBlock(fixed)) throw std::logic_error("a fixed block failed: " + fixed);
        for (int sinceReset = 0; std::count(script_.begin(), script_.end(), '\n') < lines_;) {
            std::string block = draw();
            // Pending once handlers are dropped now and then, so that their
            // chains stay well within the console's nesting limit.
            if (++sinceReset > 200) block = "off\n" + std::string(kStandingHandlers) + block, sinceReset = 0;
            if (!tryBlock(block)) rebuild();
        }
        return script_;
    }

    int pick(std::size_t n) { return std::uniform_int_distribution<int>(0, static_cast<int>(n) - 1)(rng_); }
    std::string any(const Lines& items) { return items[static_cast<std::size_t>(pick(items.size()))]; }

    void rebuild() {
        out_.str("");
        console_ = std::make_unique<Console>(out_, makeDate(2008, 1, 15));
        std::ostringstream ignored;
        if (!script_.empty() && console_->run("gen", script_, ignored) != 0)
            throw std::logic_error("the accepted script no longer runs");
    }

    // Runs a block on the live console; keeps it when it runs without a script error.
    bool tryBlock(const std::string& block) {
        std::ostringstream err;
        out_.str("");
        if (console_->run("gen", block, err) != 0) return false;
        script_ += block;
        return true;
    }

    ctlScheduler& control() { return console_->control(); }
    const PVDayView& column(int i) { return *widgetsOf(control()).dvwResource[static_cast<std::size_t>(i)]; }

    // A visible column and a time on its grid, or -1.
    int visibleColumn(OleDate& time) {
        for (int tries = 0; tries < 6; ++tries) {
            const int i = pick(3);
            const int minute = 8 * 60 + 5 * pick(24);
            time = makeTime(minute / 60, minute % 60, 0);
            if (column(i).Visible && column(i).pointOfTime(time)) return i;
        }
        return -1;
    }

    // An appointment the user can aim at in column i, or 0.
    std::int32_t visibleKey(int i) {
        if (!column(i).Visible) return 0;
        std::vector<std::int32_t> keys;
        for (const AppointmentRef& a : column(i).appointmentSet().items())
            if (column(i).pointOfAppointment(a->Key())) keys.push_back(a->Key());
        return keys.empty() ? 0 : keys[static_cast<std::size_t>(pick(keys.size()))];
    }

    // A gesture of the user on what is there now, or "" when nothing fits.
    std::string gesture() {
        OleDate t, t2;
        const int i = visibleColumn(t);
        if (i < 0) return "";
        const std::int32_t key = visibleKey(i);
        const auto at = [](OleDate when) { return " #" + generalDateText(when) + "#"; };
        const std::string view = "dvwResource(" + std::to_string(i) + ")", on = " " + std::to_string(key);
        // clang-format off
        switch (pick(9)) {
        case 0: return "user click " + view + " at" + at(t);
        case 1: return key ? "user click " + view + " on" + on : "";
        case 2: return key ? "user dblclick " + view + " on" + on : "";
        case 3: {
            const int j = visibleColumn(t2);
            return key && j >= 0 ? "user drag " + view + on + " to dvwResource(" + std::to_string(j) + ")" + at(t2) : "";
        }
        case 4: return key ? "user resize " + view + on + " to" + at(t) : "";
        case 5: return key ? any({"answer Yes", "answer No"}) + "\nuser delete " + view + on : "";
        case 6: return "user type " + view + " at" + at(t) + " " + any({"\"Walk-in\"", "\"  \""});
        case 7: return "user rightclick " + view + (key ? " on" + on : " at" + at(t));
        default: return "user scroll " + view + " to" + at(t);
        }
        // clang-format on
    }

    // A menu item the open menu shows, after a right click that opened one.
    std::string menuPick() {
        const std::string text = out_.str();
        const bool app = text.find("popup mnuRightClickSchedulerApp") != std::string::npos;
        if (!app && text.find("popup mnuRightClickScheduler") == std::string::npos) return "";
        return "user menu " + any(app ? kAppointmentPicks : kFreeSlotPicks) + "\n";
    }

    std::string draw() {
        const int kind = pick(10);
        if (kind < 2) {
            // Handlers on any of the 37 events, each doing something re-entrant.
            const auto& events = eventTable();
            std::string block;
            for (int n = 1 + pick(3); n > 0; --n) {
                const EventInfo& e = events[static_cast<std::size_t>(pick(events.size()))];
                if (e.name == "RefreshAllSchedules") continue; // kept for gestures from inside
                block += "once " + std::string(e.name) + " " + any(kReentrantCommands) + "\n";
            }
            return block;
        }
        if (kind == 3) return any(kReentrantCommands) + "\n";
        if (!control().UserControlEnabled()) return "call FocusControl\n";
        const std::string g = gesture();
        if (g.empty()) return "";
        // A gesture from inside an event raised at once by the call after it.
        if (kind == 2)
            return g.find('\n') != std::string::npos
                       ? ""
                       : "once RefreshAllSchedules " + g + "\ncall mnoRefreshAllSchedules_Click\n";
        if (g.rfind("user rightclick", 0) != 0) return g + "\n";
        // A right click's menu is picked from on the next line when it opened.
        if (tryBlock(g + "\n")) return menuPick();
        rebuild();
        return "";
    }

    std::mt19937 rng_;
    int lines_;
    std::ostringstream out_;
    std::unique_ptr<Console> console_;
    std::string script_;
};

} // namespace

int main(int argc, char** argv) try {
    if (argc != 3) return std::cerr << "usage: reentrant-scripts SEED LINES\n", 1;
    std::cout << Generator(static_cast<unsigned>(std::stoul(argv[1])), std::stoi(argv[2])).run();
    return 0;
} catch (const std::exception& e) {
    std::cerr << "reentrant-scripts: " << e.what() << "\n";
    return 1;
}
