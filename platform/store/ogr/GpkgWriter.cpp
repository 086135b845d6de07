#include "platform/store/ogr/GpkgWriter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "platform/store/ogr/LayerWalk.h"

namespace qz {

namespace {

constexpr std::size_t chunkSize = 1000;
// From this many rows on, dropping and creating triggers costs less than running them.
constexpr std::size_t manyRows = 200;

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

template <typename Item, typename Write> void forEachChunk(std::span<const Item> items, Write write) {
    for (std::size_t from = 0; from < items.size(); from += chunkSize) {
        write(items.subspan(from, std::min(chunkSize, items.size() - from)));
    }
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

} // namespace

GpkgWriter::GpkgWriter(GDALDataset& dataset, OGRLayer& layer, const OgrTable& table, SaveProgress& progress)
    : dataset_(dataset), schema_(table.schema()), mapper_(table.mapper()), rows_(layer, table.mapper()), layer_(layer),
      progress_(progress), table_(quotedName(schema_.name)), id_(quotedName(schema_.fields[0].name)) {
    if (schema_.shapeField) {
        shape_ = quotedName(schema_.fields[*schema_.shapeField].name);
    }
    layer_.ResetReading();
}

void GpkgWriter::write(const TableChanges& changes) {
    const std::optional<std::int64_t> count = storedCount();
    takeIndexOver(changes);
    remove(changes.deletes);
    update(changes.updates);
    insert(changes.inserts);
    if (index_) {
        progress_.beforeStep();
        index_->complete();
    }
    giveUpIds(changes.nextId);
    if (count) {
        storeCount(*count + std::ssize(changes.inserts) - std::ssize(changes.deletes));
    }
}

void GpkgWriter::takeIndexOver(const TableChanges& changes) {
    const std::size_t rows = changes.deletes.size() + changes.updates.size() + changes.inserts.size();
    if (rows >= manyRows && schema_.shape && hasTable(dataset_, GpkgSpatialIndex::nameFor(schema_))) {
        index_.emplace(dataset_, schema_).takeOver();
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

// The driver notes that the table changed only when it deletes a row itself.
void GpkgWriter::remove(std::span<const ObjectId> ids) {
    if (ids.empty()) {
        return;
    }
    removeRow(ids.front());
    forEachChunk(ids.subspan(1), [this](std::span<const ObjectId> chunk) { removeRows(chunk); });
}

void GpkgWriter::removeRow(ObjectId id) {
    progress_.beforeRecord();
    rows_.remove(id);
    if (index_) {
        index_->noteRemoved(id);
    }
}

// All in one statement. When rows are missing, one by one, for the error to name the first.
void GpkgWriter::removeRows(std::span<const ObjectId> ids) {
    const std::string condition = fmt::format("{} WHERE {}", table_, isOneOf(id_, ids));
    if (queryInteger(dataset_, "SELECT COUNT(*) FROM " + condition) != std::ssize(ids)) {
        std::ranges::for_each(ids, [this](ObjectId id) { removeRow(id); });
        return;
    }
    for (const ObjectId id : ids) {
        progress_.beforeRecord();
        if (index_) {
            index_->noteRemoved(id);
        }
    }
    executeSql(dataset_, "DELETE FROM " + condition);
}

void GpkgWriter::insert(std::span<const RecordPtr> records) {
    for (const RecordPtr& record : records) {
        progress_.beforeRecord();
        rows_.insert(*record);
        if (index_) {
            index_->noteAdded(record->id);
        }
    }
}

void GpkgWriter::update(std::span<const RecordChange> updates) {
    forEachChunk(updates, [this](std::span<const RecordChange> chunk) { updateChunk(chunk); });
}

void GpkgWriter::updateChunk(std::span<const RecordChange> chunk) {
    const auto changesShape = [](const RecordChange& change) { return change.shapeChanged; };
    const std::vector<ObjectId> reshaped = idsOf(chunk, changesShape);
    const std::vector<ObjectId> unshaped =
        schema_.shape ? idsOf(chunk, std::not_fn(changesShape)) : std::vector<ObjectId>();
    const std::vector<Envelope> before = index_ ? storedEnvelopes(reshaped) : std::vector<Envelope>();
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
            if (index_ && !equalInIndex(before[reshapedDone++], envelopeOf(feature.GetGeometryRef()))) {
                index_->noteMoved(change.record->id);
            }
        } else if (schema_.shape) {
            // The shape is always written; a column may refuse null until the kept one is back.
            feature.SetGeometryDirectly(OGRGeometryFactory::createGeometry(wkbMultiPoint));
        }
        rows_.write(feature);
    }
    restoreShapes(unshaped);
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
    executeSql(dataset_, fmt::format("INSERT INTO temp.qz_kept_shapes SELECT {}, {} FROM {} WHERE {}", id_, shape_,
                                     table_, isOneOf(id_, ids)));
}

void GpkgWriter::restoreShapes(const std::vector<ObjectId>& ids) {
    if (ids.empty()) {
        return;
    }
    executeSql(dataset_,
               fmt::format("UPDATE {0} SET {1} = (SELECT shape FROM temp.qz_kept_shapes k WHERE k.id = {0}.{2}) "
                           "WHERE {3}",
                           table_, shape_, id_, isOneOf(id_, ids)));
    executeSql(dataset_, "DELETE FROM temp.qz_kept_shapes");
}

std::vector<Envelope> GpkgWriter::storedEnvelopes(const std::vector<ObjectId>& ids) {
    std::vector<Envelope> envelopes(ids.size());
    if (ids.empty()) {
        return envelopes;
    }
    const std::string sql = fmt::format(
        "SELECT CAST({0} AS INTEGER) AS row_id, ST_MinX({1}), ST_MinY({1}), ST_MaxX({1}), ST_MaxY({1}) FROM {2} "
        "WHERE {3}",
        id_, shape_, table_, isOneOf(id_, ids));
    forEachRow(dataset_, sql, [&](OGRFeature& row) {
        const auto at = std::lower_bound(ids.begin(), ids.end(), static_cast<ObjectId>(row.GetFieldAsInteger64(0)));
        if (row.IsFieldSetAndNotNull(1)) {
            envelopes[static_cast<std::size_t>(at - ids.begin())] = {row.GetFieldAsDouble(1), row.GetFieldAsDouble(2),
                                                                     row.GetFieldAsDouble(3), row.GetFieldAsDouble(4)};
        }
    });
    return envelopes;
}

// Ids that were handed out and given up are not handed out again.
void GpkgWriter::giveUpIds(ObjectId nextId) {
    if (nextId > 0 && hasTable(dataset_, "sqlite_sequence")) {
        executeSql(dataset_, fmt::format("UPDATE sqlite_sequence SET seq = {0} WHERE name = {1} AND seq < {0}",
                                         nextId - 1, quotedText(schema_.name)));
    }
}

} // namespace qz
