#include "platform/store/memory/MemoryStore.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/Error.h"
#include "platform/store/ogr/MemoryConditions.h"

namespace qz {

namespace {

Field systemField(const char* name, FieldType type) {
    Field field;
    field.name = name;
    field.alias = name;
    field.type = type;
    field.editable = false;
    return field;
}

Schema completed(Schema schema) {
    if (!schema.objectIdField) {
        schema.fields.insert(schema.fields.begin(), systemField("OBJECTID", FieldType::objectId));
        schema.objectIdField = 0;
        if (schema.shape) {
            schema.fields.insert(schema.fields.begin() + 1, systemField("SHAPE", FieldType::geometry));
            schema.shapeField = 1;
        }
    }
    return schema;
}

void requireRow(const MemoryTable::Rows& rows, ObjectId id, const Schema& schema) {
    if (!rows.contains(id)) {
        throw DataError(fmt::format("{} has no row {} to write.", schema.name, id));
    }
}

} // namespace

MemoryTable::MemoryTable(Schema schema) : schema_(completed(std::move(schema))) {}

ObjectId MemoryTable::add(std::optional<Geometry> shape, const std::vector<Value>& values) {
    auto record = std::make_shared<FeatureRecord>();
    record->id = nextId_++;
    record->shape = std::move(shape);
    if (record->shape && schema_.shape) {
        record->shape->traits() = {schema_.shape->hasZ, schema_.shape->hasM, schema_.shape->spatialReference};
    }
    record->values.resize(schema_.fields.size());
    const std::size_t first = schema_.shapeField ? 2 : 1;
    for (std::size_t i = 0; i < values.size(); ++i) {
        record->values[first + i] = convertedTo(schema_.fields[first + i], values[i]);
    }
    rows_.emplace(record->id, record);
    places_.reset();
    return record->id;
}

const MemoryTable::Places& MemoryTable::places() {
    if (!places_) {
        Places made;
        std::vector<Envelope> envelopes;
        for (const auto& [id, row] : rows_) {
            if (row->shape) {
                made.ids.push_back(id);
                envelopes.push_back(row->shape->envelope());
                made.extent.expandToInclude(envelopes.back());
            }
        }
        made.tree = PackedEnvelopeTree(envelopes);
        places_ = std::move(made);
    }
    return *places_;
}

Envelope MemoryTable::extent() {
    return places().extent;
}

std::vector<ObjectId> MemoryTable::ids() {
    std::vector<ObjectId> all;
    for (const auto& [id, row] : rows_) {
        all.push_back(id);
    }
    return all;
}

std::vector<ObjectId> MemoryTable::idsIn(const Envelope& window) {
    std::vector<ObjectId> hits;
    const Places& known = places();
    known.tree.query(window, [&](std::size_t i) { hits.push_back(known.ids[i]); });
    std::ranges::sort(hits);
    return hits;
}

std::vector<ObjectId> MemoryTable::idsWhere(const std::string& condition) {
    std::vector<RecordPtr> all;
    for (const auto& [id, row] : rows_) {
        all.push_back(row);
    }
    return idsWhere(condition, all);
}

std::vector<ObjectId> MemoryTable::idsWhere(const std::string& condition, std::span<const RecordPtr> records) {
    return idsOfMatchingRecords(schema_, condition, records);
}

RecordPtr MemoryTable::read(ObjectId id) {
    const auto found = rows_.find(id);
    return found == rows_.end() ? nullptr : found->second;
}

std::vector<RecordPtr> MemoryTable::read(std::span<const ObjectId> ids) {
    std::vector<RecordPtr> records;
    for (const ObjectId id : ids) {
        records.push_back(read(id));
    }
    return records;
}

void MemoryTable::checkStorable(const FeatureRecord& /*record*/) const {}

MemoryTable::Rows MemoryTable::changed(const TableChanges& changes, const std::function<void()>& beforeWrite) const {
    Rows rows = rows_;
    for (const RecordPtr& record : changes.inserts) {
        beforeWrite();
        if (!rows.emplace(record->id, record).second) {
            throw DataError(fmt::format("{} has a row {} already.", schema_.name, record->id));
        }
    }
    for (const RecordChange& change : changes.updates) {
        beforeWrite();
        requireRow(rows, change.record->id, schema_);
        rows[change.record->id] = change.record;
    }
    for (const ObjectId id : changes.deletes) {
        beforeWrite();
        requireRow(rows, id, schema_);
        rows.erase(id);
    }
    return rows;
}

void MemoryTable::replaceRows(Rows rows, ObjectId nextId) {
    rows_ = std::move(rows);
    places_.reset();
    nextId_ = std::max(nextId_, nextId);
}

void MemoryTable::addField(const Field& field) {
    const Value initial = field.defaultValue ? convertedTo(field, *field.defaultValue) : Value();
    schema_.fields.push_back(field);
    for (auto& [id, row] : rows_) {
        auto wider = std::make_shared<FeatureRecord>(*row);
        wider->values.push_back(initial);
        row = std::move(wider);
    }
}

MemoryTable& MemoryStore::addTable(Schema schema) {
    tables_.push_back(std::make_unique<MemoryTable>(std::move(schema)));
    return *tables_.back();
}

const std::string& MemoryStore::datasetCategory() const {
    static const std::string files = "Shapefile Feature Class";
    static const std::string database = "Memory Feature Class";
    return type_ == WorkspaceType::fileSystem ? files : database;
}

std::vector<std::string> MemoryStore::tableNames() {
    std::vector<std::string> names;
    for (const auto& table : tables_) {
        names.push_back(table->schema().name);
    }
    std::stable_partition(names.begin(), names.end(),
                          [this](const std::string& name) { return existing(name).schema().shape.has_value(); });
    return names;
}

FeatureSource* MemoryStore::table(const std::string& name) {
    const auto found =
        std::find_if(tables_.begin(), tables_.end(), [&](const auto& table) { return table->schema().name == name; });
    return found == tables_.end() ? nullptr : found->get();
}

MemoryTable& MemoryStore::existing(const std::string& name) {
    if (FeatureSource* found = table(name)) {
        return static_cast<MemoryTable&>(*found);
    }
    throw DataError(fmt::format("{} has no table {}.", name_, name));
}

void MemoryStore::save(const ChangeSet& changes, const SaveObserver& observer) {
    std::size_t total = 0;
    for (const TableChanges& table : changes) {
        total += table.inserts.size() + table.updates.size() + table.deletes.size();
    }
    std::size_t done = 0;
    std::vector<std::pair<MemoryTable*, MemoryTable::Rows>> results;
    for (const TableChanges& table : changes) {
        MemoryTable& target = existing(table.table);
        results.emplace_back(&target, target.changed(table, [&] { observer(done++, total); }));
    }
    for (std::size_t i = 0; i < changes.size(); ++i) {
        results[i].first->replaceRows(std::move(results[i].second), changes[i].nextId);
    }
}

void MemoryStore::addField(const std::string& table, const Field& field) {
    existing(table).addField(field);
}

} // namespace qz
