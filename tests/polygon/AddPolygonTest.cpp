#include "platform/geometry/Measures.h"
#include "platform/geometry/SetOperations.h"
#include "polygon/QZAddPolygon.h"
#include "tests/polygon/Coverage.h"
#include "tests/polygon/Pavement.h"
#include "tests/polygon/RandomSketches.h"

namespace qz::test {
namespace {

constexpr const char* square = "POLYGON ((0 0,0 10,10 10,10 0,0 0))";

struct Sketching : Parcels {
    bool add(const std::string& wkt, std::int16_t priority) {
        return QZ_AddPolygon(*layer, area(wkt), priority, refresh);
    }
    using Parcels::add;
};

TEST(AddPolygon, PrioritiesSettleTheOverlap) {
    const char* const half = "POLYGON ((5 2,5 8,15 8,15 2,5 2))";
    const char* const around = "POLYGON ((-5 -5,-5 15,15 15,15 -5,-5 -5))";
    const char* const beside = "POLYGON ((10 2,10 8,15 8,15 2,10 2))";
    const std::string withoutHalf = "1 POLYGON ((0 0,0 10,10 10,10 8,5 8,5 2,10 2,10 0,0 0))";
    const std::string noded = "1 POLYGON ((0 0,0 10,10 10,10 8,10 2,10 0,0 0))";
    const std::string kept = std::string("1 ") + square;
    const std::string freeHalf = "POLYGON ((10 2,10 8,15 8,15 2,10 2))";
    const struct {
        const char* name;
        const char* sketch;
        std::int16_t priority;
        Rows rows;
    } rows[] = {
        {"half over", half, -2, {kept, std::string("2 ") + half}},
        {"half over", half, -1, {withoutHalf}},
        {"half over", half, 0, {noded, "2 " + freeHalf}},
        {"half over", half, 1, {withoutHalf, "2 POLYGON ((5 2,5 8,10 8,10 2,5 2))", "3 " + freeHalf}},
        {"half over", half, 2, {withoutHalf, "2 POLYGON ((5 2,5 8,10 8,15 8,15 2,10 2,5 2))"}},
        {"half over", half, 3, {kept}},
        {"half over", half, -3, {kept}},
        {"covering", around, -1, {}},
        {"covering", around, 0, {kept, "2 POLYGON ((-5 -5,-5 15,15 15,15 -5,-5 -5),(0 0,10 0,10 10,0 10,0 0))"}},
        {"covering",
         around,
         1,
         {std::string("2 ") + square, "3 POLYGON ((-5 -5,-5 15,15 15,15 -5,-5 -5),(0 0,10 0,10 10,0 10,0 0))"}},
        {"covering", around, 2, {std::string("2 ") + around}},
        {"inside", "POLYGON ((4 4,4 6,6 6,6 4,4 4))", 0, {kept}},
        {"touching", beside, 2, {noded, std::string("2 ") + beside}},
        {"touching", beside, -1, {noded}},
        {"touching", beside, 9, {kept}},
        {"apart", "POLYGON ((20 0,20 5,25 0,20 0))", 9, {kept, "2 POLYGON ((20 0,20 5,25 0,20 0))"}},
        {"apart", "POLYGON ((20 0,20 5,25 0,20 0))", 1, {kept, "2 POLYGON ((20 0,20 5,25 0,20 0))"}},
        {"apart", "POLYGON ((20 0,20 5,25 0,20 0))", -1, {kept}},
        {"empty", "POLYGON EMPTY", -2, {kept}},
    };
    for (const auto& row : rows) {
        Sketching parcels;
        parcels.add(square);
        EXPECT_TRUE(parcels.add(row.sketch, row.priority)) << row.name;
        EXPECT_EQ(parcels.flatShapes(), row.rows) << row.name << ", priority " << row.priority;
        EXPECT_EQ(parcels.messages, Rows()) << row.name;
    }
}

TEST(AddPolygon, OverlapOfPolygonsThatOverlapIsStoredOnce) {
    Sketching parcels;
    parcels.add("POLYGON ((0 0,0 10,6 10,6 0,0 0))");
    parcels.add("POLYGON ((4 0,4 10,10 10,10 0,4 0))");
    EXPECT_TRUE(parcels.add("POLYGON ((0 0,0 5,10 5,10 0,0 0))", 1));
    Rows rows = parcels.flatShapes();
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[2], "3 POLYGON ((0 0,0 5,4 5,6 5,6 0,4 0,0 0))");
    EXPECT_EQ(rows[3], "4 POLYGON ((6 0,6 5,10 5,10 0,6 0))");
}

// Borders that were computed on their own differ in the last digits, and cross each other.
TEST(AddPolygon, NeighboursApartByRoundingShareTheirVertices) {
    Sketching parcels;
    parcels.add("POLYGON ((0 0,0 9,5 9,5.100000001 7,4.899999999 4,5 0,0 0))");
    parcels.add("POLYGON ((5 0,4.9 4,5.1 7,5 9,9 9,9 0,5 0))");
    EXPECT_TRUE(parcels.add("POLYGON ((1 3,1 8,8 8,8 3,1 3))", 1));
    std::vector<std::size_t> vertices;
    const CursorPtr cursor = parcels.streets().search({});
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        vertices.push_back(row->shape()->as<Polygon>().rings.front().vertexCount());
    }
    EXPECT_EQ(vertices, (std::vector<std::size_t>{9, 9, 7, 7}));
}

TEST(AddPolygon, HeightsMeasuresAndValues) {
    const char* const existing = "POLYGON ZM ((0 0 1 0,0 10 1 10,10 10 3 20,10 0 3 30,0 0 1 40))";
    Sketching parcels;
    parcels.add(existing, {std::string("Field")});
    EXPECT_TRUE(parcels.add("POLYGON ((5 20,5 5,8 5,8 20,5 20))", 2));
    EXPECT_TRUE(parcels.add("POLYGON Z ((20 0 7,20 5 7,25 0 8,20 0 7))", 2));
    Dictionary values;
    values.set(std::string("NAME"), std::string("Yard"));
    EXPECT_TRUE(QZ_AddPolygonA(*parcels.layer, parcels.area("POLYGON ((10 0,10 10,15 5,10 0))"), 0, parcels.refresh,
                               &values, true));
    EXPECT_EQ(parcels.listed({"NAME"}),
              (Rows{"1 POLYGON ZM ((0 0 1 0,0 10 1 10,5 10 2 15,5 5 0 NaN,8 5 0 NaN,8 10 2.6 18,10 10 3 20,10 0 3 30,"
                    "0 0 1 0)) Field",
                    "2 POLYGON ZM ((5 20 0 NaN,8 20 0 NaN,8 10 0 NaN,8 5 0 NaN,5 5 0 NaN,5 10 0 NaN,5 20 0 NaN)) null",
                    "3 POLYGON ZM ((20 0 7 NaN,20 5 7 NaN,25 0 8 NaN,20 0 7 NaN)) null",
                    "4 POLYGON ZM ((10 0 0 30,10 10 0 20,15 5 0 NaN,10 0 0 30)) Yard"}));
}

TEST(AddPolygon, TheSketchGivesWayWithinTheTolerance) {
    Sketching parcels;
    parcels.add("POLYGON ((0 0,0 10,10 10,10.0006 5,10 0,0 0))");
    // A vertex near a vertex, one near a side, and a side near a vertex.
    EXPECT_TRUE(parcels.add("POLYGON ((9.9992 0.0004,10 10.0005,20 10,20 0,9.9992 0.0004))", 2));
    EXPECT_TRUE(parcels.add("POLYGON ((-5 4,0.0005 7,0.0005 4,-5 4))", 2));
    EXPECT_EQ(parcels.flatShapes(),
              (Rows{"1 POLYGON ((0 0,0 4,0 7,0 10,10 10,10.0006 5,10 0,0 0))",
                    "2 POLYGON ((10 0,10.0006 5,10 10,20 10,20 0,10 0))", "3 POLYGON ((-5 4,0 7,0 4,-5 4))"}));
}

// The side of one has a vertex more than that of the other, so that each is crossed at a place of its own, but for
// rounding.
TEST(AddPolygon, NeighboursGetOneVertexWhereTheirSidesAreDividedDifferently) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> rise(1, 9);
    for (int i = 0; i < 50; ++i) {
        const XY from{500000 + rise(random), 5600000 + rise(random)};
        const XY to{500050 + rise(random), 5600000 + rise(random)};
        const XY between{std::lerp(from.x, to.x, 0.3), std::lerp(from.y, to.y, 0.3)};
        Sketching parcels;
        parcels.add(
            fmt::format("POLYGON (({} {},{} {},500025 5599950,{} {}))", from.x, from.y, to.x, to.y, from.x, from.y));
        parcels.add(fmt::format("POLYGON (({} {},500025 5600050,{} {},{} {},{} {}))", from.x, from.y, to.x, to.y,
                                between.x, between.y, from.x, from.y));
        const double x = 500030 + rise(random);
        EXPECT_TRUE(parcels.add(
            fmt::format("POLYGON (({0} 5599990,{0} 5600020,{1} 5600020,{1} 5599990,{0} 5599990))", x, x + 3), 1));
        std::vector<XY> vertices;
        const CursorPtr cursor = parcels.streets().search({});
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            forEachVertex(*row->shape(), [&](const Vertex& vertex) { vertices.push_back(vertex.xy()); });
        }
        for (const XY a : vertices) {
            EXPECT_TRUE(std::ranges::none_of(vertices, [a](XY b) {
                return !(a == b) && std::hypot(b.x - a.x, b.y - a.y) < 1e-4;
            })) << i;
        }
    }
}

TEST(AddPolygon, ArcsStayArcs) {
    Sketching parcels;
    parcels.add("CURVEPOLYGON (COMPOUNDCURVE ((0 0,0 10),CIRCULARSTRING (0 10,5 15,10 10),(10 10,10 0,0 0)))");
    EXPECT_TRUE(
        parcels.add("CURVEPOLYGON (COMPOUNDCURVE ((2 5,2 20),CIRCULARSTRING (2 20,5 23,8 20),(8 20,8 5,2 5)))", 1));
    const Rows rows = parcels.shapes();
    ASSERT_EQ(rows.size(), 3U);
    for (const std::string& row : rows) {
        EXPECT_NE(row.find("CIRCULARSTRING"), std::string::npos) << row;
    }
    // The square with half a circle of 5, the rectangle with half a circle of 3, but for what both have: the stretch of
    // the square and of its half circle between x = 2 and x = 8.
    const double segment = 2 * (3 * 4 / 2.0 + 25 * std::asin(0.6) / 2);
    const double both = 6 * 5 + segment;
    EXPECT_NEAR(coverageOf(parcels.streets()).area, 100 + 12.5 * std::numbers::pi + 90 + 4.5 * std::numbers::pi - both,
                1e-6);
}

TEST(AddPolygon, FailuresAreReportedAndChangeNothing) {
    Sketching parcels;
    parcels.add(square);
    const Rows before = parcels.shapes();
    Polygon broken = parcels.area(square);
    broken.rings[0].setVertex(1, {std::nan(""), 1});
    EXPECT_FALSE(QZ_AddPolygon(*parcels.layer, broken, 2, parcels.refresh));
    EXPECT_FALSE(QZ_AddPolygonA(*parcels.layer, broken, 2, parcels.refresh, nullptr, true));
    Dictionary values;
    values.set(std::string("LENGTH"), HUGE_VAL);
    EXPECT_FALSE(QZ_AddPolygonA(*parcels.layer, parcels.area(square), 2, parcels.refresh, &values, true));
    ASSERT_EQ(parcels.messages.size(), 3U);
    EXPECT_TRUE(parcels.messages[0].ends_with(" QZ_AddPolygon w= 1")) << parcels.messages[0];
    EXPECT_TRUE(parcels.messages[1].ends_with(" QZ_AddPolygonA w= 1")) << parcels.messages[1];
    EXPECT_EQ(parcels.shapes(), before);
}

TEST(AddPolygon, LayersOfSinglePartsGetEachPart) {
    SingleParts parcels;
    parcels.data->add("POLYGON ZM ((0 0 0 0,0 10 0 0,10 10 0 0,10 0 0 0,0 0 0 0))", {std::string("Field")});
    Polygon sketch = geometryFromWkt("POLYGON ((-5 2,-5 4,15 4,15 2,-5 2))").as<Polygon>();
    EXPECT_TRUE(QZ_AddPolygon(*parcels.layer, sketch, 1, parcels.refresh));
    EXPECT_EQ(parcels.listed({"NAME"}), (Rows{"1 POLYGON ZM ((0 4 0 0,0 10 0 0,10 10 0 0,10 4 0 0,0 4 0 0)) Field",
                                              "2 POLYGON ZM ((0 2 0 0,0 4 0 0,10 4 0 0,10 2 0 0,0 2 0 0)) null",
                                              "3 POLYGON ZM ((-5 2 0 NaN,-5 4 0 NaN,0 4 0 0,0 2 0 0,-5 2 0 NaN)) null",
                                              "4 POLYGON ZM ((10 2 0 0,10 4 0 0,15 4 0 NaN,15 2 0 NaN,10 2 0 0)) null",
                                              "5 POLYGON ZM ((0 0 0 0,0 2 0 0,10 2 0 0,10 0 0 0,0 0 0 0)) Field"}));
}

TEST(AddPolygon, ACoverageStaysACoverage) {
    for (const std::uint32_t seed : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U}) {
        std::mt19937 random(seed);
        Parcels parcels;
        addPavement(parcels, random, 6);
        RandomSketches sketches(parcels.streets(), seed);
        Polygon covered = coveredBy(parcels.streets());
        for (int i = 0; i < 25; ++i) {
            const auto priority = static_cast<std::int16_t>(static_cast<int>(random() % 4) - 1);
            const Polygon sketch = sketches.next();
            SCOPED_TRACE(fmt::format("seed {}, sketch {}, priority {}: {}", seed, i, priority, toWkt(sketch)));
            EXPECT_TRUE(QZ_AddPolygon(*parcels.layer, sketch, priority, parcels.refresh));
            const Geometry expected = priority < 0 ? difference(covered, sketch) : unionOf(covered, sketch);
            covered = coveredBy(parcels.streets());
            const double givenWay = sketch.spatialReference.grid().xyTolerance * perimeter(sketch);
            EXPECT_NEAR(area(covered), area(expected.as<Polygon>()), givenWay);
            expectCoverage(parcels.streets(), covered);
        }
        EXPECT_EQ(parcels.messages, Rows());
    }
}

} // namespace
} // namespace qz::test
