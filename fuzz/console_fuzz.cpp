// libFuzzer target: the input bytes are one whole script for the host console.
//
// The console must survive any script. A script it cannot read ends with status
// 2 and one `NAME:LINE: message` line; everything else it prints is transcript.
// Nothing is caught here: an exception that escapes run() is a fault of the
// console and takes the process down, so the fuzzer keeps the input.

#include <QuorvaneScheduler/script/console.h>

#include <QuorvaneScheduler/ole_date.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

namespace {

// Longer scripts only add run time: the reader takes every line on its own.
constexpr std::size_t kMaxScript = 64 * 1024;

struct Outcome {
    int status = 0;
    std::string transcript;
    std::string errors;
};

Outcome runScript(std::string_view script) {
    std::ostringstream out, err;
    Outcome o;
    {
        quorvane::host::Console console(out, quorvane::makeDate(2008, 1, 15));
        o.status = console.run("fuzz", script, err);
    }
    o.transcript = out.str();
    o.errors = err.str();
    return o;
}

[[noreturn]] void fault(const char* what, const Outcome& o) {
    std::fprintf(stderr, "console fault: %s\nstatus %d\nerror output: %s\n", what, o.status, o.errors.c_str());
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > kMaxScript) return 0;
    const std::string_view script(reinterpret_cast<const char*>(data), size);

    const Outcome first = runScript(script);
    if (first.status == 0 && !first.errors.empty()) fault("status 0 with an error message", first);
    if (first.status == 2) {
        const std::string_view e = first.errors;
        if (e.substr(0, 5) != "fuzz:" || e.back() != '\n' || e.find('\n') != e.size() - 1)
            fault("status 2 without exactly one 'fuzz:LINE: message' line", first);
    }
    if (first.status != 0 && first.status != 2) fault("status other than 0 or 2", first);

    // The same script gives the same transcript every run: a second console in
    // the same process must not see anything the first one left behind.
    const Outcome second = runScript(script);
    if (second.status != first.status || second.transcript != first.transcript ||
        second.errors != first.errors)
        fault("a second run of the same script printed something else", second);
    return 0;
}
