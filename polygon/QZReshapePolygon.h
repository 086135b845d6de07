#pragma once

#include <cstdint>

#include "platform/app/Application.h"

namespace qz {

// Extends the polygon found at the start point, of several the first, by a sketched one, which is prepared as in
// QZ_AddPolygon. Where the sketch meets no other polygon the two are united, whatever the code. Else the others are
// settled by the priority: 2, they lose the sketch's area; 0, they keep theirs, and the polygon is extended by the rest
// of the sketch; with any other code nothing happens, as with a sketch that meets no polygon at all. All that meet get
// each other's vertices on their common boundary. The extended polygon keeps its values, and exists even where the
// sketch covers all of it. False after a failure, which is reported; that there is no polygon at the start point is
// one.
[[nodiscard]] bool QZ_ReshapePolygon(FeatureLayer& layer, const Polygon& sketch, std::int16_t priority,
                                     RefreshArea& refresh, const Point& start);

} // namespace qz
