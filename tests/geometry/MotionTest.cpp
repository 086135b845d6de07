#include <numbers>

#include <gtest/gtest.h>

#include "platform/geometry/Measures.h"
#include "platform/geometry/Motion.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/CurveSamples.h"

namespace qz {
namespace {

using std::numbers::pi;

const char* const shapes[] = {
    "POINT ZM (3 1 7 8)",
    "MULTIPOINT ((3 1),(4 1))",
    "COMPOUNDCURVE Z (CIRCULARSTRING Z (3 1 0,5 3 1,7 1 2),(7 1 2,9 1 3))",
    "CURVEPOLYGON (CIRCULARSTRING (3 1,7 1,3 1))",
};

TEST(Motion, MovesEverythingAlike) {
    const char* const moved[] = {
        "POINT ZM (13 -1 7 8)",
        "MULTIPOINT ((13 -1),(14 -1))",
        "COMPOUNDCURVE Z (CIRCULARSTRING Z (13 -1 0,15 1 1,17 -1 2),(17 -1 2,19 -1 3))",
        "CURVEPOLYGON (CIRCULARSTRING (13 -1,17 -1,13 -1))",
    };
    for (std::size_t i = 0; i < std::size(shapes); ++i) {
        Geometry geometry = geometryFromWkt(shapes[i]);
        move(geometry, 10, -2);
        EXPECT_EQ(toWkt(geometry), moved[i]);
        move(geometry, -10, 2);
        EXPECT_EQ(toWkt(geometry), shapes[i]);
    }
}

TEST(Motion, QuarterTurnsAreExact) {
    const char* const turned[] = {
        "POINT ZM (1 3 7 8)",
        "MULTIPOINT ((1 3),(1 4))",
        "COMPOUNDCURVE Z (CIRCULARSTRING Z (1 3 0,-1 5 1,1 7 2),(1 7 2,1 9 3))",
        "CURVEPOLYGON (CIRCULARSTRING (1 3,1 7,1 3))",
    };
    for (std::size_t i = 0; i < std::size(shapes); ++i) {
        Geometry geometry = geometryFromWkt(shapes[i]);
        rotate(geometry, {1, 1}, pi / 2);
        rotate(geometry, {1, 1}, -2 * pi);
        EXPECT_EQ(toWkt(geometry), turned[i]);
        rotate(geometry, {1, 1}, 1.5 * pi);
        EXPECT_EQ(toWkt(geometry), shapes[i]);
    }
}

TEST(Motion, KeepsLengthsAndArcs) {
    CurveSamples samples(101);
    for (int i = 0; i < 200; ++i) {
        const Polyline before = samples.line(2, 5);
        Geometry after = before;
        const XY centre = samples.pointNear({500000, 5500000}, 100);
        const double angle = samples.uniform(-10, 10);
        rotate(after, centre, angle);
        const Polyline& line = after.as<Polyline>();
        // Coordinates of 5e6 are rounded by 1e-9, which a flat arc shows a thousandfold and more.
        EXPECT_NEAR(length(line), length(before), 1e-7 * length(before));
        EXPECT_EQ(line.paths[0].arcs().size(), before.paths[0].arcs().size());
        const XY arm{before.paths[0].front().x - centre.x, before.paths[0].front().y - centre.y};
        const XY expected{centre.x + arm.x * std::cos(angle) - arm.y * std::sin(angle),
                          centre.y + arm.x * std::sin(angle) + arm.y * std::cos(angle)};
        EXPECT_LT(distanceOf(line.paths[0].front().xy(), expected), 1e-8);
        rotate(after, centre, -angle);
        EXPECT_LT(distanceOf(line.paths[1].back().xy(), before.paths[1].back().xy()), 1e-8);
    }
}

TEST(Motion, RefusesOddNumbersAndLeavesTheGeometry) {
    Geometry geometry = geometryFromWkt(shapes[0]);
    EXPECT_THROW(move(geometry, undefined, 0), PlatformError);
    EXPECT_THROW(rotate(geometry, {0, 0}, undefined), PlatformError);
    EXPECT_THROW(rotate(geometry, {undefined, 0}, 1), PlatformError);
    EXPECT_EQ(toWkt(geometry), shapes[0]);
}

} // namespace
} // namespace qz
