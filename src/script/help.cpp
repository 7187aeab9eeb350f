// What the console tells a newcomer: the language in --help, every member and
// event in --list, and the nearest real names when a script misspells one.

#include <QuorvaneScheduler/script/console.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <sstream>

namespace quorvane::host {

namespace {

const char* typeName(DeclaredType t) {
    switch (t) {
    case DeclaredType::None:
        return "";
    case DeclaredType::String:
        return "String";
    case DeclaredType::Integer:
        return "Integer";
    case DeclaredType::Long:
        return "Long";
    case DeclaredType::Single:
        return "Single";
    case DeclaredType::Double:
        return "Double";
    case DeclaredType::Boolean:
        return "Boolean";
    case DeclaredType::Date:
        return "Date";
    case DeclaredType::Variant:
        return "Variant";
    case DeclaredType::Object:
        return "Object";
    case DeclaredType::Appointment:
        return "Appointment";
    }
    return "Variant";
}

const char* typeName(VariantType t) {
    switch (t) {
    case VariantType::String:
        return "String";
    case VariantType::Integer:
        return "Integer";
    case VariantType::Date:
        return "Date";
    default:
        return "Variant";
    }
}

std::string params(const std::vector<MemberParam>& ps, std::size_t count) {
    std::string s;
    for (std::size_t i = 0; i < count && i < ps.size(); ++i)
        s += (i ? ", " : "") + std::string(ps[i].byRef ? "ByRef " : "") + ps[i].name + " As " +
             typeName(ps[i].type);
    return s;
}

std::string lower(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

// Edits between two names, a swap of neighbours counting as one, case ignored.
std::size_t distance(const std::string& a, const std::string& b) {
    std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i)
        d[i][0] = i;
    for (std::size_t j = 0; j <= b.size(); ++j)
        d[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i)
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + cost});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    return d[a.size()][b.size()];
}

} // namespace

std::string usageText() {
    return R"(usage: scheduler-host [--today M/D/YYYY] [SCRIPT]
       scheduler-host --list    every member with its arguments, and every event
       scheduler-host --help    this text

Creates one control, runs SCRIPT (standard input when absent or -) against it
and prints a transcript of all that crosses between the control and its host.
Exit status: 0 when the script ran to its end (failed calls are part of the
transcript), 2 for a script error (SCRIPT:LINE: message on standard error),
1 for any other fault.

One command a line; blank lines and lines starting with ' are skipped.

Commands:
  set NAME = VALUE          write a property; set NAME(ARG) = VALUE for an indexed one
  get NAME                  read a property, a script variable, or a PATH (below)
  call NAME(ARG, ...)       call a method; call NAME when it takes nothing
  let VAR = VALUE           a script variable; passed where the member takes a
                            reference, it receives what the member left in it
  answer Yes | answer No    the user's answer to the next Yes/No message box
                            (No when none is queued)
  on EVENT COMMAND          what the host does when the control raises EVENT;
                            several run in the order written
  once EVENT COMMAND        the same, for the next raise only
  off EVENT | off           drop the handlers of EVENT, or of every event
  user GESTURE              the user's mouse or key (below)
  today DATE                the control's today
  twips TPX TPY             the screen's twips per pixel (default 15 15)

Values:
  "text"                    escapes \" \\ \r \n \t \xHH
  42  -1  7.5               numbers
  #1/15/2008#  #9:30 AM#  #1/15/2008 9:30:00 AM#    dates and times
  True False Empty Nothing  keywords
  dvwResource(I)            the day view of column index I, 0 to 9
  app(I, KEY)               the appointment KEY of dvwResource(I)
  wvwWeekView.Days(K)       a day of the week view, by number 0-6 or weekday name
  NAME                      a script variable
A value converts to the member's declared type as the platform converts it:
text that is no number is a TypeMismatch, a number past 16 bits an Overflow.

Handlers: inside a handler's COMMAND, $1 to $9 stand for the event's arguments
and ${NAME} for what "get NAME" would print when the handler runs:
  on AddApptWithPatient call SetAppId($1, "1204", ${AppKey}, "5531")
  on AddApptWithPatient call FocusControl

Gestures:
  click|rightclick dvwResource(I) at TIME | on KEY     dblclick dvwResource(I) on KEY
  slot dvwResource(I) TIME    type dvwResource(I) at TIME "TEXT"
  resize dvwResource(I) KEY to TIME                    delete dvwResource(I) KEY
  drag dvwResource(I) KEY to dvwResource(J) TIME       scroll dvwResource(I) to TIME
  date dvwResource(I) DATE    pick LIST "ITEM"     click BUTTON        menu ITEM
  key CODE [in FIELD]         calendar DATE        scroll sbSchedule VALUE
  type FIELD "TEXT"
A context menu stays open until the next gesture; "user menu ITEM" picks from it.

Paths for get:
  WIDGET.PROP  (txtPatName.ToolTipText, cmbResource(0).ListCount, mnoCheckIn.Checked)
  dvwResource(I).MEMBER  dvwResource(I).AppointmentSet  app(I, KEY).FIELD
  wvwWeekView.WeekDate  wvwWeekView.Days(K).AppointmentSet  frmWeekView.Visible
  UserControl.Enabled  UserControl.ActiveControl  state.FIELD  state.FIELD(I)

Transcript lines:
  > COMMAND                 a command, as written (a handler's after substitution)
  = VALUE                   the result of get, or of call when not Empty
  ! KIND                    the call failed: TypeMismatch, Overflow, SubscriptOutOfRange,
                            DivisionByZero, InvalidProcedureCall, InvalidPropertyValue,
                            ObjectRequired
  event NAME(ARG, ...)      the control raised an event to the host
  changed NAME              the control reported a property change to its container
  msgbox(OK, "TEXT")        a message box; msgbox(YesNo, "TEXT"[, "TITLE"]) -> ANSWER
  popup NAME                a context menu opened
  modal frmWeekView         the week form was shown; the user closed it
  ~ disabled | ~ hidden     a gesture had no effect
Lines caused inside a handler are indented two blanks per level of nesting.
)";
}

std::string listText() {
    std::ostringstream out;
    // Properties: one line per name, with the sides it has.
    std::map<std::string, std::pair<const MemberInfo*, const MemberInfo*>> properties;
    std::vector<std::string> order;
    for (const MemberInfo& m : memberTable()) {
        if (m.kind == MemberKind::Method) continue;
        auto& sides = properties[m.name];
        if (!sides.first && !sides.second) order.push_back(m.name);
        (m.kind == MemberKind::PropertyGet ? sides.first : sides.second) = &m;
    }
    out << "Properties:\n";
    for (const std::string& name : order) {
        const auto [get, let] = properties[name];
        const MemberInfo& any = get ? *get : *let;
        const std::size_t indexes = get ? get->params.size() : let->params.size() - 1;
        const DeclaredType type = get ? get->result : let->params.back().type;
        out << "  " << name << (indexes ? "(" + params(any.params, indexes) + ")" : "") << " As "
            << typeName(type) << "  ["
            << (get && let ? "read, write"
                : get      ? "read"
                           : "write")
            << "]\n";
    }
    out << "Methods:\n";
    for (const MemberInfo& m : memberTable()) {
        if (m.kind != MemberKind::Method) continue;
        out << "  " << m.name << "(" << params(m.params, m.params.size()) << ")";
        if (m.result != DeclaredType::None) out << " As " << typeName(m.result);
        out << "\n";
    }
    out << "Events:\n";
    for (const EventInfo& e : eventTable()) {
        out << "  " << e.name << "(";
        for (std::size_t i = 0; i < e.params.size(); ++i)
            out << (i ? ", " : "") << (e.params[i].byRef ? "ByRef " : "") << e.params[i].name << " As "
                << typeName(e.params[i].type);
        out << ")\n";
    }
    return out.str();
}

std::string nearestNames(std::string_view name, const std::vector<std::string>& candidates) {
    const std::string wanted = lower(name);
    const std::size_t limit = std::max<std::size_t>(2, wanted.size() / 3);
    std::vector<std::pair<std::size_t, std::string>> close;
    for (const std::string& c : candidates) {
        const std::size_t d = distance(wanted, lower(c));
        if (d <= limit &&
            std::none_of(close.begin(), close.end(), [&](const auto& p) { return p.second == c; }))
            close.emplace_back(d, c);
    }
    std::stable_sort(close.begin(), close.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::string s;
    for (std::size_t i = 0; i < close.size() && i < 3; ++i)
        s += (i ? ", " : " (did you mean ") + close[i].second;
    return s.empty() ? s : s + "?)";
}

} // namespace quorvane::host
