#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/Geometry.h"

namespace qz {

enum class CornerForm { chamfer, fillet };

struct CornerCut {
    CornerForm form = CornerForm::chamfer;
    double size = 0; // above 0; chamfer: distance from the corner to the ends of the cut; fillet: radius of the arc
};

// Two straight segments that meet in a corner.
struct CornerSegments {
    Vertex start;
    Vertex corner;
    Vertex end;
};

// Where the segments end once the corner is cut: `from` on the first, `to` on the second, with z and m as they run
// along them.
struct CornerCutPoints {
    Vertex from;
    Vertex to;
};

// A chamfer cuts both segments at its size from the corner, a fillet where its arc touches them:
//   distance(corner, from) == distance(corner, to) == radius / tan(angle / 2)
// Nothing when the corner is to stay: a segment is not longer than the size, or nothing longer than the tolerance would
// be left of it; a chamfer would be as good as straight; at a fillet the angle is within a degree of straight; the
// segments run back over each other.
[[nodiscard]] std::optional<CornerCutPoints> QZ_GetFromToSegs(const CornerSegments& segments, const CornerCut& cut,
                                                              double tolerance);

// The arc from the first to the second cut point, tangent to both segments. Its middle has the means of z and m.
[[nodiscard]] Path QZ_FilletArc(const CornerSegments& segments, const CornerCutPoints& points, double radius);

// Cuts corners of one path one after the other. A corner can be cut once; segments are shared by the cuts at their two
// ends. In a closed path the last vertex is the corner of the last and the first segment, and the first vertex none of
// its own; in an open one the ends are no corners. Arcs and all other vertices stay bit for bit.
class CornerCutting {
public:
    // The path must outlive it.
    CornerCutting(const Path& path, const CornerCut& cut, double tolerance);

    // The piece that would replace the corner at a vertex, from 1 on; nothing when it is to stay, at an arc for one.
    [[nodiscard]] std::optional<Path> pieceAt(std::size_t vertex) const;
    void replace(std::size_t vertex, const Path& piece);
    [[nodiscard]] Path result() const;

private:
    [[nodiscard]] bool isCorner(std::size_t vertex) const;
    [[nodiscard]] std::size_t segmentAfter(std::size_t vertex) const;

    const Path& path_;
    CornerCut cut_;
    double tolerance_;
    std::vector<Vertex> starts_; // of each segment, as shortened so far
    std::vector<Vertex> ends_;
    std::vector<Path> pieces_; // by vertex; empty where it stays
};

// Tells where a cut would run into another part of a polygon, so that it would no longer be simple.
class CornerObstacles {
public:
    // The polygon must outlive it.
    explicit CornerObstacles(const Polygon& polygon);

    // Whether another segment than the two at the corner meets what the piece cuts off.
    [[nodiscard]] bool block(std::size_t ring, std::size_t vertex, const Path& piece) const;

private:
    struct Place {
        std::size_t ring;
        std::size_t segment;
    };

    const Polygon& polygon_;
    std::vector<Place> segments_;
    PackedEnvelopeTree tree_;
};

} // namespace qz
