#include <string>

#include <gtest/gtest.h>

#include <ogr_spatialref.h>

#include "platform/Error.h"
#include "platform/geometry/SpatialReference.h"
#include "platform/geometry/ogr/OgrSpatialReference.h"

namespace qz {
namespace {

TEST(SpatialReference, KnowsTheRegistry) {
    const SpatialReference utm = SpatialReference::fromEpsg(25833);
    EXPECT_EQ(utm.factoryCode(), 25833);
    EXPECT_FALSE(utm.isGeographic());
    EXPECT_EQ(utm.text(), "EPSG:25833");
    EXPECT_TRUE(SpatialReference::fromText("epsg:4326").isGeographic());
    EXPECT_EQ(SpatialReference::fromText(utm.wkt()), utm);
}

TEST(SpatialReference, RefusesWithoutPrinting) {
    testing::internal::CaptureStderr();
    for (const char* text :
         {"EPSG:1", "EPSG:-4326", "EPSG:4326x", "EPSG:", "EPSG:99999999999", "4326", "nonsense", ""}) {
        EXPECT_THROW((void)SpatialReference::fromText(text), PlatformError) << text;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// The grid is a tenth of a millimetre and a millimetre, whatever the unit.
TEST(SpatialReference, HasTheGridOfItsUnit) {
    const struct {
        int epsg;
        double resolution;
        double tolerance;
    } rows[] = {
        {25833, 0.0001, 0.001},
        {2222, 0.0001, 0.001 / 0.3048}, // international feet
        {4326, 1e-9, 8.98315284119522e-9},
    };
    for (const auto& row : rows) {
        const CoordinateGrid grid = SpatialReference::fromEpsg(row.epsg).grid();
        EXPECT_EQ(grid.xyResolution, row.resolution) << row.epsg;
        EXPECT_DOUBLE_EQ(grid.xyTolerance, row.tolerance) << row.epsg;
    }
    EXPECT_EQ(CoordinateGrid::forLinearUnit(1000).xyResolution, 1e-7);
    EXPECT_EQ(CoordinateGrid::forLinearUnit(1e-6).xyResolution, 100);
}

TEST(SpatialReference, TellsUnknownAndNoneFromKnown) {
    EXPECT_TRUE(fromOgr(nullptr).isNone());
    EXPECT_EQ(SpatialReference().text(), "none");
    EXPECT_EQ(ogrReference(SpatialReference::unknown()), nullptr);

    OGRSpatialReference local;
    local.SetLocalCS("site grid");
    OGRSpatialReference placeholder;
    placeholder.SetGeogCS("Undefined geographic SRS", "unknown", "unknown", 6378137, 298.257223563);
    for (const OGRSpatialReference& reference : {OGRSpatialReference(), local, placeholder}) {
        EXPECT_TRUE(fromOgr(&reference).isUnknown());
        EXPECT_FALSE(fromOgr(&reference).isGeographic());
        EXPECT_EQ(fromOgr(&reference).text(), "unknown");
    }
}

TEST(SpatialReference, CustomSystemHasNoCode) {
    OGRSpatialReference custom;
    custom.SetProjCS("city grid");
    custom.SetWellKnownGeogCS("WGS84");
    custom.SetTM(0, 13, 1, 1000, 2000);
    const SpatialReference reference = fromOgr(&custom);
    EXPECT_FALSE(reference.isUnknown());
    EXPECT_EQ(reference.factoryCode(), 0);
    EXPECT_EQ(SpatialReference::fromText(reference.text()), reference);
}

TEST(SpatialReference, IsEqualOnlyWithTheSameGrid) {
    const SpatialReference utm = SpatialReference::fromEpsg(25833);
    CoordinateGrid coarse = utm.grid();
    coarse.xyResolution = 0.01;
    EXPECT_NE(utm.withGrid(coarse), utm);
    EXPECT_EQ(utm.withGrid(coarse).withGrid(utm.grid()), SpatialReference::fromEpsg(25833));
    EXPECT_NE(utm, SpatialReference::fromEpsg(25832));
    EXPECT_NE(utm, SpatialReference::unknown(utm.grid()));
    EXPECT_EQ(SpatialReference::unknown(), SpatialReference::unknown());
    EXPECT_NE(SpatialReference::unknown(), SpatialReference());
}

} // namespace
} // namespace qz
