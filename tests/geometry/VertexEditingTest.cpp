#include <gtest/gtest.h>

#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/VertexEditing.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/CurveSamples.h"

namespace qz {
namespace {

Polyline lineOf(const char* wkt) {
    return geometryFromWkt(wkt).as<Polyline>();
}

TEST(VertexEditing, InsertsIntoStraightSegments) {
    const struct {
        const char* line;
        XY point;
        const char* on;
        const char* through;
        VertexPlace place;
    } rows[] = {
        {"LINESTRING ZM (0 0 0 10,10 0 5 20,10 10 6 30)",
         {4, 1},
         "LINESTRING ZM (0 0 0 10,4 0 2 14,10 0 5 20,10 10 6 30)",
         "LINESTRING ZM (0 0 0 10,4 1 2 14,10 0 5 20,10 10 6 30)",
         {0, 1}},
        {"MULTILINESTRING ((0 0,10 0),(0 5,10 5,20 5))",
         {14, 6},
         "MULTILINESTRING ((0 0,10 0),(0 5,10 5,14 5,20 5))",
         "MULTILINESTRING ((0 0,10 0),(0 5,10 5,14 6,20 5))",
         {1, 2}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        Polyline on = lineOf(row.line);
        Polyline through = on;
        const auto place = insertVertexOn(on, row.point, 0.1);
        EXPECT_EQ(toWkt(on), row.on);
        EXPECT_EQ(place->part, row.place.part);
        EXPECT_EQ(place->vertex, row.place.vertex);
        EXPECT_EQ(insertVertexThrough(through, row.point, 0.1)->vertex, row.place.vertex);
        EXPECT_EQ(toWkt(through), row.through);
    }
}

TEST(VertexEditing, LeavesAnExistingVertexAlone) {
    const struct {
        const char* line;
        XY point;
    } rows[] = {
        {"LINESTRING (0 0,10 0,10 10)", {9.95, 3e-9}},
        {"LINESTRING (0 0,10 0,10 10)", {12, -3}},
        {"LINESTRING (0 0,10 0,10 10)", {-4, 0}},
        {"LINESTRING (1 1,1 1)", {5, 5}},
        {"LINESTRING EMPTY", {5, 5}},
        {"CIRCULARSTRING (0 0,5 5,10 0)", {-1, -1}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        Polyline line = lineOf(row.line);
        EXPECT_FALSE(insertVertexOn(line, row.point, 0.1));
        EXPECT_FALSE(insertVertexThrough(line, row.point, 0.1));
        EXPECT_EQ(toWkt(line), row.line);
    }
}

TEST(VertexEditing, InsertsIntoARing) {
    Polygon square = geometryFromWkt("POLYGON ((0 0,0 10,10 10,10 0,0 0))").as<Polygon>();
    EXPECT_EQ(insertVertexOn(square, {3, -1}, 0.1)->vertex, 4U);
    EXPECT_EQ(toWkt(square), "POLYGON ((0 0,0 10,10 10,10 0,3 0,0 0))");
    insertVertexThrough(square, {5, 12}, 0.1);
    EXPECT_EQ(area(square), 110);
}

TEST(VertexEditing, CutsAnArcIntoTwoOfItsCircle) {
    CurveSamples samples(51);
    int arcs = 0;
    for (int i = 0; i < 300; ++i) {
        Polyline line = samples.line(2, 3);
        const Polyline before = line;
        const XY point = samples.pointNear(line.paths[0].front().xy(), 20);
        const CurvePosition position = positionOf(point, line).value();
        const auto place = insertVertexOn(line, point, 1e-6);
        if (!place) {
            EXPECT_TRUE(identical(line, before));
            continue;
        }
        const Path& path = line.paths[place->part];
        arcs += path.arcAt(place->vertex) != nullptr ? 1 : 0;
        EXPECT_TRUE(sameVertex(path.vertex(place->vertex), position.nearest));
        EXPECT_EQ(path.vertexCount(), before.paths[place->part].vertexCount() + 1);
        EXPECT_NEAR(length(line), length(before), 1e-7);
    }
    EXPECT_GT(arcs, 50);
}

TEST(VertexEditing, BendsAnArcIntoTwoThatTurnAsMuch) {
    Polyline line = lineOf("CIRCULARSTRING (0 0,5 5,10 0)");
    const double sweep = line.paths[0].circularArc(line.paths[0].arcs()[0]).sweep;
    EXPECT_EQ(insertVertexThrough(line, {5, 7}, 0.1)->vertex, 1U);
    const Path& path = line.paths[0];
    EXPECT_EQ(path.vertex(1).xy(), (XY{5, 7}));
    ASSERT_EQ(path.arcs().size(), 2U);
    EXPECT_NEAR(path.circularArc(path.arcs()[0]).sweep, sweep / 2, 1e-12);
    EXPECT_NEAR(path.circularArc(path.arcs()[1]).sweep, sweep / 2, 1e-12);
}

TEST(VertexEditing, RefusesOddNumbers) {
    Polyline line = lineOf("LINESTRING (0 0,10 0)");
    EXPECT_THROW(insertVertexOn(line, {undefined, 0}, 0.1), PlatformError);
    EXPECT_THROW(insertVertexOn(line, {3, 0}, -1), PlatformError);
    EXPECT_THROW(insertVertexThrough(line, {3, 0}, undefined), PlatformError);
}

} // namespace
} // namespace qz
