#include "platform/store/ogr/ConditionScratch.h"

#include <algorithm>
#include <atomic>

#include <cpl_string.h>
#include <fmt/format.h>

#include "platform/store/ogr/LayerWalk.h"

namespace qz {

namespace {

std::string uniqueMemoryPath() {
    static std::atomic<int> last = 0;
    return fmt::format("/vsimem/qz_conditions_{}.gpkg", ++last);
}

CPLStringList creationOptions(OGRLayer& model, bool sqlConditions) {
    CPLStringList options;
    if (sqlConditions) {
        options.SetNameValue("FID", model.GetFIDColumn());
        options.SetNameValue("SPATIAL_INDEX", "NO");
        if (*model.GetGeometryColumn() != '\0') {
            options.SetNameValue("GEOMETRY_NAME", model.GetGeometryColumn());
        }
    }
    return options;
}

void copyFields(OGRLayer& model, OGRLayer& layer) {
    const OGRFeatureDefn& definition = *model.GetLayerDefn();
    for (int i = 0; i < definition.GetFieldCount(); ++i) {
        OGRFieldDefn field(definition.GetFieldDefn(i));
        field.SetDefault(nullptr);
        field.SetDomainName({});
        field.SetNullable(1);
        field.SetUnique(0);
        if (layer.CreateField(&field, TRUE) != OGRERR_NONE) {
            throw DataError(fmt::format("A condition can't be evaluated on the field {}.", field.GetNameRef()));
        }
    }
}

// GDAL's layers in memory know the object id only as FID; a named one becomes a field behind the others.
void addIdField(OGRLayer& model, OGRLayer& layer) {
    const char* name = model.GetFIDColumn();
    OGRFieldDefn field(name, OFTInteger64);
    if (*name != '\0' && layer.CreateField(&field, FALSE) != OGRERR_NONE) {
        throw DataError(fmt::format("A condition can't be evaluated on the field {}.", name));
    }
}

void fill(OGRLayer& layer, const OgrRecordMapper& mapper, std::span<const RecordPtr> records, bool hasIdField) {
    OGRFeature feature(layer.GetLayerDefn());
    for (const RecordPtr& record : records) {
        feature.Reset();
        mapper.setAll(feature, *record);
        if (hasIdField) {
            feature.SetField(feature.GetFieldCount() - 1, static_cast<GIntBig>(record->id));
        }
        if (layer.CreateFeature(&feature) != OGRERR_NONE) {
            throw DataError(fmt::format("The row {} can't be compared with a condition.", record->id));
        }
    }
}

bool removeAll(OGRLayer& layer, std::span<const RecordPtr> records) {
    return std::ranges::all_of(records,
                               [&](const RecordPtr& record) { return layer.DeleteFeature(record->id) == OGRERR_NONE; });
}

} // namespace

void ConditionScratch::create(OGRLayer& model, bool sqlConditions) {
    GDALDriver& driver = ogrDriver(sqlConditions ? "GPKG" : "Memory");
    const std::string path = sqlConditions ? uniqueMemoryPath() : std::string("conditions");
    dataset_.reset(driver.Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    layer_ = dataset_ ? dataset_->CreateLayer(model.GetName(), nullptr, model.GetGeomType(),
                                              creationOptions(model, sqlConditions).List())
                      : nullptr;
    if (layer_ == nullptr) {
        dataset_.reset();
        throw DataError("No table can be made in memory to evaluate a condition.");
    }
    dataset_->MarkSuppressOnClose();
    copyFields(model, *layer_);
    if (!sqlConditions) {
        addIdField(model, *layer_);
    }
}

std::vector<ObjectId> ConditionScratch::satisfying(OGRLayer& model, const OgrRecordMapper& mapper, bool sqlConditions,
                                                   const std::string& condition, std::span<const RecordPtr> records) {
    const QuietErrors errors;
    if (!dataset_) {
        create(model, sqlConditions);
    }
    std::vector<ObjectId> found;
    const bool hasIdField = layer_->GetLayerDefn()->GetFieldCount() > model.GetLayerDefn()->GetFieldCount();
    dataset_->StartTransaction();
    try {
        fill(*layer_, mapper, records, hasIdField);
        walkLayer(*layer_, sqlConditions ? WalkContent::nothing : WalkContent::everything, condition,
                  [&](OGRFeature& row) { found.push_back(row.GetFID()); });
    } catch (...) {
        dataset_->CommitTransaction();
        reset();
        throw;
    }
    const bool emptied = removeAll(*layer_, records);
    dataset_->CommitTransaction();
    if (!emptied) {
        reset();
    }
    std::sort(found.begin(), found.end());
    std::vector<ObjectId> inOrder;
    for (const RecordPtr& record : records) {
        if (std::binary_search(found.begin(), found.end(), record->id)) {
            inOrder.push_back(record->id);
        }
    }
    return inOrder;
}

} // namespace qz
