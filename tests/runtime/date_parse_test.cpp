#include <QuorvaneScheduler/errors.h>
#include <QuorvaneScheduler/ole_date.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace quorvane;

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
