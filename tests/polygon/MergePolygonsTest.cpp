#include "polygon/QZMergePolygons.h"
#include "tests/polygon/Pavement.h"

namespace qz::test {
namespace {

struct Merging : Parcels {
    // Two neighbours, one that overlaps the second, one apart.
    Merging() {
        add("POLYGON ((0 0,0 10,10 10,10 0,0 0))", values("West", 10));
        add("POLYGON ((10 0,10 10,20 10,20 0,10 0))", values("Middle", 30));
        add("POLYGON ((18 0,18 10,30 10,30 0,18 0))", values("East", 1));
        add("POLYGON ((50 0,50 10,60 10,60 0,50 0))", values("Far", 2));
    }
    static std::vector<Value> values(const char* name, double length) {
        return {std::string(name), std::int32_t{1}, std::int32_t{2}, length};
    }
    bool merge(double fromX, double toX) {
        const GeometryTraits traits{false, false, reference};
        return QZ_MergePolygons(*layer, Point({fromX, 5}, traits), Point({toX, 5}, traits), refresh);
    }
};

TEST(MergePolygons, TheEndKeepsItsIdAndGetsValuesByTheRules) {
    Merging parcels;
    EXPECT_TRUE(parcels.merge(5, 15));
    const Rows rows = parcels.listed({"NAME", "LENGTH"});
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0], "2 POLYGON ZM ((0 0 NaN NaN,0 10 NaN NaN,10 10 NaN NaN,20 10 NaN NaN,20 0 NaN NaN,10 0 NaN NaN,"
                       "0 0 NaN NaN)) West 40");
    EXPECT_TRUE(parcels.merge(15, 55)) << "apart: one of two parts";
    EXPECT_EQ(parcels.listed({"NAME", "LENGTH"}).size(), 2U);
    EXPECT_EQ(parcels.messages, Rows());
}

TEST(MergePolygons, RefusalsChangeNothing) {
    const struct {
        double fromX;
        double toX;
        const char* message;
    } rows[] = {
        {40, 15, "The start of the selection line should be inside a polygon"},
        {19, 15, "Duplicate polygons found at the start of the selection line."},
        {15, 40, "The end of the selection line should be inside a polygon"},
        {15, 19, "Duplicate polygons found at the end of the selection line."},
        {10, 15, "Duplicate polygons found at the start of the selection line."},
        {14, 15, "The Start and End points of the selection line should be in different polygons"},
    };
    for (const auto& row : rows) {
        Merging parcels;
        const Rows before = parcels.listed({"NAME", "LENGTH"});
        EXPECT_FALSE(parcels.merge(row.fromX, row.toX));
        EXPECT_EQ(parcels.messages, Rows{row.message});
        EXPECT_EQ(parcels.listed({"NAME", "LENGTH"}), before);
    }
}

TEST(MergePolygons, TwoPartsAreRefusedInLayersOfSingleOnes) {
    SingleParts parcels;
    parcels.data->add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    parcels.data->add("POLYGON ((20 0,20 10,30 10,30 0,20 0))");
    const Rows before = parcels.shapes();
    EXPECT_FALSE(QZ_MergePolygons(*parcels.layer, Point({5, 5}), Point({25, 5}), parcels.refresh));
    EXPECT_EQ(parcels.messages, Rows{"Could not merge the polygons"});
    EXPECT_EQ(parcels.shapes(), before);
}

} // namespace
} // namespace qz::test
