#pragma once

#include <optional>

#include "platform/app/Application.h"

namespace qz {

// Cuts every line that the cursor delivers where it crosses itself, and then all of them where they meet: at crossings,
// touches, common ends and the ends of stretches that two lines share, so that cutting them again changes no geometry.
// Every piece is a new feature with values by the layer's attribute rules; the lines it comes from are deleted once all
// pieces are stored. Lines that meet others at their ends only become copies of themselves. Crossings within the
// tolerance of the layer's reference are one place, bit for bit the same on all pieces that meet there, with the height
// of the first line. `expected` sizes the progress only. Near-linear in the number of segments and crossings. False
// when fewer than two lines are left to intersect or none meet (self-crossings are cut then all the same), and after a
// failure, which is reported.
[[nodiscard]] bool IntersectSelected2(Application& application, FeatureLayer& layer, FeatureCursor& cursor,
                                      std::int32_t expected, RefreshArea& refresh, bool bOver);

// The same, telling a failure, which is reported, from that there was nothing to cut: nothing is returned then.
[[nodiscard]] std::optional<bool> intersectSelected(Application& application, FeatureLayer& layer,
                                                    FeatureCursor& cursor, std::int32_t expected, RefreshArea& refresh,
                                                    bool bOver);

// Cuts the lines that the cursor delivers where they meet the cutter; the rest as above. False after a failure, which
// is reported.
[[nodiscard]] bool QZ_SplitWithPolyline2(Application& application, FeatureLayer& layer, FeatureCursor& cursor,
                                         const Polyline& cutter, std::int32_t expected, RefreshArea& refresh,
                                         bool bOver);

} // namespace qz
