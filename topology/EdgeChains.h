#pragma once

#include <span>
#include <vector>

#include "topology/EdgeNodes.h"

namespace qz {

// The edges joined at pseudo nodes, the nodes where the ends of exactly two different edges meet: each chain is a run
// of half-edges, one going on where the one before arrives. A ring of edges is one chain. Chains come in the order of
// their edges with the smallest numbers, and run as these do; a ring begins with it. Edges without length are in none.
// O(n).
[[nodiscard]] Groups QZ_RemovePseudoInDicOutDic(const NodeIndex& nodes);

} // namespace qz
