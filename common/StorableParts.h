#pragma once

#include <vector>

#include "platform/data/FeatureClass.h"

namespace qz {

// What the class takes as one feature each: the shape, or its parts where the class holds shapes of one part only.
// Where it holds no arcs they become straight segments within the tolerance of its reference.
[[nodiscard]] std::vector<Geometry> storableParts(const Geometry& shape, const FeatureClass& featureClass);

} // namespace qz
