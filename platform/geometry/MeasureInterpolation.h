#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// Measures along lines, by planar distance along true arcs. The control points of arcs get theirs like vertices do.
// Coordinates that are not finite throw PlatformError.

// Gives the undefined measures that lie between two defined ones of the same part linear values between them. Those
// before the first and after the last defined one stay undefined.
void interpolateMeasures(Path& path);
void interpolateMeasures(Polyline& line);

// Gives the undefined measures before the first and after the last defined one of a part values that go on at the rate
// of the nearest two defined ones that are some distance apart. Fewer than two: they stay undefined.
void extrapolateMeasures(Path& path);
void extrapolateMeasures(Polyline& line);

// All measures anew, linear from `start` at the start of the line to `end` at its end, parts one after the other; a
// line without length has `start` throughout. Leaves the line as it is when one of the two is undefined.
void setLinearMeasures(Path& path, double start, double end);
void setLinearMeasures(Polyline& line, double start, double end);

} // namespace qz
