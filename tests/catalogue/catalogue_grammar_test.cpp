#include "catalogue/catalogue_grammar.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

using namespace quorvane;
using catalogue::parseCatalogue;

namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows cells(const StringTable& t) {
    Rows out(static_cast<std::size_t>(t.rows()));
    for (int r = 0; r < t.rows(); ++r)
        for (int f = 0; f < t.fields(); ++f)
            out[static_cast<std::size_t>(r)].emplace_back(t.at(r, f));
    return out;
}

// A string of `records` records of four one-character fields.
std::string records(int count) {
    std::string s;
    s.reserve(static_cast<std::size_t>(count) * 9);
    for (int i = 0; i < count; ++i)
        s += i ? "~~a~b~c~d" : "a~b~c~d";
    return s;
}

} // namespace

// What each string becomes, in a table of three fields. A failing string leaves
// its table at the new size with everything before the fault filled.
TEST(CatalogueGrammar, SplitsOnDoubleTildeFirstThenOnSingle) {
    constexpr auto E = ErrorKind::SubscriptOutOfRange;
    // clang-format off
    const struct { const char* name; std::string text; Rows rows; std::optional<ErrorKind> error; } cases[] = {
        {"one record", "a~b~c", {{"a", "b", "c"}}, {}},
        {"an empty string leaves the table as it was", "", {{"old", "", ""}}, E},
        {"records in order", "a~b~c~~d~e~f", {{"a", "b", "c"}, {"d", "e", "f"}}, {}},
        {"surplus dropped", "a~b~c~d~e~~f~g~h", {{"a", "b", "c"}, {"f", "g", "h"}}, {}},
        {"nothing trimmed or folded", " a ~B b~ c", {{" a ", "B b", " c"}}, {}},
        {"empty first field of the string", "~b~c", {{"", "b", "c"}}, {}},
        {"empty last field of the string", "a~b~c~~d~e~", {{"a", "b", "c"}, {"d", "e", ""}}, {}},
        {"third tilde opens the next record", "a~b~c~~~e~f", {{"a", "b", "c"}, {"", "e", "f"}}, {}},
        {"three tildes alone open with an empty record", "~~~", {{"", "", ""}, {"", "", ""}}, E},
        {"record one short before three tildes", "a~b~~~d~e", {{"a", "b", ""}, {"", "", ""}}, E},
        {"same record in the middle does not parse", "a~b~~d~e~f", {{"a", "b", ""}, {"", "", ""}}, E},
        {"trailing double tilde adds an empty record", "a~b~c~~", {{"a", "b", "c"}, {"", "", ""}}, E},
        {"four tildes make an empty record", "a~b~c~~~~d~e~f", {{"a", "b", "c"}, {"", "", ""}, {"", "", ""}}, E},
        {"fault in a later record", "a~b~c~~d~e~~g~h~i", {{"a", "b", "c"}, {"d", "e", ""}, {"", "", ""}}, E},
        {"three tildes at the end: a record of two empty fields", "a~b~c~~~", {{"a", "b", "c"}, {"", "", ""}}, E},
        {"only separators", "~~", {{"", "", ""}, {"", "", ""}}, E},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        StringTable t;
        t.reset(1, 3);
        t.set(0, 0, "old");
        std::optional<ErrorKind> error;
        try {
            parseCatalogue(c.text, 3, t);
        } catch (const RuntimeError& e) {
            error = e.kind();
        }
        EXPECT_EQ(error, c.error);
        EXPECT_EQ(cells(t), c.rows);
        EXPECT_EQ(t.fields(), 3);
    }
}

// Exactly the limit parses; one record more overflows before the table is
// sized, so the rows of the last assignment stay.
TEST(CatalogueGrammar, HoldsUpToTheLimitAndKeepsTheOldTablePastIt) {
    StringTable t;
    parseCatalogue(records(catalogue::kMaxRecords - 1) + "~~w~x~y~z", 4, t);
    ASSERT_EQ(t.rows(), catalogue::kMaxRecords);
    EXPECT_EQ(t.at(catalogue::kMaxRecords - 2, 3), "d");
    EXPECT_EQ(t.at(catalogue::kMaxRecords - 1, 0), "w");

    EXPECT_THROW(parseCatalogue(records(catalogue::kMaxRecords) + "~~w~x~y~z", 4, t), Overflow);
    EXPECT_EQ(t.rows(), catalogue::kMaxRecords);
    EXPECT_EQ(t.at(catalogue::kMaxRecords - 1, 3), "z");
}
