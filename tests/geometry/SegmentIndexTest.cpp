#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/SegmentIndex.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

TEST(DistanceBetween, KnowsCrossingTouchingAndParallelSegments) {
    const struct {
        const char* name;
        Segment a;
        Segment b;
        double distance;
    } rows[] = {
        {"crossing", {{0, 0}, {10, 10}}, {{0, 10}, {10, 0}}, 0},
        {"end on the other", {{0, 0}, {10, 0}}, {{5, 0}, {5, 9}}, 0},
        {"overlapping", {{0, 0}, {10, 0}}, {{5, 0}, {15, 0}}, 0},
        {"parallel", {{0, 0}, {10, 0}}, {{5, 3}, {15, 3}}, 3},
        {"end to end", {{0, 0}, {10, 0}}, {{13, 4}, {20, 4}}, 5},
        {"beyond the end, on one line", {{0, 0}, {10, 0}}, {{12, 0}, {20, 0}}, 2},
        {"point and segment", {{0, 0}, {10, 0}}, {{4, -2}, {4, -2}}, 2},
        {"two points", {{0, 0}, {0, 0}}, {{3, 4}, {3, 4}}, 5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_DOUBLE_EQ(distanceBetween(row.a, row.b), row.distance);
        EXPECT_DOUBLE_EQ(distanceBetween(row.b, row.a), row.distance);
        EXPECT_DOUBLE_EQ(distanceBetween({row.a.end, row.a.start}, row.b), row.distance);
    }
}

TEST(SegmentIndex, AnswersAsTheSegmentsOneByOne) {
    std::mt19937 random(12);
    std::uniform_real_distribution<double> coordinate(0, 100);
    const auto line = [&](int vertices) {
        Polyline polyline;
        polyline.paths.emplace_back();
        Vertex vertex{coordinate(random), coordinate(random)};
        for (int i = 0; i < vertices; ++i) {
            polyline.paths[0].addVertex(vertex);
            vertex.x += coordinate(random) / 20 - 2.5;
            vertex.y += coordinate(random) / 20 - 2.5;
        }
        return polyline;
    };
    int within = 0;
    for (int i = 0; i < 500; ++i) {
        const Geometry one = line(60);
        const Geometry other = line(3);
        double nearest = 1000;
        for (const Segment& a : segmentsOf(one)) {
            for (const Segment& b : segmentsOf(other)) {
                nearest = std::min(nearest, distanceBetween(a, b));
            }
        }
        const double asked = coordinate(random) / 2;
        within += nearest <= asked ? 1 : 0;
        ASSERT_EQ(SegmentIndex(one).isWithin(asked, other), nearest <= asked);
        ASSERT_TRUE(SegmentIndex(one).isWithin(nearest, other));
    }
    EXPECT_GT(within, 50);
    EXPECT_LT(within, 450);
}

TEST(SegmentIndex, CountsAreasByTheirRings) {
    const SegmentIndex index(geometryFromWkt("POLYGON ((0 0,0 10,10 10,10 0,0 0))"));
    EXPECT_FALSE(index.isWithin(4.9, geometryFromWkt("POINT (5 5)")));
    EXPECT_TRUE(index.isWithin(5, geometryFromWkt("MULTIPOINT ((50 50),(5 5))")));
    EXPECT_FALSE(index.isWithin(5, geometryFromWkt("POINT EMPTY")));
    EXPECT_FALSE(SegmentIndex(geometryFromWkt("POLYGON EMPTY")).isWithin(5, geometryFromWkt("POINT (5 5)")));
}

TEST(SegmentIndex, GivesTheLinesInAWindow) {
    const Geometry lines = geometryFromWkt("MULTILINESTRING ((0 0,4 0,4 4,0 4,0 8),(0 8,9 8))");
    const struct {
        const char* name;
        Envelope window;
        const char* lines;
    } rows[] = {
        {"nothing", {1, 1, 3, 3}, "MULTILINESTRING EMPTY"},
        {"one segment", {2, -1, 3, 1}, "LINESTRING (0 0,4 0)"},
        {"neighbours", {3, 3, 5, 5}, "LINESTRING (4 0,4 4,0 4)"},
        {"two that are not neighbours", {1, -1, 2, 5}, "MULTILINESTRING ((0 0,4 0),(4 4,0 4))"},
        {"touched only", {9, 8, 10, 10}, "LINESTRING (0 8,9 8)"},
        {"all", {0, 0, 9, 9}, "LINESTRING (0 0,4 0,4 4,0 4,0 8,9 8)"},
    };
    const SegmentIndex index(lines);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Polyline found;
        found.paths = index.linesIn(row.window);
        EXPECT_EQ(toWkt(found), toWkt(geometryFromWkt(row.lines)));
        EXPECT_EQ(index.isClearOf(row.window), found.paths.empty());
    }
}

} // namespace
} // namespace qz
