#pragma once

#include "platform/geometry/geos/GeosGeometry.h"

namespace qz {

enum class OverlayKind { intersection, unite, difference };

// Overlays on floating coordinates. A result that is not valid or whose area can't be is computed again on the grid of
// that resolution (0: of the floating numbers); when that one is no better, a PlatformError names the operation and the
// fault.
[[nodiscard]] GeosGeometryPtr overlay(OverlayKind kind, const GEOSGeometry& a, const GEOSGeometry& b,
                                      double resolution);
[[nodiscard]] GeosGeometryPtr unionOfAll(const GEOSGeometry& collection, double resolution);

// Whether areas obey the rules: rings that don't cross, holes inside, no spikes. True for points and lines.
[[nodiscard]] bool isValid(const GEOSGeometry& geometry);

} // namespace qz
