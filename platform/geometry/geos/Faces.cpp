#include "platform/geometry/Faces.h"

#include <algorithm>

#include "platform/geometry/Measures.h"
#include "platform/geometry/geos/Overlay.h"

namespace qz {

namespace {

// The edges joined wherever one goes on where the last has ended and no other meets them, which GEOS has less work
// with.
std::vector<std::vector<XY>> linesOf(std::span<const DirectedEdge> edges) {
    std::unordered_map<XY, int, XYHash> degrees;
    for (const DirectedEdge& edge : edges) {
        ++degrees[edge.from];
        ++degrees[edge.to];
    }
    std::vector<std::vector<XY>> lines;
    for (const DirectedEdge& edge : edges) {
        if (lines.empty() || !(lines.back().back() == edge.from) || degrees.at(edge.from) != 2) {
            lines.push_back({edge.from});
        }
        lines.back().push_back(edge.to);
    }
    return lines;
}

std::vector<PolygonRings> polygonized(std::span<const DirectedEdge> edges) {
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

FaceGraph::FaceGraph(std::span<const DirectedEdge> edges) {
    if (!edges.empty()) {
        faces_ = polygonized(edges);
    }
    for (std::size_t face = 0; face < faces_.size(); ++face) {
        turnRings(faces_[face]);
        forEachEdge(faces_[face], [this, face](const DirectedEdge& edge) { rightOf_.emplace(edge, face); });
    }
}

std::optional<std::size_t> FaceGraph::rightOf(const DirectedEdge& edge) const {
    const auto found = rightOf_.find(edge);
    return found == rightOf_.end() ? std::nullopt : std::optional(found->second);
}

std::vector<FaceGraph::Face> FaceGraph::unionOf(const std::vector<bool>& chosen) const {
    std::vector<Face> parts;
    bool anyJoined = false;
    for (std::size_t face = 0; face < faces_.size(); ++face) {
        if (chosen[face]) {
            parts.push_back(faces_[face]);
            forEachEdge(faces_[face], [&](const DirectedEdge& edge) {
                const auto beyond = rightOf(edge.reversed());
                anyJoined = anyJoined || (beyond && *beyond != face && chosen[*beyond]);
            });
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
