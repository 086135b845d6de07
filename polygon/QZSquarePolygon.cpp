#include "polygon/QZSquarePolygon.h"

#include <algorithm>

#include "common/ErrorExit.h"
#include "common/FeatureShapes.h"
#include "common/InReference.h"
#include "platform/app/Services.h"
#include "platform/geometry/Boundary.h"
#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/SubCurve.h"
#include "polygon/QZSquareAngles.h"

namespace qz {

namespace {

// The closed path from one of its vertices on.
Path startingAt(const Path& ring, std::size_t vertex) {
    if (vertex == 0) {
        return ring;
    }
    const auto end = [&ring](std::size_t i) { return CurveEnd{{0, i, 0}, ring.vertex(i)}; };
    Path turned = pathBetween(ring, end(vertex), end(ring.segmentCount()));
    turned.append(pathBetween(ring, end(0), end(vertex)));
    return turned;
}

std::size_t longestSegment(const Path& ring) {
    std::size_t longest = 0;
    double most = 0;
    forEachSegment(ring, [&](std::size_t i, const CurveSegment& segment) {
        if (segment.length() > most) {
            most = segment.length();
            longest = i;
        }
    });
    return longest;
}

std::size_t nearestSegment(const Path& ring, XY place) {
    const auto position = positionOf(place, ring);
    return position ? position->segment : 0;
}

// A ring by itself as the path that is squared; several when it falls apart, none when nothing is left of it.
Polyline squaringSequence(const Path& ring, const GeometryTraits& traits, const Point* start) {
    Polygon alone;
    static_cast<GeometryTraits&>(alone) = traits;
    alone.rings = {ring};
    Polyline sequence = boundary(simplified(alone));
    for (Path& path : sequence.paths) {
        const std::size_t first = start ? nearestSegment(path, start->vertex.xy()) : longestSegment(path);
        path = startingAt(path, first);
    }
    return sequence;
}

using Sequences = std::vector<Polyline>; // one a ring

// Nothing when nothing is left of a ring.
std::optional<Sequences> squaringSequences(const Polygon& polygon, const Point* start) {
    Sequences sequences;
    for (const Path& ring : polygon.rings) {
        sequences.push_back(squaringSequence(ring, polygon, start));
        if (sequences.back().isEmpty()) {
            return std::nullopt;
        }
    }
    return sequences;
}

// In the direction of its role; the very ring when it is square already.
std::optional<Path> squaredRing(const Path& ring, const Polyline& sequence, double angleTolerance) {
    const bool withinTolerance = 0 < angleTolerance && angleTolerance <= 45;
    const auto squared =
        withinTolerance ? QZ_SquarePolygonAngles(sequence, angleTolerance) : QZ_SquarePolygonAnglesAll(sequence);
    if (!squared) {
        return std::nullopt;
    }
    if (squared->rings.front() == sequence.paths.front()) {
        return ring;
    }
    Path result = squared->rings.front();
    if (isExterior(result) != isExterior(ring)) {
        result.reverse();
    }
    return result;
}

// Empty when no ring is left.
Polygon squared(const Polygon& polygon, const Sequences& sequences, double angleTolerance) {
    Polygon result = polygon;
    result.rings.clear();
    auto sequence = sequences.begin();
    for (const std::span<const Path> part : polygonParts(polygon)) {
        bool isLeftOut = false;
        for (const Path& ring : part) {
            auto made = isLeftOut ? std::nullopt : squaredRing(ring, *sequence, angleTolerance);
            isLeftOut = isLeftOut || (!made && &ring == &part.front());
            if (made) {
                result.rings.push_back(std::move(*made));
            }
            ++sequence;
        }
    }
    return result;
}

bool ringsCross(const Polygon& polygon) {
    if (polygon.rings.size() < 2 || isSimple(polygon)) {
        return false;
    }
    showMessage("The squared rings cross each other!\nDecrease the angle tolerance and try again");
    return true;
}

} // namespace

bool QZ_SquarePolygonAnglesRun(FeatureCursor& cursor, const Point* start, RefreshArea& refresh, double angleTolerance) {
    enum class Step { feature = 1, rings = 2, store = 3 };
    return withSteppedExit(" QZ_SquarePolygonAnglesRun w =", Step::feature, false, [&](Step& step) {
        const FeaturePtr feature = cursor.next();
        if (!hasShape(feature.get())) {
            return false;
        }
        const Polygon polygon = feature->shape()->as<Polygon>();
        refresh.add(polygon);
        step = Step::rings;
        const auto place = start ? std::optional(inReference(*start, polygon.spatialReference)) : std::nullopt;
        const auto sequences = squaringSequences(polygon, place ? &*place : nullptr);
        const Polygon result = sequences ? squared(polygon, *sequences, angleTolerance) : Polygon();
        if (result.isEmpty() || ringsCross(result)) {
            return false;
        }
        step = Step::store;
        refresh.add(result);
        feature->setShape(result);
        cursor.update(*feature);
        return true;
    });
}

} // namespace qz
