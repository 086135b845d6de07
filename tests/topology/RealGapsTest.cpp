// Finding and filling the gaps of the coverages of the folder that QZ_REAL_LAYERS names; nothing is saved. Layers
// without a reference are samples stacked on one place, with coordinates from degrees to 1e15.

#include "platform/geometry/Measures.h"
#include "platform/geometry/Simplify.h"
#include "tests/support/RealData.h"
#include "tests/support/StreetsFixture.h"
#include "topology/QZGaps.h"
#include "topology/QZOverGaps.h"

namespace qz::test {
namespace {

struct RealAreas : Streets {
    explicit RealAreas(FeatureClass& source) : Streets(GeometryKind::polygon, source.spatialReference()) {
        for (const Polygon& polygon : polygonsIn(source)) {
            table->add(simplified(polygon), {});
        }
        host.editor().startEditing(*workspace);
    }
    ~RealAreas() {
        host.editor().stopEditing(false);
        EXPECT_EQ(messages, Rows());
    }

    [[nodiscard]] static std::vector<Polygon> polygonsIn(FeatureClass& source) {
        std::vector<Polygon> polygons;
        const CursorPtr cursor = source.search({});
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            if (row->shape() && !row->shape()->isEmpty()) {
                polygons.push_back(row->shape()->as<Polygon>());
            }
        }
        return polygons;
    }
    [[nodiscard]] std::vector<Polygon> polygons() { return polygonsIn(streets()); }
    [[nodiscard]] std::vector<Polygon> gaps() { return gapsBetween(polygons()); }
};

double areaOf(const std::vector<Polygon>& polygons) {
    double sum = 0;
    for (const Polygon& polygon : polygons) {
        sum += area(polygon);
    }
    return sum;
}

std::size_t fillGaps(FeatureClass& source, const char* sHow) {
    RealAreas data(source);
    const std::vector<Polygon> gaps = data.gaps();
    const double before = areaOf(data.polygons());
    const std::size_t count = data.polygons().size();
    GeometryCollection filling;
    filling.spatialReference = data.reference;
    filling.geometries.assign(gaps.begin(), gaps.end());
    EXPECT_TRUE(QZ_FillGaps(*data.layer, filling, sHow));
    double perimeters = 0;
    for (const Polygon& gap : gaps) {
        perimeters += perimeter(gap);
    }
    EXPECT_NEAR(areaOf(data.polygons()), before + areaOf(gaps), perimeters * data.reference.grid().xyTolerance);
    const bool merges = std::string_view(sHow) != "New Polygon";
    EXPECT_EQ(data.polygons().size(), count + (merges ? 0 : gaps.size()));
    for (const Polygon& left : data.gaps()) {
        const double width = 2 * area(left) / perimeter(left);
        EXPECT_LT(width, 2 * data.reference.grid().xyTolerance)
            << "between a new corner and the border that it lies on";
    }
    return gaps.size();
}

TEST(RealGaps, AreGoneWhenFilled) {
    if (realDataSets().empty()) {
        GTEST_SKIP() << "QZ_REAL_LAYERS names no folder with layers.";
    }
    std::size_t filled = 0;
    forEachRealLayer(GeometryKind::polygon, [&](FeatureClass& featureClass) {
        if (featureClass.spatialReference().isUnknown()) {
            return;
        }
        for (const char* sHow : {"New Polygon", "Merge"}) {
            SCOPED_TRACE(sHow);
            filled += fillGaps(featureClass, sHow);
        }
    });
    EXPECT_GT(filled, 100U) << "the folder has no dirty coverage";
}

} // namespace
} // namespace qz::test
