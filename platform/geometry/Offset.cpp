#include "platform/geometry/Offset.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>

#include "platform/geometry/Measures.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/OffsetFrame.h"
#include "platform/geometry/OffsetStretches.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

// Fourth powers of it are still numbers.
constexpr double largestNumber = 1e75;

// Outer corners up to that many distances from the vertex are pointed.
struct CornerShape {
    double reach = 0;
    bool roundedBeyond = false;
};

CornerShape cornerShape(int options, std::optional<double> reach) {
    const bool isMitered = (options & offsetMitered) != 0;
    const bool isRounded = (options & offsetRounded) != 0;
    const bool isBevelled = (options & offsetBevelled) != 0;
    if (isRounded && !isMitered) {
        return {0, true};
    }
    return {reach.value_or(isBevelled && !isMitered ? 1.1 : 10), isRounded};
}

// Where the tangents at the ends of a corner's arc cross; nothing when that is out of reach.
std::optional<XY> pointOf(const CircularArc& circle, XY start, XY end, double reach) {
    const XY halfway = (start + end) * 0.5 - circle.centre;
    const double ratio = circle.radius / std::hypot(halfway.x, halfway.y);
    if (!(ratio <= reach)) {
        return std::nullopt;
    }
    return circle.centre + halfway * (ratio * ratio);
}

// One path of the result on the way to its corners.
class ShapedChain {
public:
    ShapedChain(StretchChain chain, std::span<const ParallelCurve> curves, const CornerShape& shape)
        : chain_(std::move(chain)), curves_(curves), roundedBeyond_(shape.roundedBeyond), points_(chain_.size()) {
        for (std::size_t i = 0; i < chain_.size(); ++i) {
            if (isCorner(chain_[i])) {
                const CurveSegment arc(curves_[chain_[i].curve].path, chain_[i].segment);
                points_[i] =
                    arc.circle() ? pointOf(*arc.circle(), chain_[i].start, chain_[i].end, shape.reach) : std::nullopt;
            }
        }
        build();
    }

    [[nodiscard]] const Path& path() const noexcept { return path_; }
    [[nodiscard]] bool hasPoints() const {
        return std::ranges::any_of(points_, [](const std::optional<XY>& point) { return point.has_value(); });
    }

    // Gives up the points whose sides have a place in common with anything. Returns whether there were any.
    bool cutBack(std::span<const Node> nodes) {
        bool any = false;
        for (const Node& node : nodes) {
            if (node.kind != NodeKind::sharedEnd) {
                const std::size_t first = node.segment - (node.ratio == 0 && node.segment > 0 ? 1 : 0);
                for (std::size_t vertex = first; vertex <= node.segment + 1; ++vertex) {
                    any = giveUpAt(vertex, node.position) || any;
                }
            }
        }
        if (any) {
            build();
        }
        return any;
    }

private:
    [[nodiscard]] bool isCorner(const OffsetStretch& stretch) const {
        return curves_[stretch.curve].roles[stretch.segment] == ParallelRole::corner;
    }
    [[nodiscard]] bool isClosed() const { return chain_.front().start == chain_.back().end; }
    [[nodiscard]] bool isStraight(const OffsetStretch& stretch) const {
        return !isCorner(stretch) && curves_[stretch.curve].path.arcAt(stretch.segment) == nullptr;
    }

    // The neighbour goes on straight to the point of the corner.
    [[nodiscard]] bool extendsBefore(std::size_t corner) const {
        const bool hasNeighbour = corner > 0 || isClosed();
        const OffsetStretch& before = chain_[corner > 0 ? corner - 1 : chain_.size() - 1];
        return hasNeighbour && points_[corner] && chain_[corner].from == 0 && isStraight(before);
    }
    [[nodiscard]] bool extendsAfter(std::size_t corner) const {
        const bool isLast = corner + 1 == chain_.size();
        const OffsetStretch& after = chain_[isLast ? 0 : corner + 1];
        return (!isLast || isClosed()) && points_[corner] && chain_[corner].to == 1 && isStraight(after);
    }

    void build() {
        path_ = Path();
        stretchOfVertex_.clear();
        path_.addVertex(startOf(chain_.front(), curves_));
        for (std::size_t i = 0; i < chain_.size(); ++i) {
            appendShaped(i);
        }
        if (isClosed()) {
            closeAtPoint();
        }
        stretchOfVertex_.resize(path_.vertexCount());
    }

    void appendShaped(std::size_t i) {
        const OffsetStretch& stretch = chain_[i];
        if (points_[i]) {
            appendPointed(i);
        } else if (isCorner(stretch) && !roundedBeyond_) {
            path_.addVertex(like(path_.back(), stretch.end));
        } else {
            append(path_, stretch, curves_);
        }
    }

    void appendPointed(std::size_t i) {
        const Vertex point = like(path_.back(), *points_[i]);
        if (extendsBefore(i)) {
            path_.setVertex(path_.vertexCount() - 1, point);
        } else {
            path_.addVertex(point);
        }
        stretchOfVertex_.resize(path_.vertexCount() - 1);
        stretchOfVertex_.push_back(i);
        if (!extendsAfter(i)) {
            path_.addVertex(like(point, chain_[i].end));
        }
    }

    // A point before the first or after the last stretch is the start and the end.
    void closeAtPoint() {
        const std::size_t last = chain_.size() - 1;
        if (extendsAfter(last)) {
            path_.setVertex(0, path_.back());
        } else if (extendsBefore(0)) {
            path_.setVertex(path_.vertexCount() - 1, path_.front());
        }
    }

    static Vertex like(Vertex vertex, XY at) noexcept {
        vertex.x = at.x;
        vertex.y = at.y;
        return vertex;
    }

    // When the place is on one of the sides that make the corner pointed.
    bool giveUpAt(std::size_t vertex, XY place) {
        if (vertex >= stretchOfVertex_.size() || !stretchOfVertex_[vertex]) {
            return false;
        }
        std::optional<XY>& point = points_[*stretchOfVertex_[vertex]];
        if (!point) {
            return false;
        }
        const XY side = chain_[*stretchOfVertex_[vertex]].start - *point;
        const XY toPlace = place - *point;
        const bool isOnSide = dot(toPlace, toPlace) <= dot(side, side);
        if (isOnSide) {
            point.reset();
        }
        return isOnSide;
    }

    StretchChain chain_;
    std::span<const ParallelCurve> curves_;
    bool roundedBeyond_;
    std::vector<std::optional<XY>> points_; // of each stretch that is a pointed corner
    Path path_;
    std::vector<std::optional<std::size_t>> stretchOfVertex_; // that is the point of a corner
};

using ShapedChains = std::vector<ShapedChain>;

// Points reach beyond what was found to be free of other stretches. `others` bound the rest of the area.
void cutBackCollisions(ShapedChains& chains, std::span<const Path> others) {
    while (std::ranges::any_of(chains, [](const ShapedChain& chain) { return chain.hasPoints(); })) {
        std::vector<const Path*> paths;
        std::ranges::transform(chains, std::back_inserter(paths), [](const ShapedChain& c) { return &c.path(); });
        std::ranges::transform(others, std::back_inserter(paths), [](const Path& path) { return &path; });
        const std::vector<std::vector<Node>> nodes = nodesOf(paths);
        bool any = false;
        for (std::size_t i = 0; i < chains.size(); ++i) {
            any = chains[i].cutBack(nodes[i]) || any;
        }
        if (!any) {
            return;
        }
    }
}

ShapedChains shapedChains(std::vector<StretchChain> chains, std::span<const ParallelCurve> curves,
                          const CornerShape& shape) {
    ShapedChains shaped;
    for (StretchChain& chain : chains) {
        shaped.emplace_back(std::move(chain), curves, shape);
    }
    return shaped;
}

std::vector<Path> pathsOf(const ShapedChains& chains) {
    std::vector<Path> paths;
    std::ranges::transform(chains, std::back_inserter(paths), [](const ShapedChain& chain) { return chain.path(); });
    return paths;
}

StretchChain wholeCurve(std::size_t curve, const Path& path) {
    StretchChain chain;
    for (std::size_t i = 0; i < path.segmentCount(); ++i) {
        chain.push_back({curve, i, 0, 1, path.xy()[i], path.xy()[i + 1]});
    }
    return chain;
}

std::vector<Path> joinedOnRight(const Polyline& line, double distance, const CornerShape& shape) {
    std::vector<ParallelCurve> curves;
    std::vector<StretchChain> chains;
    for (const Path& path : line.paths) {
        ParallelCurve curve = parallelOnRight(path, distance);
        if (curve.path.segmentCount() > 0) {
            chains.push_back(wholeCurve(curves.size(), curve.path));
            curves.push_back(std::move(curve));
        }
    }
    return pathsOf(shapedChains(std::move(chains), curves, shape));
}

std::vector<Path> plainPaths(std::span<const OffsetStretch> stretches, std::span<const ParallelCurve> curves) {
    std::vector<Path> paths;
    for (const StretchChain& chain : chained(stretches)) {
        paths.push_back(chainPath(chain, curves));
    }
    return paths;
}

std::vector<Path> simpleOnRight(const Polyline& line, double distance, const CornerShape& shape) {
    const SurroundingCurves around = curvesAround(line.paths, distance);
    std::vector<OffsetStretch> own = outerStretches(around.curves, line, distance);
    const auto isOther = [&](const OffsetStretch& stretch) { return !around.isOnRight[stretch.curve]; };
    const auto others = std::stable_partition(own.begin(), own.end(), std::not_fn(isOther));
    const std::vector<Path> otherPaths = plainPaths({others, own.end()}, around.curves);
    own.erase(others, own.end());
    ShapedChains chains = shapedChains(chained(withoutWaysBack(std::move(own), around.curves)), around.curves, shape);
    cutBackCollisions(chains, otherPaths);
    std::vector<Path> paths = pathsOf(chains);
    const double resolution = line.spatialReference.grid().xyResolution;
    std::erase_if(paths, [resolution](const Path& path) { return length(path) < resolution; });
    return paths;
}

std::vector<Path> offsetOnRight(const Polyline& line, double distance, int options, const CornerShape& shape) {
    return (options & offsetSimple) != 0 ? simpleOnRight(line, distance, shape) : joinedOnRight(line, distance, shape);
}

} // namespace

Polyline offset(const Polyline& line, double distance, int options, std::optional<double> reach) {
    const OffsetFrame frame("offset", line, distance, largestNumber);
    if (distance == 0) {
        return line;
    }
    Polyline local = frame.toLocal(line);
    const CornerShape shape = cornerShape(options, reach);
    if (distance > 0) {
        local.paths = offsetOnRight(local, distance, options, shape);
    } else {
        reverseOrientation(local);
        local.paths = offsetOnRight(local, -distance, options, shape);
        reverseOrientation(local);
        std::ranges::reverse(local.paths);
    }
    return frame.fromLocal(std::move(local));
}

} // namespace qz
