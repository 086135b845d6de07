#include "platform/store/ogr/GpkgWriter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "platform/store/ogr/LayerWalk.h"

namespace qz {

namespace {

constexpr std::size_t chunkSize = 1000;
// From this many updates on, dropping and creating triggers costs less than running them.
constexpr std::size_t manyUpdates = 200;

Envelope envelopeOf(const OGRGeometry* shape) {
    if (shape == nullptr || shape->IsEmpty()) {
        return {};
    }
    OGREnvelope envelope;
    shape->getEnvelope(&envelope);
    return {envelope.MinX, envelope.MinY, envelope.MaxX, envelope.MaxY};
}

float roundedDown(double value) {
    const auto nearest = static_cast<float>(value);
    return static_cast<double>(nearest) > value ? std::nextafter(nearest, -std::numeric_limits<float>::infinity())
                                                : nearest;
}

float roundedUp(double value) {
    return -roundedDown(-value);
}

// The spatial index keeps single precision, rounded outward.
bool equalInIndex(const Envelope& a, const Envelope& b) {
    if (a.isEmpty() || b.isEmpty()) {
        return a.isEmpty() == b.isEmpty();
    }
    return roundedDown(a.xMin) == roundedDown(b.xMin) && roundedDown(a.yMin) == roundedDown(b.yMin) &&
           roundedUp(a.xMax) == roundedUp(b.xMax) && roundedUp(a.yMax) == roundedUp(b.yMax);
}

template <typename Wanted> std::vector<ObjectId> idsOf(std::span<const RecordChange> changes, Wanted wanted) {
    std::vector<ObjectId> ids;
    for (const RecordChange& change : changes) {
        if (wanted(change)) {
            ids.push_back(change.record->id);
        }
    }
    return ids;
}

bool hasTable(GDALDataset& dataset, const std::string& name) {
    return queryInteger(dataset,
                        fmt::format("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = {}", quotedText(name)))
        .has_value();
}

} // namespace

GpkgWriter::GpkgWriter(GDALDataset& dataset, OGRLayer& layer, const OgrTable& table, SaveProgress& progress)
    : dataset_(dataset), schema_(table.schema()), mapper_(table.mapper()), rows_(layer, table.mapper()), layer_(layer),
      progress_(progress), table_(quotedName(schema_.name)), id_(quotedName(schema_.fields[0].name)) {
    if (schema_.shapeField) {
        shape_ = quotedName(schema_.fields[*schema_.shapeField].name);
    }
    layer_.ResetReading();
}

std::string GpkgWriter::rtree() const {
    return "rtree_" + schema_.name + "_" + schema_.fields[*schema_.shapeField].name;
}

void GpkgWriter::write(const TableChanges& changes) {
    const std::optional<std::int64_t> count = storedCount();
    for (const ObjectId id : changes.deletes) {
        progress_.beforeRecord();
        rows_.remove(id);
    }
    update(changes.updates);
    for (const RecordPtr& record : changes.inserts) {
        progress_.beforeRecord();
        rows_.insert(*record);
    }
    giveUpIds(changes.nextId);
    if (count) {
        storeCount(*count + std::ssize(changes.inserts) - std::ssize(changes.deletes));
    }
}

std::optional<std::int64_t> GpkgWriter::storedCount() {
    if (!hasTable(dataset_, "gpkg_ogr_contents")) {
        return std::nullopt;
    }
    return queryInteger(dataset_,
                        "SELECT feature_count FROM gpkg_ogr_contents WHERE table_name = " + quotedText(schema_.name));
}

// The driver gives up the count that it keeps when it sees an INSERT or a DELETE, even one of another table.
void GpkgWriter::storeCount(std::int64_t count) {
    executeSql(dataset_, fmt::format("UPDATE gpkg_ogr_contents SET feature_count = {} WHERE table_name = {}", count,
                                     quotedText(schema_.name)));
}

void GpkgWriter::update(std::span<const RecordChange> updates) {
    const bool many = updates.size() >= manyUpdates && schema_.shape && hasTable(dataset_, rtree());
    if (many) {
        dropIndexTriggers();
    }
    for (std::size_t from = 0; from < updates.size(); from += chunkSize) {
        updateChunk(updates.subspan(from, std::min(chunkSize, updates.size() - from)));
    }
    if (many) {
        restoreIndexTriggers();
    }
}

void GpkgWriter::dropIndexTriggers() {
    std::vector<std::string> names;
    const std::string start = rtree() + "_update";
    forEachRow(dataset_,
               fmt::format("SELECT name, sql FROM sqlite_master WHERE type = 'trigger' AND substr(name, 1, {}) = {} "
                           "ORDER BY name",
                           start.size(), quotedText(start)),
               [&](OGRFeature& row) {
                   names.emplace_back(row.GetFieldAsString(0));
                   droppedTriggers_.emplace_back(row.GetFieldAsString(1));
               });
    for (const std::string& name : names) {
        executeSql(dataset_, "DROP TRIGGER " + quotedName(name));
    }
    maintainsIndex_ = true;
}

void GpkgWriter::restoreIndexTriggers() {
    for (const std::string& sql : droppedTriggers_) {
        executeSql(dataset_, sql);
    }
    droppedTriggers_.clear();
    maintainsIndex_ = false;
}

void GpkgWriter::updateChunk(std::span<const RecordChange> chunk) {
    const auto changesShape = [](const RecordChange& change) { return change.shapeChanged; };
    const std::vector<ObjectId> reshaped = idsOf(chunk, changesShape);
    const std::vector<ObjectId> unshaped =
        schema_.shape ? idsOf(chunk, std::not_fn(changesShape)) : std::vector<ObjectId>();
    const std::vector<Envelope> before = maintainsIndex_ ? storedEnvelopes(reshaped) : std::vector<Envelope>();
    std::vector<ObjectId> moved;
    std::size_t reshapedDone = 0;
    keepShapes(unshaped);
    for (const RecordChange& change : chunk) {
        progress_.beforeRecord();
        prepareFor(change.changedValues);
        OGRFeature feature(layer_.GetLayerDefn());
        feature.SetFID(change.record->id);
        mapper_.setChangedValues(feature, change);
        if (change.shapeChanged) {
            mapper_.setShape(feature, *change.record);
            if (maintainsIndex_ && !equalInIndex(before[reshapedDone++], envelopeOf(feature.GetGeometryRef()))) {
                moved.push_back(change.record->id);
            }
        } else if (schema_.shape) {
            // The shape is always written; a column may refuse null until the kept one is back.
            feature.SetGeometryDirectly(OGRGeometryFactory::createGeometry(wkbMultiPoint));
        }
        rows_.write(feature);
    }
    restoreShapes(unshaped);
    indexAgain(moved);
}

// A field that is unset in a feature is not written. The driver goes on with the statement it made for the fields of
// the feature before, so it is made to forget it when other fields are set.
void GpkgWriter::prepareFor(const std::vector<bool>& writtenFields) {
    if (writtenFields != preparedFor_) {
        layer_.ResetReading();
        preparedFor_ = writtenFields;
    }
}

void GpkgWriter::keepShapes(const std::vector<ObjectId>& ids) {
    if (ids.empty()) {
        return;
    }
    executeSql(dataset_, "CREATE TEMP TABLE IF NOT EXISTS qz_kept_shapes (id INTEGER PRIMARY KEY, shape BLOB)");
    executeSql(dataset_, fmt::format("INSERT INTO temp.qz_kept_shapes SELECT {}, {} FROM {} WHERE {} IN ({})", id_,
                                     shape_, table_, id_, idList(ids)));
}

void GpkgWriter::restoreShapes(const std::vector<ObjectId>& ids) {
    if (ids.empty()) {
        return;
    }
    executeSql(dataset_,
               fmt::format("UPDATE {0} SET {1} = (SELECT shape FROM temp.qz_kept_shapes k WHERE k.id = {0}.{2}) "
                           "WHERE {2} IN ({3})",
                           table_, shape_, id_, idList(ids)));
    executeSql(dataset_, "DELETE FROM temp.qz_kept_shapes");
}

std::vector<Envelope> GpkgWriter::storedEnvelopes(const std::vector<ObjectId>& ids) {
    std::vector<Envelope> envelopes(ids.size());
    if (ids.empty()) {
        return envelopes;
    }
    const std::string sql = fmt::format(
        "SELECT CAST({0} AS INTEGER) AS row_id, ST_MinX({1}), ST_MinY({1}), ST_MaxX({1}), ST_MaxY({1}) FROM {2} "
        "WHERE {0} IN ({3})",
        id_, shape_, table_, idList(ids));
    forEachRow(dataset_, sql, [&](OGRFeature& row) {
        const auto at = std::lower_bound(ids.begin(), ids.end(), static_cast<ObjectId>(row.GetFieldAsInteger64(0)));
        if (row.IsFieldSetAndNotNull(1)) {
            envelopes[static_cast<std::size_t>(at - ids.begin())] = {row.GetFieldAsDouble(1), row.GetFieldAsDouble(2),
                                                                     row.GetFieldAsDouble(3), row.GetFieldAsDouble(4)};
        }
    });
    return envelopes;
}

void GpkgWriter::indexAgain(const std::vector<ObjectId>& ids) {
    if (ids.empty()) {
        return;
    }
    const std::string index = quotedName(rtree());
    executeSql(dataset_, fmt::format("DELETE FROM {} WHERE id IN ({})", index, idList(ids)));
    executeSql(
        dataset_,
        fmt::format("INSERT INTO {0} SELECT {1}, ST_MinX({2}), ST_MaxX({2}), ST_MinY({2}), ST_MaxY({2}) FROM {3} "
                    "WHERE {1} IN ({4}) AND {2} NOT NULL AND NOT ST_IsEmpty({2})",
                    index, id_, shape_, table_, idList(ids)));
}

// Ids that were handed out and given up are not handed out again.
void GpkgWriter::giveUpIds(ObjectId nextId) {
    if (nextId > 0 && hasTable(dataset_, "sqlite_sequence")) {
        executeSql(dataset_, fmt::format("UPDATE sqlite_sequence SET seq = {0} WHERE name = {1} AND seq < {0}",
                                         nextId - 1, quotedText(schema_.name)));
    }
}

} // namespace qz
