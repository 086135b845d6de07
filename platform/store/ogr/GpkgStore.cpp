#include "platform/store/ogr/GpkgStore.h"

#include <utility>

#include <fmt/format.h>

#include "platform/Error.h"
#include "platform/store/ogr/AsideFolder.h"
#include "platform/store/ogr/FileTools.h"
#include "platform/store/ogr/GpkgWriter.h"
#include "platform/store/ogr/OgrSchema.h"

namespace qz {

namespace {

constexpr const char* driver = "GPKG";
// How long a save waits for another program's transaction.
constexpr int busyMilliseconds = 10'000;
// What a save may hold in memory. Rows and their index entries lie scattered over the file: pages that don't fit are
// written and read again many times.
constexpr int savingCacheKilobytes = 128 * 1024;

bool hasSideFiles(const std::string& path) {
    return std::filesystem::exists(path + "-wal") || std::filesystem::exists(path + "-journal");
}

bool isLogged(GDALDataset& dataset) {
    return queryText(dataset, "PRAGMA journal_mode") == "wal";
}

// Completes or rolls back what a killed process left, and makes a single file of it unless another process has it open.
void recover(const std::string& path) {
    if (!hasSideFiles(path) || !isWritable(path) || !isWritable(folderOf(path))) {
        return;
    }
    const QuietErrors errors;
    const DatasetPtr dataset = openDataset(path, driver, DatasetAccess::update);
    try {
        executeSql(*dataset, "PRAGMA busy_timeout = 0");
        executeSql(*dataset, "PRAGMA journal_mode = DELETE");
        // A journal that was begun and holds nothing yet is removed only by leaving the mode that reuses it.
        executeSql(*dataset, "PRAGMA journal_mode = TRUNCATE");
        executeSql(*dataset, "PRAGMA journal_mode = DELETE");
    } catch (const DataError&) {
        return;
    }
}

DatasetPtr openRecovered(const std::string& path, DatasetAccess access) {
    recover(path);
    return openDataset(path, driver, access);
}

bool canBeSavedTo(const std::string& path) {
    return isWritable(path) && isWritable(folderOf(path));
}

DatasetAccess accessFor(const std::string& path, OpenMode mode) {
    return mode == OpenMode::edit && canBeSavedTo(path) ? DatasetAccess::update : DatasetAccess::read;
}

void begin(GDALDataset& dataset) {
    const QuietErrors errors;
    executeSql(dataset, fmt::format("PRAGMA cache_size = -{}", savingCacheKilobytes));
    // Each row's own journal, for taking back the one statement, is small.
    executeSql(dataset, "PRAGMA temp_store = MEMORY");
    if (dataset.StartTransaction() != OGRERR_NONE) {
        throw DataError(fmt::format("{} can't be saved to: {}.", dataset.GetDescription(), errors.text()));
    }
    // The first statement that could write takes the write lock, so that nobody else writes before the commit.
    executeSql(dataset, "UPDATE gpkg_contents SET last_change = last_change WHERE 0");
}

void commit(GDALDataset& dataset) {
    const QuietErrors errors;
    if (dataset.CommitTransaction() != OGRERR_NONE || errors.any()) {
        throw DataError(fmt::format("{} can't be saved to: {}.", dataset.GetDescription(), errors.text()));
    }
    executeSql(dataset, "PRAGMA shrink_memory");
}

} // namespace

GpkgStore::GpkgStore(const std::string& path, OpenMode mode)
    : DatasetStore(rulesOf(StoreFormat::geoPackage), path, openRecovered(path, accessFor(path, mode))), mode_(mode) {
    rememberVersion();
    // Another program's habit of a log is kept; a log that is in use belongs to an editing process that ends it.
    endsInSingleFile_ = mode == OpenMode::edit && (!isLogged(dataset()) || hasSideFiles(path));
    executeSql(dataset(), fmt::format("PRAGMA busy_timeout = {}", busyMilliseconds));
}

GpkgStore::GpkgStore(const std::string& source, const std::string& output)
    : DatasetStore(rulesOf(StoreFormat::geoPackage), output, openRecovered(source, DatasetAccess::read)),
      mode_(OpenMode::edit), source_(source) {
    rememberVersion();
}

GpkgStore::~GpkgStore() {
    const QuietErrors errors;
    try {
        if (endsInSingleFile_ && !source_ && isLogged(dataset())) {
            executeSql(dataset(), "PRAGMA busy_timeout = 0");
            executeSql(dataset(), "PRAGMA journal_mode = DELETE");
        }
    } catch (const DataError&) {
        // Another process has it open and ends the log.
    }
}

std::string GpkgStore::refusalToSave() const {
    if (mode_ == OpenMode::read) {
        return "is opened for reading";
    }
    return source_ || canBeSavedTo(path()) ? "" : "is read-only";
}

void GpkgStore::rememberVersion() {
    version_ = queryInteger(dataset(), "PRAGMA data_version").value_or(0);
}

void GpkgStore::requireUnchanged() {
    changedByOthers_ = changedByOthers_ || queryInteger(dataset(), "PRAGMA data_version").value_or(0) != version_;
    if (changedByOthers_) {
        throw DataError(
            fmt::format("{} was changed by another program since it was opened; nothing is saved. Open it again.",
                        source_.value_or(path())));
    }
}

// Where another program keeps the file busy, the save goes through the usual journal instead.
void GpkgStore::useWriteAheadLog() {
    if (isLogged(dataset())) {
        return;
    }
    executeSql(dataset(), "PRAGMA journal_mode = WAL");
    if (isLogged(dataset())) {
        executeSql(dataset(), "PRAGMA synchronous = NORMAL");
        // The switch counts as one change of the file; a change by somebody else at that moment counts beside it.
        ++version_;
    }
}

void GpkgStore::save(const ChangeSet& changes, const SaveObserver& observer) {
    if (const std::string refusal = refusalToSave(); !refusal.empty()) {
        throw DataError(fmt::format("{} {}.", path(), refusal));
    }
    const QuietErrors errors;
    if (source_) {
        saveAsCopy(changes, observer);
    } else {
        saveInPlace(changes, observer);
    }
    forgetRows();
}

void GpkgStore::writeAll(GDALDataset& target, const ChangeSet& changes, SaveProgress& progress) {
    for (const TableChanges& table : changes) {
        const OgrTable& known = existingTable(table.table);
        OGRLayer* layer = target.GetLayerByName(table.table.c_str());
        GpkgWriter(target, *layer, known, progress).write(table);
    }
}

void GpkgStore::saveInPlace(const ChangeSet& changes, const SaveObserver& observer) {
    SaveProgress progress(observer, changes);
    requireUnchanged();
    useWriteAheadLog();
    begin(dataset());
    try {
        requireUnchanged();
        writeAll(dataset(), changes, progress);
        progress.beforeStep();
        commit(dataset());
    } catch (...) {
        rollBack();
        throw;
    }
}

// GDAL's own counts and extents are wrong after a rollback, so the file is opened again. The former connection is asked
// once the new one watches: a change by another program can't fall between the two.
void GpkgStore::rollBack() {
    const QuietErrors errors;
    dataset().RollbackTransaction();
    DatasetPtr reopened = openDataset(path(), driver, DatasetAccess::update);
    executeSql(*reopened, fmt::format("PRAGMA busy_timeout = {}", busyMilliseconds));
    const std::int64_t reopenedVersion = queryInteger(*reopened, "PRAGMA data_version").value_or(0);
    changedByOthers_ = changedByOthers_ || queryInteger(dataset(), "PRAGMA data_version").value_or(0) != version_;
    replaceDataset(std::move(reopened));
    version_ = reopenedVersion;
}

// A file with a log is copied by the database itself, a single file as a whole while a reading transaction keeps
// writers off.
void GpkgStore::copySource(const std::filesystem::path& target) {
    if (isLogged(dataset())) {
        requireUnchanged();
        executeSql(dataset(), "VACUUM INTO " + quotedText(target.string()));
        requireUnchanged();
        return;
    }
    executeSql(dataset(), "BEGIN");
    try {
        executeSql(dataset(), "SELECT COUNT(*) FROM gpkg_contents");
        requireUnchanged();
        copyFile(*source_, target);
    } catch (...) {
        executeSql(dataset(), "ROLLBACK");
        throw;
    }
    executeSql(dataset(), "ROLLBACK");
}

void GpkgStore::saveAsCopy(const ChangeSet& changes, const SaveObserver& observer) {
    SaveProgress progress(observer, changes);
    const std::filesystem::path output(path());
    const std::filesystem::path folder = folderOf(path());
    const FolderLock lock(folder);
    recoverFolder(folder);
    const AsideFolder aside(folder);
    const std::filesystem::path prepared = aside.path() / output.filename();
    progress.beforeStep();
    copySource(prepared);
    {
        const DatasetPtr copy = openDataset(prepared.string(), driver, DatasetAccess::update);
        begin(*copy);
        writeAll(*copy, changes, progress);
        progress.beforeStep();
        commit(*copy);
    }
    syncToDisk(prepared);
    progress.beforeStep();
    renameToNew(prepared, output);
    syncToDisk(folder);
    replaceDataset(openDataset(path(), driver, DatasetAccess::update));
    source_.reset();
    endsInSingleFile_ = true;
    rememberVersion();
}

void GpkgStore::addField(const std::string& table, const Field& field) {
    if (source_) {
        save({}, {});
    }
    requireUnchanged();
    OgrTable& changed = existingTable(table);
    createField(changed.layer(), field);
    executeSql(dataset(), "SELECT 1"); // statements that GDAL put off are run
    changed.attach(dataset(), changed.layer());
}

} // namespace qz
