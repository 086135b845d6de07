#include "platform/store/ogr/RowWriter.h"

#include <fmt/format.h>

namespace qz {

void RowWriter::fail(const char* what, ObjectId id, const std::string& why) const {
    throw DataError(fmt::format("The row {} of {} can't be {}: {}.", id, layer_.GetName(), what, why));
}

OgrFeaturePtr RowWriter::stored(ObjectId id) {
    const QuietErrors errors;
    OgrFeaturePtr feature(layer_.GetFeature(id));
    if (!feature) {
        fail("changed", id, errors.any() ? errors.text() : "it is not there any more");
    }
    return feature;
}

void RowWriter::write(OGRFeature& feature) {
    const QuietErrors errors;
    if (layer_.SetFeature(&feature) != OGRERR_NONE || errors.any()) {
        fail("written", feature.GetFID(), errors.any() ? errors.text() : "it is not there any more");
    }
}

void RowWriter::create(OGRFeature& feature) {
    const QuietErrors errors;
    const GIntBig wanted = feature.GetFID();
    if (layer_.CreateFeature(&feature) != OGRERR_NONE || errors.any()) {
        fail("added", wanted, errors.text());
    }
    if (feature.GetFID() != wanted) {
        fail("added", wanted, fmt::format("the store numbered it {}", feature.GetFID()));
    }
}

void RowWriter::insert(const FeatureRecord& record) {
    OGRFeature feature(layer_.GetLayerDefn());
    mapper_.setAll(feature, record);
    create(feature);
}

void RowWriter::update(const RecordChange& change) {
    const OgrFeaturePtr feature = stored(change.record->id);
    mapper_.setChangedValues(*feature, change);
    if (change.shapeChanged) {
        mapper_.setShape(*feature, *change.record);
    }
    write(*feature);
}

void RowWriter::remove(ObjectId id) {
    const QuietErrors errors;
    if (layer_.DeleteFeature(id) != OGRERR_NONE || errors.any()) {
        fail("deleted", id, errors.any() ? errors.text() : "it is not there any more");
    }
}

} // namespace qz
