#include "platform/store/ogr/PostgisStore.h"

#include <fmt/format.h>

#include "platform/store/ogr/OgrSchema.h"
#include "platform/store/ogr/RowWriter.h"
#include "platform/store/ogr/SaveProgress.h"

namespace qz {

namespace {

void writeTable(OgrTable& table, const TableChanges& changes, SaveProgress& progress) {
    RowWriter rows(table.layer(), table.mapper());
    for (const ObjectId id : changes.deletes) {
        progress.beforeRecord();
        rows.remove(id);
    }
    for (const RecordChange& change : changes.updates) {
        progress.beforeRecord();
        rows.update(change);
    }
    for (const RecordPtr& record : changes.inserts) {
        progress.beforeRecord();
        rows.insert(*record);
    }
}

} // namespace

PostgisStore::PostgisStore(const std::string& path, OpenMode mode)
    : DatasetStore(
          rulesOf(StoreFormat::postgis), path,
          openDataset(path, "PostgreSQL", mode == OpenMode::edit ? DatasetAccess::update : DatasetAccess::read)),
      mode_(mode) {}

std::string PostgisStore::refusalToSave() const {
    return mode_ == OpenMode::read ? "is opened for reading" : "";
}

void PostgisStore::save(const ChangeSet& changes, const SaveObserver& observer) {
    if (mode_ == OpenMode::read) {
        throw DataError(fmt::format("{} {}.", path(), refusalToSave()));
    }
    const QuietErrors errors;
    SaveProgress progress(observer, changes);
    if (dataset().StartTransaction() != OGRERR_NONE) {
        throw DataError(fmt::format("{} can't be saved to: {}.", path(), errors.text()));
    }
    try {
        for (const TableChanges& table : changes) {
            writeTable(existingTable(table.table), table, progress);
        }
        progress.beforeStep();
        if (dataset().CommitTransaction() != OGRERR_NONE) {
            throw DataError(fmt::format("{} can't be saved to: {}.", path(), errors.text()));
        }
    } catch (...) {
        dataset().RollbackTransaction();
        forgetRows();
        throw;
    }
    forgetRows();
}

void PostgisStore::addField(const std::string& table, const Field& field) {
    OgrTable& changed = existingTable(table);
    createField(changed.layer(), field);
    changed.attach(dataset(), changed.layer());
}

} // namespace qz
