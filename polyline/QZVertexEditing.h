#pragma once

#include "platform/app/Application.h"

namespace qz {

// Inserts a vertex into a line or the boundary of a polygon and writes the feature through the update cursor: exactly
// at the point with `bSame`, so that the line is bent through it, else where the line is nearest to it. `inserted`
// becomes the new vertex. Nothing happens at a vertex that is there already, without a feature, and to shapes without
// length. False after a failure, which is reported.
[[nodiscard]] bool QZ_InsertVertexRun(FeatureCursor& cursor, Feature* feature, const Point& point, RefreshArea& refresh,
                                      Point& inserted, bool bSame);

// Removes the vertices inside the envelope, its sides included, from every line and polygon that the cursor delivers. A
// run of them is replaced by a straight segment between its neighbours; a line that begins or ends with one begins or
// ends at the next. Parts without length and rings of fewer than three places go, and so does a feature of which
// nothing is left. Features without a vertex inside stay as they are. False after a failure, which is reported.
[[nodiscard]] bool QZ_DeleteMultiVertices(Application& application, FeatureLayer& layer, FeatureCursor& cursor,
                                          const Envelope* envelope, std::int32_t expected, RefreshArea& refresh);

} // namespace qz
