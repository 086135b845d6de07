#include "platform/geometry/Relations.h"

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

GeosPreparedPtr prepare(const GEOSGeometry& geometry) {
    const GEOSPreparedGeometry* prepared = GEOSPrepare_r(handle(), &geometry);
    if (prepared == nullptr) {
        GeosContext::ofThread().fail(testing);
    }
    return GeosPreparedPtr(prepared);
}

Multipoint verticesIn(const Geometry& geometry, const Envelope& window) {
    Multipoint points;
    forEachVertex(geometry, [&](const Vertex& vertex) {
        if (window.contains(vertex.xy())) {
            points.vertices.push_back(vertex);
        }
    });
    return points;
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

bool asksForCommonPointOnly(SpatialRelation relation) {
    return relation == SpatialRelation::intersects || relation == SpatialRelation::notSet;
}

} // namespace

struct PreparedRelation::Impl {
    Impl(const Geometry& searchGeometry, SpatialRelation asked);

    [[nodiscard]] bool holdsFor(const Geometry& tested) const;
    [[nodiscard]] bool relatesClear(const GEOSGeometry* tested) const;
    [[nodiscard]] bool relatesSnapped(const GEOSGeometry* tested, const Envelope& window) const;

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
bool PreparedRelation::Impl::relatesSnapped(const GEOSGeometry* tested, const Envelope& window) const {
    const GeosGeometryPtr places = toGeos(verticesIn(search, window));
    const GeosGeometryPtr snappedTested = checked(GEOSSnap_r(handle(), tested, places.get(), tolerance));
    const GeosGeometryPtr snappedSearch = checked(GEOSSnap_r(handle(), geos.get(), snappedTested.get(), tolerance));
    return relates(relation, snappedTested.get(), snappedSearch.get());
}

bool PreparedRelation::Impl::holdsFor(const Geometry& tested) const {
    const Envelope window = tested.envelope().expandedBy(tolerance, tolerance);
    if (!window.intersects(envelope)) {
        return false;
    }
    const Geometry straight = straightened(tested, tolerance / strokesPerTolerance);
    const GeosGeometryPtr testedGeos = toGeos(straight);
    const bool meets = answer(GEOSPreparedIntersects_r(handle(), prepared.get(), testedGeos.get()));
    if (meets && asksForCommonPointOnly(relation)) {
        return true;
    }
    if (outline.isWithin(tolerance, straight)) {
        return asksForCommonPointOnly(relation) || relatesSnapped(testedGeos.get(), window);
    }
    return meets && relatesClear(testedGeos.get());
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
