#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/app/Application.h"

namespace qz {

// Searches through the spatial index. `relation` is "Intersects", "Touches", "Overlaps", "Crosses", "Within" (the
// feature within the search geometry) or "Contains" (the feature contains it), letter case included; any other word
// leaves the relation at the platform's default, intersects. Shapes come in `output`, as stored when it is none.

// An update cursor for the mode "Update", else a search cursor. A failure is reported, and gives nothing.
[[nodiscard]] CursorPtr QZ_FindFeaturesSpatialy(const Geometry& geometry, FeatureClass& featureClass,
                                                const SpatialReference& output, std::string_view relation,
                                                std::string_view mode);

// A search cursor over the features that meet the geometry, as they are stored. Throws PlatformError with the text when
// the search failed, which was reported.
[[nodiscard]] CursorPtr searchMeeting(const Geometry& geometry, FeatureClass& featureClass, const std::string& failure);

// How many features such a search gives. A failure is reported, and gives 0.
[[nodiscard]] std::int64_t QZ_CountFeaturesSpatialy(const Geometry& geometry, FeatureClass& featureClass,
                                                    const SpatialReference& output, std::string_view relation);

struct SelectedFeatures {
    CursorPtr cursor; // nothing when none is selected
    std::int64_t count = 0;
    SpatialReference spatialReference; // of the layer's class
};

// The features that the user selected in the layer. A failure is reported, and gives no cursor.
[[nodiscard]] SelectedFeatures QZ_GetSelectedFromLayer(FeatureLayer& layer);

// "GDB" when the class belongs to a feature dataset or is registered with a geodatabase, else "Shapefile". A failure is
// reported, and gives "Unknown".
[[nodiscard]] std::string QZ_GetSourceType(const FeatureClass& featureClass);

} // namespace qz
