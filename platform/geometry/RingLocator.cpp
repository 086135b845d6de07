#include "platform/geometry/RingLocator.h"

#include <algorithm>

#include "platform/geometry/Orientation.h"
#include "platform/geometry/Strokes.h"

namespace qz {

namespace {

// Below it looking at every segment is faster than a tree.
constexpr std::size_t fewSegments = 64;

std::vector<XY> strokedRing(const Path& ring, double strokeDistance) {
    if (!ring.hasArcs()) {
        return {ring.xy().begin(), ring.xy().end()};
    }
    Polygon polygon;
    polygon.rings.push_back(ring);
    const Geometry straight = straightened(polygon, strokeDistance);
    const std::span<const XY> xy = straight.as<Polygon>().rings.front().xy();
    return {xy.begin(), xy.end()};
}

Envelope envelopeOf(XY a, XY b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

// Counts the segments that the ray from the place to the right crosses; of its two ends a segment has the lower one.
class RayCrossings {
public:
    explicit RayCrossings(XY place) : place_(place) {}

    void see(XY a, XY b) {
        if (!envelopeOf(a, b).contains(place_) && (a.y > place_.y) == (b.y > place_.y)) {
            return;
        }
        const Turn side = turn(a, b, place_);
        if (side == Turn::straight) {
            isOn_ = isOn_ || envelopeOf(a, b).contains(place_);
        } else if ((a.y > place_.y) != (b.y > place_.y)) {
            isInside_ = isInside_ != ((side == Turn::left) == (b.y > a.y));
        }
    }

    [[nodiscard]] RingSide side() const {
        if (isOn_) {
            return RingSide::boundary;
        }
        return isInside_ ? RingSide::inside : RingSide::outside;
    }

private:
    XY place_;
    bool isOn_ = false;
    bool isInside_ = false;
};

} // namespace

RingLocator::RingLocator(const Path& ring, double strokeDistance) : xy_(strokedRing(ring, strokeDistance)) {
    if (xy_.size() <= fewSegments) {
        return;
    }
    std::vector<Envelope> envelopes;
    envelopes.reserve(xy_.size() - 1);
    Envelope extent;
    for (std::size_t i = 1; i < xy_.size(); ++i) {
        envelopes.push_back(envelopeOf(xy_[i - 1], xy_[i]));
        extent.expandToInclude(envelopes.back());
    }
    xMax_ = extent.xMax;
    tree_ = PackedEnvelopeTree(envelopes);
}

RingSide RingLocator::sideOf(XY place) const {
    RayCrossings crossings(place);
    if (tree_.size() == 0) {
        for (std::size_t i = 1; i < xy_.size(); ++i) {
            crossings.see(xy_[i - 1], xy_[i]);
        }
    } else {
        const Envelope ray{place.x, place.y, std::max(place.x, xMax_), place.y};
        tree_.query(ray, [&](std::size_t segment) { crossings.see(xy_[segment], xy_[segment + 1]); });
    }
    return crossings.side();
}

} // namespace qz
