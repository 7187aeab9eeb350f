#pragma once
// What the library's fuzz targets share. An input is a small script: one command
// per line, its first byte naming the command, then an optional blank and the
// arguments separated by "|", the last argument taking the rest of the line. A
// line that starts with ">" is the host's: the host runs those lines in order
// from inside the control's events, one per event, nested no deeper than
// kMaxDepth. A host line that starts with ">!" lets its failure out of the event
// handler, back through the control to whoever started the chain.
//
// The one rule every target checks: a call returns, or fails with the library's
// RuntimeError (caught per call, and the script goes on). Any other exception
// escapes LLVMFuzzerTestOneInput and takes the process down, which is how
// libFuzzer (and the corpus replay under ctest) sees the fault; so does a crash,
// a sanitizer report or a leak. A broken invariant calls fault(), which aborts.

#include <QuorvaneScheduler/ctl_scheduler.h>
#include <QuorvaneScheduler/errors.h>
#include <QuorvaneScheduler/ole_date.h>
#include <QuorvaneScheduler/variant.h>

#include <cmath>
#include <cstdint>
#include <optional>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::fuzz {

// Longer inputs only add run time: every line is taken on its own.
inline constexpr std::size_t kMaxInput = 32 * 1024;
// Host lines run from inside events at most this deep.
inline constexpr int kMaxDepth = 3;
// Lines run in all, at the top and from inside events, so that no input runs long.
inline constexpr int kMaxSteps = 400;

// The input as text; none when it is larger than a target reads.
inline std::optional<std::string_view> inputOf(const std::uint8_t* data, std::size_t size) {
    if (size > kMaxInput) return std::nullopt;
    return std::string_view(reinterpret_cast<const char*>(data), size);
}

[[noreturn]] inline void fault(const std::string& what) {
    std::fprintf(stderr, "fuzz fault: %s\n", what.c_str());
    std::abort();
}

// Runs one call. The library's own failure is an answer, not a fault.
template <class Call> bool attempt(Call&& call) {
    try {
        call();
        return true;
    } catch (const RuntimeError&) {
        return false;
    }
}

// One line: the command byte and the text of its arguments.
struct Line {
    char command = 0;
    std::string_view args;
    bool escapes = false; // a host line whose failure leaves the event handler
};

inline Line lineOf(std::string_view text) {
    Line line;
    if (text.empty()) return line;
    line.command = text[0];
    text.remove_prefix(1);
    if (!text.empty() && text[0] == ' ') text.remove_prefix(1);
    line.args = text;
    return line;
}

// `n` arguments: the first n - 1 split on "|", the last the rest; missing ones empty.
inline std::vector<std::string> argsOf(std::string_view args, std::size_t n) {
    std::vector<std::string> out;
    while (out.size() + 1 < n) {
        const std::size_t bar = args.find('|');
        if (bar == std::string_view::npos) break;
        out.emplace_back(args.substr(0, bar));
        args.remove_prefix(bar + 1);
    }
    out.emplace_back(args);
    out.resize(n);
    return out;
}

// A whole number argument as the host would pass it, clamped to the range of T;
// 0 for a text that is no number.
template <class T = std::int32_t> T numberArg(std::string_view text) {
    double d = 0;
    if (!attempt([&] { d = textToNumber(text); }) || std::isnan(d)) return 0;
    if (d <= static_cast<double>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
    if (d >= static_cast<double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
    return static_cast<T>(d);
}

// A column index from a one-based column number, as a C++ host computes it:
// any 16-bit number minus one, so indexes out of range reach the control too.
inline int indexArg(std::string_view number) { return numberArg<std::int16_t>(number) - 1; }

// A date argument: a date text, else a number of days taken as it is, so a host
// may pass a value out of every range; 0 for neither.
inline OleDate dateArg(std::string_view text) {
    OleDate d;
    if (tryParseDate(text, d)) return d;
    double days = 0;
    attempt([&] { days = textToNumber(text); });
    return OleDate(days);
}

// The script of one input: the top lines in order, and the host's lines queued.
class Script {
public:
    explicit Script(std::string_view input) {
        while (!input.empty()) {
            const std::size_t end = input.find('\n');
            std::string_view text = input.substr(0, end);
            input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
            if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
            if (text.empty()) continue;
            if (text[0] == '>') {
                text.remove_prefix(1);
                const bool escapes = !text.empty() && text[0] == '!';
                if (escapes) text.remove_prefix(1);
                Line line = lineOf(text);
                line.escapes = escapes;
                host_.push_back(line);
            } else {
                top_.push_back(lineOf(text));
            }
        }
    }

    // Runs every top line through `run`, each as one call of its own, and
    // `check` after each, whether the line went through or failed.
    void runTop(const std::function<void(const Line&)>& run, const std::function<void()>& check) {
        for (const Line& line : top_) {
            if (++steps_ > kMaxSteps) return;
            attempt([&] { run(line); });
            check();
        }
    }

    // From inside an event: runs the next host line, if any is left and the
    // nesting allows. A failure stays in the handler unless the line says otherwise.
    void runHostLine(const std::function<void(const Line&)>& run) {
        if (host_.empty() || depth_ >= kMaxDepth || steps_ >= kMaxSteps) return;
        const Line line = host_.front();
        host_.pop_front();
        ++steps_;
        struct Depth {
            int& d;
            ~Depth() { --d; }
        } guard{++depth_};
        if (line.escapes)
            run(line);
        else
            attempt([&] { run(line); });
    }

    int depth() const { return depth_; }

private:
    std::vector<Line> top_;
    std::deque<Line> host_;
    int depth_ = 0;
    int steps_ = 0;
};

// Message boxes answer OK, and a question as the script last said.
class ScriptedBoxes final : public MessageBoxService {
public:
    bool yes = false;
    MsgBoxResult show(std::string_view, MsgBoxButtons buttons, std::string_view) override {
        if (buttons == MsgBoxButtons::OK) return MsgBoxResult::OK;
        return yes ? MsgBoxResult::Yes : MsgBoxResult::No;
    }
    // A script's Y or N: how the next questions are answered. False for any
    // other command.
    bool take(char command) {
        if (command != 'Y' && command != 'N') return false;
        yes = command == 'Y';
        return true;
    }
};

// A control on a platform whose today is fixed, hooked to the target's host.
struct Harness {
    explicit Harness(ctlSchedulerEvents& host) {
        platform.clock.setToday(makeDate(2008, 1, 15));
        platform.messageBoxes = &boxes;
        control = std::make_unique<ctlScheduler>(platform);
        control->setEventSink(&host);
    }
    // Hands the control and the message boxes to the target's host, and lets
    // the message loop the control yields to run the host's script lines.
    template <class Host> void wire(Host& host) {
        host.control = control.get();
        host.boxes = &boxes;
        platform.doEvents = [&host] { host.script.runHostLine([&host](const Line& line) { host.run(line); }); };
    }
    Platform platform;
    ScriptedBoxes boxes;
    std::unique_ptr<ctlScheduler> control;
};

// A practice of two groups: Main, four columns with two on screen and three
// filled at once, and Annex, one column. Assigned in the order the control
// expects, so the default group, Main, is selected and its columns load.
inline void openPractice(ctlScheduler& c) {
    c.setResourceGroupViews("1~Main~2~4~~2~Annex~1~1");
    c.setResourceGroupDefaults("1~Main~501~1~~1~Main~502~2~~1~Main~503~3~~2~Annex~610~1");
    c.setResourceGroups("1~Main~Y~501~Dr One~Staff~Surgery~~1~Main~Y~502~Dr Two~Staff~Nursing~~"
                        "1~Main~Y~503~Room A~Rooms~Exam~~2~Annex~N~610~Room B~Rooms~Exam");
}

// One input of a target: its host reads the input, a harness stands the
// control up for it and wires the host in (all of it, for a host that answers
// message boxes and runs in the message loop), and `run` plays it.
template <class Host, class Run> int playInput(const std::uint8_t* data, std::size_t size, Run run) {
    const auto input = inputOf(data, size);
    if (!input) return 0;
    Host host(*input);
    Harness h(host);
    if constexpr (requires { host.boxes; })
        h.wire(host);
    else
        host.control = h.control.get();
    run(host, h);
    return 0;
}

} // namespace quorvane::fuzz
