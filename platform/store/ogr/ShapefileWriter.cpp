#include "platform/store/ogr/ShapefileWriter.h"

#include <fmt/format.h>

#include "platform/store/ogr/OgrSchema.h"

namespace qz {

namespace {

bool sameEnvelope(const OGRGeometry* a, const OGRGeometry* b) {
    if (a == nullptr || b == nullptr) {
        return a == b;
    }
    OGREnvelope first;
    OGREnvelope second;
    a->getEnvelope(&first);
    b->getEnvelope(&second);
    return first == second;
}

OGRLayer& onlyLayer(GDALDataset& dataset) {
    OGRLayer* layer = dataset.GetLayer(0);
    if (layer == nullptr) {
        throw DataError(fmt::format("{} has no table.", dataset.GetDescription()));
    }
    return *layer;
}

} // namespace

DatasetPtr openShapefile(const std::filesystem::path& file, DatasetAccess access) {
    DatasetPtr declared =
        openDataset(file.string(), "ESRI Shapefile", access, {"AUTO_REPACK=NO", "ADJUST_GEOM_TYPE=NO"});
    if (declared->GetLayerCount() == 0 || OGR_GT_HasZ(declared->GetLayer(0)->GetGeomType()) == 0) {
        return declared;
    }
    // Files with heights have room for measures, too, used or not: the first shape tells whether they are meant.
    declared.reset();
    return openDataset(file.string(), "ESRI Shapefile", access, {"AUTO_REPACK=NO", "ADJUST_GEOM_TYPE=FIRST_SHAPE"});
}

ShapefileWriter::ShapefileWriter(const std::filesystem::path& file, const OgrRecordMapper& mapper,
                                 SaveProgress& progress)
    : dataset_(openShapefile(file, DatasetAccess::update)), layer_(onlyLayer(*dataset_)), mapper_(mapper),
      rows_(layer_, mapper), progress_(progress) {}

void ShapefileWriter::write(const TableChanges& changes) {
    for (const RecordChange& change : changes.updates) {
        progress_.beforeRecord();
        update(change);
    }
    insertAll(changes);
    for (const ObjectId id : changes.deletes) {
        progress_.beforeRecord();
        rows_.remove(id);
    }
}

void ShapefileWriter::update(const RecordChange& change) {
    if (!change.shapeChanged) {
        rows_.update(change);
        return;
    }
    const OgrFeaturePtr feature = rows_.stored(change.record->id);
    const std::unique_ptr<OGRGeometry> before(feature->StealGeometry());
    mapper_.setChangedValues(*feature, change);
    mapper_.setShape(*feature, *change.record);
    outdatesIndex_ = outdatesIndex_ || !sameEnvelope(before.get(), feature->GetGeometryRef());
    rows_.write(*feature);
}

void ShapefileWriter::insertAll(const TableChanges& changes) {
    ObjectId next = changes.firstNewId;
    for (const RecordPtr& record : changes.inserts) {
        progress_.beforeRecord();
        for (; next < record->id; ++next) {
            addDeletedRecord(next);
        }
        rows_.insert(*record);
        outdatesIndex_ = true;
        ++next;
    }
    for (; next < changes.nextId; ++next) {
        addDeletedRecord(next);
    }
}

void ShapefileWriter::addDeletedRecord(ObjectId id) {
    OGRFeature feature(layer_.GetLayerDefn());
    feature.SetFID(id);
    rows_.create(feature);
    rows_.remove(id);
}

void ShapefileWriter::addField(const Field& field) {
    createField(layer_, field);
}

void ShapefileWriter::createSpatialIndex() {
    executeSql(*dataset_, fmt::format("CREATE SPATIAL INDEX ON {}", quotedName(layer_.GetName())));
}

void ShapefileWriter::close() {
    const QuietErrors errors;
    const std::string path = dataset_->GetDescription();
    dataset_.reset();
    if (errors.any()) {
        throw DataError(fmt::format("{} can't be written: {}.", path, errors.text()));
    }
}

} // namespace qz
