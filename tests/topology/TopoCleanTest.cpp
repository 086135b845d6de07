#include <fmt/format.h>

#include "platform/app/Services.h"
#include "tests/polygon/Coverage.h"
#include "tests/support/StreetsFixture.h"
#include "tests/topology/DirtyPavement.h"

namespace qz::test {
namespace {

struct EditedLayer : Streets {
    explicit EditedLayer(GeometryKind kind) : Streets(kind) {}

    void startEditing() { host.editor().startEditing(*workspace); }
    bool clean(double dFuzzy) {
        startEditing();
        return layer->featureClass().schema().shape->kind == GeometryKind::polygon
                   ? component.QZ_TopoCleanPg(streets(), dFuzzy, 0, host)
                   : component.QZ_TopoCleanPl(streets(), dFuzzy, host);
    }
};

constexpr const char* leftSquare = "POLYGON ZM ((0 0 1 1,0 10 1 2,10 10 1 3,10 0 1 4,0 0 1 1))";

TEST(TopoClean, PolygonsShareTheirBoundaries) {
    const struct {
        const char* name;
        Rows before;
        double tolerance;
        Rows after;
        Rows messages;
    } rows[] = {
        {"a side digitised twice",
         {leftSquare, "POLYGON ZM ((10.3 0 5 5,10.2 10 5 6,20 10 5 7,20 0 5 8,10.3 0 5 5))"},
         0.5,
         {fmt::format("1 {} A", leftSquare), "3 POLYGON ZM ((10 0 5 5,10 10 5 6,20 10 5 7,20 0 5 8,10 0 5 5)) B"},
         {}},
        {"a vertex on the neighbour's side",
         {leftSquare, "POLYGON ZM ((10 0 5 5,10 5 5 6,20 10 5 7,10 0 5 5))"},
         0.5,
         {"2 POLYGON ZM ((10 0 5 5,10 5 5 6,20 10 5 7,10 0 5 5)) B",
          "3 POLYGON ZM ((10 5 1 3.5,10 0 1 4,0 0 1 1,0 10 1 2,10 10 1 3,10 5 1 3.5)) A"},
         {}},
        {"clean already",
         {leftSquare, "POLYGON ZM ((10 0 5 5,10 10 5 6,20 10 5 7,10 0 5 5))"},
         0.5,
         {fmt::format("1 {} A", leftSquare), "2 POLYGON ZM ((10 0 5 5,10 10 5 6,20 10 5 7,10 0 5 5)) B"},
         {}},
        {"a gap wider than the tolerance stays",
         {leftSquare, "POLYGON ZM ((10.6 0 5 5,10.6 10 5 6,20 10 5 7,10.6 0 5 5))"},
         0.5,
         {fmt::format("1 {} A", leftSquare), "2 POLYGON ZM ((10.6 0 5 5,10.6 10 5 6,20 10 5 7,10.6 0 5 5)) B"},
         {}},
        {"a sliver goes",
         {leftSquare, "POLYGON ZM ((10 0 5 5,10 10 5 6,10.2 5 5 7,10 0 5 5))"},
         0.5,
         {"3 POLYGON ZM ((0 0 1 1,0 10 1 2,10 10 1 3,10.2 5 1 3.5,10 0 1 4,0 0 1 1)) A"},
         {fmt::format("Deleted, not being larger than 0{}5: 1 features: 2", services().locale.decimalMark)}},
        {"a narrow neck falls apart",
         {"POLYGON ZM ((0 0 1 1,0 4 1 1,4 2.2 1 1,8 4 1 1,8 0 1 1,4 1.9 1 1,0 0 1 1))"},
         0.5,
         {"2 POLYGON ZM ((4 2.2 1 1,0 0 1 1,0 4 1 1,4 2.2 1 1)) A",
          "3 POLYGON ZM ((4 2.2 1 1,8 4 1 1,8 0 1 1,4 2.2 1 1)) A"},
         {}},
        {"a part within a part",
         {"MULTIPOLYGON ZM (((0 0 1 1,0 9 1 2,9 9 1 3,0 0 1 1)),((1 2 1 1,1 7 1 2,6 7 1 3,1 2 1 1)))"},
         0.5,
         {"2 POLYGON ZM ((0 0 1 1,0 9 1 2,9 9 1 3,0 0 1 1),(1 2 1 1,6 7 1 3,1 7 1 2,1 2 1 1)) A"},
         {}},
        {"a hole outside",
         {"POLYGON ZM ((0 0 1 1,0 9 1 2,9 9 1 3,0 0 1 1),(11 2 1 1,16 7 1 3,11 7 1 2,11 2 1 1))"},
         0.5,
         {"2 POLYGON ZM ((0 0 1 1,0 9 1 2,9 9 1 3,0 0 1 1)) A",
          "3 POLYGON ZM ((11 2 1 1,11 7 1 2,16 7 1 3,11 2 1 1)) A"},
         {}},
    };
    for (const auto& row : rows) {
        EditedLayer parcels(GeometryKind::polygon);
        for (std::size_t i = 0; i < row.before.size(); ++i) {
            parcels.add(row.before[i], {std::string(i == 0 ? "A" : "B")});
        }
        EXPECT_TRUE(parcels.clean(row.tolerance)) << row.name;
        EXPECT_EQ(parcels.listed({"NAME"}), row.after) << row.name;
        EXPECT_EQ(parcels.messages, row.messages) << row.name;
        EXPECT_TRUE(parcels.clean(row.tolerance)) << row.name;
        EXPECT_EQ(parcels.listed({"NAME"}), row.after) << row.name << ", again";
    }
}

TEST(TopoClean, PartsAndHolesStayTogether) {
    EditedLayer parcels(GeometryKind::polygon);
    parcels.add("MULTIPOLYGON (((0 0,0 10,10 10,10 0,0 0),(3 3,6 3,6 6,3 6,3 3)),((20 0,20 5,25 5,20 0)))");
    parcels.add("POLYGON ((3.1 3,3.1 6.1,6 6,6 3,3.1 3))");
    parcels.add("POLYGON ((20 0.1,25 5.1,25 0,20 0.1))");
    EXPECT_TRUE(parcels.clean(0.5));
    const Rows rows = parcels.shapes();
    ASSERT_EQ(rows.size(), 3u);
    const Coverage clean = coverageOf(parcels.streets());
    EXPECT_NEAR(clean.area, 100 + 12.5 + 12.5, 0.01);
    EXPECT_NEAR(clean.unshared, 40 + 4 * 5, 0.01);
}

TEST(TopoClean, LinesEndWhereTheyMeet) {
    EditedLayer lines(GeometryKind::polyline);
    lines.add("LINESTRING ZM (0 0 0 0,10 0 10 10)", {std::string("A")});
    lines.add("LINESTRING ZM (4 -5 1 1,4 5 1 1)", {std::string("B")});
    lines.add("LINESTRING ZM (10.3 0.1 7 7,20 0 7 7)", {std::string("C")});
    lines.add("LINESTRING ZM (50 0 7 7,60 0 7 7)", {std::string("D")});
    lines.add("LINESTRING ZM (0 0 3 3,4 0 3 3)", {std::string("E")});
    EXPECT_TRUE(lines.clean(0.5));
    EXPECT_EQ(lines.listed({"NAME"}),
              (Rows{"4 LINESTRING ZM (50 0 7 7,60 0 7 7) D", "5 LINESTRING ZM (0 0 3 3,4 0 3 3) E",
                    "6 LINESTRING ZM (0 0 0 0,4 0 4 4) A", "7 LINESTRING ZM (4 0 4 4,10 0 10 10) A",
                    "8 LINESTRING ZM (4 -5 1 1,4 0 1 1) B", "9 LINESTRING ZM (4 0 1 1,4 5 1 1) B",
                    "10 LINESTRING ZM (10 0 7 7,20 0 7 7) C"}));
    EXPECT_EQ(lines.host.editor().operationNames(), (Rows{"QZ_TopoCleanPl"}));
    EXPECT_TRUE(lines.host.editor().undo());
    EXPECT_EQ(lines.shapes().size(), 5u);
}

// An arch below its complement, and beside them a triangle.
Rows arcsCleaned(const char* complement, const char* beside) {
    EditedLayer parcels(GeometryKind::polygon);
    parcels.add("CURVEPOLYGON (COMPOUNDCURVE ((0 0,0 10),CIRCULARSTRING (0 10,5 12,10 10),(10 10,10 0,0 0)))");
    parcels.add(complement);
    parcels.add(beside);
    EXPECT_TRUE(parcels.clean(0.05));
    const Rows once = parcels.shapes();
    EXPECT_TRUE(parcels.clean(0.05));
    EXPECT_EQ(parcels.shapes(), once);
    return once;
}

std::ptrdiff_t curvedRows(const Rows& rows) {
    return std::ranges::count_if(
        rows, [](const std::string& row) { return row.find("ARC") != row.npos || row.find("CIRC") != row.npos; });
}

TEST(TopoClean, ArcsThatNothingTouchesStay) {
    const char* same = "CURVEPOLYGON (COMPOUNDCURVE ((0 20,10 20,10 10),CIRCULARSTRING (10 10,5 12,0 10),(0 10,0 20)))";
    const char* inHalves = "CURVEPOLYGON (COMPOUNDCURVE ((0 20,10 20,10 10),CIRCULARSTRING (10 10,"
                           "7.6 11.5156,5 12,2.4 11.5156,0 10),(0 10,0 20)))";
    const char* apart = "POLYGON ((10.02 0,10.02 10,20 0,10.02 0))";
    const char* touching = "POLYGON ((5 12.02,5 18,6 18,5 12.02))";
    EXPECT_EQ(curvedRows(arcsCleaned(same, apart)), 2);
    EXPECT_EQ(curvedRows(arcsCleaned(inHalves, apart)), 2);
    EXPECT_EQ(curvedRows(arcsCleaned(same, touching)), 0);
    EXPECT_EQ(arcsCleaned(same, "POLYGON ((30 0,30 1,31 0,30 0))")[0].substr(0, 2), "1 ");
}

TEST(TopoClean, DirtyCoverage) {
    const double tolerance = 0.02;
    EditedLayer parcels(GeometryKind::polygon);
    double area = 0;
    for (const Path& ring : dirtyRings(12, 0.006, 5)) {
        Polygon polygon;
        polygon.spatialReference = parcels.reference;
        polygon.rings = {ring};
        area += signedArea(ring);
        parcels.table->add(std::move(polygon));
    }
    EXPECT_TRUE(parcels.clean(tolerance));
    EXPECT_EQ(parcels.shapes().size(), 144u);
    const Coverage clean = coverageOf(parcels.streets());
    EXPECT_NEAR(clean.area, area, 144 * 40 * tolerance);
    EXPECT_NEAR(clean.unshared, 4 * 120, 40); // the outline alone
    const Rows once = parcels.shapes();
    EXPECT_TRUE(parcels.clean(tolerance));
    EXPECT_EQ(parcels.shapes(), once);
    EXPECT_TRUE(parcels.messages.empty());
}

TEST(TopoClean, Refusals) {
    EditedLayer parcels(GeometryKind::polygon);
    EXPECT_FALSE(parcels.component.QZ_TopoCleanPg(parcels.streets(), 0.5, 0, parcels.host));
    EXPECT_TRUE(parcels.messages.empty()) << "the editor isn't editing";
    EXPECT_FALSE(parcels.clean(0.5));
    EXPECT_EQ(parcels.messages, (Rows{"No features found in the current layer. Exiting"}));

    EditedLayer small(GeometryKind::polygon);
    small.add("POLYGON ((0 0,0 1,1 1,0 0))");
    EXPECT_FALSE(small.clean(100));
    EXPECT_FALSE(small.clean(-1));
    EXPECT_EQ(small.messages, (Rows{"Could not clean the polygons QZ_TopoCleanPg",
                                    "The cluster tolerance must be 0 or more, and it is -1. QZ_TopoCleanPg"}));
    EXPECT_EQ(small.shapes().size(), 1u);

    EditedLayer mixed(GeometryKind::polygon);
    mixed.add("POLYGON ((0 0,0 9,9 9,0 0))");
    mixed.add("LINESTRING (0 0,4 4.2,9 9)");
    const Rows before = mixed.shapes();
    EXPECT_FALSE(mixed.clean(0.5));
    EXPECT_EQ(mixed.messages, (Rows{"A polygon is needed, but the geometry is a polyline. QZ_TopoCleanPg"}));
    EXPECT_EQ(mixed.shapes(), before);
}

TEST(TopoClean, CancellingKeepsWhatWasDone) {
    EditedLayer lines(GeometryKind::polyline);
    lines.add("LINESTRING (0 0,10 0)");
    lines.add("LINESTRING (5 -5,5 5)");
    bool wanted = true;
    services().interruptRequested = [&] { return wanted; };
    services().interruptTaken = [&] { wanted = false; };
    EXPECT_FALSE(lines.clean(0.5));
    EXPECT_EQ(lines.messages, (Rows{"Cancelled at 0 of 2 Polylines processed; what was done until then is kept.",
                                    "Could not clean the polylines QZ_TopoCleanPl"}));
    EXPECT_EQ(lines.shapes().size(), 2u);
    lines.messages.clear();
    EXPECT_TRUE(lines.clean(0.5));
    EXPECT_EQ(lines.shapes().size(), 4u);
}

TEST(ValidateEdits, PutsShapesOntoTheGrid) {
    EditedLayer lines(GeometryKind::polyline);
    lines.add("LINESTRING ZM (0.00004 0 1 1,10.00006 0 1 1)");
    lines.add("");
    EXPECT_TRUE(lines.component.QZ_ValidateEdits(lines.streets(), lines.host));
    EXPECT_EQ(lines.shapes(), (Rows{"1 LINESTRING ZM (0 0 1 1,10.0001 0 1 1)", "2 null"}));
}

} // namespace
} // namespace qz::test
