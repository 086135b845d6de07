#include "platform/geometry/SnapRounding.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "platform/geometry/Curve.h"
#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/XYHash.h"

namespace qz {

namespace {

// The cells that hold a vertex or a crossing.
class HotCells {
public:
    HotCells(const std::vector<Path>& paths, double cell) : cell_(cell) {
        std::vector<const Path*> pointers;
        std::ranges::transform(paths, std::back_inserter(pointers), [](const Path& path) { return &path; });
        for (const Path& path : paths) {
            std::ranges::for_each(path.xy(), [this](XY p) { centres_.add(centreOf(p)); });
        }
        for (const std::vector<Node>& nodes : nodesOf(pointers)) {
            std::ranges::for_each(nodes, [this](const Node& node) { centres_.add(centreOf(node.position)); });
        }
        std::vector<Envelope> extents;
        for (std::size_t i = 0; i < centres_.size(); ++i) {
            extents.push_back(extentOf(centres_[i]));
        }
        tree_ = PackedEnvelopeTree(extents);
    }

    [[nodiscard]] XY centreOf(XY p) const noexcept {
        return {std::round(p.x / cell_) * cell_, std::round(p.y / cell_) * cell_};
    }

    // The centres of the cells that the segment passes, in its direction. It goes one way in x and one in y, and so do
    // they.
    [[nodiscard]] std::vector<XY> passedBy(XY start, XY end) const {
        std::vector<XY> passed;
        Envelope window;
        window.expandToInclude(start);
        window.expandToInclude(end);
        tree_.query(window, [&](std::size_t i) {
            if (passes(start, end, extentOf(centres_[i]))) {
                passed.push_back(centres_[i]);
            }
        });
        const double signX = end.x < start.x ? -1 : 1;
        const double signY = end.y < start.y ? -1 : 1;
        std::ranges::sort(
            passed, [&](XY a, XY b) { return a.x == b.x ? signY * a.y < signY * b.y : signX * a.x < signX * b.x; });
        return passed;
    }

private:
    [[nodiscard]] Envelope extentOf(XY centre) const noexcept {
        const double half = cell_ / 2;
        return {centre.x - half, centre.y - half, centre.x + half, centre.y + half};
    }

    // For a segment whose own extent meets the cell: it passes unless all corners lie to one side.
    [[nodiscard]] static bool passes(XY start, XY end, const Envelope& cell) noexcept {
        const XY corners[] = {
            {cell.xMin, cell.yMin}, {cell.xMax, cell.yMin}, {cell.xMax, cell.yMax}, {cell.xMin, cell.yMax}};
        const Turn first = turn(start, end, corners[0]);
        return first == Turn::straight ||
               std::ranges::any_of(corners, [&](XY corner) { return turn(start, end, corner) != first; });
    }

    double cell_;
    PlaceNumbers centres_;
    PackedEnvelopeTree tree_;
};

Vertex placed(Vertex vertex, XY at) noexcept {
    vertex.x = at.x;
    vertex.y = at.y;
    return vertex;
}

Path snapRounded(const Path& path, const HotCells& cells) {
    Path result;
    if (path.isEmpty()) {
        return result;
    }
    result.addVertex(placed(path.front(), cells.centreOf(path.xy().front())));
    forEachSegment(path, [&](std::size_t index, const CurveSegment& segment) {
        const XY end = cells.centreOf(segment.end());
        for (const XY centre : cells.passedBy(segment.start(), segment.end())) {
            if (!(centre == result.back().xy()) && !(centre == end)) {
                result.addVertex(placed(segment.vertexAt(segment.nearestRatio(centre)), centre));
            }
        }
        if (!(end == result.back().xy())) {
            result.addVertex(placed(path.vertex(index + 1), end));
        }
    });
    return result;
}

} // namespace

std::vector<Path> snapRounded(const std::vector<Path>& paths, double cell) {
    const HotCells cells(paths, cell);
    std::vector<Path> result;
    result.reserve(paths.size());
    for (const Path& path : paths) {
        result.push_back(snapRounded(path, cells));
    }
    return result;
}

} // namespace qz
