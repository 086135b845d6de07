#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// Polygon: the area that its segments enclose, with proper rings. The segments may be given in any order and direction,
// also as open pieces; where they enclose a place an even number of times it is outside. Dangling segments go, and so
// do spikes and rings less wide than the resolution. A polygon that obeys the rules already only gets its rings in the
// order and direction of their roles.
//   simplified(simplified(p)) == simplified(p); arcs, z and m are kept
[[nodiscard]] Polygon simplified(const Polygon& polygon);

// Polyline as a network: stretches that several segments share become one, lines are broken where they cross or touch
// themselves, and a new path starts at every place where three ends or more meet. A line that crosses itself once gives
// three paths. Paths keep their direction and order as far as possible.
[[nodiscard]] Polyline simplifiedPlanar(const Polyline& polyline);

// Polyline as a route, which may run over itself: only segments without length go, and paths are joined where exactly
// two ends meet.
[[nodiscard]] Polyline simplifiedAlong(const Polyline& polyline);

// Points that are equal in x, y and every value the multipoint is aware of become one, the first.
[[nodiscard]] Multipoint simplified(const Multipoint& multipoint);

// The above by kind; a polyline that has measures stays a route, any other becomes a network.
[[nodiscard]] Geometry simplified(const Geometry& geometry);

// Whether a polygon's rings are closed, wide enough, don't cross, and are nested and directed as they should.
[[nodiscard]] bool isSimple(const Polygon& polygon);

} // namespace qz
