#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/Measures.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/HeightSamples.h"
#include "tests/geometry/RandomShapes.h"

namespace qz {
namespace {

constexpr const char* square = "POLYGON ((0 0,0 10,10 10,10 0,0 0))";
constexpr const char* shifted = "POLYGON ((5 5,5 15,15 15,15 5,5 5))";
constexpr const char* beside = "POLYGON ((10 0,10 10,20 10,20 0,10 0))";

Geometry intersectionOf(const char* a, const char* b, int dimension) {
    return intersection(geometryFromWkt(a), geometryFromWkt(b), static_cast<ResultDimension>(dimension));
}

TEST(SetOperations, IntersectByDimension) {
    const struct {
        const char* name;
        const char* a;
        const char* b;
        int dimension;
        const char* shared;
    } rows[] = {
        {"areas", square, shifted, 2, "POLYGON ((5 5,5 10,10 10,10 5,5 5))"},
        {"areas that touch have no area", square, beside, 2, "POLYGON EMPTY"},
        {"their common side", square, beside, 1, "LINESTRING (10 10,10 0)"},
        {"areas that share a corner", square, "POLYGON ((10 10,10 12,12 12,10 10))", 0, "MULTIPOINT ((10 10))"},
        {"areas that share a corner have no line", square, "POLYGON ((10 10,10 12,12 12,10 10))", 1,
         "LINESTRING EMPTY"},
        {"line through an area", "LINESTRING (-5 5,15 5)", square, 1, "LINESTRING (0 5,10 5)"},
        {"line through an area, the other way", square, "LINESTRING (15 5,-5 5)", 1, "LINESTRING (10 5,0 5)"},
        {"vertices inside stay", "LINESTRING (-5 5,4 5,15 5)", square, 1, "LINESTRING (0 5,4 5,10 5)"},
        {"line with measures", "LINESTRING M (-5 5 0,15 5 20)", square, 1, "LINESTRING M (0 5 5,10 5 15)"},
        {"line touching an area", "LINESTRING (-5 5,0 5)", square, 0, "MULTIPOINT ((0 5))"},
        {"lines crossing", "LINESTRING (0 0,10 10)", "LINESTRING (0 10,10 0)", 0, "MULTIPOINT ((5 5))"},
        {"lines crossing share no line", "LINESTRING (0 0,10 10)", "LINESTRING (0 10,10 0)", 1, "LINESTRING EMPTY"},
        {"points come along the first line", "LINESTRING (10 0,0 0)", "LINESTRING (2 1,2 -1,4 -1,4 1)", 0,
         "MULTIPOINT ((4 0),(2 0))"},
        {"common ends and touches", "LINESTRING (0 0,10 0)", "MULTILINESTRING ((0 0,0 5),(5 0,5 5))", 0,
         "MULTIPOINT ((0 0),(5 0))"},
        {"a near end is on the line", "LINESTRING (0 0,10 0)", "LINESTRING (5 0.0005,5 5)", 0,
         "MULTIPOINT ((5 0.0005))"},
        {"ends of a shared stretch are no points", "LINESTRING (0 0,10 0)", "LINESTRING (2 0,4 0,4 3,8 -3)", 0,
         "MULTIPOINT ((6 0))"},
        {"a shared stretch", "LINESTRING (0 0,10 0)", "LINESTRING (4 0,2 0,1 5)", 1, "LINESTRING (2 0,4 0)"},
        {"a shared stretch over vertices", "LINESTRING (0 0,3 0,10 0)", "LINESTRING (7 0,2 0)", 1,
         "LINESTRING (2 0,3 0,7 0)"},
        {"points of the first operand's height", "LINESTRING Z (0 0 1,10 10 11)", "LINESTRING Z (0 10 50,10 0 50)", 0,
         "MULTIPOINT Z ((5 5 6))"},
        {"points on an area", "MULTIPOINT Z ((5 5 1),(20 20 2),(0 5 3))", square, 0, "MULTIPOINT Z ((5 5 1),(0 5 3))"},
        {"nothing shared", square, "POLYGON ((50 50,50 51,51 51,50 50))", 2, "POLYGON EMPTY"},
        {"empty operand", square, "POLYGON EMPTY", 2, "POLYGON EMPTY"},
        {"bow tie counts as its two triangles", "POLYGON ((0 0,10 10,10 0,0 10,0 0))", square, 2,
         "MULTIPOLYGON (((0 0,0 10,5 5,0 0)),((5 5,10 10,10 0,5 5)))"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(toWkt(intersectionOf(row.a, row.b, row.dimension)), row.shared);
    }
}

TEST(SetOperations, UniteAndSubtract) {
    const struct {
        const char* name;
        const char* a;
        const char* b;
        const char* united;
        const char* subtracted;
    } rows[] = {
        {"areas that overlap", square, shifted, "POLYGON ((0 0,0 10,5 10,5 15,15 15,15 5,10 5,10 0,0 0))",
         "POLYGON ((0 0,0 10,5 10,5 5,10 5,10 0,0 0))"},
        {"areas side by side keep their corners", square, beside, "POLYGON ((0 0,0 10,10 10,20 10,20 0,10 0,0 0))",
         square},
        {"collinear vertices stay", "POLYGON ((0 0,0 5,0 10,10 10,10 0,0 0))", "POLYGON ((10 3,10 4,11 4,11 3,10 3))",
         "POLYGON ((0 0,0 5,0 10,10 10,10 4,11 4,11 3,10 3,10 0,0 0))",
         "POLYGON ((0 0,0 5,0 10,10 10,10 4,10 3,10 0,0 0))"},
        {"a hole is cut", square, "POLYGON ((2 2,2 4,4 4,4 2,2 2))", square,
         "POLYGON ((0 0,0 10,10 10,10 0,0 0),(2 2,4 2,4 4,2 4,2 2))"},
        {"a sliver is left out", square, "POLYGON ((0 0.00005,0 10,10 10,10 0.00005,0 0.00005))",
         "POLYGON ((0 0,0 5e-05,0 10,10 10,10 5e-05,10 0,0 0))", "POLYGON EMPTY"},
        {"lines", "LINESTRING (0 0,10 0)", "LINESTRING (5 0,15 0)", "LINESTRING (0 0,5 0,10 0,15 0)",
         "LINESTRING (0 0,5 0)"},
        {"line and area", "LINESTRING (-5 5,15 5)", square, nullptr, "MULTILINESTRING ((-5 5,0 5),(10 5,15 5))"},
        {"points", "MULTIPOINT ((1 1),(2 2))", "POINT (2 2)", "MULTIPOINT ((1 1),(2 2))", "MULTIPOINT ((1 1))"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Geometry a = geometryFromWkt(row.a);
        const Geometry b = geometryFromWkt(row.b);
        if (row.united != nullptr) {
            EXPECT_EQ(toWkt(unionOf(a, b)), row.united);
        }
        EXPECT_EQ(toWkt(difference(a, b)), row.subtracted);
    }
}

// A hundredth of a metre wide, far from the origin: the grid changes such areas by more than a part in a billion.
TEST(SetOperations, OfTinyAreasFarFromTheOrigin) {
    Geometry a = geometryFromWkt("POLYGON ((896543.2123464958 6283456.78,896543.2119405151 6283456.770130398,"
                                 "896543.2090692566 6283456.77461433,896543.2007801909 6283456.78000007,"
                                 "896543.2082190058 6283456.788815397,896543.2113367266 6283456.785260098,"
                                 "896543.2123464958 6283456.78))");
    Geometry b = geometryFromWkt("POLYGON ((896543.2110952681 6283456.78,896543.2081204255 6283456.77522832,"
                                 "896543.2094082388 6283456.782056083,896543.2110952681 6283456.78))");
    a.traits().spatialReference = b.traits().spatialReference = SpatialReference::fromEpsg(2154);
    const double areaOfA = area(a.as<Polygon>());
    const double rounding = perimeter(a.as<Polygon>()) * a.spatialReference().grid().xyResolution;
    EXPECT_NEAR(area(difference(a, b).as<Polygon>()), areaOfA - area(b.as<Polygon>()), rounding);
    EXPECT_NEAR(area(unionOf(std::vector{a, b}).as<Polygon>()), areaOfA, rounding);
}

TEST(SetOperations, RefuseWithTheNameOfTheOperation) {
    EXPECT_THROW(intersectionOf(square, "LINESTRING (0 0,1 1)", 2), PlatformError);
    EXPECT_THROW(unionOf(geometryFromWkt(square), geometryFromWkt("POINT (1 1)")), PlatformError);
    Geometry endless = geometryFromWkt(square);
    endless.as<Polygon>().rings[0].setVertex(1, {0, INFINITY});
    try {
        (void)difference(endless, geometryFromWkt(square));
        FAIL();
    } catch (const PlatformError& error) {
        EXPECT_NE(std::string(error.what()).find("difference"), std::string::npos) << error.what();
    }
}

double areaOf(const Geometry& polygon) {
    return area(polygon.as<Polygon>());
}

std::size_t arcCount(const Geometry& geometry) {
    std::size_t count = 0;
    for (const Path& ring : geometry.as<Polygon>().rings) {
        count += ring.arcs().size();
    }
    return count;
}

TEST(SetOperationsWithArcs, JointsAreExact) {
    const Geometry left = geometryFromWkt("CURVEPOLYGON (CIRCULARSTRING (-100 0,0 100,100 0,0 -100,-100 0))");
    const Geometry right = geometryFromWkt("CURVEPOLYGON (CIRCULARSTRING (0 0,80 80,160 0,80 -80,0 0))");
    // Two circles of radii 100 and 80 whose centres are 80 apart.
    const double r = 100, s = 80, d = 80;
    const double lens = r * r * std::acos((d * d + r * r - s * s) / (2 * d * r)) +
                        s * s * std::acos((d * d + s * s - r * r) / (2 * d * s)) -
                        std::sqrt((r + s - d) * (d + r - s) * (d - r + s) * (d + r + s)) / 2;
    const Geometry common = intersection(left, right, ResultDimension::areas);
    EXPECT_NEAR(areaOf(common), lens, 1e-8);
    EXPECT_NEAR(areaOf(unionOf(left, right)), std::numbers::pi * (r * r + s * s) - lens, 1e-7);
    EXPECT_NEAR(areaOf(difference(left, right)), std::numbers::pi * r * r - lens, 1e-7);
    // The lens has the two vertices of the operands in it, where their half circles meet.
    EXPECT_EQ(arcCount(common), 4u);
    EXPECT_EQ(common.as<Polygon>().rings[0].vertexCount(), 5u);
}

TEST(SetOperationsWithArcs, AnUntouchedArcComesBackTheSame) {
    const Geometry rounded =
        geometryFromWkt("CURVEPOLYGON Z (COMPOUNDCURVE Z ((0 0 1,0 10 2),CIRCULARSTRING Z (0 10 2,1.23 12.34 7,5 13 3),"
                        "(5 13 3,20 13 4,20 0 5,0 0 1)))");
    const Geometry cut = difference(rounded, geometryFromWkt("POLYGON ((15 -1,15 5,25 5,25 -1,15 -1))"));
    ASSERT_EQ(arcCount(cut), 1u);
    const ArcSegment& arc = cut.as<Polygon>().rings[0].arcs()[0];
    EXPECT_TRUE(sameBits(arc.middle.xy(), {1.23, 12.34}));
    EXPECT_EQ(arc.middle.z, 7);
    EXPECT_EQ(toWkt(cut),
              "CURVEPOLYGON Z (COMPOUNDCURVE Z ((0 0 1,0 10 2),CIRCULARSTRING Z (0 10 2,1.23 12.34 7,5 13 3),"
              "(5 13 3,20 13 4,20 5 4.615384615384615,15 5 NaN,15 0 4,0 0 1)))");
}

TEST(SetOperationsWithArcs, PiecesOfOneCircle) {
    // A circle and a sector of the same circle, digitised on the grid and from another start.
    const Geometry circle = geometryFromWkt("CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0))");
    const Geometry sector =
        geometryFromWkt("CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (8 4,10 0.00004,8 -4),(8 -4,5 0,8 4)))");
    EXPECT_NEAR(areaOf(unionOf(circle, sector)), 25 * std::numbers::pi, 1e-3);
    EXPECT_EQ(unionOf(circle, sector).as<Polygon>().rings.size(), 1u);
    EXPECT_NEAR(areaOf(intersection(circle, sector, ResultDimension::areas)), areaOf(sector), 1e-3);
    EXPECT_TRUE(difference(sector, circle).isEmpty());
}

TEST(SetOperationsWithArcs, AFullCircleStaysOnItsCircle) {
    const Geometry circle = geometryFromWkt("CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0))");
    const Geometry half = difference(circle, geometryFromWkt("POLYGON ((-1 -9,-1 0,11 0,11 -9,-1 -9))"));
    EXPECT_NEAR(areaOf(half), 12.5 * std::numbers::pi, 1e-9);
    const Path& ring = half.as<Polygon>().rings[0];
    ASSERT_EQ(ring.arcs().size(), 1u);
    const CircularArc arc = ring.circularArc(ring.arcs()[0]);
    EXPECT_NEAR(arc.centre.x, 5, 1e-9);
    EXPECT_NEAR(arc.centre.y, 0, 1e-9);
    EXPECT_NEAR(arc.radius, 5, 1e-9);
    const Geometry whole = unionOf(circle, geometryFromWkt("POLYGON ((4 -1,4 1,6 1,6 -1,4 -1))"));
    EXPECT_TRUE(identical(whole, circle)) << toWkt(whole);
}

TEST(SetOperationsWithArcs, ArcsThatAreStraightButForRounding) {
    const Polygon outline =
        simplified(geometryFromWkt("CURVEPOLYGON (COMPOUNDCURVE ((1 4.75,0 1e-12),"
                                   "CIRCULARSTRING (0 1e-12,0 2.5,1e-12 7.1),(1e-12 7.1,0 4,4 0,10 8),"
                                   "CIRCULARSTRING (10 8,9 1e-12,4 6),(4 6,4 0,1 4.75)))")
                       .as<Polygon>());
    const Geometry elsewhere = geometryFromWkt("POLYGON ((120 0,120 1,121 1,121 0,120 0))");
    EXPECT_NEAR(areaOf(difference(outline, elsewhere)), area(outline), 1e-9);
}

TEST(SetOperationsWithArcs, GrazingCirclesTouchInAPoint) {
    const Geometry left = geometryFromWkt("CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0))");
    const Geometry right = geometryFromWkt("CURVEPOLYGON (CIRCULARSTRING (30 0,10 0,30 0))");
    EXPECT_TRUE(intersection(left, right, ResultDimension::areas).isEmpty());
    EXPECT_EQ(toWkt(intersection(left, right, ResultDimension::points)), "MULTIPOINT ((10 0))");
    EXPECT_NEAR(areaOf(unionOf(left, right)), 125 * std::numbers::pi, 1e-9);
}

struct Case {
    const char* name;
    ShapeFrame frame;
    double gap; // by how much the second shape is moved
    bool withArcs;
};

constexpr Case kCases[] = {
    {"plain", {{0, 0}, 100, 0}, 30, false},
    {"far from the origin on the grid", {{1.2e7, 5.4e6}, 250, 1e-4}, 80, false},
    {"degrees", {{11.5, 48.1}, 0.01, 1e-9}, 0.003, false},
    {"nearly the same edges", {{4.5e6, 5.4e6}, 100, 1e-4}, 1e-4, false},
    {"slivers", {{4.5e6, 5.4e6}, 100, 0}, 1e-7, false},
    {"arcs", {{500, 300}, 100, 0}, 30, true},
    {"arcs far from the origin", {{1.2e7, 5.4e6}, 250, 1e-4}, 80, true},
};

SpatialReference referenceOf(const Case& one) {
    return SpatialReference::unknown(one.frame.size < 1 ? CoordinateGrid::forDegrees() : CoordinateGrid());
}

Geometry moved(Polygon polygon, double by) {
    for (Path& ring : polygon.rings) {
        ring.transform([by](Vertex& vertex) {
            vertex.x += by;
            vertex.y += by / 2;
        });
    }
    return polygon;
}

class SetOperationsProperties : public testing::TestWithParam<Case> {};

TEST_P(SetOperationsProperties, AreasAddUp) {
    const Case& one = GetParam();
    std::mt19937 random(17);
    const double grid = referenceOf(one).grid().xyResolution;
    std::size_t overlapping = 0;
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        Polygon first = randomStar(random, one.frame, 24, round % 2 == 0, one.withArcs);
        first.spatialReference = referenceOf(one);
        const Geometry a = simplified(first);
        const Geometry b = round % 3 == 0
                               ? moved(a.as<Polygon>(), one.gap)
                               : simplified(moved(randomStar(random, one.frame, 24, true, one.withArcs), one.gap));
        const Geometry common = intersection(a, b, ResultDimension::areas);
        const Geometry rest = difference(a, b);
        const Geometry all = unionOf(a, b);
        for (const Geometry* result : {&common, &rest, &all}) {
            EXPECT_TRUE(isSimple(result->as<Polygon>())) << toWkt(a) << toWkt(b);
        }
        // What slivers of less than the resolution along the outlines may take away.
        const double slack = grid * (perimeter(a.as<Polygon>()) + perimeter(b.as<Polygon>()));
        EXPECT_NEAR(areaOf(common) + areaOf(rest), areaOf(a), slack);
        EXPECT_NEAR(areaOf(all), areaOf(a) + areaOf(b) - areaOf(common), slack);
        EXPECT_EQ(arcCount(all) > 0, one.withArcs);
        overlapping += common.isEmpty() ? 0 : 1;
    }
    EXPECT_GT(overlapping, 50u);
}

// Without arcs: heights run along an arc, not across it.
class SetOperationsWithHeights : public testing::TestWithParam<Case> {};

TEST_P(SetOperationsWithHeights, HeightsAreThoseOfTheSegments) {
    const Case& one = GetParam();
    std::mt19937 random(23);
    std::size_t crossings = 0;
    for (int round = 0; round < 60; ++round) {
        Polygon first = randomStar(random, one.frame, 24, true, false);
        Polygon second = round % 2 == 0 ? randomStar(random, one.frame, 24, true, false) : first;
        second = moved(second, one.gap).as<Polygon>();
        first.spatialReference = second.spatialReference = referenceOf(one);
        raise(first, first.rings, random);
        raise(second, second.rings, random);
        for (const Geometry& result :
             {intersection(first, second, ResultDimension::areas), difference(first, second), unionOf(first, second)}) {
            forEachVertex(result, [&](const Vertex& vertex) {
                EXPECT_LE(heightError(first, second, vertex), 1e-9) << vertex.x << " " << vertex.y;
                EXPECT_EQ(vertex.m, -vertex.z);
                crossings += heightsOfVertices(first, vertex.xy()).empty() ? 1 : 0;
            });
        }
    }
    EXPECT_GT(crossings, 1000u);
}

std::string nameOfCase(const testing::TestParamInfo<Case>& one) {
    std::string name = one.param.name;
    std::ranges::replace(name, ' ', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Shapes, SetOperationsProperties, testing::ValuesIn(kCases), nameOfCase);
INSTANTIATE_TEST_SUITE_P(Shapes, SetOperationsWithHeights, testing::ValuesIn(kCases, kCases + 5), nameOfCase);

TEST(SetOperations, TakeRingsOfAnyKind) {
    std::mt19937 random(53);
    std::size_t meeting = 0;
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        const bool withArcs = round % 4 == 0;
        const Geometry a = randomScribble(random, round % 2 == 0, withArcs);
        const Geometry b = randomScribble(random, round % 3 == 0, withArcs);
        const Geometry united = unionOf(a, b);
        const Geometry shared = intersection(a, b, ResultDimension::areas);
        const Geometry rest = difference(a, b);
        for (const Geometry* result : {&united, &shared, &rest}) {
            EXPECT_TRUE(isSimple(result->as<Polygon>())) << toWkt(a) << toWkt(b);
        }
        const double all = areaOf(united);
        const double common = areaOf(shared);
        // Slivers of less than the resolution may go along the outlines.
        const double slack = 1e-4 * (perimeter(a.as<Polygon>()) + perimeter(b.as<Polygon>()));
        EXPECT_NEAR(all + common, area(simplified(a.as<Polygon>())) + area(simplified(b.as<Polygon>())), slack)
            << toWkt(a) << toWkt(b);
        EXPECT_NEAR(areaOf(rest), all - area(simplified(b.as<Polygon>())), slack);
        meeting += common > 0 ? 1 : 0;
    }
    EXPECT_GT(meeting, 250u);
}

TEST(SetOperations, UnionOfManyIsThatOfPairs) {
    std::mt19937 random(31);
    std::vector<Geometry> stars;
    for (int i = 0; i < 40; ++i) {
        const ShapeFrame frame{{20.0 * (i % 8), 20.0 * (i / 8)}, 15, 0};
        stars.push_back(randomStar(random, frame, 12, i % 4 == 0, i % 5 == 0));
    }
    Geometry byPairs = stars.front();
    for (std::size_t i = 1; i < stars.size(); ++i) {
        byPairs = unionOf(byPairs, stars[i]);
    }
    const Geometry atOnce = unionOf(stars);
    EXPECT_NEAR(areaOf(atOnce), areaOf(byPairs), 1e-3);
    EXPECT_TRUE(isSimple(atOnce.as<Polygon>()));
    EXPECT_GT(arcCount(atOnce), 0u);
}

// What can't be calculated with is refused by name before anything is taken from memory.
TEST(Refusals, OfCoordinatesAndArcsOutOfReach) {
    const Geometry area = geometryFromWkt("POLYGON ((0 0,0 5,5 5,5 0,0 0))");
    Polygon endless = area.as<Polygon>();
    endless.rings[0].setVertex(2, {std::numeric_limits<double>::infinity(), 5});
    Polyline far = geometryFromWkt("LINESTRING (0 0,1 1)").as<Polyline>();
    far.paths[0].setVertex(1, {1.7e308, 0});
    const auto flat = geometryFromWkt("CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (0 0,5 1e-12,4 0),(4 0,2 3,0 0)))");
    const auto message = [](const auto& operation) {
        try {
            operation();
        } catch (const PlatformError& error) {
            return std::string(error.what());
        }
        return std::string("none");
    };
    EXPECT_EQ(message([&] { static_cast<void>(simplified(endless)); }),
              "The simplified polygon can't be found: the coordinate (inf, 5) is not finite.");
    EXPECT_EQ(message([&] { static_cast<void>(simplifiedPlanar(far)); }),
              "The simplified line can't be found: the coordinate (1.7e+308, 0) is too large.");
    EXPECT_NE(message([&] { static_cast<void>(unionOf(Geometry(far), Geometry(far))); }).find("too large"),
              std::string::npos);
    EXPECT_NE(message([&] { static_cast<void>(unionOf(flat, area)); }).find("strokes"), std::string::npos);
}

} // namespace
} // namespace qz
