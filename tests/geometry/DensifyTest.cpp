#include <numbers>

#include <gtest/gtest.h>

#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Densify.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/CurveSamples.h"

namespace qz {
namespace {

using std::numbers::pi;

Polyline lineOf(const char* wkt) {
    return geometryFromWkt(wkt).as<Polyline>();
}

TEST(Densify, DividesStraightSegmentsIntoEqualPieces) {
    const struct {
        const char* before;
        double length;
        const char* after;
    } rows[] = {
        {"LINESTRING ZM (0 0 0 0,8 0 4 NaN)", 3,
         "LINESTRING ZM (0 0 0 0,2.6666666666666665 0 1.3333333333333333 NaN,"
         "5.333333333333333 0 2.6666666666666665 NaN,8 0 4 NaN)"},
        {"LINESTRING (0 0,8 0,8 2)", 4, "LINESTRING (0 0,4 0,8 0,8 2)"},
        {"MULTILINESTRING ((0 0,2 0),(5 5,5 9))", 2, "MULTILINESTRING ((0 0,2 0),(5 5,5 7,5 9))"},
        {"LINESTRING (0 0,8 0)", 0, "LINESTRING (0 0,8 0)"},
        {"LINESTRING (0 0,8 0)", -5, "LINESTRING (0 0,8 0)"},
        {"LINESTRING (0 0,8 0)", 1e11, "LINESTRING (0 0,8 0)"},
        {"LINESTRING (1 1,1 1)", 1, "LINESTRING (1 1,1 1)"},
        {"LINESTRING EMPTY", 1, "LINESTRING EMPTY"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.before);
        Polyline line = lineOf(row.before);
        Polyline byAngle = line;
        densify(line, row.length, 0);
        EXPECT_EQ(toWkt(line), row.after);
        densifyByAngle(byAngle, row.length, 0.2);
        EXPECT_EQ(toWkt(byAngle), row.after);
    }
}

TEST(Densify, DividesAHalfCircleByAngle) {
    const struct {
        double angle;
        double length;
        std::size_t segments;
    } rows[] = {{0.2, 1e11, 16}, {pi / 4, 0, 4}, {-1, 0, 18}, {10, 0, 2}, {0, 5 * pi / 8, 8}, {0, 0, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.angle);
        Polyline line = lineOf("CIRCULARSTRING (0 0,5 5,10 0)");
        densifyByAngle(line, row.length, row.angle);
        EXPECT_EQ(line.paths[0].segmentCount(), row.segments);
        EXPECT_EQ(line.paths[0].hasArcs(), row.segments == 1); // no limit at all
    }
}

TEST(Densify, KeepsTheShapeWithinTheLimits) {
    CurveSamples samples(81);
    for (int i = 0; i < 100; ++i) {
        const Polyline before = samples.line(2, 8);
        Polyline after = before;
        const double maximumLength = samples.uniform(0.5, 30);
        const double maximumDeviation = samples.uniform(0.001, 2);
        densify(after, maximumLength, maximumDeviation);
        for (std::size_t part = 0; part < before.paths.size(); ++part) {
            const Path& path = before.paths[part];
            const Path& result = after.paths[part];
            EXPECT_FALSE(result.hasArcs());
            for (std::size_t k = 0; k < result.segmentCount(); ++k) {
                EXPECT_LE(segmentLength(result, k), maximumLength + 1e-8);
                EXPECT_LE(positionOf(CurveSegment(result, k).at(0.5), path)->distanceFrom, maximumDeviation + 1e-8);
                EXPECT_LT(positionOf(result.xy()[k], path)->distanceFrom, 1e-8);
            }
            for (std::size_t k = 0; k < path.vertexCount(); ++k) {
                EXPECT_EQ(positionOf(path.xy()[k], result)->distanceFrom, 0);
            }
        }
    }
}

TEST(Densify, FullCircleStaysAnArea) {
    Polygon circle = geometryFromWkt("CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0))").as<Polygon>();
    Polygon triangle = circle;
    densify(triangle, 0, 1000);
    EXPECT_EQ(triangle.rings[0].segmentCount(), 3U);
    densifyByAngle(circle, 1e11, 0.01);
    EXPECT_NEAR(area(circle), 25 * pi, 0.01);
    EXPECT_TRUE(circle.rings[0].isClosed());
}

TEST(Densify, RefusesTooManyVerticesAndOddNumbers) {
    Polyline line = lineOf("LINESTRING (0 0,1e11 0)");
    EXPECT_THROW(densify(line, 1e-300, 0), PlatformError);
    EXPECT_THROW(densify(line, 100, 0), PlatformError);
    EXPECT_THROW(densify(line, undefined, 0), PlatformError);
    EXPECT_THROW(densifyByAngle(line, 1e11, undefined), PlatformError);
    EXPECT_EQ(line.paths[0].vertexCount(), 2U);
    Polyline arc = lineOf("CIRCULARSTRING (0 0,5 5,10 0)");
    EXPECT_THROW(densify(arc, 0, 1e-300), PlatformError);
    arc.paths.emplace_back(std::vector<XY>{{0, 0}, {undefined, 0}});
    EXPECT_THROW(densify(arc, 1, 0), PlatformError);
}

} // namespace
} // namespace qz
