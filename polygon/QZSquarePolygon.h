#pragma once

#include "platform/app/Application.h"

namespace qz {

// Squares the corners of the first polygon of the update cursor, ring by ring; see QZ_SquarePolygonAngles for an angle
// tolerance above 0 up to 45 degrees, and QZ_SquarePolygonAnglesAll for any other. Each ring keeps the direction of its
// segment nearest to `start`, or without one of its longest segment; of several the first. A ring that can't be squared
// is left out, an exterior one with its holes; the notice tells why.
// False, without a change, when there is no feature with a shape, no ring is left, or the squared rings cross each
// other, which a notice tells; false after a failure, which is reported.
[[nodiscard]] bool QZ_SquarePolygonAnglesRun(FeatureCursor& cursor, const Point* start, RefreshArea& refresh,
                                             double angleTolerance);

} // namespace qz
