#include "platform/geometry/InteriorPoint.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/geometry/Orientation.h"
#include "platform/geometry/Strokes.h"

namespace qz {

namespace {

Point pointAt(XY place, const Polygon& polygon) {
    return Point({place.x, place.y}, {false, false, polygon.spatialReference});
}

// First moments of an area, counter-clockwise positive, about an origin near by, so that large coordinates lose
// nothing.
struct Moments {
    XY origin;
    double area = 0;
    double x = 0;
    double y = 0;

    void addTriangle(XY a, XY b) {
        const XY u{a.x - origin.x, a.y - origin.y};
        const XY v{b.x - origin.x, b.y - origin.y};
        const double twice = u.x * v.y - u.y * v.x;
        area += twice / 2;
        x += twice * (u.x + v.x) / 6;
        y += twice * (u.y + v.y) / 6;
    }

    // Between an arc and its chord: 2/3 r³ sin³(sweep/2) from the centre, in the direction of the arc's middle.
    void addSegmentOf(const CircularArc& arc) {
        const double segment = arc.signedSegmentArea();
        const double half = std::sin(arc.sweep / 2);
        const double reach = 2.0 / 3 * std::pow(arc.radius * half, 3);
        const double middle = arc.startAngle + arc.sweep / 2;
        area += segment;
        x += segment * (arc.centre.x - origin.x) + reach * std::cos(middle);
        y += segment * (arc.centre.y - origin.y) + reach * std::sin(middle);
    }
};

void addRing(Moments& moments, const Path& ring) {
    const auto corners = ring.xy();
    for (std::size_t i = 0; i + 1 < corners.size(); ++i) {
        moments.addTriangle(corners[i], corners[i + 1]);
    }
    for (const ArcSegment& arc : ring.arcs()) {
        moments.addSegmentOf(ring.circularArc(arc));
    }
}

std::vector<double> sortedHeights(const Polygon& polygon) {
    std::vector<double> heights;
    for (const Path& ring : polygon.rings) {
        for (const XY corner : ring.xy()) {
            heights.push_back(corner.y);
        }
    }
    std::sort(heights.begin(), heights.end());
    heights.erase(std::unique(heights.begin(), heights.end()), heights.end());
    return heights;
}

// Half the height, or the middle of the wider gap beside it between vertices when one lies there.
double scanHeight(const std::vector<double>& heights) {
    const double half = heights.front() + (heights.back() - heights.front()) / 2;
    const auto above = std::lower_bound(heights.begin(), heights.end(), half);
    if (above == heights.end() || *above != half) {
        return half;
    }
    const double gapAbove = above + 1 == heights.end() ? 0 : *(above + 1) - half;
    const double gapBelow = above == heights.begin() ? 0 : half - *(above - 1);
    return gapAbove >= gapBelow ? half + gapAbove / 2 : half - gapBelow / 2;
}

std::vector<double> crossingsAt(const Polygon& polygon, double height) {
    std::vector<double> crossings;
    for (const Path& ring : polygon.rings) {
        const auto corners = ring.xy();
        for (std::size_t i = 0; i + 1 < corners.size(); ++i) {
            const XY a = corners[i];
            const XY b = corners[i + 1];
            if ((a.y < height) != (b.y < height)) {
                crossings.push_back(a.x + (b.x - a.x) * ((height - a.y) / (b.y - a.y)));
            }
        }
    }
    std::sort(crossings.begin(), crossings.end());
    return crossings;
}

std::optional<XY> middleOfLongestStretch(const Polygon& polygon) {
    const double height = scanHeight(sortedHeights(polygon));
    const std::vector<double> crossings = crossingsAt(polygon, height);
    double longest = 0;
    std::optional<XY> middle;
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
        const double stretch = crossings[i + 1] - crossings[i];
        if (stretch > longest) {
            longest = stretch;
            middle = XY{crossings[i] + stretch / 2, height};
        }
    }
    return middle;
}

// The first one when several are equally high.
Polygon highestPart(const Polygon& polygon) {
    const auto parts = polygonParts(polygon);
    const auto highest = std::max_element(parts.begin(), parts.end(), [](const auto& a, const auto& b) {
        return a.front().envelope().height() < b.front().envelope().height();
    });
    Polygon part;
    part.rings.assign(highest->begin(), highest->end());
    return part;
}

// Strokes for this purpose depart from arcs by a thousandth of the polygon's size, at most by the tolerance.
Polygon straightPolygon(const Polygon& polygon) {
    const Envelope extent = polygon.envelope();
    const double sagitta =
        std::min(polygon.spatialReference.grid().xyTolerance, std::max(extent.width(), extent.height()) / 1000);
    return straightened(polygon, sagitta).as<Polygon>();
}

} // namespace

std::optional<Point> centroid(const Polygon& polygon) {
    if (polygon.isEmpty()) {
        return std::nullopt;
    }
    const XY middle = polygon.envelope().centre();
    Moments moments{.origin = middle};
    for (const Path& ring : polygon.rings) {
        addRing(moments, ring);
    }
    if (moments.area == 0) {
        return pointAt(middle, polygon);
    }
    return pointAt({middle.x + moments.x / moments.area, middle.y + moments.y / moments.area}, polygon);
}

std::optional<Point> interiorPoint(const Polygon& polygon) {
    if (polygon.isEmpty()) {
        return std::nullopt;
    }
    const Polygon straight = straightPolygon(polygon);
    std::optional<XY> found = middleOfLongestStretch(straight);
    if (!found) {
        found = middleOfLongestStretch(highestPart(straight));
    }
    return found ? std::optional(pointAt(*found, polygon)) : std::nullopt;
}

} // namespace qz
