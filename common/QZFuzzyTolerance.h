#pragma once

#include "platform/data/FeatureClass.h"

namespace qz {

// The default cluster tolerance of a class: (width + height) / 2,000,000 of its extent, in the units of the map. 0 for
// a class without features. The features are not walked. A failure is reported, and gives 0.
[[nodiscard]] double QZ_CalcFuzzyToleranceFC(FeatureClass& featureClass);

// The same in the units of the class's own coordinates, for tests on its shapes when the map is in another system.
[[nodiscard]] double fuzzyToleranceOf(FeatureClass& featureClass);

// Whether coordinates can stay as they are between the two: one is none or of the unknown kind, or both have the same
// factory code. All custom systems have the code 0 and count as the same.
[[nodiscard]] bool QZ_SameSpatialReference(const SpatialReference& a, const SpatialReference& b);

} // namespace qz
