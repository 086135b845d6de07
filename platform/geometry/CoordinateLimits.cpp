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

bool isTrace(double coordinate, double resolution) noexcept {
    return coordinate != 0 && std::abs(coordinate) < traceOfResolution * resolution;
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

bool hasTraces(std::span<const Path> paths, double resolution) {
    const auto isTraceAt = [resolution](XY place) {
        return isTrace(place.x, resolution) || isTrace(place.y, resolution);
    };
    return std::ranges::any_of(paths, [&](const Path& path) {
        return std::ranges::any_of(path.xy(), isTraceAt) ||
               std::ranges::any_of(path.arcs(), isTraceAt, [](const ArcSegment& arc) { return arc.middle.xy(); });
    });
}

void clearTraces(std::span<Path> paths, double resolution) {
    for (Path& path : paths) {
        path.transform([resolution](Vertex& vertex) {
            vertex.x = isTrace(vertex.x, resolution) ? 0 : vertex.x;
            vertex.y = isTrace(vertex.y, resolution) ? 0 : vertex.y;
        });
    }
}

} // namespace qz
