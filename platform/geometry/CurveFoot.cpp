#include "platform/geometry/CurveFoot.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "platform/Error.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

std::optional<CurveSegment> firstWithLength(const Path& path, std::size_t from) {
    for (std::size_t i = from; i < path.segmentCount(); ++i) {
        if (const CurveSegment segment(path, i); segment.length() > 0) {
            return segment;
        }
    }
    return std::nullopt;
}

std::optional<CurveSegment> lastWithLength(const Path& path, std::size_t end) {
    for (std::size_t i = end; i > 0; --i) {
        if (const CurveSegment segment(path, i - 1); segment.length() > 0) {
            return segment;
        }
    }
    return std::nullopt;
}

// The segment that comes in to a vertex, around the ring where the path is closed.
std::optional<CurveSegment> incoming(const Path& path, std::size_t vertex) {
    const auto segment = lastWithLength(path, vertex);
    return segment || !path.isClosed() ? segment : lastWithLength(path, path.segmentCount());
}

std::optional<CurveSegment> outgoing(const Path& path, std::size_t vertex) {
    const auto segment = firstWithLength(path, vertex);
    return segment || !path.isClosed() ? segment : firstWithLength(path, 0);
}

Turn sideOfCorner(const CurveSegment& in, const CurveSegment& out, XY p) {
    const XY arriving = in.direction(1);
    const XY leaving = out.direction(0);
    const double left = cross({arriving.x + leaving.x, arriving.y + leaving.y}, p - out.start());
    if (left == 0) {
        return in.sideOf(p, 1); // the line turns back on itself
    }
    return left > 0 ? Turn::left : Turn::right;
}

Turn sideOfVertex(const Path& path, std::size_t vertex, XY p) {
    const auto in = incoming(path, vertex);
    const auto out = outgoing(path, vertex);
    if (in && out) {
        return sideOfCorner(*in, *out, p);
    }
    if (in) {
        return in->sideOf(p, 1);
    }
    return out ? out->sideOf(p, 0) : Turn::straight;
}

// A point that is off the curve by no more than the rounding of its coordinates is on it.
bool isOff(double distance, XY p) noexcept {
    return distance > 4 * std::numeric_limits<double>::epsilon() * std::max(std::abs(p.x), std::abs(p.y));
}

bool isRightOf(const Path& path, const Foot& foot, XY p) {
    if (path.segmentCount() == 0) {
        return false;
    }
    if (foot.ratio <= 0 || foot.ratio >= 1) {
        return sideOfVertex(path, foot.segment + (foot.ratio >= 1 ? 1 : 0), p) == Turn::right;
    }
    return CurveSegment(path, foot.segment).sideOf(p, foot.ratio) == Turn::right;
}

// A straight line from an end of the curve outward.
struct Extension {
    CurveSegment segment;
    double ratio; // the end of the segment that is extended
    std::size_t part;
    std::size_t index;

    [[nodiscard]] XY origin() const { return segment.at(ratio); }
    [[nodiscard]] double distanceAhead(XY p) const { return dot(segment.direction(ratio), p - origin()); }
    [[nodiscard]] double distanceFrom(XY p) const { return std::abs(cross(segment.direction(ratio), p - origin())); }
};

CurvePosition positionAt(const Extension& extension, XY p, double endDistance, double length) {
    const double ahead = extension.distanceAhead(p);
    const XY direction = extension.segment.direction(extension.ratio);
    const XY origin = extension.origin();
    CurvePosition position;
    position.nearest = {origin.x + direction.x * ahead, origin.y + direction.y * ahead};
    position.distanceAlong = endDistance + ahead;
    position.ratioAlong = position.distanceAlong / length;
    position.distanceFrom = extension.distanceFrom(p);
    position.onRightSide =
        isOff(position.distanceFrom, p) && extension.segment.sideOf(p, extension.ratio) == Turn::right;
    position.part = extension.part;
    position.segment = extension.index;
    position.segmentRatio = extension.ratio;
    return position;
}

std::optional<Extension> extensionAtStart(const Curve& curve) {
    const std::size_t part = startPlace(curve).part;
    const Path& path = curve.parts()[part];
    const auto segment = path.isClosed() ? std::nullopt : firstWithLength(path, 0);
    return segment ? std::optional<Extension>({*segment, 0, part, 0}) : std::nullopt;
}

std::optional<Extension> extensionAtEnd(const Curve& curve) {
    const CurvePlace end = endPlace(curve);
    const Path& path = curve.parts()[end.part];
    const auto segment = path.isClosed() ? std::nullopt : lastWithLength(path, end.segment);
    return segment ? std::optional<Extension>({*segment, 1, end.part, end.segment - 1}) : std::nullopt;
}

} // namespace

void requireFinite(XY point) {
    if (!isFinite(point)) {
        throw PlatformError("The position on a curve can't be found: the point (" + std::to_string(point.x) + ", " +
                            std::to_string(point.y) + ") is not finite.");
    }
}

Foot footOn(const CurveSegment& segment, XY p) {
    Foot foot;
    foot.ratio = segment.nearestRatio(p);
    foot.square = segment.squaredDistance(p, foot.ratio);
    return foot;
}

Foot footOnVertex(const Path& path, XY p) {
    const XY offset = p - path.xy()[0];
    return {.square = dot(offset, offset)};
}

CurvePosition positionAt(const Path& path, const Foot& foot, XY p, double length) {
    CurvePosition position;
    position.nearest = path.segmentCount() == 0 ? path.front() : CurveSegment(path, foot.segment).vertexAt(foot.ratio);
    position.distanceAlong = foot.distanceAlong();
    position.ratioAlong = length > 0 ? position.distanceAlong / length : 0;
    position.distanceFrom = std::sqrt(foot.square);
    position.onRightSide = isOff(position.distanceFrom, p) && isRightOf(path, foot, p);
    position.part = foot.part;
    position.segment = foot.segment;
    position.segmentRatio = foot.ratio;
    return position;
}

CurvePosition extended(const CurvePosition& within, const Curve& curve, double length, XY p) {
    CurvePosition best = within;
    const auto start = extensionAtStart(curve);
    if (start && start->distanceAhead(p) < 0 && start->distanceFrom(p) <= best.distanceFrom) {
        best = positionAt(*start, p, 0, length);
    }
    const auto end = extensionAtEnd(curve);
    if (end && end->distanceAhead(p) > 0 && end->distanceFrom(p) < best.distanceFrom) {
        best = positionAt(*end, p, length, length);
    }
    return best;
}

} // namespace qz
