#include <random>

#include <fmt/format.h>

#include "tests/polygon/Coverage.h"
#include "tests/polygon/Pavement.h"

namespace qz::test {
namespace {

constexpr const char* holed = "POLYGON ((0 0,0 10,10 10,10 0,0 0),(4 4,6 4,6 6,4 6,4 4))";

TEST(SplitPolygon, PiecesReplaceTheSourceWithValuesByTheRules) {
    Parcels parcels;
    const std::vector<Value> values{std::string("Field"), std::int32_t{2}, std::int32_t{40}, 100.0};
    parcels.add("POLYGON ZM ((0 0 1 0,0 10 1 1,10 10 1 2,10 0 1 3,0 0 1 4))", values);
    parcels.add("POLYGON ZM ((10 0 1 0,10 10 1 1,20 10 1 2,20 0 1 3,10 0 1 4))", values);
    parcels.add("POLYGON ZM ((20 0 1 0,20 10 1 1,30 10 1 2,20 0 1 3))", values);
    EXPECT_TRUE(parcels.split("LINESTRING (-1 2.5,20 2.5)"));
    EXPECT_EQ(parcels.listed({"NAME", "FROM_L", "LENGTH"}),
              (Rows{"3 POLYGON ZM ((20 0 1 0,20 2.5 1 0.25,20 10 1 1,30 10 1 2,20 0 1 3)) Field 2 100",
                    "4 POLYGON ZM ((0 2.5 1 0.25,0 10 1 1,10 10 1 2,10 2.5 1 2.75,0 2.5 1 0.25)) Field 2 75",
                    "5 POLYGON ZM ((0 0 1 0,0 2.5 1 0.25,10 2.5 1 2.75,10 0 1 3,0 0 1 0)) Field 2 25",
                    "6 POLYGON ZM ((10 2.5 1 0.25,10 10 1 1,20 10 1 2,20 2.5 1 2.75,10 2.5 1 0.25)) Field 2 75",
                    "7 POLYGON ZM ((10 0 1 0,10 2.5 1 0.25,20 2.5 1 2.75,20 0 1 3,10 0 1 0)) Field 2 25"}));
    EXPECT_TRUE(parcels.messages.empty());
}

TEST(SplitPolygon, LinesOfEveryCourse) {
    const struct {
        const char* name;
        const char* line;
        std::size_t count; // of features afterwards; 1: left as it was
        bool hasMessage;
    } rows[] = {
        {"through the hole", "LINESTRING (5 -1,5 11)", 2, false},
        {"past the hole", "LINESTRING (2 -1,2 11)", 2, false},
        {"from vertex to vertex", "LINESTRING (0 0,0 10)", 1, false},
        {"across from vertex to vertex", "LINESTRING (0 0,10 10)", 2, false},
        {"starts inside", "LINESTRING (2 2,2 11)", 1, false},
        {"ends inside", "LINESTRING (2 -1,2 2)", 1, false},
        {"starts in the hole", "LINESTRING (5 5,5 11)", 1, true},
        {"ends in the hole", "LINESTRING (5 -1,5 5)", 1, true},
        {"along an edge", "LINESTRING (-5 0,15 0)", 1, false},
        {"touches", "LINESTRING (-5 5,0 10,5 15)", 1, false},
        {"five times across", "LINESTRING (-1 1,11 1,11 2,-1 2,-1 3,11 3,11 7,-1 7,-1 8,11 8)", 2, false},
        {"across itself", "LINESTRING (-1 1,9 1,9 3,8 3,8 -1)", 2, false},
        {"outside", "LINESTRING (50 0,60 0)", 1, false},
    };
    for (const auto& row : rows) {
        Parcels parcels;
        parcels.add(holed);
        const Rows before = parcels.shapes();
        EXPECT_TRUE(parcels.split(row.line)) << row.name;
        EXPECT_EQ(parcels.shapes().size(), row.count) << row.name;
        EXPECT_EQ(parcels.shapes() == before, row.count == 1) << row.name;
        EXPECT_NEAR(coverageOf(parcels.streets()).area, 96, 1e-9) << row.name;
        const Rows message{"One of the end points of the cutting line falls in a hole within the polygon\n"
                           "The polygon can not be cut"};
        EXPECT_EQ(parcels.messages, row.hasMessage ? message : Rows()) << row.name;
    }
}

TEST(SplitPolygon, NeighboursGetTheVerticesWithTheirOwnHeights) {
    Parcels parcels;
    const ObjectId start = parcels.add("POLYGON ZM ((0 0 5 0,0 10 5 0,10 10 15 0,10 0 5 10,0 0 5 0))");
    parcels.add("POLYGON ZM ((10 0 1 0,10 10 1 0,20 10 1 0,20 0 1 0,10 0 1 0))");
    const ObjectId end = parcels.add("POLYGON ZM ((20 0 7 0,20 10 7 0,30 5 7 0,20 0 7 0))");
    const ObjectId apart = parcels.add("POLYGON ZM ((10 10 0 0,10 20 0 0,20 10 0 0,10 10 0 0))");
    EXPECT_TRUE(parcels.split("LINESTRING (5 4,25 4)"));
    const Rows rows = parcels.shapes();
    ASSERT_EQ(rows.size(), 5u);
    EXPECT_EQ(rows[0], fmt::format("{} POLYGON ZM ((0 0 5 0,0 10 5 0,10 10 15 0,10 4 9 6,10 0 5 10,0 0 5 0))", start));
    EXPECT_EQ(rows[1], fmt::format("{} POLYGON ZM ((20 0 7 0,20 4 7 0,20 10 7 0,30 5 7 0,20 0 7 0))", end));
    EXPECT_EQ(rows[2], fmt::format("{} POLYGON ZM ((10 10 0 0,10 20 0 0,20 10 0 0,10 10 0 0))", apart));
}

TEST(SplitPolygon, OnlyThePolygonNamedIsCut) {
    Parcels parcels;
    parcels.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    const ObjectId named = parcels.add("POLYGON ((10 0,10 10,20 10,20 0,10 0))");
    parcels.add("POLYGON ((20 0,20 10,30 10,30 0,20 0))");
    EXPECT_TRUE(parcels.splitOnly(named, "LINESTRING (-1 4,31 4)"));
    EXPECT_EQ(parcels.flatShapes(),
              (Rows{"1 POLYGON ((0 0,0 10,10 10,10 4,10 0,0 0))", "3 POLYGON ((20 0,20 4,20 10,30 10,30 0,20 0))",
                    "4 POLYGON ((10 4,10 10,20 10,20 4,10 4))", "5 POLYGON ((10 0,10 4,20 4,20 0,10 0))"}));
    EXPECT_TRUE(parcels.splitOnly(77, "LINESTRING (-1 4,31 4)"));
    EXPECT_EQ(parcels.shapes().size(), 4u);
}

// Where the tolerance of the layer is large, what is near the line isn't on it.
TEST(SplitPolygon, NeighboursAreNeverBent) {
    Parcels parcels;
    parcels.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    parcels.add("POLYGON ((10.05 0,10.05 10,20 10,20 0,10.05 0))");
    parcels.add("POLYGON ((200000 0,200000 10,200010 10,200000 0))"); // makes the tolerance 0.1
    const double before = coverageOf(parcels.streets()).area;
    EXPECT_TRUE(parcels.split("LINESTRING (-1 4,15 4)"));
    EXPECT_EQ(parcels.flatShapes()[0], "2 POLYGON ((10.05 0,10.05 4,10.05 10,20 10,20 0,10.05 0))");
    EXPECT_NEAR(coverageOf(parcels.streets()).area, before, 1e-9);
}

TEST(SplitPolygon, ArcsStayArcs) {
    Parcels parcels;
    parcels.add("CURVEPOLYGON (COMPOUNDCURVE ((0 0,0 10),CIRCULARSTRING (0 10,5 15,10 10),(10 10,10 0,0 0)))");
    parcels.add("CURVEPOLYGON (COMPOUNDCURVE ((0 20,10 20,10 10),CIRCULARSTRING (10 10,5 15,0 10),(0 10,0 20)))");
    const Coverage before = coverageOf(parcels.streets());
    EXPECT_TRUE(parcels.splitOnly(1, "LINESTRING (2 -1,2 19)"));
    const Coverage after = coverageOf(parcels.streets());
    EXPECT_NEAR(after.area, before.area, 1e-9);
    EXPECT_NEAR(after.unshared, before.unshared, 1e-9);
    for (const std::string& row : parcels.shapes()) {
        EXPECT_NE(row.find("CIRCULARSTRING"), std::string::npos) << row;
    }
}

std::string randomSketch(std::mt19937& random, int size) {
    std::uniform_real_distribution<double> place(-0.5, size - 0.5);
    std::string text;
    for (int i = 0; i < 4; ++i) {
        const double x = 500000 + place(random), y = 5600000 + place(random);
        text += fmt::format("{}{} {}", text.empty() ? "" : ",", x, y);
    }
    return "LINESTRING (" + text + ")";
}

TEST(SplitPolygon, LeavesNeitherGapsNorOverlaps) {
    std::mt19937 random(4711);
    for (int round = 0; round < 30; ++round) {
        Parcels parcels;
        addPavement(parcels, random, 12);
        const Coverage before = coverageOf(parcels.streets());
        for (int sketch = 0; sketch < 4; ++sketch) {
            const std::string line = randomSketch(random, 12);
            SCOPED_TRACE(fmt::format("round {}: {}", round, line));
            const ObjectId any = 1 + round;
            EXPECT_TRUE(sketch % 2 == 0 ? parcels.split(line) : parcels.splitOnly(any, line));
            const Coverage after = coverageOf(parcels.streets());
            EXPECT_NEAR(after.area, before.area, 1e-6);
            EXPECT_NEAR(after.unshared, before.unshared, 1e-6);
        }
        EXPECT_TRUE(parcels.messages.empty());
    }
}

TEST(SplitPolygon, FailuresAreReported) {
    Parcels parcels;
    parcels.add(holed);
    const Rows before = parcels.shapes();
    EXPECT_FALSE(parcels.component.QZ_SplitPolygonRun(*parcels.layer, Polyline(), parcels.refresh, parcels.host));
    ASSERT_EQ(parcels.messages.size(), 1u);
    EXPECT_EQ(parcels.shapes(), before);
}

} // namespace
} // namespace qz::test
