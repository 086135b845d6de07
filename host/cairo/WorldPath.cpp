#include "host/cairo/WorldPath.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

namespace qz {

namespace {

constexpr double visibleStep = 0.25;         // pixels
constexpr double farthestPixel = 1000000;    // well inside Cairo's 24 bits before the point
constexpr double clippingMargin = 1000;      // pixels: wider than any pen, so that cuts along it stay unseen
constexpr double largestStrokeAngle = 0.005; // radians, for arcs too large to be handed to Cairo

class PathBuilder {
public:
    PathBuilder(cairo_t* context, const WorldToPixels& toPixels) : context_(context), toPixels_(toPixels) {}

    void add(const Path& path);

private:
    void addStraight(XY end, bool isLast);
    void addArc(const CircularArc& arc, XY end);

    cairo_t* context_;
    const WorldToPixels& toPixels_;
    XY last_; // in pixels
};

void PathBuilder::addStraight(XY end, bool isLast) {
    const bool isVisible = std::hypot(end.x - last_.x, end.y - last_.y) >= visibleStep;
    if (isVisible || isLast) {
        cairo_line_to(context_, end.x, end.y);
        last_ = end;
    }
}

void PathBuilder::addArc(const CircularArc& arc, XY end) {
    // With y downward angles change their sign, and with it the sense of the arc.
    const XY centre = toPixels_(arc.centre);
    const auto draw = arc.sweep > 0 ? cairo_arc_negative : cairo_arc;
    draw(context_, centre.x, centre.y, arc.radius * toPixels_.scale, -arc.startAngle, -arc.startAngle - arc.sweep);
    last_ = end;
}

void PathBuilder::add(const Path& path) {
    if (path.isEmpty()) {
        return;
    }
    last_ = toPixels_(path.xy().front());
    cairo_move_to(context_, last_.x, last_.y);
    for (std::size_t i = 0; i < path.segmentCount(); ++i) {
        const XY end = toPixels_(path.xy()[i + 1]);
        if (const ArcSegment* arc = path.arcAt(i)) {
            addArc(path.circularArc(*arc), end);
        } else {
            addStraight(end, i + 1 == path.segmentCount());
        }
    }
}

std::vector<XY> strokedInPixels(const Path& path, const WorldToPixels& toPixels) {
    std::vector<XY> points;
    for (std::size_t i = 0; i < path.vertexCount(); ++i) {
        points.push_back(toPixels(path.xy()[i]));
        if (const ArcSegment* segment = path.arcAt(i)) {
            const CircularArc arc = path.circularArc(*segment);
            const double strokes = std::ceil(std::abs(arc.sweep) / largestStrokeAngle);
            for (double k = 1; k < strokes; ++k) {
                points.push_back(toPixels(arc.at(k / strokes)));
            }
        }
    }
    return points;
}

// A half plane bounded by a line parallel to an axis: side * (coordinate - limit) <= 0.
struct HalfPlane {
    double XY::*coordinate;
    double limit;
    double side; // 1 keeps what is below the limit, -1 what is above

    [[nodiscard]] bool contains(XY p) const { return side * (p.*coordinate - limit) <= 0; }
    [[nodiscard]] XY crossing(XY a, XY b) const {
        const double ratio = (limit - a.*coordinate) / (b.*coordinate - a.*coordinate);
        return {a.x + ratio * (b.x - a.x), a.y + ratio * (b.y - a.y)};
    }
};

std::vector<HalfPlane> sidesOf(const Envelope& window) {
    return {{&XY::x, window.xMax, 1}, {&XY::x, window.xMin, -1}, {&XY::y, window.yMax, 1}, {&XY::y, window.yMin, -1}};
}

std::optional<std::pair<XY, XY>> clipped(XY a, XY b, const std::vector<HalfPlane>& sides) {
    for (const HalfPlane& side : sides) {
        if (!side.contains(a) && !side.contains(b)) {
            return std::nullopt;
        }
        if (!side.contains(a)) {
            a = side.crossing(a, b);
        } else if (!side.contains(b)) {
            b = side.crossing(a, b);
        }
    }
    return std::pair(a, b);
}

// After I. E. Sutherland and G. W. Hodgman, "Reentrant polygon clipping", 1974: one side of the window after the other.
std::vector<XY> clippedRing(std::vector<XY> ring, const std::vector<HalfPlane>& sides) {
    for (const HalfPlane& side : sides) {
        std::vector<XY> kept;
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const XY a = ring[i == 0 ? ring.size() - 1 : i - 1];
            const XY b = ring[i];
            if (side.contains(a) != side.contains(b)) {
                kept.push_back(side.crossing(a, b));
            }
            if (side.contains(b)) {
                kept.push_back(b);
            }
        }
        ring = std::move(kept);
    }
    return ring;
}

void addClippedRing(cairo_t* context, const std::vector<XY>& ring, const std::vector<HalfPlane>& sides) {
    cairo_new_sub_path(context);
    for (const XY p : clippedRing(ring, sides)) {
        cairo_line_to(context, p.x, p.y);
    }
}

void addClippedLine(cairo_t* context, const std::vector<XY>& line, const std::vector<HalfPlane>& sides) {
    for (std::size_t i = 1; i < line.size(); ++i) {
        if (const auto piece = clipped(line[i - 1], line[i], sides)) {
            cairo_move_to(context, piece->first.x, piece->first.y);
            cairo_line_to(context, piece->second.x, piece->second.y);
        }
    }
}

bool isNear(const Envelope& world, const WorldToPixels& toPixels) {
    const XY lowerLeft = toPixels({world.xMin, world.yMin});
    const XY upperRight = toPixels({world.xMax, world.yMax});
    const Envelope limits{-farthestPixel, -farthestPixel, farthestPixel, farthestPixel};
    return limits.contains(lowerLeft) && limits.contains(upperRight);
}

// Rings are closed by Cairo, so that their joins are round at the first vertex, too.
void addNear(cairo_t* context, const Path& path, bool isRing, const WorldToPixels& toPixels) {
    PathBuilder(context, toPixels).add(path);
    if (isRing) {
        cairo_close_path(context);
    }
}

void addFar(cairo_t* context, const Path& path, bool isRing, const WorldToPixels& toPixels, const Envelope& area) {
    const std::vector<HalfPlane> sides = sidesOf(area.expandedBy(clippingMargin, clippingMargin));
    const std::vector<XY> points = strokedInPixels(path, toPixels);
    if (isRing) {
        addClippedRing(context, points, sides);
        cairo_close_path(context);
    } else {
        addClippedLine(context, points, sides);
    }
}

} // namespace

void addToPath(cairo_t* context, const Geometry& geometry, const WorldToPixels& toPixels, const Envelope& area) {
    const bool isPolygon = geometry.kind() == GeometryKind::polygon;
    const std::vector<Path>& paths = isPolygon ? geometry.as<Polygon>().rings : geometry.as<Polyline>().paths;
    for (const Path& path : paths) {
        if (isNear(path.envelope(), toPixels)) {
            addNear(context, path, isPolygon, toPixels);
        } else if (!path.isEmpty()) {
            addFar(context, path, isPolygon, toPixels, area);
        }
    }
}

} // namespace qz
