#include "platform/topology/TopologyGraph.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

// "wkt parents|left|right" of every edge, features by their numbers.
Rows edgesOf(const TopologyGraph& graph) {
    Rows rows;
    for (std::size_t edge = 0; edge < graph.edgeCount(); ++edge) {
        Polyline line = graph.geometryOf(edge);
        line.zAware = line.mAware = false;
        rows.push_back(fmt::format("{} {}|{}|{}", toWkt(line), fmt::join(graph.parentsOf(edge), ","),
                                   fmt::join(graph.leftOf(edge), ","), fmt::join(graph.rightOf(edge), ",")));
    }
    return rows;
}

TEST(TopologyGraph, EdgesKnowWhoRunsAlongThem) {
    Streets parcels(GeometryKind::polygon);
    parcels.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    parcels.add("POLYGON ((10.1 0,10 10,20 10,20 0,10.1 0))");
    parcels.add("POLYGON ((40 0,40 10,50 0,40 0))");
    FeatureClass* const classes[] = {&parcels.streets()};
    const TopologyGraph graph(classes, nullptr, 0.5);
    EXPECT_EQ(edgesOf(graph),
              (Rows{"LINESTRING (10 10,10 0) 0,1|1|0", "LINESTRING (10 0,0 0,0 10,10 10) 0||0",
                    "LINESTRING (10 10,20 10,20 0,10 0) 1||1", "LINESTRING (40 0,40 10,50 0,40 0) 2||2"}));
    EXPECT_TRUE(graph.isUnchanged(0));
    EXPECT_FALSE(graph.isUnchanged(1));
    ASSERT_EQ(graph.pathsOf(1).size(), 1u);
    const auto& uses = graph.pathsOf(1).front().uses;
    ASSERT_EQ(uses.size(), 2u);
    EXPECT_EQ(uses[0].edge, 0u);
    EXPECT_TRUE(uses[0].isReversed);
    EXPECT_EQ(uses[1].edge, 2u);
    EXPECT_FALSE(uses[1].isReversed);
}

TEST(TopologyGraph, LinesAndPolygonsOfTwoClassesWithinAnExtent) {
    Streets parcels(GeometryKind::polygon);
    parcels.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    Streets streets;
    streets.add("LINESTRING (-5 5,5 5)");
    streets.add("LINESTRING (100 5,105 5)");
    FeatureClass* const classes[] = {&parcels.streets(), &streets.streets()};
    const Envelope extent{-1, -1, 20, 20};
    const TopologyGraph graph(classes, &extent, 0.01);
    EXPECT_EQ(edgesOf(graph), (Rows{"LINESTRING (0 5,0 10,10 10,10 0,0 0,0 5) 0||0", "LINESTRING (-5 5,0 5) 1||",
                                    "LINESTRING (0 5,5 5) 1||"}));
    EXPECT_EQ(graph.feature(1).featureClass, 1u);
    EXPECT_EQ(graph.feature(1).id, 1);
}

} // namespace
} // namespace qz::test
