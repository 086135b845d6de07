#include "platform/geometry/Path.h"

#include <algorithm>
#include <functional>

#include "platform/Error.h"
#include "platform/geometry/Orientation.h"

namespace qz {

namespace {

double valueAt(const std::vector<double>& values, std::size_t index) {
    return values.empty() ? undefined : values[index];
}

// Writes one z or m; the vector comes to life with the first defined value.
void storeValue(std::vector<double>& values, std::size_t count, std::size_t index, double value) {
    if (values.empty() && std::isnan(value)) {
        return;
    }
    values.resize(count, undefined);
    values[index] = value;
}

void dropWhenUndefined(std::vector<double>& values) {
    if (std::all_of(values.begin(), values.end(), [](double value) { return std::isnan(value); })) {
        values.clear();
    }
}

bool sameValues(const std::vector<double>& a, const std::vector<double>& b, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        if (!sameBits(valueAt(a, i), valueAt(b, i))) {
            return false;
        }
    }
    return true;
}

void appendValues(std::vector<double>& values, std::size_t count, const std::vector<double>& next,
                  std::size_t nextCount) {
    if (values.empty() && next.empty()) {
        return;
    }
    values.resize(count, undefined);
    if (next.empty()) {
        values.resize(count + nextCount - 1, undefined);
    } else {
        values.insert(values.end(), next.begin() + 1, next.end());
    }
}

ArcSense opposite(ArcSense sense) noexcept {
    return sense == ArcSense::clockwise ? ArcSense::counterClockwise : ArcSense::clockwise;
}

} // namespace

Path::Path(std::span<const Vertex> vertices) {
    reserve(vertices.size());
    for (const Vertex& vertex : vertices) {
        addVertex(vertex);
    }
}

Path::Path(std::vector<XY> coordinates, std::vector<double> z, std::vector<double> m)
    : xy_(std::move(coordinates)), z_(std::move(z)), m_(std::move(m)) {
    dropWhenUndefined(z_);
    dropWhenUndefined(m_);
}

Vertex Path::vertex(std::size_t index) const {
    return {xy_[index].x, xy_[index].y, valueAt(z_, index), valueAt(m_, index)};
}

void Path::storeVertex(std::size_t index, const Vertex& vertex) {
    xy_[index] = vertex.xy();
    storeValue(z_, xy_.size(), index, vertex.z);
    storeValue(m_, xy_.size(), index, vertex.m);
}

void Path::setVertex(std::size_t index, const Vertex& vertex) {
    storeVertex(index, vertex);
    settleArcs(index == 0 ? 0 : index - 1, index);
}

const ArcSegment* Path::arcAt(std::size_t segment) const noexcept {
    const auto found = std::ranges::lower_bound(arcs_, segment, {}, &ArcSegment::segment);
    return found != arcs_.end() && found->segment == segment ? &*found : nullptr;
}

CircularArc Path::circularArc(const ArcSegment& arc) const {
    const XY start = xy_[arc.segment];
    const auto found = arcThrough(start, arc.middle.xy(), xy_[arc.segment + 1], arc.sense);
    if (!found) {
        throw PlatformError("The control points of the arc that starts at (" + std::to_string(start.x) + ", " +
                            std::to_string(start.y) + ") do not lie on a circle.");
    }
    return *found;
}

void Path::reserve(std::size_t vertices) {
    xy_.reserve(vertices);
}

void Path::addVertex(const Vertex& vertex) {
    xy_.emplace_back();
    if (!z_.empty()) {
        z_.push_back(undefined);
    }
    if (!m_.empty()) {
        m_.push_back(undefined);
    }
    storeVertex(xy_.size() - 1, vertex);
}

void Path::addArc(const Vertex& middle, const Vertex& end, ArcSense fullCircleSense) {
    const XY start = xy_.back();
    if (arcThrough(start, middle.xy(), end.xy())) {
        addVertex(end);
        arcs_.push_back({xy_.size() - 2, middle, fullCircleSense});
        settleArcs(xy_.size() - 2, xy_.size() - 1);
        return;
    }
    if (middle.xy() != start && middle.xy() != end.xy()) {
        addVertex(middle);
    }
    addVertex(end);
}

void Path::append(const Path& next) {
    if (isEmpty()) {
        *this = next;
        return;
    }
    if (next.isEmpty()) {
        return;
    }
    const std::size_t joint = xy_.size() - 1;
    appendValues(z_, xy_.size(), next.z_, next.xy_.size());
    appendValues(m_, xy_.size(), next.m_, next.xy_.size());
    xy_.insert(xy_.end(), next.xy_.begin() + 1, next.xy_.end());
    for (ArcSegment arc : next.arcs_) {
        arc.segment += joint;
        arcs_.push_back(arc);
    }
}

void Path::reverse() {
    std::ranges::reverse(xy_);
    std::ranges::reverse(z_);
    std::ranges::reverse(m_);
    std::ranges::reverse(arcs_);
    for (ArcSegment& arc : arcs_) {
        arc.segment = segmentCount() - 1 - arc.segment;
        arc.sense = opposite(arc.sense);
    }
}

void Path::setFullCircleSense(ArcSense sense) {
    for (ArcSegment& arc : arcs_) {
        if (xy_[arc.segment] == xy_[arc.segment + 1]) {
            arc.sense = sense;
        }
    }
}

bool Path::settleSense(ArcSegment& arc) const {
    const auto circle = arcThrough(xy_[arc.segment], arc.middle.xy(), xy_[arc.segment + 1], arc.sense);
    if (circle) {
        arc.sense = circle->sweep > 0 ? ArcSense::counterClockwise : ArcSense::clockwise;
    }
    return circle.has_value();
}

void Path::settleArcs(std::size_t first, std::size_t last) {
    const auto begin = std::ranges::lower_bound(arcs_, first, {}, &ArcSegment::segment);
    const auto end = std::ranges::upper_bound(begin, arcs_.end(), last, {}, &ArcSegment::segment);
    const auto flat = std::remove_if(begin, end, [this](ArcSegment& arc) { return !settleSense(arc); });
    arcs_.erase(flat, end);
}

Envelope Path::envelope() const {
    Envelope envelope;
    for (const XY p : xy_) {
        envelope.expandToInclude(p);
    }
    for (const ArcSegment& arc : arcs_) {
        envelope.expandToInclude(circularArc(arc).quadrantEnvelope());
    }
    return envelope;
}

bool Path::hasSameXY(const Path& other) const {
    const auto sameArc = [](const ArcSegment& a, const ArcSegment& b) {
        return a.segment == b.segment && a.sense == b.sense && sameBits(a.middle.xy(), b.middle.xy());
    };
    return std::ranges::equal(xy_, other.xy_, [](XY a, XY b) { return sameBits(a, b); }) &&
           std::ranges::equal(arcs_, other.arcs_, sameArc);
}

bool Path::hasSameZ(const Path& other) const {
    const auto sameMiddle = [](const ArcSegment& a, const ArcSegment& b) { return sameBits(a.middle.z, b.middle.z); };
    return xy_.size() == other.xy_.size() && sameValues(z_, other.z_, xy_.size()) &&
           std::ranges::equal(arcs_, other.arcs_, sameMiddle);
}

bool Path::hasSameM(const Path& other) const {
    const auto sameMiddle = [](const ArcSegment& a, const ArcSegment& b) { return sameBits(a.middle.m, b.middle.m); };
    return xy_.size() == other.xy_.size() && sameValues(m_, other.m_, xy_.size()) &&
           std::ranges::equal(arcs_, other.arcs_, sameMiddle);
}

} // namespace qz
