// scheduler-host: a scriptable host for the control. Reads a script, writes the
// transcript of everything that crosses the boundary between control and host.

#include <QuorvaneScheduler/script/console.h>

#include <fstream>
#include <iostream>
#include <sstream>

using namespace quorvane;

int main(int argc, char** argv) {
    try {
        OleDate today{};
        bool haveToday = false;
        std::string script = "-";
        bool haveScript = false;
        for (int i = 1; i < argc; ++i) {
            const std::string arg = argv[i];
            if (arg == "--help" || arg == "-h") {
                std::cout << host::usageText();
                return 0;
            }
            if (arg == "--list") {
                std::cout << host::listText();
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
                std::cerr << "scheduler-host: unknown argument '" << arg << "'\n" << host::usageText();
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
