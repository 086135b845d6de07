#include "topology/QZFindDuplicates.h"

#include <array>
#include <tuple>
#include <vector>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/NodeKey.h"
#include "common/QZFuzzyTolerance.h"
#include "common/QZPrecision.h"
#include "platform/geometry/Curve.h"
#include "platform/geometry/XYHash.h"
#include "topology/FinderSearch.h"

namespace qz {

namespace {

class SeenPoints {
public:
    explicit SeenPoints(double tolerance) : decimals_(QZ_DecimalsFromTolerance(tolerance)) {}

    // Whether the point repeats one given before.
    [[nodiscard]] bool repeats(const Geometry& point) {
        const std::size_t before = keys_.size();
        return keys_.add(duplicateKey(point.as<Point>().vertex.xy(), decimals_)) < before;
    }

private:
    std::int16_t decimals_;
    PlaceNumbers keys_;
};

class SeenLines {
public:
    explicit SeenLines(double tolerance) : decimals_(QZ_DecimalsFromTolerance(tolerance)) {}

    // Whether the line repeats one given before.
    [[nodiscard]] bool repeats(const Geometry& line) {
        const Curve curve(line.as<Polyline>());
        const double length = curve.lengthFor("comparison of lines");
        const std::array distances{0.001 * length, 0.999 * length};
        const std::vector<CurvePlace> places = placesAt(curve, length, distances);
        const XY first = keyAt(curve, places.front()), last = keyAt(curve, places.back());
        const bool isForward = std::tie(first.x, first.y) <= std::tie(last.x, last.y);
        const std::size_t before = keys_.size();
        return keys_.add(isForward ? DirectedEdge{first, last} : DirectedEdge{last, first}) < before;
    }

private:
    [[nodiscard]] XY keyAt(const Curve& curve, const CurvePlace& place) const {
        return duplicateKey(vertexAt(curve, place).xy(), decimals_);
    }

    std::int16_t decimals_;
    Numbering<DirectedEdge, DirectedEdgeHash> keys_; // in the direction in which x grows, or else y
};

// Calls `found(shape)` for every duplicate. False when there are more features in view than allowed.
template <typename Found>
bool findDuplicates(const ActiveView& view, FeatureClass& featureClass, const SpatialReference& reference,
                    std::string_view sWhat, std::int32_t lMax, auto seen, Found found) {
    const CursorPtr cursor = featuresToLookAt(view, featureClass, reference, sWhat, lMax);
    if (!cursor) {
        return false;
    }
    forEachShaped(*cursor, [&](const FeaturePtr& feature) {
        if (seen.repeats(*feature->shape())) {
            found(*feature->shape());
        }
    });
    return true;
}

bool removeDuplicates(Application& application, FeatureCursor& cursor, std::int32_t expected, const char* text,
                      RefreshArea& refresh, auto seen) {
    walkFeatures(application, cursor, expected, text, [&](const FeaturePtr& feature) {
        if (hasShape(*feature) && seen.repeats(*feature->shape())) {
            refresh.add(*feature->shape());
            feature->remove();
        }
    });
    return true;
}

} // namespace

std::optional<GeometryCollection> QZ_FindDupPolylines(const ActiveView& view, FeatureClass& featureClass,
                                                      const SpatialReference& reference, std::string_view sWhat,
                                                      double dFuzzy, std::int32_t lMax, bool& bChecked) {
    bChecked = false;
    return withErrorExit(" QZ_FindDupPolylines", std::optional<GeometryCollection>(), [&] {
        GeometryCollection duplicates{.geometries = {}, .spatialReference = featureClass.spatialReference()};
        bChecked = findDuplicates(view, featureClass, reference, sWhat, lMax, SeenLines(dFuzzy),
                                  [&](const Geometry& line) { duplicates.geometries.push_back(line); });
        return bChecked ? std::optional(std::move(duplicates)) : std::nullopt;
    });
}

std::optional<Multipoint> QZ_FindDupPoints(const ActiveView& view, FeatureClass& featureClass,
                                           const SpatialReference& reference, std::string_view sWhat, std::int32_t lMax,
                                           double dFuzzy, bool& bChecked) {
    bChecked = false;
    return withErrorExit(" QZ_FindDupPoints", std::optional<Multipoint>(), [&] {
        Multipoint duplicates = noPointsYet(featureClass);
        bChecked = findDuplicates(view, featureClass, reference, sWhat, lMax, SeenPoints(dFuzzy),
                                  [&](const Geometry& p) { duplicates.vertices.push_back(p.as<Point>().vertex); });
        return bChecked ? std::optional(std::move(duplicates)) : std::nullopt;
    });
}

bool QZ_RemoveDupPolylines(Application& application, FeatureClass& featureClass, FeatureCursor& cursor,
                           std::int32_t expected, RefreshArea& refresh) {
    return withErrorExit(" QZ_RemoveDupPolylines ", false, [&] {
        return removeDuplicates(application, cursor, expected, "Collecting polylines: ", refresh,
                                SeenLines(fuzzyToleranceOf(featureClass)));
    });
}

bool QZ_RemoveDupPoints(Application& application, FeatureCursor& cursor, std::int32_t expected, RefreshArea& refresh,
                        double dFuzzy) {
    return withErrorExit(" QZ_RemoveDupPoints ", false, [&] {
        return removeDuplicates(application, cursor, expected, "Collecting points: ", refresh, SeenPoints(dFuzzy));
    });
}

} // namespace qz
