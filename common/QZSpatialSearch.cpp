#include "common/QZSpatialSearch.h"

#include <array>
#include <utility>

#include "common/ErrorExit.h"
#include "platform/Error.h"

namespace qz {

namespace {

SpatialRelation relationNamed(std::string_view keyword) {
    static constexpr std::array<std::pair<std::string_view, SpatialRelation>, 6> keywords{{
        {"Intersects", SpatialRelation::intersects},
        {"Touches", SpatialRelation::touches},
        {"Overlaps", SpatialRelation::overlaps},
        {"Crosses", SpatialRelation::crosses},
        {"Within", SpatialRelation::within},
        {"Contains", SpatialRelation::contains},
    }};
    for (const auto& [word, relation] : keywords) {
        if (word == keyword) {
            return relation;
        }
    }
    return SpatialRelation::notSet;
}

FeatureFilter spatialFilter(const Geometry& geometry, const SpatialReference& output, std::string_view relation) {
    FeatureFilter filter;
    filter.shape = geometry;
    filter.relation = relationNamed(relation);
    filter.outputReference = output;
    return filter;
}

} // namespace

CursorPtr QZ_FindFeaturesSpatialy(const Geometry& geometry, FeatureClass& featureClass, const SpatialReference& output,
                                  std::string_view relation, std::string_view mode) {
    return withErrorExit(" QZ_FindFeaturesSpatialy", CursorPtr(), [&] {
        const FeatureFilter filter = spatialFilter(geometry, output, relation);
        return mode == "Update" ? featureClass.update(filter) : featureClass.search(filter);
    });
}

CursorPtr searchMeeting(const Geometry& geometry, FeatureClass& featureClass, const std::string& failure) {
    CursorPtr cursor =
        QZ_FindFeaturesSpatialy(geometry, featureClass, featureClass.spatialReference(), "Intersects", "Search");
    if (!cursor) {
        throw PlatformError(failure);
    }
    return cursor;
}

std::int64_t QZ_CountFeaturesSpatialy(const Geometry& geometry, FeatureClass& featureClass,
                                      const SpatialReference& output, std::string_view relation) {
    return withErrorExit(" QZ_CountFeaturesSpatialy", std::int64_t{0},
                         [&] { return featureClass.count(spatialFilter(geometry, output, relation)); });
}

SelectedFeatures QZ_GetSelectedFromLayer(FeatureLayer& layer) {
    enum class Step { featureClass = 1, selection = 2, cursor = 3 };
    return withSteppedExit(
        " w = ", Step::featureClass, SelectedFeatures(),
        [&](Step& step) {
            SelectedFeatures selected;
            selected.spatialReference = layer.featureClass().spatialReference();
            step = Step::selection;
            selected.count = layer.selection().count();
            step = Step::cursor;
            if (selected.count > 0) {
                selected.cursor = layer.selection().search();
            }
            return selected;
        },
        " QZ_GetSelectedFromLayer");
}

std::string QZ_GetSourceType(const FeatureClass& featureClass) {
    return withErrorExit("QZ_GetSourceType", std::string("Unknown"), [&] {
        const Schema& schema = featureClass.schema();
        const bool registered = !schema.featureDataset.empty() || schema.classId != -1;
        return std::string(registered ? "GDB" : "Shapefile");
    });
}

} // namespace qz
