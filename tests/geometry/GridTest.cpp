#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/Grid.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

TEST(Snapped, IsTheNearestShortDecimal) {
    const struct {
        double value;
        double origin;
        double resolution;
        double expected;
    } rows[] = {
        {0.1, 0, 0.0001, 0.1},
        {0.30000000000000004, 0, 0.0001, 0.3},
        {4512345.67891, 0, 0.0001, 4512345.6789},
        {13.4056123456789, 0, 1e-9, 13.405612346},
        {0.5, 0, 1, 1},
        {-0.5, 0, 1, -1}, // half away from zero
        {7.3, 0.25, 0.5, 7.25},
        {14, 0, 3, 15}, // no whole number of cells in a unit
        {1e300, 0, 0.0001, 1e300},
        {1.23456, 0, 0, 1.23456},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(snapped(row.value, row.origin, row.resolution), row.expected) << row.value;
    }
    EXPECT_TRUE(std::isnan(snapped(undefined, 0, 0.0001)));
}

TEST(Snapped, TwiceIsOnceAndMovesHalfACellAtMost) {
    std::mt19937 random(9);
    std::uniform_real_distribution<double> value(-1e7, 1e7);
    for (const double resolution : {0.0001, 0.001, 1e-7, 0.3, 2.0, 1.0 / 3}) {
        for (const double origin : {0.0, -5120900.0, 0.123}) {
            for (int i = 0; i < 2000; ++i) {
                const double given = value(random);
                const double once = snapped(given, origin, resolution);
                ASSERT_EQ(snapped(once, origin, resolution), once) << resolution << ' ' << origin;
                ASSERT_NEAR(once, given, resolution / 2 + 4e-9); // two units in the last place of 1e7
            }
        }
    }
}

Geometry snappedOn(const char* wkt, const CoordinateGrid& grid) {
    Geometry geometry = geometryFromWkt(wkt);
    geometry.traits().spatialReference = SpatialReference::unknown(grid);
    snapToSpatialReference(geometry);
    return geometry;
}

TEST(SnapToSpatialReference, RoundsEveryKindAndRemovesNothing) {
    const CoordinateGrid grid{.xyResolution = 1, .zResolution = 0.5, .mResolution = 10};
    const struct {
        const char* given;
        const char* expected;
    } rows[] = {
        {"POINT ZM (1.4 2.6 3.3 14)", "POINT ZM (1 3 3.5 10)"},
        {"POINT EMPTY", "POINT EMPTY"},
        {"MULTIPOINT ((1.4 0),(0.6 0))", "MULTIPOINT ((1 0),(1 0))"},
        {"LINESTRING Z (0.1 0 NaN,0.2 0 1.3)", "LINESTRING Z (0 0 NaN,0 0 1.5)"},
        {"POLYGON ((0.4 0,0 9.2,9 9,0.4 0))", "POLYGON ((0 0,0 9,9 9,0 0))"},
        // Ends on the grid: the arc stays as it is.
        {"CIRCULARSTRING (0 0,0.3 0.95,10 0)", "CIRCULARSTRING (0 0,0.3 0.95,10 0)"},
        // Both ends move by the same: the whole arc does.
        {"CIRCULARSTRING (0.25 0,5.25 5,10.25 0)", "CIRCULARSTRING (0 0,5 5,10 0)"},
        // A circle stays one.
        {"CURVEPOLYGON (CIRCULARSTRING (0.25 0,10.25 0,0.25 0))", "CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0))"},
        // An arc that is lost within one cell doesn't turn into a circle.
        {"CIRCULARSTRING (0 0,0.2 0.1,0.4 0)", "LINESTRING (0 0,0 0)"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(toWkt(snappedOn(row.given, grid)), row.expected) << row.given;
    }
}

TEST(SnapToSpatialReference, KeepsArcsOnTheirCircleAndIsIdempotent) {
    const CoordinateGrid grid{.xyResolution = 0.01};
    std::mt19937 random(10);
    std::uniform_real_distribution<double> place(-10, 10);
    std::uniform_real_distribution<double> angle(-3, 3); // less than a half turn on either side of the middle
    std::uniform_real_distribution<double> ratio(0.02, 0.98);
    for (int i = 0; i < 500; ++i) {
        const CircularArc circle{
            {place(random), place(random)}, 5 + std::abs(place(random)), angle(random), angle(random)};
        if (circle.length() < 1) {
            continue;
        }
        const XY start = circle.at(0);
        const XY middle = circle.at(ratio(random));
        const XY end = circle.at(1);
        Polyline line;
        line.spatialReference = SpatialReference::unknown(grid);
        line.paths.emplace_back();
        line.paths[0].addVertex({start.x, start.y});
        line.paths[0].addArc({middle.x, middle.y}, {end.x, end.y});

        snapToSpatialReference(line);
        const Path once = line.paths[0];
        ASSERT_EQ(once.arcs().size(), 1U);
        const CircularArc arc = once.circularArc(once.arcs()[0]);
        for (int k = 0; k <= 10; ++k) {
            const XY p = arc.at(k / 10.0);
            ASSERT_NEAR(std::hypot(p.x - circle.centre.x, p.y - circle.centre.y), circle.radius, 0.01);
        }
        snapToSpatialReference(line);
        ASSERT_TRUE(line.paths[0] == once);
    }
}

TEST(SnapToSpatialReference, DoesNothingWithoutReference) {
    Geometry line = geometryFromWkt("LINESTRING (0.123456789 0,1 1)");
    const Geometry before = line;
    snapToSpatialReference(line);
    EXPECT_TRUE(identical(line, before));
}

} // namespace
} // namespace qz
