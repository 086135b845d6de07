#pragma once

#include "platform/app/Application.h"

namespace qz {

// The two clicks of an extension: the end nearer to the first one is extended, by no more than their distance.
struct ExtensionClicks {
    XY first;
    XY second;
    SpatialReference reference; // of both; that of the line when it is none
};

// Lengthens the first line that the cursor delivers along the tangent of its end, to the nearest other line of the
// layer that this meets. A straight last segment is lengthened; after an arc a straight one is added. The new end has
// the height of the line met there, and goes on in measure as the line does. With `split` the line met is cut there,
// when within `fuzzy` of the new end lie just these two lines. A line of several parts, and a tangent that meets
// nothing, are refused with a notice. False then, and after a failure, which is reported.
[[nodiscard]] bool QZ_ExtendPolyline2(FeatureLayer& layer, FeatureCursor& cursor, const ExtensionClicks& clicks,
                                      double fuzzy, RefreshArea& refresh, bool split, bool bOver);

} // namespace qz
