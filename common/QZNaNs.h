#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// Whether the vertex has a z value, or, with `useZ` false, an m value.
[[nodiscard]] bool QZ_IsValidZM(const Vertex& vertex, bool useZ);

// The vertices without an m value, in the order of parts and vertices. A failure is reported, and gives none.
[[nodiscard]] Multipoint QZ_GetNaNs(const Geometry& geometry);

} // namespace qz
