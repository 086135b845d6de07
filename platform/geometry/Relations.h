#pragma once

#include <memory>

#include "platform/geometry/Geometry.h"

namespace qz {

// How a feature lies to a search geometry. `undefined` is the state of a filter whose relation was never set.
enum class SpatialRelation {
    undefined = 0,
    intersects = 1,
    envelopeIntersects = 2,
    touches = 4,
    overlaps = 5,
    crosses = 6,
    within = 7,
    contains = 8
};

// A search geometry made ready for many tests. The geometry given is copied.
class PreparedRelation {
public:
    // `relation`: how the tested geometry has to lie to `search` ("within": the tested one within the search geometry).
    // Undefined means intersects.
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

} // namespace qz
