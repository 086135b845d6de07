#include <sstream>

#include <gtest/gtest.h>

#include "host/HeadlessHost.h"
#include "host/RefreshAreaRecord.h"
#include "tests/host/MapFixture.h"

namespace qz {
namespace {

constexpr int utm32 = 25832;
constexpr int wgs84 = 4326;

class MapTest : public testing::Test {
protected:
    MapFixture data_;
    HeadlessMap map_;
};

TEST_F(MapTest, FindsTheFirstLayerOfAName) {
    data_.addTable("old", GeometryKind::point, utm32, {});
    data_.addTable("new", GeometryKind::point, utm32, {});
    map_.addLayer("Roads", data_.table("old"));
    FeatureLayer& first = map_.addLayer("roads", data_.table("old"));
    map_.addLayer("roads", data_.table("new"));
    EXPECT_EQ(map_.findLayer("roads"), &first);
    EXPECT_EQ(map_.findLayer("road"), nullptr);
}

TEST_F(MapTest, ShowsAllLayersInItsReferenceWithAMarginUnlessToldOtherwise) {
    data_.addTable("a", GeometryKind::polyline, utm32, {"LINESTRING (500000 5800000, 500100 5800200)"});
    data_.addTable("b", GeometryKind::point, wgs84, {"POINT (9 52.4)"}); // on the central meridian, further north
    data_.addTable("empty", GeometryKind::point, utm32, {});
    for (const char* name : {"a", "b", "empty"}) {
        map_.addLayer(name, data_.table(name));
    }
    EXPECT_EQ(map_.spatialReference().factoryCode(), utm32);
    const Envelope bounds = map_.activeView().visibleBounds();
    EXPECT_NEAR(bounds.xMin, 500000 - 2.5, 1e-6);
    EXPECT_NEAR(bounds.xMax, 500100 + 2.5, 1e-6);
    const double height = bounds.height() / 1.05;
    EXPECT_NEAR(bounds.yMin, 5800000 - 0.025 * height, 1e-6);
    EXPECT_GT(height, 1000);
    EXPECT_LT(height, 10000);

    map_.setVisibleBounds({1, 2, 3, 4});
    EXPECT_EQ(map_.activeView().visibleBounds(), (Envelope{1, 2, 3, 4}));
    map_.setVisibleBounds({});
    map_.setSpatialReference(SpatialReference::fromEpsg(wgs84));
    EXPECT_TRUE(map_.activeView().visibleBounds().contains(XY{9, 52.4}));
}

TEST_F(MapTest, ASinglePointIsShownWithSomeRoomAroundIt) {
    data_.addTable("wells", GeometryKind::point, utm32, {"POINT (500000 5800000)"});
    map_.addLayer("wells", data_.table("wells"));
    const Envelope bounds = map_.activeView().visibleBounds();
    EXPECT_NEAR(bounds.width(), 1, 1e-6);
    EXPECT_NEAR(bounds.height(), 1, 1e-6);
    EXPECT_TRUE(HeadlessMap().activeView().visibleBounds().isEmpty());
}

TEST_F(MapTest, ASelectionIsWalkedByAscendingIdAndLosesDeletedRows) {
    data_.addTable("wells", GeometryKind::point, utm32, {"POINT (1 1)", "POINT (2 2)", "POINT (3 3)", "POINT (4 4)"});
    SelectionSet& selection = map_.addLayer("wells", data_.table("wells")).selection();
    selection.select({4, 2, 99, 1, 2});
    EXPECT_EQ(selection.ids(), (std::vector<ObjectId>{1, 2, 4}));
    data_.table("wells").feature(2)->remove();
    EXPECT_EQ(selection.count(), 2);
    std::vector<ObjectId> walked;
    const CursorPtr cursor = selection.search();
    while (const FeaturePtr feature = cursor->next()) {
        walked.push_back(feature->objectId());
    }
    EXPECT_EQ(walked, (std::vector<ObjectId>{1, 4}));
    EXPECT_EQ(selection.update()->kind(), CursorKind::update);
}

GraphicElement named(const std::string& name) {
    return {.name = name, .kind = GraphicKind::marker, .geometry = Point({1, 2}), .symbol = {}, .selected = false};
}

std::vector<std::string> namesOf(const std::vector<GraphicElement>& elements) {
    std::vector<std::string> names;
    for (const GraphicElement& element : elements) {
        names.push_back(element.name);
    }
    return names;
}

TEST(HeadlessGraphics, KnowsWhatWasAddedSinceAMarkThroughRemovals) {
    HeadlessGraphics graphics;
    for (const char* name : {"a", "b", "c"}) {
        graphics.add(named(name));
    }
    const std::size_t mark = graphics.mark();
    for (const char* name : {"d", "e", "f"}) {
        graphics.add(named(name));
    }
    graphics.remove({0, 2, 4});
    EXPECT_EQ(namesOf(graphics.elements()), (std::vector<std::string>{"b", "d", "f"}));
    EXPECT_EQ(namesOf(graphics.addedSince(mark)), (std::vector<std::string>{"d", "f"}));
    EXPECT_TRUE(graphics.addedSince(graphics.mark()).empty());
}

TEST(HeadlessGraphics, RefusesWrongIndexesAsAWhole) {
    HeadlessGraphics graphics;
    graphics.add(named("a"));
    graphics.add(named("b"));
    for (const std::vector<std::size_t>& indexes : {std::vector<std::size_t>{0, 2}, {1, 0}, {0, 0}}) {
        EXPECT_THROW(graphics.remove(indexes), PlatformError);
        EXPECT_EQ(graphics.elements().size(), 2U);
    }
}

TEST(RefreshAreaRecord, CountsAndTakesArcsWithTheirTrueExtent) {
    RefreshAreaRecord area;
    area.add(geometryFromWkt("CIRCULARSTRING (0 0, 10 10, 20 0)"));
    area.add(geometryFromWkt("POLYGON EMPTY"));
    area.add(geometryFromWkt("POINT (-5 3)"));
    EXPECT_EQ(area.count(), 3);
    EXPECT_EQ(area.extent(), (Envelope{-5, 0, 20, 10}));
}

class EditorTest : public MapTest {
protected:
    EditorTest() { data_.addTable("wells", GeometryKind::point, utm32, {"POINT (1 1)", "POINT (2 2)"}); }

    void removeInOperation(ObjectId id, const std::string& name) {
        editor_.startOperation();
        data_.table("wells").feature(id)->remove();
        editor_.stopOperation(name);
    }

    HeadlessEditor editor_;
};

TEST_F(EditorTest, NamesTheStepsThatUndoTakesBack) {
    editor_.startEditing(data_.workspace());
    removeInOperation(1, "Delete well 1");
    removeInOperation(2, "Delete well 2");
    EXPECT_TRUE(editor_.undo());
    EXPECT_EQ(editor_.operationNames(), (std::vector<std::string>{"Delete well 1"}));
    EXPECT_EQ(data_.table("wells").count(), 1);
    EXPECT_TRUE(editor_.redo());
    EXPECT_EQ(editor_.operationNames(), (std::vector<std::string>{"Delete well 1", "Delete well 2"}));
    EXPECT_FALSE(editor_.redo());
    EXPECT_TRUE(editor_.undo());
    EXPECT_TRUE(editor_.undo());
    EXPECT_FALSE(editor_.undo());
    EXPECT_EQ(data_.table("wells").count(), 2);
}

TEST_F(EditorTest, AnOperationWithoutChangesIsNoStep) {
    editor_.startEditing(data_.workspace());
    removeInOperation(1, "Delete well 1");
    EXPECT_TRUE(editor_.undo());
    editor_.startOperation();
    editor_.stopOperation("Look at wells");
    EXPECT_TRUE(editor_.operationNames().empty());
    EXPECT_TRUE(editor_.redo());
    EXPECT_EQ(editor_.operationNames(), (std::vector<std::string>{"Delete well 1"}));
}

TEST_F(EditorTest, AbortLeavesNeitherChangeNorName) {
    editor_.startEditing(data_.workspace());
    editor_.startOperation();
    data_.table("wells").feature(1)->remove();
    editor_.abortOperation();
    EXPECT_EQ(data_.table("wells").count(), 2);
    EXPECT_TRUE(editor_.operationNames().empty());
    editor_.stopEditing(true);
    EXPECT_EQ(editor_.editWorkspace(), nullptr);
    EXPECT_FALSE(editor_.isEditing());
}

TEST_F(EditorTest, CountsAsEditingWithoutASession) {
    EXPECT_THROW(editor_.startOperation(), PlatformError);
    editor_.setCountsAsEditing(true);
    EXPECT_TRUE(editor_.isEditing());
    removeInOperation(1, "Delete well 1");
    EXPECT_EQ(data_.table("wells").count(), 1);
    EXPECT_FALSE(editor_.undo());
}

TEST(HeadlessHost, HasOneExtension) {
    std::ostringstream terminal;
    HeadlessHost host(terminal, false);
    EXPECT_EQ(host.findEditor("esriEditor.Editor"), &host.editor());
    EXPECT_EQ(host.findEditor("Editor"), nullptr);
}

} // namespace
} // namespace qz
