#pragma once

#include <type_traits>

#include "platform/geometry/Geometry.h"

namespace qz {

// Calls `see(Vertex)` for every vertex, the one that closes a ring included; the control points of arcs are none.
template <typename See> void forEachOwnVertex(const Geometry& shape, See see) {
    const auto seePaths = [&see](const std::vector<Path>& paths) {
        for (const Path& path : paths) {
            for (std::size_t i = 0; i < path.vertexCount(); ++i) {
                see(path.vertex(i));
            }
        }
    };
    shape.visit([&](const auto& content) {
        using Shape = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Shape, Polyline>) {
            seePaths(content.paths);
        } else if constexpr (std::is_same_v<Shape, Polygon>) {
            seePaths(content.rings);
        } else {
            forEachVertex(shape, see);
        }
    });
}

} // namespace qz
