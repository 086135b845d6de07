#include <cmath>

#include <gtest/gtest.h>

#include "common/NumberText.h"
#include "common/QZPrecision.h"
#include "platform/Error.h"
#include "platform/app/Services.h"

namespace qz {
namespace {

struct NumberText : testing::Test {
    static void useMark(const char* mark) { services().locale = {mark}; }
    NumberText() { useMark("."); }
    ScopedServices restored;
};

TEST_F(NumberText, RoundsHalvesAwayFromZeroInTheFirstFifteenDigits) {
    const struct {
        double number;
        int decimals;
        const char* text;
    } rows[] = {
        {-1234.5, 2, "-1234.50"},
        {2.5, 0, "3"},
        {-2.5, 0, "-3"},
        {1.005, 2, "1.01"}, // 1.00499999999999989 in binary, 1.00500000000000 in 15 digits
        {0.5, 0, "1"},
        {0.05, 0, "0"},
        {0.05, 1, "0.1"},
        {-0.004, 2, "0.00"},
        {-0.0, 1, "0.0"},
        {999.995, 2, "1000.00"},
        {0.999, 2, "1.00"},
        {1234567, 0, "1234567"},
        {1e18, 1, "1000000000000000000.0"},
        {0.001, 20, "0.00100000000000000000"},
        {123456789.123456789, 12, "123456789.123457000000"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(formatUngrouped(row.number, row.decimals), row.text);
    }
    EXPECT_THROW(static_cast<void>(formatUngrouped(std::nan(""), 2)), PlatformError);
    useMark(",");
    EXPECT_EQ(formatUngrouped(-1234.5, 2), "-1234,50");
}

TEST_F(NumberText, DefaultTextHasFifteenDigits) {
    const std::pair<double, const char*> rows[] = {
        {75.0 / 1000, "0.075"},    {75.0 / 999, "7.50750750750751E-02"},
        {1e-12, "0.000000000001"}, {1e15, "1E+15"},
        {0.1 + 0.2, "0.3"},        {-0.0, "0"},
        {-1234.5, "-1234.5"},      {999999999999999, "999999999999999"},
        {1.5e300, "1.5E+300"},     {100, "100"},
    };
    for (const auto& [number, text] : rows) {
        EXPECT_EQ(defaultText(number), text);
    }
}

TEST_F(NumberText, ReadsTheSameNumberInEveryLocale) {
    const std::pair<const char*, double> numbers[] = {{"12", 12},   {" 1.5 ", 1.5}, {"+3", 3},    {"-2.5E3", -2500},
                                                      {"1d2", 100}, {".5", 0.5},    {"-.5", -0.5}};
    const char* const others[] = {"", " ", "12a", "1,500", "1 2", "inf", "nan", "+-3", "-", ".", "1.2.3", "&H1F", "e5"};
    for (const char* mark : {".", ","}) {
        useMark(mark);
        for (const auto& [text, number] : numbers) {
            EXPECT_EQ(toDouble(std::string(text)), number) << text;
        }
        for (const char* text : others) {
            if (std::string(text) != "1,500") {
                EXPECT_FALSE(isNumeric(std::string(text))) << text;
            }
        }
    }
    EXPECT_EQ(toDouble(std::string("1,5")), 1.5) << "the mark of the locale";
    useMark(".");
    EXPECT_FALSE(isNumeric(std::string("1,5")));
    EXPECT_EQ(std::get<std::int64_t>(toNumber(std::string("9007199254740993"))), 9007199254740993);
    EXPECT_FALSE(isNumeric(Value()));
    EXPECT_FALSE(isNumeric(DateTime{}));
}

TEST_F(NumberText, PrecisionOfATolerance) {
    const struct {
        double tolerance;
        int precision;
        int decimals;
    } rows[] = {
        {0.001, 15, 1},  {12345678.5, 1, 1},
        {1e-15, 15, 13}, {8.98315284119522e-9, 14, 7},
        {0.25, 15, 1},   {0.12345678901234, 11, 1},
        {0, 15, 1},      {5, 6, 5},
        {1e7, 1, 1},     {1000, 3, 2},
    };
    for (const char* mark : {".", ","}) {
        useMark(mark);
        for (const auto& row : rows) {
            EXPECT_EQ(QZ_PrecisionFromTolerance(row.tolerance), row.precision) << row.tolerance;
            EXPECT_EQ(QZ_DecimalsFromTolerance(row.tolerance), row.decimals) << row.tolerance;
        }
    }
}

TEST_F(NumberText, TrimsAWord) {
    EXPECT_EQ(QZ_TrimChar("00120", '0'), "12");
    EXPECT_EQ(QZ_TrimChar("  0102 000 30 ", '0'), "102  3") << "inner zeros stay, an empty word leaves its blank";
    EXPECT_EQ(QZ_TrimChar("", '0'), "");
    EXPECT_EQ(QZ_StripTrailingZeros(" 10.500"), "10.5");
    EXPECT_EQ(QZ_StripTrailingZeros("000"), "");
}

} // namespace
} // namespace qz
