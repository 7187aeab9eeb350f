// libFuzzer target: the four catalogue strings and the picks that follow them.
//
// The input is a script (see fuzz_support.h) of these commands, N a one-based
// column number:
//   V text   ResourceGroupViews        D text   ResourceGroupDefaults
//   G text   ResourceGroups            S text   Resources
//   g text   pick a group by its text  h n      pick a group by its list index
//   n text   NumOfSchedules            s n      scroll sbSchedule to n
//   c N|text ResourceCatTypeN          r N|text ResourceN
//   i N|n    ResourceNListIndex        j N|n    ResourceNValueListIndex
//   u N|text ResourceNValue            t N|date ResourceNDate
//   k N|n    pick a category by index  l N|n    pick a resource by index
//   a id|N|date  SetResourceAndDate    f N      RefreshSchedule
//   A N|text|start|end|id|status|recurrence|patient  AddAppointment
//   p N|time DisplayTopIndex           d N|minutes  DayIncrementN
//   z height|width  ResizeControl      I        UserControl_Initialize
//   Y / N    answer Yes / No to questions
// The host runs its lines from inside ResourceOnClick, so a load may add
// appointments, reload a column, switch the group or send a new catalogue
// string while the control is still loading; and from the message loop, which
// the control yields to when it moves a column's top time.
//
// Besides the rule of every target, the two resource lists of each column must
// stay item for item: item k of both is one catalogue record.

#include "fuzz_support.h"

#include <QuorvaneScheduler/control_internals.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace quorvane::fuzz {
namespace {

class CatalogueHost final : public ctlSchedulerEvents {
public:
    explicit CatalogueHost(std::string_view input) : script(input) {}

    void ResourceOnClick(std::int16_t, Str, const Variant&) override {
        script.runHostLine([this](const Line& line) { run(line); });
    }

    void run(const Line& line);

    Script script;
    ctlScheduler* control = nullptr;
    ScriptedBoxes* boxes = nullptr;
};

// A widget array is indexed by the harness, which must stay inside it; the
// properties take any index and check it themselves.
bool inColumns(int index) { return index >= 0 && index < kColumns; }

void CatalogueHost::run(const Line& line) {
    ctlScheduler& c = *control;
    SchedulerWidgets& w = widgetsOf(c);
    const auto two = argsOf(line.args, 2);
    const int index = indexArg(two[0]);
    const std::string text(line.args);
    switch (line.command) {
    case 'V':
        return c.setResourceGroupViews(text);
    case 'D':
        return c.setResourceGroupDefaults(text);
    case 'G':
        return c.setResourceGroups(text);
    case 'S':
        return c.setResources(text);
    case 'g':
        return w.cmbResourceGroup.setText(text);
    case 'h':
        return w.cmbResourceGroup.setListIndex(numberArg(text));
    case 'n':
        return c.setNumOfSchedules(text);
    case 's':
        return w.sbSchedule.setValue(numberArg<std::int16_t>(text));
    case 'c':
        return c.setResourceCatType(index, two[1]);
    case 'r':
        return c.setResource(index, two[1]);
    case 'i':
        return c.setResourceListIndex(index, two[1]);
    case 'j':
        return c.setResourceValueListIndex(index, two[1]);
    case 'u':
        return c.setResourceValue(index, two[1]);
    case 't':
        return c.setResourceDate(index, Variant(two[1]));
    case 'k':
        if (inColumns(index))
            w.cmbResourceCatType[static_cast<std::size_t>(index)].setListIndex(numberArg(two[1]));
        return;
    case 'l':
        if (inColumns(index)) w.cmbResource[static_cast<std::size_t>(index)].setListIndex(numberArg(two[1]));
        return;
    case 'a': {
        const auto a = argsOf(line.args, 3);
        c.SetResourceAndDate(a[0], numberArg<std::int16_t>(a[1]), a[2]);
        return;
    }
    case 'f':
        return c.RefreshSchedule(numberArg<std::int16_t>(text));
    case 'A': {
        const auto a = argsOf(line.args, 8);
        return c.AddAppointment(a[0], a[1], dateArg(a[2]), dateArg(a[3]), a[4], a[5], a[6], a[7]);
    }
    case 'z':
        return c.ResizeControl(numberArg<std::int16_t>(two[0]), numberArg<std::int16_t>(two[1]));
    case 'p':
        c.DisplayTopIndex(dateArg(two[1]), two[0]);
        return;
    case 'd':
        return c.setDayIncrement(index, two[1]);
    case 'I':
        return c.UserControl_Initialize();
    default:
        boxes->take(line.command);
        return;
    }
}

void checkResourceLists(const ctlScheduler& c) {
    const SchedulerWidgets& w = widgetsOf(c);
    for (std::size_t i = 0; i < kColumns; ++i)
        if (w.cmbResource[i].listCount() != w.cmbResourceValue[i].listCount())
            fault("column " + std::to_string(i + 1) + " has " + std::to_string(w.cmbResource[i].listCount()) +
                  " resource names but " + std::to_string(w.cmbResourceValue[i].listCount()) + " values");
}

} // namespace
} // namespace quorvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quorvane::fuzz;
    return playInput<CatalogueHost>(data, size, [](CatalogueHost& host, Harness& h) {
        host.script.runTop([&](const Line& line) { host.run(line); }, [&] { checkResourceLists(*h.control); });
    });
}
