#include "graphics/QZCopySelected.h"
#include "platform/geometry/Grid.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/WellKnown.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

std::string flat(Geometry shape) {
    shape.traits().zAware = shape.traits().mAware = false;
    snapToSpatialReference(shape);
    return toWkt(shape);
}

// A target layer with the graphics of its map, and a second layer to copy from.
struct Target : Streets {
    explicit Target(GeometryKind kind, GeometryKind sourceKind = GeometryKind::polygon, int sourceCode = 25832)
        : Streets(kind), sourceReference(SpatialReference::fromEpsg(sourceCode)) {
        auto store = std::make_unique<MemoryStore>();
        Schema schema;
        schema.name = "plan";
        schema.shape.emplace();
        schema.shape->kind = sourceKind;
        schema.shape->spatialReference = sourceReference;
        schema.fields = {field("name", FieldType::string), field("LENGTH", FieldType::doubleFloat)};
        sourceTable = &store->addTable(std::move(schema));
        sourceWorkspace = std::make_unique<OverlayWorkspace>(std::move(store));
        source = &host.focusMap().addLayer("plan", *sourceWorkspace->table("plan"));
    }

    void draw(GraphicKind kind, const std::string& wkt, bool selected = false) {
        Geometry shape = geometryFromWkt(wkt);
        shape.traits().spatialReference = reference;
        graphics().add({"", kind, std::move(shape), Symbol(), selected});
    }
    [[nodiscard]] HeadlessGraphics& graphics() { return host.focusMap().activeView().graphics(); }
    [[nodiscard]] Rows drawn() {
        Rows left;
        for (const GraphicElement& element : graphics().elements()) {
            left.push_back(flat(element.geometry));
        }
        return left;
    }

    ObjectId addSource(const std::string& wkt, const std::vector<Value>& values = {}) {
        Geometry shape = geometryFromWkt(wkt);
        shape.traits().spatialReference = sourceReference;
        return sourceTable->add(std::move(shape), values);
    }
    void select(std::vector<ObjectId> ids) { source->selection().select(std::move(ids)); }

    // Shapes with the value of NAME, sorted.
    [[nodiscard]] Rows rows() {
        Rows found;
        const CursorPtr cursor = streets().search({});
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            const Value& name = row->value(*streets().schema().findField("NAME"));
            found.push_back(flat(*row->shape()) + " " + (isNull(name) ? "" : toText(name)));
        }
        std::ranges::sort(found);
        return found;
    }
    bool convert(const std::string& sIn1, const std::string& sOut, const std::string& action, bool bSel = false,
                 bool bDelete = true, double dBuff = 0) {
        return component.QZ_Gr2ShapeDo(*layer, refresh, sIn1, sOut, 0, action, action, action, bSel, 2, dBuff, bDelete,
                                       false, host);
    }
    bool copy(const std::string& action, const std::string& priority = "0", const Envelope* envelope = nullptr,
              double dBuf = 0) {
        return component.QZ_CopySelectedFromLayer(*layer, "plan", refresh, envelope, action, action, action, priority,
                                                  dBuf, host, false, nullptr);
    }

    SpatialReference sourceReference;
    MemoryTable* sourceTable = nullptr;
    std::unique_ptr<OverlayWorkspace> sourceWorkspace;
    FeatureLayer* source = nullptr;
};

constexpr const char* square = "POLYGON ((0 0,0 10,10 10,10 0,0 0))";

TEST(GraphicsToShapes, FillsBecomePolygonsAndOutlines) {
    Target polygons(GeometryKind::polygon);
    polygons.add("POLYGON ((5 0,5 10,20 10,20 0,5 0))");
    polygons.draw(GraphicKind::fill, square);
    polygons.draw(GraphicKind::fill, "POLYGON ((40 0,40 10,50 10,50 0,40 0))", true);
    polygons.draw(GraphicKind::line, "LINESTRING (0 5,10 5)");
    EXPECT_TRUE(polygons.convert("pg", "pg", "", true));
    EXPECT_EQ(polygons.drawn().size(), 2U) << "only the selected element was converted";
    EXPECT_TRUE(polygons.convert("pg", "pg", ""));
    EXPECT_EQ(polygons.rows(), (Rows{"POLYGON ((0 0,0 10,5 10,5 0,0 0)) ", "POLYGON ((40 0,40 10,50 10,50 0,40 0)) ",
                                     "POLYGON ((5 0,5 10,10 10,20 10,20 0,10 0,5 0)) "}));
    EXPECT_EQ(polygons.drawn(), Rows{"LINESTRING (0 5,10 5)"});

    struct Case {
        const char* action;
        Rows rows;
    };
    const std::string cut = "LINESTRING (-5 5,0 5) ", inside = "LINESTRING (0 5,10 5) ";
    const std::string outline = "LINESTRING (0 5,0 10,10 10,10 0,0 0,0 5) ";
    const Case cases[] = {
        {"Add", {"LINESTRING (-5 5,10 5) ", "LINESTRING (0 0,0 10,10 10,10 0,0 0) "}},
        {"Split", {cut, inside}},
        {"Erase", {cut}},
    };
    for (const auto& [action, rows] : cases) {
        Target lines(GeometryKind::polyline);
        lines.add("LINESTRING (-5 5,10 5)");
        lines.draw(GraphicKind::fill, square);
        EXPECT_TRUE(lines.convert("pg", "pl", action)) << action;
        EXPECT_EQ(lines.rows(), rows) << action;
        EXPECT_EQ(lines.drawn(), Rows()) << action;
    }
}

TEST(GraphicsToShapes, LinesSplitOrAreAddedAndMarkersBecomePoints) {
    Target polygons(GeometryKind::polygon);
    polygons.add(square);
    polygons.draw(GraphicKind::line, "LINESTRING (5 -5,5 15)");
    EXPECT_TRUE(polygons.convert("pl", "pg", "Split", false, false));
    EXPECT_EQ(polygons.rows().size(), 2U);
    EXPECT_EQ(polygons.drawn().size(), 1U) << "not to be deleted";

    Target buffers(GeometryKind::polygon);
    buffers.draw(GraphicKind::line, "LINESTRING (0 0,10 0)");
    EXPECT_TRUE(buffers.convert("pl", "pg", "Buffer and Add", false, true, 1));
    ASSERT_EQ(buffers.rows().size(), 1U);
    EXPECT_NEAR(buffers.streets().extent().width(), 12, 1e-9);

    Target lines(GeometryKind::polyline);
    lines.add("LINESTRING (0 5,10 5)");
    lines.draw(GraphicKind::line, "LINESTRING (5 0,5 10)");
    EXPECT_TRUE(lines.convert("pl", "pl", "Split & Add"));
    EXPECT_EQ(lines.rows(), (Rows{"LINESTRING (0 5,5 5) ", "LINESTRING (5 0,5 5) ", "LINESTRING (5 5,10 5) ",
                                  "LINESTRING (5 5,5 10) "}));

    Target points(GeometryKind::point);
    points.draw(GraphicKind::marker, "POINT (3 4)");
    points.draw(GraphicKind::fill, square);
    EXPECT_TRUE(points.convert("pg", "pnt", ""));
    EXPECT_EQ(points.rows(), Rows{"POINT (3 4) "});
    EXPECT_EQ(points.drawn(), Rows{"POLYGON ((0 0,0 10,10 10,10 0,0 0))"});
}

TEST(GraphicsToShapes, WhatFailsStays) {
    Target target(GeometryKind::polygon);
    target.draw(GraphicKind::line, "LINESTRING (0 0,10 0)");
    target.draw(GraphicKind::line, "LINESTRING EMPTY");
    EXPECT_TRUE(target.convert("pl", "pg", "Buffer and Add", false, true, -1));
    EXPECT_EQ(target.messages.size(), 1U);
    EXPECT_NE(target.messages.at(0).find("-1"), std::string::npos) << target.messages.at(0);
    EXPECT_TRUE(target.convert("pl", "pl", "Add")) << "a line in a layer of polygons";
    EXPECT_EQ(target.drawn().size(), 2U);
    EXPECT_EQ(target.rows(), Rows());
    EXPECT_FALSE(target.convert("pl", "pl", "Erase")) << "lines don't erase";
    EXPECT_EQ(target.drawn().size(), 2U);
}

TEST(CopySelected, PolygonsTakeTheirValuesAlong) {
    Target target(GeometryKind::polygon);
    target.add("POLYGON ((5 0,5 10,20 10,20 0,5 0))", {std::string("old")});
    target.addSource(square, {std::string("new"), 7.5});
    target.addSource("POLYGON ((60 0,60 1,61 1,60 0))", {std::string("far")});
    EXPECT_FALSE(target.copy("Add"));
    EXPECT_EQ(target.messages, Rows{"No selected features in plan"});
    target.select({1});
    EXPECT_TRUE(target.copy("", "2"));
    EXPECT_EQ(target.rows(),
              (Rows{"POLYGON ((0 0,0 10,5 10,10 10,10 0,5 0,0 0)) new", "POLYGON ((10 0,10 10,20 10,20 0,10 0)) old"}));
    const Envelope corner{59, 0, 70, 5};
    EXPECT_TRUE(target.copy("", "0", &corner)) << "whatever is selected";
    EXPECT_EQ(target.rows().size(), 3U);
    EXPECT_FALSE(target.copy("", "two"));
    EXPECT_EQ(target.listed({"LENGTH"}).at(1).back(), '5');
}

TEST(CopySelected, BetweenKindsAndReferences) {
    Target lines(GeometryKind::polyline, GeometryKind::polyline);
    lines.add("LINESTRING (0 5,10 5)", {std::string("old")});
    lines.addSource("LINESTRING (5 0,5 10)", {std::string("new")});
    lines.select({1});
    EXPECT_TRUE(lines.copy("Split & Add"));
    EXPECT_EQ(lines.rows(), (Rows{"LINESTRING (0 5,5 5) old", "LINESTRING (5 0,5 5) new", "LINESTRING (5 5,10 5) old",
                                  "LINESTRING (5 5,5 10) new"}));
    EXPECT_FALSE(lines.copy("Erase"));

    Target outlines(GeometryKind::polyline);
    outlines.addSource(square, {std::string("plot")});
    outlines.select({1});
    EXPECT_TRUE(outlines.copy("Add"));
    EXPECT_EQ(outlines.rows(), Rows{"LINESTRING (0 0,0 10,10 10,10 0,0 0) plot"});

    Target split(GeometryKind::polygon, GeometryKind::polyline);
    split.add(square, {std::string("old")});
    split.addSource("LINESTRING (5 -5,5 15)", {std::string("new")});
    split.select({1});
    EXPECT_TRUE(split.copy("Split"));
    EXPECT_EQ(split.rows().size(), 2U);
    EXPECT_TRUE(split.copy("Buffer and Add", "-2", nullptr, 1));
    ASSERT_EQ(split.rows().size(), 3U);
    EXPECT_NE(split.rows().at(0).find("new"), std::string::npos) << split.rows().at(0);

    Target points(GeometryKind::point, GeometryKind::polyline);
    points.addSource("LINESTRING (5 -5,5 15)");
    points.select({1});
    EXPECT_FALSE(points.copy("Add"));
    EXPECT_NE(points.messages.at(0).find("streets (point)"), std::string::npos) << points.messages.at(0);
    EXPECT_THROW(static_cast<void>(QZ_FindLayerByName(points.host, "nowhere")), PlatformError);
}

TEST(CopySelected, ProjectsToTheTarget) {
    Target target(GeometryKind::polygon, GeometryKind::polygon, 25833);
    target.addSource("POLYGON ((300000 5800000,300000 5800100,300100 5800100,300000 5800000))");
    target.select({1});
    EXPECT_TRUE(target.copy("", "0"));
    const Envelope extent = target.streets().extent();
    EXPECT_NEAR(extent.xMin, 708700, 5000) << "the neighbouring zone";
    EXPECT_NEAR(extent.height(), 105, 10);
}

} // namespace
} // namespace qz::test
