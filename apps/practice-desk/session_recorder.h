#pragma once
// Writes a session of the desk as a script of the host console, and the
// transcript the console prints for it, so that replaying the script with
// scheduler-host gives the same transcript byte for byte.
//
// Everything that crosses the boundary between the control and the desk comes
// through here: the desk's calls and property writes, the user's gestures, the
// events with what the desk did inside each, message boxes, menus, change
// reports. Each top-level step (a gesture, or a call the desk makes on its own)
// becomes one script line, preceded by the `answer` lines its message boxes
// need and the `once` lines that make a scripted host do inside its events what
// the desk did. A step is written when the next one begins, or at flush().

#include <QuorvaneScheduler/components/platform.h>
#include <QuorvaneScheduler/errors.h>

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace practice {

class SessionRecorder {
public:
    // Either stream may be null. The header fixes today and the screen.
    SessionRecorder(std::ostream* script, std::ostream* transcript, quorvane::OleDate today,
                    const quorvane::Screen& screen);
    ~SessionRecorder() { flush(); }
    SessionRecorder(const SessionRecorder&) = delete;
    SessionRecorder& operator=(const SessionRecorder&) = delete;

    void gesture(const quorvane::UserGesture& g);
    // A call or property write of the desk ("call" or "set"), then how it ended.
    void hostCall(std::string_view verb, std::string_view name, const std::vector<quorvane::Variant>& args);
    void hostCallDone(std::string_view verb, const quorvane::Variant& result);
    void hostCallFailed(const quorvane::RuntimeError& e);
    void eventRaised(std::string_view name, const std::vector<quorvane::Variant>& args);
    void eventDone();
    void messageBox(std::string_view text, quorvane::MsgBoxButtons buttons, std::string_view title,
                    quorvane::MsgBoxResult answer);
    void popup(std::string_view menu) { line("popup " + std::string(menu)); }
    void changed(std::string_view property) { line("changed " + std::string(property)); }
    void modal(std::string_view form) { line("modal " + std::string(form)); }
    void untrapped(const quorvane::RuntimeError& e);

    // Writes the step in progress and flushes both streams.
    void flush();

private:
    struct Raise {
        std::string event;
        std::vector<std::string> commands; // what the desk did inside, as script commands
    };
    struct Line {
        int depth = 0;
        std::string text;
        int raise = -1; // where that raise's handler registrations are echoed, or -1
    };
    void begin(std::string text, bool byUser);
    void line(std::string text);
    int depth() const { return static_cast<int>(open_.size()); }

    std::ostream* script_;
    std::ostream* transcript_;
    // The step in progress.
    bool started_ = false;
    std::string step_;
    std::string stamp_;
    std::vector<bool> answers_;
    std::vector<Raise> raises_;
    std::vector<Line> lines_;
    std::vector<int> open_; // the raises whose handlers run now, innermost last
    bool deskRun_ = false;  // the last step was a call of the desk's own
    std::string lastTime_;  // of the last comment written
};

} // namespace practice
