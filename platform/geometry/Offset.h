#pragma once

#include <optional>

#include "platform/geometry/Geometry.h"

namespace qz {

// How an offset is built: the sum of any of these. Other bits count for nothing.
inline constexpr int offsetSimple = 1;   // without what is nearer to the line than the distance
inline constexpr int offsetMitered = 2;  // outer corners run on to a point
inline constexpr int offsetBevelled = 4; // outer corners are cut straight across
inline constexpr int offsetRounded = 8;  // outer corners are arcs about the vertex

// The line beside a line, `distance` to its right (looking along it), or to its left when negative:
//
//                 distance < 0
//        line  o-------------------> o
//                 distance > 0
//
// Shape: a path for each stretch, in the direction and with the awareness and reference of the line; closed paths stay
// closed where nothing is taken away. Straight segments stay straight, arcs stay arcs about their centre. A vertex has
// the z and m of the one it is beside; new ones have them interpolated along the offset.
//
// Corners: outer ones are pointed up to `reach` x |distance| from the vertex and, beyond that, rounded (with
// offsetRounded) or cut straight between the ends of the neighbours. The reach is 10 by default, 1.1 with
// offsetBevelled alone; with offsetRounded but not offsetMitered no corner is pointed. Without a corner bit they are
// as with offsetMitered. A pointed corner that would run into another stretch of the offset is cut like one out of
// reach. Inner corners are where the neighbours cross, whatever the options.
//
// With offsetSimple no place of a rounded offset is nearer to any part of the line than the distance, and it never
// runs over itself; so the line may be broken into several paths or vanish altogether: where it crosses itself, where
// a bend is tighter than the distance, beside an end. Cut corners are nearer by their cut only. Without it neighbours
// are joined as they are, and arcs that are too tight turn inside out.
//
// Distance 0: a copy. Empty lines and lines without length: an empty line. Throws PlatformError for a distance or
// coordinates that are not finite or beyond 1e75. O(n log n) for lines that are not all equally near to themselves.
[[nodiscard]] Polyline offset(const Polyline& line, double distance, int options, std::optional<double> reach = {});

} // namespace qz
