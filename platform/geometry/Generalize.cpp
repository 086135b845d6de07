#include "platform/geometry/Generalize.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/Error.h"
#include "platform/geometry/CoordinateLimits.h"
#include "platform/geometry/Curve.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/Strokes.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

// Strokes depart from their arc by this share of the offset; what is left is for leaving out vertices.
constexpr double strokeShare = 1.0 / 16;
constexpr double maximumStrokes = 1e8;

// The path without arcs.
struct Outline {
    std::vector<Vertex> vertices;
    // How far the shape departs from the straight segments at a vertex.
    std::vector<double> departures;
};

void requireStrokes(const CircularArc& circle, double sagitta) {
    const double turn = 4 * std::asin(std::min(std::sqrt(sagitta / circle.radius / 2), 0.5));
    const double strokes = std::abs(circle.sweep) / turn;
    if (!(strokes <= maximumStrokes)) {
        throw PlatformError("A shape can't be generalized: within so small an offset an arc of radius " +
                            std::to_string(circle.radius) + " takes " + std::to_string(strokes) + " segments.");
    }
}

void appendStrokes(Outline& outline, const CurveSegment& segment, double sagitta) {
    const CircularArc& circle = *segment.circle();
    requireStrokes(circle, sagitta);
    outline.departures.back() = sagitta;
    for (const XY stroke : strokePoints(circle, sagitta)) {
        Vertex vertex = segment.vertexAt(circle.ratioOf(stroke));
        vertex.x = stroke.x;
        vertex.y = stroke.y;
        outline.vertices.push_back(vertex);
        outline.departures.push_back(sagitta);
    }
}

Outline outlineOf(const Path& path, double sagitta) {
    Outline outline;
    if (!path.isEmpty()) {
        outline.vertices.push_back(path.front());
        outline.departures.push_back(0);
    }
    forEachSegment(path, [&](std::size_t i, const CurveSegment& segment) {
        if (segment.circle()) {
            appendStrokes(outline, segment, sagitta);
        }
        outline.vertices.push_back(path.vertex(i + 1));
        outline.departures.push_back(segment.circle() ? sagitta : 0);
    });
    return outline;
}

struct Range {
    std::size_t first;
    std::size_t last;
};

struct Farthest {
    std::size_t index = 0;
    double offset = 0;
};

// A straight segment made ready for the distances of many points.
class StraightSegment {
public:
    StraightSegment(XY start, XY end)
        : start_(start), end_(end), along_(end - start), squaredLength_(dot(along_, along_)),
          inverse_(squaredLength_ > 0 ? 1 / squaredLength_ : 0) {}

    [[nodiscard]] double squaredDistance(XY p) const {
        const XY offset = p - start_;
        const double ahead = dot(offset, along_);
        if (ahead <= 0) {
            return dot(offset, offset);
        }
        const double area = cross(along_, offset);
        return ahead < squaredLength_ ? area * area * inverse_ : dot(p - end_, p - end_);
    }

private:
    XY start_;
    XY end_;
    XY along_;
    double squaredLength_;
    double inverse_;
};

// The vertex strictly inside the range that is farthest from the segment between its ends; of several the first.
Farthest farthestFrom(const Outline& outline, Range range) {
    const StraightSegment segment(outline.vertices[range.first].xy(), outline.vertices[range.last].xy());
    Farthest farthest;
    for (std::size_t i = range.first + 1; i < range.last; ++i) {
        const double square = segment.squaredDistance(outline.vertices[i].xy());
        const double needed = std::max(farthest.offset - outline.departures[i], 0.0);
        if (square > needed * needed) {
            farthest = {i, std::sqrt(square) + outline.departures[i]};
        }
    }
    return farthest;
}

// Marks the vertices between `first` and `last` that stay.
void markKept(const Outline& outline, Range whole, double maximumOffset, std::vector<bool>& kept) {
    std::vector<Range> pending{whole};
    while (!pending.empty()) {
        const Range range = pending.back();
        pending.pop_back();
        const Farthest farthest = farthestFrom(outline, range);
        if (farthest.offset > maximumOffset) {
            kept[farthest.index] = true;
            pending.push_back({range.first, farthest.index});
            pending.push_back({farthest.index, range.last});
        }
    }
}

Path keptVertices(const Outline& outline, const std::vector<bool>& kept) {
    Path path;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        if (kept[i]) {
            path.addVertex(outline.vertices[i]);
        }
    }
    return path;
}

Path generalizedPath(const Path& path, double maximumOffset) {
    if (path.segmentCount() == 0) {
        return path;
    }
    const Outline outline = outlineOf(path, maximumOffset * strokeShare);
    const std::size_t last = outline.vertices.size() - 1;
    std::vector<bool> kept(last + 1, false);
    kept.front() = kept.back() = true;
    markKept(outline, {0, last}, maximumOffset, kept);
    return keptVertices(outline, kept);
}

std::size_t farthestFromStart(const Outline& outline) {
    const XY start = outline.vertices.front().xy();
    const auto distance = [start](const Vertex& vertex) { return std::hypot(vertex.x - start.x, vertex.y - start.y); };
    return static_cast<std::size_t>(std::ranges::max_element(outline.vertices, {}, distance) -
                                    outline.vertices.begin());
}

// Of a closed ring.
Path generalizedRing(const Path& ring, double maximumOffset) {
    const Outline outline = outlineOf(ring, maximumOffset * strokeShare);
    const std::size_t last = outline.vertices.size() - 1;
    const std::size_t opposite = farthestFromStart(outline);
    std::vector<bool> kept(last + 1, false);
    kept.front() = kept[opposite] = kept.back() = true;
    markKept(outline, {0, opposite}, maximumOffset, kept);
    markKept(outline, {opposite, last}, maximumOffset, kept);
    return keptVertices(outline, kept);
}

bool hasThreeDistinctVertices(const Path& ring) {
    const std::span<const XY> xy = ring.xy();
    const XY first = xy.empty() ? XY{} : xy.front();
    const auto second = std::ranges::find_if(xy, [first](XY p) { return p != first; });
    return second != xy.end() && std::any_of(second, xy.end(), [&](XY p) { return p != first && p != *second; });
}

// The rings of a part that are left; none without its exterior ring.
std::vector<Path> generalizedPart(std::span<const Path> part, double maximumOffset) {
    std::vector<Path> rings;
    for (const Path& ring : part) {
        Path generalized = ring.isEmpty() ? ring : generalizedRing(ring, maximumOffset);
        const bool stays = hasThreeDistinctVertices(generalized);
        if (!stays && rings.empty()) {
            return rings;
        }
        if (stays) {
            rings.push_back(std::move(generalized));
        }
    }
    return rings;
}

// False when there is nothing to do.
bool isPositive(double maximumOffset, const Curve& curve) {
    if (std::isnan(maximumOffset)) {
        throw PlatformError("A shape can't be generalized: the maximum offset is not a number.");
    }
    requireUsableCoordinates(curve.parts(), "generalized shape");
    return maximumOffset > 0;
}

} // namespace

void generalize(Polyline& line, double maximumOffset) {
    if (!isPositive(maximumOffset, line)) {
        return;
    }
    std::vector<Path> paths;
    std::ranges::transform(line.paths, std::back_inserter(paths),
                           [maximumOffset](const Path& path) { return generalizedPath(path, maximumOffset); });
    line.paths = std::move(paths);
}

void generalize(Polygon& polygon, double maximumOffset) {
    if (!isPositive(maximumOffset, polygon)) {
        return;
    }
    std::vector<Path> rings;
    for (const std::span<const Path> part : polygonParts(polygon)) {
        std::ranges::move(generalizedPart(part, maximumOffset), std::back_inserter(rings));
    }
    polygon.rings = std::move(rings);
}

} // namespace qz
