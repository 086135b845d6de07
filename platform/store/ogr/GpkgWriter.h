#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/store/ogr/GpkgSpatialIndex.h"
#include "platform/store/ogr/OgrTable.h"
#include "platform/store/ogr/RowWriter.h"
#include "platform/store/ogr/SaveProgress.h"

namespace qz {

// Writes the changes of one table of a GeoPackage inside an open transaction. Columns that didn't change are left as
// they are stored, bit for bit. Holds no more than a chunk of rows beside the changes.
class GpkgWriter {
public:
    GpkgWriter(GDALDataset& dataset, OGRLayer& layer, const OgrTable& table, SaveProgress& progress);

    void write(const TableChanges& changes);

private:
    void takeIndexOver(const TableChanges& changes);
    void remove(std::span<const ObjectId> ids);
    void removeRow(ObjectId id);
    void removeRows(std::span<const ObjectId> ids);
    void insert(std::span<const RecordPtr> records);
    void update(std::span<const RecordChange> updates);
    void updateChunk(std::span<const RecordChange> chunk);
    void prepareFor(const std::vector<bool>& writtenFields);
    void keepShapes(const std::vector<ObjectId>& ids);
    void restoreShapes(const std::vector<ObjectId>& ids);
    [[nodiscard]] std::vector<Envelope> storedEnvelopes(const std::vector<ObjectId>& ids);
    [[nodiscard]] std::optional<std::int64_t> storedCount();
    void storeCount(std::int64_t count);
    void giveUpIds(ObjectId nextId);

    GDALDataset& dataset_;
    const Schema& schema_;
    const OgrRecordMapper& mapper_;
    RowWriter rows_;
    OGRLayer& layer_;
    SaveProgress& progress_;
    std::string table_; // quoted
    std::string id_;
    std::string shape_;
    std::vector<bool> preparedFor_;
    std::optional<GpkgSpatialIndex> index_; // while it is kept here, instead of by triggers
};

} // namespace qz
