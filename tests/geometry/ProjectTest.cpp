#include <cmath>
#include <numbers>
#include <string>

#include <gtest/gtest.h>

#include "platform/geometry/Measures.h"
#include "platform/geometry/Project.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

Geometry geometryIn(const char* wkt, int epsg) {
    Geometry geometry = geometryFromWkt(wkt);
    geometry.traits().spatialReference = SpatialReference::fromEpsg(epsg);
    return geometry;
}

Geometry projectedTo(Geometry geometry, int epsg) {
    project(geometry, SpatialReference::fromEpsg(epsg));
    return geometry;
}

TEST(Project, FindsKnownCoordinatesWithXToTheEast) {
    const Vertex utm = projectedTo(geometryIn("POINT ZM (15 50 7 NaN)", 4326), 32633).as<Point>().vertex;
    EXPECT_NEAR(utm.x, 500000, 1e-6);
    EXPECT_NEAR(utm.y, 5538630.7, 0.05);
    EXPECT_EQ(utm.z, 7);
    EXPECT_TRUE(std::isnan(utm.m));
    // A system whose authority lists northing before easting.
    const Vertex poland = projectedTo(geometryIn("POINT (19 52)", 4326), 2180).as<Point>().vertex;
    EXPECT_NEAR(poland.x, 500000, 1);
    EXPECT_NEAR(poland.y, 459000, 2000);
}

TEST(Project, ThereAndBackIsTheSamePlace) {
    const Geometry original =
        geometryIn("MULTIPOLYGON (((13 50,13 51,14 51,13 50),(13.1 50.5,13.2 50.6,13.2 50.5,13.1 50.5)),"
                   "((15 50,15 51,16 51,15 50)))",
                   4326);
    const Geometry back = projectedTo(projectedTo(original, 25833), 4326);
    const auto& rings = original.as<Polygon>().rings;
    const auto& backRings = back.as<Polygon>().rings;
    ASSERT_EQ(backRings.size(), rings.size());
    for (std::size_t r = 0; r < rings.size(); ++r) {
        for (std::size_t i = 0; i < rings[r].vertexCount(); ++i) {
            EXPECT_NEAR(backRings[r].xy()[i].x, rings[r].xy()[i].x, 1e-9);
            EXPECT_NEAR(backRings[r].xy()[i].y, rings[r].xy()[i].y, 1e-9);
        }
    }
}

TEST(Project, LeavesCoordinatesWhereAReferenceIsMissing) {
    const SpatialReference utm = SpatialReference::fromEpsg(25833);
    for (const SpatialReference& source : {SpatialReference(), SpatialReference::unknown(), utm}) {
        for (const SpatialReference& target : {SpatialReference(), SpatialReference::unknown(), utm}) {
            Geometry point = Point({15, 50}, {.spatialReference = source});
            project(point, target);
            EXPECT_EQ(point.as<Point>().vertex.xy(), (XY{15, 50}));
            EXPECT_EQ(point.spatialReference(), target);
        }
    }
}

TEST(Project, NamesTheFirstCoordinateWithoutAPlaceAndChangesNothing) {
    const struct {
        const char* wkt;
        const char* place;
    } rows[] = {
        {"LINESTRING (15 50,15 95,15 96)", "(15, 95)"},
        {"LINESTRING (15 50,-165 50)", "(-165, 50)"}, // on the other side of the earth
        {"LINESTRING (15 50,-165 1)", "(-165, 1)"},
        {"MULTILINESTRING ((15 50,15 51),(15 50,15 200))", "(15, 200)"},
        {"POINT (15 -91)", "(15, -91)"},
    };
    testing::internal::CaptureStderr();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.wkt);
        Geometry geometry = geometryIn(row.wkt, 4326);
        const Geometry before = geometry;
        try {
            project(geometry, SpatialReference::fromEpsg(32633));
            ADD_FAILURE() << "gave " << toWkt(geometry);
        } catch (const PlatformError& error) {
            EXPECT_NE(std::string(error.what()).find(row.place), std::string::npos) << error.what();
        }
        EXPECT_TRUE(identical(geometry, before));
        EXPECT_EQ(geometry.spatialReference(), before.spatialReference());
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Project, WorksBesideTheZoneAndAcrossTheDateLine) {
    EXPECT_NO_THROW((void)projectedTo(geometryIn("LINESTRING (-5 50,35 60)", 4326), 32633));
    EXPECT_NO_THROW((void)projectedTo(geometryIn("LINESTRING (179 -40,-178 -41)", 4326), 2193));
    EXPECT_NO_THROW((void)projectedTo(geometryIn("LINESTRING (-180 -85,180 85)", 4326), 3857));
    EXPECT_NO_THROW((void)projectedTo(geometryIn("LINESTRING (0 -70,180 -65)", 4326), 3031));
}

TEST(Project, SmallArcBetweenGridsStaysAnArc) {
    const Geometry arc = geometryIn("CIRCULARSTRING Z (500000 5500000 1,500010 5500010 2,500020 5500000 3)", 25833);
    const Geometry moved = projectedTo(arc, 25832);
    const Path& path = moved.as<Polyline>().paths.at(0);
    ASSERT_EQ(path.arcs().size(), 1U);
    EXPECT_EQ(path.vertexCount(), 2U);
    EXPECT_EQ(path.arcs()[0].middle.z, 2);
    EXPECT_NEAR(length(path), 10 * std::numbers::pi, 0.2); // six degrees from the meridian lines are 0.4 % longer
}

// A circle in degrees is no circle in metres. Every place of the strokes, taken back, has to lie on the circle.
TEST(Project, LargeArcBecomesStrokesWithinTheTolerance) {
    const Geometry arc = geometryIn("CIRCULARSTRING Z (14 50 0,14.1 50.1 5,14.2 50 10)", 4326);
    const Geometry moved = projectedTo(arc, 25833);
    const Path& path = moved.as<Polyline>().paths.at(0);
    ASSERT_FALSE(path.hasArcs());
    ASSERT_GT(path.vertexCount(), 100U);
    EXPECT_EQ(path.front().z, 0);
    EXPECT_EQ(path.back().z, 10);
    for (std::size_t i = 1; i < path.vertexCount(); ++i) {
        const XY a = path.xy()[i - 1];
        const XY b = path.xy()[i];
        Geometry chordMiddle =
            Point({(a.x + b.x) / 2, (a.y + b.y) / 2}, {.spatialReference = moved.spatialReference()});
        project(chordMiddle, arc.spatialReference());
        const Vertex p = chordMiddle.as<Point>().vertex;
        // A millimetre is at most 1.4e-8 degrees of longitude at this latitude.
        ASSERT_NEAR(std::hypot(p.x - 14.1, p.y - 50), 0.1, 1.4e-8);
        ASSERT_GT(path.vertex(i).z, path.vertex(i - 1).z);
    }
}

TEST(Project, NeighboursKeepTheArcTheyShare) {
    const Geometry there = projectedTo(geometryIn("CIRCULARSTRING (14 50,14.03 50.07,14.2 50)", 4326), 25833);
    Geometry back = projectedTo(geometryIn("CIRCULARSTRING (14.2 50,14.03 50.07,14 50)", 4326), 25833);
    back.as<Polyline>().paths.at(0).reverse();
    EXPECT_TRUE(identical(there, back));
}

TEST(Project, EnvelopeHoldsTheBulgeOfItsSides) {
    const SpatialReference degrees = SpatialReference::fromEpsg(4326);
    const SpatialReference utm = SpatialReference::fromEpsg(32633);
    const Envelope moved = projected({9, 50, 21, 60}, degrees, utm);
    const Vertex southMiddle = projectedTo(geometryIn("POINT (15 50)", 4326), 32633).as<Point>().vertex;
    const Vertex southCorner = projectedTo(geometryIn("POINT (9 50)", 4326), 32633).as<Point>().vertex;
    EXPECT_LT(southMiddle.y, southCorner.y);
    EXPECT_EQ(moved.yMin, southMiddle.y);
    EXPECT_TRUE(projected(Envelope(), degrees, utm).isEmpty());
}

} // namespace
} // namespace qz
