#include <algorithm>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Generalize.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/CurveSamples.h"

namespace qz {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

Geometry generalized(const char* wkt, double offset) {
    Geometry geometry = geometryFromWkt(wkt);
    if (Polyline* line = geometry.getIf<Polyline>()) {
        generalize(*line, offset);
    } else {
        generalize(geometry.as<Polygon>(), offset);
    }
    return geometry;
}

TEST(Generalize, KnownShapes) {
    const char* const square = "POLYGON ((0 0,0 10,10 10,10 0,0 0),(4 4,5 4,5 5,4 5,4 4))";
    const struct {
        const char* name;
        const char* before;
        double offset;
        const char* after;
    } rows[] = {
        {"exactly at the offset goes", "LINESTRING (0 0,5 1,10 0)", 1, "LINESTRING (0 0,10 0)"},
        {"farther stays", "LINESTRING ZM (0 0 1 1,5 1 2 2,10 0 3 3)", 0.999,
         "LINESTRING ZM (0 0 1 1,5 1 2 2,10 0 3 3)"},
        {"collinear vertices go", "LINESTRING (0 0,5 0,10 0)", 1e-9, "LINESTRING (0 0,10 0)"},
        {"turning back beyond the end counts", "LINESTRING (0 0,15 0,10 0)", 1, "LINESTRING (0 0,15 0,10 0)"},
        {"closed line", "LINESTRING (0 0,0 10,10 10,10 0,0 0)", 1, "LINESTRING (0 0,0 10,10 10,10 0,0 0)"},
        {"a part never vanishes", "MULTILINESTRING ((0 0,1 1,0 0),(5 5,6 6))", 100,
         "MULTILINESTRING ((0 0,0 0),(5 5,6 6))"},
        {"offset 0", "LINESTRING (0 0,5 0,10 0)", 0, "LINESTRING (0 0,5 0,10 0)"},
        {"offset below 0", "CIRCULARSTRING (0 0,5 5,10 0)", -1, "CIRCULARSTRING (0 0,5 5,10 0)"},
        {"infinite offset", "LINESTRING (0 0,5 7,10 0)", infinity, "LINESTRING (0 0,10 0)"},
        {"empty", "LINESTRING EMPTY", 1, "LINESTRING EMPTY"},
        {"flat arc", "CIRCULARSTRING (0 0,5 0.1,10 0)", 1, "LINESTRING (0 0,10 0)"},
        {"hole collapses", square, 2, "POLYGON ((0 0,0 10,10 10,10 0,0 0))"},
        {"all rings collapse", square, 20, "POLYGON EMPTY"},
        {"nothing collapses", square, 0.5, square},
        {"exterior takes its hole along", "POLYGON ((0 0,0 10,20 10,20 0,0 0),(1 1,9 9,19 1,1 1))", 10.5,
         "POLYGON EMPTY"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(toWkt(generalized(row.before, row.offset)), row.after);
    }
}

bool isSubset(const Path& part, const Path& whole) {
    return std::ranges::all_of(part.xy(), [&](XY p) { return std::ranges::find(whole.xy(), p) != whole.xy().end(); });
}

TEST(Generalize, StaysWithinTheOffset) {
    CurveSamples samples(71);
    std::size_t left = 0;
    for (int i = 0; i < 200; ++i) {
        const Polyline before = samples.line(2, 30);
        Polyline after = before;
        const double offset = samples.uniform(0.5, 20);
        generalize(after, offset);
        for (std::size_t part = 0; part < before.paths.size(); ++part) {
            const Path& path = before.paths[part];
            const Path& result = after.paths[part];
            EXPECT_FALSE(result.hasArcs());
            EXPECT_TRUE(path.hasArcs() || isSubset(result, path));
            EXPECT_TRUE(sameVertex(result.front(), path.front()) && sameVertex(result.back(), path.back()));
            left += result.vertexCount();
            for (int k = 0; k <= 100; ++k) {
                const XY p = pointAtRatio(path, k / 100.0)->xy();
                // 1e-8: what coordinates of 5e6 are rounded by.
                EXPECT_LE(positionOf(p, result)->distanceFrom, offset + 1e-8);
            }
        }
    }
    EXPECT_GT(left, 3000U);
}

TEST(Generalize, FindsTheCircleInAFullArc) {
    Polygon circle = geometryFromWkt("CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0))").as<Polygon>();
    generalize(circle, 0.01);
    EXPECT_FALSE(circle.rings.at(0).hasArcs());
    EXPECT_NEAR(area(circle), 25 * std::numbers::pi, 0.01 * perimeter(circle));
    EXPECT_LT(circle.rings[0].vertexCount(), 100U);
}

TEST(Generalize, RefusesOddNumbers) {
    Polyline line = geometryFromWkt("LINESTRING (0 0,10 0)").as<Polyline>();
    EXPECT_THROW(generalize(line, undefined), PlatformError);
    line.paths.emplace_back(std::vector<XY>{{0, 0}, {undefined, 0}});
    EXPECT_THROW(generalize(line, 1), PlatformError);
    Polyline wide = geometryFromWkt("CIRCULARSTRING (0 0,5e9 5e9,1e10 0)").as<Polyline>();
    EXPECT_THROW(generalize(wide, 1e-9), PlatformError);
    EXPECT_TRUE(wide.paths[0].hasArcs());
}

} // namespace
} // namespace qz
