#include "platform/geometry/Orientation.h"

#include "platform/geometry/Determinant.h"
#include "platform/geometry/Measures.h"

namespace qz {

Turn turn(XY a, XY b, XY c) noexcept {
    const double determinant = orientationDeterminant(a, b, c);
    if (determinant > 0) {
        return Turn::left;
    }
    return determinant < 0 ? Turn::right : Turn::straight;
}

bool isExterior(const Path& ring) {
    return !(signedArea(ring) < 0);
}

std::vector<std::size_t> exteriorRings(const Polygon& polygon) {
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i < polygon.rings.size(); ++i) {
        if (isExterior(polygon.rings[i])) {
            indexes.push_back(i);
        }
    }
    return indexes;
}

std::vector<std::size_t> interiorRings(const Polygon& polygon, std::size_t exterior) {
    std::vector<std::size_t> indexes;
    for (std::size_t i = exterior + 1; i < polygon.rings.size() && !isExterior(polygon.rings[i]); ++i) {
        indexes.push_back(i);
    }
    return indexes;
}

std::vector<std::span<const Path>> polygonParts(const Polygon& polygon) {
    const std::span<const Path> rings = polygon.rings;
    std::vector<std::span<const Path>> parts;
    for (std::size_t first = 0, end = 0; first < rings.size(); first = end) {
        ++end;
        while (end < rings.size() && (rings[end].isEmpty() || !isExterior(rings[end]))) {
            ++end;
        }
        parts.push_back(rings.subspan(first, end - first));
    }
    return parts;
}

void reverseOrientation(Polyline& polyline) {
    for (Path& path : polyline.paths) {
        path.reverse();
    }
}

void reverseOrientation(Polygon& polygon) {
    for (Path& ring : polygon.rings) {
        ring.reverse();
    }
}

} // namespace qz
