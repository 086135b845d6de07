#include <sstream>

#include <gtest/gtest.h>

#include "common/ApplicationReference.h"
#include "common/QZFuzzyTolerance.h"
#include "common/QZSpatialSearch.h"
#include "host/HeadlessHost.h"
#include "platform/app/Services.h"
#include "tests/support/MemoryData.h"

namespace qz {
namespace {

using test::MemoryData;

Schema areaSchema(const SpatialReference& reference = {}) {
    Schema schema = test::roadSchema();
    schema.shape->kind = GeometryKind::polygon;
    schema.shape->hasZ = schema.shape->hasM = false;
    schema.shape->spatialReference = reference;
    return schema;
}

struct SpatialSearch : testing::Test {
    SpatialSearch() {
        services().showMessage = [this](const std::string& text) { messages.push_back(text); };
        setApplication(host);
    }

    ScopedServices restored;
    std::vector<std::string> messages;
    std::ostringstream terminal;
    HeadlessHost host{terminal, false};
};

std::vector<ObjectId> idsOf(const CursorPtr& cursor) {
    std::vector<ObjectId> ids;
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        ids.push_back(row->objectId());
    }
    return ids;
}

TEST_F(SpatialSearch, KeywordsAreComparedToTheLetter) {
    MemoryData data(areaSchema());
    data.add("POLYGON ((0 0,0 4,4 4,4 0,0 0))");       // 1 the same square
    data.add("POLYGON ((1 1,1 2,2 2,2 1,1 1))");       // 2 inside it
    data.add("POLYGON ((4 0,4 4,8 4,8 0,4 0))");       // 3 beside it
    data.add("POLYGON ((2 2,2 6,6 6,6 2,2 2))");       // 4 over its corner
    data.add("POLYGON ((-1 -1,-1 9,9 9,9 -1,-1 -1))"); // 5 around it
    data.add("POLYGON ((20 20,20 21,21 21,21 20,20 20))");
    const Geometry square = geometryFromWkt("POLYGON ((0 0,0 4,4 4,4 0,0 0))");
    const std::pair<const char*, std::vector<ObjectId>> rows[] = {
        {"Intersects", {1, 2, 3, 4, 5}},
        {"Touches", {3}},
        {"Overlaps", {4}},
        {"Within", {1, 2}},
        {"Contains", {1, 5}},
        {"Crosses", {}},
        {"within", {1, 2, 3, 4, 5}},
        {"", {1, 2, 3, 4, 5}},
    };
    for (const auto& [keyword, ids] : rows) {
        EXPECT_EQ(idsOf(QZ_FindFeaturesSpatialy(square, data.featureClass(), {}, keyword, "")), ids) << keyword;
        EXPECT_EQ(QZ_CountFeaturesSpatialy(square, data.featureClass(), {}, keyword), std::ssize(ids)) << keyword;
    }
    EXPECT_EQ(QZ_FindFeaturesSpatialy(square, data.featureClass(), {}, "Touches", "Update")->kind(),
              CursorKind::update);
    EXPECT_EQ(QZ_FindFeaturesSpatialy(square, data.featureClass(), {}, "Touches", "update")->kind(),
              CursorKind::search);
}

TEST_F(SpatialSearch, ShapesComeInTheReferenceAskedFor) {
    MemoryData data(areaSchema(SpatialReference::fromEpsg(25832)));
    data.add("POLYGON ((500000 5000000,500000 5000100,500100 5000100,500000 5000000))");
    const SpatialReference degrees = SpatialReference::fromEpsg(4326);
    Geometry window = geometryFromWkt("POLYGON ((8.9 45,8.9 45.3,9.1 45.3,9.1 45,8.9 45))");
    window.traits().spatialReference = degrees;
    const FeaturePtr found = QZ_FindFeaturesSpatialy(window, data.featureClass(), degrees, "Within", "")->next();
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->shape()->envelope().xMin, 9, 1e-9);
}

TEST_F(SpatialSearch, SelectedFeaturesOfALayer) {
    MemoryData data(areaSchema(SpatialReference::fromEpsg(25832)));
    data.add("POLYGON ((0 0,0 4,4 4,4 0,0 0))");
    FeatureLayer& layer = host.focusMap().addLayer("areas", data.featureClass());
    SelectedFeatures selected = QZ_GetSelectedFromLayer(layer);
    EXPECT_FALSE(selected.cursor);
    EXPECT_EQ(selected.count, 0);
    EXPECT_EQ(selected.spatialReference.factoryCode(), 25832);
    layer.selection().select({1});
    selected = QZ_GetSelectedFromLayer(layer);
    EXPECT_EQ(selected.count, 1);
    EXPECT_EQ(idsOf(selected.cursor), std::vector<ObjectId>{1});
}

TEST_F(SpatialSearch, FuzzyToleranceIsAMillionthOfTheMeanSide) {
    MemoryData data(areaSchema());
    EXPECT_EQ(QZ_CalcFuzzyToleranceFC(data.featureClass()), 0) << "no features";
    data.add("");
    EXPECT_EQ(QZ_CalcFuzzyToleranceFC(data.featureClass()), 0) << "no shape";
    data.add("POLYGON ((0 0,0 3000,1000 3000,1000 0,0 0))");
    EXPECT_EQ(QZ_CalcFuzzyToleranceFC(data.featureClass()), 0.002);
}

TEST_F(SpatialSearch, FuzzyToleranceIsInTheUnitsOfTheMap) {
    MemoryData data(areaSchema(SpatialReference::fromEpsg(4326)));
    data.add("POLYGON ((9 45,9 46,10 46,10 45,9 45))");
    host.focusMap().setSpatialReference(SpatialReference::fromEpsg(25832));
    // A degree of latitude is 111 km, one of longitude at 45 degrees 79 km.
    EXPECT_NEAR(QZ_CalcFuzzyToleranceFC(data.featureClass()), (111e3 + 79e3) / 2e6, 0.001);
    EXPECT_TRUE(messages.empty());
}

TEST_F(SpatialSearch, ReferencesCountAsTheSameUnlessBothAreKnownAndDiffer) {
    const SpatialReference utm = SpatialReference::fromEpsg(25832);
    const SpatialReference degrees = SpatialReference::fromEpsg(4326);
    EXPECT_FALSE(QZ_SameSpatialReference(utm, degrees));
    EXPECT_TRUE(QZ_SameSpatialReference(utm, SpatialReference::fromEpsg(25832)));
    EXPECT_TRUE(QZ_SameSpatialReference(utm, {}));
    EXPECT_TRUE(QZ_SameSpatialReference(SpatialReference::unknown(), degrees));
}

TEST_F(SpatialSearch, SourceTypeAsksForTheRegistration) {
    Schema schema = areaSchema();
    MemoryData registered(schema);
    schema.classId = -1;
    MemoryData file(schema);
    schema.featureDataset = "survey";
    MemoryData inDataset(schema);
    EXPECT_EQ(QZ_GetSourceType(registered.featureClass()), "GDB");
    EXPECT_EQ(QZ_GetSourceType(file.featureClass()), "Shapefile");
    EXPECT_EQ(QZ_GetSourceType(inDataset.featureClass()), "GDB");
}

} // namespace
} // namespace qz
