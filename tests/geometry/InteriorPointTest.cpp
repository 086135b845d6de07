#include "platform/geometry/InteriorPoint.h"

#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/Relations.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

Polygon polygon(const char* wkt) {
    return geometryFromWkt(wkt).as<Polygon>();
}

// A star of random radii around (x, y), with a small hole in the middle.
Polygon star(std::mt19937& random, double x, double y) {
    std::uniform_real_distribution<double> radius(2, 10);
    Path outside;
    Path hole;
    for (int i = 0; i < 24; ++i) {
        const double angle = -2 * std::numbers::pi * i / 24;
        const double r = radius(random);
        outside.addVertex({x + r * std::cos(angle), y + r * std::sin(angle)});
        hole.addVertex({x + std::cos(-angle), y + std::sin(-angle)});
    }
    outside.addVertex(outside.front());
    hole.addVertex(hole.front());
    Polygon result;
    result.rings = {outside, hole};
    return result;
}

TEST(Centroid, IsTheCentreOfGravity) {
    const double bowl = 4 / (3 * std::numbers::pi); // of a half circle of radius 1 above its diameter
    const struct {
        const char* wkt;
        XY centre;
    } rows[] = {
        {"POLYGON ((0 0,0 3,3 3,3 0,0 0))", {1.5, 1.5}},
        {"POLYGON ((0 0,0 2,4 0,0 0))", {4.0 / 3, 2.0 / 3}},
        {"POLYGON ((0 0,0 4,4 4,4 0,0 0),(1 1,2 1,2 2,1 2,1 1))", {(16 * 2 - 1.5) / 15, (16 * 2 - 1.5) / 15}},
        {"MULTIPOLYGON (((0 0,0 1,1 1,1 0,0 0)),((9 0,9 1,10 1,10 0,9 0)))", {5, 0.5}},
        {"CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (-1 0,0 1,1 0),(1 0,-1 0)))", {0, bowl}},
        {"CURVEPOLYGON (CIRCULARSTRING (-1 7,1 7,-1 7))", {0, 7}},
        {"POLYGON ((0 0,2 2,4 4,0 0))", {2, 2}},
    };
    for (const auto& row : rows) {
        const std::optional<Point> centre = centroid(polygon(row.wkt));
        ASSERT_TRUE(centre) << row.wkt;
        EXPECT_NEAR(centre->vertex.x, row.centre.x, 1e-12) << row.wkt;
        EXPECT_NEAR(centre->vertex.y, row.centre.y, 1e-12) << row.wkt;
    }
    EXPECT_FALSE(centroid(Polygon()));
}

TEST(Centroid, KeepsItsPlaceFarFromTheOrigin) {
    std::mt19937 random(3);
    std::mt19937 again(3);
    for (int round = 0; round < 50; ++round) {
        const Point near = *centroid(star(random, 0, 0));
        const Point far = *centroid(star(again, 4194304, 8388608));
        EXPECT_NEAR(far.vertex.x - 4194304, near.vertex.x, 1e-8);
        EXPECT_NEAR(far.vertex.y - 8388608, near.vertex.y, 1e-8);
    }
}

TEST(InteriorPoint, LiesStrictlyInside) {
    std::mt19937 random(5);
    std::vector<Polygon> polygons{
        polygon("POLYGON ((0 0,0 2,4 2,4 0,2 1,0 0))"), // a vertex at half the height
        polygon("POLYGON ((0 0,0 10,10 10,10 0,0 0),(1 1,9 1,9 9,1 9,1 1))"),
        polygon("CURVEPOLYGON (CIRCULARSTRING (-1 0,1 0,-1 0))"),
        polygon("MULTIPOLYGON (((0 0,0 1,1 1,1 0,0 0)),((0 9,0 10,1 10,1 9,0 9)))"),
        polygon("POLYGON ((0 0,5 0.1,10 0,5 -0.1,0 0))"),
    };
    for (int round = 0; round < 200; ++round) {
        polygons.push_back(star(random, 500000, 5500000));
    }
    for (const Polygon& each : polygons) {
        const std::optional<Point> inside = interiorPoint(each);
        ASSERT_TRUE(inside) << toWkt(each);
        EXPECT_TRUE(PreparedRelation(*inside, SpatialRelation::contains).holdsFor(each)) << toWkt(each);
    }
    EXPECT_FALSE(interiorPoint(polygon("POLYGON ((0 0,2 2,4 4,0 0))")));
}

} // namespace
} // namespace qz
