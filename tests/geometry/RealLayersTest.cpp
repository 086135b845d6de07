// The properties of the geometry engine on every layer of the folder that QZ_REAL_LAYERS names.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "platform/store/Stores.h"
#include "tests/geometry/EngineProperties.h"
#include "tests/support/RealData.h"

namespace qz {
namespace {

std::vector<Geometry> shapesOf(FeatureSource& source) {
    std::vector<Geometry> shapes;
    for (const ObjectId id : source.ids()) {
        try {
            const RecordPtr record = source.read(id);
            if (record && record->shape && !record->shape->isEmpty()) {
                shapes.push_back(*record->shape);
            }
        } catch (const PlatformError& error) {
            EXPECT_STRNE(error.what(), "") << id;
        }
    }
    return shapes;
}

// Shapes of any kind may be refused, but not without saying why.
template <typename Check> void orRefused(Check check) {
    try {
        check();
    } catch (const PlatformError& error) {
        EXPECT_STRNE(error.what(), "");
    }
}

void checkAlone(const Geometry& shape) {
    const Geometry simple = simplified(shape);
    expectIdempotent(simple);
    if (const auto* polygon = simple.getIf<Polygon>(); polygon != nullptr && !polygon->isEmpty()) {
        expectPiecesAddUp(*polygon, diagonalOf(shape));
    }
    if (const auto* line = shape.getIf<Polyline>()) {
        for (const Path& path : line->paths) {
            Polyline part = *line;
            part.paths = {path};
            if (length(part) > 0) {
                expectSubCurvesJoin(part);
            }
        }
    }
}

void checkTogether(const Geometry& one, const Geometry& other) {
    if (one.getIf<Polygon>() != nullptr && other.getIf<Polygon>() != nullptr) {
        expectAreasAddUp(simplified(one.as<Polygon>()), simplified(other.as<Polygon>()));
    } else if (one.getIf<Polyline>() != nullptr && other.getIf<Polyline>() != nullptr) {
        const double common = length(intersection(one, other, ResultDimension::lines).as<Polyline>());
        EXPECT_LE(common, length(one.as<Polyline>()) * (1 + 1e-9) + 1e-3);
        static_cast<void>(intersection(one, other, ResultDimension::points));
    }
}

// As many pairs of shapes that meet as there are shapes: the next in the order of the layer, and one that is near.
void checkLayer(FeatureSource& source) {
    const std::vector<Geometry> shapes = shapesOf(source);
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        SCOPED_TRACE(source.schema().name + ", shape " + std::to_string(i));
        orRefused([&] { checkAlone(shapes[i]); });
        const Envelope box = shapes[i].envelope();
        const auto meets = [&](const Geometry& other) { return other.envelope().intersects(box); };
        const auto next = std::find_if(shapes.begin() + static_cast<std::ptrdiff_t>(i) + 1, shapes.end(), meets);
        if (next != shapes.end()) {
            orRefused([&] { checkTogether(shapes[i], *next); });
        }
    }
}

TEST(RealLayers, KeepTheProperties) {
    const std::vector<std::string> paths = test::realDataSets();
    if (paths.empty()) {
        GTEST_SKIP() << "QZ_REAL_LAYERS names no folder with layers.";
    }
    for (const std::string& path : paths) {
        const std::unique_ptr<FeatureStore> store = openStore(path, OpenMode::read);
        for (const std::string& name : store->tableNames()) {
            FeatureSource* table = store->table(name);
            if (table->schema().shape) {
                SCOPED_TRACE(path);
                checkLayer(*table);
            }
        }
    }
}

} // namespace
} // namespace qz
