#pragma once

#include <memory>

#include "platform/geometry/Geometry.h"

namespace qz {

// How a feature lies to a search geometry. `notSet` is the state of a filter whose relation was never chosen.
enum class SpatialRelation {
    notSet = 0,
    intersects = 1,
    envelopeIntersects = 2,
    touches = 4,
    overlaps = 5,
    crosses = 6,
    within = 7,
    contains = 8
};

// A search geometry made ready for many tests. The geometry given is copied. Places that are no farther apart than the
// tolerance of its spatial reference are one place.
//
// Contains: nothing of the other lies outside, and the interiors meet; a point on the boundary is not contained.
//
// Touches: the boundaries meet, the interiors do not; the boundary of a line is its two ends.
//
// Crosses: lines that meet inside both of them, in points only; a line or multipoint that is partly inside an area.
//
// Overlaps: the common part has the dimension of both, and neither contains the other.
class PreparedRelation {
public:
    // `relation`: how the tested geometry has to lie to `search` ("within": the tested one within the search geometry).
    // Not set means intersects.
    PreparedRelation(const Geometry& search, SpatialRelation relation);
    ~PreparedRelation();
    PreparedRelation(PreparedRelation&&) noexcept;
    PreparedRelation& operator=(PreparedRelation&&) noexcept;

    // False for an empty geometry. Both in the same coordinate system.
    [[nodiscard]] bool holdsFor(const Geometry& tested) const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// One test at a time, within the tolerance of the second geometry. An empty geometry is disjoint from all, and equal to
// an empty one only.
[[nodiscard]] bool intersects(const Geometry& a, const Geometry& b);
[[nodiscard]] bool disjoint(const Geometry& a, const Geometry& b);
[[nodiscard]] bool touches(const Geometry& a, const Geometry& b);
[[nodiscard]] bool overlaps(const Geometry& a, const Geometry& b);
[[nodiscard]] bool crosses(const Geometry& a, const Geometry& b);
[[nodiscard]] bool within(const Geometry& a, const Geometry& b);
[[nodiscard]] bool contains(const Geometry& a, const Geometry& b);
// The same places, however they are divided into parts and vertices.
[[nodiscard]] bool equals(const Geometry& a, const Geometry& b);

} // namespace qz
