#include <QuorvaneScheduler/errors.h>
#include <QuorvaneScheduler/variant.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

using namespace quorvane;

TEST(NumberText, DoublesWithFifteenDigitsSinglesWithSeven) {
    // clang-format off
    const std::pair<double, const char*> doubles[] = {
        {0.5, "0.5"}, {14900, "14900"}, {-1, "-1"}, {0, "0"}, {-0.0, "0"}, {0.1 + 0.2, "0.3"},
        {1 / 3.0, "0.333333333333333"}, {2 / 3.0, "0.666666666666667"}, {-1234.5, "-1234.5"},
        {123456789012345.0, "123456789012345"}, {1e15, "1E+15"}, {1e100, "1E+100"}, {1.5e-7, "1.5E-07"},
        {0.00001, "0.00001"}, {1e-6, "1E-06"}};
    for (const auto& [d, text] : doubles)
        EXPECT_EQ(numberText(d), text) << d;
    const std::pair<float, const char*> singles[] = {
        {4971.6667f, "4971.667"}, {0.1f, "0.1"}, {-2.5f, "-2.5"}, {1234567.f, "1234567"},
        {12345678.f, "1.234568E+07"}};
    // clang-format on
    for (const auto& [f, text] : singles)
        EXPECT_EQ(singleText(f), text) << f;
}

TEST(NumberRounding, HalfToEvenAndOverflow) {
    const std::pair<double, int> integers[] = {{2.5, 2},  {3.5, 4},         {-2.5, -2},         {-3.5, -4},
                                               {0.5, 0},  {1.5, 2},         {2.4999, 2},        {2.5001, 3},
                                               {-0.4, 0}, {32767.4, 32767}, {-32768.5, -32768}, {1e-300, 0}};
    for (const auto& [d, n] : integers)
        EXPECT_EQ(toInteger(d), n) << d;
    EXPECT_EQ(toLong(2147483647.4), 2147483647);
    EXPECT_EQ(toLong(-2147483648.5), INT32_MIN);
    EXPECT_EQ(toLong(39463.5), 39464);
    for (double bad : {32767.5, -32768.6, 1e300, std::nan(""), -std::numeric_limits<double>::infinity()})
        EXPECT_THROW(toInteger(bad), Overflow) << bad;
    for (double bad : {2147483647.5, -2147483649.0, 1e10, std::nan("")})
        EXPECT_THROW(toLong(bad), Overflow) << bad;
}

TEST(NumberParse, TextToNumber) {
    const std::pair<std::string, double> good[] = {
        {"5", 5},     {" 5 ", 5},      {"-7", -7},         {"+3.25", 3.25},    {".5", 0.5},
        {"5.", 5},    {"1,000", 1000}, {"1e3", 1000},      {"1.5E-2", 0.015},  {"2D2", 200},
        {"&H1F", 31}, {"&hff", 255},   {"&HFFFF", -1},     {"&H10000", 65536}, {"&HFFFFFFFF", -1},
        {"&O17", 15}, {"\t42\t", 42},  {"0e999999999", 0}, {"1e-99999", 0},    {"-0", 0}};
    for (const auto& [text, value] : good)
        EXPECT_EQ(textToNumber(text), value) << text;
    std::vector<std::string> mismatches = {"",   " ",   "abc", "1.2.3", "1e",  "--1", "5 5", "1,",  ",1",
                                           "&H", "&HG", "&O8", "0x10",  "nan", "inf", "1e+", "- 1", "1.5%"};
    mismatches.push_back(std::string("1\0", 2));
    for (const auto& text : mismatches)
        EXPECT_THROW(textToNumber(text), TypeMismatch) << text;
    const std::string overflows[] = {"1e999", "-1e309", "&H100000000", std::string(400, '9')};
    for (const auto& text : overflows)
        EXPECT_THROW(textToNumber(text), Overflow) << text;
    EXPECT_EQ(textToInteger(" 2.5 "), 2);
    EXPECT_EQ(textToLong("3.5"), 4);
    EXPECT_THROW(textToInteger("40000"), Overflow);
    EXPECT_THROW(textToLong("x"), TypeMismatch);
}

TEST(VariantConvert, ToStringAndNumbers) {
    const OleDate when = makeDateTime(2008, 1, 15, 9, 30, 0);
    const std::pair<Variant, const char*> texts[] = {
        {Variant(), ""},         {Variant("abc"), "abc"},   {Variant(std::int16_t{7}), "7"},
        {Variant(-5), "-5"},     {Variant(1.5f), "1.5"},    {Variant(0.5), "0.5"},
        {Variant(true), "True"}, {Variant(false), "False"}, {Variant(when), "1/15/2008 9:30:00 AM"}};
    for (const auto& [v, text] : texts)
        EXPECT_EQ(v.toString(), text);

    EXPECT_EQ(Variant().toInteger(), 0);
    EXPECT_EQ(Variant(true).toInteger(), -1);
    EXPECT_EQ(Variant("2.5").toInteger(), 2);
    EXPECT_EQ(Variant(3.5).toLong(), 4);
    EXPECT_EQ(Variant(OleDate(39462.5)).toLong(), 39462);
    EXPECT_THROW(Variant(OleDate(39462.5)).toInteger(), Overflow);
    EXPECT_THROW(Variant(40000).toInteger(), Overflow);
    EXPECT_EQ(Variant("3.5").toSingle(), 3.5f);
    EXPECT_EQ(Variant(true).toDouble(), -1.0);
    EXPECT_EQ(Variant(0.1f).toDouble(), static_cast<double>(0.1f));
    EXPECT_THROW(Variant(1e300).toSingle(), Overflow);
    EXPECT_THROW(Variant("1e999").toDouble(), Overflow);

    const ObjectRef object = std::make_shared<Object>();
    for (const Variant& v : {Variant(object), Variant("abc")}) {
        EXPECT_THROW(v.toLong(), TypeMismatch);
        EXPECT_THROW(v.toDouble(), TypeMismatch);
    }
    EXPECT_THROW(Variant(object).toString(), TypeMismatch);
}

TEST(VariantConvert, ToBooleanDateAndObject) {
    const std::pair<Variant, bool> booleans[] = {
        {Variant("true"), true},   {Variant(" FALSE "), false}, {Variant("0"), false}, {Variant("-1"), true},
        {Variant("0.0001"), true}, {Variant(0.0), false},       {Variant(2), true},    {Variant(), false}};
    for (const auto& [v, b] : booleans)
        EXPECT_EQ(v.toBoolean(), b) << v.toString();
    EXPECT_THROW(Variant("yes").toBoolean(), TypeMismatch);

    EXPECT_EQ(Variant("1/15/2008").toDate(), makeDate(2008, 1, 15));
    EXPECT_EQ(Variant("39462.5").toDate(), OleDate(39462.5));
    EXPECT_EQ(Variant(5).toDate(), OleDate(5));
    EXPECT_EQ(Variant().toDate(), OleDate(0));
    EXPECT_EQ(Variant(true).toDate(), OleDate(-1));
    EXPECT_THROW(Variant("abc").toDate(), TypeMismatch);
    EXPECT_THROW(Variant(1e10).toDate(), Overflow);

    const ObjectRef object = std::make_shared<Object>();
    EXPECT_EQ(Variant(object).toObject(), object);
    EXPECT_TRUE(Variant(ObjectRef()).isNothing());
    EXPECT_EQ(Variant().toObject(), nullptr);
    EXPECT_THROW(Variant("x").toObject(), TypeMismatch);
}
