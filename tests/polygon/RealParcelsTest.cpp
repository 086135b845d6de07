// Cutting across the polygon layers of the folder that QZ_REAL_LAYERS names; nothing is saved.

#include "polygon/QZSplitPolygon.h"
#include "tests/polygon/Coverage.h"
#include "tests/support/RealData.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

// Lines across the extent that start and end outside, inside, and weave.
std::vector<Polyline> sketchesAcross(const Envelope& extent, const SpatialReference& reference) {
    const auto at = [&](double x, double y) {
        return Vertex{extent.xMin + x * extent.width(), extent.yMin + y * extent.height()};
    };
    const std::vector<std::vector<Vertex>> courses = {
        {at(-0.1, 0.31), at(1.1, 0.67)},
        {at(0.21, 0.22), at(0.83, 0.79)},
        {at(0.52, 0.12), at(0.47, 0.31), at(0.55, 0.52), at(0.43, 0.71), at(0.51, 0.93)},
    };
    std::vector<Polyline> sketches;
    for (const auto& course : courses) {
        Polyline sketch;
        sketch.spatialReference = reference;
        sketch.paths.emplace_back();
        for (const Vertex& vertex : course) {
            sketch.paths.back().addVertex(vertex);
        }
        sketches.push_back(std::move(sketch));
    }
    return sketches;
}

// Gives how many polygons were cut.
std::int64_t cutAcross(FeatureClass& featureClass, const std::string& name) {
    Streets frame; // messages and an application
    FeatureLayer& layer = frame.host.focusMap().addLayer(name, featureClass);
    const Coverage before = coverageOf(featureClass);
    const std::int64_t count = featureClass.count();
    for (const Polyline& sketch : sketchesAcross(featureClass.extent(), featureClass.spatialReference())) {
        EXPECT_TRUE(QZ_SplitPolygon(layer, sketch, frame.refresh));
    }
    const Coverage after = coverageOf(featureClass);
    EXPECT_NEAR(after.area, before.area, 1e-8 * before.area);
    EXPECT_NEAR(after.unshared, before.unshared, 1e-9 * before.unshared);
    for (const std::string& message : frame.messages) {
        EXPECT_TRUE(message.starts_with("One of the end points")) << message;
    }
    return featureClass.count() - count;
}

TEST(RealParcels, KeepTheirCoverageWhenCut) {
    if (realDataSets().empty()) {
        GTEST_SKIP() << "QZ_REAL_LAYERS names no folder with layers.";
    }
    forEachRealLayer(GeometryKind::polygon, [](FeatureClass& featureClass) {
        const std::string& name = featureClass.schema().name;
        const std::int64_t added = cutAcross(featureClass, name);
        std::printf("%s: %lld pieces more\n", name.c_str(), static_cast<long long>(added));
    });
}

} // namespace
} // namespace qz::test
