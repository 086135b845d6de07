#pragma once

#include <memory>
#include <span>
#include <vector>

#include "platform/geometry/Geometry.h"
#include "platform/geometry/RingLocator.h"
#include "topology/FaceProgress.h"
#include "topology/FaceTrace.h"

namespace qz {

// Makes polygons of traced rings: one for each clockwise ring, with the counter-clockwise rings that lie directly in it
// as holes. O(n log n), as long as each place lies in the envelopes of few rings.
class FaceAssembly {
public:
    FaceAssembly(const LinkedNetwork& network, const FaceTrace& trace, const GeometryTraits& traits);

    // Makes the outlines of parts holes of the faces of other parts that they lie in.
    void placeOutlines(const StageProgress& progress);
    // Calls `see(ring, exterior ring of the smallest face of another part that it lies in, or none)` for each ring
    // around a part of the network.
    template <typename See> void forEachOutline(See see) const {
        for (std::size_t i = 0; i < outlines_.size(); ++i) {
            see(outlines_[i], around_.empty() ? Groups::none : around_[i]);
        }
    }
    // Keeps the faces alone for which `isWanted(half-edge that has the face to its right)`.
    template <typename IsWanted> void keepFaces(IsWanted isWanted) {
        std::erase_if(shells_, [&](const Shell& shell) { return !isWanted(trace_.rings()[shell.ring].front()); });
    }
    // In the order of the smallest half-edges of their exterior rings, which they start with. Polygons of lines that
    // cross without a node, or with rings less wide than the resolution, are simplified, and come as one for each part
    // that is left.
    [[nodiscard]] std::vector<Polygon> polygons() &&;

private:
    struct Shell {
        std::uint32_t ring = 0;
        double area = 0;
        std::vector<std::uint32_t> holes; // rings
        std::unique_ptr<RingLocator> locator;
    };

    [[nodiscard]] bool isExterior(std::size_t ring, double area) const;
    void findShells(const std::vector<double>& areas);
    void sortOutCourses(const std::vector<double>& areas);
    [[nodiscard]] double signedAreaOf(std::size_t ring) const;
    [[nodiscard]] Path pathOf(std::size_t ring) const;
    [[nodiscard]] Shell* shellAround(std::uint32_t ring, const PackedEnvelopeTree& tree);
    [[nodiscard]] bool holds(Shell& shell, const Path& outline) const;
    [[nodiscard]] Polygon polygonOf(const Shell& shell) const;

    const LinkedNetwork& network_;
    const FaceTrace& trace_;
    GeometryTraits traits_;
    std::vector<Shell> shells_;
    std::vector<std::uint32_t> outlines_; // rings around parts of the network
    std::vector<std::uint32_t> around_;   // the exterior ring around each, or none; once placed
};

} // namespace qz
