#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Reshape.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/SubCurve.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/CurveSamples.h"
#include "tests/geometry/RandomShapes.h"

namespace qz {
namespace {

Polyline lineOf(const char* wkt) {
    return geometryFromWkt(wkt).as<Polyline>();
}

TEST(Reshape, ReplacesTheStretchBetweenFirstAndLastContact) {
    const struct {
        const char* name;
        const char* line;
        const char* path;
        const char* result;
    } rows[] = {
        {"crossing twice", "LINESTRING (0 0,10 0)", "LINESTRING (2 -1,2 3,6 3,6 -1)",
         "LINESTRING (0 0,2 0,2 3,6 3,6 0,10 0)"},
        {"ends on the line", "LINESTRING (0 0,10 0)", "LINESTRING (2 0,4 3,6 0)", "LINESTRING (0 0,2 0,4 3,6 0,10 0)"},
        {"vertices between go", "LINESTRING (0 0,3 0,4 0,10 0)", "LINESTRING (2 0,2 3,6 3,6 0)",
         "LINESTRING (0 0,2 0,2 3,6 3,6 0,10 0)"},
        {"from vertex to end", "LINESTRING (0 0,5 0,10 0)", "LINESTRING (5 0,7 2,10 0)",
         "LINESTRING (0 0,5 0,7 2,10 0)"},
        {"several contacts: those nearest the ends of the path", "LINESTRING (0 0,10 0)",
         "LINESTRING (1 1,2 -1,4 1,6 -1,6 1)", "LINESTRING (0 0,1.5 0,2 -1,4 1,6 -1,6 0,10 0)"},
        {"an end within the tolerance", "LINESTRING (0 0,10 0)", "LINESTRING (2 0.001,4 3,6 -1)",
         "LINESTRING (0 0,2 0.001,4 3,5.5 0,10 0)"},
        {"heights and measures of the path, else those of the line", "LINESTRING ZM (0 0 0 0,10 0 10 100)",
         "LINESTRING ZM (2 0 7 7,2 3 NaN NaN,5 3 50 NaN,5 0 7 7)",
         "LINESTRING ZM (0 0 0 0,2 0 2 20,2 3 26 30,5 3 50 40,5 0 5 50,10 0 10 100)"},
        {"the part met twice", "MULTILINESTRING ((0 0,10 0),(0 5,10 5))", "LINESTRING (1 -1,1 6,3 6,3 4)",
         "MULTILINESTRING ((0 0,10 0),(0 5,1 5,1 6,3 6,3 5,10 5))"},
        {"closed line", "LINESTRING (0 0,0 10,10 10,10 0,0 0)", "LINESTRING (4 9,4 12,6 12,6 9)",
         "LINESTRING (0 0,0 10,4 10,4 12,6 12,6 10,10 10,10 0,0 0)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Polyline line = lineOf(row.line);
        Polyline again = line;
        Polyline path = lineOf(row.path);
        EXPECT_TRUE(reshape(line, path.paths[0], 0.002));
        EXPECT_EQ(toWkt(line), row.result);
        path.paths[0].reverse();
        EXPECT_TRUE(reshape(again, path.paths[0], 0.002));
        EXPECT_EQ(toWkt(again), row.result);
    }
}

TEST(Reshape, LeavesTheLineWithoutTwoContacts) {
    const struct {
        const char* name;
        const char* line;
        const char* path;
    } rows[] = {
        {"one contact", "LINESTRING (0 0,10 0)", "LINESTRING (2 -1,2 3)"},
        {"none", "LINESTRING (0 0,10 0)", "LINESTRING (2 1,2 3)"},
        {"one in each part", "MULTILINESTRING ((0 0,10 0),(0 5,10 5))", "LINESTRING (1 -1,1 6)"},
        {"along the line", "LINESTRING (0 0,10 0,10 10)", "LINESTRING (0 0,10 0,10 10)"},
        {"empty line", "LINESTRING EMPTY", "LINESTRING (2 1,2 3)"},
        {"path without length", "LINESTRING (0 0,10 0)", "LINESTRING (2 0,2 0)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Polyline line = lineOf(row.line);
        EXPECT_FALSE(reshape(line, lineOf(row.path).paths.at(0), 0.001));
        EXPECT_EQ(toWkt(line), row.line);
    }
    Polyline line = lineOf("LINESTRING (0 0,10 0)");
    EXPECT_FALSE(reshape(line, Path(), 0.001));
}

TEST(Reshape, KeepsArcsOfBoth) {
    Polyline line = lineOf("CIRCULARSTRING (0 0,5 5,10 0)");
    EXPECT_TRUE(reshape(line, lineOf("CIRCULARSTRING (2 4,5 8,8 4)").paths[0], 1e-9));
    const Path& path = line.paths[0];
    ASSERT_EQ(path.arcs().size(), 3U);
    EXPECT_NEAR(path.circularArc(path.arcs()[0]).radius, 5, 1e-9);
    EXPECT_EQ(path.arcs()[1].middle.xy(), (XY{5, 8}));
    EXPECT_NEAR(path.circularArc(path.arcs()[2]).radius, 5, 1e-9);
}

// A bulge between two random points of a line: the rest of the line and the bulge are what is left.
TEST(Reshape, KeepsTheRestOfTheLine) {
    CurveSamples samples(61);
    int changed = 0;
    for (int i = 0; i < 200; ++i) {
        Polyline line = samples.line(1, 6);
        const Polyline before = line;
        const double from = samples.uniform(0.05, 0.5);
        const double to = samples.uniform(0.55, 0.95);
        Path bulge;
        bulge.addVertex(*pointAtRatio(line, from));
        bulge.addVertex({500000, 5600000});
        bulge.addVertex({500100, 5600000});
        bulge.addVertex(*pointAtRatio(line, to));
        changed += reshape(line, bulge, 1e-6) ? 1 : 0;
        EXPECT_TRUE(sameVertex(line.paths[0].front(), before.paths[0].front()));
        EXPECT_TRUE(sameVertex(line.paths[0].back(), before.paths[0].back()));
        for (const XY p : bulge.xy().subspan(1, 2)) {
            EXPECT_EQ(positionOf(p, line)->distanceFrom, 0);
        }
    }
    EXPECT_EQ(changed, 200);
}

constexpr const char* square = "POLYGON ((0 0,0 10,10 10,10 0,0 0))";
constexpr const char* withHole = "POLYGON ((0 0,0 10,10 10,10 0,0 0),(6 4,8 4,8 6,6 6,6 4))";

Polygon polygonOf(const char* wkt) {
    return geometryFromWkt(wkt).as<Polygon>();
}

TEST(ReshapePolygon, GrowsOutsideAndIsCutInside) {
    const struct {
        const char* name;
        const char* polygon;
        const char* path;
        const char* result;
    } rows[] = {
        {"outside it grows", square, "LINESTRING (2 9,2 12,5 12,5 9)",
         "POLYGON ((0 0,0 10,2 10,2 12,5 12,5 10,10 10,10 0,0 0))"},
        {"inside the larger part stays", square, "LINESTRING (4 -1,4 11)", "POLYGON ((4 10,10 10,10 0,4 0,4 10))"},
        {"ends on the boundary", square, "LINESTRING (0 4,3 7,0 8)", "POLYGON ((0 0,0 4,3 7,0 8,0 10,10 10,10 0,0 0))"},
        {"an end within the tolerance", square, "LINESTRING (0.001 4,3 7,-1 7)",
         "POLYGON ((0 0,0.001 4,3 7,0 7,0 10,10 10,10 0,0 0))"},
        {"inside, then outside", square, "LINESTRING (1 11,1 9,3 9,3 12,5 12,5 9)",
         "POLYGON ((0 0,0 10,1 10,1 9,3 9,3 10,3 12,5 12,5 10,10 10,10 0,0 0))"},
        {"along the boundary, then outside", square, "LINESTRING (1 10,3 10,3 12,5 10)",
         "POLYGON ((0 0,0 10,1 10,3 10,3 12,5 10,10 10,10 0,0 0))"},
        {"beyond the contacts nothing counts", square, "LINESTRING (5 5,2 9,2 12,5 12,5 9,6 6)",
         "POLYGON ((0 0,0 10,2 10,2 12,5 12,5 10,10 10,10 0,0 0))"},
        {"across the start of the ring", square, "LINESTRING (-1 2,2 2,2 -1)",
         "POLYGON ((0 2,0 10,10 10,10 0,2 0,2 2,0 2))"},
        {"a hole stays", withHole, "LINESTRING (4 -1,4 11)",
         "POLYGON ((4 10,10 10,10 0,4 0,4 10),(6 4,8 4,8 6,6 6,6 4))"},
        {"a hole goes", withHole, "LINESTRING (5.5 -1,5.5 11)", "POLYGON ((0 0,0 10,5.5 10,5.5 0,0 0))"},
        {"a hole is opened", withHole, "LINESTRING (7 -1,7 11)", "POLYGON ((0 0,0 10,7 10,7 6,6 6,6 4,7 4,7 0,0 0))"},
        {"a hole grows", withHole, "LINESTRING (6.5 5,6.5 7,7.5 7,7.5 5)",
         "POLYGON ((0 0,0 10,10 10,10 0,0 0),(6 4,8 4,8 6,7.5 6,7.5 7,6.5 7,6.5 6,6 6,6 4))"},
        {"a hole is filled in part", withHole, "LINESTRING (7.5 3,7.5 7)",
         "POLYGON ((0 0,0 10,10 10,10 0,0 0),(6 4,7.5 4,7.5 6,6 6,6 4))"},
        {"into a neighbouring part", "MULTIPOLYGON (((0 0,0 10,10 10,10 0,0 0)),((12 0,12 9,20 9,12 0)))",
         "LINESTRING (10 3,14 4,10 5)",
         "POLYGON ((0 0,0 10,10 10,10 5,12 4.5,12 9,20 9,12 0,12 3.5,10 3,10 0,0 "
         "0))"},
        {"heights and measures", "POLYGON ZM ((0 0 0 0,0 10 10 10,10 10 10 10,10 0 0 0,0 0 0 0))",
         "LINESTRING ZM (0 2 7 7,-1 2 NaN 3,-1 4 NaN NaN,0 4 7 7)",
         "POLYGON ZM ((0 0 0 0,0 2 2 2,-1 2 2.5 3,-1 4 3.5 3.6666666666666665,0 4 4 4,0 10 10 10,10 10 10 10,"
         "10 0 0 0,0 0 0 0))"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Polygon polygon = polygonOf(row.polygon);
        Polygon again = polygon;
        Path path = lineOf(row.path).paths[0];
        EXPECT_TRUE(reshape(polygon, path, 0.002));
        EXPECT_EQ(toWkt(polygon), row.result);
        EXPECT_TRUE(isSimple(polygon));
        path.reverse();
        EXPECT_TRUE(reshape(again, path, 0.002));
        EXPECT_TRUE(identical(again, polygon));
    }
}

TEST(ReshapePolygon, LeavesItWithoutTwoContactsOfARing) {
    const struct {
        const char* name;
        const char* polygon;
        const char* path;
    } rows[] = {
        {"inside", square, "LINESTRING (2 2,3 3)"},
        {"one contact", square, "LINESTRING (2 2,2 12)"},
        {"from the exterior ring to a hole", withHole, "LINESTRING (-1 5,7 5)"},
        {"along the boundary", square, "LINESTRING (0 5,0 10,7 10)"},
        {"a loop from one place", square, "LINESTRING (5 10,4 12,6 12,5 10)"},
        {"empty polygon", "POLYGON EMPTY", "LINESTRING (2 1,2 3)"},
        {"empty path", square, "LINESTRING EMPTY"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Polygon polygon = polygonOf(row.polygon);
        const Polyline line = lineOf(row.path);
        EXPECT_FALSE(reshape(polygon, line.paths.empty() ? Path() : line.paths[0], 0.001));
        EXPECT_EQ(toWkt(polygon), row.polygon);
    }
}

TEST(ReshapePolygon, KeepsArcsOfBoth) {
    Polygon circle = polygonOf("CURVEPOLYGON (CIRCULARSTRING (-5 0,5 0,-5 0))");
    ASSERT_TRUE(reshape(circle, lineOf("CIRCULARSTRING (4 3,8 0,4 -3)").paths[0], 1e-6));
    ASSERT_EQ(circle.rings.size(), 1U);
    double largest = 0;
    for (const ArcSegment& arc : circle.rings[0].arcs()) {
        largest = std::max(largest, circle.rings[0].circularArc(arc).envelope().xMax);
    }
    EXPECT_EQ(circle.rings[0].arcs().size(), circle.rings[0].segmentCount());
    EXPECT_NEAR(largest, 8, 1e-9);
}

// Goes around the frame, out and in, with arcs now and then.
Path pathAround(CurveSamples& samples, const ShapeFrame& frame, bool withArcs) {
    Path path;
    double angle = samples.uniform(-3, 3);
    const auto next = [&] {
        angle += samples.uniform(-0.3, 0.7);
        const XY p = frame.at(angle, samples.uniform(0.1, 1.3));
        return Vertex{p.x, p.y};
    };
    path.addVertex(next());
    for (int i = 0; i < 10; ++i) {
        if (withArcs && i % 3 == 1) {
            const Vertex middle = next();
            path.addArc(middle, next());
        } else {
            path.addVertex(next());
        }
    }
    return path;
}

TEST(ReshapePolygon, IsSimpleWhateverThePath) {
    CurveSamples samples(67);
    std::mt19937 random(67);
    int changed = 0;
    for (int i = 0; i < 300; ++i) {
        SCOPED_TRACE(i);
        const ShapeFrame frame{{500000, 5500000}, 100, i % 2 == 0 ? 0.0 : 1e-4};
        const Polygon before = randomStar(random, frame, 16, i % 3 != 0, i % 4 == 0);
        Polygon polygon = before;
        const Path path = pathAround(samples, frame, i % 5 == 0);
        Polygon again = before;
        const bool done = reshape(polygon, path, 0.001);
        EXPECT_TRUE(isSimple(polygon)) << toWkt(before) << "\n" << toWkt(polygon);
        Path backward = path;
        backward.reverse();
        EXPECT_EQ(reshape(again, backward, 0.001), done);
        EXPECT_NEAR(area(again), area(polygon), 1e-3);
        EXPECT_EQ(identical(polygon, before), !done);
        changed += done ? 1 : 0;
    }
    EXPECT_GT(changed, 250);
}

TEST(Reshape, RefusesOddNumbers) {
    Polyline line = lineOf("LINESTRING (0 0,10 0)");
    EXPECT_THROW(reshape(line, line.paths[0], -1), PlatformError);
    EXPECT_THROW(reshape(line, Path(std::vector<XY>{{0, 0}, {undefined, 0}}), 0), PlatformError);
    Polygon polygon = polygonOf(square);
    EXPECT_THROW(reshape(polygon, line.paths[0], undefined), PlatformError);
    EXPECT_THROW(reshape(polygon, Path(std::vector<XY>{{0, 0}, {INFINITY, 0}}), 0), PlatformError);
}

} // namespace
} // namespace qz
