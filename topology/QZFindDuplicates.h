#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/app/Application.h"

namespace qz {

// A point repeats an earlier one whose key (see duplicateKey) is equal. A line repeats an earlier one when the points
// at 0.1 % and at 99.9 % of its length do, in either direction: two lines between the same ends are not the same.
// Features are looked at in the order of their object ids; the first of a group is no duplicate. Those without a shape
// are none.
//
// Finders: `dFuzzy` gives the decimals of keys (QZ_DecimalsFromTolerance), in the units of the coordinates. `sWhat`,
// `lMax`: see featuresToLookAt; `bChecked` is false when the features in view are too many, with no result then. A
// failure is reported, and gives no result either.

[[nodiscard]] std::optional<GeometryCollection> QZ_FindDupPolylines(const ActiveView& view, FeatureClass& featureClass,
                                                                    const SpatialReference& reference,
                                                                    std::string_view sWhat, double dFuzzy,
                                                                    std::int32_t lMax, bool& bChecked);
[[nodiscard]] std::optional<Multipoint> QZ_FindDupPoints(const ActiveView& view, FeatureClass& featureClass,
                                                         const SpatialReference& reference, std::string_view sWhat,
                                                         std::int32_t lMax, double dFuzzy, bool& bChecked);

// Delete the duplicates among the features of the cursor, and add them to the refresh area. `expected` of them move the
// progress. False after a failure, which is reported.

// With the class's default tolerance.
[[nodiscard]] bool QZ_RemoveDupPolylines(Application& application, FeatureClass& featureClass, FeatureCursor& cursor,
                                         std::int32_t expected, RefreshArea& refresh);
[[nodiscard]] bool QZ_RemoveDupPoints(Application& application, FeatureCursor& cursor, std::int32_t expected,
                                      RefreshArea& refresh, double dFuzzy);

} // namespace qz
