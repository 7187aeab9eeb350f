#include <QuorvaneScheduler/script/script_reader.h>
#include <QuorvaneScheduler/script/console.h>

#include <gtest/gtest.h>

#include <sstream>

using namespace quorvane;
using namespace quorvane::host;

namespace {

struct ScriptRun {
    int status;
    std::string out, err;
};

ScriptRun runScript(const std::string& script, const std::function<void(Console&)>& before = {}) {
    std::ostringstream out, err;
    Console console(out, makeDate(2008, 1, 15));
    if (before) before(console);
    const int status = console.run("s.host", script, err);
    return {status, out.str(), err.str()};
}

} // namespace

TEST(ConsoleValues, PrintedAsLiteralsAScriptReadsBack) {
    // clang-format off
    const std::pair<Variant, const char*> cases[] = {
        {Variant(), "Empty"}, {Variant("a\"b\\c\r\n\t\x01\x1f"), "\"a\\\"b\\\\c\\r\\n\\t\\x01\\x1F\""},
        {Variant(std::int16_t(-1)), "-1"}, {Variant(std::int32_t(65536)), "65536"}, {Variant(4971.6667f), "4971.667"},
        {Variant(14900.0f), "14900"}, {Variant(123456789.0f), "123456800"}, {Variant(0.5), "0.5"},
        {Variant(-0.000125), "-0.000125"}, {Variant(1e20), "100000000000000000000"}, {Variant(0.1 + 0.2), "0.3"},
        {Variant(true), "True"}, {Variant(makeDateTime(2008, 1, 15, 9, 30, 0)), "#1/15/2008 9:30:00 AM#"},
        {Variant(makeDate(2008, 1, 15)), "#1/15/2008#"}, {Variant(makeTime(9, 30, 0)), "#9:30:00 AM#"},
        {Variant(ObjectRef()), "Nothing"}};
    // clang-format on
    for (const auto& [value, text] : cases)
        EXPECT_EQ(printValue(value), text);
}

TEST(ConsoleReader, LiteralsAndCommandShapes) {
    Command c = parseCommand("  set PatName = \"x\\x41\\\"\"  ");
    EXPECT_EQ(c.verb, Verb::Set);
    EXPECT_EQ(c.text, "set PatName = \"x\\x41\\\"\"");
    EXPECT_EQ(c.value.literal, Variant("xA\""));

    c = parseCommand("call AddAppointment(\"1\", -7.5, #1/15/2008 9:30 AM#, 70000, True, Empty, Nothing, v)");
    ASSERT_EQ(c.target.front().args.size(), 8u);
    const auto& a = c.target.front().args;
    EXPECT_EQ(a[1].literal.type(), VariantType::Double);
    EXPECT_EQ(a[2].literal, Variant(makeDateTime(2008, 1, 15, 9, 30, 0)));
    EXPECT_EQ(a[3].literal.type(), VariantType::Long);
    EXPECT_EQ(a[4].literal, Variant(true));
    EXPECT_TRUE(a[5].literal.isEmpty());
    EXPECT_TRUE(a[6].literal.isNothing());
    EXPECT_EQ(a[7].kind, Expr::Kind::Reference);

    EXPECT_TRUE(significant("   ' a comment").empty());
    EXPECT_TRUE(significant(" \t ").empty());
}

TEST(ConsoleReader, MalformedLinesAreScriptErrors) {
    // clang-format off
    const char* bad[] = {
        "frobnicate", "set = 1", "set X 1", "get", "get x.", "call F(1,", "call F(1 2)", "let 1 = 2",
        "answer Maybe", "on", "on Event", "user", "user wave cmdX", "user click",
        "user drag dvwResource(0) 1", "twips 0 15", "twips a b", "get \"unclosed", "get \"bad \\q\"",
        "get \"\\x4\"", "get #not a date#", "get #1/15/2008", "get 1.", "get 12ab", "get x @", "today",
        "user dblclick dvwResource(0) at #9:00 AM#"};
    // clang-format on
    for (const char* line : bad)
        EXPECT_THROW(parseCommand(line), ScriptError) << line;
    std::string deep = "get f";
    for (int i = 0; i < 200; ++i)
        deep += "(f";
    EXPECT_THROW(parseCommand(deep), ScriptError);
}

TEST(ConsoleRun, ScriptErrorStopsWithNameAndLine) {
    const ScriptRun r = runScript("get ResourceNumber\n\n' note\nget Nonesuch\nget ResourceNumber\n");
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err, "s.host:4: 'Nonesuch' names nothing\n");
    EXPECT_EQ(r.out, "> get ResourceNumber\n= \"1\"\n> get Nonesuch\n") << "nothing further runs";
    EXPECT_EQ(runScript("call Schedulapp").err, "s.host:1: unknown method 'Schedulapp' (did you mean ScheduleApp?)\n");
    EXPECT_EQ(runScript("once AddApptWithPatent call FocusControl").err,
              "s.host:1: unknown event 'AddApptWithPatent' (did you mean AddApptWithPatient?)\n");

    // clang-format off
    const char* bad[] = {
        "get ImagingEnabled", "set ResourceNumber = \"2\"", "call ResourceNumber", "call FocusControl(1)",
        "get app(0, 1).Text", "get dvwResource(10).Tag", "user menu mnoPrint", "user click dvwResource(0)",
        "let FocusControl = 1", "on Nonesuch call FocusControl", "on PatientSearch frob", "off Nonesuch",
        "get state.nonesuch", "get cmbResource.Text", "get txtPatName.List(1)", "user pick cmbNumOfSchedules \"9\"",
        "user type txtPatName \"x\"", "user scroll sbSchedule 9", "get undefinedVariable", "call GetStatus(app(0, 1))"};
    // clang-format on
    for (const char* line : bad) {
        const ScriptRun bad1 = runScript(line);
        EXPECT_EQ(bad1.status, 2) << line;
        EXPECT_EQ(bad1.err.rfind("s.host:1: ", 0), 0u) << line << " -> " << bad1.err;
    }
}

// Only what the open menu shows can be picked, and never one of its lines.
TEST(ConsoleRun, MenuPicksOnlyWhatTheOpenMenuShows) {
    const std::string open = "set ResourceGroupViews = \"1~M~1~1\"\nset ResourceGroupDefaults = \"1~M~5~1\"\n"
                             "set ResourceGroups = \"1~M~Y~5~R~C~S\"\nuser rightclick dvwResource(0) at #8:00 AM#\n";
    for (const char* pick : {"mnoDeleteApp", "mnoLine1", "mnoSchedulePatientType(1)", "mnoSchedulePatientType(51)"}) {
        const ScriptRun r = runScript(open + "user menu " + pick + "\n");
        EXPECT_EQ(r.status, 2) << pick;
        EXPECT_EQ(r.err.rfind("s.host:5: ", 0), 0u) << pick << " -> " << r.err;
    }
    EXPECT_EQ(runScript(open + "user menu mnoRecallList\nuser menu mnoRecallList\n").err,
              "s.host:6: no context menu is open\n")
        << "a pick closes the menu";
}
