#include <gtest/gtest.h>

#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Reshape.h"
#include "platform/geometry/SubCurve.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/CurveSamples.h"

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

TEST(Reshape, RefusesOddNumbers) {
    Polyline line = lineOf("LINESTRING (0 0,10 0)");
    EXPECT_THROW(reshape(line, line.paths[0], -1), PlatformError);
    EXPECT_THROW(reshape(line, Path(std::vector<XY>{{0, 0}, {undefined, 0}}), 0), PlatformError);
}

} // namespace
} // namespace qz
