#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// Rigid motions of all vertices and control points, so that arcs stay arcs; z and m are carried unchanged. Numbers that
// are not finite throw PlatformError and leave the geometry as it is.

void move(Geometry& geometry, double dx, double dy);

// Counter-clockwise by `radians` about the centre. Right angles are exact: a quarter turn exchanges coordinates without
// rounding them otherwise than by their difference to the centre.
void rotate(Geometry& geometry, XY centre, double radians);

} // namespace qz
