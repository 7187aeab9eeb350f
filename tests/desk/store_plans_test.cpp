// The reads a growing practice leans on go through indexes, on both engines:
// a column's day by the appointments' day index, and a search by a fragment of
// a name or a chart number by the engine's trigram index. Checked with the
// engine's own plan of the store's own statement, on a generated practice.

#include "local_pg_server.h"
#include "practice_store.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace quorvane;

namespace practice {
namespace {

const OleDate kToday = makeDate(2026, 11, 23);

// A full scan of a table reads "Seq Scan on NAME" on a server, "SCAN NAME" in a file.
void expectNoScanOf(const QStringList& plan, const QString& table) {
    for (const QString& step : plan) {
        EXPECT_FALSE(step.contains("Seq Scan on " + table) || step == "SCAN " + table ||
                     step.startsWith("SCAN " + table + " "))
            << plan.join("\n").toStdString();
    }
}

// A server's planner reads a small table whole, rightly: the patients are as
// many as a practice of some years has.
void expectIndexedReads(const QString& location, bool server) {
    PracticeStore store("plans");
    store.generate(location, kToday, PracticeSize{4, server ? 100000 : 20000, 1, 25}, {});
    PracticeStore desk("desk");
    desk.open(location, kToday);
    EXPECT_EQ(desk.appointments("7001", kToday).size(), 25u);
    const QStringList day = desk.planOfLastRead();
    expectNoScanOf(day, "appointments");
    std::cout << "The day of a column:\n  " << day.join("\n  ").toStdString() << "\n";
    for (const char* fragment : {"hopper 1", "C-00123"}) {
        EXPECT_FALSE(desk.findPatients(fragment).empty()) << fragment;
        const QStringList search = desk.planOfLastRead();
        expectNoScanOf(search, "patients");
        EXPECT_TRUE(search.join(" ").contains(server ? "trigrams" : ":L")) << search.join("\n").toStdString();
        std::cout << "A search for \"" << fragment << "\":\n  " << search.join("\n  ").toStdString() << "\n";
    }
}

TEST(StorePlans, DayAndSearchReadIndexesInAFile) {
    QTemporaryDir dir;
    expectIndexedReads(dir.filePath("large.sqlite"), false);
}

TEST(StorePlans, DayAndSearchReadIndexesOnAServer) {
    local::Server server;
    if (!server.available()) GTEST_SKIP() << "no PostgreSQL server programs on this machine";
    ASSERT_TRUE(server.start());
    expectIndexedReads(server.location(), true);
}

} // namespace
} // namespace practice
