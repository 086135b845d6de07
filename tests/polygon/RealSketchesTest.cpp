// Sketching into the polygon layers of the folder that QZ_REAL_LAYERS names; nothing is saved.

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

#include "platform/geometry/Noding.h"
#include "polygon/QZAddPolygon.h"
#include "tests/polygon/Coverage.h"
#include "tests/polygon/RandomSketches.h"
#include "tests/support/RealData.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

// Sketches that pile up in a few polygons show nothing new.
int sketchCount(FeatureClass& featureClass) {
    return static_cast<int>(std::min<std::int64_t>(10 + featureClass.count(), 60));
}

// The polygons in a window.
class Surface {
public:
    Surface(FeatureClass& featureClass, const Polygon& window) {
        FeatureFilter inWindow;
        inWindow.shape = window;
        inWindow.relation = SpatialRelation::intersects;
        const CursorPtr cursor = featureClass.search(inWindow);
        for (FeaturePtr feature = cursor->next(); feature; feature = cursor->next()) {
            shapes_.push_back(simplified(*feature->shape()));
        }
    }

    [[nodiscard]] Envelope envelope() const {
        Envelope envelope;
        for (const Geometry& shape : shapes_) {
            envelope.expandToInclude(shape.envelope());
        }
        return envelope;
    }
    [[nodiscard]] Polygon covered(const Polygon& sketch) const {
        std::vector<Geometry> all = shapes_;
        all.emplace_back(sketch);
        return unionOf(all).as<Polygon>();
    }
    [[nodiscard]] Polygon covered() const { return covered(Polygon()); }
    // What is in several polygons.
    [[nodiscard]] double overlap() const {
        double sum = 0;
        for (const Geometry& shape : shapes_) {
            sum += area(shape.as<Polygon>());
        }
        return sum - area(covered());
    }
    // Places where a polygon has no vertex though it meets a vertex or a side of another one.
    [[nodiscard]] std::int64_t missingVertices(double resolution) const {
        std::vector<const Path*> rings;
        std::vector<std::size_t> owners;
        for (std::size_t i = 0; i < shapes_.size(); ++i) {
            for (const Path* ring : pathsOf(shapes_[i])) {
                rings.push_back(ring);
                owners.push_back(i);
            }
        }
        const auto nodes = nodesOf(rings, {resolution, resolution});
        std::int64_t missing = 0;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            missing += std::ranges::count_if(
                nodes[i], [&](const Node& node) { return node.ratio > 0 && owners[node.otherPath] != owners[i]; });
        }
        return missing;
    }

private:
    std::vector<Geometry> shapes_;
};

void sketchInto(FeatureClass& featureClass, const std::string& name) {
    Streets frame; // messages and an application
    FeatureLayer& layer = frame.host.focusMap().addLayer(name, featureClass);
    RandomSketches sketches(featureClass, 1);
    const CoordinateGrid& grid = featureClass.spatialReference().grid();
    const int count = sketchCount(featureClass);
    for (int i = 0; i < count; ++i) {
        const auto priority = static_cast<std::int16_t>(i % 3);
        const Polygon sketch = sketches.next();
        SCOPED_TRACE(fmt::format("sketch {}, priority {}: {}", i, priority, toWkt(sketch)));
        Envelope around = Surface(featureClass, sketch).envelope();
        around.expandToInclude(sketch.envelope());
        const Polygon window = rectangle(around, sketch.spatialReference);
        const Surface before(featureClass, window);
        EXPECT_TRUE(QZ_AddPolygon(layer, sketch, priority, frame.refresh));
        const Surface after(featureClass, window);
        const double givenWay = grid.xyTolerance * perimeter(sketch);
        EXPECT_NEAR(area(after.covered()), area(before.covered(sketch)), givenWay);
        EXPECT_LE(after.overlap(), before.overlap() + grid.xyResolution * perimeter(sketch));
        if (before.missingVertices(grid.xyResolution) == 0) { // polygons that overlap each other stay as they are
            EXPECT_EQ(after.missingVertices(grid.xyResolution), 0);
        }
    }
    EXPECT_EQ(frame.messages, Rows());
}

// Coordinates beyond what the grid can number lie at random.
bool fitsOnItsGrid(FeatureClass& featureClass) {
    const Envelope extent = featureClass.extent();
    return extent.width() + extent.height() < std::ldexp(featureClass.spatialReference().grid().xyResolution, 50);
}

TEST(RealSketches, AddNoOverlapAndLoseNoArea) {
    if (realDataSets().empty()) {
        GTEST_SKIP() << "QZ_REAL_LAYERS names no folder with layers.";
    }
    forEachRealLayer(GeometryKind::polygon, [](FeatureClass& featureClass) {
        if (featureClass.count() > 0 && fitsOnItsGrid(featureClass)) {
            sketchInto(featureClass, featureClass.schema().name);
        }
    });
}

} // namespace
} // namespace qz::test
