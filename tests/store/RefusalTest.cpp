#include <filesystem>
#include <fstream>
#include <limits>

#include <unistd.h>

#include "tests/store/StoreFixture.h"

namespace qz::test {
namespace {

struct RefusalRow {
    const char* what;
    TestFormat format;
    OGRwkbGeometryType layerType;
    const char* shape;
    const char* reason; // nothing: it can be stored
};

const RefusalRow refusalRows[] = {
    {"wrong kind", geoPackage, wkbLineString, "POINT (1 2)", "it is a point"},
    {"several parts", geoPackage, wkbLineString, "MULTILINESTRING ((0 0,1 1),(2 2,3 3))", "2 parts"},
    {"several parts", geoPackage, wkbMultiLineString, "MULTILINESTRING ((0 0,1 1),(2 2,3 3))", nullptr},
    {"a hole is no part", geoPackage, wkbPolygon, "POLYGON ((0 0,0 9,9 9,9 0,0 0),(1 1,2 1,2 2,1 1))", nullptr},
    {"several exterior rings", geoPackage, wkbPolygon, "MULTIPOLYGON (((0 0,0 1,1 1,0 0)),((5 5,5 6,6 6,5 5)))",
     "2 parts"},
    {"heights in a flat layer", geoPackage, wkbLineString, "LINESTRING Z (0 0 1,1 1 2)", "no heights"},
    {"measures in a layer without", geoPackage, wkbLineString25D, "LINESTRING ZM (0 0 1 2,1 1 2 3)", "no measures"},
    {"undefined measures in a layer without", geoPackage, wkbLineString, "LINESTRING M (0 0 NaN,1 1 NaN)", nullptr},
    {"undefined height", geoPackage, wkbLineString25D, "LINESTRING Z (0 0 NaN,1 1 1)", nullptr},
    {"arc among straight lines", geoPackage, wkbLineString, "CIRCULARSTRING (0 0,1 1,2 0)", "no arcs"},
    {"arc", geoPackage, wkbCompoundCurve, "CIRCULARSTRING (0 0,1 1,2 0)", nullptr},
    {"empty", geoPackage, wkbLineString, "LINESTRING EMPTY", nullptr},
    {"any kind", geoPackage, wkbUnknown, "POINT (1 2)", nullptr},
    {"arc", shapefile, wkbLineString, "CIRCULARSTRING (0 0,1 1,2 0)", "no arcs"},
    {"undefined height", shapefile, wkbLineString25D, "LINESTRING Z (0 0 NaN,1 1 1)", "no undefined heights"},
    {"no heights", shapefile, wkbLineString25D, "LINESTRING (0 0,1 1)", "no undefined heights"},
    {"undefined measure", shapefile, wkbLineStringM, "LINESTRING M (0 0 NaN,1 1 1)", nullptr},
    {"empty", shapefile, wkbLineString, "LINESTRING EMPTY", "empty"},
    {"several parts", shapefile, wkbLineString, "MULTILINESTRING ((0 0,1 1),(2 2,3 3))", nullptr},
    {"wrong kind", shapefile, wkbPolygon, "LINESTRING (0 0,1 1)", "it is a polyline"},
    {"undefined measure", fileGeodatabase, wkbMultiLineStringM, "LINESTRING M (0 0 NaN,1 1 1)",
     "no undefined measures"},
    {"arc", fileGeodatabase, wkbMultiLineString, "CIRCULARSTRING (0 0,1 1,2 0)", nullptr},
    {"height inside an arc", fileGeodatabase, wkbMultiLineString25D, "CIRCULARSTRING Z (0 0 1,1 1 2,2 0 3)",
     "middle of an arc"},
};

TEST(Refusal, ShapesThatTheFormatCantHold) {
    for (const RefusalRow& row : refusalRows) {
        SCOPED_TRACE(std::string(row.format.name) + ", " + row.what);
        const TemporaryFolder folder;
        const std::string path = folder / (std::string("roads") + row.format.ending);
        makeRoads(path, row.format, row.layerType, {});
        // An empty file says nothing of its heights.
        const auto store = openStore(path, OpenMode::read);
        FeatureSource& roads = *store->table("roads");
        FeatureRecord record{.id = 1, .shape = geometryFromWkt(row.shape), .values = {}};
        record.values.resize(roads.schema().fields.size());
        try {
            roads.checkStorable(record);
            EXPECT_EQ(row.reason, nullptr) << "was not refused";
        } catch (const PlatformError& error) {
            ASSERT_NE(row.reason, nullptr) << error.what();
            EXPECT_NE(std::string(error.what()).find(row.reason), std::string::npos) << error.what();
        }
    }
}

TEST(Refusal, CoordinatesThatAreNotFinite) {
    const TemporaryFolder folder;
    makeRoads(folder / "roads.gpkg", geoPackage, wkbLineString25D, {});
    const auto store = openStore(folder / "roads.gpkg", OpenMode::read);
    FeatureSource& roads = *store->table("roads");
    const double infinite = std::numeric_limits<double>::infinity();
    for (const Vertex& bad : {Vertex{undefined, 1, 1}, Vertex{1, infinite, 1}, Vertex{1, 1, -infinite}}) {
        FeatureRecord record{.id = 1, .shape = geometryFromWkt("LINESTRING Z (0 0 0,1 1 1)"), .values = {}};
        record.shape->as<Polyline>().paths.front().setVertex(1, bad);
        EXPECT_THROW(roads.checkStorable(record), PlatformError) << bad.x << " " << bad.y << " " << bad.z;
    }
}

TEST(Refusal, ObjectIdsBeyond32Bits) {
    const TemporaryFolder folder;
    makeRoads(folder / "roads.gpkg", geoPackage, wkbLineString, {});
    const auto store = openStore(folder / "roads.gpkg", OpenMode::read);
    FeatureRecord record{.id = 2147483647, .shape = {}, .values = {}};
    EXPECT_NO_THROW(store->table("roads")->checkStorable(record));
    ++record.id;
    EXPECT_THROW(store->table("roads")->checkStorable(record), PlatformError);
}

struct TextRow {
    const char* encoding;
    const char* text;
    bool fits; // into 20 bytes
};

TEST(Refusal, TextThatAShapefileCantKeep) {
    const TextRow rows[] = {{"UTF-8", "12345678901234567890", true},
                            {"UTF-8", "123456789012345678901", false},
                            {"UTF-8", "ääääääääää", true},
                            {"UTF-8", "äääääääääää", false},
                            {"ISO-8859-1", "äääääääääää", true},
                            {"ISO-8859-1", "日本", false},
                            {"UTF-8", "日本", true}};
    for (const TextRow& row : rows) {
        SCOPED_TRACE(std::string(row.encoding) + ", " + row.text);
        const TemporaryFolder folder;
        makeRoads(folder / "roads.shp", shapefile, wkbLineString, {"LINESTRING (0 0,1 1)"},
                  {std::string("ENCODING=") + row.encoding});
        const auto store = openStore(folder / "roads.shp", OpenMode::edit);
        FeatureSource& roads = *store->table("roads");
        FeatureRecord record = *roads.read(0);
        record.values[*roads.schema().findField("name")] = std::string(row.text);
        if (!row.fits) {
            EXPECT_THROW(roads.checkStorable(record), PlatformError);
            continue;
        }
        EXPECT_NO_THROW(roads.checkStorable(record));
        Edits edits(roads);
        edits.setValue(0, "name", std::string(row.text));
        store->save(edits.changeSet(), {});
        EXPECT_EQ(roads.read(0)->values[*roads.schema().findField("name")], Value(std::string(row.text)));
    }
}

// What can't be opened says which path and why, and nothing reaches the error stream.
TEST(Refusal, DataThatCantBeOpened) {
    const TemporaryFolder folder;
    std::ofstream(folder / "text.gpkg") << "no database";
    std::ofstream(folder / "text.shp") << "no shapes";
    std::ofstream(folder / "notes.txt") << "notes";
    std::filesystem::create_directory(folder / "empty");
    std::filesystem::create_directory(folder / "empty.gdb");
    struct Row {
        const char* name;
        const char* reason;
    };
    testing::internal::CaptureStderr();
    for (const Row& row : {Row{"missing.gpkg", "does not exist"}, Row{"text.gpkg", "can't be opened"},
                           Row{"text.shp", "can't be opened"}, Row{"notes.txt", "none of the known formats"},
                           Row{"empty", "none of the known formats"}, Row{"empty.gdb", "can't be opened"}}) {
        SCOPED_TRACE(row.name);
        try {
            static_cast<void>(openStore(folder / row.name, OpenMode::read));
            ADD_FAILURE() << "was opened";
        } catch (const DataError& error) {
            EXPECT_NE(std::string(error.what()).find(row.name), std::string::npos) << error.what();
            EXPECT_NE(std::string(error.what()).find(row.reason), std::string::npos) << error.what();
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Refusal, OutputsThatCantBeMade) {
    const TemporaryFolder folder;
    makeRoads(folder / "roads.gpkg", geoPackage, wkbLineString, {});
    makeRoads(folder / "other.gpkg", geoPackage, wkbLineString, {});
    EXPECT_THROW(static_cast<void>(openCopy(folder / "roads.gpkg", folder / "other.gpkg")), DataError);
    EXPECT_THROW(static_cast<void>(openCopy(folder / "roads.gpkg", folder / "new.shp")), DataError);
    EXPECT_THROW(static_cast<void>(openCopy(folder / "roads.gpkg", folder / "nowhere/new.gpkg")), DataError);
    EXPECT_THROW(static_cast<void>(openCopy(folder / "missing.gpkg", folder / "new.gpkg")), DataError);
    EXPECT_THROW(static_cast<void>(openCopy(folder.path().string(), folder / "new.shp")), DataError) << "a folder";
    EXPECT_THROW(static_cast<void>(openCopy("PG:dbname=nowhere", folder / "new.gpkg")), DataError) << "a server";
}

TEST(Refusal, StoresThatCantBeSavedTo) {
    const TemporaryFolder folder;
    makeRoads(folder / "roads.gpkg", geoPackage, wkbLineString, {"LINESTRING (0 0,1 1)"});
    makeRoads(folder / "roads.gdb", fileGeodatabase, wkbMultiLineString, {"MULTILINESTRING ((0 0,1 1))"});
    EXPECT_NE(openStore(folder / "roads.gpkg", OpenMode::read)->refusalToSave(), "");
    EXPECT_EQ(openStore(folder / "roads.gpkg", OpenMode::edit)->refusalToSave(), "");
    EXPECT_NE(openStore(folder / "roads.gdb", OpenMode::edit)->refusalToSave(), "");
    EXPECT_EQ(openCopy(folder / "roads.gdb", folder / "new.gdb")->refusalToSave(), "");
    EXPECT_FALSE(std::filesystem::exists(folder / "new.gdb"));
}

TEST(Refusal, FilesThatMayNotBeWritten) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "the administrator may write everywhere";
    }
    const TemporaryFolder folder;
    makeRoads(folder / "roads.gpkg", geoPackage, wkbLineString, {"LINESTRING (0 0,1 1)"});
    makeRoads(folder / "roads.shp", shapefile, wkbLineString, {"LINESTRING (0 0,1 1)"});
    for (const char* file : {"roads.gpkg", "roads.dbf"}) {
        std::filesystem::permissions(folder / file, std::filesystem::perms::owner_read);
    }
    for (const char* file : {"roads.gpkg", "roads.shp"}) {
        const auto store = openStore(folder / file, OpenMode::edit);
        EXPECT_EQ(store->refusalToSave(), "is read-only") << file;
        Edits edits(*store->table("roads"));
        EXPECT_THROW(store->save(edits.changeSet(), {}), DataError) << file;
    }
}

} // namespace
} // namespace qz::test
