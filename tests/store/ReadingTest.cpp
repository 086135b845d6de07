#include <algorithm>
#include <random>

#include <fmt/format.h>

#include "tests/store/StoreFixture.h"

namespace qz::test {
namespace {

struct SchemaRow {
    TestFormat format;
    const char* objectId;
    const char* shape;
    int classId;
    FieldType lanes;
    int nameLength;
    bool nullable;
    bool dateOnly;
};

TEST(Reading, SchemaTellsWhatTheFormatKeeps) {
    const SchemaRow rows[] = {{geoPackage, "fid", "geom", 1, FieldType::integer, 20, true, true},
                              {shapefile, "FID", "Shape", -1, FieldType::integer, 20, false, true},
                              {fileGeodatabase, "OBJECTID", "SHAPE", 1, FieldType::integer, 20, true, false}};
    for (const SchemaRow& row : rows) {
        SCOPED_TRACE(row.format.name);
        const TemporaryFolder folder;
        const std::string path = folder / (std::string("roads") + row.format.ending);
        makeRoads(path, row.format, wkbMultiLineString, {"MULTILINESTRING ((0 0,1 1))"});
        const auto store = openStore(path, OpenMode::read);
        EXPECT_EQ(store->tableNames(), std::vector<std::string>{"roads"});
        EXPECT_EQ(store->table("Roads"), nullptr);
        const Schema& schema = store->table("roads")->schema();
        EXPECT_EQ(schema.fields[0].name, row.objectId);
        EXPECT_EQ(schema.fields[0].type, FieldType::objectId);
        EXPECT_EQ(schema.fields[1].name, row.shape);
        EXPECT_EQ(schema.classId, row.classId);
        EXPECT_EQ(schema.shape->kind, GeometryKind::polyline);
        EXPECT_EQ(schema.shape->spatialReference.factoryCode(), 25833);
        const Field& name = schema.fields[2];
        EXPECT_EQ(name.length, row.nameLength);
        EXPECT_EQ(name.nullable, row.nullable);
        EXPECT_EQ(schema.fields[3].type, row.lanes);
        EXPECT_EQ(schema.fields[4].type, FieldType::doubleFloat);
        EXPECT_EQ(schema.fields[5].type, FieldType::date);
        EXPECT_EQ(schema.fields[5].dateOnly, row.dateOnly);
    }
}

TEST(Reading, ShapefileNumbersHaveWidthAndDecimals) {
    const TemporaryFolder folder;
    makeRoads(folder / "roads.shp", shapefile, wkbLineString, {});
    const auto store = openStore(folder / "roads.shp", OpenMode::read);
    const Field& width = store->table("roads")->schema().fields[4];
    EXPECT_EQ(width.precision, 24);
    EXPECT_EQ(width.scale, 15);
}

// Field types, domains and defaults of the two formats that have them.
TEST(Reading, FieldTypesDomainsAndDefaults) {
    for (const TestFormat& format : {geoPackage, fileGeodatabase}) {
        SCOPED_TRACE(format.name);
        const TemporaryFolder folder;
        const std::string path = folder / (std::string("data") + format.ending);
        GDALAllRegister();
        GDALDataset* dataset =
            GetGDALDriverManager()->GetDriverByName(format.driver)->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr);
        std::string reason;
        std::vector<OGRCodedValue> codes{{CPLStrdup("1"), CPLStrdup("asphalt")}, {CPLStrdup("2"), CPLStrdup("gravel")}};
        ASSERT_TRUE(dataset->AddFieldDomain(
            std::make_unique<OGRCodedFieldDomain>("surfaces", "", OFTInteger, OFSTNone, std::move(codes)), reason));
        OGRField minimum{};
        OGRField maximum{};
        minimum.Real = 0.5;
        maximum.Real = 40;
        ASSERT_TRUE(dataset->AddFieldDomain(
            std::make_unique<OGRRangeFieldDomain>("widths", "", OFTReal, OFSTNone, minimum, true, maximum, true),
            reason));
        OGRLayer* layer = dataset->CreateLayer("data", nullptr, wkbNone, nullptr);
        OGRFieldDefn small("small", OFTInteger);
        small.SetSubType(OFSTInt16);
        OGRFieldDefn surface("surface", OFTInteger);
        surface.SetDomainName("surfaces");
        surface.SetDefault("2");
        OGRFieldDefn single("single", OFTReal);
        single.SetSubType(OFSTFloat32);
        OGRFieldDefn width("width", OFTReal);
        width.SetDomainName("widths");
        OGRFieldDefn note("note", OFTString);
        note.SetDefault("'it''s'");
        OGRFieldDefn required("required", OFTString);
        required.SetNullable(0);
        required.SetDefault("''");
        OGRFieldDefn blob("content", OFTBinary);
        for (OGRFieldDefn* field : {&small, &surface, &single, &width, &note, &required, &blob}) {
            ASSERT_EQ(layer->CreateField(field), OGRERR_NONE) << field->GetNameRef();
        }
        GDALClose(dataset);

        const auto store = openStore(path, OpenMode::read);
        const Schema& schema = store->table("data")->schema();
        EXPECT_FALSE(schema.shape);
        const auto field = [&](const char* name) -> const Field& { return schema.fields[*schema.findField(name)]; };
        EXPECT_EQ(field("small").type, FieldType::smallInteger);
        EXPECT_EQ(field("single").type, FieldType::single);
        EXPECT_EQ(field("content").type, FieldType::blob);
        EXPECT_EQ(field("surface").defaultValue, Value(std::int32_t{2}));
        EXPECT_EQ(field("note").defaultValue, Value(std::string("it's")));
        EXPECT_TRUE(field("required").refusesNull);
        const auto& coded = std::get<CodedValueDomain>(field("surface").domain->rule);
        ASSERT_EQ(coded.codes.size(), 2U);
        EXPECT_EQ(coded.codes[1].first, Value(std::int32_t{2}));
        EXPECT_EQ(coded.codes[1].second, "gravel");
        const auto& range = std::get<RangeDomain>(field("width").domain->rule);
        EXPECT_EQ(range.minimum, Value(0.5));
        EXPECT_EQ(range.maximum, Value(40.0));
    }
}

// The domain that a field of the type has when it is written and read again.
std::shared_ptr<const Domain> domainRead(OGRFieldType type, std::unique_ptr<OGRFieldDomain> domain) {
    const TemporaryFolder folder;
    const std::string path = folder / "data.gpkg";
    GDALAllRegister();
    GDALDataset* dataset =
        GetGDALDriverManager()->GetDriverByName("GPKG")->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr);
    OGRFieldDefn field("field", type);
    field.SetDomainName(domain->GetName());
    std::string reason;
    EXPECT_TRUE(dataset->AddFieldDomain(std::move(domain), reason)) << reason;
    EXPECT_EQ(dataset->CreateLayer("data", nullptr, wkbNone, nullptr)->CreateField(&field), OGRERR_NONE);
    GDALClose(dataset);
    const auto store = openStore(path, OpenMode::read);
    return store->table("data")->schema().fields.back().domain;
}

TEST(Reading, DomainsOfLargeNumbersAndPatterns) {
    OGRField low{};
    OGRField high{};
    low.Integer64 = -5;
    high.Integer64 = 9007199254740993;
    const auto numbers = domainRead(
        OFTInteger64, std::make_unique<OGRRangeFieldDomain>("ids", "", OFTInteger64, OFSTNone, low, true, high, true));
    EXPECT_EQ(toText(std::get<RangeDomain>(numbers->rule).minimum), "-5");
    const auto pattern =
        domainRead(OFTString, std::make_unique<OGRGlobFieldDomain>("codes", "A and digits", OFTString, OFSTNone, "A*"));
    EXPECT_EQ(std::get<OtherDomain>(pattern->rule).description, "A and digits");
}

void execute(const std::string& path, const std::string& sql) {
    GDALDataset* dataset = GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE);
    dataset->ExecuteSQL(sql.c_str(), nullptr, nullptr);
    GDALClose(dataset);
}

// What a GeoPackage has no place for stands in a table that any program can edit.
TEST(Reading, SideTableOfAGeoPackage) {
    const TemporaryFolder folder;
    const std::string path = folder / "data.gpkg";
    makeRoads(path, geoPackage, wkbLineString, {"LINESTRING (0 0,1 1)"});
    execute(path, "CREATE TABLE qz_schema (table_name TEXT, field_name TEXT, property TEXT, code INTEGER, text TEXT)");
    execute(path, "INSERT INTO qz_schema VALUES ('roads', 'LANES', 'subtype', 1, 'lane'), "
                  "('roads', 'lanes', 'subtype', 2, 'road'), ('roads', 'lanes', 'default subtype', 2, NULL), "
                  "('roads', 'width', 'not editable', NULL, NULL), ('other', 'x', 'subtype', 1, 'x'), "
                  "('roads', NULL, 'feature dataset', NULL, 'survey')");
    const auto store = openStore(path, OpenMode::read);
    const Schema& schema = store->table("roads")->schema();
    ASSERT_TRUE(schema.subtypes);
    EXPECT_EQ(schema.subtypes->field, "lanes");
    EXPECT_EQ(schema.subtypes->defaultCode, 2);
    EXPECT_EQ(schema.subtypes->codes, (std::vector<std::pair<std::int32_t, std::string>>{{1, "lane"}, {2, "road"}}));
    EXPECT_FALSE(schema.fields[*schema.findField("width")].editable);
    EXPECT_TRUE(schema.fields[*schema.findField("name")].editable);
    EXPECT_EQ(schema.featureDataset, "survey");

    for (const char* wrong : {"('roads', 'nowhere', 'subtype', 1, 'x')", "('roads', 'lanes', 'subtype', NULL, 'x')",
                              "('roads', 'width', 'subtype', 1, 'x')", "('roads', 'width', 'hidden', 1, 'x')"}) {
        execute(path, std::string("INSERT INTO qz_schema VALUES ") + wrong);
        const auto reopened = openStore(path, OpenMode::read);
        EXPECT_THROW(static_cast<void>(reopened->table("roads")), DataError) << wrong;
        execute(path, "DELETE FROM qz_schema WHERE rowid = (SELECT MAX(rowid) FROM qz_schema)");
    }
}

std::string randomLine(std::mt19937& random) {
    std::uniform_int_distribution<int> place(-2000, 2000);
    const int x = place(random);
    const int y = place(random);
    std::uniform_int_distribution<int> extent(0, 60);
    return fmt::format("LINESTRING ({} {},{} {})", x / 8.0, y / 8.0, (x + extent(random)) / 8.0,
                       (y - extent(random)) / 8.0);
}

// Whatever index answers, it finds what a look at every envelope finds, touching ones included.
TEST(Reading, WindowFindsEveryEnvelopeThatTouchesIt) {
    struct Row {
        TestFormat format;
        const char* spatialIndex;
    };
    for (const Row& row : {Row{geoPackage, "YES"}, Row{geoPackage, "NO"}, Row{shapefile, "NO"}, Row{shapefile, "YES"},
                           Row{fileGeodatabase, "YES"}}) {
        SCOPED_TRACE(std::string(row.format.name) + ", index " + row.spatialIndex);
        const TemporaryFolder folder;
        const std::string path = folder / (std::string("roads") + row.format.ending);
        std::mt19937 random(7);
        std::vector<std::string> shapes{"", "LINESTRING (1 1,1 1.5)"};
        for (int i = 0; i < 300; ++i) {
            shapes.push_back(randomLine(random));
        }
        const std::vector<std::string> noOptions;
        const std::vector<std::string> options{std::string("SPATIAL_INDEX=") + row.spatialIndex};
        makeRoads(path, row.format, wkbLineString, shapes,
                  std::string(row.format.ending) == ".gdb" ? noOptions : options);
        const auto store = openStore(path, OpenMode::read);
        FeatureSource& roads = *store->table("roads");
        const auto records = roads.read(roads.ids());
        std::size_t hits = 0;
        for (const RecordPtr& record : records) {
            if (!record->shape) {
                continue;
            }
            // Windows whose corner touches a row's envelope.
            const Envelope at = record->shape->envelope();
            const Envelope window{at.xMax, at.yMax, at.xMax + 20, at.yMax + 20};
            std::vector<ObjectId> expected;
            for (const RecordPtr& other : records) {
                if (other->shape && other->shape->envelope().intersects(window)) {
                    expected.push_back(other->id);
                }
            }
            ASSERT_EQ(roads.idsIn(window), expected);
            hits += expected.size();
        }
        EXPECT_GT(hits, 450U); // every row touches its own window; others must be found, too
        EXPECT_TRUE(roads.idsIn({}).empty());
    }
}

class Conditions : public testing::TestWithParam<TestFormat> {
protected:
    void SetUp() override {
        path_ = folder_ / (std::string("roads") + GetParam().ending);
        makeRoads(path_, GetParam(), wkbMultiLineString,
                  {"MULTILINESTRING ((0 0,1 1))", "", "MULTILINESTRING ((2 2,3 3))", "MULTILINESTRING ((4 4,5 5))"});
        store_ = openStore(path_, OpenMode::read);
    }

    TemporaryFolder folder_;
    std::string path_;
    std::unique_ptr<FeatureStore> store_;
};

TEST_P(Conditions, SelectTheSameStoredAndInHand) {
    FeatureSource& roads = *store_->table("roads");
    const std::vector<ObjectId> ids = roads.ids();
    auto records = roads.read(ids);
    const std::string id = roads.schema().fields[0].name;
    struct Row {
        std::string condition;
        std::vector<std::size_t> rows;
    };
    for (const Row& row : {Row{"lanes >= 2", {2, 3}}, Row{"name = 'road 1' OR width = 1.5", {1, 3}},
                           Row{"name LIKE 'road%'", {0, 1, 2, 3}}, Row{fmt::format("{} = {}", id, ids[2]), {2}},
                           Row{"lanes IS NULL", {}}, Row{"lanes > 0 AND lanes < 2", {1}}}) {
        SCOPED_TRACE(row.condition);
        std::vector<ObjectId> expected;
        for (const std::size_t index : row.rows) {
            expected.push_back(ids[index]);
        }
        EXPECT_EQ(roads.idsWhere(row.condition), expected);
        EXPECT_EQ(roads.idsWhere(row.condition, records), expected);
    }
    // Rows in hand count as they are there, and come in their order.
    auto changed = std::make_shared<FeatureRecord>(*records[0]);
    changed->id = ids.back() + 10;
    changed->values[*roads.schema().findField("lanes")] = std::int32_t{99};
    const std::vector<RecordPtr> inHand{records[3], changed, records[0]};
    EXPECT_EQ(roads.idsWhere("lanes > 2", inHand), (std::vector<ObjectId>{ids[3], changed->id}));
}

TEST_P(Conditions, ThatAreWrongAreRefusedQuietly) {
    FeatureSource& roads = *store_->table("roads");
    const auto records = roads.read(roads.ids());
    testing::internal::CaptureStderr();
    for (const char* condition : {"nothing = 1", "lanes = (", "lanes = 1; DROP TABLE roads", "", "lanes ==== 1"}) {
        SCOPED_TRACE(condition);
        EXPECT_THROW(static_cast<void>(roads.idsWhere(condition)), UsageError);
        EXPECT_THROW(static_cast<void>(roads.idsWhere(condition, records)), UsageError);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(roads.ids().size(), 4U);
    EXPECT_EQ(roads.idsWhere("lanes = 1", records).size(), 1U);
}

TEST_P(Conditions, ReadingByIdsGivesOneForEach) {
    FeatureSource& roads = *store_->table("roads");
    const std::vector<ObjectId> ids = roads.ids();
    const std::vector<ObjectId> asked{ids[0], ids[2], ids[3], ids[3] + 1, ids[3] + 1000000};
    const auto records = roads.read(asked);
    ASSERT_EQ(records.size(), asked.size());
    for (std::size_t i = 0; i < 3; ++i) {
        ASSERT_NE(records[i], nullptr);
        EXPECT_EQ(records[i]->id, asked[i]);
    }
    EXPECT_EQ(records[3], nullptr);
    EXPECT_EQ(records[4], nullptr);
    EXPECT_EQ(roads.nextId(), ids[3] + 1);
    EXPECT_EQ(roads.extent(), (Envelope{0, 0, 5, 5}));
}

INSTANTIATE_TEST_SUITE_P(Formats, Conditions, testing::Values(geoPackage, shapefile, fileGeodatabase),
                         [](const auto& formatInfo) { return formatInfo.param.name; });

TEST(Reading, ExtentOfNoRowsIsEmpty) {
    for (const TestFormat& format : {geoPackage, shapefile, fileGeodatabase}) {
        SCOPED_TRACE(format.name);
        const TemporaryFolder folder;
        const std::string path = folder / (std::string("roads") + format.ending);
        makeRoads(path, format, wkbMultiLineString, {});
        EXPECT_TRUE(openStore(path, OpenMode::read)->table("roads")->extent().isEmpty());
    }
}

// A deleted last row's id is not handed out again.
TEST(Reading, NextIdOfAGeoPackageFollowsItsSequence) {
    const TemporaryFolder folder;
    const std::string path = folder / "roads.gpkg";
    makeRoads(path, geoPackage, wkbPoint, {"POINT (1 1)", "POINT (2 2)"});
    const auto store = openStore(path, OpenMode::edit);
    Edits edits(*store->table("roads"));
    edits.remove(2);
    store->save(edits.changeSet(), {});
    EXPECT_EQ(store->table("roads")->nextId(), 3);
}

// A folder of shapefiles lists them, then lone tables of attributes; one shapefile shows itself and those tables.
TEST(Reading, FolderOfShapefiles) {
    const TemporaryFolder folder;
    makeRoads(folder / "b.shp", shapefile, wkbPoint, {"POINT (1 1)"});
    makeRoads(folder / "a.shp", shapefile, wkbPoint, {"POINT (1 1)"});
    makeRoads(folder / "rules.dbf", shapefile, wkbNone, {""});
    const auto whole = openStore(folder.path().string(), OpenMode::read);
    EXPECT_EQ(whole->tableNames(), (std::vector<std::string>{"a", "b", "rules"}));
    EXPECT_FALSE(whole->table("rules")->schema().shape);
    EXPECT_EQ(whole->table("rules")->count(), 1);
    const auto one = openStore(folder / "b.shp", OpenMode::read);
    EXPECT_EQ(one->tableNames(), (std::vector<std::string>{"b", "rules"}));
}

// Without a reference the numbers tell whether they could be degrees.
TEST(Reading, GridOfAnUnknownReference) {
    struct Row {
        const char* shape;
        bool degrees;
    };
    for (const Row& row :
         {Row{"LINESTRING (12 48,13 49)", true}, Row{"LINESTRING (4500000 5300000,4500001 5300001)", false}}) {
        const TemporaryFolder folder;
        makeRoads(folder / "roads.shp", shapefile, wkbLineString, {row.shape});
        std::filesystem::remove(folder / "roads.prj");
        const auto store = openStore(folder / "roads.shp", OpenMode::read);
        const SpatialReference& reference = store->table("roads")->schema().shape->spatialReference;
        EXPECT_TRUE(reference.isUnknown());
        EXPECT_EQ(reference.grid(), row.degrees ? CoordinateGrid::forDegrees() : CoordinateGrid{});
    }
}

} // namespace
} // namespace qz::test
