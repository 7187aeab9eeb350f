#include <QuorvaneScheduler/script/script_reader.h>
#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/script/console.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace quorvane::host {

namespace {

std::string suggestEvent(std::string_view name) {
    std::vector<std::string> names;
    for (const EventInfo& e : eventTable())
        names.emplace_back(e.name);
    return nearestNames(name, names);
}

// At most `digits` significant digits, no exponent, no trailing zeros.
std::string fixedText(double d, int digits) {
    if (!std::isfinite(d)) return d != d ? "NaN" : (d > 0 ? "Infinity" : "-Infinity");
    if (d == 0) return "0";
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*e", digits - 1, d);
    // buf: [-]D.DDDDDDe[+-]XX
    std::string s(buf);
    const bool negative = s[0] == '-';
    if (negative) s.erase(0, 1);
    const std::size_t e = s.find('e');
    const int exponent = std::atoi(s.c_str() + e + 1);
    std::string mantissa = s.substr(0, e);
    mantissa.erase(1, 1); // the decimal point
    std::string out;
    if (exponent < 0) {
        out = "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + mantissa;
    } else if (static_cast<std::size_t>(exponent) + 1 >= mantissa.size()) {
        out = mantissa + std::string(static_cast<std::size_t>(exponent) + 1 - mantissa.size(), '0');
    } else {
        out = mantissa.substr(0, static_cast<std::size_t>(exponent) + 1) + "." +
              mantissa.substr(static_cast<std::size_t>(exponent) + 1);
    }
    if (out.find('.') != std::string::npos) {
        while (out.back() == '0')
            out.pop_back();
        if (out.back() == '.') out.pop_back();
    }
    return negative ? "-" + out : out;
}

} // namespace

std::string printValue(const Variant& v) {
    switch (v.type()) {
    case VariantType::Empty:
        return "Empty";
    case VariantType::String:
        return quote(*v.asString());
    case VariantType::Integer:
    case VariantType::Long:
        return v.toString();
    case VariantType::Single:
        return fixedText(v.toSingle(), 7);
    case VariantType::Double:
        return fixedText(v.toDouble(), 15);
    case VariantType::Boolean:
        return v.toBoolean() ? "True" : "False";
    case VariantType::Date:
        return "#" + generalDateText(v.toDate()) + "#";
    case VariantType::Object: {
        const ObjectRef o = v.toObject();
        if (!o) return "Nothing";
        if (auto app = std::dynamic_pointer_cast<Appointment>(o)) {
            const PVDayView* view = app->view();
            return std::string(view && view->weekDay ? "wapp(" : "app(") +
                   (view ? std::to_string(view->Index()) : std::string("-")) + ", " +
                   std::to_string(app->Key()) + ")";
        }
        if (auto view = std::dynamic_pointer_cast<PVDayView>(o))
            return (view->weekDay ? "wvwWeekView.Days(" : "dvwResource(") + std::to_string(view->Index()) +
                   ")";
        return "Object";
    }
    }
    return "Empty";
}

// Answers the control's message boxes from the script's queue, and prints them.
class Console::Boxes final : public MessageBoxService {
public:
    explicit Boxes(Console& c) : c_(c) {}
    MsgBoxResult show(std::string_view text, MsgBoxButtons buttons, std::string_view title) override {
        if (buttons == MsgBoxButtons::OK) {
            c_.emit("msgbox(OK, " + quote(text) + (title.empty() ? "" : ", " + quote(title)) + ")");
            return MsgBoxResult::OK;
        }
        bool yes = false;
        if (!c_.answers_.empty()) {
            yes = c_.answers_.front();
            c_.answers_.pop_front();
        }
        c_.emit("msgbox(YesNo, " + quote(text) + (title.empty() ? "" : ", " + quote(title)) + ") -> " +
                (yes ? "Yes" : "No"));
        return yes ? MsgBoxResult::Yes : MsgBoxResult::No;
    }

private:
    Console& c_;
};

Console::Console(std::ostream& out, OleDate today) : out_(out) {
    platform_.clock.setToday(today);
    boxes_ = std::make_unique<Boxes>(*this);
    platform_.messageBoxes = boxes_.get();
    platform_.container.onPropertyChanged = [this](std::string_view name) {
        emit("changed " + std::string(name));
    };
    // A handler of the control that failed while a gesture ran: printed at the
    // gesture's depth, and the widget goes on with the gesture.
    platform_.container.onUntrappedError = [this](const RuntimeError& e) {
        emit("! " + std::string(errorKindName(e.kind())));
    };
    sink_ = std::make_unique<EventsByName>(
        [this](std::string_view name, std::vector<Variant>& args) { onEvent(name, args); });
    control_ = std::make_unique<ctlScheduler>(platform_);
    control_->setEventSink(sink_.get());
    // The user reads the week and closes it with its Close button.
    platform_.container.onShowModal = [this](Form& form) {
        emit("modal " + form.name);
        control_->frmWeekView().cmdClose.click();
    };
    for (PopupMenu* menu :
         {&widgetsOf(*control_).mnuRightClickScheduler, &widgetsOf(*control_).mnuRightClickSchedulerApp})
        menu->onPopup = [this](PopupMenu& m, float, float) {
            emit("popup " + m.name);
            openMenu_ = &m;
        };
}

Console::~Console() {
    // The control goes first: nothing may raise into a half-destroyed console.
    control_.reset();
}

void Console::emit(std::string_view text) {
    out_ << std::string(static_cast<std::size_t>(depth_) * 2, ' ') << text << '\n';
}

int Console::run(std::string_view scriptName, std::string_view script, std::ostream& err) {
    int lineNo = 0;
    try {
        std::size_t pos = 0;
        while (pos <= script.size()) {
            std::size_t end = script.find('\n', pos);
            if (end == std::string_view::npos) end = script.size();
            ++lineNo;
            const std::string_view text = script.substr(pos, end - pos);
            pos = end + 1;
            if (significant(text).empty()) continue;
            line_ = lineNo;
            runLine(text, lineNo);
        }
    } catch (const ScriptError& e) {
        out_.flush();
        err << scriptName << ":" << line_ << ": " << e.what() << '\n';
        return 2;
    }
    out_.flush();
    return 0;
}

void Console::runLine(std::string_view text, int line) {
    line_ = line;
    const Command cmd = parseCommand(text);
    emit("> " + cmd.text);
    execute(cmd);
}

void Console::execute(const Command& cmd) {
    try {
        switch (cmd.verb) {
        case Verb::Set:
            doSet(cmd);
            break;
        case Verb::Get:
            doGet(cmd);
            break;
        case Verb::Call:
            doCall(cmd);
            break;
        case Verb::Let: {
            const std::string& name = cmd.target.front().name;
            if (memberExists(name) || name == "dvwResource" || name == "app" || name == "state" ||
                name == "UserControl" || name == "in" || name == "at" || name == "on" || name == "to")
                throw ScriptError("'" + name + "' is not a variable name");
            variables_[name] = evaluate(cmd.value);
            break;
        }
        case Verb::Answer:
            answers_.push_back(cmd.answerYes);
            break;
        case Verb::On:
        case Verb::Once: {
            if (!findEvent(cmd.event))
                throw ScriptError("unknown event '" + cmd.event + "'" + suggestEvent(cmd.event));
            // Check the handler's shape now, with its placeholders filled by
            // stand-ins, so that a malformed handler stops the script at its line.
            parseCommand(substitute(
                cmd.handler, [](int) { return std::string("Empty"); },
                [](const std::string&) { return std::string("Empty"); }));
            handlers_.push_back({cmd.event, cmd.handler, line_, cmd.verb == Verb::Once, nextHandlerId_++});
            break;
        }
        case Verb::Off:
            if (cmd.event.empty()) {
                handlers_.clear();
            } else {
                if (!findEvent(cmd.event))
                    throw ScriptError("unknown event '" + cmd.event + "'" + suggestEvent(cmd.event));
                std::erase_if(handlers_, [&](const Handler& h) { return h.event == cmd.event; });
            }
            break;
        case Verb::User:
            doGesture(cmd.gesture);
            break;
        case Verb::Today:
            platform_.clock.setToday(evaluate(cmd.value).toDate());
            break;
        case Verb::Twips:
            platform_.screen.twipsPerPixelX = static_cast<float>(cmd.twipsX);
            platform_.screen.twipsPerPixelY = static_cast<float>(cmd.twipsY);
            break;
        }
    } catch (const RuntimeError& e) {
        emit("! " + std::string(errorKindName(e.kind())));
    }
}

void Console::onEvent(std::string_view name, std::vector<Variant>& args) {
    std::string line = "event " + std::string(name) + "(";
    for (std::size_t i = 0; i < args.size(); ++i)
        line += (i ? ", " : "") + printValue(args[i]);
    emit(line + ")");

    // The handlers as they stand at the raise; a once handler is spent before it
    // runs, so a raise from inside it does not run it again.
    std::vector<Handler> run;
    for (const Handler& h : handlers_)
        if (h.event == name) run.push_back(h);
    std::erase_if(handlers_, [&](const Handler& h) { return h.once && h.event == name; });
    if (run.empty()) return;

    if (depth_ >= 32) throw ScriptError("handlers nest too deeply");
    const int savedLine = line_;
    ++depth_;
    for (const Handler& h : run) {
        line_ = h.line;
        const std::string text = substitute(
            h.text,
            [&](int n) {
                if (static_cast<std::size_t>(n) > args.size())
                    throw ScriptError("$" + std::to_string(n) + ": " + std::string(name) + " has " +
                                      std::to_string(args.size()) + " arguments");
                return printValue(args[static_cast<std::size_t>(n) - 1]);
            },
            [&](const std::string& valueName) {
                const MemberInfo* m = findMember(valueName, MemberKind::PropertyGet);
                if (m && m->params.empty()) {
                    std::vector<Variant> none;
                    return printValue(invokeMember(*control_, *m, none));
                }
                auto var = variables_.find(valueName);
                if (var != variables_.end()) return printValue(var->second);
                throw ScriptError("${" + valueName + "} names nothing");
            });
        runLine(text, h.line);
    }
    --depth_;
    line_ = savedLine;
}

Variant Console::evaluate(const Expr& e) {
    if (e.kind == Expr::Kind::Literal) return e.literal;
    const Chain& ref = e.ref;
    const Segment& head = ref.front();
    if (ref.size() == 1 && head.name == "dvwResource" && head.hasArgs)
        return Variant(ObjectRef(dayView(head)));
    if (ref.size() == 1 && head.name == "app" && head.hasArgs) return Variant(ObjectRef(appointment(head)));
    if (ref.size() == 2 && head.name == "wvwWeekView" && !head.hasArgs && ref[1].name == "Days" &&
        ref[1].hasArgs)
        return Variant(ObjectRef(weekDay(ref[1])));
    if (ref.size() == 1 && !head.hasArgs) {
        auto var = variables_.find(head.name);
        if (var != variables_.end()) return var->second;
        throw ScriptError("unknown variable '" + head.name + "'" + suggest(head.name, {}));
    }
    throw ScriptError("'" + head.name + "' is not a value");
}

std::int32_t Console::wholeNumber(const Expr& e, const char* what) {
    try {
        return evaluate(e).toLong();
    } catch (const RuntimeError&) {
        throw ScriptError(std::string("expected a whole number for ") + what);
    }
}

DayViewRef Console::dayView(const Segment& seg) {
    if (seg.args.size() != 1) throw ScriptError("dvwResource takes one index");
    const std::int32_t i = wholeNumber(seg.args[0], "the day view index");
    if (i < 0 || i >= kColumns) throw ScriptError("no day view dvwResource(" + std::to_string(i) + ")");
    return widgetsOf(*control_).dvwResource[static_cast<std::size_t>(i)];
}

DayViewRef Console::weekDay(const Segment& days) {
    if (days.args.size() != 1) throw ScriptError("Days takes one key");
    return control_->frmWeekView().wvwWeekView.Days(evaluate(days.args[0]));
}

AppointmentRef Console::appointment(const Segment& seg) {
    if (seg.args.size() != 2) throw ScriptError("app takes a view index and a key");
    Segment view{"dvwResource", true, {seg.args[0]}};
    const DayViewRef v = dayView(view);
    const std::int32_t key = wholeNumber(seg.args[1], "the key");
    AppointmentRef app = v->appointmentSet().Item(key);
    if (!app)
        throw ScriptError("dvwResource(" + std::to_string(v->Index()) + ") holds no appointment " +
                          std::to_string(key));
    return app;
}

Variant Console::callMember(const MemberInfo& m, const std::vector<Expr>& exprs, std::vector<Variant> args) {
    // A variable passed to a by-reference parameter takes what the member left
    // in it, also when the call fails part way.
    auto writeBack = [&] {
        for (std::size_t i = 0; i < exprs.size() && i < m.params.size(); ++i) {
            const Expr& e = exprs[i];
            if (m.params[i].byRef && e.kind == Expr::Kind::Reference && e.ref.size() == 1 &&
                !e.ref[0].hasArgs)
                variables_[e.ref[0].name] = args[i];
        }
    };
    Variant result;
    try {
        result = invokeMember(*control_, m, args);
    } catch (const RuntimeError&) {
        writeBack();
        throw;
    }
    writeBack();
    return result;
}

namespace {
void checkArity(const MemberInfo& m, std::size_t given) {
    if (m.params.size() != given)
        throw ScriptError(m.name + " takes " + std::to_string(m.params.size()) + " argument" +
                          (m.params.size() == 1 ? "" : "s") + ", not " + std::to_string(given));
}
} // namespace

std::string Console::suggest(std::string_view name, std::initializer_list<MemberKind> kinds) {
    std::vector<std::string> names;
    for (const MemberInfo& m : memberTable())
        if (std::find(kinds.begin(), kinds.end(), m.kind) != kinds.end()) names.push_back(m.name);
    for (const auto& [variable, value] : variables_)
        names.push_back(variable);
    return nearestNames(name, names);
}

std::string Console::suggestWidget(std::string_view name) {
    std::vector<std::string> names = ctlScheduler::textFieldNames();
    for (std::string& b : ctlScheduler::buttonNames())
        names.push_back(std::move(b));
    for (const MenuItem* item : widgetsOf(*control_).menuItems)
        names.push_back(item->name);
    for (const char* other :
         {"cmbResourceGroup", "cmbNumOfSchedules", "sbSchedule", "calCalendar", "cmbResource",
          "cmbResourceValue", "cmbResourceCatType", "cmbDayIncrement", "dvwResource", "wvwWeekView",
          "frmWeekView", "txtResource", "cmdClose", "Label1", "UserControl", "state", "app"})
        names.emplace_back(other);
    return nearestNames(name, names);
}

void Console::doSet(const Command& cmd) {
    const Segment& seg = cmd.target.front();
    const MemberInfo* m = findMember(seg.name, MemberKind::PropertyLet);
    if (!m) {
        if (memberExists(seg.name)) throw ScriptError("'" + seg.name + "' cannot be written");
        throw ScriptError("unknown property '" + seg.name + "'" +
                          suggest(seg.name, {MemberKind::PropertyLet}));
    }
    std::vector<Expr> exprs = seg.args;
    exprs.push_back(cmd.value);
    checkArity(*m, exprs.size());
    std::vector<Variant> args;
    for (const Expr& e : exprs)
        args.push_back(evaluate(e));
    callMember(*m, exprs, std::move(args));
}

void Console::doCall(const Command& cmd) {
    const Segment& seg = cmd.target.front();
    const MemberInfo* m = findMember(seg.name, MemberKind::Method);
    if (!m) {
        if (memberExists(seg.name)) throw ScriptError("'" + seg.name + "' is not a method");
        throw ScriptError("unknown method '" + seg.name + "'" + suggest(seg.name, {MemberKind::Method}));
    }
    checkArity(*m, seg.args.size());
    std::vector<Variant> args;
    for (const Expr& e : seg.args)
        args.push_back(evaluate(e));
    const Variant result = callMember(*m, seg.args, std::move(args));
    if (!result.isEmpty()) emit("= " + printValue(result));
}

void Console::doGet(const Command& cmd) {
    const Chain& path = cmd.target;
    const Segment& head = path.front();
    if (path.size() == 1) {
        if (const MemberInfo* m = findMember(head.name, MemberKind::PropertyGet)) {
            checkArity(*m, head.args.size());
            std::vector<Variant> args;
            for (const Expr& e : head.args)
                args.push_back(evaluate(e));
            emit("= " + printValue(callMember(*m, head.args, std::move(args))));
            return;
        }
        if (memberExists(head.name)) throw ScriptError("'" + head.name + "' cannot be read");
        if (!head.hasArgs && variables_.count(head.name) == 0)
            throw ScriptError("'" + head.name + "' names nothing" +
                              suggest(head.name, {MemberKind::PropertyGet}));
        emit("= " + printValue(evaluate(Expr{Expr::Kind::Reference, {}, path})));
        return;
    }
    inspect(path);
}

} // namespace quorvane::host
