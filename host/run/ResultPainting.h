#pragma once

#include "component/Arguments.h"
#include "host/HeadlessMap.h"

namespace qz {

// Paints the shapes that a method gave back on the display of the map: dangles red, pseudo nodes blue, regular nodes
// green, everything else red. Nothing for other results.
void paintResult(const Result& result, HeadlessMap& map);

} // namespace qz
