#include "topology/QZOverGaps.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "platform/geometry/InteriorPoint.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/Strokes.h"
#include "topology/FaceAssembly.h"
#include "topology/SharedBorders.h"

namespace qz {

namespace {

bool has(CoverFault fault, TopologyGraph::Features cover) {
    return fault == CoverFault::overlap ? cover.size() > 1 : cover.empty();
}

// The polygons that lie nowhere in others, for questions of what covers a place.
class PlaceCover {
public:
    explicit PlaceCover(std::vector<const Polygon*> polygons) : polygons_(std::move(polygons)) {
        std::vector<Envelope> envelopes;
        std::ranges::transform(polygons_, std::back_inserter(envelopes),
                               [](const Polygon* polygon) { return polygon->envelope(); });
        tree_ = PackedEnvelopeTree(envelopes);
    }

    [[nodiscard]] bool covers(const Point& place) const {
        bool isCovered = false;
        const XY p = place.vertex.xy();
        tree_.query({p.x, p.y, p.x, p.y},
                    [&](std::size_t i) { isCovered = isCovered || contains(*polygons_[i], place); });
        return isCovered;
    }

private:
    std::vector<const Polygon*> polygons_;
    PackedEnvelopeTree tree_;
};

// Arcs that run beside each other closer than their coordinates can tell are taken as straight segments.
EdgeCover coverBy(std::vector<Geometry> polygons) {
    EdgeCover cover(TopologyGraph(polygons, 0));
    if (cover.isConsistent()) {
        return cover;
    }
    for (Geometry& polygon : polygons) {
        polygon = straightened(polygon, polygon.spatialReference().grid().xyTolerance);
    }
    return EdgeCover(TopologyGraph(std::move(polygons), 0));
}

} // namespace

TopologyGraph QZ_GetTopoGraph(FeatureClass& featureClass, FeatureClass* second, const Envelope& envelope,
                              double tolerance) {
    const std::array<FeatureClass*, 2> classes{&featureClass, second};
    return {std::span(classes).first(second == nullptr ? 1 : 2), &envelope, tolerance};
}

std::vector<std::size_t> QZ_GetOverGaps(const EdgeCover& cover, CoverFault fault) {
    std::vector<std::size_t> chosen;
    for (std::size_t edge = 0; edge < cover.edges().size(); ++edge) {
        if (cover.dividesFaces(edge) && (has(fault, cover.leftOf(edge)) || has(fault, cover.rightOf(edge)))) {
            chosen.push_back(edge);
        }
    }
    return chosen;
}

std::vector<Polygon> faultyGround(const EdgeCover& cover, CoverFault fault) {
    const std::vector<std::size_t> chosen = QZ_GetOverGaps(cover, fault);
    std::vector<Polyline> edges;
    std::ranges::transform(chosen, std::back_inserter(edges), [&](std::size_t edge) { return cover.edges()[edge]; });
    const LinkedNetwork network(edges, QZ_GetNodesDic(edges, graphDecimals), 0);
    const FaceTrace trace(network, unwatched);
    FaceAssembly assembly(network, trace, commonTraits(edges));
    assembly.placeOutlines(unwatched);
    assembly.keepFaces([&](EdgeEnd halfEdge) {
        const std::size_t edge = chosen[edgeOf(halfEdge)];
        return has(fault, isReversed(halfEdge) ? cover.leftOf(edge) : cover.rightOf(edge));
    });
    return std::move(assembly).polygons();
}

// The border of a gap is of polygons that no other one lies against there, so that those alone enclose all gaps, and
// besides only the ground of polygons that have neighbours all around.
std::vector<Polygon> gapsBetween(const std::vector<Polygon>& polygons) {
    const std::vector<bool> hasFreeBorder = freeBorders(polygons);
    std::vector<Geometry> bordering;
    std::vector<const Polygon*> surrounded;
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        if (hasFreeBorder[i]) {
            bordering.emplace_back(polygons[i]);
        } else {
            surrounded.push_back(&polygons[i]);
        }
    }
    std::vector<Polygon> gaps = faultyGround(coverBy(std::move(bordering)), CoverFault::gap);
    const PlaceCover cover(std::move(surrounded));
    std::erase_if(gaps, [&](const Polygon& gap) {
        const std::optional<Point> inside = interiorPoint(gap);
        return !inside || cover.covers(*inside);
    });
    return gaps;
}

} // namespace qz
