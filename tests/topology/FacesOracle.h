#pragma once

#include <gtest/gtest.h>

#include "platform/geometry/Faces.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/PolygonAssembly.h"
#include "topology/EdgeChains.h"
#include "topology/QZPolylineToPolygon.h"

namespace qz::test {

// Every straight piece an edge of its own.
inline std::vector<Polyline> edgesOf(const HalfEdges& pieces) {
    std::vector<Polyline> edges;
    for (std::size_t i = 0; i < pieces.size(); i += 2) {
        edges.emplace_back().paths.emplace_back(std::vector{pieces[i].from, pieces[i].to});
    }
    return edges;
}

// A chain as one line.
inline Polyline joined(std::span<const Polyline> edges, std::span<const EdgeEnd> chain) {
    Polyline line;
    line.paths.emplace_back();
    for (const EdgeEnd halfEdge : chain) {
        appendEdge(line.paths.front(), edges[edgeOf(halfEdge)].paths.front(), isReversed(halfEdge));
    }
    return line;
}

// The pieces joined wherever exactly two meet.
inline std::vector<Polyline> joinedEdges(const HalfEdges& pieces) {
    const std::vector<Polyline> edges = edgesOf(pieces);
    const Groups chains = QZ_RemovePseudoInDicOutDic(QZ_GetNodesDic(edges, 9));
    std::vector<Polyline> lines;
    for (std::size_t i = 0; i < chains.size(); ++i) {
        lines.push_back(joined(edges, std::as_const(chains)[i]));
    }
    return lines;
}

inline bool isNarrow(const FaceGraph& graph, std::size_t face) {
    std::vector<bool> chosen(graph.faceCount());
    chosen[face] = true;
    return isSliver(graph.unionOf(chosen).front().front(), CoordinateGrid().xyResolution);
}

// Expects exactly the bounded faces of the pieces, as polygonizing them finds them, each once and with its holes: the
// face is to the right of every segment of its polygon. Faces less wide than the resolution are none.
inline void expectFaces(const std::vector<Polygon>& polygons, const HalfEdges& pieces) {
    const FaceGraph graph(pieces);
    std::vector<std::size_t> segments(graph.faceCount());
    for (const Polygon& polygon : polygons) {
        std::optional<std::size_t> face;
        forEachEdge(polygon.rings, [&](const DirectedEdge& segment) {
            const auto halfEdge = pieces.find(segment);
            ASSERT_TRUE(halfEdge) << segment.from.x << ' ' << segment.from.y;
            const auto beside = graph.rightOf(*halfEdge);
            ASSERT_TRUE(beside) << segment.from.x << ' ' << segment.from.y;
            EXPECT_EQ(*beside, face.value_or(*beside));
            face = beside;
            ++segments[*beside];
        });
    }
    std::size_t found = 0;
    for (std::size_t face = 0; face < segments.size(); ++face) {
        if (segments[face] > 0 || !isNarrow(graph, face)) {
            EXPECT_EQ(segments[face], graph.edgesOf(face).size()) << "face " << face;
            ++found;
        }
    }
    EXPECT_EQ(polygons.size(), found);
}

} // namespace qz::test
