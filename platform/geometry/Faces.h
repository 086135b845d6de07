#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/geometry/Path.h"
#include "platform/geometry/XYHash.h"

namespace qz {

// The bounded faces of a planar graph of straight edges, which meet at their ends only. Edges that bound no face, or
// the same face on both sides, belong to none.
class FaceGraph {
public:
    explicit FaceGraph(std::span<const DirectedEdge> edges);

    using Face = std::vector<Path>; // the exterior ring clockwise, then the holes counter-clockwise
    [[nodiscard]] const std::vector<Face>& faces() const noexcept { return faces_; }
    // The face to the right of the edge; nothing for the outside and for edges of no face.
    [[nodiscard]] std::optional<std::size_t> rightOf(const DirectedEdge& edge) const;
    // The rings of the area that the chosen faces cover together, an exterior one before its holes.
    [[nodiscard]] std::vector<Face> unionOf(const std::vector<bool>& chosen) const;

private:
    std::vector<Face> faces_;
    std::unordered_map<DirectedEdge, std::size_t, DirectedEdgeHash> rightOf_;
};

// Calls `see(DirectedEdge)` for every segment of the rings of a face; the face is to its right.
template <typename See> void forEachEdge(std::span<const Path> rings, See see) {
    for (const Path& ring : rings) {
        for (std::size_t i = 1; i < ring.vertexCount(); ++i) {
            see(DirectedEdge{ring.xy()[i - 1], ring.xy()[i]});
        }
    }
}

} // namespace qz
