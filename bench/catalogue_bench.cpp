// From the host's assignment of the largest catalogue to the last column it
// loads: 32,767 group records in one group with 300 categories and ten default
// columns, each answered by a host that adds 300 appointments and 101 templates.
// A scan of the same text with memchr is the floor to compare against.

#include <QuorvaneScheduler/control_internals.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

using namespace quorvane;

namespace {

constexpr int kRecords = 32767;
constexpr int kCategories = 300;

std::string groupsText() {
    std::string s;
    s.reserve(kRecords * 48);
    for (int r = 0; r < kRecords; ++r) {
        // Records of a category stand together, and within it those of each of
        // its three sub-types, as a host keeps them.
        const int category = r * kCategories / kRecords;
        const int subType = r * kCategories * 3 / kRecords;
        if (r) s += "~~";
        s += "10~Main Office~";
        s += r == 0 ? "Y" : "N";
        s += "~R" + std::to_string(r) + "~Resource " + std::to_string(r) + "~Category " +
             std::to_string(category) + "~Sub " + std::to_string(subType);
    }
    return s;
}

// Ten defaults, spread over the table so each column's lookup walks far.
std::string defaultsText() {
    std::string s;
    for (int c = 1; c <= kColumns; ++c) {
        if (c > 1) s += "~~";
        s += "10~Main Office~R" + std::to_string(kRecords - 1 - (c - 1) * 3000) + "~" + std::to_string(c);
    }
    return s;
}

// A practice's host: each ResourceOnClick is answered with a full day.
class BusyHost final : public ctlSchedulerEvents {
public:
    explicit BusyHost(ctlScheduler& c) : c_(c) { c_.setEventSink(this); }
    void ResourceOnClick(std::int16_t n, const std::string&, const Variant& date) override {
        const std::string column = std::to_string(n);
        const OleDate day = date.toDate();
        for (int i = 0; i < 300; ++i) {
            const OleDate start = addMinutes(day, 7 * 60 + i * 2);
            c_.AddAppointment(column, "Patient " + std::to_string(i), start, addMinutes(start, 15),
                              std::to_string(1000 + i), "Scheduled", i % 7 ? "" : "77",
                              "55" + std::to_string(i));
        }
        for (int t = 0; t < kTemplatesPerColumn; ++t) {
            const OleDate start = addMinutes(day, 6 * 60 + t * 5);
            c_.AddResourceTemplate(start, addMinutes(start, 30), "Block", t % 2 ? "#80FF80" : "C0C0FF",
                                   column, "Y");
        }
        ++loads;
    }
    int loads = 0;

private:
    ctlScheduler& c_;
};

void BM_AssignLargestCatalogue(benchmark::State& state) {
    const std::string groups = groupsText();
    Platform platform;
    platform.clock.setToday(makeDate(2026, 11, 23));
    ctlScheduler control(platform);
    BusyHost host(control);
    control.ccScheduled = 255;
    control.ResizeControl(700, 1400);
    control.setResourceGroupViews("10~Main Office~5~10");
    control.setResourceGroupDefaults(defaultsText());
    for (auto _ : state) {
        control.setResourceGroups(groups);
        benchmark::DoNotOptimize(widgetsOf(control).dvwResource[9]->appointmentSet().Count());
    }
    if (host.loads != static_cast<int>(state.iterations()) * kColumns)
        state.SkipWithError("not every column loaded");
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(groups.size()));
}
BENCHMARK(BM_AssignLargestCatalogue)->Unit(benchmark::kMillisecond);

void BM_MemchrFloor(benchmark::State& state) {
    const std::string groups = groupsText();
    for (auto _ : state) {
        std::size_t tildes = 0;
        const char* p = groups.data();
        const char* end = p + groups.size();
        while ((p = static_cast<const char*>(std::memchr(p, '~', static_cast<std::size_t>(end - p)))) !=
               nullptr) {
            ++tildes;
            ++p;
        }
        benchmark::DoNotOptimize(tildes);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(groups.size()));
}
BENCHMARK(BM_MemchrFloor)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
