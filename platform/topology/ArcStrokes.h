#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/geometry/Path.h"
#include "platform/geometry/XYHash.h"

namespace qz {

// Takes arcs through the noding of straight segments: gives them out as strokes and puts those back that came through
// as they were. An arc that anything came within the tolerance of, other than its ends and arcs on the same circle, is
// strokes from there on.
class ArcStrokes {
public:
    // Strokes are so long that the tolerance doesn't make one place of two.
    explicit ArcStrokes(double tolerance) : tolerance_(tolerance) {}

    // Paths are numbered in the order in which they are given.
    [[nodiscard]] Path stroked(const Path& path);
    // What became of the stroked paths. Vertices that moved by no more than `resolution` count as the same.
    void settle(std::span<const Path> noded, double resolution);
    // A stretch of a noded path, with arcs where it runs along all strokes of one.
    [[nodiscard]] Path restored(const Path& stretch) const;

private:
    struct StrokedArc {
        std::size_t path = 0;
        std::vector<XY> places; // its ends and what is between them
        Vertex middle;
        ArcSense sense = ArcSense::counterClockwise;
    };
    struct Candidate {
        std::size_t arc = 0;
        bool isReversed = false;
    };

    [[nodiscard]] std::vector<XY> strokesOf(const CircularArc& arc, XY end) const;
    void settleArc(StrokedArc& arc, const Path& noded, const PlaceNumbers& places, double resolution);
    void offer(DirectedEdge firstStroke, Candidate candidate);
    [[nodiscard]] bool runsAlong(const Path& stretch, std::size_t first, const Candidate& candidate) const;
    [[nodiscard]] const Candidate* arcAt(const Path& stretch, std::size_t first) const;

    double tolerance_;
    std::size_t pathCount_ = 0;
    std::vector<StrokedArc> arcs_; // in the order of the paths
    Numbering<DirectedEdge, DirectedEdgeHash> firstStrokes_;
    std::vector<std::vector<Candidate>> candidates_; // by first stroke
};

} // namespace qz
