#include "platform/geometry/CoordinateLimits.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "platform/Error.h"

namespace qz {

namespace {

bool isUsable(double coordinate) noexcept {
    const double size = std::abs(coordinate);
    return size <= coordinateLimit && (size >= smallestCoordinate || size == 0);
}

const char* faultOf(XY place) noexcept {
    if (!isFinite(place)) {
        return "not finite";
    }
    return std::max(std::abs(place.x), std::abs(place.y)) > coordinateLimit ? "too large"
                                                                            : "too small to be told from 0";
}

void requireUsable(XY place, std::string_view operation) {
    if (!isUsable(place.x) || !isUsable(place.y)) {
        throw PlatformError(fmt::format("The {} can't be found: the coordinate ({}, {}) is {}.", operation, place.x,
                                        place.y, faultOf(place)));
    }
}

} // namespace

void requireUsableCoordinates(std::span<const Path> paths, std::string_view operation) {
    for (const Path& path : paths) {
        std::ranges::for_each(path.xy(), [operation](XY place) { requireUsable(place, operation); });
        for (const ArcSegment& arc : path.arcs()) {
            requireUsable(arc.middle.xy(), operation);
        }
    }
}

void requireUsableCoordinates(const Geometry& geometry, std::string_view operation) {
    if (const auto* polygon = geometry.getIf<Polygon>()) {
        requireUsableCoordinates(polygon->rings, operation);
    } else if (const auto* polyline = geometry.getIf<Polyline>()) {
        requireUsableCoordinates(polyline->paths, operation);
    } else if (!geometry.isEmpty()) {
        forEachVertex(geometry, [operation](const Vertex& vertex) { requireUsable(vertex.xy(), operation); });
    }
}

} // namespace qz
