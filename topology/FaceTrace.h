#pragma once

#include <vector>

#include "topology/Departures.h"
#include "topology/FaceProgress.h"

namespace qz {

// The closed courses along the edges of a network that keep one face to their right: around each bounded face, and
// around the outside of each connected part of it. Every edge that bounds a face is walked once in each direction;
// dangles and edges with one face on both sides are left out. O(n log n) at most.
class FaceTrace {
public:
    FaceTrace(const LinkedNetwork& network, const StageProgress& progress);

    // Rings that pass no place twice, each from its smallest half-edge on. A course that does gives several.
    [[nodiscard]] const Groups& rings() const noexcept { return rings_; }
    // The rings of each course.
    [[nodiscard]] const Groups& courses() const noexcept { return courses_; }
    // The connected part of the network that a ring belongs to.
    [[nodiscard]] std::uint32_t partOf(std::size_t ring) const;

private:
    void QZ_RemoveAllDangles();
    void QZ_FixNotClosed();
    void sortDepartures();
    void linkHalfEdges();
    [[nodiscard]] std::vector<std::uint32_t> courseNumbers() const;
    void traceRings(const StageProgress& progress);
    void splitIntoRings(const std::vector<EdgeEnd>& course);
    void addRing(std::vector<EdgeEnd> ring);
    void findParts();

    [[nodiscard]] std::size_t halfEdgeCount() const noexcept { return 2 * network_.edgeCount(); }

    const LinkedNetwork& network_;
    std::vector<bool> isUsed_;        // by edge
    Groups leaving_;                  // half-edges by place
    std::vector<EdgeEnd> next_;       // on the course, by half-edge; none when it is not used
    std::vector<std::size_t> onRing_; // by place: where the ring being traced passes it, and 1 more; or 0
    Groups rings_;
    Groups courses_;
    std::vector<std::uint32_t> parts_; // by place
};

} // namespace qz
