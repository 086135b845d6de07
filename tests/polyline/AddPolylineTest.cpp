#include <random>
#include <regex>

#include <fmt/format.h>

#include "platform/geometry/Measures.h"
#include "polyline/QZAddPolyline.h"
#include "polyline/QZIntersectSelected.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

constexpr std::int32_t noCount = 0;

struct Network : Streets {
    template <typename Shape> [[nodiscard]] Shape sketch(const std::string& wkt) const {
        Geometry shape = geometryFromWkt(wkt);
        shape.traits().spatialReference = reference;
        return shape.as<Shape>();
    }
    bool addLine(const std::string& wkt, const NetworkAction& action = {}, std::int32_t count = noCount) {
        return component.QZ_AddPolyline(*layer, sketch<Polyline>(wkt), refresh, count, action.bAdd, action.sAction,
                                        action.bOver, host);
    }
    bool addBoundary(const std::string& wkt, const NetworkAction& action) {
        std::int32_t count = noCount;
        return component.QZ_PolygonAsPolylineRun(*layer, sketch<Polygon>(wkt), refresh, count, action.bAdd,
                                                 action.sAction, action.bOver, host);
    }
    // sortedShapes() without heights and measures.
    [[nodiscard]] Rows flatShapes() {
        Rows rows = sortedShapes();
        for (std::string& row : rows) {
            row = std::regex_replace(row, std::regex(" ZM|( 0| NaN) NaN(?=[,)])"), "");
        }
        return rows;
    }
};

TEST(AddPolyline, NodesTheNetworkAroundIt) {
    const char* cross = "LINESTRING (0 0,10 0)";
    const struct {
        const char* name;
        const char* line;
        bool bAdd;
        const char* action;
        Rows lines;
    } rows[] = {
        {"crossing",
         "LINESTRING (5 -5,5 5)",
         true,
         "",
         {"LINESTRING (0 0,5 0)", "LINESTRING (5 -5,5 0)", "LINESTRING (5 0,5 5)", "LINESTRING (5 0,10 0)"}},
        {"ending on a line",
         "LINESTRING (5 5,5 0)",
         true,
         "",
         {"LINESTRING (0 0,5 0)", "LINESTRING (5 0,10 0)", "LINESTRING (5 5,5 0)"}},
        {"starting within the tolerance",
         "LINESTRING (5 0.0005,5 5)",
         true,
         "",
         {"LINESTRING (0 0,5 0.0005)", "LINESTRING (5 0.0005,5 5)", "LINESTRING (5 0.0005,10 0)"}},
        {"within the tolerance of a node",
         "LINESTRING (10.0004 -5,10.0004 5)",
         true,
         "",
         {"LINESTRING (0 0,10 0)", "LINESTRING (10 0,10.0004 5)", "LINESTRING (10.0004 -5,10 0)"}},
        {"along a line",
         "LINESTRING (5 5,5 0,20 0)",
         true,
         "",
         {"LINESTRING (0 0,5 0)", "LINESTRING (10 0,20 0)", "LINESTRING (5 0,10 0)", "LINESTRING (5 0,10 0)",
          "LINESTRING (5 5,5 0)"}},
        {"across itself",
         "LINESTRING (20 0,22 0,22 2,21 2,21 -1)",
         true,
         "",
         {"LINESTRING (0 0,10 0)", "LINESTRING (20 0,21 0)", "LINESTRING (21 0,21 -1)",
          "LINESTRING (21 0,22 0,22 2,21 2,21 0)"}},
        {"apart", "LINESTRING (50 5,60 5)", true, "", {"LINESTRING (0 0,10 0)", "LINESTRING (50 5,60 5)"}},
        {"stored only", "LINESTRING (5 -5,5 5)", true, "Add", {"LINESTRING (0 0,10 0)", "LINESTRING (5 -5,5 5)"}},
        {"cutting only", "LINESTRING (5 -5,5 5)", false, "", {"LINESTRING (0 0,5 0)", "LINESTRING (5 0,10 0)"}},
    };
    for (const auto& row : rows) {
        Network network;
        network.add(cross);
        const std::int32_t count = row.bAdd ? noCount : 1;
        EXPECT_TRUE(network.addLine(row.line, {row.bAdd, row.action, false}, count)) << row.name;
        EXPECT_EQ(network.flatShapes(), row.lines) << row.name;
        EXPECT_TRUE(network.messages.empty()) << row.name;
    }
}

TEST(AddPolyline, CountSwitchesTheNoding) {
    Network network;
    network.add("LINESTRING (0 0,10 0)");
    std::int32_t count = 0;
    const Polyline line = network.sketch<Polyline>("LINESTRING (5 -5,5 5)");
    EXPECT_TRUE(
        network.component.QZ_AddPolyline(*network.layer, line, network.refresh, count, true, "", false, network.host));
    EXPECT_EQ(count, 1);
    EXPECT_EQ(network.shapes().size(), 4u);
    EXPECT_TRUE(network.addLine("LINESTRING (7 -5,7 5)", {}, -1));
    EXPECT_TRUE(network.addLine("LINESTRING (3 -5,3 5)", {false, {}, false}, 0));
    EXPECT_EQ(network.shapes().size(), 5u);
}

TEST(AddPolyline, HeightsAndValues) {
    Network network;
    EXPECT_TRUE(network.addLine("LINESTRING (0 0,9 0)"));
    EXPECT_TRUE(network.addLine("LINESTRING Z (0 1 7,9 1 8)"));
    Dictionary values;
    values.set(std::string("NAME"), std::string("Elm Row"));
    std::int32_t count = 0;
    EXPECT_TRUE(
        network.component.QZ_AddPolylineA(*network.layer, network.sketch<Polyline>("LINESTRING Z (0 2 7,9 2 8)"),
                                          network.refresh, count, true, "", false, &values, true, network.host));
    const FeaturePtr source = network.streets().feature(3);
    EXPECT_TRUE(QZ_AddPolylineCopyAttributes(network.host, *network.layer,
                                             network.sketch<Polyline>("LINESTRING Z (0 3 7,9 3 8)"), *source,
                                             network.refresh, count, {}));
    EXPECT_EQ(network.listed({"NAME"}),
              (Rows{"1 LINESTRING ZM (0 0 0 NaN,9 0 0 NaN) null", "2 LINESTRING ZM (0 1 7 NaN,9 1 8 NaN) null",
                    "3 LINESTRING ZM (0 2 0 NaN,9 2 0 NaN) Elm Row", "4 LINESTRING ZM (0 3 7 NaN,9 3 8 NaN) Elm Row"}));
}

TEST(AddPolyline, EraseDeletesWhatIsInsideThePolygon) {
    Network network;
    network.add("LINESTRING (1 1,3 3)");
    network.add("LINESTRING (4 10,6 10)");
    network.add("LINESTRING (-5 5,5 5)");
    network.add("LINESTRING (20 0,30 0)");
    EXPECT_TRUE(network.addBoundary("POLYGON ((0 0,0 10,10 10,10 0,0 0))", {true, "Erase", false}));
    EXPECT_EQ(network.flatShapes(), (Rows{"LINESTRING (-5 5,0 5)", "LINESTRING (0 0,0 5)", "LINESTRING (0 5,0 10,4 10)",
                                          "LINESTRING (20 0,30 0)", "LINESTRING (4 10,6 10)", "LINESTRING (4 10,6 10)",
                                          "LINESTRING (6 10,10 10,10 0,0 0)"}));
}

TEST(AddPolyline, FailuresAreReported) {
    Network network;
    network.add("LINESTRING (0 0,10 0)");
    EXPECT_FALSE(network.addLine("LINESTRING EMPTY"));
    EXPECT_EQ(network.messages, (Rows{"The line to be added is empty. QZ_AddPolyline w=1"}));
    EXPECT_EQ(network.flatShapes(), (Rows{"LINESTRING (0 0,10 0)"}));
}

// Of four vertices, or an arc of less than half a circle.
std::string randomLine(std::mt19937& random, bool isArc) {
    std::uniform_real_distribution<double> place(0, 100), rise(-10, 10);
    const XY from{place(random), place(random)}, to{place(random), place(random)};
    const XY middle = isArc ? XY{(from.x + to.x) / 2 + rise(random), (from.y + to.y) / 2 + rise(random)}
                            : XY{place(random), place(random)};
    std::string text;
    for (const XY vertex : {from, middle, to}) {
        text +=
            fmt::format("{}{} {} {}", text.empty() ? "" : ",", 500000 + vertex.x, 5600000 + vertex.y, place(random));
    }
    return (isArc ? "CIRCULARSTRING Z (" : "LINESTRING Z (") + text + ")";
}

// A line that ends on one of the network, or near a node of it.
std::string attachedLine(std::mt19937& random, Network& network) {
    const CursorPtr cursor = network.streets().search({});
    std::vector<Polyline> lines;
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        lines.push_back(row->shape()->as<Polyline>());
    }
    const auto& path = lines[random() % lines.size()].paths.front();
    const XY a = path.xy().front(), b = path.xy().back();
    std::uniform_real_distribution<double> offset(-0.0009, 0.0009), away(-30, 30);
    const double ratio = random() % 2 == 0 ? 0 : 0.37;
    const XY start{std::lerp(a.x, b.x, ratio) + offset(random), std::lerp(a.y, b.y, ratio) + offset(random)};
    return fmt::format("LINESTRING Z ({} {} 5,{} {} 6)", start.x, start.y, start.x + away(random),
                       start.y + away(random));
}

TEST(AddPolyline, TheNetworkStaysNoded) {
    std::mt19937 random(17);
    for (int round = 0; round < 40; ++round) {
        Network network;
        double total = 0;
        for (int i = 0; i < 12; ++i) {
            const bool attached = i > 3 && i % 2 == 0;
            const std::string line = attached ? attachedLine(random, network) : randomLine(random, i % 3 == 2);
            SCOPED_TRACE(fmt::format("round {}, line {}: {}", round, i, line));
            EXPECT_TRUE(network.addLine(line));
            total += length(network.sketch<Polyline>(line));
        }
        const Rows noded = network.sortedShapes();
        double stored = 0;
        const CursorPtr cursor = network.streets().search({});
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            stored += length(row->shape()->as<Polyline>());
        }
        EXPECT_NEAR(stored, total, 0.1);
        EXPECT_TRUE(IntersectSelected2(network.host, *network.layer, *network.all(), 0, network.refresh, false));
        const Rows again = network.sortedShapes();
        Rows changed;
        std::ranges::set_symmetric_difference(noded, again, std::back_inserter(changed));
        EXPECT_EQ(changed, Rows()) << round;
        EXPECT_TRUE(network.messages.empty());
    }
}

} // namespace
} // namespace qz::test
