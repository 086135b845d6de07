#pragma once

#include <cstdint>
#include <string_view>

#include "platform/app/Application.h"

namespace qz {

// The features that meet what a view shows. `reference`: that in which its bounds are compared with them, none for the
// view's own. Shapes come as they are stored.
[[nodiscard]] FeatureFilter inView(const ActiveView& view, const SpatialReference& reference);

// The features that a finder looks at: with `what` "Visible" those in view, or nothing when there are more than `most`;
// with any other word all of the class.
[[nodiscard]] CursorPtr featuresToLookAt(const ActiveView& view, FeatureClass& featureClass,
                                         const SpatialReference& reference, std::string_view what, std::int32_t most);

// To collect points of the class's shapes: in its reference, with z and m where it has them.
[[nodiscard]] Multipoint noPointsYet(const FeatureClass& featureClass);

} // namespace qz
