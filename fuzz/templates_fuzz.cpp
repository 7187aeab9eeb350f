// libFuzzer target: colour strings, dates and column numbers through the
// template operations, then the slot-length changes and group selections that
// paint the stored templates again or wipe them.
//
// The control starts with the practice of openPractice (Main selected, columns
// 1 to 3 loaded). The input is a script (see fuzz_support.h) of these commands,
// N a one-based column number as text, passed as it stands:
//   R colour                          vbRGBVal
//   T N|start|end|colour|addnow|text  AddResourceTemplate
//   E N|start|end|colour|text         AddExistingTemplate
//   W day|start|end|colour            AddTemplateWeekview (day as text)
//   w day|colour                      AddAllDayTemplateWeekview
//   I N|minutes   DayIncrementN         i N|n     pick a slot length by index
//   g text        pick a group by text  h n       pick a group by index
//   P N           replay the column     X N       wipe the column
//   F N           RefreshTimeslots      t N|date  ResourceNDate
//   r N|text      ResourceN
// The host runs its lines from inside ResourceOnClick, as a host paints a
// column's templates while it loads it.
//
// Checks besides the rule of every target: a colour value has nothing above
// its 24 bits of red, green and blue, and the caller's string has lost at most
// one leading "#"; no column counts more templates than it can store; and a
// group selection that went through, with no host painting inside it, leaves
// every cell of every grid in the bare colour.

#include "fuzz_support.h"

#include <QuorvaneScheduler/control_internals.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace quorvane::fuzz {
namespace {

constexpr std::int32_t kBareGrid = 49344; // "#C0C000"

class TemplatesHost final : public ctlSchedulerEvents {
public:
    explicit TemplatesHost(std::string_view input) : script(input) {}

    void ResourceOnClick(std::int16_t, Str, const Variant&) override {
        script.runHostLine([this](const Line& line) {
            hostPainted = true;
            run(line);
        });
    }

    void run(const Line& line);

    Script script;
    ctlScheduler* control = nullptr;
    bool hostPainted = false;
};

void checkColour(const std::string& given, const std::string& after, std::int32_t value) {
    if (value < 0 || value > 0xFFFFFF) fault("vbRGBVal(\"" + given + "\") gave " + std::to_string(value));
    const bool lostHash = !given.empty() && given[0] == '#';
    if (after != (lostHash ? given.substr(1) : given))
        fault("vbRGBVal(\"" + given + "\") left the caller's string as \"" + after + "\"");
}

void checkWipedGrids(ctlScheduler& c) {
    for (std::size_t i = 0; i < kColumns; ++i) {
        const PVDayView& view = *widgetsOf(c).dvwResource[i];
        for (int minute = 0; minute < 24 * 60; minute += 5)
            if (view.TimeSlotColor(makeTime(minute / 60, minute % 60, 0)) != kBareGrid)
                fault("column " + std::to_string(i + 1) + " is not wiped at minute " +
                      std::to_string(minute));
    }
}

// A group pick runs the whole selection. Only one that went through, with no host
// line painting while it loaded the columns, has every grid bare afterwards.
template <class Pick> void pickGroup(TemplatesHost& host, Pick&& pick) {
    host.hostPainted = false;
    const bool done = attempt(pick);
    if (done && !host.hostPainted) checkWipedGrids(*host.control);
}

void TemplatesHost::run(const Line& line) {
    ctlScheduler& c = *control;
    SchedulerWidgets& w = widgetsOf(c);
    const std::string text(line.args);
    const auto two = argsOf(line.args, 2);
    const int index = indexArg(two[0]);
    switch (line.command) {
    case 'R': {
        std::string colour = text;
        const std::int32_t value = c.vbRGBVal(colour);
        return checkColour(text, colour, value);
    }
    case 'T': {
        const auto a = argsOf(line.args, 6);
        return c.AddResourceTemplate(dateArg(a[1]), dateArg(a[2]), a[5], a[3], a[0], a[4]);
    }
    case 'E': {
        const auto a = argsOf(line.args, 5);
        OleDate end = dateArg(a[2]);
        std::string colour = a[3];
        return c.AddExistingTemplate(dateArg(a[1]), end, a[4], colour, a[0]);
    }
    case 'W': {
        const auto a = argsOf(line.args, 4);
        OleDate end = dateArg(a[2]);
        std::string colour = a[3];
        return c.AddTemplateWeekview(Variant(a[0]), dateArg(a[1]), end, "", colour);
    }
    case 'w': {
        std::string colour = two[1];
        return c.AddAllDayTemplateWeekview(colour, numberArg<std::int16_t>(two[0]));
    }
    case 'I':
        return c.setDayIncrement(index, two[1]);
    case 'i':
        if (index >= 0 && index < kColumns)
            w.cmbDayIncrement[static_cast<std::size_t>(index)].setListIndex(numberArg(two[1]));
        return;
    case 'g':
        if (script.depth() > 0) return w.cmbResourceGroup.setText(text);
        return pickGroup(*this, [&] { w.cmbResourceGroup.setText(text); });
    case 'h':
        if (script.depth() > 0) return w.cmbResourceGroup.setListIndex(numberArg(text));
        return pickGroup(*this, [&] { w.cmbResourceGroup.setListIndex(numberArg(text)); });
    case 'P':
        return c.replayTemplates(index);
    case 'X':
        return c.wipeTemplates(index);
    case 'F':
        return c.RefreshTimeslots(text);
    case 't':
        return c.setResourceDate(index, Variant(two[1]));
    case 'r':
        return c.setResource(index, two[1]);
    default:
        return;
    }
}

void checkCounts(const ctlScheduler& c) {
    for (std::size_t i = 0; i < kColumns; ++i) {
        const int count = stateOf(c).intTemplateCount[i];
        if (count < 0 || count > kTemplatesPerColumn)
            fault("column " + std::to_string(i + 1) + " counts " + std::to_string(count) + " templates");
    }
}

} // namespace
} // namespace quorvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quorvane::fuzz;
    return playInput<TemplatesHost>(data, size, [](TemplatesHost& host, Harness& h) {
        attempt([&] { openPractice(*h.control); });
        host.script.runTop([&](const Line& line) { host.run(line); }, [&] { checkCounts(*h.control); });
    });
}
