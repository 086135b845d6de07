#pragma once

#include <filesystem>

#include "platform/store/ogr/OgrTable.h"
#include "platform/store/ogr/RowWriter.h"
#include "platform/store/ogr/SaveProgress.h"

namespace qz {

// Writes the changes of one table into a copy of its files. Record numbers are object ids, so deleted and given-up ids
// leave a deleted record behind.
class ShapefileWriter {
public:
    // `file`: the .shp or .dbf of the copy.
    ShapefileWriter(const std::filesystem::path& file, const OgrRecordMapper& mapper, SaveProgress& progress);

    void write(const TableChanges& changes);
    void addField(const Field& field);
    void createSpatialIndex();
    // Writes everything out. Throws DataError when something could not be written.
    void close();

    // Whether a spatial index made before misses rows now.
    [[nodiscard]] bool outdatesIndex() const { return outdatesIndex_; }

private:
    void update(const RecordChange& change);
    void insertAll(const TableChanges& changes);
    void addDeletedRecord(ObjectId id);

    DatasetPtr dataset_;
    OGRLayer& layer_;
    const OgrRecordMapper& mapper_;
    RowWriter rows_;
    SaveProgress& progress_;
    bool outdatesIndex_ = false;
};

// Record numbers must stay what they are while a file is open, so deleted records are never packed away.
[[nodiscard]] DatasetPtr openShapefile(const std::filesystem::path& file, DatasetAccess access);

} // namespace qz
