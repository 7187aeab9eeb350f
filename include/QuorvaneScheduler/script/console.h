#pragma once
// The host console: one control, driven by a script, with one transcript line for
// everything that crosses the boundary between the control and its host.


#include <QuorvaneScheduler/ctl_scheduler.h>
#include <QuorvaneScheduler/members.h>

#include <deque>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {
class PopupMenu;
}

namespace quorvane::host {

// The reader's syntax tree (not installed).
struct Command;
struct Expr;
struct Segment;
struct Gesture;
using Chain = std::vector<Segment>; // a dotted path of the language

// A value as the transcript prints it: a literal a script could read back.
std::string printValue(const Variant& v);

// The console's help: the language, and every member and event with its arguments.
std::string usageText();
std::string listText();
// " (did you mean A, B?)" with the names closest to a misspelt one, or "".
std::string nearestNames(std::string_view name, const std::vector<std::string>& candidates);

// The host console: plays scripts of the host language against a control of
// its own and prints the transcript.
class Console {
public:
    Console(std::ostream& out, OleDate today); // prints to `out`; today is fixed
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // Runs a whole script. Returns the exit status: 0 when it ran to its end, 2
    // for a script error (reported on `err` as NAME:LINE: message).
    int run(std::string_view scriptName, std::string_view script, std::ostream& err);

    // Runs one line as if it stood at `line` of a script; ScriptError escapes.
    void runLine(std::string_view text, int line);

    ctlScheduler& control() { return *control_; } // the control the scripts drive
    // Names a misspelt NAME may have meant: members of the kind, and script variables.
    std::string suggest(std::string_view name, std::initializer_list<MemberKind> kinds);
    std::string suggestWidget(std::string_view name);
    Platform& platform() { return platform_; }

private:
    struct Handler {
        std::string event;
        std::string text;
        int line = 0;
        bool once = false;
        std::uint64_t id = 0;
    };
    class Boxes;

    void execute(const Command& cmd);
    void emit(std::string_view text);
    void onEvent(std::string_view name, std::vector<Variant>& args);

    // Values and references.
    Variant evaluate(const Expr& e);
    DayViewRef dayView(const Segment& seg);
    AppointmentRef appointment(const Segment& seg);
    // wvwWeekView.Days(K); a key the week view does not take fails as the view fails.
    DayViewRef weekDay(const Segment& days);
    std::int32_t wholeNumber(const Expr& e, const char* what);

    // Members.
    void doSet(const Command& cmd);
    void doGet(const Command& cmd);
    void doCall(const Command& cmd);
    Variant callMember(const MemberInfo& m, const std::vector<Expr>& exprs, std::vector<Variant> args);

    // Inspection paths (inspect.cpp).
    void inspect(const Chain& path);
    Variant widgetProperty(const Chain& path);
    // The pick list a reference names, or nullptr when it names none; an index
    // past the columns is SubscriptOutOfRange.
    PickList* pickList(const Segment& seg);
    Variant stateField(const Segment& field);
    Variant dayViewMember(PVDayView& view, const Chain& path);
    void printAppointmentSet(const PVDayView& view);
    // wvwWeekView.WeekDate, wvwWeekView.Days(K).MEMBER, frmWeekView and its widgets.
    bool inspectWeekView(const Chain& path);
    Variant appointmentField(const Appointment& app, const Segment& field);
    Variant menuItemProperty(const MenuItem& item, const Chain& path);

    // Gestures (gestures.cpp).
    void doGesture(const Gesture& g);
    void dayViewGesture(const Gesture& g, PVDayView& view);

    std::ostream& out_;
    Platform platform_;
    std::unique_ptr<Boxes> boxes_;
    std::unique_ptr<EventsByName> sink_;
    std::unique_ptr<ctlScheduler> control_;

    std::map<std::string, Variant> variables_;
    std::vector<Handler> handlers_;
    std::uint64_t nextHandlerId_ = 1;
    std::deque<bool> answers_; // queued answers to Yes/No boxes: true for Yes
    PopupMenu* openMenu_ = nullptr;
    int depth_ = 0;
    int line_ = 0;
};

} // namespace quorvane::host
