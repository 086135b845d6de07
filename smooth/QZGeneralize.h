#pragma once

#include <string>

#include "platform/app/Application.h"

namespace qz {

// Changing how many vertices lines and polygons have, in place. Shapes come in the reference of the data, distances are
// in units of the map's reference: shapes are projected there and back, vertices that stay keep their coordinates bit
// for bit. Written through the update cursor. False after a failure, which is reported; points are one.

struct References {
    SpatialReference data;
    SpatialReference map;
};

// Leaves out the vertices that the shape can do without, see generalize(). A polygon of which nothing would be left
// stays as it is, which the user is told at the end.
[[nodiscard]] bool QZ_Generalize(Application& application, FeatureCursor& cursor, double maximumOffset,
                                 const References& references, std::int32_t expected, RefreshArea& refresh);

// "Normal": segments no longer than `iPar0` and no farther from arcs than `iPar1`. Any other word: no longer than
// `iPar0`, and arcs in pieces that turn by no more than `iPar1` radians. See densify() and densifyByAngle().
[[nodiscard]] bool QZ_Densify(Application& application, FeatureCursor& cursor, const std::string& sGenType,
                              double iPar0, double iPar1, const References& references, std::int32_t expected,
                              RefreshArea& refresh);

} // namespace qz
