#pragma once

#include <vector>

#include "platform/geometry/CurveSources.h"
#include "platform/geometry/Geometry.h"

namespace qz {

// Less wide than the resolution: twice the area by the perimeter.
[[nodiscard]] bool isSliver(const Path& ring, double resolution);

// A polygon of parts, each an exterior ring before its holes, in x and y and in any direction. Rings get their arcs, z
// and m from the sources and the direction of their role. Slivers are left out. Where arcs that run
// within the tolerance of other segments would cross them, the strokes stay in their place, so that the result is
// simple. Rings start at their smallest vertex by x, then y, and come in that order too, so that the result depends on
// the area only.
[[nodiscard]] Polygon assemblePolygon(std::vector<std::vector<Path>> parts, const CurveSources& sources,
                                      const GeometryTraits& traits);

} // namespace qz
