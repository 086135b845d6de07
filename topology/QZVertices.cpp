#include "topology/QZVertices.h"

#include <algorithm>
#include <iterator>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/QZNaNs.h"
#include "platform/geometry/OwnVertices.h"
#include "topology/FinderSearch.h"

namespace qz {

namespace {

constexpr std::int32_t mostUnmeasured = 10000;
constexpr const char* tooManyUnmeasured = "More than 10,000 features in the visible extent. Zoom In and try again";

enum class Step { search = 1, vertices = 2 };

template <typename Append>
Multipoint collectPoints(FeatureCursor& cursor, const FeatureClass& featureClass, Append append) {
    Multipoint points = noPointsYet(featureClass);
    forEachShaped(cursor, [&](const FeaturePtr& feature) { append(points, *feature->shape()); });
    return points;
}

void appendVertices(Multipoint& points, const Geometry& shape) {
    forEachOwnVertex(shape, [&points](const Vertex& vertex) { points.vertices.push_back(vertex); });
}

void appendUnmeasured(Multipoint& points, const Geometry& shape) {
    std::ranges::copy(QZ_GetNaNs(shape).vertices, std::back_inserter(points.vertices));
}

} // namespace

std::optional<Multipoint> QZ_GetVertices(const ActiveView& view, FeatureLayer& layer, const SpatialReference& reference,
                                         bool& bChecked, std::int32_t lMaxFeatures) {
    bChecked = false;
    return withErrorExit(" QZ_GetVertices", std::optional<Multipoint>(), [&]() -> std::optional<Multipoint> {
        FeatureClass& featureClass = layer.featureClass();
        const CursorPtr cursor = featuresToLookAt(view, featureClass, reference, "Visible", lMaxFeatures);
        bChecked = cursor != nullptr;
        if (!bChecked) {
            return std::nullopt;
        }
        return collectPoints(*cursor, featureClass, appendVertices);
    });
}

std::optional<Multipoint> QZ_AnalyseNaNs(const ActiveView& view, FeatureLayer& layer, const SpatialReference& reference,
                                         bool& bChecked) {
    bChecked = false;
    const std::optional<Multipoint> failure;
    return withSteppedExit(" QZ_AnalyseNaNs w=", Step::search, failure, [&](Step& step) -> std::optional<Multipoint> {
        FeatureClass& featureClass = layer.featureClass();
        const CursorPtr cursor = featuresToLookAt(view, featureClass, reference, "Visible", mostUnmeasured);
        bChecked = cursor != nullptr;
        if (!bChecked) {
            showMessage(tooManyUnmeasured);
            return std::nullopt;
        }
        step = Step::vertices;
        return collectPoints(*cursor, featureClass, appendUnmeasured);
    });
}

} // namespace qz
