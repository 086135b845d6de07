#include "tests/support/StreetsFixture.h"
#include "topology/QZBuildPolygon.h"

namespace qz::test {
namespace {

// A layer of lines, "roads", and a layer of polygons that is to receive their faces.
struct Drawing : Streets {
    Drawing() : Streets(GeometryKind::polygon) { layer->featureClass().workspace().startEditing(); }

    void draw(const std::vector<const char*>& lines) {
        std::vector<ObjectId> ids;
        for (const char* wkt : lines) {
            ids.push_back(roads.add(wkt));
        }
        source = &host.focusMap().addLayer("roads", roads.featureClass());
        source->selection().select(ids);
    }
    bool build(std::int16_t iPriority = 0) {
        return QZ_BuildPolygonRun(host, *layer, *source, {.dFuzzy = 0.5, .iPriority = iPriority}, refresh);
    }
    [[nodiscard]] Rows messageOf(bool built) const {
        EXPECT_FALSE(built);
        return messages;
    }

    MemoryData roads;
    FeatureLayer* source = nullptr;
};

TEST(BuildPolygonRun, StoresEveryFace) {
    Drawing drawing;
    drawing.draw({"MULTILINESTRING ZM ((5 0 1 0,0 0 1 1,0 9 1 2,5 9 1 3),(5 0 2 0,5 9 2 1))",
                  "LINESTRING ZM (5 9 3 0,8 9 3 1,8 0 3 2,5 0 3 3)", "", "MULTILINESTRING EMPTY",
                  "LINESTRING ZM (1 1 4 0,1 3 4 1,3 3 4 2,1 1 4 3)"});
    EXPECT_TRUE(drawing.build());
    EXPECT_EQ(drawing.shapes(), (Rows{"1 POLYGON ZM ((5 0 1 0,0 0 1 1,0 9 1 2,5 9 1 3,5 0 1 0),(1 1 4 3,3 3 4 2,1 3 4 "
                                      "1,1 1 4 3))",
                                      "2 POLYGON ZM ((5 0 2 0,5 9 2 1,8 9 3 1,8 0 3 2,5 0 2 0))",
                                      "3 POLYGON ZM ((1 1 4 0,1 3 4 1,3 3 4 2,1 1 4 0))"}));
    EXPECT_EQ(drawing.host.statusBar().stepProgressor().record().text, "Storing poligons: 2");
    EXPECT_EQ(drawing.host.statusBar().stepProgressor().record().maximum, 4);
    EXPECT_EQ(drawing.messages, Rows());
}

TEST(BuildPolygonRun, SettlesOverlapsByThePriority) {
    Drawing drawing;
    drawing.add("POLYGON ((0 0,0 9,4 9,4 0,0 0))");
    drawing.draw({"LINESTRING (0 0,0 9,9 9,9 0,0 0)"});
    EXPECT_TRUE(drawing.build(-1));
    EXPECT_EQ(drawing.shapes(), Rows());
}

TEST(BuildPolygonRun, RefusesSourcesWithoutLines) {
    Drawing drawing;
    drawing.source = drawing.layer;
    EXPECT_EQ(drawing.messageOf(drawing.build()), Rows{"The type of the source layer should be polyline!"});
}

TEST(BuildPolygonRun, RefusesAnEmptySelection) {
    Drawing drawing;
    drawing.draw({"LINESTRING (0 0,0 9,9 9,9 0,0 0)"});
    drawing.source->selection().select({});
    EXPECT_EQ(drawing.messageOf(drawing.build()), Rows{"No selected features in the source layer."});
}

TEST(BuildPolygonRun, TellsWhenNothingIsEnclosed) {
    Drawing drawing;
    drawing.draw({"LINESTRING (0 0,0 9,9 9)"});
    EXPECT_EQ(drawing.messageOf(drawing.build()),
              Rows{"No polygons were created.\nRevise your selection and try again"});
}

TEST(BuildPolygonRun, TellsWhenNothingIsDrawn) {
    Drawing drawing;
    drawing.draw({"", "LINESTRING EMPTY"});
    EXPECT_EQ(drawing.messageOf(drawing.build()),
              (Rows{"Selected polylines do not form polygons",
                    "No polygons were created.\nRevise your selection and try again"}));
}

TEST(BuildPolygonRun, StopsSilentlyWhenInterrupted) {
    Drawing drawing;
    drawing.draw({"LINESTRING (0 0,0 9,9 9,9 0,0 0)"});
    services().interruptRequested = [] { return true; };
    EXPECT_EQ(drawing.messageOf(drawing.build()), Rows());
    services().interruptRequested = nullptr;
    EXPECT_EQ(drawing.shapes(), Rows());
}

} // namespace
} // namespace qz::test
