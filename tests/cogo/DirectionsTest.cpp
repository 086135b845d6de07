#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cogo/QZDirections.h"

namespace qz {
namespace {

const std::array types{"North Azimuth", "South Azimuth", "Polar", "Quadrant Bearing"};
const std::array units{"Radians", "Decimal Degrees", "Degrees Minutes Seconds", "Gradians", "Gons"};
constexpr const char* sexagesimal = "Degrees Minutes Seconds";
constexpr const char* bearing = "Quadrant Bearing";

double polar(double northAzimuth) {
    return 90 - northAzimuth;
}

double degrees(double whole, double minutes, double seconds) {
    return whole + minutes / 60 + seconds / 3600;
}

double turnBetween(double a, double b) {
    return std::abs(std::remainder(a - b, 360));
}

TEST(Directions, AxesInEveryType) {
    const struct {
        double polar;
        std::array<const char*, 4> texts; // in the order of the types
    } rows[] = {
        {0, {"90.00", "270.00", "0.00", "N 90.00 E"}},
        {90, {"0.00", "180.00", "90.00", "N 0.00 E"}},
        {180, {"270.00", "90.00", "180.00", "N 90.00 W"}},
        {270, {"180.00", "0.00", "270.00", "S 0.00 E"}},
        {44.5, {"45.50", "225.50", "44.50", "N 45.50 E"}},
        {-30, {"120.00", "300.00", "330.00", "S 60.00 E"}},
        {-830, {"200.00", "20.00", "250.00", "S 20.00 W"}},
        {100.25, {"349.75", "169.75", "100.25", "N 10.25 W"}},
        {-0.0, {"90.00", "270.00", "0.00", "N 90.00 E"}},
        // What rounds to an axis is written as that axis.
        {359.999999, {"90.00", "270.00", "0.00", "N 90.00 E"}},
        {-1e-20, {"90.00", "270.00", "0.00", "N 90.00 E"}},
        {90.000001, {"0.00", "180.00", "90.00", "N 0.00 E"}},
        {180.000001, {"270.00", "90.00", "180.00", "N 90.00 W"}},
        {269.999999, {"180.00", "0.00", "270.00", "S 0.00 E"}},
    };
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < types.size(); ++i) {
            EXPECT_EQ(QZ_FormatDirection(row.polar, types[i], "Decimal Degrees", 2), row.texts[i]) << row.polar;
        }
    }
}

TEST(Directions, UnitsAndDecimals) {
    const struct {
        double polar;
        const char* type;
        const char* unit;
        std::int16_t precision;
        const char* text;
    } rows[] = {
        {45, "Polar", "Radians", 5, "0.78540"},
        {45, "Polar", "Gradians", 3, "50.000"},
        {polar(-22.5), bearing, "Gons", 2, "N 25.00 W"},
        {polar(22.5), "North Azimuth", "Decimal Degrees", 0, "23"}, // halves go up
        {polar(0.125), bearing, "Decimal Degrees", 2, "N 0.13 E"},
        {polar(degrees(10, 20, 12.345)), "North Azimuth", sexagesimal, 2, "10-20-12.35"},
        {polar(degrees(359, 59, 59.999)), "North Azimuth", "Radians", 4, "0.0000"},
        {polar(91.0 / 256), "North Azimuth", "Decimal Degrees", 15, "0.355468750000000"},
        {30, "Polar", "Decimal Degrees", -1, "30"},
        {30, "Polar", "Decimal Degrees", std::numeric_limits<std::int16_t>::max(), "30.000000000000000"},
        {degrees(1, 2, 3.25), "Polar", sexagesimal, 0, "1-02-03"},
        {degrees(1, 2, 3.25), "Polar", sexagesimal, 10, "1-02-03.2500000000"},
        {polar(45.5), bearing, sexagesimal, 2, "N 45-30-00.00 E"},
        {polar(degrees(10, 20, 0)), "North Azimuth", sexagesimal, 2, "10-20-00.00"},
        {polar(-degrees(10, 20, 0)), "South Azimuth", sexagesimal, 2, "169-40-00.00"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(QZ_FormatDirection(row.polar, row.type, row.unit, row.precision), row.text);
    }
}

TEST(Directions, SixtySecondsAreCarriedSixtyMinutesAreNot) {
    const struct {
        double northAzimuth;
        const char* type;
        std::int16_t precision;
        const char* text;
        double read; // north azimuth
    } rows[] = {
        {degrees(45, 29, 59.996), bearing, 2, "N 45-30-0.00 E", 45.5},
        {degrees(45, 29, 59.996), bearing, 3, "N 45-29-59.996 E", degrees(45, 29, 59.996)},
        {degrees(45, 29, 59.99996), bearing, 4, "N 45-30-0.00 E", 45.5},
        {degrees(45, 29, 59.6), bearing, 0, "N 45-30-0.00 E", 45.5},
        {degrees(45, 59, 59.996), bearing, 2, "N 45-60-0.00 E", 46},
        {degrees(134, 0, 0.004), bearing, 2, "S 45-60-0.00 E", 134},
        {degrees(45, 29, 59.996), "North Azimuth", 2, "45-30-0.00", 45.5},
        {degrees(45, 4, 59.6), "North Azimuth", 0, "45-5-0.00", degrees(45, 5, 0)},
        {degrees(359, 59, 59.996), "North Azimuth", 2, "359-60-0.00", 0},
        {-degrees(0, 29, 59.996), bearing, 2, "N 0-30-0.00 W", -0.5},
    };
    for (const auto& row : rows) {
        const std::string text = QZ_FormatDirection(polar(row.northAzimuth), row.type, sexagesimal, row.precision);
        EXPECT_EQ(text, row.text);
        const auto read = QZ_ReadDirection(text, row.type, sexagesimal);
        ASSERT_TRUE(read) << text;
        EXPECT_LT(turnBetween(*read, polar(row.read)), 1e-12) << text;
    }
}

TEST(Directions, WhatIsRefused) {
    for (const double angle : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        EXPECT_EQ(QZ_FormatDirection(angle, "Polar", "Gons", 2), "");
    }
    EXPECT_EQ(QZ_FormatDirection(1, "polar", "Gons", 2), "");
    EXPECT_EQ(QZ_FormatDirection(1, "Polar", "Degrees", 2), "");
    EXPECT_EQ(QZ_FormatDirection(1, "", sexagesimal, 2), "");
    EXPECT_FALSE(QZ_ReadDirection("1.00", "polar", "Gons"));
    EXPECT_FALSE(QZ_ReadDirection("1.00", "Polar", "gons"));

    for (const char* text : {"", " ", "-1", "+1", "1e1", "1,5", ".5", "5.", "1.2.3", "inf", "nan", "360.01", "361",
                             "N 1 E", "1-2-3", "1 2"}) {
        EXPECT_FALSE(QZ_ReadDirection(text, "Polar", "Decimal Degrees")) << text;
    }
    for (const char* text : {"45", "45-30", "45-30-00.00-1", "-45-30-00", "45-61-00.00", "45-60-00.01", "45-30-60.01",
                             "45-30.5-00", "4.5-30-00", "45--00", "360-00-00.01", "45-30-00 E", "--"}) {
        EXPECT_FALSE(QZ_ReadDirection(text, "South Azimuth", sexagesimal)) << text;
    }
    for (const char* text : {"45", "N", "NE", "N E", "E 45 N", "N 45", "45 E", "n 45 e", "N 90.01 E", "N 45 S",
                             "N -45 E", "N 45-00-00 E"}) {
        EXPECT_FALSE(QZ_ReadDirection(text, bearing, "Decimal Degrees")) << text;
    }
}

TEST(Directions, WhatPeopleType) {
    const struct {
        const char* text;
        const char* type;
        const char* unit;
        double polar;
    } rows[] = {
        {" 45.5 ", "North Azimuth", "Decimal Degrees", 44.5},
        {"360", "North Azimuth", "Decimal Degrees", 90},
        {"400.00", "Polar", "Gons", 0},
        {"S45-5-3.5W", bearing, sexagesimal, 270 - degrees(45, 5, 3.5)},
        {"S 90 W", bearing, "Decimal Degrees", 180},
        {"90.00000000000001", "North Azimuth", "Decimal Degrees", 0},
        {"N 1.571 W", bearing, "Radians", 180},
        {"045-05-03", "Polar", sexagesimal, degrees(45, 5, 3)},
    };
    for (const auto& row : rows) {
        const auto read = QZ_ReadDirection(row.text, row.type, row.unit);
        ASSERT_TRUE(read) << row.text;
        EXPECT_NEAR(*read, row.polar, 1e-12) << row.text;
    }
}

double unitDegrees(const std::string& unit, int precision) {
    const double whole = unit == "Radians"                             ? 180 / std::acos(-1)
                         : unit == sexagesimal                         ? 1.0 / 3600
                         : unit == std::string_view("Decimal Degrees") ? 1
                                                                       : 0.9;
    return whole * std::pow(10, -precision);
}

bool isCarried(const std::string& text) {
    return text.find("-0.00") != std::string::npos;
}

// The text tells the angle to half of its last decimal, and reading and writing it again changes nothing; a carried
// text, which has fewer digits, still tells the same direction.
void expectTextAndBack(double angle, const std::string& type, const std::string& unit, std::int16_t precision) {
    const std::string text = QZ_FormatDirection(angle, type, unit, precision);
    const auto read = QZ_ReadDirection(text, type, unit);
    ASSERT_TRUE(read) << text << " " << type << " " << unit;
    EXPECT_TRUE(*read >= 0 && *read < 360) << text;
    // Halves begin a billionth of a second early; six roundings of angles below 360 degrees.
    const double slack = 1e-9 / 3600 + 6 * 0x1p-45;
    ASSERT_LT(turnBetween(*read, angle), unitDegrees(unit, precision) / 2 + slack) << text;
    const std::string again = QZ_FormatDirection(*read, type, unit, precision);
    if (isCarried(text)) {
        EXPECT_LT(turnBetween(*QZ_ReadDirection(again, type, unit), *read), 1e-12) << text << " " << again;
    } else {
        ASSERT_EQ(again, text) << type << " " << unit << " " << angle;
    }
}

void addAround(int minutes, std::vector<double>& angles) {
    for (const double seconds : {0.0, 1e-9, 4e-9, 6e-9, 1e-7, 0.004, 0.005, 0.5, 0.51, 29.9}) {
        angles.push_back((minutes * 60 + seconds) / 3600);
        angles.push_back((minutes * 60 - seconds) / 3600);
    }
    angles.push_back(std::nextafter(minutes / 60.0, -1));
    angles.push_back(std::nextafter(minutes / 60.0, 361));
}

std::vector<double> sweptAngles() {
    std::vector<double> angles;
    for (int minutes = 0; minutes <= 360 * 60; minutes += 90 * 60) {
        addAround(minutes, angles);
    }
    for (int minutes = 1; minutes < 360 * 60; minutes += 187) {
        addAround(minutes, angles);
        addAround(minutes / 60 * 60, angles);
    }
    std::mt19937 random(3);
    std::uniform_real_distribution<double> anywhere(0, 360);
    for (int i = 0; i < 300; ++i) {
        angles.push_back(anywhere(random));
    }
    return angles;
}

TEST(Directions, TextAndBack) {
    for (const double angle : sweptAngles()) {
        for (const char* type : types) {
            for (const char* unit : units) {
                for (std::int16_t precision = 0; precision <= 8; ++precision) {
                    ASSERT_NO_FATAL_FAILURE(expectTextAndBack(angle, type, unit, precision));
                }
            }
        }
    }
}

TEST(AreaUnits, Conversion) {
    const struct {
        double value;
        const char* from;
        const char* to;
        double result;
    } rows[] = {
        {1, "Hectares", "Acres", 2.4710540726}, // 10000 / 4046.856
        {1, "SquareMiles", "SquareKilometers", 2.589988},
        {2, "SquareYards", "SquareFeet", 18.0000008611},
        {3, "Decares", "Ares", 30},
        {5, "SquareMeters", "SquareKilometers", 5e-6},
        {5, "hectares", "Acres", 5},
        {5, "Hectares", "acres", 5},
        {-1.5, "Ares", "SquareMeters", -150},
        {1e-12, "Acres", "Acres", 1e-12},
        {123456789012345.6, "Acres", "Acres", 123456789012345.6},
        {1e300, "Ares", "SquareMeters", 1e302}, // beyond what 10 decimals can be cut off from
    };
    for (const auto& row : rows) {
        EXPECT_EQ(QZ_ConvertArea(row.value, row.from, row.to), row.result) << row.from << " " << row.to;
    }
}

} // namespace
} // namespace qz
