#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/SegmentIndex.h"
#include "platform/geometry/Strokes.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/CurveSamples.h"

namespace qz {
namespace {

using std::numbers::pi;

constexpr double infinity = std::numeric_limits<double>::infinity();

Polyline lineOf(const char* wkt) {
    return geometryFromWkt(wkt).as<Polyline>();
}

struct PositionRow {
    const char* name;
    const char* wkt;
    XY point;
    double along;
    double from;
    bool right;
    std::size_t part = 0;
    std::size_t segment = 0;
    double segmentRatio = 0;
};

void expectPosition(const CurvePosition& found, const PositionRow& row) {
    EXPECT_NEAR(found.distanceAlong, row.along, 1e-12);
    EXPECT_NEAR(found.distanceFrom, row.from, 1e-12);
    EXPECT_EQ(found.onRightSide, row.right);
    EXPECT_EQ(found.part, row.part);
    EXPECT_EQ(found.segment, row.segment);
    EXPECT_NEAR(found.segmentRatio, row.segmentRatio, 1e-12);
}

const char* const corner = "LINESTRING (0 0,10 0,10 10)";
const char* const acute = "LINESTRING (0 0,10 0,0 1)";
const char* const halfCircle = "CIRCULARSTRING (0 0,5 5,10 0)"; // clockwise
const char* const twoParts = "MULTILINESTRING ((0 0,4 0),(100 0,100 6))";

TEST(CurvePosition, OfAPointWithoutExtension) {
    const PositionRow rows[] = {
        {"left of the first segment", corner, {3, 2}, 3, 2, false, 0, 0, 0.3},
        {"right of the first segment", corner, {3, -2}, 3, 2, true, 0, 0, 0.3},
        {"on the line", corner, {3, 0}, 3, 0, false, 0, 0, 0.3},
        {"on a vertex", corner, {10, 0}, 10, 0, false, 0, 0, 1},
        {"before the start, left", corner, {-3, 4}, 0, 5, false, 0, 0, 0},
        {"before the start, right", corner, {-3, -4}, 0, 5, true, 0, 0, 0},
        {"straight before the start", corner, {-3, 0}, 0, 3, false, 0, 0, 0},
        {"beyond the end", corner, {13, 14}, 20, 5, true, 0, 1, 1},
        {"off the outer corner", corner, {13, -4}, 10, 5, true, 0, 0, 1},
        {"beyond an acute corner, left of the first segment",
         acute,
         {14, 0.01},
         10,
         std::hypot(4, 0.01),
         true,
         0,
         0,
         1},
        {"equally near: the smaller distance along", corner, {8, 2}, 8, 2, false, 0, 0, 0.8},
        {"outside an arc that runs clockwise", halfCircle, {5, 8}, 2.5 * pi, 3, false, 0, 0, 0.5},
        {"inside it", halfCircle, {5, 2}, 2.5 * pi, 3, true, 0, 0, 0.5},
        {"at its centre", halfCircle, {5, 0}, 0, 5, true, 0, 0, 0},
        {"beyond the half circle, nearer to its end", halfCircle, {7, -4}, 5 * pi, 5, true, 0, 0, 1},
        {"second part", twoParts, {101, 2}, 6, 1, true, 1, 0, 1.0 / 3},
        {"a tip that the line turns back on", "LINESTRING (0 0,10 0,0 0)", {12, 0}, 10, 2, false, 0, 0, 1},
        {"segments without length", "LINESTRING (0 0,10 0,10 0,10 10)", {13, -4}, 10, 5, true, 0, 0, 1},
        {"start of a ring is a corner too", "LINESTRING (0 0,0 10,10 10,10 0,0 0)", {-3, -4}, 0, 5, false, 0, 0, 0},
        {"a line without length", "LINESTRING (1 1,1 1)", {4, 5}, 0, 5, false, 0, 0, 0},
        {"a full circle", "CIRCULARSTRING (0 0,10 0,0 0)", {5, -7}, 2.5 * pi, 2, true, 0, 0, 0.25},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Polyline line = lineOf(row.wkt);
        expectPosition(positionOf(row.point, line).value(), row);
        expectPosition(CurveIndex(line).positionOf(row.point).value(), row);
    }
}

TEST(CurvePosition, OfAPointWithTangentsAtBothEnds) {
    const PositionRow rows[] = {
        {"within", corner, {3, -2}, 3, 2, true, 0, 0, 0.3},
        {"before the start, left", corner, {-3, 4}, -3, 4, false, 0, 0, 0},
        {"before the start, right", corner, {-3, -4}, -3, 4, true, 0, 0, 0},
        {"on the extension", corner, {-3, 0}, -3, 0, false, 0, 0, 0},
        {"beyond the end", corner, {13, 14}, 24, 3, true, 0, 1, 1},
        {"extension nearer than the line", "LINESTRING (0 0,10 0,10 10,-10 10)", {-9, 4}, -9, 4, false, 0, 0, 0},
        {"as near: the smaller distance along", "LINESTRING (0 0,10 0,10 10,-10 10)", {-9, 5}, -9, 5, false, 0, 0, 0},
        {"tangent of an arc", halfCircle, {1, -4}, -4, 1, true, 0, 0, 0},
        {"beyond an arc", halfCircle, {12, -4}, 5 * pi + 4, 2, false, 0, 0, 1},
        {"inner ends of parts are not extended", twoParts, {6, 1}, 4, std::hypot(2, 1), false, 0, 0, 1},
        {"last part", twoParts, {101, 9}, 13, 1, true, 1, 0, 1},
        {"a closed line has no ends", "LINESTRING (0 0,10 0,10 10,0 10,0 0)", {-3, 1}, 39, 3, true, 0, 3, 0.9},
        {"a line without length", "LINESTRING (1 1,1 1)", {4, 5}, 0, 5, false, 0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Polyline line = lineOf(row.wkt);
        expectPosition(positionOnExtended(row.point, line).value(), row);
        expectPosition(CurveIndex(line).positionOnExtended(row.point).value(), row);
    }
}

TEST(CurvePosition, CountsRingsOfAPolygonOneAfterTheOther) {
    const Geometry polygon = geometryFromWkt("POLYGON ((0 0,0 10,10 10,10 0,0 0),(4 4,6 4,6 6,4 6,4 4))");
    const CurvePosition found = positionOf({5, 4.5}, polygon.as<Polygon>()).value();
    EXPECT_EQ(found.distanceAlong, 41);
    EXPECT_EQ(found.ratioAlong, 41.0 / 48);
    EXPECT_EQ(found.part, 1U);
}

TEST(CurvePosition, IsNothingOnAnEmptyCurve) {
    EXPECT_FALSE(positionOf({0, 0}, Polyline()));
    EXPECT_FALSE(positionOnExtended({0, 0}, Polyline()));
    EXPECT_FALSE(CurveIndex(Polyline()).positionOf({0, 0}));
    EXPECT_FALSE(pointAtDistance(Polyline(), 1));
    EXPECT_FALSE(pointAtRatio(Path(), 1));
}

TEST(CurvePosition, OfALineOfOneVertexIsThatVertex) {
    const Path path(std::vector<XY>{{1, 1}});
    expectPosition(positionOf({4, 5}, path).value(), {"", "", {}, 0, 5, false});
    expectPosition(CurveIndex(path).positionOf({4, 5}).value(), {"", "", {}, 0, 5, false});
    EXPECT_EQ(pointAtRatio(path, 0.5)->xy(), (XY{1, 1}));
}

TEST(CurvePosition, RefusesWhatIsNotFinite) {
    const Polyline line = lineOf(corner);
    const Path broken(std::vector<XY>{{0, 0}, {infinity, 1}, {2, 2}});
    EXPECT_THROW(static_cast<void>(positionOf({undefined, 0}, line)), PlatformError);
    EXPECT_THROW(static_cast<void>(CurveIndex(line).positionOf({0, infinity})), PlatformError);
    EXPECT_THROW(static_cast<void>(positionOf({0, 0}, broken)), PlatformError);
    EXPECT_THROW(CurveIndex{broken}, PlatformError);
    const Path lone(std::vector<XY>{{0, undefined}});
    EXPECT_THROW(static_cast<void>(positionOf({0, 0}, lone)), PlatformError);
    EXPECT_THROW(CurveIndex{lone}, PlatformError);
    EXPECT_THROW(static_cast<void>(pointAtRatio(broken, 0.5)), PlatformError);
    EXPECT_THROW(static_cast<void>(pointAtDistance(line, undefined)), PlatformError);
}

TEST(CurvePosition, PointAlongRunsFromPartToPart) {
    const Polyline line = lineOf("MULTILINESTRING ZM ((0 0 1 10,4 0 5 NaN),(100 0 7 20,100 6 10 26))");
    const struct {
        double distance;
        Vertex point;
    } rows[] = {
        {-1, {0, 0, 1, 10}},  {0, {0, 0, 1, 10}},     {1, {1, 0, 2, undefined}}, {4, {4, 0, 5}},
        {6, {100, 2, 8, 22}}, {10, {100, 6, 10, 26}}, {11, {100, 6, 10, 26}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.distance);
        EXPECT_TRUE(sameVertex(pointAtDistance(line, row.distance).value(), row.point));
        EXPECT_TRUE(sameVertex(pointAtRatio(line, row.distance / 10).value(), row.point));
    }
}

TEST(CurvePosition, OfAVertexIsFoundAgainBitForBit) {
    CurveSamples samples(11);
    for (int i = 0; i < 100; ++i) {
        const Path path = samples.path(20);
        double distance = 0;
        for (std::size_t vertex = 0; vertex < path.vertexCount(); ++vertex) {
            EXPECT_TRUE(sameVertex(pointAtRatio(path, distance / length(path)).value(), path.vertex(vertex)));
            distance += vertex < path.segmentCount() ? segmentLength(path, vertex) : 0;
        }
    }
}

TEST(CurvePosition, FindsThePlaceAsked) {
    CurveSamples samples(12);
    for (int i = 0; i < 500; ++i) {
        const Polyline line = samples.line(2, 6);
        const double ratio = samples.uniform(0, 1);
        const Vertex point = pointAtRatio(line, ratio).value();
        const CurvePosition found = positionOf(point.xy(), line).value();
        EXPECT_LT(found.distanceFrom, 1e-8);
        // Where the line crosses itself another place may be as near.
        const Vertex again = pointAtRatio(line, found.ratioAlong).value();
        EXPECT_LT(distanceOf(again.xy(), point.xy()), 1e-8);
        EXPECT_NEAR(found.ratioAlong * length(line), found.distanceAlong, 1e-9);
    }
}

// The strokes of arcs are within 1e-6 of them.
TEST(CurvePosition, IsNearestOfAll) {
    CurveSamples samples(13);
    for (int i = 0; i < 200; ++i) {
        const Polyline line = samples.line(2, 6);
        const XY point = samples.pointNear({500000, 5500000}, 80);
        const Geometry strokes = straightened(line, 1e-6);
        double nearest = infinity;
        for (const Segment& segment : segmentsOf(strokes)) {
            nearest = std::min(nearest, distanceBetween(segment, {point, point}));
        }
        const CurvePosition found = positionOf(point, line).value();
        EXPECT_NEAR(found.distanceFrom, nearest, 2e-6);
        EXPECT_NEAR(distanceOf(found.nearest.xy(), point), found.distanceFrom, 1e-8);
    }
}

TEST(CurvePosition, IndexAgreesWithTheWalk) {
    CurveSamples samples(14);
    for (int i = 0; i < 20; ++i) {
        const Polyline line = samples.line(3, 60);
        const CurveIndex index(line);
        EXPECT_EQ(index.length(), length(line));
        for (int k = 0; k < 200; ++k) {
            const XY point = samples.pointNear(line.paths[0].front().xy(), 100);
            const CurvePosition plain = positionOnExtended(point, line).value();
            const CurvePosition indexed = index.positionOnExtended(point).value();
            EXPECT_EQ(indexed.distanceAlong, plain.distanceAlong);
            EXPECT_EQ(indexed.distanceFrom, plain.distanceFrom);
            EXPECT_EQ(indexed.onRightSide, plain.onRightSide);
            EXPECT_TRUE(sameVertex(indexed.nearest, plain.nearest));
        }
    }
}

TEST(CurvePosition, SidesChangeWhenTheLineIsMirroredOrReversed) {
    CurveSamples samples(15);
    for (int i = 0; i < 500; ++i) {
        const Path path = samples.path(8);
        const XY point = samples.pointNear(path.front().xy(), 60);
        const CurvePosition found = positionOf(point, path).value();
        Path mirrored = path;
        mirrored.transform([](Vertex& vertex) { vertex.x = 1000000 - vertex.x; });
        const CurvePosition inMirror = positionOf({1000000 - point.x, point.y}, mirrored).value();
        EXPECT_NEAR(inMirror.distanceAlong, found.distanceAlong, 1e-6);
        EXPECT_NE(inMirror.onRightSide, found.onRightSide);
        Path reversed = path;
        reversed.reverse();
        const CurvePosition back = positionOf(point, reversed).value();
        EXPECT_NEAR(back.distanceAlong, length(path) - found.distanceAlong, 1e-6);
        EXPECT_NE(back.onRightSide, found.onRightSide);
    }
}

} // namespace
} // namespace qz
