#include "polygon/SketchFitting.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <span>

#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/NodePlaces.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

// A vertex bends the two halves of a side by rounding, which may make them meet others anew; one or two rounds are
// usual. What is left after the last is below the resolution.
constexpr int mostRounds = 8;

// The rings of several polygons, with the number of the polygon that each belongs to.
struct Rings {
    std::vector<const Path*> paths;
    std::vector<std::size_t> owners;

    explicit Rings(std::span<const Polygon> polygons) {
        for (std::size_t i = 0; i < polygons.size(); ++i) {
            for (const Path& ring : polygons[i].rings) {
                paths.push_back(&ring);
                owners.push_back(i);
            }
        }
    }
};

// Which polygons, by their numbers, get vertices of each other.
using AreRelated = bool (*)(std::size_t, std::size_t);

bool isFirstWithAnother(std::size_t a, std::size_t b) {
    return (a == 0) != (b == 0);
}

bool areDifferent(std::size_t a, std::size_t b) {
    return a != b;
}

using NodesOfRings = std::vector<std::vector<Node>>;

NodesOfRings nodesBetween(const Rings& rings, const ContactTolerance& tolerance, AreRelated areRelated) {
    NodesOfRings nodes = nodesOf(rings.paths, tolerance);
    for (std::size_t ring = 0; ring < nodes.size(); ++ring) {
        std::erase_if(nodes[ring],
                      [&](const Node& node) { return !areRelated(rings.owners[ring], rings.owners[node.otherPath]); });
    }
    return nodes;
}

// Nodes within the distance of each other get one place: a vertex where one of them is at a vertex.
void unitePlaces(NodesOfRings& nodes, double within) {
    NodePlaces places(within);
    for (const bool atVertex : {true, false}) {
        for (const std::vector<Node>& ofRing : nodes) {
            for (const Node& node : ofRing) {
                if ((node.kind != NodeKind::crossing) == atVertex) {
                    places.add(node.position);
                }
            }
        }
    }
    for (std::vector<Node>& ofRing : nodes) {
        for (Node& node : ofRing) {
            node.position = places[places.add(node.position)];
        }
    }
}

// The nodes of a ring at which it has no vertex.
std::vector<Node> missingIn(const Path& ring, std::span<const Node> nodes, double resolution) {
    std::vector<Node> missing;
    for (const Node& node : nodes) {
        const bool isNew = missing.empty() || !(missing.back().position == node.position);
        if (node.ratio > 0 && isNew && distance(ring.xy()[node.segment], node.position) > resolution &&
            distance(ring.xy()[node.segment + 1], node.position) > resolution) {
            missing.push_back(node);
        }
    }
    return missing;
}

// False when there was none to add.
bool addMissingVertices(std::span<Polygon> polygons, const NodesOfRings& nodes, double resolution) {
    bool added = false;
    std::size_t number = 0;
    for (Polygon& polygon : polygons) {
        for (Path& ring : polygon.rings) {
            const std::vector<Node> missing = missingIn(ring, nodes[number++], resolution);
            if (!missing.empty()) {
                ring = withVerticesAt(ring, missing);
                added = true;
            }
        }
    }
    return added;
}

void addCommonVertices(std::vector<Polygon>& polygons, AreRelated areRelated) {
    const double resolution = polygons.front().spatialReference.grid().xyResolution;
    bool goesOn = true;
    for (int round = 0; goesOn && round < mostRounds; ++round) {
        NodesOfRings nodes = nodesBetween(Rings(polygons), {resolution, resolution}, areRelated);
        unitePlaces(nodes, resolution);
        goesOn = addMissingVertices(polygons, nodes, resolution);
    }
}

std::vector<Path> allRings(std::span<const Polygon> polygons) {
    std::vector<Path> rings;
    for (const Polygon& polygon : polygons) {
        std::ranges::copy(polygon.rings, std::back_inserter(rings));
    }
    return rings;
}

// The boundaries around a sketch, for bringing its vertices onto them.
class Surroundings {
public:
    Surroundings(std::span<const Polygon> polygons, const Envelope& window, const CoordinateGrid& grid)
        : grid_(grid), boundaries_(Curve(std::span<const Path>(allRings(polygons)))) {
        std::vector<Envelope> places;
        for (const Polygon& polygon : polygons) {
            forEachVertexIn(polygon, window, [&](XY vertex) {
                vertices_.push_back(vertex);
                places.push_back({vertex.x, vertex.y, vertex.x, vertex.y});
            });
        }
        tree_ = PackedEnvelopeTree(places);
    }

    // The place within the tolerance that a vertex comes to; the given one when there is none.
    [[nodiscard]] XY placeFor(XY place) const {
        if (const auto vertex = nearestVertex(place)) {
            return *vertex;
        }
        const auto onSide = boundaries_.positionOf(place);
        const bool comesOntoSide =
            onSide && onSide->distanceFrom > grid_.xyResolution && onSide->distanceFrom <= grid_.xyTolerance;
        return comesOntoSide ? onSide->nearest.xy() : place;
    }

private:
    template <typename See> static void forEachVertexIn(const Polygon& polygon, const Envelope& window, See see) {
        for (const Path& ring : polygon.rings) {
            for (const XY vertex : ring.xy()) {
                if (window.contains(vertex)) {
                    see(vertex);
                }
            }
        }
    }

    // Of the vertices equally near the first.
    [[nodiscard]] std::optional<XY> nearestVertex(XY place) const {
        const double reach = grid_.xyTolerance;
        std::size_t nearest = vertices_.size();
        double least = std::numeric_limits<double>::infinity();
        tree_.query({place.x - reach, place.y - reach, place.x + reach, place.y + reach}, [&](std::size_t i) {
            const double away = distance(vertices_[i], place);
            if (away <= reach && (away < least || (away == least && i < nearest))) {
                least = away;
                nearest = i;
            }
        });
        return nearest < vertices_.size() ? std::optional(vertices_[nearest]) : std::nullopt;
    }

    CoordinateGrid grid_;
    CurveIndex boundaries_;
    std::vector<XY> vertices_;
    PackedEnvelopeTree tree_;
};

void bringOnto(Path& ring, const Surroundings& surroundings) {
    if (ring.vertexCount() < 3) {
        return; // a full circle, which a moved end would break up
    }
    for (std::size_t i = 0; i < ring.vertexCount(); ++i) {
        const XY place = surroundings.placeFor(ring.xy()[i]);
        if (!(place == ring.xy()[i])) {
            Vertex vertex = ring.vertex(i);
            vertex.x = place.x;
            vertex.y = place.y;
            ring.setVertex(i, vertex);
        }
    }
}

// Bends the sides of the first polygon through the vertices that the others have within the tolerance of them.
void bendThroughVertices(std::vector<Polygon>& polygons, const CoordinateGrid& grid) {
    NodesOfRings nodes = nodesBetween(Rings(polygons), {grid.xyTolerance, grid.xyResolution}, isFirstWithAnother);
    for (std::vector<Node>& ofRing : nodes) {
        std::erase_if(ofRing, [](const Node& node) { return node.otherRatio > 0; });
    }
    addMissingVertices(std::span(polygons).first(1), nodes, grid.xyResolution);
}

} // namespace

FittedSketch fittedInto(const Polygon& sketch, std::vector<Polygon> met) {
    if (sketch.isEmpty() || met.empty()) {
        return {sketch, std::move(met)};
    }
    const CoordinateGrid& grid = sketch.spatialReference.grid();
    const Envelope window = sketch.envelope().expandedBy(grid.xyTolerance, grid.xyTolerance);
    const Surroundings surroundings(met, window, grid);
    std::vector<Polygon> polygons{sketch};
    std::ranges::move(met, std::back_inserter(polygons));
    std::ranges::for_each(polygons.front().rings, [&](Path& ring) { bringOnto(ring, surroundings); });
    bendThroughVertices(polygons, grid);
    polygons.front() = simplified(polygons.front());
    addCommonVertices(polygons, isFirstWithAnother);
    FittedSketch fitted{std::move(polygons.front()), {}};
    fitted.met.assign(std::make_move_iterator(polygons.begin() + 1), std::make_move_iterator(polygons.end()));
    return fitted;
}

std::vector<Polygon> withCommonVertices(std::vector<Polygon> polygons) {
    if (!polygons.empty()) {
        addCommonVertices(polygons, areDifferent);
    }
    return polygons;
}

} // namespace qz
