#include <QuorvaneScheduler/errors.h>
#include <QuorvaneScheduler/ole_date.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

using namespace quorvane;

namespace {
OleDate at(int h, int m, int s = 0) { return makeDateTime(2008, 1, 15, h, m, s); }
} // namespace

// Callers cut and test these texts by length: 8, 9 and 10 characters for a
// date alone, 10 for a time with a one-digit hour, 11 with two.
TEST(OleDateText, GeneralDateText) {
    // clang-format off
    const std::pair<double, const char*> cases[] = {
        {0, "12:00:00 AM"}, {0.5, "12:00:00 PM"}, {makeTime(0, 5, 0).value, "12:05:00 AM"},
        {39462, "1/15/2008"}, {at(9, 30).value, "1/15/2008 9:30:00 AM"},
        {makeDateTime(2008, 12, 5, 22, 30, 5).value, "12/5/2008 10:30:05 PM"},
        {39462 - 1e-9, "1/15/2008"}, {1 - 1e-9, "12/31/1899"}, {-1.25, "12/29/1899 6:00:00 AM"},
        {-0.5, "12:00:00 PM"}, {-1, "12/29/1899"}, {61, "3/1/1900"}, {36585, "2/29/2000"},
        {-657434, "1/1/0100"}, {2958465.99999999, "12/31/9999 11:59:59 PM"}, {39452, "1/5/2008"},
        {39797, "12/15/2008"}, {makeTime(9, 30, 0).value, "9:30:00 AM"}, {makeTime(10, 30, 0).value, "10:30:00 AM"},
        {makeDateTime(2008, 1, 5, 9, 5, 0).value, "1/5/2008 9:05:00 AM"},
        {makeDateTime(2008, 12, 15, 12, 0, 0).value, "12/15/2008 12:00:00 PM"}};
    // clang-format on
    for (const auto& [value, text] : cases)
        EXPECT_EQ(generalDateText(OleDate(value)), text) << value;
}

TEST(OleDateText, ShortFormsAndFormat00) {
    const std::pair<OleDate, const char*> cases[] = {
        {at(9, 30), "1/15/2008 09:30 01/15/2008"},
        {makeDateTime(2008, 1, 5, 17, 5, 0), "1/5/2008 17:05 01/05/2008"},
        {OleDate(0), "12/30/1899 00:00 12/30/1899"}};
    for (const auto& [d, text] : cases)
        EXPECT_EQ(shortDateText(d) + " " + shortTimeText(d) + " " + mmddyyyyText(d), text);
    const std::pair<std::int64_t, const char*> numbers[] = {
        {0, "00"}, {7, "07"}, {123, "123"}, {-7, "-07"}, {INT64_MIN, "-9223372036854775808"}};
    for (const auto& [n, text] : numbers)
        EXPECT_EQ(format00(n), text);
}

TEST(OleDateMake, RollsOverLikeDateSerial) {
    EXPECT_EQ(makeDate(2008, 1, 15).value, 39462);
    EXPECT_EQ(makeDate(100, 1, 1).value, -657434);
    EXPECT_EQ(makeDate(9999, 12, 31).value, 2958465);
    // clang-format off
    const std::pair<OleDate, OleDate> cases[] = {
        {makeDate(2008, 13, 1), makeDate(2009, 1, 1)}, {makeDate(2008, 3, 0), makeDate(2008, 2, 29)},
        {makeDate(2008, 0, 1), makeDate(2007, 12, 1)}, {makeDate(2008, -11, 1), makeDate(2007, 1, 1)},
        {makeDate(99, 1, 1), makeDate(1999, 1, 1)}, {makeDate(5, 1, 1), makeDate(2005, 1, 1)},
        {makeDate(29, 12, 31), makeDate(2029, 12, 31)}, {makeDate(30, 1, 1), makeDate(1930, 1, 1)},
        {makeTime(24, 0, 0), OleDate(1)}, {at(23, 90), makeDateTime(2008, 1, 16, 0, 30, 0)},
        {makeDateTime(1899, 12, 29, 6, 0, 0), OleDate(-1.25)}, {makeTime(-1, 0, 0), OleDate(-1 - 23.0 / 24)}};
    // clang-format on
    for (const auto& [rolled, expected] : cases)
        EXPECT_EQ(rolled, expected) << generalDateText(expected);
}

TEST(OleDateMake, SplitAndMakeAgreeAcrossTheWholeRange) {
    for (int day = -657434; day <= 2958465; day += 997) {
        const double time = makeTime(day % 24, day % 60, 59).value;
        const OleDate v(day >= 0 ? day + time : day - time);
        const DateParts p = splitDate(v);
        ASSERT_EQ(makeDateTime(p.year, p.month, p.day, p.hour, p.minute, p.second), v) << day;
    }
}

TEST(OleDateMake, OutOfRangeFails) {
    EXPECT_THROW(makeDate(10000, 1, 1), InvalidProcedureCall);
    EXPECT_THROW(makeDate(100, 1, 0), InvalidProcedureCall);
    EXPECT_THROW(makeDate(-1, 1, 1), InvalidProcedureCall);
    EXPECT_THROW(makeDate(40000, 1, 1), Overflow);
    EXPECT_THROW(makeTime(0, 0, 32768), Overflow);
    EXPECT_THROW(addDays(makeDate(9999, 12, 31), 1), InvalidProcedureCall);
    EXPECT_THROW(addMinutes(OleDate(0), INT64_MIN), InvalidProcedureCall);
    for (double bad : {std::nan(""), 1e10, -657435.0, 2958466.0, HUGE_VAL})
        EXPECT_THROW(generalDateText(OleDate(bad)), Overflow) << bad;
}

TEST(OleDateArith, PartsAndSteps) {
    EXPECT_EQ(datePart(at(9, 30)), makeDate(2008, 1, 15));
    EXPECT_EQ(timePart(at(9, 30)), makeTime(9, 30, 0));
    EXPECT_EQ(datePart(OleDate(-1.25)), OleDate(-1));
    EXPECT_EQ(timePart(OleDate(-1.25)), OleDate(0.25));
    EXPECT_EQ(datePart(OleDate(39463 - 1e-9)), OleDate(39463));
    EXPECT_EQ(minuteOfDay(at(17, 5, 40)), 17 * 60 + 5);
    EXPECT_EQ(addDays(OleDate(0.25), -1), OleDate(-1.25));
    EXPECT_EQ(addMinutes(OleDate(-1.25), 18 * 60), OleDate(0));
    EXPECT_EQ(addMinutes(at(23, 30), 60), makeDateTime(2008, 1, 16, 0, 30, 0));
}

TEST(OleDateArith, MinutesBetweenCountsMinuteBoundaries) {
    // clang-format off
    const std::tuple<OleDate, OleDate, std::int64_t> cases[] = {
        {at(9, 30), at(9, 31, 59), 1}, {at(9, 30, 59), at(9, 31), 1}, {at(9, 31), at(9, 30), -1},
        {at(23, 59), makeDateTime(2008, 1, 16, 0, 1, 0), 2}, {OleDate(at(9, 30).value - 1e-9), at(9, 31), 1},
        {OleDate(-1.25), OleDate(-1), -360}, {OleDate(-1.25), OleDate(0), 1080}};
    // clang-format on
    for (const auto& [a, b, minutes] : cases)
        EXPECT_EQ(minutesBetween(a, b), minutes) << generalDateText(a);
}

TEST(DateParse, AcceptsDatesTimesAndBoth) {
    // Each text against the general date text of what it must read as.
    // clang-format off
    const std::pair<const char*, const char*> cases[] = {
        {"1/15/2008", "1/15/2008"}, {"01/05/2008", "1/5/2008"}, {"1/15/08", "1/15/2008"}, {"1/15/29", "1/15/2029"},
        {"1/15/30", "1/15/1930"}, {"1/1/100", "1/1/0100"}, {"2008-01-15", "1/15/2008"}, {"1-15-2008", "1/15/2008"},
        {"13/1/2008", "1/13/2008"}, {"9:30", "9:30:00 AM"}, {"9:05:07", "9:05:07 AM"}, {"9:30 AM", "9:30:00 AM"},
        {"9:30:00 PM", "9:30:00 PM"}, {"9:30 pm", "9:30:00 PM"}, {"9:30AM", "9:30:00 AM"}, {"9 AM", "9:00:00 AM"},
        {"12:00:00 AM", "12:00:00 AM"}, {"12:30 PM", "12:30:00 PM"}, {" 9:30:00 AM", "9:30:00 AM"},
        {"1/15/2008 9:30:00 AM", "1/15/2008 9:30:00 AM"}, {"  1/15/2008   17:05\t", "1/15/2008 5:05:00 PM"},
        {"9:30 AM 1/15/2008", "1/15/2008 9:30:00 AM"}, {"12/29/1899 6:00", "12/29/1899 6:00:00 AM"}};
    // clang-format on
    for (const auto& [text, expected] : cases) {
        OleDate out;
        EXPECT_TRUE(tryParseDate(text, out)) << text;
        EXPECT_EQ(generalDateText(out), expected) << text;
        EXPECT_EQ(parseDate(text), out) << text;
    }
    EXPECT_EQ(parseDate("12:00:00 AM").value, 0.0);
    EXPECT_EQ(parseDate("12/29/1899 6:00").value, -1.25);
}

TEST(DateParse, RejectsWhatIsNoDate) {
    // clang-format off
    std::vector<std::string> cases = {
        "", "   ", "abc", "13/45/2008", "1/15/2008 25:00", "9:60", "9:30:60", "1/15", "2/29/2007", "13:00 PM", "9",
        "1/15/2008x", "1/15/200800", "1/15/2008 1/16/2008", "9:30 9:31", "9:30 AMX", "9:30 AM PM", "12/31/10000",
        "1/1/0099", "1/15-2008", "1/15/2008,9:30", "-1/15/2008", "1//2008", "9:", ":30", "1/15/2008 9:30:"};
    // clang-format on
    cases.push_back(std::string("1/15/2008\0", 10));
    cases.push_back(std::string(100000, '9'));
    for (const auto& text : cases) {
        EXPECT_THROW(parseDate(text), TypeMismatch) << text;
        OleDate out(42);
        EXPECT_FALSE(tryParseDate(text, out)) << text;
        EXPECT_EQ(out, OleDate(42)) << "left untouched on failure";
    }
}
