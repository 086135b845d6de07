#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/PlanarEdges.h"
#include "platform/geometry/SnapRounding.h"
#include "platform/geometry/Vectors.h"

namespace qz {
namespace {

std::size_t nodesInsideSegments(const std::vector<Path>& paths) {
    std::vector<const Path*> pointers;
    std::ranges::transform(paths, std::back_inserter(pointers), [](const Path& path) { return &path; });
    std::size_t count = 0;
    for (const std::vector<Node>& nodes : nodesOf(pointers)) {
        count +=
            static_cast<std::size_t>(std::ranges::count_if(nodes, [](const Node& node) { return node.ratio > 0; }));
    }
    return count;
}

// A line and some that are the same but for a few units in the last place of their coordinates.
std::vector<Path> linesThatAreOne(std::mt19937& random, double scale) {
    std::uniform_real_distribution<double> place(-1, 1);
    std::uniform_int_distribution<int> units(-3, 3);
    const XY start{scale + place(random), scale + place(random)};
    const XY along{place(random), round(place(random))};
    std::vector<Path> lines;
    for (int line = 0; line < 4; ++line) {
        Path path;
        for (int i = 0; i <= 5; ++i) {
            const XY p = start + along * (i + line / 7.0);
            path.addVertex(
                {p.x + units(random) * std::abs(p.x) * 0x1p-52, p.y + units(random) * std::abs(p.y) * 0x1p-52});
        }
        lines.push_back(path);
    }
    return lines;
}

TEST(PlanarEdges, MeetAtVerticesOnly) {
    std::mt19937 random(61);
    std::size_t meetings = 0;
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        const double scale = round % 2 == 0 ? 4 : 5e6;
        const std::vector<Path> lines = linesThatAreOne(random, scale);
        meetings += nodesInsideSegments(lines);
        const NodedPaths noded = fullyNoded(lines);
        EXPECT_EQ(nodesInsideSegments(noded.paths), 0u);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            EXPECT_NEAR(noded.paths[i].front().x, lines[i].front().x, 1e-11 * scale);
            EXPECT_NEAR(noded.paths[i].back().y, lines[i].back().y, 1e-11 * scale);
        }
    }
    EXPECT_GT(meetings, 1000u);
}

std::vector<Path> randomPaths(std::mt19937& random) {
    std::uniform_real_distribution<double> place(0, 100);
    std::vector<Path> paths(3);
    for (Path& path : paths) {
        for (int i = 0; i < 12; ++i) {
            const double x = place(random);
            path.addVertex({x, place(random), x, undefined});
        }
    }
    return paths;
}

TEST(SnapRounding, LeavesNoCrossingAndMovesNothingBeyondACell) {
    std::mt19937 random(67);
    for (const double cell : {0x1p-20, 0.25, 4.0}) {
        SCOPED_TRACE(cell);
        for (int round = 0; round < 40; ++round) {
            const std::vector<Path> paths = randomPaths(random);
            ASSERT_GT(nodesInsideSegments(paths), 0u);
            const std::vector<Path> snapped = snapRounded(paths, cell);
            EXPECT_EQ(nodesInsideSegments(snapped), 0u);
            for (std::size_t i = 0; i < paths.size(); ++i) {
                for (std::size_t v = 0; v < snapped[i].vertexCount(); ++v) {
                    const Vertex vertex = snapped[i].vertex(v);
                    EXPECT_EQ(std::remainder(vertex.x, cell), 0);
                    // The heights are the x of the lines, which pass the cell.
                    EXPECT_NEAR(vertex.z, vertex.x, cell);
                }
            }
        }
    }
}

} // namespace
} // namespace qz
