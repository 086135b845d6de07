// Every kind of value of every format: read, copied into other rows and written again, it is what GDAL wrote, and
// GDAL finds the same in all rows.

#include <functional>

#include <fmt/format.h>

#include "platform/store/ogr/OgrSession.h"
#include "tests/store/StoreFixture.h"

namespace qz::test {
namespace {

struct KindOfField {
    const char* name;
    OGRFieldType type;
    OGRFieldSubType subtype;
    const char* value;
};

// Values at which a way through a narrower kind would show.
constexpr KindOfField kinds[] = {
    {"small", OFTInteger, OFSTInt16, "-32768"},
    {"flag", OFTInteger, OFSTBoolean, "1"},
    {"whole", OFTInteger, OFSTNone, "-2147483648"},
    {"wide", OFTInteger64, OFSTNone, "9007199254740993"},
    {"single", OFTReal, OFSTFloat32, "0.10000000149011612"},
    {"real", OFTReal, OFSTNone, "0.30000000000000004"},
    {"day", OFTDate, OFSTNone, "1969/12/31"},
    {"moment", OFTDateTime, OFSTNone, "1955/03/01 23:59:58"},
    {"content", OFTBinary, OFSTNone, "00FF7F0041"},
    {"key", OFTString, OFSTUUID, "{6F9619FF-8B86-D011-B42D-00CF4FC964FF}"},
    {"note", OFTString, OFSTNone, "Zoë's 'lane'; -- \"x\""},
};

// GDAL asks no layer to hold what it has no kind for: it takes the nearest.
bool canHold(const TestFormat& format, const KindOfField& kind) {
    const bool keptByAllFormats =
        kind.type == OFTString || kind.type == OFTReal || kind.type == OFTDate || kind.type == OFTInteger;
    return keptByAllFormats || std::string(format.name) == geoPackage.name ||
           (std::string(format.name) == fileGeodatabase.name && kind.type != OFTInteger64) ||
           (std::string(format.name) == shapefile.name && kind.type == OFTInteger64);
}

// One row of values and two empty ones.
void makeTable(const std::string& path, const TestFormat& format) {
    GDALAllRegister();
    GDALDataset* dataset =
        GetGDALDriverManager()->GetDriverByName(format.driver)->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr);
    OGRLayer* layer = dataset->CreateLayer("kinds", nullptr, wkbPoint, nullptr);
    for (const KindOfField& kind : kinds) {
        if (canHold(format, kind)) {
            OGRFieldDefn definition(kind.name, kind.type);
            definition.SetSubType(kind.subtype);
            ASSERT_EQ(layer->CreateField(&definition), OGRERR_NONE) << kind.name;
        }
    }
    for (int row = 0; row < 3; ++row) {
        OGRFeature feature(layer->GetLayerDefn());
        for (const KindOfField& kind : kinds) {
            const int field = layer->GetLayerDefn()->GetFieldIndex(kind.name);
            if (row > 0 || field < 0) {
                continue;
            }
            int size = 0;
            if (kind.type == OFTBinary) {
                GByte* bytes = CPLHexToBinary(kind.value, &size);
                feature.SetField(field, size, static_cast<const void*>(bytes));
                CPLFree(bytes);
            } else {
                feature.SetField(field, kind.value);
            }
        }
        ASSERT_EQ(layer->CreateFeature(&feature), OGRERR_NONE);
    }
    GDALClose(dataset);
}

// As GDAL reads it: reals with all their digits.
std::string textOf(const OGRFeature& feature, int field) {
    if (!feature.IsFieldSetAndNotNull(field)) {
        return "null";
    }
    if (feature.GetFieldDefnRef(field)->GetType() == OFTReal) {
        return fmt::format("{}", feature.GetFieldAsDouble(field));
    }
    return feature.GetFieldAsString(field);
}

std::vector<std::string> rowsByGdal(const std::string& path) {
    std::vector<std::string> rows;
    GDALDataset* dataset = GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY);
    for (const auto& feature : *dataset->GetLayer(0)) {
        std::string row;
        for (int field = 0; field < feature->GetFieldCount(); ++field) {
            row += fmt::format("{}={}\n", feature->GetFieldDefnRef(field)->GetNameRef(), textOf(*feature, field));
        }
        rows.push_back(row);
    }
    GDALClose(dataset);
    return rows;
}

class ValueKinds : public testing::TestWithParam<TestFormat> {};

TEST_P(ValueKinds, AreWrittenAsTheyWereRead) {
    const TemporaryFolder folder;
    const std::string path = folder / (std::string("kinds") + GetParam().ending);
    makeTable(path, GetParam());
    const std::string written = rowsByGdal(path).front();
    const std::string saved = folder / (std::string("saved") + GetParam().ending);
    const auto store = openCopy(path, saved);
    FeatureSource& table = *store->table("kinds");
    const std::vector<ObjectId> ids = table.ids();
    Edits edits(table);
    for (const Field& field : table.schema().fields) {
        if (field.type != FieldType::objectId && field.type != FieldType::geometry) {
            edits.setValue(ids[1], field.name, table.read(ids[0])->values[*table.schema().findField(field.name)]);
        }
    }
    ChangeSet changes = edits.changeSet();
    auto copy = std::make_shared<FeatureRecord>(*table.read(ids[0]));
    copy->id = changes.front().nextId++;
    changes.front().inserts.push_back(copy);
    store->save(changes, {});

    const std::vector<std::string> rows = rowsByGdal(saved);
    ASSERT_EQ(rows.size(), 4U);
    for (const std::size_t row : {0U, 1U, 3U}) {
        EXPECT_EQ(rows[row], written) << "row " << row;
    }
    EXPECT_EQ(rows[2].find("1"), std::string::npos) << rows[2];
}

// A field of each kind is added, and keeps what is put in.
TEST_P(ValueKinds, OfAddedFields) {
    const struct {
        FieldType type;
        Value value;
    } added[] = {
        {FieldType::smallInteger, std::int16_t{-7}},
        {FieldType::integer, std::int32_t{70000}},
        {FieldType::single, 0.5F},
        {FieldType::doubleFloat, 0.1},
        {FieldType::string, std::string("x")},
        {FieldType::date, DateTime{.year = 2026, .month = 2, .day = 28}},
    };
    const TemporaryFolder folder;
    const std::string path = folder / (std::string("kinds") + GetParam().ending);
    makeTable(path, GetParam());
    const std::string saved = folder / (std::string("saved") + GetParam().ending);
    const auto store = openCopy(path, saved);
    store->save({}, {});
    for (const auto& row : added) {
        Field field;
        field.name = fmt::format("new{}", static_cast<int>(row.type));
        field.type = row.type;
        field.dateOnly = true;
        store->addField("kinds", field);
    }
    FeatureSource& table = *store->table("kinds");
    Edits edits(table);
    for (const auto& row : added) {
        edits.setValue(table.ids()[1], fmt::format("new{}", static_cast<int>(row.type)), row.value);
    }
    store->save(edits.changeSet(), {});

    const auto reopened = openStore(saved, OpenMode::read);
    FeatureSource& read = *reopened->table(reopened->tableNames().back());
    for (const auto& row : added) {
        const std::size_t field = *read.schema().findField(fmt::format("new{}", static_cast<int>(row.type)));
        EXPECT_EQ(toText(read.read(read.ids()[1])->values[field]), toText(row.value)) << field;
        EXPECT_TRUE(isNull(read.read(read.ids()[0])->values[field])) << field;
    }
}

// A database doesn't hold its columns to their kinds.
TEST(GeoPackageValues, TooLargeForTheirFieldStayAsTheyAre) {
    const TemporaryFolder folder;
    const std::string path = folder / "kinds.gpkg";
    makeTable(path, geoPackage);
    executeSql(*openDataset(path, "GPKG", DatasetAccess::update), "UPDATE kinds SET small = 70000 WHERE fid = 1");
    const auto store = openStore(path, OpenMode::edit);
    FeatureSource& table = *store->table("kinds");
    const std::size_t small = *table.schema().findField("small");
    const Value value = table.read(1)->values[small];
    EXPECT_EQ(toText(value), "70000");
    EXPECT_THROW(static_cast<void>(convertedTo(table.schema().fields[small], value)), PlatformError);
}

INSTANTIATE_TEST_SUITE_P(Formats, ValueKinds, testing::Values(geoPackage, shapefile, fileGeodatabase),
                         [](const auto& formatInfo) { return formatInfo.param.name; });

} // namespace
} // namespace qz::test
