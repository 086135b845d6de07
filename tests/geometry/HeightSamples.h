#pragma once

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "platform/geometry/Geometry.h"
#include "platform/geometry/Noding.h"

namespace qz {

// Heights and measures that differ from vertex to vertex, so that those of another segment would show.
inline void raise(GeometryTraits& traits, std::vector<Path>& paths, std::mt19937& random) {
    std::uniform_real_distribution<double> height(-50, 50);
    traits.zAware = traits.mAware = true;
    for (Path& path : paths) {
        path.transform([&](Vertex& vertex) {
            vertex.z = height(random);
            vertex.m = -vertex.z;
        });
        if (path.isClosed()) {
            path.setVertex(path.segmentCount(), path.vertex(0));
        }
    }
}

// Heights of the straight segments that come that close to the place, where they do, in extended precision.
inline std::vector<double> heightsOnSegments(const Geometry& geometry, XY p, double reach) {
    std::vector<double> heights;
    for (const Path* path : pathsOf(geometry)) {
        for (std::size_t i = 0; i < path->segmentCount(); ++i) {
            const Vertex a = path->vertex(i);
            const Vertex b = path->vertex(i + 1);
            const long double dx = static_cast<long double>(b.x) - a.x, dy = static_cast<long double>(b.y) - a.y;
            const long double px = static_cast<long double>(p.x) - a.x, py = static_cast<long double>(p.y) - a.y;
            const long double ratio = std::clamp((px * dx + py * dy) / (dx * dx + dy * dy), 0.0L, 1.0L);
            if (std::hypot(px - ratio * dx, py - ratio * dy) <= reach) {
                heights.push_back(static_cast<double>(a.z + ratio * (static_cast<long double>(b.z) - a.z)));
            }
        }
    }
    return heights;
}

inline std::vector<double> heightsOfVertices(const Geometry& geometry, XY p) {
    std::vector<double> heights;
    forEachVertex(geometry, [&](const Vertex& vertex) {
        if (vertex.xy() == p) {
            heights.push_back(vertex.z);
        }
    });
    return heights;
}

inline double largestCoordinate(const Geometry& geometry) {
    const Envelope box = geometry.envelope();
    return std::max({std::abs(box.xMin), std::abs(box.yMin), std::abs(box.xMax), std::abs(box.yMax)});
}

// How far the height of a vertex of a result is from the nearest it may have: of a vertex of the first operand there,
// else of the second, else on a segment of the first, else of the second. Infinite when it lies on neither.
inline double heightError(const Geometry& first, const Geometry& second, const Vertex& vertex) {
    const XY p = vertex.xy();
    // A computed crossing may be off its segment by a few units in the last place of the segments' ends.
    const double reach = 4 * 0x1p-52 * (largestCoordinate(first) + largestCoordinate(second));
    std::vector<double> heights = heightsOfVertices(first, p);
    heights = heights.empty() ? heightsOfVertices(second, p) : heights;
    heights = heights.empty() ? heightsOnSegments(first, p, reach) : heights;
    heights = heights.empty() ? heightsOnSegments(second, p, reach) : heights;
    double error = INFINITY;
    for (const double height : heights) {
        error = std::min(error, std::abs(height - vertex.z));
    }
    return error;
}

} // namespace qz
