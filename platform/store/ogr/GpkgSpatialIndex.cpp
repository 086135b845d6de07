#include "platform/store/ogr/GpkgSpatialIndex.h"

#include <algorithm>
#include <span>

#include <fmt/format.h>

namespace qz {

namespace {

// Ids in one condition; keeps the SQL text short.
constexpr std::size_t chunkSize = 1000;

template <typename See> void forEachChunk(const std::vector<ObjectId>& ids, See see) {
    for (std::size_t from = 0; from < ids.size(); from += chunkSize) {
        see(std::span(ids).subspan(from, std::min(chunkSize, ids.size() - from)));
    }
}

} // namespace

std::string GpkgSpatialIndex::nameFor(const Schema& schema) {
    return "rtree_" + schema.name + "_" + schema.fields[*schema.shapeField].name;
}

GpkgSpatialIndex::GpkgSpatialIndex(GDALDataset& dataset, const Schema& schema)
    : dataset_(dataset), table_(schema.name), name_(nameFor(schema)), quotedName_(quotedName(name_)),
      id_(quotedName(schema.fields[0].name)), shape_(quotedName(schema.fields[*schema.shapeField].name)) {}

void GpkgSpatialIndex::noteMoved(ObjectId id) {
    noteRemoved(id);
    noteAdded(id);
}

void GpkgSpatialIndex::takeOver() {
    std::vector<std::string> names;
    forEachRow(dataset_,
               fmt::format("SELECT name, sql FROM sqlite_master WHERE type = 'trigger' AND tbl_name = {} AND "
                           "substr(name, 1, {}) = {} ORDER BY rowid",
                           quotedText(table_), name_.size() + 1, quotedText(name_ + "_")),
               [&](OGRFeature& row) {
                   names.emplace_back(row.GetFieldAsString(0));
                   triggers_.emplace_back(row.GetFieldAsString(1));
               });
    for (const std::string& name : names) {
        executeSql(dataset_, "DROP TRIGGER " + quotedName(name));
    }
}

void GpkgSpatialIndex::complete() {
    if (isMadeAnewFaster()) {
        makeAnew();
    } else {
        removeOutdated();
        addMissing();
    }
    for (const std::string& sql : triggers_) {
        executeSql(dataset_, sql);
    }
}

// To remove an entry costs as much as to add one.
bool GpkgSpatialIndex::isMadeAnewFaster() const {
    const auto entries = queryInteger(dataset_, "SELECT COUNT(*) FROM " + quotedName(name_ + "_rowid")).value_or(0);
    return 2 * std::ssize(outdated_) > entries;
}

void GpkgSpatialIndex::makeAnew() {
    const std::string sql = queryText(
        dataset_, fmt::format("SELECT sql FROM sqlite_master WHERE type = 'table' AND name = {}", quotedText(name_)));
    executeSql(dataset_, "DROP TABLE " + quotedName_);
    executeSql(dataset_, sql);
    addEntries("1");
}

void GpkgSpatialIndex::removeOutdated() {
    forEachChunk(outdated_, [this](std::span<const ObjectId> ids) {
        executeSql(dataset_, fmt::format("DELETE FROM {} WHERE {}", quotedName_, isOneOf("id", ids)));
    });
}

void GpkgSpatialIndex::addMissing() {
    forEachChunk(missing_, [this](std::span<const ObjectId> ids) { addEntries(isOneOf(id_, ids)); });
}

void GpkgSpatialIndex::addEntries(const std::string& condition) {
    executeSql(
        dataset_,
        fmt::format(
            "INSERT OR REPLACE INTO {0} SELECT {1}, ST_MinX({2}), ST_MaxX({2}), ST_MinY({2}), ST_MaxY({2}) FROM {3} "
            "WHERE {4} AND {2} NOT NULL AND NOT ST_IsEmpty({2})",
            quotedName_, id_, shape_, quotedName(table_), condition));
}

} // namespace qz
