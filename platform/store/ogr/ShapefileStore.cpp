#include "platform/store/ogr/ShapefileStore.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/store/ogr/SaveProgress.h"
#include "platform/store/ogr/ShapefileWriter.h"

namespace qz {

namespace {

std::filesystem::path absolutePath(const std::string& path) {
    return std::filesystem::absolute(path).lexically_normal();
}

bool anyReadOnly(const ShapefileParts& parts) {
    return !std::ranges::all_of(parts.withRows(), [](const auto& file) { return isWritable(file); });
}

} // namespace

ShapefileStore::ShapefileStore(const std::string& path, OpenMode mode)
    : rules_(rulesOf(StoreFormat::shapefile)), path_(path), category_(rules_.datasetCategory), mode_(mode) {
    const std::filesystem::path given = absolutePath(path);
    if (std::filesystem::is_directory(given)) {
        folder_ = given;
        return;
    }
    folder_ = given.parent_path();
    seenThrough_ = given;
    static_cast<void>(existingTable(given.stem().string()));
}

ShapefileStore::ShapefileStore(const std::string& source, const std::string& output)
    : rules_(rulesOf(StoreFormat::shapefile)), path_(output), category_(rules_.datasetCategory), mode_(OpenMode::edit),
      folder_(absolutePath(output).parent_path()), seenThrough_(absolutePath(output)), source_(absolutePath(source)),
      sourceName_(source_->stem().string()) {
    static_cast<void>(existingTable(seenThrough_.stem().string()));
}

std::vector<std::string> ShapefileStore::tableNames() {
    std::vector<std::string> names;
    if (!seenThrough_.empty()) {
        names.push_back(seenThrough_.stem().string());
    } else {
        for (const ShapefileParts& parts : shapefilesIn(folder_)) {
            names.push_back(parts.name());
        }
    }
    for (const ShapefileParts& parts : attributeTablesIn(source_ ? source_->parent_path() : folder_)) {
        if (std::ranges::find(names, parts.name()) == names.end()) {
            names.push_back(parts.name());
        }
    }
    return names;
}

std::optional<ShapefileParts> ShapefileStore::partsOf(const std::string& name) const {
    if (!seenThrough_.empty() && name == seenThrough_.stem().string()) {
        return ShapefileParts(source_.value_or(seenThrough_));
    }
    const std::filesystem::path folder = source_ ? source_->parent_path() : folder_;
    for (const auto& candidates : {shapefilesIn(folder), attributeTablesIn(folder)}) {
        const auto found = std::ranges::find(candidates, name, &ShapefileParts::name);
        if (found != candidates.end()) {
            return *found;
        }
    }
    return std::nullopt;
}

std::string ShapefileStore::ownName(const std::string& asked) const {
    return !asked.empty() && asked == sourceName_ ? seenThrough_.stem().string() : asked;
}

ShapefileStore::OpenTable* ShapefileStore::openTable(const std::string& asked) {
    const std::string name = ownName(asked);
    if (const auto known = tables_.find(name); known != tables_.end()) {
        return &known->second;
    }
    const auto parts = partsOf(name);
    if (!parts) {
        return nullptr;
    }
    const QuietErrors errors;
    OpenTable table{*parts, parts->signatures(), openShapefile(parts->main(), DatasetAccess::read), nullptr};
    if (table.dataset->GetLayerCount() == 0) {
        throw DataError(fmt::format("{} can't be opened: it has no table.", parts->main().string()));
    }
    table.table = std::make_unique<OgrTable>(rules_, *table.dataset, *table.dataset->GetLayer(0), TableIdentity{});
    table.table->rename(name);
    return &tables_.emplace(name, std::move(table)).first->second;
}

ShapefileStore::OpenTable& ShapefileStore::existingTable(const std::string& name) {
    if (OpenTable* table = openTable(name)) {
        return *table;
    }
    throw DataError(fmt::format("{} has no table {}.", path_, name));
}

FeatureSource* ShapefileStore::table(const std::string& name) {
    OpenTable* table = openTable(name);
    return table == nullptr ? nullptr : table->table.get();
}

std::string ShapefileStore::pathBeside(const std::string& table, const std::string& ending) const {
    const auto parts = partsOf(ownName(table));
    return parts ? (parts->folder() / (parts->name() + ending)).string() : FeatureStore::pathBeside(table, ending);
}

std::string ShapefileStore::refusalToSave() const {
    if (mode_ == OpenMode::read) {
        return "is opened for reading";
    }
    const bool readOnly =
        !isWritable(folder_) ||
        (!source_ && std::ranges::any_of(tables_, [](const auto& entry) { return anyReadOnly(entry.second.parts); }));
    return readOnly ? "is read-only" : "";
}

void ShapefileStore::requireUnchanged(const OpenTable& table) const {
    if (table.parts.signatures() != table.signatures) {
        throw DataError(
            fmt::format("{} was changed by another program since it was opened; nothing is saved. Open it again.",
                        table.parts.main().string()));
    }
}

std::string ShapefileStore::nameInOutput(const std::filesystem::path& part, const ShapefileParts& parts) const {
    const std::string name = part.filename().string();
    return source_ && parts.main() == *source_ ? seenThrough_.stem().string() + name.substr(parts.name().size()) : name;
}

void ShapefileStore::copyAside(const std::filesystem::path& file, const ShapefileParts& parts, SaveProgress& progress,
                               const AsideFolder& aside, Swap& swap) const {
    progress.beforeStep();
    const std::string name = nameInOutput(file, parts);
    copyFile(file, aside.path() / name);
    swap.files.push_back(name);
}

void ShapefileStore::writeAside(OpenTable& table, const TableChanges& changes, SaveProgress& progress,
                                const AsideFolder& aside, const AlsoWrite& alsoWrite, Swap& swap) {
    const ShapefileParts& parts = table.parts;
    for (const std::filesystem::path& file : source_ ? parts.allButIndexes() : parts.withRows()) {
        copyAside(file, parts, progress, aside, swap);
    }
    ShapefileWriter writer(aside.path() / nameInOutput(parts.main(), parts), table.table->mapper(), progress);
    writer.write(changes);
    alsoWrite(writer);
    const bool hadIndex = std::filesystem::exists(parts.spatialIndex());
    const bool outdated = writer.outdatesIndex();
    if (hadIndex && outdated) {
        writer.createSpatialIndex();
        swap.files.push_back(nameInOutput(parts.spatialIndex(), parts));
    }
    writer.close();
    // The driver removes an index that it finds with the first write, so one that still fits comes last.
    if (hadIndex && !outdated && source_) {
        copyAside(parts.spatialIndex(), parts, progress, aside, swap);
    }
    if (!source_) {
        std::ranges::transform(parts.foreignIndexes(), std::back_inserter(swap.obsolete),
                               [](const std::filesystem::path& file) { return file.filename().string(); });
    }
}

void ShapefileStore::reopen(OpenTable& table) {
    table.signatures = table.parts.signatures();
    DatasetPtr dataset = openShapefile(table.parts.main(), DatasetAccess::read);
    table.table->attach(*dataset, *dataset->GetLayer(0));
    table.dataset = std::move(dataset);
}

void ShapefileStore::requireNew(const Swap& swap) const {
    for (const std::string& name : swap.files) {
        if (std::filesystem::exists(folder_ / name)) {
            throw DataError(fmt::format("{} exists; nothing is saved.", (folder_ / name).string()));
        }
    }
}

void ShapefileStore::saveWith(const ChangeSet& changes, const SaveObserver& observer, const AlsoWrite& alsoWrite) {
    if (const std::string refusal = refusalToSave(); !refusal.empty()) {
        throw DataError(fmt::format("{} {}.", path_, refusal));
    }
    const QuietErrors errors;
    SaveProgress progress(observer, changes);
    const FolderLock lock(folder_);
    recoverFolder(folder_);
    Swap swap;
    std::vector<OpenTable*> written;
    AsideFolder aside(folder_);
    for (const TableChanges& change : changes) {
        OpenTable& table = existingTable(change.table);
        requireUnchanged(table);
        writeAside(table, change, progress, aside, alsoWrite, swap);
        requireUnchanged(table);
        written.push_back(&table);
    }
    progress.beforeStep();
    if (source_) {
        requireNew(swap);
    }
    aside.commit(swap.files, swap.obsolete);
    aside.complete();
    for (OpenTable* table : written) {
        if (source_) {
            table->parts = ShapefileParts(folder_ / nameInOutput(table->parts.main(), table->parts));
        }
        reopen(*table);
    }
    source_.reset();
}

void ShapefileStore::save(const ChangeSet& changes, const SaveObserver& observer) {
    ChangeSet all = changes;
    const std::string seen = seenThrough_.stem().string();
    // A copy is made of the shapefile named even when nothing in it changed.
    if (source_ && std::ranges::find(all, seen, &TableChanges::table) == all.end()) {
        all.emplace_back().table = seen;
    }
    saveWith(all, observer, [](ShapefileWriter&) {});
}

void ShapefileStore::addField(const std::string& table, const Field& field) {
    ChangeSet none(1);
    none.front().table = table;
    saveWith(none, {}, [&](ShapefileWriter& writer) { writer.addField(field); });
}

} // namespace qz
