#include "platform/geometry/PolygonAssembly.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <tuple>

#include "platform/geometry/Measures.h"

namespace qz {

namespace {

bool precedes(const Path& a, const Path& b) {
    return std::ranges::lexicographical_compare(a.xy(), b.xy(),
                                                [](XY p, XY q) { return std::tie(p.x, p.y) < std::tie(q.x, q.y); });
}

Path settledRing(const Path& ring, const CurveSources& sources, bool isExterior) {
    Path settled = sources.restoredRing(ring);
    if ((signedArea(settled) < 0) == isExterior) {
        settled.reverse();
    }
    return settled;
}

std::vector<Path> settledPart(const std::vector<Path>& rings, const CurveSources& sources, double resolution) {
    std::vector<Path> settled{settledRing(rings.front(), sources, true)};
    for (std::size_t i = 1; i < rings.size(); ++i) {
        if (!isSliver(rings[i], resolution)) {
            settled.push_back(settledRing(rings[i], sources, false));
        }
    }
    std::sort(settled.begin() + 1, settled.end(), precedes);
    return settled;
}

} // namespace

bool isSliver(const Path& ring, double resolution) {
    const double width = 2 * std::abs(signedArea(ring)) / length(ring);
    return !(width >= resolution);
}

Polygon assemblePolygon(std::vector<std::vector<Path>> parts, const CurveSources& sources,
                        const GeometryTraits& traits) {
    const double resolution = traits.spatialReference.grid().xyResolution;
    std::erase_if(parts, [resolution](const auto& rings) { return isSliver(rings.front(), resolution); });
    for (std::vector<Path>& rings : parts) {
        rings = settledPart(rings, sources, resolution);
    }
    std::ranges::sort(parts, precedes, [](const std::vector<Path>& rings) -> const Path& { return rings.front(); });
    Polygon polygon;
    static_cast<GeometryTraits&>(polygon) = traits;
    for (std::vector<Path>& rings : parts) {
        std::ranges::move(rings, std::back_inserter(polygon.rings));
    }
    return polygon;
}

} // namespace qz
