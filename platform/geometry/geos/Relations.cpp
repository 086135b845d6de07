#include "platform/geometry/Relations.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>

#include "platform/geometry/Noding.h"
#include "platform/geometry/SegmentIndex.h"
#include "platform/geometry/Strokes.h"
#include "platform/geometry/geos/GeosGeometry.h"

namespace qz {

namespace {

// Strokes are this much closer to their arc than places have to be to be told apart.
constexpr double strokesPerTolerance = 10;

constexpr const char* testing = "testing how two geometries lie to each other";

GEOSContextHandle_t handle() {
    return GeosContext::ofThread().handle();
}

bool answer(char returned) {
    return GeosContext::ofThread().answer(returned, testing);
}

GeosGeometryPtr checked(GEOSGeometry* made) {
    if (made == nullptr) {
        GeosContext::ofThread().fail(testing);
    }
    return GeosGeometryPtr(made);
}

GeosGeometryPtr snapped(const GEOSGeometry* geometry, const Multipoint& places, double tolerance) {
    return checked(GEOSSnap_r(handle(), geometry, toGeos(places).get(), tolerance));
}

GeosPreparedPtr prepare(const GEOSGeometry& geometry) {
    const GEOSPreparedGeometry* prepared = GEOSPrepare_r(handle(), &geometry);
    if (prepared == nullptr) {
        GeosContext::ofThread().fail(testing);
    }
    return GeosPreparedPtr(prepared);
}

// The places that are within the tolerance of the outline. Others would change nothing, and GEOS compares each of them
// with all of a geometry.
Multipoint placesNear(const SegmentIndex& outline, double tolerance, std::span<const XY> places) {
    Multipoint near;
    for (const XY place : places) {
        if (outline.isWithin(tolerance, Segment{place, place})) {
            near.vertices.push_back({place.x, place.y});
        }
    }
    return near;
}

std::vector<XY> verticesIn(const Geometry& geometry, const Envelope& window) {
    std::vector<XY> places;
    forEachVertex(geometry, [&](const Vertex& vertex) {
        if (window.contains(vertex.xy())) {
            places.push_back(vertex.xy());
        }
    });
    return places;
}

std::vector<XY> verticesOf(const GEOSGeometry& geometry) {
    std::vector<XY> places = pointsIn(geometry);
    const auto addAll = [&places](const std::vector<Path>& paths) {
        for (const Path& path : paths) {
            places.insert(places.end(), path.xy().begin(), path.xy().end());
        }
    };
    addAll(linesIn(geometry));
    std::ranges::for_each(polygonsIn(geometry), addAll);
    return places;
}

bool relates(SpatialRelation relation, const GEOSGeometry* tested, const GEOSGeometry* search) {
    switch (relation) {
    case SpatialRelation::touches:
        return answer(GEOSTouches_r(handle(), tested, search));
    case SpatialRelation::overlaps:
        return answer(GEOSOverlaps_r(handle(), tested, search));
    case SpatialRelation::crosses:
        return answer(GEOSCrosses_r(handle(), tested, search));
    case SpatialRelation::within:
        return answer(GEOSWithin_r(handle(), tested, search));
    case SpatialRelation::contains:
        return answer(GEOSContains_r(handle(), tested, search));
    case SpatialRelation::notSet:
    case SpatialRelation::intersects:
    case SpatialRelation::envelopeIntersects:
        return answer(GEOSIntersects_r(handle(), tested, search));
    }
    return false;
}

// How the lines and outlines of two geometries that both have some meet; none of the crossings is within the tolerance
// of a vertex.
struct OutlineMeetings {
    bool anyCrossing = false;
    bool onlyCrossings = false;
};

OutlineMeetings meetingsOf(const Geometry& tested, std::span<const Path> outline, double tolerance) {
    std::vector<const Path*> paths = pathsOf(tested);
    const std::size_t own = paths.size();
    std::ranges::transform(outline, std::back_inserter(paths), [](const Path& path) { return &path; });
    OutlineMeetings meetings{false, true};
    for (const std::vector<Node>& ofPath : nodesOfFirst(own, paths, {.endDistance = tolerance})) {
        for (const Node& node : ofPath) {
            const bool crosses = node.kind == NodeKind::crossing;
            meetings.anyCrossing |= node.otherPath >= own && crosses;
            meetings.onlyCrossings &= node.otherPath < own || crosses;
        }
    }
    return meetings;
}

bool areAreas(const Geometry& a, const Geometry& b) {
    return a.kind() == GeometryKind::polygon && b.kind() == GeometryKind::polygon;
}

// A vertex of a geometry; nothing when one of them isn't finite.
std::optional<XY> placeOf(const Geometry& geometry) {
    std::optional<XY> place;
    bool areFinite = true;
    forEachVertex(geometry, [&](const Vertex& vertex) {
        place = vertex.xy();
        areFinite = areFinite && isFinite(*place);
    });
    return areFinite ? place : std::nullopt;
}

bool asksForCommonPointOnly(SpatialRelation relation) {
    return relation == SpatialRelation::intersects || relation == SpatialRelation::notSet;
}

} // namespace

struct PreparedRelation::Impl {
    Impl(const Geometry& searchGeometry, SpatialRelation asked);

    [[nodiscard]] bool holdsFor(const Geometry& tested) const;
    [[nodiscard]] bool holdsForStraight(const Geometry& tested) const;
    [[nodiscard]] bool isInside(XY place) const;
    [[nodiscard]] bool hasPartInside(const Geometry& tested) const;
    [[nodiscard]] bool relatesClear(const GEOSGeometry* tested) const;
    [[nodiscard]] bool relatesSnapped(const Geometry& tested, const GEOSGeometry* testedGeos) const;

    SpatialRelation relation;
    double tolerance;
    Envelope envelope;
    Geometry search; // without arcs
    GeosGeometryPtr geos;
    GeosPreparedPtr prepared;
    SegmentIndex outline;
};

PreparedRelation::Impl::Impl(const Geometry& searchGeometry, SpatialRelation asked)
    : relation(asked), tolerance(searchGeometry.spatialReference().grid().xyTolerance),
      envelope(searchGeometry.envelope()) {
    if (searchGeometry.isEmpty() || relation == SpatialRelation::envelopeIntersects) {
        return;
    }
    search = straightened(searchGeometry, tolerance / strokesPerTolerance);
    geos = toGeos(search);
    prepared = prepare(*geos);
    outline = SegmentIndex(search);
}

// For geometries whose outlines are so far apart that the tolerance plays no part.
bool PreparedRelation::Impl::relatesClear(const GEOSGeometry* tested) const {
    if (answer(GEOSPreparedContains_r(handle(), prepared.get(), tested))) {
        return relation == SpatialRelation::within;
    }
    return relates(relation, tested, geos.get());
}

// Each of the two takes over the places of the other that are within the tolerance, so that a vertex on a slanted
// segment, which is hardly ever exact, lies on it.
bool PreparedRelation::Impl::relatesSnapped(const Geometry& tested, const GEOSGeometry* testedGeos) const {
    const Envelope window = tested.envelope().expandedBy(tolerance, tolerance);
    const bool haveLines = !pathsOf(tested).empty() && !pathsOf(search).empty();
    const OutlineMeetings meetings =
        haveLines ? meetingsOf(tested, outline.linesIn(window), tolerance) : OutlineMeetings();
    if (meetings.anyCrossing && areAreas(tested, search)) {
        return relation ==
               SpatialRelation::overlaps; // around a crossing lie all four: in both, in one, in the other, in none
    }
    if (meetings.onlyCrossings) {
        return relates(relation, testedGeos, geos.get());
    }
    const Multipoint ofSearch = placesNear(SegmentIndex(tested), tolerance, verticesIn(search, window));
    const GeosGeometryPtr snappedTested = snapped(testedGeos, ofSearch, tolerance);
    const Multipoint ofTested = placesNear(outline, tolerance, verticesOf(*snappedTested));
    return relates(relation, snappedTested.get(), snapped(geos.get(), ofTested, tolerance).get());
}

bool PreparedRelation::Impl::holdsFor(const Geometry& tested) const {
    const Envelope window = tested.envelope().expandedBy(tolerance, tolerance);
    if (!window.intersects(envelope)) {
        return false;
    }
    if (const auto place = outline.isClearOf(window) ? placeOf(tested) : std::nullopt) {
        return (asksForCommonPointOnly(relation) || relation == SpatialRelation::within) && isInside(*place);
    }
    if (hasArcs(tested)) {
        return holdsForStraight(straightened(tested, tolerance / strokesPerTolerance));
    }
    return holdsForStraight(tested);
}

// For places that are not near the outline.
bool PreparedRelation::Impl::isInside(XY place) const {
    if (search.kind() != GeometryKind::polygon) {
        return false;
    }
    const GeosGeometryPtr point = toGeos(Point({place.x, place.y}));
    return answer(GEOSPreparedIntersects_r(handle(), prepared.get(), point.get()));
}

bool PreparedRelation::Impl::holdsForStraight(const Geometry& tested) const {
    const bool isNear = outline.isWithin(tolerance, tested);
    if (isNear && asksForCommonPointOnly(relation)) {
        return true;
    }
    if (!isNear && asksForCommonPointOnly(relation) && search.kind() == GeometryKind::polygon &&
        !tested.envelope().contains(envelope) && !pathsOf(tested).empty()) {
        return hasPartInside(tested);
    }
    const GeosGeometryPtr testedGeos = toGeos(tested);
    if (isNear) {
        return relatesSnapped(tested, testedGeos.get());
    }
    const bool meets = answer(GEOSPreparedIntersects_r(handle(), prepared.get(), testedGeos.get()));
    return meets && (asksForCommonPointOnly(relation) || relatesClear(testedGeos.get()));
}

// For geometries whose outlines are apart and that can't surround the search geometry: each of their paths lies inside
// or outside as a whole.
bool PreparedRelation::Impl::hasPartInside(const Geometry& tested) const {
    return std::ranges::any_of(pathsOf(tested),
                               [this](const Path* path) { return !path->isEmpty() && isInside(path->xy().front()); });
}

PreparedRelation::PreparedRelation(const Geometry& search, SpatialRelation relation)
    : impl_(std::make_unique<Impl>(search, relation)) {}

PreparedRelation::~PreparedRelation() = default;
PreparedRelation::PreparedRelation(PreparedRelation&&) noexcept = default;
PreparedRelation& PreparedRelation::operator=(PreparedRelation&&) noexcept = default;

bool PreparedRelation::holdsFor(const Geometry& tested) const {
    if (tested.isEmpty() || impl_->envelope.isEmpty()) {
        return false;
    }
    if (impl_->relation == SpatialRelation::envelopeIntersects) {
        return tested.envelope().intersects(impl_->envelope);
    }
    return impl_->holdsFor(tested);
}

bool intersects(const Geometry& a, const Geometry& b) {
    return PreparedRelation(b, SpatialRelation::intersects).holdsFor(a);
}

bool disjoint(const Geometry& a, const Geometry& b) {
    return !intersects(a, b);
}

bool touches(const Geometry& a, const Geometry& b) {
    return PreparedRelation(b, SpatialRelation::touches).holdsFor(a);
}

bool overlaps(const Geometry& a, const Geometry& b) {
    return PreparedRelation(b, SpatialRelation::overlaps).holdsFor(a);
}

bool crosses(const Geometry& a, const Geometry& b) {
    return PreparedRelation(b, SpatialRelation::crosses).holdsFor(a);
}

bool within(const Geometry& a, const Geometry& b) {
    return PreparedRelation(b, SpatialRelation::within).holdsFor(a);
}

bool contains(const Geometry& a, const Geometry& b) {
    return PreparedRelation(b, SpatialRelation::contains).holdsFor(a);
}

bool equals(const Geometry& a, const Geometry& b) {
    if (a.isEmpty() || b.isEmpty()) {
        return a.isEmpty() && b.isEmpty();
    }
    return within(a, b) && contains(a, b);
}

} // namespace qz
