#include "platform/store/ogr/FileGdbStore.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/store/ogr/AsideFolder.h"
#include "platform/store/ogr/FileGdbWriter.h"

namespace qz {

namespace {

constexpr const char* driver = "OpenFileGDB";

const TableChanges& changesOf(const ChangeSet& changes, const std::string& table) {
    static const TableChanges none;
    const auto found = std::ranges::find(changes, table, &TableChanges::table);
    return found == changes.end() ? none : *found;
}

void syncAll(const std::filesystem::path& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        syncToDisk(entry.path());
    }
    syncToDisk(folder);
}

} // namespace

FileGdbStore::FileGdbStore(const std::string& path)
    : DatasetStore(rulesOf(StoreFormat::fileGeodatabase), path, openDataset(path, driver, DatasetAccess::read)),
      readFrom_(path), signatures_(signaturesIn(path)) {}

FileGdbStore::FileGdbStore(const std::string& source, const std::string& output)
    : DatasetStore(rulesOf(StoreFormat::fileGeodatabase), output, openDataset(source, driver, DatasetAccess::read)),
      readFrom_(source), hasOutput_(true), signatures_(signaturesIn(source)) {}

std::string FileGdbStore::refusalToSave() const {
    return hasOutput_ ? "" : "is a file geodatabase, which is saved as a new one: name it with --output";
}

void FileGdbStore::requireUnchanged() const {
    if (signaturesIn(readFrom_) != signatures_) {
        throw DataError(fmt::format(
            "{} was changed by another program since it was opened; nothing is saved. Open it again.", readFrom_));
    }
}

void FileGdbStore::writeAll(const std::filesystem::path& prepared, const ChangeSet& changes,
                            const std::optional<NewField>& newField, SaveProgress& progress) {
    FileGdbWriter writer(prepared, dataset(), progress);
    for (const std::string& name : tableNames()) {
        writer.copyTable(existingTable(name), changesOf(changes, name));
    }
    if (newField) {
        writer.addField(newField->table, newField->field);
    }
    progress.beforeStep();
    writer.close();
    syncAll(prepared);
}

// The first save makes the output, a later one takes its place at once.
void FileGdbStore::putInPlace(const std::filesystem::path& prepared, const std::filesystem::path& target) const {
    if (std::filesystem::exists(target) && std::filesystem::equivalent(readFrom_, target)) {
        exchange(prepared, target);
    } else {
        renameToNew(prepared, target);
    }
}

void FileGdbStore::saveWith(const ChangeSet& changes, const SaveObserver& observer,
                            const std::optional<NewField>& newField) {
    if (const std::string refusal = refusalToSave(); !refusal.empty()) {
        throw DataError(fmt::format("{} {}.", path(), refusal));
    }
    const QuietErrors errors;
    SaveProgress progress(observer, changes);
    const std::filesystem::path output = std::filesystem::absolute(path()).lexically_normal();
    const std::filesystem::path folder = folderOf(path());
    const std::filesystem::path target = folder / (output.has_filename() ? output : output.parent_path()).filename();
    const FolderLock lock(folder);
    recoverFolder(folder);
    const AsideFolder aside(folder);
    const std::filesystem::path prepared = aside.path() / target.filename();
    progress.beforeStep();
    requireUnchanged();
    writeAll(prepared, changes, newField, progress);
    requireUnchanged();
    progress.beforeStep();
    putInPlace(prepared, target);
    syncToDisk(folder);
    readFrom_ = target.string();
    replaceDataset(openDataset(readFrom_, driver, DatasetAccess::read));
    signatures_ = signaturesIn(readFrom_);
}

void FileGdbStore::save(const ChangeSet& changes, const SaveObserver& observer) {
    saveWith(changes, observer, std::nullopt);
}

void FileGdbStore::addField(const std::string& table, const Field& field) {
    static_cast<void>(existingTable(table));
    saveWith({}, {}, NewField{table, field});
}

} // namespace qz
