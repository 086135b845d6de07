#include <limits>
#include <random>

#include <fmt/format.h>

#include "host/HeadlessMap.h"
#include "platform/geometry/Project.h"
#include "platform/geometry/WellKnown.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

constexpr std::int32_t anyNumber = std::numeric_limits<std::int32_t>::max();

// Without the dimensions of the fixture's layers where they are undefined.
std::string plain(std::string wkt) {
    for (const std::string_view word : {" ZM", " NaN NaN"}) {
        for (std::size_t at = wkt.find(word); at != std::string::npos; at = wkt.find(word)) {
            wkt.erase(at, word.size());
        }
    }
    return wkt;
}

struct Analysis : Streets {
    using Streets::Streets;

    [[nodiscard]] HeadlessView& view() { return host.focusMap().activeView(); }

    // "x y id" of the nodes.
    [[nodiscard]] Rows nodes(const std::string& nType, bool bTrueCoords = true, const std::string& what = "All",
                             std::int32_t lMax = anyNumber) {
        const auto found =
            component.QZ_AnalyseNodes(view(), *layer, reference, what, nType, bTrueCoords, lMax, checked);
        if (!found) {
            return {"nothing"};
        }
        EXPECT_TRUE(found->spatialReference == reference);
        Rows rows;
        for (std::size_t i = 0; i < found->vertices.size(); ++i) {
            const Vertex& node = found->vertices[i];
            rows.push_back(fmt::format("{} {} {}", node.x, node.y, found->ids.at(i)));
        }
        return rows;
    }
    [[nodiscard]] std::string duplicateLines(double dFuzzy, const std::string& sWhat = "All") {
        const auto found =
            component.QZ_FindDupPolylines(view(), streets(), reference, sWhat, dFuzzy, anyNumber, checked);
        return found ? plain(toWkt(*found)) : "nothing";
    }
    [[nodiscard]] std::string duplicatePoints(double dFuzzy) {
        const auto found = component.QZ_FindDupPoints(view(), streets(), reference, "All", anyNumber, dFuzzy, checked);
        return found ? plain(toWkt(*found)) : "nothing";
    }

    bool checked = true;
};

TEST(AnalyseNodes, ClassifiesEveryKind) {
    Analysis network;
    network.add("LINESTRING (0 0,10 0)");
    network.add("LINESTRING (10 0,20 0)");
    network.add("MULTILINESTRING ((10 0,10 5),(30 5,20 0))");
    network.add("");
    network.add("LINESTRING EMPTY");
    network.add("LINESTRING (50 0,60 0,60 9,50 0)");
    const Rows all{"0 0 0", "10 0 2", "20 0 1", "50 0 1"};
    EXPECT_EQ(network.nodes("all"), all);
    EXPECT_EQ(network.nodes("dangle"), Rows{all[0]});
    EXPECT_EQ(network.nodes("pseudo"), (Rows{all[2], all[3]}));
    EXPECT_EQ(network.nodes("regular"), Rows{all[1]});
    EXPECT_EQ(network.nodes("d_p"), (Rows{all[0], all[2], all[3]}));
    EXPECT_EQ(network.nodes("d_r"), (Rows{all[0], all[1]}));
    EXPECT_EQ(network.nodes("p_r"), (Rows{all[1], all[2], all[3]}));
    EXPECT_EQ(network.nodes("Dangle"), Rows());
}

TEST(AnalyseNodes, PrecisionOfKeys) {
    Analysis network;
    network.add("LINESTRING (0 0,10.02 0)");
    network.add("LINESTRING (10.04 0,-3.0000000000001 0)");
    EXPECT_EQ(network.nodes("all"), (Rows{"0 0 0", "10 0 1", "-3 0 0"}));
    const Rows apart{"0 0 0", "10.02 0 0", "10.04 0 0", "-3.0000000000001 0 0"};
    EXPECT_EQ(network.nodes("all", false), apart);
    services().platformRelease = "9.1.0.722";
    EXPECT_EQ(network.nodes("all", true), apart) << "releases before 9.2 have no tolerance";
    Polyline broken;
    broken.paths.emplace_back(std::vector<XY>{{0, 0}, {std::nan(""), 0}});
    network.table->add(broken, {});
    EXPECT_EQ(network.nodes("all"), Rows{"nothing"});
    EXPECT_EQ(network.messages.size(), 1U);
    EXPECT_NE(network.messages.at(0).find("QZ_AnalyseNodes"), std::string::npos) << network.messages.at(0);
}

TEST(AnalyseNodes, LooksAtWhatTheViewShows) {
    Analysis network;
    network.add("LINESTRING (500000 5800000,500100 5800000)");
    network.add("LINESTRING (500200 5800000,500300 5800000)");
    network.host.focusMap().setSpatialReference(SpatialReference::fromEpsg(4326));
    Envelope first{500050, 5799990, 500060, 5800010};
    network.view().setVisibleBounds(projected(first, network.reference, SpatialReference::fromEpsg(4326)));
    const Rows nodes{"500000 5800000 0", "500100 5800000 0"};
    EXPECT_EQ(network.nodes("all", true, "Visible", 1), nodes);
    EXPECT_TRUE(network.checked);
    EXPECT_EQ(network.nodes("all", true, "Visible", 0), Rows{"nothing"});
    EXPECT_FALSE(network.checked);
    EXPECT_EQ(network.nodes("all", true, "visible", 0).size(), 4U) << "any other word means all, without a limit";
    EXPECT_EQ(network.messages, Rows());
}

TEST(Duplicates, OfLines) {
    Analysis lines;
    lines.add("LINESTRING (0 0,1000 0,1000 1000)");
    lines.add("LINESTRING (1000 1000,1000 0,0 0)");                    // reversed
    lines.add("LINESTRING (0 0,0 1000,1000 1000)");                    // the same ends, another way
    lines.add("LINESTRING (0 0,500 0,1000 0,1000 1000)");              // one more vertex
    lines.add("LINESTRING (0 0,300 0,400 10,500 0,1000 0,1000 1000)"); // elsewhere in the middle
    lines.add("");
    const std::string both = "LINESTRING (1000 1000,1000 0,0 0),LINESTRING (0 0,500 0,1000 0,1000 1000)";
    EXPECT_EQ(lines.duplicateLines(0.000001), "GEOMETRYCOLLECTION (" + both + ")");
    EXPECT_EQ(lines.duplicateLines(0.01),
              "GEOMETRYCOLLECTION (" + both + ",LINESTRING (0 0,300 0,400 10,500 0,1000 0,1000 1000))");
    EXPECT_TRUE(lines.component.QZ_RemoveDupPolylines(lines.streets(), *lines.all(), 6, lines.refresh, lines.host));
    Rows left = lines.sortedShapes();
    std::ranges::transform(left, left.begin(), plain);
    EXPECT_EQ(left, (Rows{"LINESTRING (0 0,0 1000,1000 1000)", "LINESTRING (0 0,1000 0,1000 1000)", "null"}))
        << "the default tolerance, 0.001, counts one decimal";
    EXPECT_EQ(lines.refresh.count(), 3);
    EXPECT_EQ(lines.messages, Rows());
}

TEST(Duplicates, OfPoints) {
    Analysis points(GeometryKind::point);
    points.add("POINT ZM (1 0.125 5 6)");
    points.add("POINT ZM (1 0.12 7 8)"); // halves go to the even digit
    points.add("POINT (1 0.13)");
    points.add("POINT (-0.001 0)");
    points.add("POINT (0.001 0)"); // no sign at zero
    points.add("POINT (12345678901234.5 0)");
    points.add("POINT (12345678901234.6 0)"); // texts of 15 digits
    points.add("POINT EMPTY");
    EXPECT_EQ(points.duplicatePoints(0.0001), "MULTIPOINT ((1 0.12 7 8),(0.001 0))");
    EXPECT_EQ(points.duplicatePoints(std::nan("")), "nothing");
    EXPECT_EQ(points.messages.size(), 1U);
    EXPECT_TRUE(
        points.component.QZ_RemoveDupPoints(points.streets(), *points.all(), 8, points.refresh, 0.0001, points.host));
    Rows left = points.sortedShapes();
    std::ranges::transform(left, left.begin(), plain);
    EXPECT_EQ(left, (Rows{"POINT (-0.001 0)", "POINT (1 0.125 5 6)", "POINT (1 0.13)", "POINT (12345678901234.5 0)",
                          "POINT (12345678901234.6 0)", "POINT EMPTY"}));
    EXPECT_EQ(points.duplicateLines(1), "nothing") << "points are no lines";
    EXPECT_EQ(points.messages.size(), 2U);
}

TEST(Vertices, OfWhatIsInView) {
    Analysis layer(GeometryKind::polygon);
    layer.add("CURVEPOLYGON (COMPOUNDCURVE ((0 0,0 10),CIRCULARSTRING (0 10,5 5,0 0)))");
    layer.add("POLYGON ZM ((90 0 1 2,90 9 3 4,99 0 5 nan,90 0 1 2))");
    layer.add("");
    const auto found = [&](std::int32_t most) {
        const auto points =
            layer.component.QZ_GetVertices(layer.view(), *layer.layer, layer.reference, layer.checked, most);
        return points ? plain(toWkt(*points)) : "nothing";
    };
    EXPECT_EQ(found(2), "MULTIPOINT ((0 0),(0 10),(0 0),(90 0 1 2),(90 9 3 4),(99 0 5 NaN),(90 0 1 2))");
    EXPECT_EQ(found(1), "nothing");
    EXPECT_FALSE(layer.checked);
    layer.view().setVisibleBounds({50, 0, 100, 10});
    EXPECT_EQ(found(1), "MULTIPOINT ((90 0 1 2),(90 9 3 4),(99 0 5 NaN),(90 0 1 2))");
    const auto unmeasured = layer.component.QZ_AnalyseNaNs(layer.view(), *layer.layer, layer.reference, layer.checked);
    ASSERT_TRUE(unmeasured);
    EXPECT_EQ(plain(toWkt(*unmeasured)), "MULTIPOINT ((99 0 5 NaN))");
    EXPECT_EQ(layer.messages, Rows());
}

TEST(Vertices, WithoutMeasuresOfTooManyFeatures) {
    Analysis layer(GeometryKind::point);
    for (int i = 0; i < 10000; ++i) {
        layer.add(fmt::format("POINT ({} 0)", i));
    }
    const auto unmeasured = [&] {
        return layer.component.QZ_AnalyseNaNs(layer.view(), *layer.layer, layer.reference, layer.checked);
    };
    EXPECT_EQ(unmeasured()->vertices.size(), 10000U);
    layer.add("POINT (10000 0)");
    EXPECT_FALSE(unmeasured());
    EXPECT_FALSE(layer.checked);
    EXPECT_EQ(layer.messages, Rows{"More than 10,000 features in the visible extent. Zoom In and try again"});
}

TEST(ArrowPoints, LieOnEverySegment) {
    Analysis layer;
    layer.add("COMPOUNDCURVE ((0 0,0 40,0 40),CIRCULARSTRING (0 40,10 50,20 40),(20 40,21 40))");
    layer.view().setVisibleBounds({0, 0, 900, 675}); // a point on the screen is a unit on the map
    bool checked = false;
    const double quarter = std::acos(-1) * 5;
    const auto draw = [&](std::int32_t lMax) {
        return layer.component.QZ_ArrowPoints(layer.view(), layer.streets(), layer.reference, "Visible", checked,
                                              layer.view().display(), ArrowMarkerSymbol{.length = 9}, Symbol(), lMax,
                                              quarter, layer.host);
    };
    EXPECT_FALSE(draw(0));
    EXPECT_FALSE(checked);
    EXPECT_TRUE(draw(1));
    EXPECT_TRUE(checked);
    Rows arrows;
    for (const Drawing& drawing : layer.view().display().drawings()) {
        const auto& symbol = std::get<ArrowMarkerSymbol>(drawing.symbol);
        const Vertex at = drawing.geometry.as<Point>().vertex;
        arrows.push_back(fmt::format("{:.3f} {:.3f} {:.0f} {}", at.x, at.y, symbol.angle + 1e-9, symbol.length));
    }
    EXPECT_EQ(arrows, (Rows{"0.000 15.708 90 9", "10.000 50.000 0 9", "21.000 40.000 0 9"}));
}

} // namespace
} // namespace qz::test
