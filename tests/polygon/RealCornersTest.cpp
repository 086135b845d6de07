// Cutting and squaring corners in the polygon layers of the folder that QZ_REAL_LAYERS names; nothing is saved.

#include <algorithm>
#include <cmath>

#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Simplify.h"
#include "polygon/QZChamfer.h"
#include "polygon/QZSquarePolygon.h"
#include "tests/polygon/CornerArea.h"
#include "tests/support/RealData.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

constexpr std::size_t mostFeatures = 2000; // a layer, evenly spread

struct Counts {
    int cut = 0;
    int stayed = 0;
    int squared = 0;
    int notSquared = 0;
};

bool hasRoomToCut(const Path& ring, std::size_t vertex, double size, double tolerance) {
    const std::size_t before = (vertex + ring.segmentCount() - 1) % ring.segmentCount();
    const double turn = std::abs(turnAt(ring, vertex));
    return !ring.arcAt(before) && !ring.arcAt(vertex) && turn > 0.02 && turn < 3 &&
           size * std::sin(turn / 2) > tolerance &&
           std::min(segmentLength(ring, before), segmentLength(ring, vertex)) > 4 * size;
}

bool isOnAnotherRing(const Polygon& polygon, const Path& ring, std::size_t vertex) {
    return std::ranges::any_of(polygon.rings, [&](const Path& other) {
        return &other != &ring && positionOf(ring.xy()[vertex], other)->distanceFrom == 0;
    });
}

// Cuts one corner of each ring, and checks the area against the formula.
void cutOneCornerEach(const Polygon& polygon, Counts& counts) {
    const double tolerance = polygon.spatialReference.grid().xyTolerance;
    for (const Path& ring : polygon.rings) {
        const std::size_t vertex = ring.segmentCount() / 2;
        if (vertex == 0 || isOnAnotherRing(polygon, ring, vertex)) {
            continue;
        }
        const double shorter = std::min(segmentLength(ring, vertex - 1), segmentLength(ring, vertex));
        for (const CornerForm form : {CornerForm::chamfer, CornerForm::fillet}) {
            // The tangent points of a fillet may be far from the corner.
            const double reach = 1 / std::tan((std::numbers::pi - std::abs(turnAt(ring, vertex))) / 2);
            const CornerCut cut{form, form == CornerForm::chamfer ? shorter / 5 : shorter / (5 * std::max(1.0, reach))};
            if (!hasRoomToCut(ring, vertex, cut.size, tolerance)) {
                continue;
            }
            const auto result = QZ_ChamferPg(polygon, Point(ring.vertex(vertex), polygon), cut);
            ASSERT_TRUE(result);
            EXPECT_TRUE(isSimple(*result));
            if (identical(*result, polygon)) {
                ++counts.stayed;
                continue;
            }
            ++counts.cut;
            const double expected = area(polygon) + areaAdded(turnAt(ring, vertex), cut);
            const Envelope extent = polygon.envelope();
            const double rounding = 1e-15 * (std::abs(extent.xMax) + std::abs(extent.yMax)) * perimeter(polygon);
            EXPECT_NEAR(area(*result), expected, 50 * rounding + 1e-9 * cut.size * cut.size);
        }
    }
}

void cutAndSquare(FeatureClass& featureClass, ObjectId id, Streets& frame, Counts& counts) {
    FeatureFilter filter;
    filter.ids = std::vector{id};
    const Polygon polygon = featureClass.feature(id)->shape()->as<Polygon>();
    const CursorPtr squaring = featureClass.update(filter);
    const bool done = QZ_SquarePolygonAnglesRun(*squaring, nullptr, frame.refresh, id % 2 == 0 ? 15 : 0);
    done ? ++counts.squared : ++counts.notSquared;
    if (done && isSimple(polygon)) {
        EXPECT_TRUE(isSimple(featureClass.feature(id)->shape()->as<Polygon>())) << id;
    }
    const CursorPtr cutting = featureClass.update(filter);
    const FeaturePtr feature = cutting->next();
    feature->setShape(polygon);
    const double size = perimeter(polygon) / 100;
    const CornerCut cut{id % 3 == 0 ? CornerForm::chamfer : CornerForm::fillet, size};
    EXPECT_TRUE(QZ_ChamferAllRun(*cutting, featureClass, feature.get(), frame.refresh, cut))
        << id << (frame.messages.empty() ? "" : ": " + frame.messages.back());
    EXPECT_TRUE(isSimple(feature->shape()->as<Polygon>()) || !isSimple(polygon)) << id;
}

Counts workOn(FeatureClass& featureClass) {
    Streets frame; // messages and an application
    Counts counts;
    const std::vector<ObjectId> ids = featureClass.ids({});
    const std::size_t step = std::max<std::size_t>(1, ids.size() / mostFeatures);
    for (std::size_t i = 0; i < ids.size(); i += step) {
        const FeaturePtr feature = featureClass.feature(ids[i]);
        if (feature->shape() && !feature->shape()->isEmpty()) {
            SCOPED_TRACE(ids[i]);
            const Polygon polygon = feature->shape()->as<Polygon>();
            if (isSimple(polygon)) {
                cutOneCornerEach(polygon, counts);
            }
            if (perimeter(polygon) > 0) {
                cutAndSquare(featureClass, ids[i], frame, counts);
            }
        }
    }
    for (const std::string& message : frame.messages) {
        EXPECT_EQ(message.find(" w ="), std::string::npos) << message;
    }
    return counts;
}

TEST(RealCorners, AreCutAndSquared) {
    if (realDataSets().empty()) {
        GTEST_SKIP() << "QZ_REAL_LAYERS names no folder with layers.";
    }
    forEachRealLayer(GeometryKind::polygon, [](FeatureClass& featureClass) {
        const Counts counts = workOn(featureClass);
        std::printf("%s: %d corners cut, %d stayed, %d squared, %d not\n", featureClass.schema().name.c_str(),
                    counts.cut, counts.stayed, counts.squared, counts.notSquared);
    });
}

} // namespace
} // namespace qz::test
