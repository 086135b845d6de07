#include "platform/geometry/SegmentIndex.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "platform/geometry/Orientation.h"

namespace qz {

namespace {

Envelope envelopeOf(const Segment& segment) {
    Envelope envelope;
    envelope.expandToInclude(segment.start);
    envelope.expandToInclude(segment.end);
    return envelope;
}

double distanceTo(const Segment& segment, XY p) noexcept {
    const XY along{segment.end.x - segment.start.x, segment.end.y - segment.start.y};
    const XY toPoint{p.x - segment.start.x, p.y - segment.start.y};
    const double square = along.x * along.x + along.y * along.y;
    const double ratio = square > 0 ? std::clamp((toPoint.x * along.x + toPoint.y * along.y) / square, 0.0, 1.0) : 0.0;
    return std::hypot(toPoint.x - ratio * along.x, toPoint.y - ratio * along.y);
}

bool cross(const Segment& a, const Segment& b) noexcept {
    return areOpposite(turn(a.start, a.end, b.start), turn(a.start, a.end, b.end)) &&
           areOpposite(turn(b.start, b.end, a.start), turn(b.start, b.end, a.end));
}

void appendSegments(std::vector<Segment>& segments, const std::vector<Path>& paths) {
    for (const Path& path : paths) {
        const std::span<const XY> xy = path.xy();
        if (xy.size() == 1) {
            segments.push_back({xy[0], xy[0]});
        }
        for (std::size_t i = 1; i < xy.size(); ++i) {
            segments.push_back({xy[i - 1], xy[i]});
        }
    }
}

} // namespace

std::vector<Segment> segmentsOf(const Geometry& geometry) {
    std::vector<Segment> segments;
    if (const Polyline* polyline = geometry.getIf<Polyline>()) {
        appendSegments(segments, polyline->paths);
    } else if (const Polygon* polygon = geometry.getIf<Polygon>()) {
        appendSegments(segments, polygon->rings);
    } else {
        forEachVertex(geometry, [&segments](const Vertex& vertex) { segments.push_back({vertex.xy(), vertex.xy()}); });
    }
    return segments;
}

double distanceBetween(const Segment& a, const Segment& b) noexcept {
    if (cross(a, b)) {
        return 0;
    }
    return std::min({distanceTo(a, b.start), distanceTo(a, b.end), distanceTo(b, a.start), distanceTo(b, a.end)});
}

SegmentIndex::SegmentIndex(const Geometry& geometry) : segments_(segmentsOf(geometry)) {
    std::vector<Envelope> envelopes;
    envelopes.reserve(segments_.size());
    std::ranges::transform(segments_, std::back_inserter(envelopes), envelopeOf);
    tree_ = PackedEnvelopeTree(envelopes);
}

bool SegmentIndex::isWithin(double distance, const Segment& segment) const {
    return !tree_.queryWhile(envelopeOf(segment).expandedBy(distance, distance), [&](std::size_t index) {
        return !(distanceBetween(segments_[index], segment) <= distance);
    });
}

bool SegmentIndex::isWithin(double distance, const Geometry& other) const {
    const std::vector<Segment> segments = segmentsOf(other);
    return std::ranges::any_of(segments, [&](const Segment& segment) { return isWithin(distance, segment); });
}

bool SegmentIndex::isClearOf(const Envelope& window) const {
    return tree_.queryWhile(window, [](std::size_t) { return false; });
}

std::vector<Path> SegmentIndex::linesIn(const Envelope& window) const {
    std::vector<std::size_t> indexes;
    tree_.query(window, [&indexes](std::size_t index) { indexes.push_back(index); });
    std::ranges::sort(indexes);
    std::vector<std::vector<XY>> lines;
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        const Segment& segment = segments_[indexes[i]];
        const bool goesOn = i > 0 && indexes[i - 1] + 1 == indexes[i] && lines.back().back() == segment.start;
        if (!goesOn) {
            lines.push_back({segment.start});
        }
        lines.back().push_back(segment.end);
    }
    std::vector<Path> paths;
    std::ranges::transform(lines, std::back_inserter(paths), [](std::vector<XY>& xy) { return Path(std::move(xy)); });
    return paths;
}

} // namespace qz
