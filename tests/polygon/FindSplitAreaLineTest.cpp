#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/app/Services.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Motion.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/WellKnown.h"
#include "polygon/QZFindSplitAreaLine.h"
#include "polygon/QZPolygonCut.h"
#include "tests/geometry/RandomShapes.h"

namespace qz {
namespace {

constexpr const char* rectangle100x50 = "POLYGON ((0 0,0 50,100 50,100 0,0 0))";
constexpr const char* shortfall =
    "The required precision could not be achieved!\nThe closest option will be used\nRequested: ";

struct FindSplitAreaLine : testing::Test {
    FindSplitAreaLine() {
        services().locale = {"."};
        services().showMessage = [this](const std::string& text) { messages.push_back(text); };
    }

    std::optional<Polyline> find(const Polygon& polygon, const std::string& start, ShareKind kind, double required,
                                 double deviation) {
        messages.clear();
        return QZ_FindSplitAreaLine(polygon, {start, kind, "Ares", "Ares"}, required, deviation);
    }
    // As text; "none" without a line.
    std::string found(const char* wkt, const std::string& start, ShareKind kind, double required, double deviation) {
        const auto line = find(geometryFromWkt(wkt).as<Polygon>(), start, kind, required, deviation);
        return line ? toWkt(*line) : "none";
    }

    ScopedServices restored;
    std::vector<std::string> messages;
};

TEST_F(FindSplitAreaLine, StepsInFromEverySide) {
    const struct {
        const char* start;
        double area;
        const char* line;
    } rows[] = {
        {"bot", 1000, "LINESTRING (0 10,100 10)"},
        {"top", 1000, "LINESTRING (100 40,0 40)"},
        {"left", 1000, "LINESTRING (20 50,20 0)"},
        {"right", 1000, "LINESTRING (80 0,80 50)"},
        {"bot", 3400, "LINESTRING (0 34,100 34)"}, // 30, 40 is too far, 32, 34
        // 2000 is near enough, but too much: back to the place before.
        {"bot", 1999.5, "LINESTRING (0 10,100 10)"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(found(rectangle100x50, row.start, ShareKind::area, row.area, 1), row.line);
        EXPECT_EQ(found(rectangle100x50, row.start, ShareKind::percentage, row.area / 50, 1), row.line);
        EXPECT_TRUE(messages.empty());
    }
}

TEST_F(FindSplitAreaLine, SharesThatThePolygonDoesNotHave) {
    const struct {
        ShareKind kind;
        double required;
        const char* message;
    } rows[] = {
        {ShareKind::area, 5000, "The requested area is larger then the area of the polygon to be split!!!!"},
        {ShareKind::area, HUGE_VAL, "The requested area is larger then the area of the polygon to be split!!!!"},
        {ShareKind::percentage, 100, "The requested area is larger than the area of the polygon to be split!!!!"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(found(rectangle100x50, "bot", row.kind, row.required, 1), "none");
        EXPECT_EQ(messages, std::vector<std::string>{row.message});
    }
}

TEST_F(FindSplitAreaLine, WhatCanNotBeSearched) {
    EXPECT_EQ(found(rectangle100x50, "Top", ShareKind::area, 10, 1), "none");
    EXPECT_EQ(messages, std::vector<std::string>{"The side \"Top\" is not known. Sides are bot, top, left and right."});
    EXPECT_EQ(found("POLYGON EMPTY", "top", ShareKind::percentage, 10, 1), "none");
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(messages[0].ends_with(" QZ_FindSplitAreaLine"));
    EXPECT_EQ(found(rectangle100x50, "top", ShareKind::area, std::nan(""), 1), "none");
    EXPECT_EQ(messages.size(), 1U);
}

TEST_F(FindSplitAreaLine, TellsWhatWasAchieved) {
    EXPECT_EQ(found(rectangle100x50, "bot", ShareKind::area, 10.0 / 3, 1e-12).substr(0, 15), "LINESTRING (0 0");
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(messages[0].starts_with(std::string(shortfall) + "3.33333333333333\nAchieved: 3.33")) << messages[0];
    EXPECT_NE(found(rectangle100x50, "bot", ShareKind::percentage, 200.0 / 3, 1e-12), "none");
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(messages[0].starts_with(std::string(shortfall) + "66.6666666666667\nAchieved: 66.66")) << messages[0];
}

TEST_F(FindSplitAreaLine, LineThatHasLeftThePolygonGoesOn) {
    EXPECT_EQ(found(rectangle100x50, "bot", ShareKind::area, 4500, 1), "LINESTRING (0 310,100 310)");
    EXPECT_EQ(messages, std::vector{std::string(shortfall) + "4500\nAchieved: 4000"});
}

// In percentage mode the search itself compares areas, and the end the percentages.
TEST_F(FindSplitAreaLine, PercentageOfSmallAndLargePolygons) {
    const char* const unitSquare = "POLYGON ((0 0,0 1,1 1,1 0,0 0))";
    EXPECT_EQ(found(unitSquare, "left", ShareKind::percentage, 50, 2), "LINESTRING (0 1,0 0)") << "less than 2 to cut";
    EXPECT_TRUE(messages.empty());
    const auto line = find(geometryFromWkt("POLYGON ((0 0,0 5000,7000 5000,7000 0,0 0))").as<Polygon>(), "left",
                           ShareKind::percentage, 33.3, 0.01);
    ASSERT_TRUE(line);
    EXPECT_NEAR(line->paths[0].front().x, 2331, 0.7);
    EXPECT_TRUE(messages.empty());
}

TEST_F(FindSplitAreaLine, ConvertsAreasAndKeepsPercentages) {
    const Polygon polygon = geometryFromWkt(rectangle100x50).as<Polygon>();
    const struct {
        ShareKind kind;
        const char* unitIn;
        const char* unitOut;
        double requiredAfter;
        double deviationAfter;
    } rows[] = {
        {ShareKind::area, "Hectares", "SquareMeters", 1000, 10},
        {ShareKind::area, "Acres", "Acres", 0.1, 0.001},
        {ShareKind::area, "hectares", "SquareMeters", 0.1, 0.001},
        {ShareKind::percentage, "Hectares", "SquareMeters", 0.1, 0.001},
    };
    for (const auto& row : rows) {
        double required = 0.1;
        double deviation = 0.001;
        EXPECT_TRUE(QZ_FindSplitAreaLine(polygon, {"bot", row.kind, row.unitIn, row.unitOut}, required, deviation));
        EXPECT_EQ(required, row.requiredAfter);
        EXPECT_EQ(deviation, row.deviationAfter);
    }
}

// What is on the right of the line moved inward; 0 where it doesn't cut.
double areaCutOff(Polygon polygon, const Polyline& line, XY inward = {}) {
    Geometry moved(line);
    move(moved, inward.x, inward.y);
    const auto pieces = QZ_CutPolygon(moved.as<Polyline>(), polygon);
    return pieces ? area(pieces->right) : 0;
}

struct Expected {
    double area;
    double deviation;
};

// Whether the line cuts the area off, or one that is a step further in does and takes too much.
bool meets(const Polygon& polygon, const Polyline& line, XY inward, const Expected& expected) {
    const auto isNear = [&](double area) { return std::abs(area - expected.area) < expected.deviation; };
    bool near = isNear(areaCutOff(polygon, line));
    for (double step = 0.2; step > 1e-6 && !near; step /= 5) {
        near = isNear(areaCutOff(polygon, line, {inward.x * step, inward.y * step}));
    }
    return near;
}

TEST_F(FindSplitAreaLine, CutsTheShareOffPolygonsOfAnyForm) {
    std::mt19937 random(23);
    std::uniform_real_distribution<double> share(0.02, 0.98);
    constexpr int count = 150;
    int shortfalls = 0;
    for (int i = 0; i < count; ++i) {
        const Polygon polygon = simplified(
            randomStar(random, {.centre = {500000, 4000000}, .size = 100}, 5 + i % 9, i % 3 == 0, i % 2 == 0));
        const double total = area(polygon);
        const Envelope envelope = polygon.envelope();
        const std::pair<const char*, XY> sides[] = {{"bot", {0, envelope.height()}},
                                                    {"top", {0, -envelope.height()}},
                                                    {"left", {envelope.width(), 0}},
                                                    {"right", {-envelope.width(), 0}}};
        const auto& [side, inward] = sides[random() % 4];
        const double required = share(random);
        const ShareKind kind = i % 4 == 0 ? ShareKind::percentage : ShareKind::area;
        const auto line = kind == ShareKind::area ? find(polygon, side, kind, required * total, 0.001 * total)
                                                  : find(polygon, side, kind, required * 100, 0.1);
        ASSERT_TRUE(line);
        // Areas are sums of products of coordinates.
        const double rounding = 1e-9 * total;
        EXPECT_LT(areaCutOff(polygon, *line), required * total + rounding) << toWkt(polygon);
        if (messages.empty()) {
            EXPECT_TRUE(meets(polygon, *line, inward, {required * total, 0.001 * total + rounding}))
                << side << " " << required << " " << toWkt(polygon) << toWkt(*line);
        } else {
            EXPECT_TRUE(messages.size() == 1 && messages[0].starts_with(shortfall)) << messages[0];
            EXPECT_EQ(areaCutOff(polygon, *line), 0) << "it has left the polygon";
            ++shortfalls;
        }
    }
    EXPECT_LT(shortfalls, count / 5);
}

} // namespace
} // namespace qz
