#include "platform/geometry/Reshape.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/geometry/Curve.h"
#include "platform/geometry/MeasureInterpolation.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/SubCurve.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

void requireFinite(const Curve& shape, const Path& path, double tolerance) {
    if (!std::isfinite(tolerance) || tolerance < 0) {
        throw PlatformError("A shape can't be reshaped within a tolerance of " + std::to_string(tolerance) + ".");
    }
    static_cast<void>(shape.lengthFor("shape to reshape"));
    static_cast<void>(Curve(path).lengthFor("path to reshape with"));
}

// Of the parts of a shape and, last, of the path it is reshaped with.
std::vector<std::vector<Node>> contactsOf(std::span<const Path> parts, const Path& path, double tolerance) {
    std::vector<const Path*> paths;
    for (const Path& part : parts) {
        paths.push_back(&part);
    }
    paths.push_back(&path);
    return nodesOf(paths, {.endDistance = tolerance, .circleDistance = tolerance});
}

// At a vertex the segment is its number and the ratio 0.
CurvePlace placeOf(std::size_t segment, double ratio) {
    return ratio < 1 ? CurvePlace{0, segment, ratio} : CurvePlace{0, segment + 1, 0};
}

// Where the path meets a part of the line.
struct Meeting {
    CurvePlace onPath;
    CurvePlace onPart;
    XY position;

    // The vertex a cut makes in the part: its own one, where there is one.
    [[nodiscard]] CurveEnd endOn(const Path& part) const {
        Vertex vertex = vertexAt(part, onPart);
        if (onPart.ratio > 0) {
            vertex.x = position.x;
            vertex.y = position.y;
        }
        return {onPart, vertex};
    }
};

// In the order along the path, by part of the line.
std::vector<std::vector<Meeting>> meetingsOf(const Polyline& line, const Path& path, double tolerance) {
    const auto nodes = contactsOf(line.paths, path, tolerance);
    std::vector<std::vector<Meeting>> meetings(line.paths.size());
    for (const Node& node : nodes.back()) {
        if (node.otherPath < line.paths.size()) {
            meetings[node.otherPath].push_back(
                {placeOf(node.segment, node.ratio), placeOf(node.otherSegment, node.otherRatio), node.position});
        }
    }
    return meetings;
}

bool areApart(const std::vector<Meeting>& meetings) {
    return !meetings.empty() && meetings.front().onPart != meetings.back().onPart &&
           meetings.front().onPath != meetings.back().onPath;
}

// The part met first of those met in two places.
std::optional<std::size_t> partToReshape(const std::vector<std::vector<Meeting>>& meetings) {
    std::optional<std::size_t> best;
    for (std::size_t part = 0; part < meetings.size(); ++part) {
        if (areApart(meetings[part]) && (!best || meetings[part].front().onPath < meetings[*best].front().onPath)) {
            best = part;
        }
    }
    return best;
}

void exchangeZAndM(Path& path) {
    path.transform([](Vertex& vertex) { std::swap(vertex.z, vertex.m); });
}

// The stretch of the path between two of its places, from and to the given vertices of the shape.
Path replacement(const Path& path, const CurveEnd& start, const CurveEnd& end) {
    Path stretch = pathBetween(path, start, end);
    interpolateMeasures(stretch);
    exchangeZAndM(stretch);
    interpolateMeasures(stretch); // heights run between known ones like measures do
    exchangeZAndM(stretch);
    return stretch;
}

Path reshaped(const Path& part, const Path& path, const Meeting& first, const Meeting& last) {
    CurveEnd from = first.endOn(part);
    CurveEnd to = last.endOn(part);
    Path stretch = replacement(path, {first.onPath, from.vertex}, {last.onPath, to.vertex});
    if (to.place < from.place) {
        std::swap(from, to);
        stretch.reverse();
    }
    Path result = pathBetween(part, {{0, 0, 0}, part.front()}, from);
    result.append(stretch);
    result.append(pathBetween(part, to, {{0, part.segmentCount(), 0}, part.back()}));
    return result;
}

CurveEnd vertexEnd(const Path& path, std::size_t vertex) {
    return {{0, vertex, 0}, path.vertex(vertex)};
}

// The ring once around from one of its vertices to a vertex before it.
Path aroundTheStart(const Path& ring, std::size_t from, std::size_t to) {
    Path result = pathBetween(ring, vertexEnd(ring, from), vertexEnd(ring, ring.segmentCount()));
    result.append(pathBetween(ring, vertexEnd(ring, 0), vertexEnd(ring, to)));
    return result;
}

std::optional<std::size_t> vertexAt(const Path& ring, XY position) {
    const auto found = std::ranges::find(ring.xy(), position);
    return found == ring.xy().end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - ring.xy().begin()));
}

Path reversed(Path path) {
    path.reverse();
    return path;
}

// A stretch between two vertices of a ring makes two rings with it. One outside makes the ring grow, one inside cuts
// it: either way the larger of the two is what the editor means.
std::optional<Path> largerRing(const Path& ring, const Path& path, std::size_t from, std::size_t to) {
    const auto start = vertexAt(ring, path.xy()[from]);
    const auto end = vertexAt(ring, path.xy()[to]);
    if (!start || !end || *start == *end) {
        return std::nullopt; // an earlier stretch took one of them away
    }
    Path stretch = replacement(path, {{0, from, 0}, ring.vertex(*start)}, {{0, to, 0}, ring.vertex(*end)});
    if (*start > *end) {
        stretch.reverse();
    }
    const auto [first, last] = std::minmax(*start, *end);
    const Path between = pathBetween(ring, vertexEnd(ring, first), vertexEnd(ring, last));
    if (stretch.hasSameXY(between) || stretch.hasSameXY(reversed(aroundTheStart(ring, last, first)))) {
        return std::nullopt;
    }
    Path inItsPlace = pathBetween(ring, vertexEnd(ring, 0), vertexEnd(ring, first));
    inItsPlace.append(stretch);
    inItsPlace.append(pathBetween(ring, vertexEnd(ring, last), vertexEnd(ring, ring.segmentCount())));
    Path withBetween = between;
    withBetween.append(reversed(stretch));
    return std::abs(signedArea(withBetween)) > std::abs(signedArea(inItsPlace)) ? withBetween : inItsPlace;
}

// A path with a vertex wherever it meets a ring, which has one there too, bit for bit.
struct RingContacts {
    Path path;
    std::vector<Path> rings;
    std::vector<std::vector<std::size_t>> onPath; // a ring: the vertices of the path on it, ascending
};

std::vector<std::size_t> verticesAt(const Path& path, std::span<const Node> nodes, std::size_t ring) {
    std::vector<XY> positions;
    for (const Node& node : nodes) {
        if (node.otherPath == ring) {
            positions.push_back(node.position);
        }
    }
    std::ranges::sort(positions, precedes);
    std::vector<std::size_t> vertices;
    for (std::size_t i = 0; i < path.vertexCount(); ++i) {
        if (std::ranges::binary_search(positions, path.xy()[i], precedes)) {
            vertices.push_back(i);
        }
    }
    return vertices;
}

RingContacts ringContacts(const Polygon& polygon, const Path& path, double tolerance) {
    const auto nodes = contactsOf(polygon.rings, path, tolerance);
    RingContacts contacts{withVerticesAt(path, nodes.back()), {}, {}};
    for (std::size_t ring = 0; ring < polygon.rings.size(); ++ring) {
        contacts.rings.push_back(withVerticesAt(polygon.rings[ring], nodes[ring]));
        contacts.onPath.push_back(verticesAt(contacts.path, nodes.back(), ring));
    }
    return contacts;
}

// Takes the stretches between one contact and the next in turn. Returns whether the ring changed.
bool reshapeRing(Path& ring, const Path& path, std::span<const std::size_t> contacts) {
    const bool clockwise = signedArea(ring) > 0;
    bool changed = false;
    for (std::size_t i = 1; i < contacts.size(); ++i) {
        if (auto larger = largerRing(ring, path, contacts[i - 1], contacts[i])) {
            ring = std::move(*larger);
            changed = true;
        }
    }
    if (changed && (signedArea(ring) > 0) != clockwise) {
        ring.reverse();
    }
    return changed;
}

enum class RingRole { exterior, hole };

bool reshapeRings(Polygon& polygon, const RingContacts& contacts, RingRole role) {
    bool anyChanged = false;
    for (std::size_t i = 0; i < polygon.rings.size(); ++i) {
        Path ring = contacts.rings[i];
        if ((signedArea(ring) > 0) == (role == RingRole::exterior) &&
            reshapeRing(ring, contacts.path, contacts.onPath[i])) {
            polygon.rings[i] = std::move(ring);
            anyChanged = true;
        }
    }
    return anyChanged;
}

Polygon areaOf(const Polygon& like, Path ring) {
    Polygon polygon;
    static_cast<GeometryTraits&>(polygon) = like;
    polygon.rings.push_back(std::move(ring));
    return polygon;
}

// What the exterior rings cover together, each without its holes.
Polygon areaOfParts(const Polygon& polygon) {
    std::vector<Geometry> parts;
    for (const Path& ring : polygon.rings) {
        Polygon area = simplified(areaOf(polygon, ring));
        if (signedArea(ring) > 0) {
            parts.emplace_back(std::move(area));
        } else if (!parts.empty()) {
            parts.back() = difference(parts.back(), area);
        }
    }
    return unionOf(parts).as<Polygon>();
}

bool startsBeforeItsEnd(const Path& path) {
    const XY start = path.xy().front();
    const XY end = path.xy().back();
    return start.x < end.x || (start.x == end.x && start.y <= end.y);
}

} // namespace

bool reshape(Polygon& polygon, const Path& path, double tolerance) {
    requireFinite(polygon, path, tolerance);
    if (polygon.isEmpty() || path.isEmpty()) {
        return false;
    }
    Polygon result = isSimple(polygon) ? polygon : simplified(polygon);
    const RingContacts contacts = ringContacts(result, startsBeforeItsEnd(path) ? path : reversed(path), tolerance);
    if (!reshapeRings(result, contacts, RingRole::exterior) && !reshapeRings(result, contacts, RingRole::hole)) {
        return false;
    }
    polygon = isSimple(result) ? std::move(result) : areaOfParts(result);
    return true;
}

bool reshape(Polyline& line, const Path& path, double tolerance) {
    requireFinite(line, path, tolerance);
    const auto meetings = meetingsOf(line, path, tolerance);
    const auto index = partToReshape(meetings);
    if (!index) {
        return false;
    }
    Path& part = line.paths[*index];
    Path result = reshaped(part, path, meetings[*index].front(), meetings[*index].back());
    if (result.hasSameXY(part)) {
        return false;
    }
    part = std::move(result);
    return true;
}

} // namespace qz
