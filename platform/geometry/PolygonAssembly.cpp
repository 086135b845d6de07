#include "platform/geometry/PolygonAssembly.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "platform/geometry/Measures.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

bool precedes(const Path& a, const Path& b) {
    return std::ranges::lexicographical_compare(a.xy(), b.xy(), [](XY p, XY q) { return qz::precedes(p, q); });
}

using Restore = Path (CurveSources::*)(const Path&) const;

Path settledRing(const Path& ring, const CurveSources& sources, Restore restore, bool isExterior) {
    Path settled = (sources.*restore)(ring);
    if ((signedArea(settled) < 0) == isExterior) {
        settled.reverse();
    }
    return settled;
}

std::vector<Path> settledPart(const std::vector<Path>& rings, const CurveSources& sources, Restore restore) {
    std::vector<Path> settled;
    for (const Path& ring : rings) {
        settled.push_back(settledRing(ring, sources, restore, settled.empty()));
    }
    std::sort(settled.begin() + 1, settled.end(), precedes);
    return settled;
}

Polygon settledPolygon(const std::vector<std::vector<Path>>& parts, const CurveSources& sources, Restore restore,
                       const GeometryTraits& traits) {
    std::vector<std::vector<Path>> settled;
    for (const std::vector<Path>& rings : parts) {
        settled.push_back(settledPart(rings, sources, restore));
    }
    std::ranges::sort(settled, precedes, [](const std::vector<Path>& rings) -> const Path& { return rings.front(); });
    Polygon polygon;
    static_cast<GeometryTraits&>(polygon) = traits;
    for (std::vector<Path>& rings : settled) {
        std::ranges::move(rings, std::back_inserter(polygon.rings));
    }
    return polygon;
}

// No less than the length of a ring without arcs, rounding included; else infinite.
double lengthBound(const Path& ring) {
    if (ring.hasArcs()) {
        return std::numeric_limits<double>::infinity();
    }
    double sum = 0;
    for (std::size_t i = 1; i < ring.vertexCount(); ++i) {
        sum += std::abs(ring.xy()[i].x - ring.xy()[i - 1].x) + std::abs(ring.xy()[i].y - ring.xy()[i - 1].y);
    }
    return 1.001 * sum;
}

} // namespace

bool isSliver(const Path& ring, double resolution) {
    const double twiceArea = 2 * std::abs(signedArea(ring));
    // Nearly all rings are far wider than that, and the bound spares a root a segment.
    return !(twiceArea >= resolution * lengthBound(ring) || twiceArea / length(ring) >= resolution);
}

Polygon assemblePolygon(std::vector<std::vector<Path>> parts, const CurveSources& sources,
                        const GeometryTraits& traits) {
    const double resolution = traits.spatialReference.grid().xyResolution;
    std::erase_if(parts, [resolution](const auto& rings) { return isSliver(rings.front(), resolution); });
    for (std::vector<Path>& rings : parts) {
        const auto isNarrow = [resolution](const Path& ring) { return isSliver(ring, resolution); };
        rings.erase(std::remove_if(rings.begin() + 1, rings.end(), isNarrow), rings.end());
    }
    Polygon polygon = settledPolygon(parts, sources, static_cast<Restore>(&CurveSources::restoredRing), traits);
    if (sources.hasArcs() && !isSimple(polygon)) {
        return settledPolygon(parts, sources, &CurveSources::strokedRing, traits);
    }
    return polygon;
}

} // namespace qz
