#pragma once

#include <vector>

#include "platform/geometry/CircularArc.h"
#include "platform/geometry/Geometry.h"

namespace qz {

// The points strictly between the ends of an arc, in its direction, at which straight strokes depart from the circle by
// no more than `maximumSagitta`. They lie at whole fractions of the full circle, counted from east: arcs that share a
// piece of one circle share its strokes, whatever their ends and their directions.
[[nodiscard]] std::vector<XY> strokePoints(const CircularArc& arc, double maximumSagitta);

// The geometry with strokes in the place of its arcs; z and m are not kept where there are arcs.
[[nodiscard]] Geometry straightened(const Geometry& geometry, double maximumSagitta);

} // namespace qz
