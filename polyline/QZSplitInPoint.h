#pragma once

#include <string>

#include "platform/app/Application.h"

namespace qz {

// Where to cut a line.
struct SplitPlace {
    // "Point": where the line is nearest to the click. "Vertex": at its vertex nearest to the click. "Middle": halfway.
    // "AllVertices": at every vertex inside it. "Distance": at the distance from its start. Letter case counts; with
    // any other word the line is not cut.
    std::string option;
    XY click;            // in `reference`
    double distance = 0; // in the units of `reference`
    // What the line is measured in; the line's own when it is none.
    SpatialReference reference;
};

// Cuts the first line that the cursor delivers and deletes it once its pieces are stored. Positions at an end of the
// line cut nothing: the line is then replaced by a copy of itself.
// A line of several parts, and a distance beyond the line's length, are refused with a notice. False then, and after a
// failure, which is reported.
[[nodiscard]] bool QZ_SplitInPoint2(FeatureLayer& layer, FeatureCursor& cursor, const SplitPlace& place,
                                    RefreshArea& refresh, bool bOver);

} // namespace qz
