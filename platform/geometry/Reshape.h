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

} // namespace qz
