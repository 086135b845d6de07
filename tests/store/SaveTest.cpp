#include <algorithm>
#include <filesystem>
#include <fstream>

#include <cpl_string.h>
#include <fmt/format.h>

#include "platform/store/ogr/OgrSession.h"
#include "tests/store/StoreFixture.h"

namespace qz::test {
namespace {

const std::vector<std::string> fiveRoads{"MULTILINESTRING ((0 0,1 1))", "MULTILINESTRING ((2 2,3 3),(4 4,5 5))", "",
                                         "MULTILINESTRING ((6 6,7 7))", "MULTILINESTRING ((8 8,9 9))"};

ChangeSet mixedChanges(FeatureSource& roads) {
    const std::vector<ObjectId> ids = roads.ids();
    Edits edits(roads);
    edits.reshape(ids[0], "MULTILINESTRING ((0 0,50 50))");
    edits.setValue(ids[1], "name", std::string("renamed"));
    edits.setValue(ids[2], "lanes", std::int32_t{7});
    edits.reshape(ids[2], "MULTILINESTRING ((1 1,2 2))");
    edits.remove(ids[3]);
    edits.giveUpId();
    edits.insert("MULTILINESTRING ((10 10,11 11))");
    edits.insert("");
    return edits.changeSet();
}

struct Failure {};

class Save : public testing::TestWithParam<TestFormat> {
protected:
    void SetUp() override {
        path_ = folder_ / (std::string("roads") + GetParam().ending);
        makeRoads(path_, GetParam(), wkbMultiLineString, fiveRoads);
        saved_ = inPlace() ? path_ : folder_ / (std::string("saved") + GetParam().ending);
    }

    [[nodiscard]] bool inPlace() const { return std::string(GetParam().ending) != ".gdb"; }
    [[nodiscard]] std::unique_ptr<FeatureStore> open() const {
        return inPlace() ? openStore(path_, OpenMode::edit) : openCopy(path_, saved_);
    }
    [[nodiscard]] std::vector<std::string> savedRows() const { return rowsOf(saved_, inPlace() ? "roads" : "roads"); }

    TemporaryFolder folder_;
    std::string path_;
    std::string saved_;
};

// Whichever write fails, the data read as before, no other file is left, and the same changes can be saved again.
TEST_P(Save, ThatFailsAnywhereChangesNothing) {
    const std::vector<std::string> before = rowsOf(path_);
    const std::vector<std::string> files = folder_.names();
    std::size_t failAt = 0;
    bool failed = true;
    for (; failed && failAt < 100; ++failAt) {
        SCOPED_TRACE(failAt);
        const auto store = open();
        FeatureSource& roads = *store->table("roads");
        const ChangeSet changes = mixedChanges(roads);
        std::size_t calls = 0;
        const auto failing = [&](std::size_t, std::size_t) {
            if (calls++ == failAt) {
                throw Failure();
            }
        };
        try {
            store->save(changes, failing);
            failed = false;
        } catch (const Failure&) {
            EXPECT_EQ(rowsOf(roads), before);
            EXPECT_EQ(roads.count(), 5);
            if (failAt % 3 == 0) {
                const auto untouched = openStore(path_, OpenMode::read);
                EXPECT_EQ(rowsOf(*untouched->table("roads")), before);
            }
        }
    }
    EXPECT_GT(failAt, 7U); // six rows and a commit at least
    const auto names = folder_.names();
    EXPECT_EQ(names.size(), files.size() + (inPlace() ? 0 : 1));
    EXPECT_EQ(savedRows().size(), 6U);
}

TEST_P(Save, CanBeRepeatedAfterAFailure) {
    const auto store = open();
    FeatureSource& roads = *store->table("roads");
    const ChangeSet changes = mixedChanges(roads);
    EXPECT_THROW(store->save(changes,
                             [](std::size_t done, std::size_t) {
                                 if (done == 3) {
                                     throw Failure();
                                 }
                             }),
                 Failure);
    store->save(changes, {});
    EXPECT_EQ(rowsOf(roads), savedRows());
    EXPECT_EQ(savedRows().size(), 6U);
}

TEST_P(Save, FollowsAnEarlierOneOfTheSameSession) {
    const auto store = open();
    FeatureSource& roads = *store->table("roads");
    store->save(mixedChanges(roads), {});
    const std::vector<ObjectId> ids = roads.ids();
    Edits more(roads);
    more.setValue(ids.back(), "name", std::string("last"));
    more.remove(ids.front());
    const ObjectId inserted = more.insert("MULTILINESTRING ((3 3,4 4))");
    EXPECT_GT(inserted, ids.back());
    store->save(more.changeSet(), {});
    EXPECT_EQ(rowsOf(roads), savedRows());
    EXPECT_EQ(roads.count(), 6);
}

TEST_P(Save, SeesThatAnotherProgramChangedTheData) {
    const auto mine = open();
    const ChangeSet changes = mixedChanges(*mine->table("roads"));
    std::vector<std::string> theirs;
    if (inPlace()) {
        const auto other = openStore(path_, OpenMode::edit);
        Edits edits(*other->table("roads"));
        edits.setValue(other->table("roads")->ids()[1], "name", std::string("theirs"));
        other->save(edits.changeSet(), {});
    } else {
        auto* dataset = GDALDataset::Open(path_.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE);
        OGRFeature feature(dataset->GetLayer(0)->GetLayerDefn());
        feature.SetField("name", "theirs");
        ASSERT_EQ(dataset->GetLayer(0)->CreateFeature(&feature), OGRERR_NONE);
        GDALClose(dataset);
    }
    theirs = rowsOf(path_);
    EXPECT_THROW(mine->save(changes, {}), DataError);
    EXPECT_THROW(mine->save(changes, {}), DataError); // for good
    EXPECT_EQ(rowsOf(path_), theirs);
}

TEST_P(Save, OfACopyLeavesTheSourceAndAppearsWhole) {
    const std::vector<std::string> before = rowsOf(path_);
    const std::string output = folder_ / (std::string("copy") + GetParam().ending);
    const std::string table = std::string(GetParam().ending) == ".shp" ? "copy" : "roads";
    const std::size_t files = folder_.names().size();
    {
        const auto unsaved = openCopy(path_, output);
        EXPECT_EQ(rowsOf(*unsaved->table(table)), before);
    }
    EXPECT_EQ(folder_.names().size(), files);
    const auto store = openCopy(path_, output);
    const ChangeSet changes = mixedChanges(*store->table("roads"));
    EXPECT_THROW(store->save(changes,
                             [&](std::size_t, std::size_t) {
                                 EXPECT_FALSE(std::filesystem::exists(output));
                                 throw Failure();
                             }),
                 Failure);
    EXPECT_EQ(folder_.names().size(), files);
    store->save(changes, {});
    EXPECT_EQ(rowsOf(path_), before);
    EXPECT_EQ(store->table("roads"), store->table(table)) << "found by its name in the source too";
    EXPECT_EQ(rowsOf(output, table), rowsOf(*store->table(table)));
    EXPECT_EQ(rowsOf(output, table).size(), 6U);
}

TEST_P(Save, AddsAField) {
    const auto store = open();
    Field field;
    field.name = "note";
    field.type = FieldType::string;
    field.length = 12;
    store->addField("roads", field);
    FeatureSource& roads = *store->table("roads");
    ASSERT_TRUE(roads.schema().findField("note"));
    Edits edits(roads);
    edits.setValue(roads.ids()[1], "note", std::string("seen"));
    store->save(edits.changeSet(), {});
    const auto reopened = openStore(saved_, OpenMode::read);
    FeatureSource& read = *reopened->table("roads");
    EXPECT_EQ(read.schema().fields.back().length, 12);
    const std::size_t note = read.schema().fields.size() - 1;
    EXPECT_EQ(read.read(read.ids()[1])->values[note], Value(std::string("seen")));
    EXPECT_TRUE(isNull(read.read(read.ids()[0])->values[note]));
}

INSTANTIATE_TEST_SUITE_P(Formats, Save, testing::Values(geoPackage, shapefile, fileGeodatabase),
                         [](const auto& formatInfo) { return formatInfo.param.name; });

// Everything but the changes passes from one geodatabase to the next.
TEST(FileGeodatabaseSave, KeepsDomainsAliasesGridAndFeatureDatasets) {
    const TemporaryFolder folder;
    const std::string path = folder / "city.gdb";
    GDALAllRegister();
    GDALDataset* dataset =
        GetGDALDriverManager()->GetDriverByName("OpenFileGDB")->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr);
    std::vector<OGRCodedValue> codes{{CPLStrdup("1"), CPLStrdup("asphalt")}};
    std::string reason;
    ASSERT_TRUE(dataset->AddFieldDomain(
        std::make_unique<OGRCodedFieldDomain>("surfaces", "", OFTInteger, OFSTNone, std::move(codes)), reason));
    char** options = CSLSetNameValue(nullptr, "FEATURE_DATASET", "traffic");
    options = CSLSetNameValue(options, "XYSCALE", "100");
    options = CSLSetNameValue(options, "XORIGIN", "-5000");
    options = CSLSetNameValue(options, "YORIGIN", "-5000");
    OGRSpatialReference reference;
    reference.importFromEPSG(25833);
    OGRLayer* layer = dataset->CreateLayer("roads", &reference, wkbMultiLineString, options);
    CSLDestroy(options);
    OGRFieldDefn field("surface", OFTInteger);
    field.SetAlternativeName("Surface of the road");
    field.SetDomainName("surfaces");
    field.SetDefault("1");
    ASSERT_EQ(layer->CreateField(&field), OGRERR_NONE);
    ASSERT_NE(dataset->CreateLayer("notes", nullptr, wkbNone, nullptr), nullptr);
    GDALClose(dataset);

    const auto store = openCopy(path, folder / "saved.gdb");
    store->save({}, {});
    const auto saved = openStore(folder / "saved.gdb", OpenMode::read);
    EXPECT_EQ(saved->tableNames(), (std::vector<std::string>{"roads", "notes"}));
    const Schema& schema = saved->table("roads")->schema();
    EXPECT_EQ(schema.featureDataset, "traffic");
    EXPECT_EQ(schema.shape->spatialReference.grid().xyResolution, 0.01);
    EXPECT_EQ(schema.shape->spatialReference.grid().xOrigin, -5000);
    const Field& surface = schema.fields[*schema.findField("surface")];
    EXPECT_EQ(surface.alias, "Surface of the road");
    EXPECT_EQ(surface.defaultValue, Value(std::int32_t{1}));
    ASSERT_NE(surface.domain, nullptr);
    EXPECT_EQ(std::get<CodedValueDomain>(surface.domain->rule).codes.front().second, "asphalt");
}

// The format keeps length and area of shapes beside them.
TEST(FileGeodatabaseSave, MeasuresShapesAnew) {
    const TemporaryFolder folder;
    const std::string path = folder / "parcels.gdb";
    makeRoads(path, fileGeodatabase, wkbMultiPolygon,
              {"MULTIPOLYGON (((0 0,0 10,10 10,10 0,0 0)))", "MULTIPOLYGON (((0 0,0 1,1 1,1 0,0 0)))"},
              {"CREATE_SHAPE_AREA_AND_LENGTH_FIELDS=YES"});
    const auto store = openCopy(path, folder / "saved.gdb");
    FeatureSource& parcels = *store->table("roads");
    Edits edits(parcels);
    edits.reshape(1, "POLYGON ((0 0,0 4,3 0,0 0))");
    store->save(edits.changeSet(), {});
    const auto measure = [&](ObjectId id, const char* field) {
        return std::get<double>(parcels.read(id)->values[*parcels.schema().findField(field)]);
    };
    EXPECT_NEAR(measure(1, "Shape_Area"), 6, 1e-6);
    EXPECT_NEAR(measure(1, "Shape_Length"), 12, 1e-6);
    EXPECT_NEAR(measure(2, "Shape_Area"), 1, 1e-6);
    EXPECT_NEAR(measure(2, "Shape_Length"), 4, 1e-6);
}

// Index, counts and extent of a GeoPackage follow a large change, which goes past the triggers.
TEST(GeoPackageSave, KeepsIndexCountAndTriggers) {
    const TemporaryFolder folder;
    const std::string path = folder / "roads.gpkg";
    std::vector<std::string> shapes;
    for (int i = 0; i < 1500; ++i) {
        shapes.push_back("LINESTRING (" + std::to_string(i) + ".1 0," + std::to_string(i) + ".9 1)");
    }
    makeRoads(path, geoPackage, wkbLineString, shapes);
    const std::string triggers = "SELECT name, sql FROM sqlite_master WHERE type = 'trigger' ORDER BY name";
    const auto triggersBefore = sqlRows(path, triggers);
    {
        const auto store = openStore(path, OpenMode::edit);
        FeatureSource& roads = *store->table("roads");
        Edits edits(roads);
        for (ObjectId id = 1; id <= 1500; ++id) {
            const std::string x = std::to_string(id - 1);
            if (id % 10 == 0) {
                edits.reshape(id, "LINESTRING (" + x + ".1 5000," + x + ".9 5001)");
            } else if (id % 10 == 1) {
                edits.reshape(id, "");
            } else if (id % 10 == 2) {
                edits.setValue(id, "name", std::string("renamed"));
            } else if (id % 10 == 3) {
                edits.setValue(id, "lanes", Value{});
                edits.reshape(id, "LINESTRING (" + x + ".9 1," + x + ".1 0)");
            } else {
                edits.reshape(id, "LINESTRING (" + x + ".9 1," + x + ".1 0)");
            }
        }
        edits.insert("LINESTRING (-5 -5,0 0)");
        store->save(edits.changeSet(), {});
        EXPECT_EQ(roads.idsIn({0, 4999, 2000, 6000}).size(), 150U);
        EXPECT_EQ(roads.extent(), (Envelope{-5, -5, 1499.9, 5001}));
    }
    EXPECT_EQ(folder.names(), std::vector<std::string>{"roads.gpkg"});
    EXPECT_EQ(sqlRows(path, triggers), triggersBefore);
    EXPECT_EQ(sqlRows(path, "SELECT feature_count FROM gpkg_ogr_contents"), std::vector<std::string>{"1501"});
    EXPECT_EQ(sqlRows(path, "SELECT COUNT(*) FROM rtree_roads_geom"), std::vector<std::string>{"1351"});
    EXPECT_EQ(sqlRows(path, "SELECT COUNT(*) FROM roads t JOIN rtree_roads_geom r ON r.id = t.fid WHERE "
                            "r.minx > ST_MinX(geom) OR r.maxx < ST_MaxX(geom) OR r.miny > ST_MinY(geom) OR "
                            "r.maxy < ST_MaxY(geom) OR r.maxy > ST_MaxY(geom) + 0.01"),
              std::vector<std::string>{"0"});
    EXPECT_EQ(sqlRows(path, "SELECT COUNT(*) FROM roads WHERE name = 'renamed'"), std::vector<std::string>{"150"});
    EXPECT_EQ(sqlRows(path, "SELECT COUNT(*) FROM roads WHERE lanes IS NULL"), std::vector<std::string>{"151"});
    EXPECT_EQ(sqlRows(path, "PRAGMA journal_mode"), std::vector<std::string>{"delete"});
}

struct BulkSave {
    const char* name;
    ObjectId every; // of so many rows, one is edited
    void (*edit)(Edits&, ObjectId);
};

std::string lineAt(ObjectId x, ObjectId y) {
    return fmt::format("LINESTRING ({0}.1 {1},{0}.9 {1}.7)", x, y);
}

constexpr BulkSave bulkSaves[] = {
    {"replaced", 1,
     [](Edits& edits, ObjectId id) {
         edits.remove(id);
         edits.insert(id % 7 == 0 ? "" : lineAt(id, 3));
     }},
    {"moved", 1, [](Edits& edits, ObjectId id) { edits.reshape(id, lineAt(id, 1000 + id)); }},
    {"a few moved", 4, [](Edits& edits, ObjectId id) { edits.reshape(id, lineAt(-id, 8)); }},
    {"moved or emptied", 1, [](Edits& edits, ObjectId id) { edits.reshape(id, id % 2 == 0 ? "" : lineAt(id, 9)); }},
    {"removed", 1, [](Edits& edits, ObjectId id) { edits.remove(id); }},
    {"a few removed", 3, [](Edits& edits, ObjectId id) { edits.remove(id); }},
    {"added", 1, [](Edits& edits, ObjectId id) { edits.insert(lineAt(id, -id)); }},
};

constexpr ObjectId bulkRows = 1200;

void saveEdits(const std::string& path, const BulkSave& bulk, ObjectId first, ObjectId last) {
    const auto store = openStore(path, OpenMode::edit);
    Edits edits(*store->table("roads"));
    for (ObjectId id = first; id <= last; ++id) {
        if (id % bulk.every == 0) {
            bulk.edit(edits, id);
        }
    }
    store->save(edits.changeSet(), {});
}

// Rows, index, triggers, counts and extent.
std::vector<std::string> contentOf(const std::string& path) {
    std::vector<std::string> content = rowsOf(path);
    for (const char* sql :
         {"SELECT id + 0, minx, maxx, miny, maxy FROM rtree_roads_geom ORDER BY id",
          "SELECT type, name, sql FROM sqlite_master ORDER BY type, name",
          "SELECT name, seq FROM sqlite_sequence ORDER BY name", "SELECT feature_count FROM gpkg_ogr_contents",
          "SELECT min_x, min_y, max_x, max_y FROM gpkg_contents", "SELECT rtreecheck('rtree_roads_geom')",
          "PRAGMA integrity_check"}) {
        std::ranges::move(sqlRows(path, sql), std::back_inserter(content));
    }
    return content;
}

// One large save, which goes past the triggers, leaves what many small ones leave, which run them.
TEST(GeoPackageSave, OfManyRowsLeavesWhatTheTriggersWould) {
    constexpr ObjectId portion = 60;
    std::vector<std::string> shapes;
    for (ObjectId id = 1; id <= bulkRows; ++id) {
        shapes.push_back(id % 11 == 0 ? "" : lineAt(id, 0));
    }
    for (const BulkSave& bulk : bulkSaves) {
        SCOPED_TRACE(bulk.name);
        const TemporaryFolder folder;
        const std::string atOnce = folder / "at_once.gpkg", bitByBit = folder / "bit_by_bit.gpkg";
        makeRoads(atOnce, geoPackage, wkbLineString, shapes);
        executeSql(*openDataset(atOnce, "GPKG", DatasetAccess::update),
                   "UPDATE gpkg_contents SET last_change = '2001-02-03T04:05:06.000Z'");
        std::filesystem::copy_file(atOnce, bitByBit);
        saveEdits(atOnce, bulk, 1, bulkRows);
        for (ObjectId id = 1; id <= bulkRows; id += portion) {
            saveEdits(bitByBit, bulk, id, id + portion - 1);
        }
        const std::vector<std::string> content = contentOf(atOnce);
        EXPECT_EQ(content, contentOf(bitByBit));
        EXPECT_EQ(std::ranges::count(content, "ok"), 2);
        EXPECT_EQ(sqlRows(atOnce, "SELECT COUNT(*) FROM gpkg_contents WHERE last_change LIKE '2001%'"),
                  std::vector<std::string>{"0"});
    }
}

// Rows of one save that set different fields must not be written through each other's statement.
TEST(GeoPackageSave, WritesEachRowsOwnFields) {
    const TemporaryFolder folder;
    const std::string path = folder / "roads.gpkg";
    makeRoads(path, geoPackage, wkbPoint, {"POINT (1 1)", "POINT (2 2)", "POINT (3 3)"});
    const auto store = openStore(path, OpenMode::edit);
    FeatureSource& roads = *store->table("roads");
    Edits edits(roads);
    edits.setValue(1, "name", std::string("one"));
    edits.setValue(2, "width", 0.25);
    edits.reshape(2, "POINT (20 20)");
    edits.setValue(3, "lanes", std::int32_t{33});
    edits.setValue(3, "built", Value{});
    store->save(edits.changeSet(), {});
    EXPECT_EQ(rowsOf(path), (std::vector<std::string>{"1 | POINT (1 1) | one | 0 | 0 | 2000-01-02",
                                                      "2 | POINT (20 20) | road 1 | 1 | 0.25 | 2001-01-02",
                                                      "3 | POINT (3 3) | road 2 | 33 | 1 | null"}));
}

TEST(ShapefileSave, KeepsOrRebuildsTheSpatialIndex) {
    const TemporaryFolder folder;
    const std::string path = folder / "roads.shp";
    makeRoads(path, shapefile, wkbLineString, {"LINESTRING (0 0,1 1)", "LINESTRING (5 5,6 6)"}, {"SPATIAL_INDEX=YES"});
    std::ofstream(folder / "roads.sbn") << "index of another program";
    const auto signature = [&] { return std::filesystem::last_write_time(folder / "roads.qix"); };
    const auto before = signature();
    const auto store = openStore(path, OpenMode::edit);
    FeatureSource& roads = *store->table("roads");
    Edits flip(roads);
    flip.reshape(0, "LINESTRING (1 1,0 0)");
    store->save(flip.changeSet(), {});
    EXPECT_EQ(signature(), before);
    EXPECT_FALSE(std::filesystem::exists(folder / "roads.sbn"));
    Edits move(roads);
    move.reshape(0, "LINESTRING (100 100,200 200)");
    store->save(move.changeSet(), {});
    EXPECT_NE(signature(), before);
    auto* dataset = GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR);
    dataset->GetLayer(0)->SetSpatialFilterRect(150, 150, 160, 160);
    EXPECT_EQ(dataset->GetLayer(0)->GetFeatureCount(), 1);
    GDALClose(dataset);
}

// A save that was killed after its commit point is completed by the next opening, before it is undone.
TEST(ShapefileSave, IsCompletedOrUndoneByTheNextOpening) {
    for (const bool committed : {true, false}) {
        SCOPED_TRACE(committed);
        const TemporaryFolder folder;
        const std::string path = folder / "roads.shp";
        makeRoads(path, shapefile, wkbPoint, {"POINT (1 1)"});
        std::filesystem::create_directory(folder / "new");
        makeRoads(folder / "new/roads.shp", shapefile, wkbPoint, {"POINT (2 2)", "POINT (3 3)"});
        std::ofstream(folder / "roads.sbn") << "index of another program";
        const std::filesystem::path aside = folder.path() / ".qz-save-abcdef";
        std::filesystem::rename(folder / "new", aside);
        // The first rename was done before the end.
        if (committed) {
            std::filesystem::rename(aside / "roads.shp", folder / "roads.shp");
        }
        std::ofstream(aside / (committed ? "commit" : "commit.part"))
            << "+roads.shp\n+roads.shx\n+roads.dbf\n-roads.sbn\n";
        EXPECT_EQ(rowsOf(path).size(), committed ? 2U : 1U);
        EXPECT_FALSE(std::filesystem::exists(aside));
        EXPECT_EQ(std::filesystem::exists(folder / "roads.sbn"), !committed);
    }
}

} // namespace
} // namespace qz::test
