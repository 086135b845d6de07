#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// Moves a geometry into another coordinate system. Where either reference is none or of the unknown kind, or both are
// the same system, the coordinates stay as they are and only the reference changes. z and m are carried unchanged.
// Straight segments are moved by their ends. An arc stays an arc when the moved one departs from the moved original by
// no more than the tolerance of the target, else it becomes straight segments within that tolerance.
// Throws PlatformError, naming the first coordinate that has no place in the target system; the geometry is then
// unchanged.
void project(Geometry& geometry, const SpatialReference& target);

// The projected extent of the envelope's outline, sampled along its sides.
[[nodiscard]] Envelope projected(const Envelope& envelope, const SpatialReference& source,
                                 const SpatialReference& target);

} // namespace qz
