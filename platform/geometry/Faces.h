#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "platform/geometry/Path.h"
#include "platform/geometry/XYHash.h"

namespace qz {

// The two directions of a straight edge of a graph as numbers: 2 k is that in which edge k came first, 2 k + 1 the
// other.
class HalfEdges {
public:
    [[nodiscard]] std::size_t size() const noexcept { return 2 * edges_.size(); }
    [[nodiscard]] static std::size_t reversed(std::size_t halfEdge) noexcept { return halfEdge ^ 1U; }
    [[nodiscard]] DirectedEdge operator[](std::size_t halfEdge) const noexcept {
        return halfEdge % 2 == 0 ? edges_[halfEdge / 2] : edges_[halfEdge / 2].reversed();
    }

    void reserve(std::size_t edges) { edges_.reserve(edges); }
    // The number of an edge in its direction; a new one when it has come in neither. Its ends differ.
    std::size_t add(const DirectedEdge& edge);
    [[nodiscard]] std::optional<std::size_t> find(const DirectedEdge& edge) const;

private:
    Numbering<DirectedEdge, DirectedEdgeHash> edges_;
};

// The bounded faces of a planar graph of straight edges, which meet at their ends only. Edges that bound no face, or
// the same face on both sides, belong to none.
class FaceGraph {
public:
    explicit FaceGraph(const HalfEdges& edges);

    using Face = std::vector<Path>; // the exterior ring clockwise, then the holes counter-clockwise
    [[nodiscard]] std::size_t faceCount() const noexcept { return faces_.size(); }
    // The half-edges that have the face to their right.
    [[nodiscard]] std::span<const std::size_t> edgesOf(std::size_t face) const noexcept { return edgesOf_[face]; }
    // The face to the right of the half-edge; nothing for the outside and for edges of no face.
    [[nodiscard]] std::optional<std::size_t> rightOf(std::size_t halfEdge) const noexcept;
    // The rings of the area that the chosen faces cover together, an exterior one before its holes.
    [[nodiscard]] std::vector<Face> unionOf(const std::vector<bool>& chosen) const;

private:
    void findEdges(std::size_t face, const HalfEdges& edges);
    [[nodiscard]] bool meetsAnother(std::size_t face, const std::vector<bool>& chosen) const;

    std::vector<Face> faces_;
    std::vector<std::vector<std::size_t>> edgesOf_;
    std::vector<std::size_t> rightOf_; // face + 1 by half-edge, or 0
};

// Calls `see(DirectedEdge)` for every segment of the paths that has a length.
template <typename See> void forEachEdge(std::span<const Path> paths, See see) {
    for (const Path& path : paths) {
        for (std::size_t i = 1; i < path.vertexCount(); ++i) {
            if (!(path.xy()[i - 1] == path.xy()[i])) {
                see(DirectedEdge{path.xy()[i - 1], path.xy()[i]});
            }
        }
    }
}

} // namespace qz
