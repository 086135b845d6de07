#include "tests/store/StoreFixture.h"

#include <algorithm>

#include <cpl_string.h>
#include <fmt/format.h>
#include <stdlib.h>

#include "tests/support/StoredRows.h"

namespace qz::test {

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qz_test_XXXXXX").string();
    path_ = mkdtemp(pattern.data());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> TemporaryFolder::names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

namespace {

struct FieldPlan {
    const char* name;
    OGRFieldType type;
    int width;
};

void createFields(OGRLayer& layer) {
    for (const FieldPlan& plan : {FieldPlan{"name", OFTString, 20}, FieldPlan{"lanes", OFTInteger, 0},
                                  FieldPlan{"width", OFTReal, 0}, FieldPlan{"built", OFTDate, 0}}) {
        OGRFieldDefn field(plan.name, plan.type);
        field.SetWidth(plan.width);
        ASSERT_EQ(layer.CreateField(&field), OGRERR_NONE);
    }
}

void createRow(OGRLayer& layer, int number, const std::string& wkt) {
    OGRFeature feature(layer.GetLayerDefn());
    feature.SetField("name", fmt::format("road {}", number).c_str());
    feature.SetField("lanes", number);
    feature.SetField("width", number / 2.0);
    feature.SetField("built", 2000 + number, 1, 2);
    if (!wkt.empty()) {
        OGRGeometry* shape = nullptr;
        ASSERT_EQ(OGRGeometryFactory::createFromWkt(wkt.c_str(), nullptr, &shape), OGRERR_NONE) << wkt;
        feature.SetGeometryDirectly(shape);
    }
    ASSERT_EQ(layer.CreateFeature(&feature), OGRERR_NONE) << wkt;
}

} // namespace

void makeRoads(const std::string& path, const TestFormat& format, OGRwkbGeometryType type,
               const std::vector<std::string>& shapes, const std::vector<std::string>& layerOptions) {
    GDALAllRegister();
    OGRSpatialReference reference;
    reference.importFromEPSG(25833);
    reference.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    CPLStringList options;
    for (const std::string& option : layerOptions) {
        options.AddString(option.c_str());
    }
    GDALDataset* dataset =
        GetGDALDriverManager()->GetDriverByName(format.driver)->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr);
    ASSERT_NE(dataset, nullptr);
    OGRLayer* layer = dataset->CreateLayer("roads", &reference, type, options.List());
    ASSERT_NE(layer, nullptr);
    createFields(*layer);
    int number = 0;
    for (const std::string& shape : shapes) {
        createRow(*layer, number++, shape);
    }
    GDALClose(dataset);
}

std::optional<Geometry> shapeOf(const std::string& wkt) {
    return wkt.empty() ? std::nullopt : std::optional(geometryFromWkt(wkt));
}

Edits::Edits(FeatureSource& table) : table_(table) {
    changes_.table = table.schema().name;
    changes_.firstNewId = table.nextId();
    changes_.nextId = changes_.firstNewId;
}

ObjectId Edits::insert(const std::string& wkt, const std::string& name) {
    auto record = std::make_shared<FeatureRecord>();
    record->id = changes_.nextId++;
    record->shape = shapeOf(wkt);
    record->values.resize(table_.schema().fields.size());
    record->values[*table_.schema().findField("name")] = name;
    changes_.inserts.push_back(record);
    return record->id;
}

RecordChange& Edits::changeOf(ObjectId id) {
    if (!updates_.contains(id)) {
        records_[id] = *table_.read(id);
        updates_[id].changedValues.resize(table_.schema().fields.size());
    }
    return updates_[id];
}

void Edits::reshape(ObjectId id, const std::string& wkt) {
    reshape(id, shapeOf(wkt));
}

void Edits::reshape(ObjectId id, std::optional<Geometry> shape) {
    changeOf(id).shapeChanged = true;
    records_[id].shape = std::move(shape);
}

void Edits::setValue(ObjectId id, const std::string& field, const Value& value) {
    const std::size_t index = *table_.schema().findField(field);
    changeOf(id).changedValues[index] = true;
    records_[id].values[index] = value;
}

ChangeSet Edits::changeSet() const {
    TableChanges changes = changes_;
    for (auto [id, change] : updates_) {
        change.record = std::make_shared<const FeatureRecord>(records_.at(id));
        changes.updates.push_back(change);
    }
    return {changes};
}

std::vector<std::string> rowsOf(FeatureSource& table) {
    std::vector<std::string> rows;
    for (const RecordPtr& record : table.read(table.ids())) {
        rows.push_back(rowText(table.schema(), *record));
    }
    return rows;
}

std::vector<std::string> rowsOf(const std::string& path, const std::string& table) {
    const auto store = openStore(path, OpenMode::read);
    return rowsOf(*store->table(table));
}

std::vector<std::string> sqlRows(const std::string& path, const std::string& sql) {
    std::vector<std::string> rows;
    auto* dataset = GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY);
    OGRLayer* result = dataset->ExecuteSQL(sql.c_str(), nullptr, nullptr);
    if (result != nullptr) {
        while (OGRFeature* feature = result->GetNextFeature()) {
            std::string row;
            for (int i = 0; i < feature->GetFieldCount(); ++i) {
                row += (i == 0 ? "" : "|") + std::string(feature->GetFieldAsString(i));
            }
            rows.push_back(row);
            OGRFeature::DestroyFeature(feature);
        }
        dataset->ReleaseResultSet(result);
    }
    GDALClose(dataset);
    return rows;
}

} // namespace qz::test
