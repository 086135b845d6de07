#include "tests/store/StoreFixture.h"

namespace qz::test {
namespace {

struct ShapeRow {
    const char* what;
    TestFormat format;
    OGRwkbGeometryType layerType;
    const char* stored; // written by GDAL; "" for null
    const char* written;
};

// The format's output is a new file geodatabase; the others are saved in place.
std::unique_ptr<FeatureStore> openForSaving(const TemporaryFolder& folder, const TestFormat& format,
                                            std::string& savedPath) {
    const std::string path = folder / (std::string("roads") + format.ending);
    if (std::string(format.ending) == ".gdb") {
        savedPath = folder / "saved.gdb";
        return openCopy(path, savedPath);
    }
    savedPath = path;
    return openStore(path, OpenMode::edit);
}

// What an editor writes comes back: once as the new shape of a row, once as a new row.
const ShapeRow shapeRows[] = {
    {"line", geoPackage, wkbLineString, "LINESTRING (0 0,1 1)", "LINESTRING (0.1 0.2,5 5,7 5)"},
    {"heights", geoPackage, wkbLineString25D, "LINESTRING Z (0 0 1,1 1 2)", "LINESTRING Z (0 0 1.5,5 5 2.5)"},
    {"measures", geoPackage, wkbLineStringM, "LINESTRING M (0 0 1,1 1 2)", "LINESTRING M (0 0 1.5,5 5 2.5)"},
    {"undefined measure", geoPackage, wkbLineStringM, "LINESTRING M (0 0 1,1 1 2)", "LINESTRING M (0 0 NaN,5 5 2.5)"},
    {"undefined height", geoPackage, wkbLineString25D, "LINESTRING Z (0 0 1,1 1 2)", "LINESTRING Z (0 0 NaN,5 5 2.5)"},
    {"arc", geoPackage, wkbCompoundCurveZM, "COMPOUNDCURVE ZM ((0 0 1 2,1 0 1 2))",
     "COMPOUNDCURVE ZM (CIRCULARSTRING ZM (0 0 1 2,1 1 3 4,2 0 5 6),(2 0 5 6,3 0 7 8))"},
    {"parts", geoPackage, wkbMultiLineString, "MULTILINESTRING ((0 0,1 1))", "MULTILINESTRING ((0 0,1 1),(2 2,3 3))"},
    {"hole", geoPackage, wkbPolygon, "POLYGON ((0 0,0 1,1 1,0 0))",
     "POLYGON ((0 0,0 9,9 9,9 0,0 0),(1 1,2 1,2 2,1 1))"},
    {"points", geoPackage, wkbMultiPoint25D, "MULTIPOINT Z ((0 0 1))", "MULTIPOINT Z ((0 0 1),(1 1 2))"},
    {"null", geoPackage, wkbLineString, "LINESTRING (0 0,1 1)", ""},
    {"from null", geoPackage, wkbLineString, "", "LINESTRING (0 0,1 1)"},
    {"empty", geoPackage, wkbLineString, "LINESTRING (0 0,1 1)", "LINESTRING EMPTY"},
    {"line", shapefile, wkbLineString, "LINESTRING (0 0,1 1)", "LINESTRING (0.1 0.2,5 5,7 5)"},
    {"parts", shapefile, wkbLineString, "LINESTRING (0 0,1 1)", "MULTILINESTRING ((0 0,1 1),(2 2,3 3))"},
    {"heights and measures", shapefile, wkbLineStringZM, "LINESTRING ZM (0 0 1 1,1 1 2 2)",
     "LINESTRING ZM (0 0 1.5 7,5 5 2.5 8)"},
    {"undefined measure", shapefile, wkbLineStringM, "LINESTRING M (0 0 1,1 1 2)", "LINESTRING M (0 0 NaN,5 5 2.5)"},
    {"no measure at all", shapefile, wkbLineStringM, "LINESTRING M (0 0 1,1 1 2)", "LINESTRING M (0 0 NaN,5 5 NaN)"},
    {"hole", shapefile, wkbPolygon, "POLYGON ((0 0,0 1,1 1,0 0))", "POLYGON ((0 0,0 9,9 9,9 0,0 0),(1 1,2 1,2 2,1 1))"},
    {"null", shapefile, wkbLineString, "LINESTRING (0 0,1 1)", ""},
    {"line", fileGeodatabase, wkbMultiLineString, "MULTILINESTRING ((0 0,1 1))", "LINESTRING (0.5 0.25,5 5,7 5)"},
    {"heights and measures", fileGeodatabase, wkbMultiLineStringZM, "MULTILINESTRING ZM ((0 0 1 1,1 1 2 2))",
     "LINESTRING ZM (0 0 1.5 7,5 5 2.5 8)"},
    {"hole", fileGeodatabase, wkbMultiPolygon, "MULTIPOLYGON (((0 0,0 1,1 1,0 0)))",
     "POLYGON ((0 0,0 9,9 9,9 0,0 0),(1 1,2 1,2 2,1 1))"},
    {"arc", fileGeodatabase, wkbMultiLineString, "MULTILINESTRING ((0 0,1 1))",
     "COMPOUNDCURVE (CIRCULARSTRING (0 0,1 1,2 0),(2 0,3 0))"},
    {"null", fileGeodatabase, wkbMultiLineString, "MULTILINESTRING ((0 0,1 1))", ""},
};

TEST(RoundTrip, ShapesComeBackAsTheyWereWritten) {
    for (const ShapeRow& row : shapeRows) {
        SCOPED_TRACE(std::string(row.format.name) + ", " + row.what);
        const TemporaryFolder folder;
        makeRoads(folder / (std::string("roads") + row.format.ending), row.format, row.layerType,
                  {row.stored, row.stored});
        std::string saved;
        const auto store = openForSaving(folder, row.format, saved);
        FeatureSource& roads = *store->table("roads");
        const ObjectId first = roads.ids().front();
        Edits edits(roads);
        edits.reshape(first, row.written);
        const ObjectId inserted = edits.insert(row.written);
        store->save(edits.changeSet(), {});
        for (const ObjectId id : {first, inserted}) {
            const RecordPtr read = openStore(saved, OpenMode::read)->table("roads")->read(id);
            ASSERT_NE(read, nullptr);
            EXPECT_EQ(read->shape.has_value(), *row.written != '\0');
            EXPECT_TRUE(!read->shape || identical(*read->shape, geometryFromWkt(row.written))) << toWkt(*read->shape);
        }
        EXPECT_EQ(roads.count(), 3);
    }
}

// Rings with arcs that start at their lowest vertex keep their role.
TEST(RoundTrip, CurvedHolesOfAFileGeodatabaseStayHoles) {
    const TemporaryFolder folder;
    makeRoads(folder / "roads.gdb", fileGeodatabase, wkbMultiPolygon, {"MULTIPOLYGON (((0 0,0 1,1 1,0 0)))"});
    const char* const shapes[] = {
        "CURVEPOLYGON ((0 -9,0 20,20 20,20 -9,0 -9),COMPOUNDCURVE ((12 0,14 5),CIRCULARSTRING (14 5,12 7,10 5),(10 "
        "5,12 "
        "0)))",
        "MULTISURFACE (CURVEPOLYGON (COMPOUNDCURVE ((12 0,10 5),CIRCULARSTRING (10 5,12 7,14 5),(14 5,12 "
        "0))),CURVEPOLYGON (COMPOUNDCURVE ((32 0,30 5),CIRCULARSTRING (30 5,32 7,34 5),(34 5,32 0))))"};
    const auto store = openCopy(folder / "roads.gdb", folder / "saved.gdb");
    FeatureSource& roads = *store->table("roads");
    Edits edits(roads);
    for (const char* shape : shapes) {
        edits.insert(shape);
    }
    const ChangeSet changes = edits.changeSet();
    store->save(changes, {});
    for (const RecordPtr& written : changes.front().inserts) {
        const RecordPtr read = roads.read(written->id);
        EXPECT_EQ(toWkt(*read->shape).substr(0, 12), toWkt(*written->shape).substr(0, 12));
        EXPECT_EQ(read->shape->as<Polygon>().rings.size(), 2U);
        EXPECT_EQ(read->shape->envelope(), written->shape->envelope());
    }
}

struct ValueRow {
    TestFormat format;
    const char* field;
    Value written;
};

const ValueRow valueRows[] = {
    {geoPackage, "name", std::string("Größe 'x' \"y\"")},
    {geoPackage, "lanes", std::int32_t{-2147483647}},
    {geoPackage, "width", 0.1 + 0.2},
    {geoPackage, "built", DateTime{.year = 1969, .month = 7, .day = 20}},
    {geoPackage, "name", Value{}},
    {shapefile, "name", std::string("plain")},
    {shapefile, "lanes", std::int32_t{12345}},
    {shapefile, "width", 12.25},
    {shapefile, "built", DateTime{.year = 1969, .month = 7, .day = 20}},
    {shapefile, "lanes", Value{}},
    {fileGeodatabase, "name", std::string("Größe")},
    {fileGeodatabase, "width", 0.1 + 0.2},
    {fileGeodatabase, "built", DateTime{.year = 1969, .month = 7, .day = 20}},
    {fileGeodatabase, "lanes", Value{}},
};

TEST(RoundTrip, ChangedValuesComeBackAndNothingElseChanges) {
    for (const ValueRow& row : valueRows) {
        SCOPED_TRACE(std::string(row.format.name) + ", " + row.field + " = " + toText(row.written));
        const TemporaryFolder folder;
        makeRoads(folder / (std::string("roads") + row.format.ending), row.format, wkbMultiLineString,
                  {"MULTILINESTRING ((0 0,1 1),(5 5,6 6))", "", "MULTILINESTRING ((0 0,2 2))"});
        std::string saved;
        const auto store = openForSaving(folder, row.format, saved);
        FeatureSource& roads = *store->table("roads");
        const ObjectId id = roads.ids().front();
        const auto before = roads.read(roads.ids());
        Edits edits(roads);
        edits.setValue(id, row.field, row.written);
        store->save(edits.changeSet(), {});
        const auto reopened = openStore(saved, OpenMode::read);
        const auto after = reopened->table("roads")->read(reopened->table("roads")->ids());
        ASSERT_EQ(after.size(), before.size());
        const std::size_t changed = *roads.schema().findField(row.field);
        EXPECT_TRUE(identical(after[0]->values[changed], row.written)) << toText(after[0]->values[changed]);
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_EQ(after[i]->shape.has_value(), before[i]->shape.has_value());
            EXPECT_TRUE(!before[i]->shape || identical(*after[i]->shape, *before[i]->shape));
            for (std::size_t field = 0; field < before[i]->values.size(); ++field) {
                EXPECT_TRUE((i == 0 && field == changed) ||
                            identical(after[i]->values[field], before[i]->values[field]))
                    << roads.schema().fields[field].name;
            }
        }
    }
}

TEST(RoundTrip, GapsInIdsStay) {
    for (const TestFormat& format : {geoPackage, shapefile, fileGeodatabase}) {
        SCOPED_TRACE(format.name);
        const TemporaryFolder folder;
        makeRoads(folder / (std::string("roads") + format.ending), format, wkbMultiLineString,
                  {"MULTILINESTRING ((0 0,1 1))", "MULTILINESTRING ((0 0,2 2))", "MULTILINESTRING ((0 0,3 3))"});
        std::string saved;
        const auto store = openForSaving(folder, format, saved);
        FeatureSource& roads = *store->table("roads");
        const ObjectId first = roads.ids().front();
        Edits edits(roads);
        edits.remove(first + 1);
        edits.giveUpId();
        const ObjectId inserted = edits.insert("LINESTRING (7 7,8 8)", "inserted");
        edits.giveUpId();
        store->save(edits.changeSet(), {});
        EXPECT_EQ(inserted, first + 4);
        EXPECT_EQ(roads.ids(), (std::vector<ObjectId>{first, first + 2, inserted}));
        EXPECT_EQ(roads.count(), 3);
        EXPECT_EQ(roads.read(first + 1), nullptr);
        EXPECT_EQ(roads.read(inserted)->values[*roads.schema().findField("name")], Value(std::string("inserted")));
        EXPECT_EQ(rowsOf(saved), rowsOf(roads));
        if (std::string(format.ending) != ".gdb") {
            EXPECT_EQ(roads.nextId(), inserted + 2);
        }
    }
}

// Another program's envelope header, or none, stays as it is when only a name changes.
TEST(RoundTrip, StoredShapeOfAGeoPackageIsLeftBitForBit) {
    const TemporaryFolder folder;
    const std::string path = folder / "roads.gpkg";
    makeRoads(path, geoPackage, wkbPoint, {"POINT (1 2)", "POINT (3 4)"});
    // A header without an envelope, big-endian coordinates.
    const std::string foreign = "47500000000064F1"
                                "0000000001"
                                "3FF0000000000000"
                                "4000000000000000";
    auto* dataset = GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE);
    dataset->ExecuteSQL(("UPDATE roads SET geom = x'" + foreign + "' WHERE fid = 1").c_str(), nullptr, nullptr);
    GDALClose(dataset);
    const auto store = openStore(path, OpenMode::edit);
    FeatureSource& roads = *store->table("roads");
    Edits edits(roads);
    edits.setValue(1, "name", std::string("renamed"));
    edits.reshape(2, "POINT (9 9)");
    store->save(edits.changeSet(), {});
    EXPECT_EQ(sqlRows(path, "SELECT name, hex(geom) FROM roads WHERE fid = 1"),
              std::vector<std::string>{"renamed|" + foreign});
    EXPECT_EQ(sqlRows(path, "SELECT COUNT(*) FROM rtree_roads_geom WHERE id = 1 AND minx <= 1 AND maxx >= 1"),
              std::vector<std::string>{"1"});
}

} // namespace
} // namespace qz::test
