#pragma once
// The script reader of the host console: one line in, one command out. It knows
// the lexical rules and the shape of each command, nothing of the control; the
// console resolves the names when it runs the command.

#include <QuorvaneScheduler/variant.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::host {

// A fault of the script itself: the console stops with SCRIPT:LINE: message.
struct ScriptError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Expr;

// NAME or NAME(ARG, ...): one step of a dotted reference.
struct Segment {
    std::string name;
    bool hasArgs = false;
    std::vector<Expr> args;
};
using Chain = std::vector<Segment>;

// A value as written: a literal, or a reference (a script variable, dvwResource(I),
// app(I, KEY), wvwWeekView.Days(K)) that the console resolves.
struct Expr {
    enum class Kind { Literal, Reference } kind = Kind::Literal;
    Variant literal;
    Chain ref;
};

enum class Verb { Set, Get, Call, Let, Answer, On, Once, Off, User, Today, Twips };

struct Gesture {
    std::string action; // click, dblclick, rightclick, slot, type, resize, delete, drag, scroll, date,
                        // pick, menu, key, calendar
    Segment widget;     // the widget the gesture aims at (for menu: the item)
    std::string aim;    // "at", "on" or "" for a day-view click
    std::vector<Expr> values;
    Segment target; // drag: the view dropped on; key: the field after "in"
    bool hasTarget = false;
};

struct Command {
    Verb verb = Verb::Get;
    std::string text; // the line as written, blanks trimmed
    Chain target;     // set, get, call: the member or path; let: the variable
    Expr value;       // set, let, today
    bool answerYes = false;
    std::string event;   // on, once, off ("" for a bare off)
    std::string handler; // on, once: the command to run, unsubstituted
    Gesture gesture;
    double twipsX = 15, twipsY = 15;
};

// The line without its blanks; empty for a blank line or a comment.
std::string_view significant(std::string_view line);

// Reads one significant line. Throws ScriptError for anything malformed.
Command parseCommand(std::string_view line);

// Replaces $1..$9 and ${NAME} outside string literals. `arg` gives the printed
// argument N (1-based), `value` the printed value of NAME; either throws
// ScriptError for something that is not there.
template <class ArgFn, class ValueFn>
std::string substitute(std::string_view text, ArgFn&& arg, ValueFn&& value);

// Literal text of a string, with the escapes a script can read back.
std::string quote(std::string_view s);

template <class ArgFn, class ValueFn>
std::string substitute(std::string_view text, ArgFn&& arg, ValueFn&& value) {
    std::string out;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            out += c;
            if (c == '\\' && i + 1 < text.size())
                out += text[++i];
            else if (c == '"')
                inString = false;
            continue;
        }
        if (c == '"') {
            inString = true;
            out += c;
        } else if (c == '$' && i + 1 < text.size() && text[i + 1] >= '1' && text[i + 1] <= '9') {
            out += arg(text[i + 1] - '0');
            ++i;
        } else if (c == '$' && i + 1 < text.size() && text[i + 1] == '{') {
            const std::size_t close = text.find('}', i + 2);
            if (close == std::string_view::npos) throw ScriptError("unclosed ${");
            out += value(std::string(text.substr(i + 2, close - i - 2)));
            i = close;
        } else {
            out += c;
        }
    }
    return out;
}

} // namespace quorvane::host
