#include <numbers>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "platform/geometry/Measures.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/RandomShapes.h"

namespace qz {
namespace {

Polygon polygonOf(const std::vector<Path>& rings) {
    Polygon polygon;
    polygon.rings = rings;
    return polygon;
}

Polygon ofOpenPieces(std::initializer_list<std::vector<XY>> pieces) {
    Polygon polygon;
    for (const std::vector<XY>& piece : pieces) {
        polygon.rings.emplace_back(piece);
    }
    return polygon;
}

TEST(SimplifyPolygon, FindsTheEnclosedArea) {
    const struct {
        const char* name;
        Polygon polygon;
        const char* simple;
    } rows[] = {
        {"proper already", ofOpenPieces({{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {0, 0}}}), "POLYGON ((0 0,0 4,4 4,4 0,0 0))"},
        {"wrong direction", ofOpenPieces({{{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}}}),
         "POLYGON ((0 0,0 4,4 4,4 0,0 0))"},
        {"bow tie", ofOpenPieces({{{0, 0}, {4, 4}, {4, 0}, {0, 4}, {0, 0}}}),
         "MULTIPOLYGON (((0 0,0 4,2 2,0 0)),((2 2,4 4,4 0,2 2)))"},
        {"not closed", ofOpenPieces({{{0, 0}, {0, 4}, {4, 4}, {4, 0}}}), "POLYGON EMPTY"},
        {"pieces in any order and direction", ofOpenPieces({{{0, 0}, {0, 4}}, {{0, 0}, {4, 0}}, {{0, 4}, {4, 0}}}),
         "POLYGON ((0 0,0 4,4 0,0 0))"},
        {"spike", ofOpenPieces({{{0, 0}, {0, 4}, {2, 4}, {2, 9}, {2, 4}, {4, 4}, {4, 0}, {0, 0}}}),
         "POLYGON ((0 0,0 4,2 4,4 4,4 0,0 0))"},
        {"repeated vertices", ofOpenPieces({{{0, 0}, {0, 4}, {0, 4}, {4, 4}, {4, 0}, {0, 0}}}),
         "POLYGON ((0 0,0 4,4 4,4 0,0 0))"},
        {"hole in the wrong direction",
         ofOpenPieces({{{0, 0}, {0, 9}, {9, 9}, {9, 0}, {0, 0}}, {{2, 2}, {2, 4}, {4, 4}, {4, 2}, {2, 2}}}),
         "POLYGON ((0 0,0 9,9 9,9 0,0 0),(2 2,4 2,4 4,2 4,2 2))"},
        {"overlapping rings",
         ofOpenPieces({{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {0, 0}}, {{2, 0}, {2, 4}, {6, 4}, {6, 0}, {2, 0}}}),
         "MULTIPOLYGON (((0 0,0 4,2 4,2 0,0 0)),((4 0,4 4,6 4,6 0,4 0)))"},
        {"rings side by side",
         ofOpenPieces({{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {0, 0}}, {{4, 0}, {4, 4}, {8, 4}, {8, 0}, {4, 0}}}),
         "POLYGON ((0 0,0 4,4 4,8 4,8 0,4 0,0 0))"},
        {"island in a hole",
         ofOpenPieces({{{0, 0}, {9, 0}, {9, 9}, {0, 9}, {0, 0}},
                       {{4, 4}, {5, 4}, {5, 5}, {4, 5}, {4, 4}},
                       {{2, 2}, {7, 2}, {7, 7}, {2, 7}, {2, 2}}}),
         "MULTIPOLYGON (((0 0,0 9,9 9,9 0,0 0),(2 2,7 2,7 7,2 7,2 2)),((4 4,4 5,5 5,5 4,4 4)))"},
        {"a line across", ofOpenPieces({{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {0, 0}}, {{0, 4}, {4, 0}}}),
         "POLYGON ((0 0,0 4,4 4,4 0,0 0))"},
        {"dangling line", ofOpenPieces({{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {0, 0}}, {{4, 4}, {6, 6}}}),
         "POLYGON ((0 0,0 4,4 4,4 0,0 0))"},
        {"no area", ofOpenPieces({{{0, 0}, {4, 4}, {0, 0}}}), "POLYGON EMPTY"},
        {"ring of two vertices", ofOpenPieces({{{0, 0}, {0, 0}}}), "POLYGON EMPTY"},
        {"sliver", ofOpenPieces({{{0, 0}, {100, 0.00005}, {100, 0}, {50, 0.00001}, {0, 0}}}), "POLYGON EMPTY"},
        {"empty", Polygon(), "POLYGON EMPTY"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Polygon simple = simplified(row.polygon);
        EXPECT_EQ(toWkt(simple), row.simple);
        EXPECT_TRUE(isSimple(simple));
        EXPECT_TRUE(identical(simplified(simple), simple));
    }
}

TEST(SimplifyPolygon, JoinsThePiecesOfAPieSegment) {
    Path arc(std::vector<XY>{{10, 0}});
    arc.addArc({7.0710678118654755, 7.0710678118654755}, {0, 10});
    const Polygon pie = simplified(polygonOf({Path({{0, 0}, {0, 10}}), Path({{0, 0}, {10, 0}}), arc}));
    ASSERT_EQ(pie.rings.size(), 1u);
    EXPECT_EQ(pie.rings[0].vertexCount(), 4u) << toWkt(pie);
    ASSERT_EQ(pie.rings[0].arcs().size(), 1u);
    EXPECT_TRUE(sameBits(pie.rings[0].arcs()[0].middle.xy(), {7.0710678118654755, 7.0710678118654755}));
    EXPECT_NEAR(area(pie), 25 * std::numbers::pi, 1e-9);
}

TEST(SimplifyPolygon, KeepsHeightsAndMeasures) {
    Polygon bowTie = geometryFromWkt("POLYGON ZM ((0 0 0 0,4 4 4 40,4 0 8 80,0 4 12 120,0 0 0 0))").as<Polygon>();
    EXPECT_EQ(toWkt(simplified(bowTie)), "MULTIPOLYGON ZM (((0 0 0 0,0 4 12 120,2 2 2 20,0 0 0 0)),"
                                         "((2 2 2 20,4 4 4 40,4 0 8 80,2 2 2 20)))");
}

TEST(SimplifyPolygon, IsIdempotentAndValidForRandomRings) {
    std::mt19937 random(5);
    std::size_t filled = 0;
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE(round);
        const Polygon scribble = randomScribble(random, round % 2 == 0, round % 3 == 0);
        const Polygon simple = simplified(scribble);
        ASSERT_TRUE(isSimple(simple)) << toWkt(scribble);
        EXPECT_TRUE(identical(simplified(simple), simple)) << toWkt(scribble);
        filled += simple.isEmpty() ? 0 : 1;
    }
    EXPECT_GT(filled, 350u);
}

TEST(SimplifyPolyline, AsANetwork) {
    const struct {
        const char* name;
        const char* line;
        const char* simple;
    } rows[] = {
        {"simple already", "LINESTRING (0 0,5 5,9 0)", "LINESTRING (0 0,5 5,9 0)"},
        {"crossing itself", "LINESTRING (0 0,10 0,10 5,5 5,5 -5)",
         "MULTILINESTRING ((0 0,5 0),(5 0,10 0,10 5,5 5,5 0),(5 0,5 -5))"},
        {"closed", "LINESTRING (0 0,5 5,9 0,0 0)", "LINESTRING (0 0,5 5,9 0,0 0)"},
        {"touching itself with its end", "LINESTRING (0 0,10 0,10 5,5 5,5 0)",
         "MULTILINESTRING ((0 0,5 0),(5 0,10 0,10 5,5 5,5 0))"},
        {"running back", "LINESTRING (0 0,10 0,4 0)", "LINESTRING (0 0,4 0,10 0)"},
        {"end to end, the second turned", "MULTILINESTRING ((0 0,5 0),(9 4,5 0))", "LINESTRING (0 0,5 0,9 4)"},
        {"covered twice", "MULTILINESTRING ((0 0,9 0),(2 0,5 0))", "LINESTRING (0 0,2 0,5 0,9 0)"},
        {"repeated vertices", "LINESTRING (0 0,0 0,5 5,5 5)", "LINESTRING (0 0,5 5)"},
        {"no length", "LINESTRING (1 1,1 1)", "LINESTRING EMPTY"},
        {"star", "MULTILINESTRING ((0 0,5 0),(5 0,9 9),(5 0,9 -9))",
         "MULTILINESTRING ((0 0,5 0),(5 0,9 9),(5 0,9 -9))"},
        {"the same arc twice", "MULTICURVE (CIRCULARSTRING (0 0,5 5,10 0),CIRCULARSTRING (10 0,5 5,0 0))",
         "CIRCULARSTRING (0 0,5 5,10 0)"},
        {"two arcs between the same ends", "MULTICURVE (CIRCULARSTRING (0 0,5 5,10 0),CIRCULARSTRING (0 0,5 -5,10 0))",
         "CIRCULARSTRING (0 0,5 5,10 0,5 -5,0 0)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Polyline simple = simplifiedPlanar(geometryFromWkt(row.line).as<Polyline>());
        EXPECT_EQ(toWkt(simple), row.simple);
        EXPECT_TRUE(identical(simplifiedPlanar(simple), simple));
    }
}

TEST(SimplifyPolyline, AsARoute) {
    const struct {
        const char* line;
        const char* simple;
    } rows[] = {
        {"LINESTRING M (0 0 1,10 0 2,10 5 3,5 5 4,5 -5 5)", "LINESTRING M (0 0 1,10 0 2,10 5 3,5 5 4,5 -5 5)"},
        {"LINESTRING M (0 0 1,10 0 2,4 0 3)", "LINESTRING M (0 0 1,10 0 2,4 0 3)"},
        {"LINESTRING M (0 0 1,0 0 2,5 5 3)", "LINESTRING M (0 0 1,5 5 3)"},
        {"MULTILINESTRING M ((0 0 1,5 0 2),(9 0 4,5 0 2))", "LINESTRING M (0 0 1,5 0 2,9 0 4)"},
        {"MULTILINESTRING M ((0 0 1,5 0 2),(5 0 2,9 0 3),(5 0 2,5 9 3))",
         "MULTILINESTRING M ((0 0 1,5 0 2),(5 0 2,9 0 3),(5 0 2,5 9 3))"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        EXPECT_EQ(toWkt(simplified(geometryFromWkt(row.line))), row.simple);
    }
}

TEST(SimplifyPolyline, IsIdempotentForRandomLines) {
    std::mt19937 random(6);
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        Polyline line;
        line.paths = randomScribble(random, round % 2 == 0, false).rings;
        const Polyline simple = simplifiedPlanar(line);
        EXPECT_TRUE(identical(simplifiedPlanar(simple), simple)) << toWkt(line);
    }
}

TEST(SimplifyMultipoint, RemovesEqualPoints) {
    EXPECT_EQ(toWkt(simplified(geometryFromWkt("MULTIPOINT Z ((1 1 5),(2 2 5),(1 1 5),(1 1 6))"))),
              "MULTIPOINT Z ((1 1 5),(2 2 5),(1 1 6))");
}

} // namespace
} // namespace qz
