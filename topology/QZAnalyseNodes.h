#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/app/Application.h"

namespace qz {

// Nodes of a network of lines.
struct NodePoints : Multipoint {
    // Of each point: how many line ends meet there, less one. 0 is a dangle, 1 a pseudo node, 2 and more a regular
    // node.
    std::vector<std::int32_t> ids;
};

// The nodes at which the lines begin and end, in the order of the lines, those of the kind `nType`: "all", "dangle",
// "pseudo", "regular", "d_p", "d_r" or "p_r"; none for another word. A line whose ends meet counts twice there. Where
// they are is what their keys say (see nodeKey): in decimals of the layer's tolerance with `bTrueCoords`, else of
// 1e-15. `what`, `lMax`: see featuresToLookAt; `bChecked` is false when the features in view are too many, with no
// result then. A failure is reported, and gives no result either.
[[nodiscard]] std::optional<NodePoints> QZ_AnalyseNodes(const ActiveView& view, FeatureLayer& layer,
                                                        const SpatialReference& reference, std::string_view what,
                                                        std::string_view nType, bool bTrueCoords, std::int32_t lMax,
                                                        bool& bChecked);

} // namespace qz
