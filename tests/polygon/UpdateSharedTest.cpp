#include "polygon/QZUpdateShared.h"
#include "tests/polygon/Pavement.h"

namespace qz::test {
namespace {

Dictionary dictionary(const std::vector<std::pair<Value, const char*>>& entries) {
    Dictionary result;
    for (const auto& [key, item] : entries) {
        result.set(key, std::string(item));
    }
    return result;
}

TEST(UpdateShared, EndsOfLinesComeToThePoint) {
    Streets streets;
    streets.add("LINESTRING ZM (0 0 1 10,5 5 2 20,10 0 3 30)");
    streets.add("LINESTRING ZM (-9 0 4 40,0 0 5 50)");
    streets.add("LINESTRING ZM (0 0 6 60,3 3 7 70,0 3 8 80,0 0 9 90)");
    streets.add("COMPOUNDCURVE ZM ((9 9 0 0,4 0 1 0),CIRCULARSTRING ZM (4 0 1 0,2 1 2 0,0 0 3 5))");
    const Point node({0.1, -1.0 / 3, 99, 99}, {true, true, streets.reference});
    EXPECT_TRUE(QZ_UpdateShared(
        streets.streets(), node,
        dictionary({{std::int32_t{1}, "f"}, {2.0, "t"}, {std::string("3"), "ft"}, {std::int32_t{4}, "t"}})));
    const Rows rows = streets.shapes();
    EXPECT_EQ(rows[0], "1 LINESTRING ZM (0.1 -0.3333333333333333 1 10,5 5 2 20,10 0 3 30)");
    EXPECT_EQ(rows[1], "2 LINESTRING ZM (-9 0 4 40,0.1 -0.3333333333333333 5 50)");
    EXPECT_EQ(rows[2], "3 LINESTRING ZM (0.1 -0.3333333333333333 6 60,3 3 7 70,0 3 8 80,0.1 -0.3333333333333333 6 60)");
    EXPECT_NE(rows[3].find("CIRCULARSTRING"), std::string::npos) << rows[3];
    EXPECT_NE(rows[3].find("0.1 -0.3333333333333333 3 5"), std::string::npos) << rows[3];
    EXPECT_EQ(streets.messages, Rows());
}

TEST(UpdateShared, VerticesOfRingsComeToThePoint) {
    const struct {
        const char* item;
        const char* moved;
    } rows[] = {
        {"0|0", "1 POLYGON ZM ((1 2 5 0,0 10 6 1,10 10 7 2,10 0 8 3,1 2 5 0),(4 4 1 0,6 4 1 0,6 6 1 0,4 4 1 0))"},
        {"0|4", "1 POLYGON ZM ((1 2 5 4,0 10 6 1,10 10 7 2,10 0 8 3,1 2 5 4),(4 4 1 0,6 4 1 0,6 6 1 0,4 4 1 0))"},
        {"0|2", "1 POLYGON ZM ((0 0 5 0,0 10 6 1,1 2 7 2,10 0 8 3,0 0 5 4),(4 4 1 0,6 4 1 0,6 6 1 0,4 4 1 0))"},
        {"1|0", "1 POLYGON ZM ((0 0 5 0,0 10 6 1,10 10 7 2,10 0 8 3,0 0 5 4),(1 2 1 0,6 4 1 0,6 6 1 0,1 2 1 0))"},
    };
    for (const auto& row : rows) {
        Parcels parcels;
        parcels.add("POLYGON ZM ((0 0 5 0,0 10 6 1,10 10 7 2,10 0 8 3,0 0 5 4),(4 4 1 0,6 4 1 0,6 6 1 0,4 4 1 0))");
        EXPECT_TRUE(QZ_UpdateSharedPolygon(parcels.streets(), Point({1, 2}, {false, false, parcels.reference}),
                                           dictionary({{std::int32_t{1}, row.item}})));
        EXPECT_EQ(parcels.shapes(), Rows{row.moved}) << row.item;
    }
}

TEST(UpdateShared, AWrongItemChangesNothing) {
    const std::pair<Value, const char*> entries[] = {
        {std::int32_t{2}, "1|0"},  {std::int32_t{2}, "0|5"},      {std::int32_t{2}, "0"},
        {std::int32_t{2}, "0|1|"}, {std::int32_t{2}, "-1|0"},     {std::int32_t{2}, "0| 1"},
        {std::int32_t{2}, ""},     {std::int32_t{9}, "0|1"},      {1.5, "0|1"},
        {std::int32_t{3}, "0|1"},  {std::string("first"), "0|1"},
    };
    for (const auto& entry : entries) {
        Parcels parcels;
        parcels.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
        parcels.add("POLYGON ((10 0,10 10,20 10,20 0,10 0))");
        parcels.add("");
        const Rows before = parcels.shapes();
        EXPECT_FALSE(
            QZ_UpdateSharedPolygon(parcels.streets(), Point({11, 11}), dictionary({{std::int32_t{1}, "0|2"}, entry})));
        EXPECT_EQ(parcels.shapes(), before) << entry.second;
        ASSERT_EQ(parcels.messages.size(), 1U);
        EXPECT_TRUE(parcels.messages[0].starts_with("Feature " + toText(entry.first))) << parcels.messages[0];
    }
    Streets streets;
    streets.add("LINESTRING (0 0,5 5)");
    streets.add("LINESTRING (0 0,9 5)");
    const Rows before = streets.shapes();
    EXPECT_FALSE(QZ_UpdateShared(streets.streets(), Point({1, 1}),
                                 dictionary({{std::int32_t{1}, "f"}, {std::int32_t{2}, "tf"}})));
    EXPECT_FALSE(QZ_UpdateShared(streets.streets(), Point(), dictionary({{std::int32_t{1}, "f"}})));
    EXPECT_EQ(streets.shapes(), before);
    EXPECT_EQ(streets.messages.size(), 2U);
}

TEST(UpdateShared, AFullCircleStaysOne) {
    Parcels parcels;
    parcels.add("CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0))");
    EXPECT_TRUE(QZ_UpdateSharedPolygon(parcels.streets(), Point({-10, 0}, {false, false, parcels.reference}),
                                       dictionary({{std::int32_t{1}, "0|0"}})));
    EXPECT_EQ(parcels.flatShapes(), Rows{"1 CURVEPOLYGON (CIRCULARSTRING (-10 0,10 0,-10 0))"});
}

} // namespace
} // namespace qz::test
