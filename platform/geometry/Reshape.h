#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// Gives the line the course of `path` between the first and the last place at which the path meets it, seen along the
// path; what the path has outside of these two is ignored, and so is its direction. Returns whether the line changed.
//
// One part is reshaped: the one met first of those that are met in two places. A closed part is replaced on the side
// that doesn't hold its start. New vertices have the z and m of the path; where these are undefined, they run from
// those of the line at the one contact to those at the other. Arcs of both stay arcs.
//
// Ends no farther than `tolerance` from the other line meet it. Met nowhere or in one place the line stays as it is.
// Coordinates and a tolerance that are not finite throw PlatformError.
bool reshape(Polyline& line, const Path& path, double tolerance);

// Gives the boundary of the polygon the course of `path` between one place at which they meet and the next, taken in
// turn. A stretch outside makes the polygon grow by what it encloses with the boundary; one inside cuts the polygon,
// and the part with the larger exterior ring stays. What the path has before its first and after its last contact is
// ignored, and so is its direction. Returns whether the polygon changed.
//
// Every exterior ring that is met twice is reshaped; where there is none, every hole, of which a stretch inside it
// leaves the larger part a hole. Holes stay where they lie in the result, and are opened or go where they don't. Parts
// that come to overlap become one. The result is simple; a polygon that is not counts as simplified. z, m, arcs and the
// tolerance are as for lines. Coordinates and a tolerance that are not finite throw PlatformError.
bool reshape(Polygon& polygon, const Path& path, double tolerance);

} // namespace qz
