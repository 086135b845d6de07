#pragma once

#include <cstdint>
#include <optional>

#include "platform/app/Application.h"

namespace qz {

// Vertices of the features that meet what the view shows, with z and m, in the order of features, parts and vertices;
// the vertex that closes a ring counts. `reference`: that in which the view's bounds are compared with the features.
// `bChecked` is false when there are too many features in view, with no result then. A failure is reported, and gives
// no result either.

// All of them, of `lMaxFeatures` features at most.
[[nodiscard]] std::optional<Multipoint> QZ_GetVertices(const ActiveView& view, FeatureLayer& layer,
                                                       const SpatialReference& reference, bool& bChecked,
                                                       std::int32_t lMaxFeatures);

// Those without a measure, of 10,000 features at most; a notice tells when there are more.
[[nodiscard]] std::optional<Multipoint> QZ_AnalyseNaNs(const ActiveView& view, FeatureLayer& layer,
                                                       const SpatialReference& reference, bool& bChecked);

} // namespace qz
