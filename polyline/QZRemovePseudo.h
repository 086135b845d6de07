#pragma once

#include <cstdint>

#include "platform/app/Application.h"

namespace qz {

// Merges the lines of the cursor at their pseudo nodes: the nodes where exactly two ends of different lines meet, when
// both have the same text in the field `dissolveField` (the place among the fields; -1: any lines). Only lines of the
// cursor count. Nodes are those of building polygons (see NodeKey.h), by the tolerance of the class.
//
// Every chain of lines becomes one feature: that with the lower object id of the two at its ends, in a closed chain the
// lowest of all. From it on the chain is ordered. The merged line runs that way unless all of its lines run the other
// way; vertices, z, m and arcs stay, and where coordinates of one node differ a straight segment joins them. Values
// follow the union rules (see writeChainValues). Then the other features are deleted. `expected` moves the progress.
// False after a failure, which is reported. O(n).
[[nodiscard]] bool QZ_RemovePseudo(Application& application, FeatureLayer& layer, FeatureCursor& cursor,
                                   std::int32_t dissolveField, std::int32_t expected, RefreshArea& refresh);

} // namespace qz
