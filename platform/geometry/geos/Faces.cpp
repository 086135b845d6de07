#include "platform/geometry/Faces.h"

#include <algorithm>
#include <iterator>

#include "platform/geometry/Measures.h"
#include "platform/geometry/geos/Overlay.h"

namespace qz {

namespace {

std::vector<std::size_t> degreesOf(const HalfEdges& edges, PlaceNumbers& places) {
    std::vector<std::size_t> degrees;
    places.reserve(edges.size() / 2 + 1);
    degrees.reserve(edges.size() / 2 + 1);
    const auto count = [&](XY place) {
        const std::size_t number = places.add(place);
        degrees.resize(places.size());
        ++degrees[number];
    };
    for (std::size_t i = 0; i < edges.size(); i += 2) {
        count(edges[i].from);
        count(edges[i].to);
    }
    return degrees;
}

// The edges joined wherever one goes on where the last has ended and no other meets them, which GEOS has less work
// with.
std::vector<std::vector<XY>> linesOf(const HalfEdges& edges) {
    PlaceNumbers places;
    const std::vector<std::size_t> degrees = degreesOf(edges, places);
    std::vector<std::vector<XY>> lines;
    for (std::size_t i = 0; i < edges.size(); i += 2) {
        const DirectedEdge edge = edges[i];
        if (lines.empty() || !(lines.back().back() == edge.from) || degrees[*places.find(edge.from)] != 2) {
            lines.push_back({edge.from});
        }
        lines.back().push_back(edge.to);
    }
    return lines;
}

std::vector<PolygonRings> polygonized(const HalfEdges& edges) {
    std::vector<GeosGeometryPtr> lines;
    std::vector<const GEOSGeometry*> raw;
    for (std::vector<XY>& xy : linesOf(edges)) {
        Polyline line;
        line.paths.emplace_back(std::move(xy));
        lines.push_back(toGeos(line));
        raw.push_back(lines.back().get());
    }
    const GeosGeometryPtr faces(
        GEOSPolygonize_r(GeosContext::ofThread().handle(), raw.data(), static_cast<unsigned>(raw.size())));
    if (faces == nullptr) {
        GeosContext::ofThread().fail("finding the faces that lines enclose");
    }
    return polygonsIn(*faces);
}

void turnRings(std::vector<Path>& face) {
    for (std::size_t i = 0; i < face.size(); ++i) {
        if ((signedArea(face[i]) < 0) == (i == 0)) {
            face[i].reverse();
        }
    }
}

GeosGeometryPtr polygonOf(const FaceGraph::Face& rings) {
    Polygon polygon;
    polygon.rings = rings;
    return toGeos(polygon);
}

} // namespace

std::size_t HalfEdges::add(const DirectedEdge& edge) {
    if (const auto known = edges_.find(edge.reversed())) {
        return reversed(2 * *known);
    }
    return 2 * edges_.add(edge);
}

std::optional<std::size_t> HalfEdges::find(const DirectedEdge& edge) const {
    if (const auto known = edges_.find(edge)) {
        return 2 * *known;
    }
    const auto known = edges_.find(edge.reversed());
    return known ? std::optional(reversed(2 * *known)) : std::nullopt;
}

FaceGraph::FaceGraph(const HalfEdges& edges) : rightOf_(edges.size(), 0) {
    if (edges.size() > 0) {
        faces_ = polygonized(edges);
    }
    edgesOf_.resize(faces_.size());
    for (std::size_t face = 0; face < faces_.size(); ++face) {
        turnRings(faces_[face]);
        findEdges(face, edges);
    }
}

void FaceGraph::findEdges(std::size_t face, const HalfEdges& edges) {
    forEachEdge(faces_[face], [&](const DirectedEdge& edge) {
        if (const auto halfEdge = edges.find(edge)) {
            edgesOf_[face].push_back(*halfEdge);
            rightOf_[*halfEdge] = face + 1;
        }
    });
}

std::optional<std::size_t> FaceGraph::rightOf(std::size_t halfEdge) const noexcept {
    const std::size_t face = rightOf_[halfEdge];
    return face == 0 ? std::nullopt : std::optional(face - 1);
}

bool FaceGraph::meetsAnother(std::size_t face, const std::vector<bool>& chosen) const {
    return std::ranges::any_of(edgesOf_[face], [&](std::size_t halfEdge) {
        const auto beyond = rightOf(HalfEdges::reversed(halfEdge));
        return beyond && *beyond != face && chosen[*beyond];
    });
}

std::vector<FaceGraph::Face> FaceGraph::unionOf(const std::vector<bool>& chosen) const {
    std::vector<Face> parts;
    bool anyJoined = false;
    for (std::size_t face = 0; face < faces_.size(); ++face) {
        if (chosen[face]) {
            parts.push_back(faces_[face]);
            anyJoined = anyJoined || meetsAnother(face, chosen);
        }
    }
    if (!anyJoined) {
        return parts;
    }
    std::vector<GeosGeometryPtr> polygons;
    std::ranges::transform(parts, std::back_inserter(polygons), polygonOf);
    return polygonsIn(*unionOfAll(*collect(std::move(polygons), GEOS_MULTIPOLYGON), 0));
}

} // namespace qz
