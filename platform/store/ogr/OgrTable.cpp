#include "platform/store/ogr/OgrTable.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "platform/store/ogr/GpkgSpatialIndex.h"
#include "platform/store/ogr/LayerWalk.h"
#include "platform/store/ogr/OgrSchema.h"
#include "platform/store/ogr/StorableCheck.h"

namespace qz {

namespace {

// A range is walked in one go when at least one row in this many of it is asked for.
constexpr ObjectId densestGap = 4;
// Ids in one condition; keeps the SQL text short.
constexpr std::size_t idsInCondition = 1000;

Envelope fromOgr(const OGREnvelope& envelope) {
    return {envelope.MinX, envelope.MinY, envelope.MaxX, envelope.MaxY};
}

// In brackets of its own, so that nothing can follow it.
std::string bracketed(const std::string& condition) {
    return "(" + condition + "\n)";
}

void sortIds(std::vector<ObjectId>& ids) {
    if (!std::is_sorted(ids.begin(), ids.end())) {
        std::sort(ids.begin(), ids.end());
    }
}

std::string idCondition(const std::string& column, std::span<const ObjectId> ids) {
    const ObjectId span = ids.back() - ids.front() + 1;
    if (span <= densestGap * static_cast<ObjectId>(ids.size())) {
        return fmt::format("{} BETWEEN {} AND {}", quotedName(column), ids.front(), ids.back());
    }
    return isOneOf(quotedName(column), ids);
}

// R-trees keep single precision, rounded outward; a window is widened so that no row is lost to the number's text.
double widened(double side, double direction) {
    return side + direction * std::abs(side) * 1e-12;
}

} // namespace

OgrTable::OgrTable(const FormatRules& rules, GDALDataset& dataset, OGRLayer& layer, const TableIdentity& identity)
    : rules_(rules), identity_(identity), dataset_(&dataset), layer_(&layer), mapper_(schema_, rules) {
    attach(dataset, layer);
}

void OgrTable::attach(GDALDataset& dataset, OGRLayer& layer) {
    dataset_ = &dataset;
    layer_ = &layer;
    schema_ = schemaOf(dataset, layer, rules_, identity_.classId, identity_.featureDataset);
    if (!name_.empty()) {
        schema_.name = name_;
    }
    hasStoredIndex_ = rules_.format == StoreFormat::geoPackage && schema_.shape &&
                      hasTable(dataset, GpkgSpatialIndex::nameFor(schema_));
    scratch_.reset();
    forgetRows();
}

void OgrTable::rename(const std::string& name) {
    name_ = name;
    schema_.name = name;
}

void OgrTable::forgetRows() {
    count_.reset();
    envelopeTree_.reset();
}

std::int64_t OgrTable::count() {
    if (!count_) {
        const QuietErrors errors;
        // Shapefiles count deleted rows as well.
        count_ = rules_.format == StoreFormat::shapefile ? static_cast<std::int64_t>(ids().size())
                                                         : layer_->GetFeatureCount(TRUE);
    }
    return *count_;
}

Envelope OgrTable::extent() {
    const QuietErrors errors;
    OGREnvelope envelope;
    const bool noRows = rules_.format == StoreFormat::shapefile && nextId() == 0;
    if (!schema_.shape || noRows ||
        (layer_->GetExtent(&envelope, FALSE) != OGRERR_NONE && layer_->GetExtent(&envelope, TRUE) != OGRERR_NONE)) {
        return {};
    }
    return fromOgr(envelope);
}

std::vector<ObjectId> OgrTable::ids() {
    std::vector<ObjectId> ids;
    walkLayer(*layer_, WalkContent::nothing, {}, [&](OGRFeature& row) { ids.push_back(row.GetFID()); });
    sortIds(ids);
    return ids;
}

const OgrTable::EnvelopeTree& OgrTable::envelopeTree() {
    if (!envelopeTree_) {
        EnvelopeTree tree;
        walkLayer(*layer_, WalkContent::shapes, {}, [&](OGRFeature& row) {
            const OGRGeometry* shape = row.GetGeometryRef();
            if (shape != nullptr && !shape->IsEmpty()) {
                OGREnvelope envelope;
                shape->getEnvelope(&envelope);
                tree.ids.push_back(row.GetFID());
                tree.envelopes.push_back(fromOgr(envelope));
            }
        });
        tree.tree = PackedEnvelopeTree(tree.envelopes);
        envelopeTree_ = std::move(tree);
    }
    return *envelopeTree_;
}

std::vector<ObjectId> OgrTable::idsInTree(const Envelope& window) {
    const EnvelopeTree& tree = envelopeTree();
    std::vector<ObjectId> ids;
    tree.tree.query(window, [&](std::size_t index) { ids.push_back(tree.ids[index]); });
    std::sort(ids.begin(), ids.end());
    return ids;
}

std::vector<ObjectId> OgrTable::idsInStoredIndex(const Envelope& window) {
    const std::string shape = "t." + quotedName(schema_.fields[*schema_.shapeField].name);
    const std::string id = "t." + quotedName(schema_.fields[0].name);
    const std::string sql = fmt::format(
        "SELECT CAST(r.id AS INTEGER) AS row_id, ST_MinX({0}), ST_MinY({0}), ST_MaxX({0}), ST_MaxY({0}) "
        "FROM {1} r JOIN {2} t ON {3} = r.id "
        "WHERE r.minx <= {4:.17g} AND r.maxx >= {5:.17g} AND r.miny <= {6:.17g} AND r.maxy >= {7:.17g}",
        shape, quotedName(GpkgSpatialIndex::nameFor(schema_)), quotedName(schema_.name), id, widened(window.xMax, 1),
        widened(window.xMin, -1), widened(window.yMax, 1), widened(window.yMin, -1));
    std::vector<ObjectId> ids;
    forEachRow(*dataset_, sql, [&](OGRFeature& row) {
        const Envelope envelope{row.GetFieldAsDouble(1), row.GetFieldAsDouble(2), row.GetFieldAsDouble(3),
                                row.GetFieldAsDouble(4)};
        if (envelope.intersects(window)) {
            ids.push_back(row.GetFieldAsInteger64(0));
        }
    });
    std::sort(ids.begin(), ids.end());
    return ids;
}

std::vector<ObjectId> OgrTable::idsIn(const Envelope& window) {
    if (!schema_.shape || window.isEmpty()) {
        return {};
    }
    return hasStoredIndex_ ? idsInStoredIndex(window) : idsInTree(window);
}

std::vector<ObjectId> OgrTable::idsWhere(const std::string& condition) {
    std::vector<ObjectId> ids;
    // Conditions that GDAL evaluates itself look at the row as it was read.
    const WalkContent content = rules_.sqlConditions ? WalkContent::nothing : WalkContent::everything;
    walkLayer(*layer_, content, bracketed(condition), [&](OGRFeature& row) { ids.push_back(row.GetFID()); });
    sortIds(ids);
    return ids;
}

std::vector<ObjectId> OgrTable::idsWhere(const std::string& condition, std::span<const RecordPtr> records) {
    return scratch_.satisfying(*layer_, mapper_, rules_.sqlConditions, bracketed(condition), records);
}

RecordPtr OgrTable::read(ObjectId id) {
    const QuietErrors errors;
    const OgrFeaturePtr feature(layer_->GetFeature(id));
    if (!feature) {
        return nullptr;
    }
    if (rules_.format == StoreFormat::fileGeodatabase) {
        correctOldDates(*feature);
    }
    return mapper_.record(*feature);
}

std::vector<RecordPtr> OgrTable::readFiltered(std::span<const ObjectId> ids) {
    std::vector<RecordPtr> records(ids.size());
    walkLayer(*layer_, WalkContent::everything, idCondition(schema_.fields[0].name, ids), [&](OGRFeature& row) {
        const auto at = std::lower_bound(ids.begin(), ids.end(), static_cast<ObjectId>(row.GetFID()));
        if (at != ids.end() && *at == row.GetFID()) {
            records[static_cast<std::size_t>(at - ids.begin())] = mapper_.record(row);
        }
    });
    return records;
}

std::vector<RecordPtr> OgrTable::read(std::span<const ObjectId> ids) {
    std::vector<RecordPtr> records;
    records.reserve(ids.size());
    for (std::size_t from = 0; from < ids.size(); from += idsInCondition) {
        const auto chunk = ids.subspan(from, std::min(idsInCondition, ids.size() - from));
        if (rules_.filtersByIdFast && chunk.size() > 1) {
            std::ranges::move(readFiltered(chunk), std::back_inserter(records));
        } else {
            std::ranges::transform(chunk, std::back_inserter(records), [this](ObjectId id) { return read(id); });
        }
    }
    return records;
}

ObjectId OgrTable::nextId() {
    const QuietErrors errors;
    const std::string table = quotedName(schema_.name);
    const std::string id = quotedName(schema_.fields[0].name);
    switch (rules_.format) {
    case StoreFormat::shapefile:
        return layer_->GetFeatureCount(TRUE);
    case StoreFormat::geoPackage:
        return 1 + std::max(queryInteger(*dataset_, fmt::format("SELECT MAX({}) FROM {}", id, table)).value_or(0),
                            queryInteger(*dataset_, fmt::format("SELECT seq FROM sqlite_sequence WHERE name = {}",
                                                                quotedText(schema_.name)))
                                .value_or(0));
    case StoreFormat::postgis:
        return 1 + queryInteger(*dataset_, fmt::format("SELECT MAX({}) FROM {}", id, table)).value_or(0);
    case StoreFormat::fileGeodatabase:
        break;
    }
    const std::vector<ObjectId> all = ids();
    return all.empty() ? 1 : all.back() + 1;
}

void OgrTable::checkStorable(const FeatureRecord& record) const {
    qz::checkStorable(schema_, rules_, *layer_, record);
}

} // namespace qz
