#include <cmath>
#include <fstream>

#include <gtest/gtest.h>

#include "host/GraphicsFile.h"
#include "platform/geometry/WellKnown.h"
#include "tests/host/ScratchFolder.h"

namespace qz {
namespace {

struct Element {
    const char* name;
    GraphicKind kind;
    bool selected;
    const char* wkt;
};

const std::vector<Element>& straightElements() {
    static const std::vector<Element> elements{
        {"O'Neill's \"corner\" \\ 7", GraphicKind::marker, true, "POINT (500000.123456789 5800000.3)"},
        {"", GraphicKind::marker, false, "MULTIPOINT ((500000 5800000), (500001 5800001))"},
        {"Länge: 12,5 m", GraphicKind::line, false, "LINESTRING Z (500000 5800000 1, 500010 5800000.1 2)"},
        {"two parts", GraphicKind::line, true,
         "MULTILINESTRING ((500000 5800000, 500001 5800000), (500005 5800000, 500006 5800001))"},
        {"with a hole", GraphicKind::fill, false,
         "POLYGON ((500000 5800000, 500000 5800010, 500010 5800010, 500010 5800000, 500000 5800000), "
         "(500002 5800002, 500004 5800002, 500004 5800004, 500002 5800004, 500002 5800002))"}};
    return elements;
}

void addAll(const std::vector<Element>& elements, HeadlessMap& map) {
    for (const Element& element : elements) {
        Geometry geometry = geometryFromWkt(element.wkt);
        geometry.traits().spatialReference = map.spatialReference();
        map.activeView().graphics().add({element.name, element.kind, std::move(geometry), {}, element.selected});
    }
}

void expectSame(const std::vector<GraphicElement>& read, const std::vector<GraphicElement>& written) {
    ASSERT_EQ(read.size(), written.size());
    for (std::size_t i = 0; i < read.size(); ++i) {
        SCOPED_TRACE(written[i].name);
        EXPECT_EQ(read[i].name, written[i].name);
        EXPECT_EQ(read[i].kind, written[i].kind);
        EXPECT_EQ(read[i].selected, written[i].selected);
        EXPECT_EQ(toWkt(read[i].geometry), toWkt(written[i].geometry));
    }
}

void setReference(HeadlessMap& map, int epsg) {
    map.setSpatialReference(SpatialReference::fromEpsg(epsg));
}

const std::vector<GraphicElement>& elementsOf(HeadlessMap& map) {
    return map.activeView().graphics().elements();
}

class GraphicsFile : public testing::TestWithParam<const char*> {
protected:
    [[nodiscard]] std::string path() const { return folder_.file(GetParam()); }

    ScratchFolder folder_;
};
INSTANTIATE_TEST_SUITE_P(Formats, GraphicsFile, testing::Values("marks.gpkg", "marks.geojson", "Marks.JSON"),
                         [](const auto& format) { return std::to_string(format.index); });

TEST_P(GraphicsFile, GivesBackWhatWasWrittenInPlaceOfAnOlderFile) {
    HeadlessMap map;
    setReference(map, 25832);
    addAll({straightElements().front()}, map);
    writeGraphics(path(), map);
    addAll({straightElements().begin() + 1, straightElements().end()}, map);
    writeGraphics(path(), map);
    EXPECT_EQ(folder_.fileCount(), 1U) << "something was left beside the file";

    HeadlessMap other;
    setReference(other, 25832);
    readGraphics(path(), other);
    expectSame(elementsOf(other), elementsOf(map));
    EXPECT_EQ(elementsOf(other).front().geometry.spatialReference().factoryCode(), 25832);
}

TEST_P(GraphicsFile, IsProjectedToTheMapThatReadsIt) {
    HeadlessMap map;
    setReference(map, 25832);
    addAll({{"on the central meridian", GraphicKind::marker, false, "POINT (500000 5800000)"}}, map);
    writeGraphics(path(), map);
    HeadlessMap other;
    setReference(other, 4326);
    readGraphics(path(), other);
    ASSERT_EQ(elementsOf(other).size(), 1U);
    const Vertex v = elementsOf(other).front().geometry.as<Point>().vertex;
    EXPECT_NEAR(v.x, 9, 1e-9);
    EXPECT_NEAR(v.y, 52.35, 0.05);
}

// A system without a code, as town surveys have: here with the origin in the middle of the town.
TEST_P(GraphicsFile, KeepsItsPlaceInASystemWithoutACode) {
    HeadlessMap map;
    map.setSpatialReference(SpatialReference::fromText(
        R"(PROJCS["Town grid",GEOGCS["ETRS89",DATUM["European_Terrestrial_Reference_System_1989",)"
        R"(SPHEROID["GRS 1980",6378137,298.257222101]],PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],)"
        R"(PROJECTION["Transverse_Mercator"],PARAMETER["latitude_of_origin",52],PARAMETER["central_meridian",9.5],)"
        R"(PARAMETER["scale_factor",1],PARAMETER["false_easting",1000],PARAMETER["false_northing",1000],)"
        R"(UNIT["metre",1]])"));
    addAll({{"pump", GraphicKind::marker, false, "POINT (1250.5 1375.25)"}}, map);
    writeGraphics(path(), map);
    HeadlessMap other;
    other.setSpatialReference(map.spatialReference());
    readGraphics(path(), other);
    ASSERT_EQ(elementsOf(other).size(), 1U);
    const Vertex v = elementsOf(other).front().geometry.as<Point>().vertex;
    // Numbers in degrees have 15 decimals or more: far below a micrometre.
    EXPECT_NEAR(v.x, 1250.5, 1e-6);
    EXPECT_NEAR(v.y, 1375.25, 1e-6);
}

TEST_P(GraphicsFile, AMissingOneHasNoGraphics) {
    HeadlessMap map;
    readGraphics(path(), map);
    EXPECT_TRUE(elementsOf(map).empty());
}

TEST_P(GraphicsFile, ADamagedOneIsRefusedByName) {
    std::ofstream(path()) << "neither one nor the other";
    HeadlessMap map;
    try {
        readGraphics(path(), map);
        FAIL() << "nonsense was read";
    } catch (const DataError& error) {
        EXPECT_NE(std::string(error.what()).find(path()), std::string::npos) << error.what();
    }
}

TEST(GraphicsFileFormats, AGeoPackageKeepsArcsAndMeasuresWhereGeoJsonStrokesThem) {
    const ScratchFolder folder;
    HeadlessMap map;
    setReference(map, 25832);
    addAll({{"bend", GraphicKind::line, false, "CIRCULARSTRING ZM (0 0 1 5, 10 10 2 6, 20 0 3 7)"}}, map);
    writeGraphics(folder.file("a.gpkg"), map);
    writeGraphics(folder.file("a.geojson"), map);
    HeadlessMap exact;
    HeadlessMap stroked;
    setReference(exact, 25832);
    setReference(stroked, 25832);
    readGraphics(folder.file("a.gpkg"), exact);
    readGraphics(folder.file("a.geojson"), stroked);
    expectSame(elementsOf(exact), elementsOf(map));
    const Path& chords = elementsOf(stroked).front().geometry.as<Polyline>().paths.front();
    EXPECT_FALSE(chords.hasArcs());
    for (const XY p : chords.xy()) {
        EXPECT_NEAR(std::hypot(p.x - 10, p.y), 10, 1e-9);
    }
    EXPECT_GE(chords.vertexCount(), 46U); // chords of at most 4 degrees
}

TEST(GraphicsFileFormats, WhatAProgramWroteWithoutKindsIsReadByShape) {
    const ScratchFolder folder;
    std::ofstream(folder.file("sketch.geojson"))
        << R"({"type":"FeatureCollection","features":[)"
        << R"({"type":"Feature","id":4,"properties":{"name":"x"},"geometry":{"type":"LineString","coordinates":[[9,52],[9.1,52]]}},)"
        << R"({"type":"Feature","properties":{},"geometry":null},)"
        << R"({"type":"Feature","properties":{"selected":true},"geometry":{"type":"Point","coordinates":[9,52]}}]})";
    HeadlessMap map;
    setReference(map, 4326);
    readGraphics(folder.file("sketch.geojson"), map);
    ASSERT_EQ(elementsOf(map).size(), 2U);
    EXPECT_EQ(elementsOf(map)[0].kind, GraphicKind::line);
    EXPECT_EQ(elementsOf(map)[0].name, "x");
    EXPECT_EQ(elementsOf(map)[1].kind, GraphicKind::marker);
    EXPECT_TRUE(elementsOf(map)[1].selected);
}

TEST(GraphicsFileFormats, DataArentOverwrittenByGraphics) {
    const ScratchFolder folder;
    const std::string path = folder.file("roads.geojson");
    const std::string roads = R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":{"lanes":2},)"
                              R"("geometry":{"type":"LineString","coordinates":[[9,52],[9.1,52]]}}]})";
    std::ofstream(path) << roads;
    HeadlessMap map;
    EXPECT_THROW(readGraphics(path, map), UsageError);
    EXPECT_THROW(writeGraphics(path, map), UsageError);
    std::ifstream file(path);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), roads);
}

TEST(GraphicsFileFormats, AnotherEndingIsWrongUsage) {
    HeadlessMap map;
    for (const char* path : {"marks.shp", "marks", "gpkg"}) {
        EXPECT_THROW(readGraphics(path, map), UsageError) << path;
        EXPECT_THROW(writeGraphics(path, map), UsageError) << path;
    }
}

TEST(GraphicsFileFormats, AFolderThatIsntThereIsNamed) {
    const ScratchFolder folder;
    HeadlessMap map;
    EXPECT_THROW(writeGraphics(folder.file("nowhere/marks.gpkg"), map), DataError);
    EXPECT_THROW(writeGraphics(folder.file("nowhere/marks.geojson"), map), DataError);
    EXPECT_EQ(folder.fileCount(), 0U);
}

} // namespace
} // namespace qz
