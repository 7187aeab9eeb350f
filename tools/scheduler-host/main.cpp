// scheduler-host: a scriptable host for the control. Reads a script, writes the
// transcript of everything that crosses the boundary between control and host.

#include "console.h"

#include <fstream>
#include <iostream>
#include <sstream>

using namespace quorvane;

namespace {

const char* const kUsage = R"(usage: scheduler-host [--today M/D/YYYY] [SCRIPT]

Reads SCRIPT (standard input when absent or -) and writes the transcript.
Exit status: 0 when the script ran to its end, 2 for a script error, 1 otherwise.

Commands:
  set NAME = VALUE            set NAME(ARG) = VALUE
  get NAME                    get NAME(ARG)        get PATH
  call NAME                   call NAME(ARG, ...)
  let VAR = VALUE             answer Yes | answer No
  on EVENT COMMAND            once EVENT COMMAND   off EVENT | off
  user GESTURE                today DATE           twips TPX TPY
Gestures:
  click|rightclick dvwResource(I) at TIME | on KEY     dblclick dvwResource(I) on KEY
  slot dvwResource(I) TIME    type dvwResource(I) at TIME "TEXT"
  resize dvwResource(I) KEY to TIME                    delete dvwResource(I) KEY
  drag dvwResource(I) KEY to dvwResource(J) TIME       scroll dvwResource(I) to TIME
  date dvwResource(I) DATE    pick LIST "ITEM"     click BUTTON        menu ITEM
  key CODE [in FIELD]         calendar DATE        scroll sbSchedule VALUE
  type FIELD "TEXT"
)";

} // namespace

int main(int argc, char** argv) {
    try {
        OleDate today{};
        bool haveToday = false;
        std::string script = "-";
        bool haveScript = false;
        for (int i = 1; i < argc; ++i) {
            const std::string arg = argv[i];
            if (arg == "--help" || arg == "-h") {
                std::cout << kUsage;
                return 0;
            }
            if (arg == "--today") {
                if (i + 1 >= argc || !tryParseDate(argv[i + 1], today)) {
                    std::cerr << "scheduler-host: --today takes a date M/D/YYYY\n";
                    return 1;
                }
                today = datePart(today);
                haveToday = true;
                ++i;
            } else if (!haveScript && (arg == "-" || arg.empty() || arg[0] != '-')) {
                script = arg;
                haveScript = true;
            } else {
                std::cerr << "scheduler-host: unknown argument '" << arg << "'\n" << kUsage;
                return 1;
            }
        }
        if (!haveToday) {
            Clock machine;
            today = machine.today();
        }

        std::stringstream text;
        if (script == "-") {
            text << std::cin.rdbuf();
        } else {
            std::ifstream file(script, std::ios::binary);
            if (!file) {
                std::cerr << "scheduler-host: cannot read " << script << "\n";
                return 1;
            }
            text << file.rdbuf();
        }
        host::Console console(std::cout, today);
        return console.run(script, text.str(), std::cerr);
    } catch (const std::exception& e) {
        std::cout.flush();
        std::cerr << "scheduler-host: " << e.what() << "\n";
        return 1;
    }
}
