#include <QuorvaneScheduler/script/script_reader.h>
#include "session_recorder.h"

#include <QuorvaneScheduler/script/console.h>

#include <QDateTime>

#include <map>

using namespace quorvane;

namespace practice {

namespace {

std::string clockNow() { return QTime::currentTime().toString("HH:mm:ss").toStdString(); }

std::string argumentList(const std::vector<Variant>& args, std::size_t count) {
    std::string out;
    for (std::size_t i = 0; i < count; ++i)
        out += (i ? ", " : "") + host::printValue(args[i]);
    return out;
}

std::string repeated(const std::string& s, int times) {
    std::string out;
    for (int i = 0; i < times; ++i)
        out += s;
    return out;
}

} // namespace

SessionRecorder::SessionRecorder(std::ostream* script, std::ostream* transcript, OleDate today,
                                 const Screen& screen)
    : script_(script), transcript_(transcript) {
    if (script_)
        *script_ << "' A session of the practice desk, recorded "
                 << QDateTime::currentDateTime().toString("M/d/yyyy 'at' HH:mm:ss").toStdString() << ".\n"
                 << "' Replay it with: scheduler-host FILE\n";
    // The console's own settings, which print nothing but their echo.
    std::vector<std::string> settings{"today #" + generalDateText(datePart(today)) + "#"};
    if (screen.twipsPerPixelX != 15.0f || screen.twipsPerPixelY != 15.0f)
        settings.push_back("twips " + host::printValue(Variant(screen.twipsPerPixelX)) + " " +
                           host::printValue(Variant(screen.twipsPerPixelY)));
    for (const std::string& s : settings) {
        if (script_) *script_ << s << "\n";
        if (transcript_) *transcript_ << "> " << s << "\n";
    }
}

void SessionRecorder::begin(std::string text, bool byUser) {
    flush();
    started_ = true;
    step_ = std::move(text);
    // The time stands before a gesture, and before a run of the desk's own
    // calls; it holds for the lines after it until the next.
    const std::string now = clockNow();
    if (byUser ? now != lastTime_ || deskRun_ : !deskRun_) {
        stamp_ = "' " + now + (byUser ? "" : " the desk");
        lastTime_ = now;
    }
    deskRun_ = !byUser;
}

void SessionRecorder::line(std::string text) {
    lines_.push_back({depth(), std::move(text), -1});
}

void SessionRecorder::gesture(const UserGesture& g) {
    std::string text = "user ";
    std::size_t next = 0;
    for (const char c : g.pattern) {
        if (c == '%' && next < g.values.size())
            text += host::printValue(g.values[next++]);
        else
            text += c;
    }
    begin(std::move(text), true);
}

void SessionRecorder::hostCall(std::string_view verb, std::string_view name, const std::vector<Variant>& args) {
    std::string text(verb);
    text += " ";
    text += name;
    if (verb == "set") {
        if (args.size() > 1) text += "(" + argumentList(args, args.size() - 1) + ")";
        text += " = " + (args.empty() ? std::string("Empty") : host::printValue(args.back()));
    } else if (!args.empty()) {
        text += "(" + argumentList(args, args.size()) + ")";
    }
    if (open_.empty()) {
        begin(std::move(text), false);
        return;
    }
    raises_[static_cast<std::size_t>(open_.back())].commands.push_back(text);
    line("> " + text);
}

void SessionRecorder::hostCallDone(std::string_view verb, const Variant& result) {
    if (verb == "call" && !result.isEmpty()) line("= " + host::printValue(result));
}

void SessionRecorder::hostCallFailed(const RuntimeError& e) {
    line("! " + std::string(errorKindName(e.kind())));
}

void SessionRecorder::untrapped(const RuntimeError& e) { hostCallFailed(e); }

void SessionRecorder::eventRaised(std::string_view name, const std::vector<Variant>& args) {
    if (!started_) begin({}, false);
    line("event " + std::string(name) + "(" + argumentList(args, args.size()) + ")");
    const int raise = static_cast<int>(raises_.size());
    raises_.push_back({std::string(name), {}});
    lines_.push_back({depth() + 1, {}, raise});
    open_.push_back(raise);
}

void SessionRecorder::eventDone() {
    if (!open_.empty()) open_.pop_back();
}

void SessionRecorder::messageBox(std::string_view text, MsgBoxButtons buttons, std::string_view title,
                                 MsgBoxResult answer) {
    std::string box = buttons == MsgBoxButtons::OK ? "msgbox(OK, " : "msgbox(YesNo, ";
    box += host::quote(text);
    if (!title.empty()) box += ", " + host::quote(title);
    box += ")";
    if (buttons == MsgBoxButtons::YesNo) {
        const bool yes = answer == MsgBoxResult::Yes;
        box += yes ? " -> Yes" : " -> No";
        answers_.push_back(yes);
    }
    line(std::move(box));
}

// A scripted host hears each raise of an event through `once` handlers, and a
// raise spends them all. So what the desk did in the k-th raise of an event is
// registered k times over: `once E once E CMD` registers, at the first raise, the
// handler that the second raise runs. Within a raise the registrations come
// first, so that a raise of the same event from inside the desk's own commands
// finds its handlers in place.
void SessionRecorder::flush() {
    if (started_) {
        std::map<std::string, std::vector<int>> byEvent; // raises of each event, in order
        std::vector<int> order;                          // events by their first raise
        std::vector<int> ordinal(raises_.size());
        for (std::size_t i = 0; i < raises_.size(); ++i) {
            std::vector<int>& list = byEvent[raises_[i].event];
            if (list.empty()) order.push_back(static_cast<int>(i));
            list.push_back(static_cast<int>(i));
            ordinal[i] = static_cast<int>(list.size());
        }
        // The last raise of each event in which the desk did something.
        std::map<std::string, int> lastBusy;
        for (std::size_t i = 0; i < raises_.size(); ++i)
            if (!raises_[i].commands.empty()) lastBusy[raises_[i].event] = ordinal[i];

        // The script's lines before the step; comments name the raise when an
        // event is answered more than once.
        std::vector<std::string> registrations, scriptLines;
        for (const int first : order) {
            const std::string& event = raises_[static_cast<std::size_t>(first)].event;
            const std::vector<int>& list = byEvent[event];
            const int m = lastBusy[event];
            for (int j = m; j >= 1; --j) {
                const Raise& r = raises_[static_cast<std::size_t>(list[static_cast<std::size_t>(j) - 1])];
                if (r.commands.empty()) continue;
                if (m > 1) scriptLines.push_back("' " + event + ", raise " + std::to_string(j));
                for (const std::string& c : r.commands) {
                    registrations.push_back(repeated("once " + event + " ", j) + c);
                    scriptLines.push_back(registrations.back());
                }
            }
        }

        if (script_) {
            if (!stamp_.empty()) *script_ << stamp_ << "\n";
            for (const bool yes : answers_)
                *script_ << (yes ? "answer Yes\n" : "answer No\n");
            for (const std::string& l : scriptLines)
                *script_ << l << "\n";
            if (!step_.empty()) *script_ << step_ << "\n";
        }
        if (transcript_) {
            std::ostream& t = *transcript_;
            for (const bool yes : answers_)
                t << (yes ? "> answer Yes\n" : "> answer No\n");
            for (const std::string& r : registrations)
                t << "> " << r << "\n";
            if (!step_.empty()) t << "> " << step_ << "\n";
            for (const Line& l : lines_) {
                const std::string indent(static_cast<std::size_t>(l.depth) * 2, ' ');
                if (l.raise < 0) {
                    t << indent << l.text << "\n";
                    continue;
                }
                // The registrations this raise runs before the desk's own commands.
                const Raise& r = raises_[static_cast<std::size_t>(l.raise)];
                const std::vector<int>& list = byEvent[r.event];
                const int k = ordinal[static_cast<std::size_t>(l.raise)];
                for (int j = lastBusy[r.event]; j > k; --j)
                    for (const std::string& c :
                         raises_[static_cast<std::size_t>(list[static_cast<std::size_t>(j) - 1])].commands)
                        t << indent << "> " << repeated("once " + r.event + " ", j - k) << c << "\n";
            }
        }
    }
    started_ = false;
    stamp_.clear();
    step_.clear();
    answers_.clear();
    raises_.clear();
    lines_.clear();
    open_.clear();
    if (script_) script_->flush();
    if (transcript_) transcript_->flush();
}

} // namespace practice
