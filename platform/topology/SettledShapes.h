#pragma once

#include <span>
#include <vector>

#include "platform/geometry/Geometry.h"
#include "platform/topology/ArcStrokes.h"

namespace qz {

// Lines and polygons after their vertices were clustered and their boundaries noded; see clusterNoded. Arcs are strokes
// here, that shapes on one circle share.
class SettledShapes {
public:
    // Polylines and polygons in one spatial reference. Throws PlatformError for points, for coordinates that are not
    // finite and for a tolerance that is negative or not finite.
    SettledShapes(std::vector<Geometry> shapes, double tolerance);

    [[nodiscard]] std::size_t size() const noexcept { return originals_.size(); }
    [[nodiscard]] const Geometry& original(std::size_t shape) const noexcept { return originals_[shape]; }
    // The parts of a line, or proper rings: what clustering made of a polygon is simplified. Nothing for a shape that
    // is not larger than the tolerance.
    [[nodiscard]] const std::vector<Path>& paths(std::size_t shape) const noexcept { return paths_[shape]; }
    // No vertex was moved, inserted or dropped, and a polygon was simple. Says nothing of arcs.
    [[nodiscard]] bool isUnchanged(std::size_t shape) const noexcept { return isUnchanged_[shape]; }
    // A stretch of such a path, with arcs in the place of their strokes.
    [[nodiscard]] Path restored(const Path& stretch) const { return arcs_.restored(stretch); }

private:
    [[nodiscard]] std::vector<Path> sourcePaths();
    [[nodiscard]] std::vector<XY> givenVertices() const;
    // Both take the noded paths away.
    void settle(std::size_t shape, std::span<const Path> source, std::span<Path> noded);
    void settlePolygon(std::size_t shape, std::span<const Path> source, std::span<Path> noded);

    std::vector<Geometry> originals_;
    ArcStrokes arcs_;
    std::vector<std::vector<Path>> paths_; // by shape
    std::vector<bool> isUnchanged_;
};

} // namespace qz
