#include <optional>

#include <gtest/gtest.h>

#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/TangentLine.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/CurveSamples.h"

namespace qz {
namespace {

Polyline lineOf(const char* wkt) {
    return geometryFromWkt(wkt).as<Polyline>();
}

void expectLine(const std::optional<Path>& line, XY start, XY end) {
    ASSERT_TRUE(line);
    ASSERT_EQ(line->vertexCount(), 2U);
    EXPECT_LT(distanceOf(line->front().xy(), start), 1e-12);
    EXPECT_LT(distanceOf(line->back().xy(), end), 1e-12);
}

TEST(TangentLine, RunsOutwardFromTheEnds) {
    const struct {
        const char* wkt;
        XY start;
        XY beforeStart;
        XY end;
        XY beyondEnd;
    } rows[] = {
        {"LINESTRING (0 0,10 0,10 10)", {0, 0}, {-2, 0}, {10, 10}, {10, 12}},
        {"LINESTRING (0 0,0 0,10 0,10 10,10 10)", {0, 0}, {-2, 0}, {10, 10}, {10, 12}},
        {"MULTILINESTRING ((0 0,10 0),(20 0,20 5))", {0, 0}, {-2, 0}, {20, 5}, {20, 7}},
        {"CIRCULARSTRING (0 0,5 5,10 0)", {0, 0}, {0, -2}, {10, 0}, {10, -2}},
        {"CIRCULARSTRING (0 0,5 -5,10 0)", {0, 0}, {0, 2}, {10, 0}, {10, 2}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.wkt);
        expectLine(tangentBeforeStart(lineOf(row.wkt), 2), row.start, row.beforeStart);
        expectLine(tangentBeyondEnd(lineOf(row.wkt), 2), row.end, row.beyondEnd);
    }
}

TEST(TangentLine, FollowsTheCurveAtAPosition) {
    const struct {
        const char* wkt;
        double ratio;
        XY start;
        XY end;
    } rows[] = {
        {"LINESTRING (0 0,10 0,10 10)", -1, {0, 0}, {2, 0}},    {"LINESTRING (0 0,10 0,10 10)", 0.25, {5, 0}, {7, 0}},
        {"LINESTRING (0 0,10 0,10 10)", 0.5, {10, 0}, {12, 0}}, {"LINESTRING (0 0,10 0,10 10)", 0.75, {10, 5}, {10, 7}},
        {"LINESTRING (0 0,10 0,10 10)", 2, {10, 10}, {10, 12}}, {"CIRCULARSTRING (0 0,5 5,10 0)", 0.5, {5, 5}, {7, 5}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.ratio);
        const Polyline line = lineOf(row.wkt);
        expectLine(tangentAtRatio(line, row.ratio, 2), row.start, row.end);
        expectLine(tangentAtDistance(line, row.ratio * CurveIndex(line).length(), 2), row.start, row.end);
    }
}

TEST(TangentLine, RunsLevelAndWithoutMeasureAtItsFarEnd) {
    const Path line = tangentBeyondEnd(lineOf("LINESTRING ZM (0 0 1 2,10 0 3 4)"), 2).value();
    EXPECT_TRUE(sameVertex(line.front(), {10, 0, 3, 4}));
    EXPECT_TRUE(sameVertex(line.back(), {12, 0, 3, undefined}));
}

// The distance from a curve grows with the square of the way along its tangent, half of it over the radius.
TEST(TangentLine, StaysCloseToTheCurve) {
    CurveSamples samples(31);
    int arcs = 0;
    for (int i = 0; i < 200; ++i) {
        const Path path = samples.path(1);
        const double reach = 1e-3;
        const Path tangent = tangentAtRatio(path, samples.uniform(0.2, 0.8), reach).value();
        arcs += path.hasArcs() ? 1 : 0;
        const double radius = path.hasArcs() ? path.circularArc(path.arcs()[0]).radius : 1e9;
        EXPECT_LE(positionOf(tangent.back().xy(), path)->distanceFrom, reach * reach / radius + 1e-8);
    }
    EXPECT_GT(arcs, 20);
}

TEST(TangentLine, IsNothingWithoutLength) {
    EXPECT_FALSE(tangentBeforeStart(Polyline(), 1));
    EXPECT_FALSE(tangentBeyondEnd(lineOf("LINESTRING (1 1,1 1)"), 1));
    EXPECT_FALSE(tangentAtDistance(lineOf("LINESTRING (1 1,1 1)"), 0, 1));
}

TEST(TangentLine, RefusesOddLengths) {
    const Polyline line = lineOf("LINESTRING (0 0,10 0)");
    EXPECT_THROW(static_cast<void>(tangentBeyondEnd(line, -1)), PlatformError);
    EXPECT_THROW(static_cast<void>(tangentBeforeStart(line, undefined)), PlatformError);
    EXPECT_THROW(static_cast<void>(tangentAtRatio(line, undefined, 1)), PlatformError);
    EXPECT_THROW(static_cast<void>(tangentBeyondEnd(Path(std::vector<XY>{{0, 0}, {undefined, 0}}), 1)), PlatformError);
}

} // namespace
} // namespace qz
