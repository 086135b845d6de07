#pragma once

#include "platform/store/ogr/OgrRecords.h"

namespace qz {

// Writes single rows of a layer through GDAL. Every failure is a DataError that names row and layer.
class RowWriter {
public:
    RowWriter(OGRLayer& layer, const OgrRecordMapper& mapper) : layer_(layer), mapper_(mapper) {}

    // The row gets exactly the record's id.
    void insert(const FeatureRecord& record);
    // Reads the stored row and writes it again with the changes.
    void update(const RecordChange& change);
    void remove(ObjectId id);

    [[nodiscard]] OgrFeaturePtr stored(ObjectId id);
    void write(OGRFeature& feature);
    // With the id that the feature has.
    void create(OGRFeature& feature);

private:
    [[noreturn]] void fail(const char* what, ObjectId id, const std::string& why) const;

    OGRLayer& layer_;
    const OgrRecordMapper& mapper_;
};

} // namespace qz
