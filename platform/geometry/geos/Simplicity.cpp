#include <algorithm>
#include <array>

#include "platform/geometry/Noding.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/PolygonAssembly.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/Strokes.h"
#include "platform/geometry/geos/Overlay.h"

namespace qz {

namespace {

// Strokes of arcs depart from them by no more than this part of the tolerance.
constexpr double strokesPerTolerance = 10;

bool repeatsNoVertex(const Path& ring) {
    for (std::size_t i = 1; i < ring.vertexCount(); ++i) {
        if (ring.xy()[i - 1] == ring.xy()[i] && ring.arcAt(i - 1) == nullptr) {
            return false;
        }
    }
    return true;
}

bool isProperRing(const Path& ring, double resolution) {
    const bool hasEnough = ring.hasArcs() ? ring.vertexCount() >= 2 : ring.vertexCount() >= 4;
    return hasEnough && ring.isClosed() && repeatsNoVertex(ring) && !isSliver(ring, resolution);
}

} // namespace

bool isSimple(const Polygon& polygon) {
    const CoordinateGrid& grid = polygon.spatialReference.grid();
    const auto isProper = [&grid](const Path& ring) { return isProperRing(ring, grid.xyResolution); };
    if (!std::ranges::all_of(polygon.rings, isProper)) {
        return false;
    }
    if (polygon.rings.empty()) {
        return true;
    }
    // Quicker than the general test below.
    if (polygon.rings.size() == 1 && meetNowhere(std::array<const Path*, 1>{&polygon.rings.front()})) {
        return isExterior(polygon.rings.front());
    }
    const double sagitta = grid.xyTolerance / strokesPerTolerance;
    return isExterior(polygon.rings.front()) && isValid(*toGeos(straightened(polygon, sagitta)));
}

} // namespace qz
