#include <algorithm>

#include "platform/geometry/Boundary.h"
#include "platform/geometry/Measures.h"
#include "tests/support/StreetsFixture.h"
#include "tests/topology/FacesOracle.h"
#include "topology/QZBuildPolygon.h"

namespace qz::test {
namespace {

std::vector<Polyline> partsOf(const std::string& wkt) {
    std::vector<Polyline> edges;
    for (Geometry& part : exploded(geometryFromWkt(wkt))) {
        edges.push_back(std::move(part.as<Polyline>()));
    }
    return edges;
}

Rows built(std::span<const Polyline> edges, double dFuzzy) {
    Rows rows;
    for (const Polygon& polygon : QZ_BuildPolygonInDic(edges, 1, dFuzzy)) {
        rows.push_back(toWkt(polygon));
    }
    return rows;
}

struct NetworkRow {
    const char* name;
    const char* lines;
    Rows polygons;
    double dFuzzy = 0;
};

const NetworkRow networks[] = {
    {"one closed line, against the clock", "MULTILINESTRING ((0 0,9 0,9 9,0 0))", {"POLYGON ((0 0,9 9,9 0,0 0))"}},
    {"two rectangles with a common side; the outline around both is none",
     "MULTILINESTRING ((5 0,0 0,0 9,5 9),(5 0,5 9),(5 9,8 9,8 0,5 0))",
     {"POLYGON ((5 0,0 0,0 9,5 9,5 0))", "POLYGON ((5 0,5 9,8 9,8 0,5 0))"}},
    {"a square of four lines around a closed line",
     "MULTILINESTRING ((0 0,0 9),(9 9,0 9),(9 9,9 0),(9 0,0 0),(3 3,3 6,6 6,3 3))",
     {"POLYGON ((0 0,0 9,9 9,9 0,0 0),(3 3,6 6,3 6,3 3))", "POLYGON ((3 3,3 6,6 6,3 3))"}},
    {"islands in islands, the innermost first",
     "MULTILINESTRING ((4 4,4 5,5 5,5 4,4 4),(2 2,2 7,7 7,7 2,2 2),(0 0,0 9,9 9,9 0,0 0))",
     {"POLYGON ((4 4,4 5,5 5,5 4,4 4))", "POLYGON ((2 2,2 7,7 7,7 2,2 2),(4 4,5 4,5 5,4 5,4 4))",
      "POLYGON ((0 0,0 9,9 9,9 0,0 0),(2 2,7 2,7 7,2 7,2 2))"}},
    {"separate networks, two of them equal in area and with one inside the outline, not the faces, of the other",
     "MULTILINESTRING ((0 0,0 9,1 9,1 1,8 1,8 9,9 9,9 0,0 0),(4 4,4 5,5 5,5 4,4 4),(6 4,6 5,7 5,7 4,6 4))",
     {"POLYGON ((0 0,0 9,1 9,1 1,8 1,8 9,9 9,9 0,0 0))", "POLYGON ((4 4,4 5,5 5,5 4,4 4))",
      "POLYGON ((6 4,6 5,7 5,7 4,6 4))"}},
    {"an island of two faces is one hole",
     "MULTILINESTRING ((0 0,0 9,9 9,9 0,0 0),(3 3,3 6,6 6),(6 6,6 3,3 3),(3 3,6 6))",
     {"POLYGON ((0 0,0 9,9 9,9 0,0 0),(6 6,3 6,3 3,6 3,6 6))", "POLYGON ((3 3,3 6,6 6,3 3))",
      "POLYGON ((6 6,6 3,3 3,6 6))"}},
    {"a ring that touches from inside, one that touches from outside",
     "MULTILINESTRING ((0 0,0 9,9 9,9 0,0 0),(0 0,2 4,4 2,0 0),(0 0,-3 0,-3 3,0 0))",
     {"POLYGON ((0 0,0 9,9 9,9 0,0 0),(0 0,4 2,2 4,0 0))", "POLYGON ((0 0,2 4,4 2,0 0))",
      "POLYGON ((0 0,-3 0,-3 3,0 0))"}},
    {"islands that touch are two holes",
     "MULTILINESTRING ((0 0,0 9,9 9,9 0,0 0),(4 4,2 4,2 2,4 4),(4 4,6 4,6 6,4 4))",
     {"POLYGON ((0 0,0 9,9 9,9 0,0 0),(4 4,2 4,2 2,4 4),(4 4,6 4,6 6,4 4))", "POLYGON ((4 4,2 2,2 4,4 4))",
      "POLYGON ((4 4,6 6,6 4,4 4))"}},
    {"a bridge to an island and a ring on a stick outside: both bridges go",
     "MULTILINESTRING ((0 0,0 9,9 9,9 0,0 0),(0 0,3 3),(3 3,3 6,6 6,3 3),(0 0,-1 0),(-1 0,-3 0,-3 3,-1 0))",
     {"POLYGON ((0 0,0 9,9 9,9 0,0 0),(3 3,6 6,3 6,3 3))", "POLYGON ((3 3,3 6,6 6,3 3))",
      "POLYGON ((-1 0,-3 0,-3 3,-1 0))"}},
    {"dangles and what becomes one, with an end just beside another line",
     "MULTILINESTRING ((0 0,0 9,9 9,9 0,0 0),(0 0,3 3),(3 3,8.99 4),(3 3,2 5))",
     {"POLYGON ((0 0,0 9,9 9,9 0,0 0))"},
     0.5},
    {"two dangles whose ends come close",
     "MULTILINESTRING ((0 0,0 9,9 9),(9 9,9 0,0 0),(0 0,4 4.2),(9 9,4.3 4.2))",
     {"POLYGON ((0 0,0 9,9 9,9 0,0 0))"},
     0.5},
    {"a loose outline whose ends are near",
     "MULTILINESTRING ((0 0.4,0 9),(9 9,0 9),(9 9,9 0,0 0))",
     {"POLYGON ((0 0.4,0 9,9 9,9 0,0 0,0 0.4))"},
     0.5},
    {"its ends exactly the closing distance apart", "MULTILINESTRING ((0 0.5,0 9),(9 9,0 9),(9 9,9 0,0 0))", {}, 0.5},
    {"a stub shorter than the closing distance is no outline", "MULTILINESTRING ((0 0,0.2 0.2,0.4 0))", {}, 0.5},
    {"ends that differ within a node are joined by a straight segment",
     "MULTILINESTRING ((0 0.04,0 9,9 9),(9.03 9,9 0,0 0))",
     {"POLYGON ((0 0.04,0 9,9 9,9.03 9,9 0,0 0,0 0.04))"}},
    {"a line that overshoots its corner within the node",
     "MULTILINESTRING ((0 0,0 9,9 9),(9 9.03,9 0,0 0))",
     {"POLYGON ((0 0,0 9,9 9,9 0,0 0))"}},
    {"nothing is joined across a line that passes through the node",
     "MULTILINESTRING ((0.02 -9,0.02 5),(0.02 5,20 5,20 -9,0.02 -9),(0.02 5,3 4,3 0,0.04 0.02),"
     "(0.02 5,-3 4,-3 0,0 0.02))",
     {"POLYGON ((0.02 -9,0.02 5,20 5,20 -9,0.02 -9))"}},
    {"four lines that end in one node, none at the same place",
     "MULTILINESTRING ((4 0,4 3.98),(0 4,3.98 4),(4 4.02,4 9),(4.02 4,9 4),(4 0,0 0,0 4),(0 4,0 9,4 9),"
     "(4 9,9 9,9 4),(9 4,9 0,4 0))",
     {"POLYGON ((4 0,4 3.98,4 4.02,4.02 4,9 4,9 0,4 0))", "POLYGON ((4 3.98,4 0,0 0,0 4,3.98 4,4 3.98))",
      "POLYGON ((3.98 4,0 4,0 9,4 9,4 4.02,4 3.98,3.98 4))", "POLYGON ((4 4.02,4 9,9 9,9 4,4.02 4,4 4.02))"}},
    {"a strip narrower than a node, its short sides edges of their own",
     "MULTILINESTRING ((0 0,0 0.04),(0 0.04,9 0.04),(9 0.04,9 0),(9 0,0 0),(0 0.04,0 5,9 5,9 0.04))",
     {"POLYGON ((0 0,0 0.04,9 0.04,9 0,0 0))", "POLYGON ((9 0.04,0 0.04,0 5,9 5,9 0.04))"}},
    {"a curve of edges shorter than a node encloses nothing with itself",
     "MULTILINESTRING ((0 0,0.06 0.02),(0.06 0.02,0 0.04),(0 0.04,0 9),(0 9,9 9,9 0,0 0))",
     {"POLYGON ((0 0,0.06 0.02,0 0.04,0 9,9 9,9 0,0 0))"}},
    {"a closed line smaller than a node",
     "MULTILINESTRING ((1 1,1.01 1.04,1.04 1.01,1 1))",
     {"POLYGON ((1 1,1.01 1.04,1.04 1.01,1 1))"}},
    {"a face narrower than the resolution is none",
     "MULTILINESTRING ((0 0,9 0),(0 0,5 0.00005,9 0),(0 0,5 5,9 0))",
     {"POLYGON ((9 0,5 5e-05,0 0,5 5,9 0))"}},
    {"the same line twice, once in each direction",
     "MULTILINESTRING ((0 0,5 1,9 0),(9 0,5 1,0 0),(0 0,5 5,9 0),(9 0,5 -5,0 0))",
     {"POLYGON ((0 0,5 1,9 0,5 -5,0 0))", "POLYGON ((9 0,5 1,0 0,5 5,9 0))"}},
    {"the same closed line twice",
     "MULTILINESTRING ((0 0,0 9,9 0,0 0),(0 0,0 9,9 0,0 0))",
     {"POLYGON ((0 0,0 9,9 0,0 0))"}},
    {"lines that run together before they part",
     "MULTILINESTRING ((0 0,1 0,5 3),(0 0,1 0,5 -3),(0 0,-3 0,5 9,5 3),(5 3,5 -3))",
     {"POLYGON ((1 0,5 3,5 -3,1 0))", "POLYGON ((5 3,1 0,0 0,-3 0,5 9,5 3))"}},
    {"lines that cross without a node don't meet",
     "MULTILINESTRING ((0 0,0 9,9 9,9 0,0 0),(-1 5,10 5),(-1 7,12 7,12 9,-1 7))",
     {"POLYGON ((0 0,0 9,9 9,9 0,0 0))", "POLYGON ((-1 7,12 9,12 7,-1 7))"}},
    {"a line across itself",
     "MULTILINESTRING ((0 0,8 8,8 0,0 8,0 0))",
     {"POLYGON ((0 0,0 8,4 4,0 0))", "POLYGON ((4 4,8 8,8 0,4 4))"}},
    {"edges without a place or a length",
     "MULTILINESTRING ((1 1,1 1),(0 0,0 2,2 2,0 0))",
     {"POLYGON ((0 0,0 2,2 2,0 0))"}},
    {"a circle and its halves, parted by its diameter",
     "MULTICURVE (CIRCULARSTRING (0 0,2 2,4 0),CIRCULARSTRING (4 0,2 -2,0 0),(0 0,4 0))",
     {"CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (0 0,2 2,4 0),(4 0,0 0)))",
      "CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (4 0,2 -2,0 0),(0 0,4 0)))"}},
    {"arcs that start along one tangent with a line between them",
     "MULTICURVE (CIRCULARSTRING (0 0,8 4,10 10),(0 0,10 0),CIRCULARSTRING (0 0,8 -4,10 -10),(10 10,10 0),(10 0,10 "
     "-10))",
     {"CURVEPOLYGON (COMPOUNDCURVE (CIRCULARSTRING (0 0,8 4,10 10),(10 10,10 0,0 0)))",
      "CURVEPOLYGON (COMPOUNDCURVE ((0 0,10 0,10 -10),CIRCULARSTRING (10 -10,8 -4,0 0)))"}},
    {"heights and measures; a node has those of the first edge of the ring",
     "MULTILINESTRING ZM ((0 0 1 0,0 9 2 1,9 9 3 2),(0 0 5 9,9 0 4 8,9 9 3 2))",
     {"POLYGON ZM ((0 0 1 0,0 9 2 1,9 9 3 2,9 0 4 8,0 0 1 0))"}},
};

TEST(BuildPolygon, FacesOfNetworks) {
    for (const NetworkRow& row : networks) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(built(partsOf(row.lines), row.dFuzzy), row.polygons);
    }
}

// Neither the order nor the direction of the lines matters for what is enclosed.
TEST(BuildPolygon, FacesDependOnTheNetworkOnly) {
    for (const NetworkRow& row : networks) {
        SCOPED_TRACE(row.name);
        std::vector<Polyline> edges = partsOf(row.lines);
        std::ranges::reverse(edges);
        std::ranges::for_each(edges, [](Polyline& edge) { edge.paths.front().reverse(); });
        const std::vector<Polygon> polygons = QZ_BuildPolygonInDic(edges, 1, row.dFuzzy);
        EXPECT_EQ(polygons.size(), row.polygons.size());
        double difference = 0;
        std::ranges::for_each(polygons, [&](const Polygon& polygon) { difference += area(polygon); });
        for (const std::string& polygon : row.polygons) {
            difference -= area(geometryFromWkt(polygon).as<Polygon>());
        }
        EXPECT_NEAR(difference, 0, 1e-9);
    }
}

struct Chain {
    const char* name;
    const char* lines;
    Rows joined;
};

TEST(PseudoNodes, JoinTheTwoLinesThatMeet) {
    const Chain rows[] = {
        {"as the first runs", "MULTILINESTRING ((2 0,1 0),(2 0,3 0),(0 0,1 0))", {"LINESTRING (3 0,2 0,1 0,0 0)"}},
        {"up to where three meet",
         "MULTILINESTRING ((0 0,1 0),(1 0,2 0),(2 0,3 1),(2 0,3 -1),(4 -1,3 -1))",
         {"LINESTRING (0 0,1 0,2 0)", "LINESTRING (2 0,3 1)", "LINESTRING (2 0,3 -1,4 -1)"}},
        {"a ring from its first line on",
         "MULTILINESTRING ((5 5,6 6),(0 0,0 1),(1 0,0 0),(1 0,0 1))",
         {"LINESTRING (5 5,6 6)", "LINESTRING (0 0,0 1,1 0,0 0)"}},
        {"a closed line stays alone", "MULTILINESTRING ((0 0,1 0,1 1,0 0))", {"LINESTRING (0 0,1 0,1 1,0 0)"}},
        {"across what differs within the node",
         "MULTILINESTRING ((0 0,1 0),(1.04 0,2 0))",
         {"LINESTRING (0 0,1 0,1.04 0,2 0)"}},
    };
    for (const Chain& row : rows) {
        SCOPED_TRACE(row.name);
        const std::vector<Polyline> edges = partsOf(row.lines);
        const Groups chains = QZ_RemovePseudoInDicOutDic(QZ_GetNodesDic(edges, 1));
        Rows lines;
        for (std::size_t i = 0; i < chains.size(); ++i) {
            lines.push_back(toWkt(joined(edges, std::as_const(chains)[i])));
        }
        EXPECT_EQ(lines, row.joined);
    }
}

} // namespace
} // namespace qz::test
