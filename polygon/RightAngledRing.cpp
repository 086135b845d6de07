#include "polygon/RightAngledRing.h"

#include <cmath>
#include <optional>

#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

// Coordinates along the first segment of the ring and to the left of it.
class Frame {
public:
    explicit Frame(std::span<const Vertex> ring) : origin_(ring[0].xy()) {
        const XY first = ring[1].xy() - origin_;
        along_ = first * (1 / std::hypot(first.x, first.y));
    }

    [[nodiscard]] XY local(XY p) const { return {dot(along_, p - origin_), cross(along_, p - origin_)}; }
    [[nodiscard]] XY world(XY p) const { return origin_ + along_ * p.x + XY{-along_.y, along_.x} * p.y; }

private:
    XY origin_;
    XY along_;
};

enum class Axis { along, across };

double along(XY p, Axis axis) {
    return axis == Axis::along ? p.x : p.y;
}
double beside(XY p, Axis axis) {
    return axis == Axis::along ? p.y : p.x;
}

// Segments of the same axis that follow each other.
struct Side {
    Axis axis = Axis::along;
    std::size_t first = 0; // segment
    std::size_t count = 0;
    double place = 0; // beside the axis
};

class RightAngling {
public:
    explicit RightAngling(std::span<const Vertex> ring) : ring_(ring), frame_(ring) {
        for (const Vertex& vertex : ring) {
            local_.push_back(frame_.local(vertex.xy()));
        }
        collectSides();
    }

    [[nodiscard]] std::vector<Vertex> result() const {
        std::vector<Vertex> vertices;
        if (sides_.size() < 4) {
            return vertices;
        }
        for (std::size_t i = 0; i < sides_.size(); ++i) {
            const Side& before = sides_[(i + sides_.size() - 1) % sides_.size()];
            const Side& after = sides_[(i + 1) % sides_.size()];
            appendSide(vertices, sides_[i], before.place, after.place);
        }
        return vertices;
    }

private:
    [[nodiscard]] XY localAt(std::size_t vertex) const { return local_[vertex % local_.size()]; }

    [[nodiscard]] Axis axisOf(std::size_t segment) const {
        const XY way = localAt(segment + 1) - localAt(segment);
        return std::abs(way.x) >= std::abs(way.y) ? Axis::along : Axis::across;
    }

    // The first segment after one of the other axis.
    [[nodiscard]] std::optional<std::size_t> firstOfASide() const {
        const std::size_t n = local_.size();
        for (std::size_t i = 0; i < n; ++i) {
            if (axisOf(i) != axisOf(i + n - 1)) {
                return i;
            }
        }
        return std::nullopt;
    }

    void collectSides() {
        const auto first = firstOfASide();
        for (std::size_t i = 0; first && i < local_.size(); ++i) {
            const Axis axis = axisOf(*first + i);
            if (sides_.empty() || sides_.back().axis != axis) {
                sides_.push_back({.axis = axis, .first = *first + i});
            }
            ++sides_.back().count;
        }
        for (Side& side : sides_) {
            side.place = nearestPlace(side);
        }
    }

    // The mean of the segments' middles, by their lengths.
    [[nodiscard]] double nearestPlace(const Side& side) const {
        double length = 0;
        double moment = 0;
        for (std::size_t i = side.first; i < side.first + side.count; ++i) {
            const XY from = localAt(i);
            const XY to = localAt(i + 1);
            const double weight = distance(from, to);
            length += weight;
            moment += weight * (beside(from, side.axis) + beside(to, side.axis)) / 2;
        }
        return length > 0 ? moment / length : beside(localAt(side.first), side.axis);
    }

    // From its start to before its end.
    void appendSide(std::vector<Vertex>& vertices, const Side& side, double start, double end) const {
        append(vertices, side, side.first, start);
        const double sign = end > start ? 1 : -1;
        double last = start;
        for (std::size_t i = side.first + 1; i < side.first + side.count; ++i) {
            const double place = along(localAt(i), side.axis);
            if (sign * (place - last) > 0 && sign * (end - place) > 0) {
                append(vertices, side, i, place);
                last = place;
            }
        }
    }

    // The vertex as it is on the side.
    void append(std::vector<Vertex>& vertices, const Side& side, std::size_t vertex, double place) const {
        const XY at = frame_.world(side.axis == Axis::along ? XY{place, side.place} : XY{side.place, place});
        Vertex& moved = vertices.emplace_back(ring_[vertex % ring_.size()]);
        moved.x = at.x;
        moved.y = at.y;
    }

    std::span<const Vertex> ring_;
    Frame frame_;
    std::vector<XY> local_;
    std::vector<Side> sides_;
};

} // namespace

std::vector<Vertex> rightAngled(std::span<const Vertex> ring) {
    return RightAngling(ring).result();
}

} // namespace qz
