#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/geometry/Geometry.h"
#include "platform/geometry/SegmentIntersection.h"

namespace qz {

// How two segments have a place in common.
enum class NodeKind {
    crossing,  // inside of both, from side to side
    touch,     // a vertex of one inside the other, or two arcs inside of both that only graze
    sharedEnd, // a vertex of both
    overlapBegin,
    overlapEnd // the ends of a stretch that both share, in the direction of the path the node is on
};

// A place on a path that a segment of the same or of another path has as well. At a vertex the ratio is 0 and the
// segment the number of the vertex, at the last vertex too; of repeated vertices it is the first.
struct Node {
    std::size_t segment = 0;
    double ratio = 0;
    XY position; // the same bits on both paths
    std::size_t otherPath = 0;
    std::size_t otherSegment = 0;
    double otherRatio = 0;
    NodeKind kind = NodeKind::crossing;

    friend bool operator==(const Node&, const Node&) = default;
};

// The nodes of every path, by (segment, ratio, other path, other segment, other ratio, kind), none twice: what a double
// loop over all pairs of segments finds, in the time of a sort where segments are short for the whole. A path is also
// tested against itself; that consecutive segments share their vertex, and a closed path its ends, is no node. Segments
// without length count by their neighbours.
//   a node at p of path i with path j: path j has one at p with path i
// Tests of the ends' distance are made between different paths only.
[[nodiscard]] std::vector<std::vector<Node>> nodesOf(std::span<const Path* const> paths,
                                                     const ContactTolerance& tolerance = {});
// The same of the first paths only; what the others have among themselves costs nothing.
[[nodiscard]] std::vector<std::vector<Node>> nodesOfFirst(std::size_t count, std::span<const Path* const> paths,
                                                          const ContactTolerance& tolerance);

// Whether there are no nodes at all: for rings, that each is simple and that they are apart. Ends at the first. Of
// rings without arcs also in near-linear time where their segments are long for the whole.
[[nodiscard]] bool meetNowhere(std::span<const Path* const> paths);

// Goes along a path and its nodes together: vertex 0, the nodes inside segment 0, vertex 1 and so on. The path and its
// nodes must outlive it.
class NodeWalk {
public:
    NodeWalk(const Path& path, std::span<const Node> nodes) : path_(&path), nodes_(nodes), next_(nodes.begin()) {}

    // Where the nodes at the vertex have it, but for the tolerance where the path has it. A closed path stays closed.
    [[nodiscard]] XY vertex(std::size_t index);
    // Null when there is none any more.
    [[nodiscard]] const Node* nextInside(std::size_t segment);

private:
    const Path* path_;
    std::span<const Node> nodes_;
    std::span<const Node>::iterator next_;
    XY start_;
};

// The path with a vertex at each of its nodes, exactly there; z and m interpolated.
[[nodiscard]] Path withVerticesAt(const Path& path, std::span<const Node> nodes);

} // namespace qz
