#pragma once

#include <cstdint>
#include <string_view>

#include "platform/app/Application.h"

namespace qz {

// Painted with the symbol on the display of the map, until it is drawn anew; nothing is stored. Envelopes are in the
// map's spatial reference; none means what the view shows. False after a failure, which is reported.

// The ground that two polygons of the layer share, once for each pair: in the order of the later of the two, then of
// the earlier, by object id. Of the polygons that meet the envelope, all of which are added to the refresh area.
// `expected` of them move the progress. Only pairs whose interiors meet cost a set operation (see OverlapCandidates).
[[nodiscard]] bool QZ_DrawOverlaps(Application& application, FeatureLayer& layer, std::int32_t expected,
                                   RefreshArea& refresh, const Envelope* envelope, const FillSymbol& symbol);

// The same faults found along the edges of a topology graph, where vertices within `tolerance`, in the units of the
// layer, are one: `what` is "Overlaps", the ground that two or more polygons cover, divided by their borders, or
// "Gaps", the ground that polygons enclose without covering it. Any other word draws nothing.
[[nodiscard]] bool QZ_DrawOverlaps_Topo(Application& application, FeatureLayer& layer, const Envelope* envelope,
                                        double tolerance, std::string_view what, const FillSymbol& symbol);

} // namespace qz
