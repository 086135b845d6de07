#include "topology/QZAnalyseNodes.h"

#include <algorithm>
#include <array>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/NodeKey.h"
#include "common/QZPrecision.h"
#include "topology/FinderSearch.h"

namespace qz {

namespace {

// Which degrees a code asks for: 0, 1, and 2 or more.
struct NodeType {
    std::string_view code;
    std::array<bool, 3> wanted;
};

constexpr std::array<NodeType, 7> nodeTypes{{{"all", {true, true, true}},
                                             {"dangle", {true, false, false}},
                                             {"pseudo", {false, true, false}},
                                             {"regular", {false, false, true}},
                                             {"d_p", {true, true, false}},
                                             {"d_r", {true, false, true}},
                                             {"p_r", {false, true, true}}}};

std::array<bool, 3> degreesOf(std::string_view code) {
    const auto* const type = std::ranges::find(nodeTypes, code, &NodeType::code);
    return type == nodeTypes.end() ? std::array{false, false, false} : type->wanted;
}

class LineEnds {
public:
    explicit LineEnds(std::int16_t decimals) : nodes_(decimals) {}

    void add(const Polyline& line) {
        count(line.paths.front().xy().front());
        count(line.paths.back().xy().back());
    }

    void appendTo(NodePoints& points, std::array<bool, 3> wanted) const {
        for (std::size_t node = 0; node < nodes_.size(); ++node) {
            const std::int32_t degree = degrees_[node];
            if (wanted[static_cast<std::size_t>(std::min(degree, 2))]) {
                points.vertices.push_back({nodes_[node].x, nodes_[node].y});
                points.ids.push_back(degree);
            }
        }
    }

private:
    void count(XY end) {
        const std::size_t node = nodes_.add(end);
        if (node == degrees_.size()) {
            degrees_.push_back(0);
        } else {
            ++degrees_[node];
        }
    }

    NodeNumbers nodes_;
    std::vector<std::int32_t> degrees_; // by node
};

std::int16_t decimalsOfKeys(const FeatureClass& featureClass, bool trueCoordinates) {
    return trueCoordinates ? nodeDecimals(featureClass) : QZ_DecimalsFromTolerance(finestTolerance);
}

} // namespace

std::optional<NodePoints> QZ_AnalyseNodes(const ActiveView& view, FeatureLayer& layer,
                                          const SpatialReference& reference, std::string_view what,
                                          std::string_view nType, bool bTrueCoords, std::int32_t lMax, bool& bChecked) {
    bChecked = false;
    return withErrorExit(" QZ_AnalyseNodes", std::optional<NodePoints>(), [&]() -> std::optional<NodePoints> {
        FeatureClass& featureClass = layer.featureClass();
        LineEnds ends(decimalsOfKeys(featureClass, bTrueCoords));
        const CursorPtr lines = featuresToLookAt(view, featureClass, reference, what, lMax);
        bChecked = lines != nullptr;
        if (!bChecked) {
            return std::nullopt;
        }
        forEachShaped(*lines, [&ends](const FeaturePtr& line) { ends.add(line->shape()->as<Polyline>()); });
        NodePoints points;
        points.spatialReference = featureClass.spatialReference();
        ends.appendTo(points, degreesOf(nType));
        return points;
    });
}

} // namespace qz
