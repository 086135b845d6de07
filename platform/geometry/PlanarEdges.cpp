#include "platform/geometry/PlanarEdges.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

#include <fmt/format.h>

#include "platform/Error.h"
#include "platform/geometry/SnapRounding.h"

namespace qz {

namespace {

// Each round leaves crossings only between pieces that rounding has bent; one or two rounds are usual. Lines that are
// one but for rounding can go on parting and meeting from number to number without end.
constexpr int roundsAsTheyAre = 12;
// The first of these is proven to do but for a crossing that is rounded into a neighbouring cell.
constexpr int roundsOnCells = 6;
// Some thousand times the rounding of a crossing, and far below what a grid of stored coordinates resolves.
constexpr double cellOfLargestCoordinate = 0x1p-42;

std::optional<XY> nodeInsideSegment(std::span<const Node> nodes) {
    const auto inside = std::ranges::find_if(nodes, [](const Node& node) { return node.ratio > 0; });
    return inside == nodes.end() ? std::nullopt : std::optional(inside->position);
}

std::vector<std::vector<Node>> nodesOfAll(const std::vector<Path>& paths, const ContactTolerance& tolerance) {
    std::vector<const Path*> pointers;
    std::ranges::transform(paths, std::back_inserter(pointers), [](const Path& path) { return &path; });
    return nodesOf(pointers, tolerance);
}

// Puts vertices at the nodes; where there was one that had none, if anywhere.
std::optional<XY> addVertices(NodedPaths& noded) {
    std::optional<XY> place;
    for (std::size_t i = 0; i < noded.paths.size(); ++i) {
        if (const auto inside = nodeInsideSegment(noded.nodes[i])) {
            noded.paths[i] = withVerticesAt(noded.paths[i], noded.nodes[i]);
            place = inside;
        }
    }
    return place;
}

std::optional<XY> nodeInsideAny(const NodedPaths& noded) {
    for (const std::vector<Node>& nodes : noded.nodes) {
        if (const auto inside = nodeInsideSegment(nodes)) {
            return inside;
        }
    }
    return std::nullopt;
}

[[noreturn]] void failAt(XY place) {
    throw PlatformError(fmt::format("The lines can't be broken where they meet: near ({}, {}) they meet anew after "
                                    "every rounding. Moving a vertex there a little should help.",
                                    place.x, place.y));
}

// A power of two, so that its multiples are exact.
double cellFor(const std::vector<Path>& paths) {
    double largest = 0;
    for (const Path& path : paths) {
        for (const XY p : path.xy()) {
            largest = std::max({largest, std::abs(p.x), std::abs(p.y)});
        }
    }
    return std::exp2(std::ceil(std::log2(largest))) * cellOfLargestCoordinate;
}

// Adds vertices until no more are found; where there still is one after as many rounds, if anywhere.
std::optional<XY> addVerticesRepeatedly(NodedPaths& noded, const ContactTolerance& tolerance) {
    std::optional<XY> place;
    for (int round = 0; round < roundsAsTheyAre; ++round) {
        noded.nodes = nodesOfAll(noded.paths, tolerance);
        place = addVertices(noded);
        if (!place) {
            break;
        }
    }
    return place;
}

std::optional<XY> snapRoundRepeatedly(NodedPaths& noded, const ContactTolerance& tolerance) {
    const double cell = cellFor(noded.paths);
    std::optional<XY> place;
    for (int round = 0; round < roundsOnCells; ++round) {
        noded.paths = snapRounded(noded.paths, cell);
        noded.nodes = nodesOfAll(noded.paths, tolerance);
        place = nodeInsideAny(noded);
        if (!place) {
            break;
        }
    }
    return place;
}

} // namespace

NodedPaths fullyNoded(std::vector<Path> paths, const ContactTolerance& tolerance) {
    NodedPaths noded{std::move(paths), {}};
    const bool hasArcs = std::ranges::any_of(noded.paths, &Path::hasArcs);
    std::optional<XY> place = addVerticesRepeatedly(noded, tolerance);
    if (place && !hasArcs) {
        place = snapRoundRepeatedly(noded, tolerance);
    }
    if (place) {
        failAt(*place);
    }
    return noded;
}

} // namespace qz
