#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

struct EditedStreets : Streets {
    using Streets::Streets;

    bool extend(ObjectId id, XY first, XY second, bool split = false) {
        const CursorPtr cursor = only(id);
        return component.QZ_ExtendPolyline2(*cursor, *layer, reference, Point({first.x, first.y}),
                                            Point({second.x, second.y}), nullptr, 0.01, refresh, split, true, host);
    }
    bool reshape(ObjectId id, const std::string& sketch) {
        const CursorPtr cursor = only(id);
        const FeaturePtr feature = cursor->next();
        return component.QZ_ReshapePolyline(streets(), *cursor, feature.get(), geometryFromWkt(sketch).as<Polyline>(),
                                            refresh, host);
    }
    Point insertVertex(ObjectId id, XY place, bool bSame) {
        const CursorPtr cursor = only(id);
        const FeaturePtr feature = cursor->next();
        Point inserted;
        EXPECT_TRUE(component.QZ_InsertVertexRun(*cursor, *layer, feature.get(), Point({place.x, place.y}), 0, refresh,
                                                 inserted, bSame, host));
        return inserted;
    }
    [[nodiscard]] std::string wkt(ObjectId id) {
        const FeaturePtr row = streets().feature(id);
        return row ? toWkt(*row->shape()) : "none";
    }
};

struct LineEditing : testing::Test, EditedStreets {};

TEST_F(LineEditing, ExtendsTheEndNearTheFirstClickToTheNearestLine) {
    const ObjectId line = add("LINESTRING ZM (0 0 5 0,10 0 5 10)");
    add("LINESTRING ZM (15 -5 20 0,15 5 40 0)");
    add("LINESTRING ZM (13 -5 0 0,13 -1 0 0)");
    add("LINESTRING ZM (18 -5 0 0,18 5 0 0)");
    EXPECT_TRUE(extend(line, {9, 1}, {29, 1}));
    EXPECT_EQ(wkt(line), "LINESTRING ZM (0 0 5 0,15 0 30 15)") << "with the height there and the measure going on";
    EXPECT_FALSE(extend(line, {1, 1}, {4, 1})) << "the other end meets nothing";
    EXPECT_EQ(messages, Rows{"no selected"});
    EXPECT_EQ(streets().count(), 4) << "nothing is cut unless asked for";
}

TEST_F(LineEditing, ExtensionStopsShortOfItsReach) {
    const ObjectId line = add("LINESTRING ZM (0 0 0 0,10 0 0 0)");
    add("LINESTRING ZM (15 -5 0 0,15 5 0 0)");
    EXPECT_FALSE(extend(line, {10, 0}, {14, 0}));
    const ObjectId parts = add("MULTILINESTRING ZM ((0 50 0 0,1 50 0 0),(2 50 0 0,3 50 0 0))");
    EXPECT_FALSE(extend(parts, {0, 0}, {1, 0}));
    EXPECT_EQ(messages, (Rows{"no selected", "A multipart polyline selected!\nExplode it and try again."}));
}

TEST_F(LineEditing, ExtensionFromAnArcIsStraightAndTheArcStays) {
    const ObjectId arc = add("CIRCULARSTRING ZM (0 0 0 0,5 5 0 0,10 0 0 0)");
    add("LINESTRING ZM (0 -8 0 0,20 -8 0 0)");
    EXPECT_TRUE(extend(arc, {10, 0}, {10, 20}));
    EXPECT_EQ(wkt(arc), "COMPOUNDCURVE ZM (CIRCULARSTRING ZM (0 0 0 0,5 5 0 0,10 0 0 0),(10 0 0 0,10 -8 0 0))");
}

TEST_F(LineEditing, ExtensionCutsTheLineItMeetsWhenThatIsTheOnlyOne) {
    const ObjectId line = add("LINESTRING ZM (0 0 0 0,10 0 0 0)");
    const ObjectId target =
        add("LINESTRING ZM (15 -5 0 0,15 5 0 0)", {std::string("T"), std::int32_t{1}, std::int32_t{9}});
    EXPECT_TRUE(extend(line, {10, 0}, {20, 0}, true));
    EXPECT_EQ(wkt(target), "none");
    EXPECT_EQ(sortedShapes(), (Rows{"LINESTRING ZM (0 0 0 0,15 0 0 0)", "LINESTRING ZM (15 -5 0 0,15 0 0 0)",
                                    "LINESTRING ZM (15 0 0 0,15 5 0 0)"}));
    // At a crossing of two lines a cut would be ambiguous.
    const ObjectId other = add("LINESTRING ZM (0 20 0 0,10 20 0 0)");
    add("LINESTRING ZM (15 15 0 0,15 25 0 0)");
    add("LINESTRING ZM (14 19 0 0,16 21 0 0)");
    EXPECT_TRUE(extend(other, {10, 20}, {20, 20}, true));
    EXPECT_EQ(streets().count(), 6);
}

TEST_F(LineEditing, ReshapeKeepsTheEnds) {
    const ObjectId line = add("LINESTRING ZM (0 0 1 0,10 0 2 10)");
    EXPECT_TRUE(reshape(line, "LINESTRING (-5 0,2 0,5 3,8 0)"));
    const auto& path = streets().feature(line)->shape()->as<Polyline>().paths.front();
    EXPECT_EQ(path.front().x, 0);
    EXPECT_EQ(path.back().x, 10);
    EXPECT_EQ(path.back().m, 10);
    EXPECT_NE(wkt(line).find("5 3 "), std::string::npos) << wkt(line);

    const std::string before = wkt(line);
    EXPECT_FALSE(reshape(line, "MULTILINESTRING ((2 1,3 1),(4 -1,4 1))"));
    EXPECT_EQ(messages, Rows{"The reshape polyline must be single part geometry"});
    EXPECT_TRUE(reshape(line, "LINESTRING (0 50,10 50)")) << "it meets nothing";
    EXPECT_EQ(wkt(line), before);
}

TEST_F(LineEditing, CandidatesForAReshapeAreMetTwice) {
    add("LINESTRING ZM (0 0 0 0,10 0 0 0)");
    add("LINESTRING ZM (0 5 0 0,10 5 0 0)");
    add("LINESTRING ZM (0 9 0 0,10 9 0 0)");
    const struct {
        const char* sketch;
        double tolerance;
        int decimals;
        bool single;
        int id;
    } rows[] = {
        {"LINESTRING (2 1,2 -1,4 -1,4 1)", 0.1, 2, true, 1},
        {"LINESTRING (2 6,2 -1,4 -1,4 6)", 0.1, 2, false, 2},
        {"LINESTRING (2 1,2 -1)", 0.1, 2, false, 0},
        {"LINESTRING (0.3 5,10 5.4,10 20)", 0.5, 2, true, 2},         // an end of the line near the sketch
        {"LINESTRING (2 1,2 -1,2.004 -1,2.004 1)", 0.1, 2, false, 0}, // one place to two decimals
        {"LINESTRING (2 1,2 -1,2.004 -1,2.004 1)", 0.1, 3, true, 1},
    };
    for (const auto& row : rows) {
        bool single = true;
        std::int32_t id = 0;
        EXPECT_TRUE(component.QZ_GetReshFeature(*all(), geometryFromWkt(row.sketch).as<Polyline>(), row.tolerance,
                                                single, id, static_cast<std::int16_t>(row.decimals)));
        EXPECT_EQ(single, row.single) << row.sketch;
        EXPECT_EQ(id, row.id) << row.sketch;
    }
    bool single = false;
    std::int32_t id = 0;
    EXPECT_FALSE(component.QZ_GetReshFeature(*all(), Polyline(), 0.1, single, id, -1));
    EXPECT_TRUE(messages.at(0).ends_with(" QZ_GetReshFeature w=1")) << messages.at(0);
}

TEST_F(LineEditing, InsertsAVertexOnTheLineOrThroughThePoint) {
    const ObjectId line = add("LINESTRING ZM (0 0 0 0,10 0 10 10)");
    EXPECT_EQ(toWkt(insertVertex(line, {4, 2}, false)), "POINT ZM (4 0 4 4)");
    EXPECT_EQ(wkt(line), "LINESTRING ZM (0 0 0 0,4 0 4 4,10 0 10 10)");
    EXPECT_EQ(insertVertex(line, {7, 2}, true).vertex.y, 2);
    EXPECT_EQ(wkt(line), "LINESTRING ZM (0 0 0 0,4 0 4 4,7 2 7 7,10 0 10 10)");
    EXPECT_TRUE(insertVertex(line, {4, 0}, false).isEmpty()) << "there is one";
    EXPECT_EQ(wkt(line), "LINESTRING ZM (0 0 0 0,4 0 4 4,7 2 7 7,10 0 10 10)");
}

TEST(PolygonEditing, VerticesOfRings) {
    EditedStreets areas(GeometryKind::polygon);
    const ObjectId area = areas.add(
        "POLYGON ZM ((0 0 0 0,0 10 0 0,10 10 0 0,10 0 0 0,0 0 0 0),(2 2 0 0,4 2 0 0,4 4 0 0,2 4 0 0,2 2 0 0))");
    EXPECT_EQ(toWkt(areas.insertVertex(area, {11, 5}, false)), "POINT ZM (10 5 0 0)");
    const Envelope corner{9, 9, 11, 11};
    EXPECT_TRUE(
        areas.component.QZ_DeleteMultiVertices(*areas.layer, *areas.all(), &corner, 1, areas.refresh, areas.host));
    EXPECT_EQ(areas.wkt(area),
              "POLYGON ZM ((0 0 0 0,0 10 0 0,10 5 0 0,10 0 0 0,0 0 0 0),(2 2 0 0,4 2 0 0,4 4 0 0,2 4 0 0,2 2 0 0))");
    const Envelope start{1, 1, 3, 3}; // the first vertex of the hole
    EXPECT_TRUE(
        areas.component.QZ_DeleteMultiVertices(*areas.layer, *areas.all(), &start, 1, areas.refresh, areas.host));
    EXPECT_EQ(areas.wkt(area),
              "POLYGON ZM ((0 0 0 0,0 10 0 0,10 5 0 0,10 0 0 0,0 0 0 0),(4 2 0 0,4 4 0 0,2 4 0 0,4 2 0 0))");
    const Envelope two{9, -1, 11, 6};
    EXPECT_TRUE(areas.component.QZ_DeleteMultiVertices(*areas.layer, *areas.all(), &two, 1, areas.refresh, areas.host));
    EXPECT_EQ(areas.wkt(area), "none") << "nothing is left of it";
}

TEST_F(LineEditing, RemovesRunsOfVertices) {
    const ObjectId line = add("LINESTRING ZM (0 0 0 0,1 1 1 1,2 1 2 2,3 0 3 3,9 0 9 9)");
    const ObjectId arcs = add("COMPOUNDCURVE ZM (CIRCULARSTRING ZM (0 0 0 0,-5 5 0 0,0 10 0 0),(0 10 0 0,20 10 0 0))");
    const ObjectId parts = add("MULTILINESTRING ZM ((1 1 0 0,2 1 0 0),(50 0 0 0,60 0 0 0))");
    const ObjectId gone = add("LINESTRING ZM (1 1 0 0,1.5 1.5 0 0)");
    const Envelope window{0.5, 0.5, 2.5, 2.5};
    EXPECT_TRUE(component.QZ_DeleteMultiVertices(*layer, *all(), &window, 4, refresh, host));
    EXPECT_EQ(wkt(line), "LINESTRING ZM (0 0 0 0,3 0 3 3,9 0 9 9)");
    EXPECT_EQ(wkt(arcs), "COMPOUNDCURVE ZM (CIRCULARSTRING ZM (0 0 0 0,-5 5 0 0,0 10 0 0),(0 10 0 0,20 10 0 0))");
    EXPECT_EQ(wkt(parts), "LINESTRING ZM (50 0 0 0,60 0 0 0)");
    EXPECT_EQ(wkt(gone), "none");
    const Envelope end{-1, 9, 1, 11};
    EXPECT_TRUE(component.QZ_DeleteMultiVertices(*layer, *all(), &end, 4, refresh, host));
    EXPECT_EQ(wkt(arcs), "LINESTRING ZM (0 0 0 0,20 10 0 0)");
    EXPECT_TRUE(component.QZ_DeleteMultiVertices(*layer, *all(), nullptr, 4, refresh, host));
    EXPECT_EQ(wkt(line), "LINESTRING ZM (0 0 0 0,3 0 3 3,9 0 9 9)");
}

TEST_F(LineEditing, ExplodesLinesOfSeveralParts) {
    const std::vector<Value> values{std::string("Elm Row"), std::int32_t{1}, std::int32_t{9}, 30.0};
    add("MULTILINESTRING ZM ((0 0 0 0,10 0 0 0),(20 0 0 0,20 0 0 0),(30 0 0 0,50 0 0 0))", values);
    add("LINESTRING ZM (0 5 0 0,10 5 0 0)");
    add("MULTILINESTRING ZM ((1 1 0 0,1 1 0 0),(2 2 0 0,2 2 0 0))");
    EXPECT_TRUE(component.QZ_Explode(*layer, *all(), 3, refresh, reference, host));
    EXPECT_EQ(
        listed({"NAME", "FROM_L", "LENGTH"}),
        (Rows{"2 LINESTRING ZM (0 5 0 0,10 5 0 0) null null null",
              "3 MULTILINESTRING ZM ((1 1 0 0,1 1 0 0),(2 2 0 0,2 2 0 0)) null null null",
              "4 LINESTRING ZM (0 0 0 0,10 0 0 0) Elm Row 1 10", "5 LINESTRING ZM (30 0 0 0,50 0 0 0) Elm Row 1 20"}));
}

TEST(PolygonEditing, ExplodesIntoExteriorRingsWithTheirHoles) {
    EditedStreets areas(GeometryKind::polygon);
    areas.add("MULTIPOLYGON ZM (((0 0 0 0,0 10 0 0,10 10 0 0,10 0 0 0,0 0 0 0),(2 2 0 0,8 2 0 0,8 8 0 0,2 8 0 0,2 2 0 "
              "0)),((4 4 0 0,4 6 0 0,6 6 0 0,6 4 0 0,4 4 0 0)))",
              {std::string("A"), std::int32_t{1}, std::int32_t{9}, 68.0});
    EXPECT_TRUE(areas.component.QZ_Explode(*areas.layer, *areas.all(), 1, areas.refresh, areas.reference, areas.host));
    const Rows rows = areas.listed({"LENGTH"});
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_TRUE(rows[0].ends_with(" 64")) << rows[0];
    EXPECT_TRUE(rows[1].ends_with(" 4")) << rows[1];
    EXPECT_NE(rows[0].find("),("), std::string::npos) << "with its hole: " << rows[0];
}

} // namespace
} // namespace qz::test
