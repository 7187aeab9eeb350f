#pragma once
// The services the platform gives a control: message boxes, today's date, the
// screen's twips per pixel, the message-loop yield, and the container that holds
// the control. Each is a small object the host (or a test) can replace.

#include <QuorvaneScheduler/export.h>
#include <QuorvaneScheduler/ole_date.h>
#include <QuorvaneScheduler/variant.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvane {

// Runs a handler from a copy: a handler that clears or replaces its own hook
// (a one-shot handler) would otherwise destroy the function that is running.
template <class Signature, class... Args>
void callHook(const std::function<Signature>& hook, Args&&... args) {
    if (!hook) return;
    const std::function<Signature> copy = hook;
    copy(std::forward<Args>(args)...);
}

class RuntimeError;
class Form;

// The buttons of a message box: OK alone, or Yes and No.
enum class MsgBoxButtons { OK, YesNo };
// The button the user took.
enum class MsgBoxResult { OK, Yes, No };

// Answers message boxes. The default answers OK to an OK box and No to a question.
class QUORVANE_EXPORT MessageBoxService {
public:
    virtual ~MessageBoxService() = default;
    // An empty title is the default title.
    virtual MsgBoxResult show(std::string_view text, MsgBoxButtons buttons, std::string_view title) = 0;
};

// The answers of a platform whose host shows no boxes.
class QUORVANE_EXPORT DefaultMessageBoxService final : public MessageBoxService {
public:
    MsgBoxResult show(std::string_view, MsgBoxButtons buttons, std::string_view) override {
        return buttons == MsgBoxButtons::OK ? MsgBoxResult::OK : MsgBoxResult::No;
    }
};

// Today's date. Without a fixed date it reads the machine's local date.
class QUORVANE_EXPORT Clock {
public:
    OleDate today() const;                                            // today, at midnight
    void setToday(OleDate d) { fixed_ = true, today_ = datePart(d); } // fixes today's date
    void useSystemDate() { fixed_ = false; }                          // reads the machine's date again

private:
    bool fixed_ = false;
    OleDate today_{};
};

// The screen's size of a pixel in twips (1/1440 inch), across and down.
struct QUORVANE_EXPORT Screen {
    float twipsPerPixelX = 15.0f; // across
    float twipsPerPixelY = 15.0f; // down
};

// A gesture of the user as a script of the host console writes it after "user ":
// `pattern` with each "%" standing for the next of `values`, as in
// "drag dvwResource(0) % to dvwResource(2) %".
struct QUORVANE_EXPORT UserGesture {
    std::string pattern;         // the words, "%" for each value
    std::vector<Variant> values; // the values in order
};

// The container of the control: its enabled state, which widget has the focus,
// and the report of a changed property.
class QUORVANE_EXPORT Container {
public:
    // Whether the control takes the user's input; a change is reported to onEnabledChanged.
    bool enabled() const { return enabled_; }
    void setEnabled(bool on) {
        const bool changed = on != enabled_;
        enabled_ = on;
        if (changed) callHook(onEnabledChanged, on);
    }
    // Hooked by the window, which greys the control out while it is disabled.
    std::function<void(bool)> onEnabledChanged;

    // The name of the widget that has the focus.
    const std::string& activeControl() const { return active_; }
    void setActiveControl(std::string name) { active_ = std::move(name); }

    // Hooked by the host to hear "changed NAME".
    std::function<void(std::string_view)> onPropertyChanged;
    void propertyChanged(std::string_view name) {
        callHook(onPropertyChanged, name);
    }

    // Shows a form modally: the host's window runs the user's time with it and
    // returns when the user has closed it. Without a hook the user closes it at once.
    std::function<void(Form&)> onShowModal;

    // A run-time error that a handler of the control left untrapped while a
    // widget delivered the user's gesture. The widget reports it here and goes
    // on raising the rest of the gesture's events; without a hook it is dropped.
    std::function<void(const RuntimeError&)> onUntrappedError;
    void untrappedError(const RuntimeError& e) {
        callHook(onUntrappedError, e);
    }
    // Runs a handler that a user's gesture reached: a run-time error it leaves
    // goes to untrappedError, and the gesture goes on with its next event.
    void runForUser(const std::function<void()>& handler);

    // Hooked by a host that records the session: hears each gesture of the user
    // as it begins, before it raises anything. A gesture that starts while
    // another runs (a form closed from inside the command that showed it) is
    // part of that one and is not heard.
    std::function<void(const UserGesture&)> onUserGesture;
    // The span of a user's gesture: it ends when the scope goes.
    class GestureScope {
    public:
        explicit GestureScope(Container* c) : c_(c) {}                                  // begins a span
        GestureScope(GestureScope&& o) noexcept : c_(std::exchange(o.c_, nullptr)) {} // takes a span over
        GestureScope(const GestureScope&) = delete;
        GestureScope& operator=(const GestureScope&) = delete;
        GestureScope& operator=(GestureScope&&) = delete;
        ~GestureScope() {
            if (c_) --c_->gestureDepth_;
        }

    private:
        Container* c_;
    };
    // Called by the widget that takes a gesture, once it knows the gesture will
    // happen; the gesture lasts as long as the scope.
    [[nodiscard]] GestureScope userGesture(std::string pattern, std::vector<Variant> values = {}) {
        GestureScope scope(this);
        if (++gestureDepth_ == 1) callHook(onUserGesture, UserGesture{std::move(pattern), std::move(values)});
        return scope;
    }

private:
    bool enabled_ = true;
    std::string active_;
    int gestureDepth_ = 0;
};

// Everything a control takes from its surroundings. The host owns it and keeps it
// alive as long as the control.
struct QUORVANE_EXPORT Platform {
    Platform() : messageBoxes(&defaultBoxes) {}
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    MessageBoxService* messageBoxes; // who answers the control's message boxes
    Clock clock;                     // today's date
    Screen screen;                   // the size of a pixel
    Container container;             // the control's surroundings in the host's window
    // Processing of pending messages; the host hooks what it wants to run there.
    std::function<void()> doEvents;
    void yieldToMessageLoop() {
        if (doEvents) doEvents();
    }
    // InitCommonControls: the platform's widget set is ready from here on.
    int commonControlsInitialised = 0;

    // A message box, as the control shows one.
    MsgBoxResult msgBox(std::string_view text, MsgBoxButtons buttons = MsgBoxButtons::OK,
                        std::string_view title = {}) {
        return messageBoxes->show(text, buttons, title);
    }

private:
    DefaultMessageBoxService defaultBoxes;
};

} // namespace quorvane
