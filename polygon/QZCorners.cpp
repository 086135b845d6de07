#include "polygon/QZCorners.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "common/QZPlane.h"
#include "common/SegmentPath.h"
#include "platform/geometry/ArcConstruction.h"
#include "platform/geometry/Curve.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

constexpr double straight = 180;
constexpr double straightWithin = 1; // degrees

double distanceBetween(const Vertex& a, const Vertex& b) {
    return QZ_Distance2D(a.x, a.y, b.x, b.y);
}

// On the way from `a` to `b`.
Vertex along(const Vertex& a, const Vertex& b, double ratio) {
    return {std::lerp(a.x, b.x, ratio), std::lerp(a.y, b.y, ratio), std::lerp(a.z, b.z, ratio),
            std::lerp(a.m, b.m, ratio)};
}

// From the corner to the cut points; nothing where the corner is as good as straight.
std::optional<double> distanceFromCorner(const CornerSegments& segments, const CornerCut& cut, double tolerance) {
    const double angle = QZ_Angle3Points(segments.corner.xy(), segments.start.xy(), segments.end.xy());
    const double half = std::min(angle, 2 * straight - angle) * std::numbers::pi / (2 * straight);
    if (cut.form == CornerForm::chamfer) {
        const bool isFlat = cut.size * std::cos(half) <= tolerance;
        const bool isSpike = 2 * cut.size * std::sin(half) <= tolerance;
        return isFlat || isSpike ? std::nullopt : std::optional(cut.size);
    }
    return std::abs(angle - straight) <= straightWithin ? std::nullopt : std::optional(cut.size / std::tan(half));
}

Segment between(const Vertex& a, const Vertex& b) {
    return {a.xy(), b.xy()};
}

Path chamfer(const CornerCutPoints& points) {
    Path piece;
    piece.addVertex(points.from);
    piece.addVertex(points.to);
    return piece;
}

} // namespace

std::optional<CornerCutPoints> QZ_GetFromToSegs(const CornerSegments& segments, const CornerCut& cut,
                                                double tolerance) {
    const double before = distanceBetween(segments.start, segments.corner);
    const double after = distanceBetween(segments.corner, segments.end);
    const double shorter = std::min(before, after);
    if (!(shorter > cut.size)) {
        return std::nullopt;
    }
    const auto distance = distanceFromCorner(segments, cut, tolerance);
    if (!distance || !(shorter - *distance > tolerance)) {
        return std::nullopt;
    }
    return CornerCutPoints{along(segments.corner, segments.start, *distance / before),
                           along(segments.corner, segments.end, *distance / after)};
}

Path QZ_FilletArc(const CornerSegments& segments, const CornerCutPoints& points, double radius) {
    const XY inside = (segments.start.xy() + segments.end.xy()) * 0.5;
    const Path arc =
        filletArc(between(segments.start, segments.corner), between(segments.corner, segments.end), radius, inside);
    Vertex middle = along(points.from, points.to, 0.5);
    middle.x = arc.arcs().front().middle.x;
    middle.y = arc.arcs().front().middle.y;
    Path piece;
    piece.addVertex(points.from);
    piece.addArc(middle, points.to);
    return piece;
}

CornerCutting::CornerCutting(const Path& path, const CornerCut& cut, double tolerance)
    : path_(path), cut_(cut), tolerance_(tolerance), pieces_(path.vertexCount()) {
    for (std::size_t i = 0; i < path.segmentCount(); ++i) {
        starts_.push_back(path.vertex(i));
        ends_.push_back(path.vertex(i + 1));
    }
}

bool CornerCutting::isCorner(std::size_t vertex) const {
    const bool hasSegmentAfter = vertex < path_.segmentCount() || (vertex == path_.segmentCount() && path_.isClosed());
    return vertex > 0 && hasSegmentAfter && path_.segmentCount() > 1;
}

std::size_t CornerCutting::segmentAfter(std::size_t vertex) const {
    return vertex == path_.segmentCount() ? 0 : vertex;
}

std::optional<Path> CornerCutting::pieceAt(std::size_t vertex) const {
    if (!isCorner(vertex) || !pieces_[vertex].isEmpty()) {
        return std::nullopt;
    }
    const std::size_t next = segmentAfter(vertex);
    if (path_.arcAt(vertex - 1) || path_.arcAt(next)) {
        return std::nullopt;
    }
    const CornerSegments segments{starts_[vertex - 1], path_.vertex(vertex), ends_[next]};
    const auto points = QZ_GetFromToSegs(segments, cut_, tolerance_);
    if (!points) {
        return std::nullopt;
    }
    return cut_.form == CornerForm::chamfer ? chamfer(*points) : QZ_FilletArc(segments, *points, cut_.size);
}

void CornerCutting::replace(std::size_t vertex, const Path& piece) {
    ends_[vertex - 1] = piece.front();
    starts_[segmentAfter(vertex)] = piece.back();
    pieces_[vertex] = piece;
}

Path CornerCutting::result() const {
    Path cut;
    if (starts_.empty()) {
        return path_;
    }
    cut.addVertex(starts_.front());
    forEachSegment(path_, [&](std::size_t i, const CurveSegment& segment) {
        appendStretch(cut, segment, 0, 1, ends_[i]);
        if (!pieces_[i + 1].isEmpty()) {
            cut.append(pieces_[i + 1]);
        }
    });
    return cut;
}

CornerObstacles::CornerObstacles(const Polygon& polygon) : polygon_(polygon) {
    std::vector<Envelope> envelopes;
    for (std::size_t ring = 0; ring < polygon.rings.size(); ++ring) {
        forEachSegment(polygon.rings[ring], [&](std::size_t i, const CurveSegment& segment) {
            segments_.push_back({ring, i});
            envelopes.push_back(segment.envelope());
        });
    }
    tree_ = PackedEnvelopeTree(envelopes);
}

bool CornerObstacles::block(std::size_t ring, std::size_t vertex, const Path& piece) const {
    const Path& path = polygon_.rings[ring];
    const std::size_t after = vertex == path.segmentCount() ? 0 : vertex;
    Polygon cutOff;
    static_cast<GeometryTraits&>(cutOff) = polygon_;
    Path& outline = cutOff.rings.emplace_back(piece);
    outline.addVertex(path.vertex(vertex));
    outline.addVertex(piece.front());
    if (!isExterior(outline)) {
        outline.reverse();
    }
    Polyline others;
    static_cast<GeometryTraits&>(others) = polygon_;
    tree_.query(cutOff.envelope(), [&](std::size_t found) {
        const auto [foundRing, segment] = segments_[found];
        if (foundRing != ring || (segment != vertex - 1 && segment != after)) {
            others.paths.push_back(segmentPath(polygon_.rings[foundRing], segment));
        }
    });
    return !others.paths.empty() && intersects(cutOff, others);
}

} // namespace qz
