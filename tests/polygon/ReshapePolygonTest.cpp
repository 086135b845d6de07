#include "polygon/QZReshapePolygon.h"
#include "tests/polygon/Coverage.h"
#include "tests/polygon/Pavement.h"
#include "tests/polygon/RandomSketches.h"

namespace qz::test {
namespace {

struct Reshaping : Parcels {
    bool reshape(const std::string& wkt, std::int16_t priority, const Vertex& start) {
        return QZ_ReshapePolygon(*layer, area(wkt), priority, refresh, Point(start, {false, false, reference}));
    }
};

TEST(ReshapePolygon, ExtendsThePolygonAtTheStart) {
    const char* const left = "POLYGON ((0 0,0 10,10 10,10 0,0 0))";
    const char* const right = "POLYGON ((10 0,10 10,20 10,20 0,10 0))";
    const char* const overBoth = "POLYGON ((5 4,5 6,15 6,15 4,5 4))";
    const char* const overLeft = "POLYGON ((-5 4,-5 6,5 6,5 4,-5 4))";
    const Rows unchanged{std::string("1 ") + left, std::string("2 ") + right};
    const struct {
        const char* name;
        const char* sketch;
        std::int16_t priority;
        Rows rows;
    } rows[] = {
        {"takes from the other",
         overBoth,
         2,
         {"1 POLYGON ((0 0,0 10,10 10,10 6,15 6,15 4,10 4,10 0,0 0))",
          "2 POLYGON ((10 0,10 4,15 4,15 6,10 6,10 10,20 10,20 0,10 0))"}},
        {"takes the free part only",
         "POLYGON ((5 5,5 15,15 15,15 5,5 5))",
         0,
         {"1 POLYGON ((0 0,0 10,5 10,5 15,15 15,15 10,10 10,10 5,10 0,0 0))",
          "2 POLYGON ((10 0,10 5,10 10,15 10,20 10,20 0,10 0))"}},
        {"of no use among others", overBoth, 1, unchanged},
        {"alone, whatever the code",
         overLeft,
         7,
         {"1 POLYGON ((-5 4,-5 6,0 6,0 10,10 10,10 0,0 0,0 4,-5 4))", std::string("2 ") + right}},
        {"swallows the other",
         "POLYGON ((5 -1,5 11,21 11,21 -1,5 -1))",
         2,
         {"1 POLYGON ((0 0,0 10,5 10,5 11,21 11,21 -1,5 -1,5 0,0 0))"}},
        {"meets none", "POLYGON ((0 20,0 25,5 20,0 20))", 2, unchanged},
    };
    for (const auto& row : rows) {
        Reshaping parcels;
        parcels.add(left);
        parcels.add(right);
        EXPECT_TRUE(parcels.reshape(row.sketch, row.priority, {5, 5})) << row.name;
        EXPECT_EQ(parcels.flatShapes(), row.rows) << row.name;
        EXPECT_EQ(parcels.messages, Rows()) << row.name;
    }
}

TEST(ReshapePolygon, ThePolygonStaysWhereTheSketchCoversIt) {
    Reshaping parcels;
    parcels.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    parcels.add("POLYGON ((10 0,10 10,20 10,20 0,10 0))", {std::string("Field")});
    EXPECT_TRUE(parcels.reshape("POLYGON ((9 -1,9 11,21 11,21 -1,9 -1))", 2, {15, 5}));
    const Rows rows = parcels.listed({"NAME"});
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_TRUE(rows[1].starts_with("2 ") && rows[1].ends_with(" Field")) << rows[1];
    EXPECT_NEAR(coverageOf(parcels.streets()).area, 90 + 144, 1e-9);
}

TEST(ReshapePolygon, AStartBesideAllPolygonsIsReported) {
    Reshaping parcels;
    parcels.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    EXPECT_FALSE(parcels.reshape("POLYGON ((5 4,5 6,15 6,15 4,5 4))", 2, {12, 5}));
    EXPECT_EQ(parcels.messages, (Rows{"There is no polygon at (12, 5), where the sketch starts. Start it inside the "
                                      "polygon to be reshaped. QZ_ReshapePolygon w= 2"}));
}

TEST(ReshapePolygon, ACoverageStaysACoverage) {
    for (const std::uint32_t seed : {11U, 12U, 13U, 14U}) {
        std::mt19937 random(seed);
        Parcels parcels;
        addPavement(parcels, random, 6);
        RandomSketches sketches(parcels.streets(), seed);
        Polygon covered = coveredBy(parcels.streets());
        int reshaped = 0;
        for (int i = 0; i < 25; ++i) {
            const auto priority = static_cast<std::int16_t>(random() % 2 * 2);
            const Polygon sketch = sketches.next();
            SCOPED_TRACE(fmt::format("seed {}, sketch {}, priority {}: {}", seed, i, priority, toWkt(sketch)));
            const Point start(sketch.rings.front().front(), sketch);
            FeatureFilter atStart;
            atStart.shape = start;
            if (parcels.streets().count(atStart) == 0) {
                continue;
            }
            EXPECT_TRUE(QZ_ReshapePolygon(*parcels.layer, sketch, priority, parcels.refresh, start));
            const Geometry expected = unionOf(covered, sketch);
            covered = coveredBy(parcels.streets());
            const double givenWay = sketch.spatialReference.grid().xyTolerance * perimeter(sketch);
            EXPECT_NEAR(area(covered), area(expected.as<Polygon>()), givenWay);
            expectCoverage(parcels.streets(), covered);
            ++reshaped;
        }
        EXPECT_GT(reshaped, 10);
        EXPECT_EQ(parcels.messages, Rows());
    }
}

} // namespace
} // namespace qz::test
