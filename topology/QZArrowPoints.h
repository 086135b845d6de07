#pragma once

#include <cstdint>
#include <string_view>

#include "platform/app/Application.h"

namespace qz {

// Paints an arrow on every segment of the lines that points along it: at `dAlong` points of 1/72 inch on the screen
// after the segment's start, and no farther than its end. Segments without length get none. `sWhat`, `lMax`: see
// featuresToLookAt; with too many features in view `bChecked` is false and nothing is painted. False then, and after a
// failure, which is reported.
[[nodiscard]] bool QZ_ArrowPoints(const ActiveView& view, FeatureClass& featureClass, const SpatialReference& reference,
                                  std::string_view sWhat, bool& bChecked, Display& display,
                                  const ArrowMarkerSymbol& symbol, std::int32_t lMax, double dAlong);

} // namespace qz
