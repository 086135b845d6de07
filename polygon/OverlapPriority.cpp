#include "polygon/OverlapPriority.h"

#include <algorithm>
#include <cmath>

#include "platform/app/Services.h"
#include "platform/geometry/Curve.h"
#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/Vectors.h"
#include "platform/geometry/XYHash.h"

namespace qz {

namespace {

Polygon commonArea(const Polygon& a, const Polygon& b) {
    return intersection(a, b, ResultDimension::areas).as<Polygon>();
}

Polygon without(const Polygon& polygon, const Geometry& taken) {
    return difference(polygon, taken).as<Polygon>();
}

void addUnlessEmpty(std::vector<Polygon>& polygons, Polygon polygon) {
    if (!polygon.isEmpty()) {
        polygons.push_back(std::move(polygon));
    }
}

// Calls `see(edge, middle)` for every side.
template <typename See> void forEachSide(const Polygon& polygon, See see) {
    for (const Path& ring : polygon.rings) {
        forEachSegment(ring, [&](std::size_t, const CurveSegment& segment) {
            see(DirectedEdge{segment.start(), segment.end()}, segment.at(0.5));
        });
    }
}

// Whether every side of a polygon is one of the other's too, and it has as many. Arcs are one where their middles are.
bool hasSameSides(const Polygon& polygon, const Polygon& other) {
    Numbering<DirectedEdge, DirectedEdgeHash> edges;
    std::vector<XY> middles;
    std::ptrdiff_t surplus = 0;
    forEachSide(other, [&](const DirectedEdge& edge, XY middle) {
        middles.resize(std::max(middles.size(), edges.add(edge) + 1), middle);
        ++surplus;
    });
    const double resolution = polygon.spatialReference.grid().xyResolution;
    bool hasAll = true;
    forEachSide(polygon, [&](const DirectedEdge& edge, XY middle) {
        const auto number = edges.find(edge);
        hasAll = hasAll && number && distance(middles[*number], middle) <= resolution;
        --surplus;
    });
    return hasAll && surplus == 0;
}

// What is left of a polygon; the polygon itself, with its rings in their order, when nothing is taken. An overlap
// less wide than the resolution, which is no area of its own, is taken as well.
Polygon restOf(const Polygon& polygon, const Polygon& taken) {
    Polygon rest = without(polygon, taken);
    return hasSameSides(rest, polygon) ? polygon : rest;
}

std::vector<Polygon> restsBeside(const FittedSketch& fitted) {
    std::vector<Polygon> rests;
    for (const Polygon& polygon : fitted.met) {
        checkInterrupt();
        rests.push_back(restOf(polygon, fitted.sketch));
    }
    return rests;
}

Polygon restOfSketch(const FittedSketch& fitted) {
    if (fitted.met.empty()) {
        return fitted.sketch;
    }
    return without(fitted.sketch, unionOf(std::vector<Geometry>(fitted.met.begin(), fitted.met.end())));
}

// What each polygon shares with the sketch; empty where that is nothing.
std::vector<Polygon> overlapsWith(const FittedSketch& fitted) {
    std::vector<Polygon> overlaps;
    for (const Polygon& polygon : fitted.met) {
        checkInterrupt();
        overlaps.push_back(commonArea(fitted.sketch, polygon));
    }
    return overlaps;
}

// The overlaps that aren't empty; where polygons overlap each other it is the first that counts.
std::vector<Polygon> takenApart(const std::vector<Polygon>& overlaps, const std::vector<Polygon>& polygons) {
    std::vector<Envelope> envelopes;
    std::ranges::transform(polygons, std::back_inserter(envelopes), &Polygon::envelope);
    const PackedEnvelopeTree tree(envelopes);
    std::vector<Polygon> apart;
    for (std::size_t i = 0; i < overlaps.size(); ++i) {
        std::vector<std::size_t> earlier;
        tree.query(overlaps[i].envelope(), [&](std::size_t j) {
            if (j < i) {
                earlier.push_back(j);
            }
        });
        std::ranges::sort(earlier);
        Polygon overlap = overlaps[i];
        for (const std::size_t j : earlier) {
            // A neighbour whose border differs by rounding only would leave vertices wherever the two borders cross.
            if (!commonArea(overlap, polygons[j]).isEmpty()) {
                overlap = restOf(overlap, polygons[j]);
            }
        }
        addUnlessEmpty(apart, std::move(overlap));
    }
    return apart;
}

ResolvedOverlaps existingFirst(const FittedSketch& fitted) {
    ResolvedOverlaps result{{}, fitted.met};
    addUnlessEmpty(result.added, restOfSketch(fitted));
    return result;
}

// A polygon loses what became a piece of its own, no more, so that nothing is lost between the two.
ResolvedOverlaps overlapsApart(const FittedSketch& fitted) {
    const std::vector<Polygon> overlaps = overlapsWith(fitted);
    ResolvedOverlaps result{takenApart(overlaps, fitted.met), {}};
    for (std::size_t i = 0; i < overlaps.size(); ++i) {
        result.rest.push_back(overlaps[i].isEmpty() ? fitted.met[i] : restOf(fitted.met[i], overlaps[i]));
    }
    addUnlessEmpty(result.added, restOfSketch(fitted));
    return result;
}

ResolvedOverlaps sketchFirst(const FittedSketch& fitted) {
    ResolvedOverlaps result{{}, restsBeside(fitted)};
    addUnlessEmpty(result.added, fitted.sketch);
    return result;
}

} // namespace

std::optional<OverlapPriority> overlapPriorityOf(std::int16_t code) noexcept {
    const bool isKnown =
        static_cast<int>(OverlapPriority::asIs) <= code && code <= static_cast<int>(OverlapPriority::sketchFirst);
    return isKnown ? std::optional(static_cast<OverlapPriority>(code)) : std::nullopt;
}

ResolvedOverlaps resolvedOverlaps(OverlapPriority priority, const FittedSketch& fitted) {
    switch (priority) {
    case OverlapPriority::asIs:
        return {{fitted.sketch}, fitted.met};
    case OverlapPriority::erase:
        return {{}, restsBeside(fitted)};
    case OverlapPriority::existingFirst:
        return existingFirst(fitted);
    case OverlapPriority::overlapsApart:
        return overlapsApart(fitted);
    case OverlapPriority::sketchFirst:
        return sketchFirst(fitted);
    }
    return {};
}

} // namespace qz
