#include "platform/geometry/PlanarEdges.h"

#include <algorithm>
#include <iterator>

namespace qz {

namespace {

// Each round leaves crossings only between pieces that rounding has bent; two rounds are usual.
constexpr int maximumRounds = 12;

bool isInsideSegment(const Node& node) {
    return node.ratio > 0;
}

} // namespace

NodedPaths fullyNoded(std::vector<Path> paths, const ContactTolerance& tolerance) {
    NodedPaths noded{std::move(paths), {}};
    for (int round = 0; round < maximumRounds; ++round) {
        std::vector<const Path*> pointers;
        std::ranges::transform(noded.paths, std::back_inserter(pointers), [](const Path& path) { return &path; });
        noded.nodes = nodesOf(pointers, tolerance);
        bool anyNew = false;
        for (std::size_t i = 0; i < noded.paths.size(); ++i) {
            if (std::ranges::any_of(noded.nodes[i], isInsideSegment)) {
                noded.paths[i] = withVerticesAt(noded.paths[i], noded.nodes[i]);
                anyNew = true;
            }
        }
        if (!anyNew) {
            break;
        }
    }
    return noded;
}

} // namespace qz
