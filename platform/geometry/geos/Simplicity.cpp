#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "platform/geometry/Noding.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/PolygonAssembly.h"
#include "platform/geometry/RingNesting.h"
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

// Of rings that meet nowhere: every hole directly in the exterior ring it follows, every exterior ring outside of all
// areas.
bool areInTheirPlaces(const std::vector<Path>& rings, const std::vector<RingPlace>& places) {
    std::vector<bool> areExterior;
    std::ranges::transform(rings, std::back_inserter(areExterior), isExterior);
    std::size_t exterior = 0;
    for (std::size_t i = 0; i < rings.size(); ++i) {
        exterior = areExterior[i] ? i : exterior;
        const std::size_t around = places[i].surrounding;
        const bool isInPlace = areExterior[i] ? around == noRing || !areExterior[around] : around == exterior;
        if (!isInPlace) {
            return false;
        }
    }
    return true;
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
    if (!isExterior(polygon.rings.front())) {
        return false;
    }
    // Quicker than the general test below.
    if (polygon.rings.size() == 1 && meetNowhere(std::array<const Path*, 1>{&polygon.rings.front()})) {
        return true;
    }
    const Geometry straight = straightened(polygon, grid.xyTolerance / strokesPerTolerance);
    if (const auto places = ringPlaces(pathsOf(straight))) {
        return areInTheirPlaces(straight.as<Polygon>().rings, *places);
    }
    return isValid(*toGeos(straight));
}

} // namespace qz
