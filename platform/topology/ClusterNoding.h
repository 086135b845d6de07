#pragma once

#include <vector>

#include "platform/geometry/Path.h"

namespace qz {

// Lines and rings made one network: vertices that lie within the tolerance of each other become one, segments that a
// vertex comes within the tolerance of are led through it, and segments that cross get a vertex there, until nothing of
// this is left. Segments then meet at vertices only, or are the same; all vertices are farther than the tolerance from
// each other and from every segment they are not on, but where leading a segment through a vertex would give a longer
// one.
//
// Places move as little as possible. A vertex goes to the nearest of those that came before it, in the order of the
// paths; a crossing goes to a vertex within the tolerance, if there is one. Places never lie at averages, so that what
// obeys the rules already stays bit for bit, and doing it again changes nothing. z and m stay with the vertices of
// their path, and are interpolated at new ones. A path that becomes one place comes back empty.
//
// `first`: places that come before all vertices.
//
// The paths have no arcs. A tolerance below what the coordinates can tell apart counts as that. Throws PlatformError
// for a tolerance that is negative or not finite.
[[nodiscard]] std::vector<Path> clusterNoded(std::vector<Path> paths, double tolerance,
                                             const std::vector<XY>& first = {});

} // namespace qz
