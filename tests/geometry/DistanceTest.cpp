#include <gtest/gtest.h>

#include "platform/geometry/Boundary.h"
#include "platform/geometry/Distance.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

constexpr const char* square = "POLYGON ((0 0,0 10,10 10,10 0,0 0))";
constexpr const char* ring = "POLYGON ((0 0,0 10,10 10,10 0,0 0),(4 4,6 4,6 6,4 6,4 4))";

TEST(Distance, IsThatOfTheNearestPlaces) {
    const struct {
        const char* name;
        const char* a;
        const char* b;
        double distance;
    } rows[] = {
        {"points", "POINT (0 0)", "POINT (3 4)", 5},
        {"point inside an area", "POINT (5 5)", square, 0},
        {"point in a hole", "POINT (5 5)", ring, 1},
        {"line inside an area", "LINESTRING (2 2,3 3)", square, 0},
        {"area inside an area", "POLYGON ((2 2,2 3,3 3,2 2))", square, 0},
        {"areas", square, "POLYGON ((13 14,13 20,20 20,13 14))", 5},
        {"line and line", "LINESTRING (0 0,10 0)", "LINESTRING (5 2,5 9)", 2},
        {"point and arc", "POINT (0 9)", "CIRCULARSTRING (-5 0,0 5,5 0)", 4},
        {"nearest of several", "MULTIPOINT ((50 0),(12 0))", square, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        // Strokes of arcs are off by a tenth of a millimetre at most.
        EXPECT_NEAR(distance(geometryFromWkt(row.a), geometryFromWkt(row.b)), row.distance, 1e-4);
        EXPECT_NEAR(distance(geometryFromWkt(row.b), geometryFromWkt(row.a)), row.distance, 1e-4);
    }
    EXPECT_THROW((void)distance(geometryFromWkt("POINT EMPTY"), geometryFromWkt(square)), PlatformError);
}

TEST(Relations, OneTestAtATime) {
    const Geometry area = geometryFromWkt(square);
    const Geometry inner = geometryFromWkt("POLYGON ((2 2,2 3,3 3,2 2))");
    EXPECT_TRUE(within(inner, area));
    EXPECT_FALSE(within(area, inner));
    EXPECT_TRUE(contains(area, inner));
    EXPECT_TRUE(intersects(area, inner));
    EXPECT_FALSE(disjoint(area, inner));
    EXPECT_TRUE(disjoint(area, geometryFromWkt("POINT (50 50)")));
    EXPECT_TRUE(disjoint(area, geometryFromWkt("POLYGON EMPTY")));
    EXPECT_TRUE(touches(geometryFromWkt("LINESTRING (-5 5,0 5)"), area));
    EXPECT_TRUE(crosses(geometryFromWkt("LINESTRING (-5 5,5 5)"), area));
    EXPECT_TRUE(overlaps(geometryFromWkt("POLYGON ((5 5,5 15,15 15,15 5,5 5))"), area));
}

TEST(Relations, EqualsComparesPlaces) {
    const struct {
        const char* a;
        const char* b;
        bool equal;
    } rows[] = {
        {square, "POLYGON ((10 10,10 0,5 0,0 0,0 10,10 10))", true},
        {square, ring, false},
        {"LINESTRING (0 0,5 0,9 0)", "MULTILINESTRING ((9 0,4 0),(4 0,0 0))", true},
        {"LINESTRING (0 0,5 0,9 0)", "LINESTRING (0 0,8 0)", false},
        {"POINT (1 1)", "MULTIPOINT ((1 1),(1 1))", true},
        {"POINT (1 1)", "POINT (1 2)", false},
        {square, "LINESTRING (0 0,0 10,10 10,10 0,0 0)", false},
        {"POLYGON EMPTY", "POLYGON EMPTY", true},
        {"POLYGON EMPTY", square, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.a);
        EXPECT_EQ(equals(geometryFromWkt(row.a), geometryFromWkt(row.b)), row.equal);
        EXPECT_EQ(equals(geometryFromWkt(row.b), geometryFromWkt(row.a)), row.equal);
    }
}

TEST(Boundary, OfAreasAndLines) {
    EXPECT_EQ(toWkt(boundary(geometryFromWkt(ring).as<Polygon>())),
              "MULTILINESTRING ((0 0,0 10,10 10,10 0,0 0),(4 4,6 4,6 6,4 6,4 4))");
    EXPECT_EQ(
        toWkt(boundary(
            geometryFromWkt("CURVEPOLYGON Z (COMPOUNDCURVE Z (CIRCULARSTRING Z (0 0 1,5 5 2,10 0 3),(10 0 3,0 0 1)))")
                .as<Polygon>())),
        "COMPOUNDCURVE Z (CIRCULARSTRING Z (0 0 1,5 5 2,10 0 3),(10 0 3,0 0 1))");
    EXPECT_EQ(toWkt(boundary(geometryFromWkt("MULTILINESTRING ((0 0,5 5),(1 1,2 2,3 1,1 1))").as<Polyline>())),
              "MULTIPOINT ((0 0),(5 5))");
}

TEST(Boundary, ExplodesIntoParts) {
    const auto parts = [](const char* wkt) {
        std::string text;
        for (const Geometry& part : exploded(geometryFromWkt(wkt))) {
            text += toWkt(part) + ";";
        }
        return text;
    };
    EXPECT_EQ(parts("MULTIPOLYGON (((0 0,0 9,9 9,9 0,0 0),(2 2,7 2,7 7,2 7,2 2)),((4 4,4 5,5 5,5 4,4 4)))"),
              "POLYGON ((0 0,0 9,9 9,9 0,0 0),(2 2,7 2,7 7,2 7,2 2));POLYGON ((4 4,4 5,5 5,5 4,4 4));");
    EXPECT_EQ(parts("MULTILINESTRING M ((0 0 1,5 5 2),(1 1 3,2 2 4))"),
              "LINESTRING M (0 0 1,5 5 2);LINESTRING M (1 1 3,2 2 4);");
    EXPECT_EQ(parts("MULTIPOINT ((0 0),(5 5))"), "POINT (0 0);POINT (5 5);");
    EXPECT_EQ(parts("POINT EMPTY"), "");
}

} // namespace
} // namespace qz
