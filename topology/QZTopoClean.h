#pragma once

#include "platform/app/Application.h"

namespace qz {

// Topological cleaning of a whole class while the editor is editing, in an edit operation of its own. Vertices within
// `dFuzzy`, in the units of the class, become one, and boundaries and lines are noded wherever they meet; see
// clusterNoded. What needed no repair stays as it is, bit for bit and under its object id. What did is replaced by
// copies with the same attributes. A feature that is not larger than the tolerance is deleted, which the user is told.
// A cancelled dialog ends its walk; what was collected so far is used.
//
// False when the editor is not editing, when there are no features or nothing is left of them, with a notice; false
// after a failure, which is reported and takes back the operation.

// Polygons then share their boundaries bit for bit. A polygon that fell apart becomes a feature for each of its parts;
// one that had several parts stays one feature.
[[nodiscard]] bool QZ_TopoCleanPg(FeatureClass& featureClass, double dFuzzy, Application& application);

// Each line is replaced by a feature for each edge it runs along, so that lines end where they meet.
[[nodiscard]] bool QZ_TopoCleanPl(FeatureClass& featureClass, double dFuzzy, Application& application);

} // namespace qz
