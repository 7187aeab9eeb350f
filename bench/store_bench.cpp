// The store as a practice grows: the same operations on a practice with one
// week, one year and ten years of history, so that their ratios show whether
// the past costs anything. The databases are generated once into
// QUORVANE_STORE_BENCH_DATA (SQLite files) and, when QUORVANE_STORE_BENCH_SERVER
// names a server's socket folder, into databases there too.

#include "practice_store.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

using namespace practice;
using quorvane::OleDate;

namespace {

const OleDate kToday = quorvane::makeDate(2026, 11, 23);

struct Practice {
    std::string name; // "week/sqlite", ...
    QString location;
    std::unique_ptr<PracticeStore> store;
};
std::vector<Practice> practices;

QString resource(int r) { return QString::number(7001 + r); }

void openDay(benchmark::State& state, PracticeStore& store, int firstResource) {
    for (auto _ : state)
        for (int r = firstResource; r < firstResource + 10; ++r) {
            benchmark::DoNotOptimize(store.appointments(resource(r), kToday));
            benchmark::DoNotOptimize(store.templates(resource(r), kToday));
            benchmark::DoNotOptimize(store.appointmentTypes(resource(r)));
        }
}

void groupSwitch(benchmark::State& state, PracticeStore& store) {
    int first = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(store.catalogue());
        first = 10 - first;
        for (int r = first; r < first + 10; ++r) {
            benchmark::DoNotOptimize(store.appointments(resource(r), kToday));
            benchmark::DoNotOptimize(store.templates(resource(r), kToday));
        }
    }
}

void search(benchmark::State& state, PracticeStore& store, const QString& fragment) {
    for (auto _ : state)
        benchmark::DoNotOptimize(store.findPatients(fragment));
}

// A booking at 6 PM, moved half an hour on and to the next resource, then removed.
void bookMoveRemove(benchmark::State& state, PracticeStore& store) {
    StoredAppointment a;
    a.resource = resource(0);
    a.start = quorvane::addMinutes(kToday, 18 * 60);
    a.end = quorvane::addMinutes(kToday, 18 * 60 + 20);
    a.description = "Bench Mark";
    a.patientId = "100001";
    a.status = "Scheduled";
    for (auto _ : state) {
        const qint64 id = store.addAppointment(a);
        const int version = store.moveAppointment(id, 1, resource(1), quorvane::addMinutes(a.start, 30),
                                                  quorvane::addMinutes(a.end, 30));
        store.removeAppointment(id, version);
    }
}

void prepare(const std::string& size, const QString& location, const PracticeSize& practice) {
    QElapsedTimer took;
    took.start();
    const bool server = location.startsWith("postgresql:");
    if (server || !QFileInfo::exists(location)) {
        PracticeStore generator("generator");
        generator.generate(location, kToday, practice, {});
        std::fprintf(stderr, "generated %s%s in %.1f s\n", size.c_str(), server ? " on the server" : "",
                     took.elapsed() / 1000.0);
    }
    Practice p{size + (server ? "/postgresql" : "/sqlite"), location, std::make_unique<PracticeStore>(QString::fromStdString(size) + location)};
    p.store->open(location, kToday);
    practices.push_back(std::move(p));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    const QString data = qEnvironmentVariable("QUORVANE_STORE_BENCH_DATA", QDir::temp().filePath("quorvane-store-bench"));
    const QString server = qEnvironmentVariable("QUORVANE_STORE_BENCH_SERVER");
    QDir().mkpath(data);
    struct Size {
        const char* name;
        PracticeSize practice;
    };
    Size sizes[] = {{"week", {}}, {"year", {}}, {"decade", {}}};
    sizes[0].practice.days = 7, sizes[1].practice.years = 1, sizes[2].practice.years = 10;
    for (const Size& s : sizes) {
        prepare(s.name, QDir(data).filePath(QString(s.name) + ".sqlite"), s.practice);
        if (!server.isEmpty())
            prepare(s.name, "postgresql://postgres@localhost/practice_" + QString(s.name) + "?host=" + server, s.practice);
    }
    for (Practice& p : practices) {
        PracticeStore& store = *p.store;
        benchmark::RegisterBenchmark(("OpenDayOfTenColumns/" + p.name).c_str(),
                                     [&store](benchmark::State& s) { openDay(s, store, 0); })
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("GroupSwitch/" + p.name).c_str(),
                                     [&store](benchmark::State& s) { groupSwitch(s, store); })
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("SearchByName/" + p.name).c_str(),
                                     [&store](benchmark::State& s) { search(s, store, "hopper 1"); })
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("SearchByChart/" + p.name).c_str(),
                                     [&store](benchmark::State& s) { search(s, store, "C-012345"); })
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("BookMoveRemove/" + p.name).c_str(),
                                     [&store](benchmark::State& s) { bookMoveRemove(s, store); })
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    practices.clear();
    return 0;
}
