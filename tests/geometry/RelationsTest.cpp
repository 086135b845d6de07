#include <cmath>
#include <map>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "platform/geometry/Measures.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/RandomShapes.h"

namespace qz {
namespace {

constexpr SpatialRelation allRelations[] = {SpatialRelation::intersects, SpatialRelation::touches,
                                            SpatialRelation::overlaps,   SpatialRelation::crosses,
                                            SpatialRelation::within,     SpatialRelation::contains};

// One letter for each relation that holds: Intersects, Touches, Overlaps, Crosses, Within, Contains.
std::string relations(const Geometry& tested, const Geometry& search) {
    constexpr const char* letters = "ITOXWC";
    std::string held;
    for (std::size_t i = 0; i < std::size(allRelations); ++i) {
        if (PreparedRelation(search, allRelations[i]).holdsFor(tested)) {
            held += letters[i];
        }
    }
    return held;
}

std::string mirrored(std::string held) {
    for (char& letter : held) {
        letter = letter == 'W' ? 'C' : (letter == 'C' ? 'W' : letter);
    }
    // Within is named before contains.
    if (held.size() > 1 && held.ends_with("CW")) {
        held.replace(held.size() - 2, 2, "WC");
    }
    return held;
}

constexpr const char* square = "POLYGON ((0 0,0 10,10 10,10 0,0 0))";
constexpr const char* ring = "POLYGON ((0 0,0 10,10 10,10 0,0 0),(3 3,7 3,7 7,3 7,3 3))";
constexpr const char* disc = "CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0))";

TEST(Relations, HoldAsEditorsExpect) {
    const struct {
        const char* name;
        const char* tested;
        const char* search;
        const char* held;
    } rows[] = {
        {"point inside", "POINT (5 5)", square, "IW"},
        {"point on the boundary is not within", "POINT (10 5)", square, "IT"},
        {"point at a corner", "POINT (10 10)", square, "IT"},
        {"point outside, inside the envelope of the search", "POINT (1 9)", "POLYGON ((0 0,10 10,10 0,0 0))", ""},
        {"point in a hole", "POINT (5 5)", ring, ""},
        {"point at an inner vertex of a line", "POINT (5 5)", "LINESTRING (0 0,5 5,9 5)", "IW"},
        {"point at the end of a line", "POINT (0 0)", "LINESTRING (0 0,5 5)", "IT"},
        {"point off a slanted line by rounding", "POINT (1 0.3333333333333333)", "LINESTRING (0 0,3 1)", "IW"},
        {"point within the tolerance", "POINT (5 10.0009)", square, "IT"},
        {"point beyond the tolerance", "POINT (5 10.0011)", square, ""},
        {"some points inside", "MULTIPOINT ((5 5),(20 20))", square, "IX"},
        {"line across", "LINESTRING (-5 5,15 5)", square, "IX"},
        {"line inside", "LINESTRING (2 2,8 8)", square, "IW"},
        {"line from the boundary inward", "LINESTRING (0 5,5 5)", square, "IW"},
        {"line on the boundary is not within", "LINESTRING (0 2,0 8)", square, "IT"},
        {"line up to the boundary", "LINESTRING (-5 5,0 5)", square, "IT"},
        {"line inside and line outside", "MULTILINESTRING ((2 2,8 8),(20 20,30 30))", square, "IX"},
        {"lines that cross", "LINESTRING (0 0,10 10)", "LINESTRING (0 10,10 0)", "IX"},
        {"lines end to end", "LINESTRING (0 0,5 5)", "LINESTRING (5 5,9 5)", "IT"},
        {"line ends on another", "LINESTRING (5 5,5 0)", "LINESTRING (0 5,10 5)", "IT"},
        {"line ends on a slanted one, but for rounding", "LINESTRING (1 0.3333333333333333,5 9)",
         "LINESTRING (0 0,3 1)", "IT"},
        {"lines share a stretch", "LINESTRING (0 0,6 0)", "LINESTRING (4 0,9 0)", "IO"},
        {"line is part of another", "LINESTRING (2 0,6 0)", "LINESTRING (0 0,9 0)", "IW"},
        {"areas share a side", "POLYGON ((10 0,10 10,20 10,20 0,10 0))", square, "IT"},
        {"areas share part of a side, vertices apart", "POLYGON ((10 2,10 7,20 7,20 2,10 2))", square, "IT"},
        {"areas share a corner", "POLYGON ((10 10,10 20,20 20,20 10,10 10))", square, "IT"},
        {"vertex on a slanted side, but for rounding", "POLYGON ((1 0.3333333333333333,0 5,2 5,1 0.3333333333333333))",
         "POLYGON ((0 0,3 1,3 -5,0 0))", "IT"},
        {"areas overlap", "POLYGON ((5 5,5 15,15 15,15 5,5 5))", square, "IO"},
        {"area inside", "POLYGON ((2 2,2 8,8 8,8 2,2 2))", square, "IW"},
        {"area inside along a side", "POLYGON ((0 2,0 8,8 8,8 2,0 2))", square, "IW"},
        {"equal areas", square, "POLYGON ((10 10,10 0,0 0,0 10,10 10))", "IWC"},
        {"area fills a hole", "POLYGON ((3 3,3 7,7 7,7 3,3 3))", ring, "IT"},
        {"point inside the disc, outside its vertices' hull", "POINT (5 4.9)", disc, "IW"},
        {"point outside the disc, inside its envelope", "POINT (9 4.9)", disc, ""},
        {"point on the circle", "POINT (5 5)", disc, "IT"},
        {"half discs share their straight side",
         "CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (0 0,5 5,10 0),(10 0,0 0)))",
         "CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (10 0,5 -5,0 0),(0 0,10 0)))", "IT"},
        {"neighbours share a piece of a circle",
         "CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (0 0,5 5,10 0),(10 0,10 9,0 9,0 0)))",
         "CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (0 0,5 5,10 0),(10 0,0 0)))", "IT"},
        {"empty", "LINESTRING EMPTY", square, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Geometry tested = geometryFromWkt(row.tested);
        const Geometry search = geometryFromWkt(row.search);
        EXPECT_EQ(relations(tested, search), row.held);
        EXPECT_EQ(relations(search, tested), mirrored(row.held)) << "the other way round";
        EXPECT_EQ(PreparedRelation(search, SpatialRelation::notSet).holdsFor(tested),
                  std::string(row.held).starts_with('I'));
    }
}

TEST(Relations, EnvelopesNeedOnlyCommonPlaces) {
    const PreparedRelation relation(geometryFromWkt("LINESTRING (0 0,10 10)"), SpatialRelation::envelopeIntersects);
    EXPECT_TRUE(relation.holdsFor(geometryFromWkt("POINT (1 9)")));
    EXPECT_TRUE(relation.holdsFor(geometryFromWkt("POINT (10 0)")));
    EXPECT_FALSE(relation.holdsFor(geometryFromWkt("POINT (10.1 0)")));
    EXPECT_FALSE(relation.holdsFor(geometryFromWkt("POINT EMPTY")));
}

TEST(Relations, ToleranceIsThatOfTheSpatialReference) {
    Geometry search = geometryFromWkt(square);
    search.traits().spatialReference = SpatialReference::fromEpsg(4326);
    const PreparedRelation relation(search, SpatialRelation::intersects);
    EXPECT_TRUE(relation.holdsFor(geometryFromWkt("POINT (5 10.000000008)")));
    EXPECT_FALSE(relation.holdsFor(geometryFromWkt("POINT (5 10.00000001)")));
}

TEST(Relations, OneSearchGeometryServesManyTests) {
    PreparedRelation first(geometryFromWkt(disc), SpatialRelation::within);
    const PreparedRelation relation = std::move(first);
    int within = 0;
    for (int i = 0; i < 100; ++i) {
        for (int j = 0; j < 100; ++j) {
            const double x = i * 0.1 + 0.05;
            const double y = j * 0.1 - 4.95;
            const bool expected = std::hypot(x - 5, y) < 5;
            within += expected ? 1 : 0;
            ASSERT_EQ(relation.holdsFor(Point({x, y})), expected) << x << ' ' << y;
        }
    }
    EXPECT_GT(within, 7000);
}

// Their outlines meet within the tolerance almost only where they cross.
std::string relationsBySharedArea(const Polygon& tested, const Polygon& search) {
    const double common = area(intersection(tested, search, ResultDimension::areas).as<Polygon>());
    const double rest = area(difference(tested, search).as<Polygon>());
    const double restOfSearch = area(difference(search, tested).as<Polygon>());
    if (common == 0) {
        return "";
    }
    return rest == 0 ? "IW" : (restOfSearch == 0 ? "IC" : "IO");
}

TEST(Relations, OfAreasFollowFromWhatTheyShare) {
    std::mt19937 random(31);
    const Polygon search = randomStar(random, {{50, 50}, 50}, 60, true, false);
    const ShapeFrame island{{50, 50}, 8};
    Polygon withIsland = search;
    withIsland.rings.push_back(randomStarRing(random, island, 9, 1, false));
    std::uniform_real_distribution<double> place(-10, 110);
    std::uniform_real_distribution<double> size(0.5, 12);
    std::map<std::string, int> counts;
    for (int i = 0; i < 600; ++i) {
        const XY at{place(random), place(random)};
        const double side = i % 40 == 0 ? 200 : (i % 40 == 1 ? 25 : size(random));
        const XY corner = side > 20 ? XY{50 - side / 2, 50 - side / 2} : at;
        const Polygon tested = rectangle({corner.x, corner.y, corner.x + side, corner.y + side}, {});
        const std::string expected = relationsBySharedArea(tested, withIsland);
        EXPECT_EQ(relations(tested, withIsland), expected) << toWkt(tested);
        ++counts[expected];
    }
    for (const char* kind : {"", "IW", "IC", "IO"}) {
        EXPECT_GT(counts[kind], 10) << kind;
    }
}

TEST(Relations, RefuseCoordinatesThatAreNotFinite) {
    Polyline line;
    line.paths = {Path(std::vector<XY>{{0, 0}, {1, undefined}})};
    EXPECT_THROW((void)PreparedRelation(line, SpatialRelation::intersects), PlatformError);
}

} // namespace
} // namespace qz
