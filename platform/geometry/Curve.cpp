#include "platform/geometry/Curve.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include "platform/Error.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

using std::numbers::pi;

constexpr double epsilon = std::numeric_limits<double>::epsilon();

double between(double from, double to, double ratio) noexcept {
    return from == to ? from : from + (to - from) * ratio;
}

double nearestRatioOnStraight(XY a, XY b, XY p) noexcept {
    const XY along{b.x - a.x, b.y - a.y};
    const double projected = (p.x - a.x) * along.x + (p.y - a.y) * along.y;
    if (!(projected > 0)) {
        return 0;
    }
    const double square = along.x * along.x + along.y * along.y;
    return projected >= square ? 1 : projected / square;
}

double squaredDistanceBetween(XY a, XY b) noexcept {
    return (b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y);
}

double squaredDistanceOnStraight(XY a, XY b, XY p, double ratio) noexcept {
    if (ratio >= 1) {
        return squaredDistanceBetween(p, b);
    }
    // From the start, so that large coordinates cost no digits.
    return squaredDistanceBetween({p.x - a.x, p.y - a.y}, {(b.x - a.x) * ratio, (b.y - a.y) * ratio});
}

// Whether a stretch of the arc departs from its chord by more than coordinates of that size are rounded.
bool isCurved(const CircularArc& circle, double sweep, XY end) noexcept {
    const double quarter = std::sin(sweep / 4);
    const double sagitta = 2 * circle.radius * quarter * quarter;
    return sagitta > 4 * epsilon * std::max(std::abs(end.x), std::abs(end.y));
}

// Distances along a curve that differ by less are the same: what multiplying with a ratio costs in rounding.
double roundingOf(double length) noexcept {
    return 4 * epsilon * length;
}

// Takes the distances one after the other while the walk passes them.
class PlaceFinder {
public:
    PlaceFinder(std::span<const double> distances, double rounding) : distances_(distances), rounding_(rounding) {}

    // Returns the distance at which the part ends.
    double passPart(std::size_t part, const Path& path, double before) {
        double sum = 0;
        forEachSegment(path, [&](std::size_t i, const CurveSegment& segment) {
            const double from = before + sum;
            sum += segment.length();
            passSegment({part, i, 0}, from, before + sum);
        });
        if (path.segmentCount() > 0) {
            takeWhile(before + sum + rounding_, [&](double) { return CurvePlace{part, path.segmentCount(), 0}; });
        }
        return before + sum;
    }

    std::vector<CurvePlace> finish(const CurvePlace& end) {
        places_.resize(distances_.size(), end);
        return std::move(places_);
    }

private:
    void passSegment(CurvePlace start, double from, double to) {
        takeWhile(std::nextafter(to - rounding_, from), [&](double distance) {
            const bool atStart = distance <= from + rounding_;
            return CurvePlace{start.part, start.segment, atStart ? 0 : (distance - from) / (to - from)};
        });
    }

    template <typename PlaceOf> void takeWhile(double last, PlaceOf placeOf) {
        while (places_.size() < distances_.size() && distances_[places_.size()] <= last) {
            places_.push_back(placeOf(distances_[places_.size()]));
        }
    }

    std::span<const double> distances_;
    double rounding_;
    std::vector<CurvePlace> places_;
};

} // namespace

bool Curve::isEmpty() const noexcept {
    return std::ranges::all_of(parts_, [](const Path& path) { return path.isEmpty(); });
}

double Curve::lengthFor(std::string_view operation) const {
    double total = 0;
    for (const Path& path : parts_) {
        double sum = path.vertexCount() == 1 && !isFinite(path.xy()[0]) ? undefined : 0;
        forEachSegment(path, [&sum](std::size_t, const CurveSegment& segment) { sum += segment.length(); });
        total += sum;
    }
    if (!std::isfinite(total)) {
        throw PlatformError("The " + std::string(operation) +
                            " can't be found: the curve has coordinates that are not finite.");
    }
    return total;
}

CurveSegment::CurveSegment(const Path& path, std::size_t segment, const ArcSegment* arc)
    : path_(&path), index_(segment), arc_(arc), start_(path.xy()[segment]), end_(path.xy()[segment + 1]) {
    if (arc_ != nullptr) {
        circle_ = path.circularArc(*arc_);
    }
}

double CurveSegment::length() const noexcept {
    return circle_ ? circle_->length() : std::hypot(end_.x - start_.x, end_.y - start_.y);
}

Envelope CurveSegment::envelope() const {
    Envelope envelope = circle_ ? circle_->envelope() : Envelope();
    envelope.expandToInclude(start_);
    envelope.expandToInclude(end_);
    return envelope;
}

XY CurveSegment::at(double ratio) const noexcept {
    if (ratio <= 0) {
        return start_;
    }
    if (ratio >= 1) {
        return end_;
    }
    return circle_ ? circle_->at(ratio) : XY{between(start_.x, end_.x, ratio), between(start_.y, end_.y, ratio)};
}

double CurveSegment::valueAt(double ratio, double Vertex::*value) const {
    const double from = path_->vertex(index_).*value;
    const double to = path_->vertex(index_ + 1).*value;
    if (arc_ == nullptr || std::isnan(arc_->middle.*value)) {
        return between(from, to, ratio);
    }
    const double middle = arc_->middle.*value;
    const double middleRatio = circle_->ratioOf(arc_->middle.xy());
    return ratio <= middleRatio ? between(from, middle, ratio / middleRatio)
                                : between(middle, to, (ratio - middleRatio) / (1 - middleRatio));
}

Vertex CurveSegment::vertexAt(double ratio) const {
    if (ratio <= 0) {
        return path_->vertex(index_);
    }
    if (ratio >= 1) {
        return path_->vertex(index_ + 1);
    }
    const XY xy = at(ratio);
    return {xy.x, xy.y, valueAt(ratio, &Vertex::z), valueAt(ratio, &Vertex::m)};
}

XY CurveSegment::direction(double ratio) const noexcept {
    if (circle_) {
        const double angle = circle_->startAngle + circle_->sweep * ratio;
        const double sign = circle_->sweep < 0 ? -1 : 1;
        return {-sign * std::sin(angle), sign * std::cos(angle)};
    }
    const double size = length();
    return size > 0 ? XY{(end_.x - start_.x) / size, (end_.y - start_.y) / size} : XY{};
}

double CurveSegment::nearestRatio(XY p) const noexcept {
    if (!circle_) {
        return nearestRatioOnStraight(start_, end_, p);
    }
    if (p == circle_->centre) {
        return 0;
    }
    const double ratio = circle_->ratioOf(p);
    if (ratio <= 1) {
        return ratio;
    }
    return squaredDistanceBetween(p, end_) < squaredDistanceBetween(p, start_) ? 1 : 0;
}

double CurveSegment::squaredDistance(XY p, double ratio) const noexcept {
    return circle_ ? squaredDistanceBetween(p, at(ratio)) : squaredDistanceOnStraight(start_, end_, p, ratio);
}

Turn CurveSegment::sideOf(XY p, double ratio) const noexcept {
    if (!circle_) {
        return turn(start_, end_, p);
    }
    const XY foot = at(ratio);
    const double left = cross(direction(ratio), {p.x - foot.x, p.y - foot.y});
    return left > 0 ? Turn::left : left < 0 ? Turn::right : Turn::straight;
}

void appendStretch(Path& target, const CurveSegment& segment, double from, double to, const Vertex& end) {
    if (!segment.circle()) {
        target.addVertex(end);
        return;
    }
    const CircularArc& circle = *segment.circle();
    const double sweep = circle.sweep * (to - from);
    const bool whole = from <= 0 && to >= 1;
    const bool collapsed = target.back().xy() == end.xy() && std::abs(sweep) < pi;
    if (collapsed || (!whole && !isCurved(circle, sweep, end.xy()))) {
        target.addVertex(end);
        return;
    }
    target.addArc(whole ? segment.arc().middle : segment.vertexAt((from + to) / 2), end,
                  circle.sweep > 0 ? ArcSense::counterClockwise : ArcSense::clockwise);
}

CurvePlace startPlace(const Curve& curve) {
    const auto part = std::ranges::find_if(curve.parts(), [](const Path& path) { return !path.isEmpty(); });
    return {static_cast<std::size_t>(part - curve.parts().begin()), 0, 0};
}

CurvePlace endPlace(const Curve& curve) {
    std::size_t part = curve.parts().size() - 1;
    while (curve.parts()[part].isEmpty()) {
        --part;
    }
    return {part, curve.parts()[part].segmentCount(), 0};
}

Vertex vertexAt(const Curve& curve, const CurvePlace& place) {
    const Path& path = curve.parts()[place.part];
    return place.ratio > 0 ? CurveSegment(path, place.segment).vertexAt(place.ratio) : path.vertex(place.segment);
}

std::vector<CurvePlace> placesAt(const Curve& curve, double length, std::span<const double> ascendingDistances) {
    PlaceFinder finder(ascendingDistances, roundingOf(length));
    double before = 0;
    for (std::size_t part = 0; part < curve.parts().size(); ++part) {
        before = finder.passPart(part, curve.parts()[part], before);
    }
    return finder.finish(endPlace(curve));
}

} // namespace qz
