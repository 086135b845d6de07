#pragma once

#include "platform/app/Application.h"

namespace qz {

// Reverses every polyline that the cursor delivers: the first vertex of each part becomes its last, and the coordinates
// are snapped to the spatial reference of the class. Null and empty shapes are left alone. Each polyline as it was is
// added to the refresh area.
// `expected` sizes the progress only. Throws PlatformError at the first shape that is no polyline; what was flipped
// before stays stored.
void flipPolylines(Application& application, FeatureCursor& cursor, std::int32_t expected, RefreshArea& refresh);

} // namespace qz
