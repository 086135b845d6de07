#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/Buffer.h"
#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/WellKnown.h"
#include "platform/geometry/geos/GeosGeometry.h"
#include "tests/geometry/RandomLines.h"
#include "tests/geometry/RandomShapes.h"

namespace qz {
namespace {

using std::numbers::pi;

std::size_t holesOf(const Polygon& polygon) {
    return polygon.rings.size() - exteriorRings(polygon).size();
}

TEST(Buffer, AreasOfPlainShapes) {
    constexpr const char* frame = "POLYGON ((0 0,0 10,10 10,10 0,0 0),(4 4,6 4,6 6,4 6,4 4))";
    const struct {
        const char* name;
        const char* shape;
        double distance;
        double area;
        std::size_t exteriors;
        std::size_t holes;
    } rows[] = {
        {"point", "POINT (3 4)", 2, 4 * pi, 1, 0},
        {"points apart", "MULTIPOINT ((0 0),(9 0))", 1, 2 * pi, 2, 0},
        {"points at one place", "MULTIPOINT ((1 1),(1 1),(1 1))", 1, pi, 1, 0},
        {"overlapping circles, a lens of angle 2 pi / 3", "MULTIPOINT ((0 0),(1 0))", 1,
         2 * pi - (2 * pi / 3 - std::sqrt(3) / 2), 1, 0},
        {"line without length", "LINESTRING (3 4,3 4)", 2, 4 * pi, 1, 0},
        {"line of one segment", "LINESTRING (0 0,3 4)", 1, pi + 10, 1, 0},
        {"line back over itself", "LINESTRING (0 0,3 4,0 0)", 1, pi + 10, 1, 0},
        {"right angle", "LINESTRING (0 0,5 0,5 5)", 1, pi + 20 - 1 + pi / 4, 1, 0},
        {"half circle", "CIRCULARSTRING (0 0,5 5,10 0)", 1, pi / 2 * (36 - 16) + pi, 1, 0},
        {"circle", "CIRCULARSTRING (0 0,10 0,0 0)", 1, pi * (36 - 16), 1, 1},
        {"circle, to the centre", "CIRCULARSTRING (0 0,10 0,0 0)", 5, pi * 100, 1, 0},
        {"closed line", "LINESTRING (0 0,10 0,10 10,0 10,0 0)", 1, 40 + pi + 100 - 64, 1, 1},
        {"parts that touch", "MULTILINESTRING ((0 0,10 0),(0 2,10 2))", 1, 2 * (20 + pi), 1, 0},
        {"area", "POLYGON ((0 0,0 10,10 10,10 0,0 0))", 2, 100 + 80 + 4 * pi, 1, 0},
        {"area with a hole", frame, 0.5, 100 + 20 + pi / 4 - 1, 1, 1},
        {"area whose hole is filled", frame, 3, 100 + 120 + 9 * pi, 1, 0},
        {"areas that join", "MULTIPOLYGON (((0 0,0 1,1 1,1 0,0 0)),((2 0,2 1,3 1,3 0,2 0)))", 1,
         2 * (1 + 4 + pi) - 1 - (2 * pi / 3 - std::sqrt(3) / 2), 1, 0},
        {"area at 0", frame, 0, 96, 1, 1},
        {"area, inward", "POLYGON ((0 0,0 10,10 10,10 0,0 0))", -2, 36, 1, 0},
        {"area with a hole, inward", frame, -1, 64 - 4 - 8 - pi, 1, 1},
        {"area that falls apart", "POLYGON ((0 0,0 4,4 4,4 2.5,6 2.5,6 4,10 4,10 0,6 0,6 1.5,4 1.5,4 0,0 0))", -1,
         8 + 2 * (1 - std::sqrt(3) / 4 - pi / 6), 2, 0},
        {"area with a hole, down to its corners", frame, -2, 36 - 4 - 16 - 4 * pi, 4, 0},
        {"area too narrow", frame, -3, 0, 0, 0},
        {"line at 0", "LINESTRING (0 0,3 4)", 0, 0, 0, 0},
        {"line, negative", "LINESTRING (0 0,3 4)", -1, 0, 0, 0},
        {"point, negative", "POINT (0 0)", -1, 0, 0, 0},
        {"nothing", "POLYGON EMPTY", 1, 0, 0, 0},
        {"no point", "POINT EMPTY", 1, 0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Polygon result = buffer(geometryFromWkt(row.shape), row.distance);
        EXPECT_NEAR(area(result), row.area, 1e-9 * row.area) << toWkt(result);
        EXPECT_EQ(exteriorRings(result).size(), row.exteriors) << toWkt(result);
        EXPECT_EQ(holesOf(result), row.holes) << toWkt(result);
        EXPECT_TRUE(isSimple(result)) << toWkt(result);
    }
}

// GEOS takes out bends of up to a hundredth of the distance first, which strokes of arcs are.
double geosBufferArea(const Geometry& shape, double distance) {
    constexpr int segmentsPerQuadrant = 450; // the area of a circle falls short by 2e-6 of itself
    const GeosGeometryPtr result(
        GEOSBuffer_r(GeosContext::ofThread().handle(), toGeos(shape).get(), distance, segmentsPerQuadrant));
    double found = 0;
    EXPECT_EQ(GEOSArea_r(GeosContext::ofThread().handle(), result.get(), &found), 1);
    return found;
}

// Inside of the buffer are the places within the distance of a line, none other; of an area, those outside of it that
// are within the distance or, for a negative one, those inside that are not.
void expectMembership(const Geometry& shape, double distance, const Polygon& result, std::mt19937& random) {
    const Polygon* const area = shape.getIf<Polygon>();
    const CurveIndex source{area != nullptr ? Curve(*area) : Curve(shape.as<Polyline>())};
    const CurveIndex boundary{Curve(result)};
    const PreparedRelation isInShape(shape, SpatialRelation::within);
    const PreparedRelation isInResult(result, SpatialRelation::within);
    const Envelope extent = shape.envelope().expandedBy(std::abs(distance), std::abs(distance));
    std::uniform_real_distribution<double> x(extent.xMin, extent.xMax);
    std::uniform_real_distribution<double> y(extent.yMin, extent.yMax);
    for (int i = 0; i < 100; ++i) {
        const Point place({x(random), y(random)});
        const double toSource = source.positionOf(place.vertex.xy())->distanceFrom;
        const auto toBoundary = boundary.positionOf(place.vertex.xy());
        if (toBoundary && toBoundary->distanceFrom < 2 * shape.spatialReference().grid().xyTolerance) {
            continue; // on the boundary for a relation
        }
        const bool isNear = toSource <= std::abs(distance);
        const bool isInside = area != nullptr && isInShape.holdsFor(place);
        EXPECT_EQ(!result.isEmpty() && isInResult.holdsFor(place),
                  distance > 0 ? isNear || isInside : isInside && !isNear)
            << place.vertex.x << " " << place.vertex.y << ", " << toSource << " from the shape";
    }
}

double lengthOf(const Geometry& shape) {
    const Polygon* const area = shape.getIf<Polygon>();
    return area != nullptr ? perimeter(*area) : length(shape.as<Polyline>());
}

void expectBuffer(const Geometry& shape, double distance, bool hasGeosArea, std::mt19937& random) {
    SCOPED_TRACE(toWkt(shape) + " " + std::to_string(distance));
    const Polygon result = buffer(shape, distance);
    EXPECT_TRUE(isSimple(result)) << toWkt(result);
    expectMembership(shape, distance, result, random);
    if (hasGeosArea) {
        const double expected = geosBufferArea(shape, distance);
        const double bends = 0.01 * std::abs(distance) * lengthOf(shape);
        EXPECT_NEAR(area(result), expected, 1e-5 * expected + bends) << toWkt(result);
    }
}

TEST(BufferProperty, LinesOfAllKinds) {
    std::mt19937 random(11);
    for (const RandomLineKind& kind : randomLineKinds) {
        SCOPED_TRACE(kind.name);
        for (int round = 0; round < 12; ++round) {
            Polyline line;
            line.spatialReference =
                SpatialReference::unknown(kind.step < 0.01 ? CoordinateGrid::forDegrees() : CoordinateGrid());
            line.paths.push_back(randomLine(random, kind, 2 + 2 * round));
            for (const double distance : {0.2, 1.1, 6.0}) {
                // GEOS loses area beside the start of some closed lines, up to 6 % of it.
                expectBuffer(line, distance * kind.step, !kind.withArcs && !kind.closed, random);
            }
        }
    }
}

TEST(BufferProperty, Stars) {
    std::mt19937 random(12);
    for (const ShapeFrame& frame : {ShapeFrame{{0, 0}, 10}, ShapeFrame{{1e7, 2e7}, 500, 1e-4}}) {
        for (int round = 0; round < 20; ++round) {
            const Polygon star = randomStar(random, frame, 6 + 2 * round, round % 2 == 0, round % 3 == 0);
            for (const double share : {0.02, 0.3, -0.02, -0.1}) {
                expectBuffer(star, share * frame.size, round % 3 != 0, random);
            }
        }
    }
}

} // namespace
} // namespace qz
