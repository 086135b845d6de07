#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "platform/geometry/Measures.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

// Every text is in the form this library writes, so reading and writing gives it back.
constexpr const char* writtenTexts[] = {
    "POINT (1 2)",
    "POINT ZM (1 2 3 4)",
    "POINT M (0.1 -2.5 NaN)",
    "POINT Z EMPTY",
    "MULTIPOINT Z ((1 2 3),(4 5 NaN))",
    "MULTIPOINT EMPTY",
    "LINESTRING Z (0 0 1,10 0.1 2)",
    "LINESTRING M (0 0 NaN,10 0 7)",
    "LINESTRING ZM (0 0 1 NaN,10 0 NaN 7)",
    "LINESTRING (4500000.123456789 5538630.702,1e-07 1e+22)",
    "LINESTRING EMPTY",
    "MULTILINESTRING ((0 0,1 1),(5 5,6 6,7 5))",
    "CIRCULARSTRING Z (0 0 1,5 5 9,10 0 3)",
    "CIRCULARSTRING (0 0,5 5,10 0,15 -5,20 0)",
    "CIRCULARSTRING (0 0,10 0,0 0)",
    "COMPOUNDCURVE M ((0 0 1,1 0 2),CIRCULARSTRING M (1 0 2,2 1 NaN,3 0 4),(3 0 4,9 0 5))",
    "MULTICURVE ((0 0,1 1),CIRCULARSTRING (0 0,5 5,10 0))",
    "POLYGON ((0 0,0 10,10 10,10 0,0 0),(1 1,2 1,2 2,1 1))",
    "POLYGON ZM ((0 0 1 NaN,0 10 2 5,10 10 3 6,0 0 1 NaN))",
    "MULTIPOLYGON (((0 0,0 10,10 10,10 0,0 0),(1 1,2 1,2 2,1 1)),((20 0,20 5,25 5,20 0)))",
    "CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0))",
    "CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0),CIRCULARSTRING (4 0,6 0,4 0))",
    "CURVEPOLYGON Z (COMPOUNDCURVE Z (CIRCULARSTRING Z (0 0 NaN,5 5 NaN,10 0 NaN),(10 0 NaN,0 0 NaN)))",
    "MULTISURFACE (CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0)),((20 0,20 5,25 5,20 0)))",
    "POLYGON EMPTY",
};

TEST(WellKnown, ReadsWhatItWritesWithoutPrinting) {
    testing::internal::CaptureStderr();
    for (const char* text : writtenTexts) {
        SCOPED_TRACE(text);
        const Geometry geometry = geometryFromWkt(text);
        EXPECT_EQ(toWkt(geometry), text);
        const Geometry fromBinary = geometryFromWkb(toWkb(geometry));
        EXPECT_TRUE(identical(fromBinary, geometry)) << toWkt(fromBinary);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(WellKnown, BringsTextsIntoTheFormOfTheLibrary) {
    const struct {
        const char* name;
        const char* given;
        const char* written;
    } rows[] = {
        {"exterior ring runs clockwise", "POLYGON ((0 0,10 0,10 10,0 0))", "POLYGON ((0 0,10 10,10 0,0 0))"},
        {"hole runs counter-clockwise", "POLYGON ((0 0,0 9,9 9,9 0,0 0),(1 1,2 2,2 1,1 1))",
         "POLYGON ((0 0,0 9,9 9,9 0,0 0),(1 1,2 1,2 2,1 1))"},
        {"turned ring keeps its arc", "CURVEPOLYGON (COMPOUNDCURVE ((0 0,10 0),CIRCULARSTRING (10 0,5 5,0 0)))",
         "CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (0 0,5 5,10 0),(10 0,0 0)))"},
        {"open ring is closed", "POLYGON ((0 0,10 10,10 0))", "POLYGON ((0 0,10 10,10 0,0 0))"},
        {"multi of one part is single", "MULTILINESTRING ((0 0,1 1))", "LINESTRING (0 0,1 1)"},
        {"empty parts are left out", "MULTILINESTRING ((0 0,1 1),EMPTY,(2 2,3 3))",
         "MULTILINESTRING ((0 0,1 1),(2 2,3 3))"},
        {"curve kind without arcs is plain", "COMPOUNDCURVE ((0 0,1 1),(1 1,2 5))", "LINESTRING (0 0,1 1,2 5)"},
        {"surface kind without arcs is plain", "CURVEPOLYGON ((0 0,10 10,10 0,0 0))", "POLYGON ((0 0,10 10,10 0,0 0))"},
        {"flat arc is straight", "CIRCULARSTRING (0 0,5 0,10 0)", "LINESTRING (0 0,5 0,10 0)"},
        {"small letters and blanks", " multipoint(1   2, 3 4) ", "MULTIPOINT ((1 2),(3 4))"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(toWkt(geometryFromWkt(row.given)), row.written);
    }
}

TEST(WellKnown, RefusesWhatIsNoGeometry) {
    const struct {
        const char* text;
        const char* said; // has to occur in the message, beside the text itself
    } rows[] = {
        {"LINSTRING (0 0,1 1)", "LINESTRING"},
        {"", "POINT"},
        {"LINESTRING (0 0,1 1", "brackets"},
        {"LINESTRING (0 0,1)", "coordinates"},
        {"LINESTRING (0 0,a b)", "coordinates"},
        {"LINESTRING (0 0,1 1) and more", "'and more'"},
        {"CIRCULARSTRING (0 0,1 1)", "number of points"},
        {"POINT (NaN 1)", "nan"},
        {"LINESTRING (0 0,1 NaN)", "nan"},
        {"POINT (1e400 1)", "inf"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        try {
            (void)geometryFromWkt(row.text);
            ADD_FAILURE() << "was accepted";
        } catch (const PlatformError& error) {
            EXPECT_NE(std::string(error.what()).find(row.said), std::string::npos) << error.what();
            EXPECT_NE(std::string(error.what()).find(row.text), std::string::npos) << error.what();
        }
    }
    EXPECT_THROW((void)geometryFromWkt("GEOMETRYCOLLECTION (POINT (1 2))"), PlatformError);
    EXPECT_THROW((void)geometryFromWkt("TIN (((0 0,0 1,1 1,0 0)))"), PlatformError);
}

TEST(WellKnown, RefusesBrokenBinary) {
    std::vector<std::uint8_t> wkb = toWkb(geometryFromWkt("CIRCULARSTRING Z (0 0 1,5 5 9,10 0 3)"));
    for (std::size_t size = 0; size < wkb.size(); ++size) {
        EXPECT_THROW((void)geometryFromWkb(std::span(wkb).first(size)), PlatformError) << size;
    }
    wkb.push_back(0);
    EXPECT_THROW((void)geometryFromWkb(wkb), PlatformError);
}

TEST(WellKnown, KeepsEveryBitOfRandomNumbers) {
    std::mt19937_64 random(7);
    const auto anyFinite = [&random] {
        while (true) {
            const double value = std::bit_cast<double>(random());
            // The lowest of all doubles is how a text says "undefined".
            if (std::isfinite(value)) {
                return value;
            }
        }
    };
    for (int i = 0; i < 2000; ++i) {
        const Geometry point =
            Point({anyFinite(), anyFinite(), anyFinite(), anyFinite()}, {.zAware = true, .mAware = true});
        ASSERT_TRUE(identical(geometryFromWkt(toWkt(point)), point)) << toWkt(point);
    }
}

TEST(WellKnown, WritesClockwiseFullCircleAsTwoHalves) {
    Path circle;
    circle.addVertex({0, 0, 4});
    circle.addArc({10, 0, 8}, {0, 0, 4}, ArcSense::clockwise);
    Polyline line;
    line.zAware = true;
    line.paths = {circle};
    const Geometry read = geometryFromWkt(toWkt(line));
    const Path& halves = read.as<Polyline>().paths.at(0);
    ASSERT_EQ(halves.arcs().size(), 2U);
    EXPECT_EQ(halves.arcs()[0].sense, ArcSense::clockwise);
    EXPECT_EQ(halves.arcs()[1].sense, ArcSense::clockwise);
    EXPECT_NEAR(halves.arcs()[0].middle.y, 5, 1e-12); // clockwise from the west goes over the north
    EXPECT_EQ(halves.arcs()[0].middle.z, 6);
    EXPECT_EQ(halves.vertex(1).z, 8);
    EXPECT_NEAR(length(halves), length(circle), 1e-12);
}

TEST(WellKnown, CollectionsKeepOrderAndKinds) {
    const char* text = "GEOMETRYCOLLECTION (POINT (1 2),LINESTRING (0 0,1 1),POLYGON ((0 0,1 1,1 0,0 0)))";
    const GeometryCollection collection = collectionFromWkt(text);
    ASSERT_EQ(collection.geometries.size(), 3U);
    EXPECT_EQ(collection.geometries[2].kind(), GeometryKind::polygon);
    EXPECT_EQ(toWkt(collection), text);
    EXPECT_TRUE(collectionFromWkt("GEOMETRYCOLLECTION EMPTY").geometries.empty());
    EXPECT_THROW((void)collectionFromWkt("POINT (1 2)"), PlatformError);
}

TEST(WellKnown, HolesStayWithTheirExteriorRing) {
    const Geometry geometry =
        geometryFromWkt("MULTIPOLYGON (((0 0,9 0,9 9,0 9,0 0),(1 1,2 1,2 2,1 1),(5 5,6 5,6 6,5 5)),"
                        "((20 0,25 0,25 5,20 0)),((40 0,49 0,49 9,40 0),(45 1,46 1,46 2,45 1)))");
    const Polygon& polygon = geometry.as<Polygon>();
    EXPECT_EQ(exteriorRings(polygon), (std::vector<std::size_t>{0, 3, 4}));
    EXPECT_EQ(interiorRings(polygon, 0), (std::vector<std::size_t>{1, 2}));
    EXPECT_EQ(interiorRings(polygon, 3), std::vector<std::size_t>());
    EXPECT_EQ(interiorRings(polygon, 4), std::vector<std::size_t>{5});
    EXPECT_DOUBLE_EQ(area(polygon), 81 - 0.5 - 0.5 + 12.5 + 40.5 - 0.5);
}

} // namespace
} // namespace qz
