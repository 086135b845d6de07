// Cleaning the polygon and line layers of the folder that QZ_REAL_LAYERS names; nothing is saved.

#include "tests/polygon/Coverage.h"
#include "tests/support/RealData.h"
#include "tests/support/StreetsFixture.h"
#include "topology/QZTopoClean.h"

namespace qz::test {
namespace {

// Wide enough to matter in each reference, far below the size of the features.
double toleranceOf(FeatureClass& featureClass) {
    return 50 * featureClass.spatialReference().grid().xyTolerance;
}

double perimeters(FeatureClass& featureClass) {
    double sum = 0;
    const CursorPtr cursor = featureClass.search({});
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        const Polygon* polygon = row->shape() ? row->shape()->getIf<Polygon>() : nullptr;
        sum += polygon ? perimeter(*polygon) : 0;
    }
    return sum;
}

void cleanTwice(OverlayWorkspace& workspace, FeatureClass& featureClass) {
    Streets frame; // messages and an application
    frame.host.editor().startEditing(workspace);
    const bool hasAreas = featureClass.schema().shape->kind == GeometryKind::polygon;
    const auto clean = [&] {
        const double tolerance = toleranceOf(featureClass);
        return hasAreas ? QZ_TopoCleanPg(featureClass, tolerance, frame.host)
                        : QZ_TopoCleanPl(featureClass, tolerance, frame.host);
    };
    const Coverage before = hasAreas ? coverageOf(featureClass) : Coverage();
    const double allowed = perimeters(featureClass) * toleranceOf(featureClass);
    EXPECT_TRUE(clean());
    const Coverage after = hasAreas ? coverageOf(featureClass) : Coverage();
    EXPECT_NEAR(after.area, before.area, allowed);
    EXPECT_LE(after.unshared, before.unshared + allowed);
    const std::size_t operations = frame.host.editor().operationNames().size();
    EXPECT_TRUE(clean());
    EXPECT_EQ(frame.host.editor().operationNames().size(), operations) << "cleaning again changed something";
    for (const std::string& message : frame.messages) {
        EXPECT_TRUE(message.starts_with("Deleted, not being larger")) << message;
    }
    frame.host.editor().stopEditing(false);
}

TEST(RealCoverage, IsCleanAfterCleaning) {
    if (realDataSets().empty()) {
        GTEST_SKIP() << "QZ_REAL_LAYERS names no folder with layers.";
    }
    for (const GeometryKind kind : {GeometryKind::polygon, GeometryKind::polyline}) {
        forEachRealLayer(kind, [](FeatureClass& featureClass) {
            cleanTwice(static_cast<OverlayWorkspace&>(featureClass.workspace()), featureClass);
        });
    }
}

} // namespace
} // namespace qz::test
