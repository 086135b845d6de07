#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/data/FeatureSource.h"
#include "platform/geometry/EnvelopeIndex.h"

namespace qz {

// A table in memory.
class MemoryTable final : public FeatureSource {
public:
    // An object id and, when it has shapes, a shape field are added in front when the schema has none.
    explicit MemoryTable(Schema schema);

    // The values are those of the fields after the object id and the shape, converted to their types.
    ObjectId add(std::optional<Geometry> shape, const std::vector<Value>& values = {});

    [[nodiscard]] const Schema& schema() const override { return schema_; }
    [[nodiscard]] std::int64_t count() override { return static_cast<std::int64_t>(rows_.size()); }
    [[nodiscard]] Envelope extent() override;
    [[nodiscard]] std::vector<ObjectId> ids() override;
    [[nodiscard]] std::vector<ObjectId> idsIn(const Envelope& window) override;
    [[nodiscard]] std::vector<ObjectId> idsWhere(const std::string& condition) override;
    [[nodiscard]] std::vector<ObjectId> idsWhere(const std::string& condition,
                                                 std::span<const RecordPtr> records) override;
    [[nodiscard]] RecordPtr read(ObjectId id) override;
    [[nodiscard]] std::vector<RecordPtr> read(std::span<const ObjectId> ids) override;
    [[nodiscard]] ObjectId nextId() override { return nextId_; }
    void checkStorable(const FeatureRecord& record) const override;

    // The rows after the changes. Throws DataError when they don't fit the rows that are there.
    using Rows = std::map<ObjectId, RecordPtr>;
    [[nodiscard]] Rows changed(const TableChanges& changes, const std::function<void()>& beforeWrite) const;
    void replaceRows(Rows rows, ObjectId nextId);
    void addField(const Field& field);

private:
    // Where the rows are; made by the first question about places after a change.
    struct Places {
        std::vector<ObjectId> ids; // of the rows with a shape
        PackedEnvelopeTree tree;   // of their envelopes
        Envelope extent;
    };
    [[nodiscard]] const Places& places();

    Schema schema_;
    Rows rows_;
    ObjectId nextId_ = 1;
    std::optional<Places> places_;
};

// A data set in memory, with everything that any format can hold.
class MemoryStore final : public FeatureStore {
public:
    explicit MemoryStore(std::string name = "memory", WorkspaceType type = WorkspaceType::localDatabase)
        : name_(std::move(name)), type_(type) {}

    MemoryTable& addTable(Schema schema);

    [[nodiscard]] const std::string& path() const override { return name_; }
    [[nodiscard]] WorkspaceType workspaceType() const override { return type_; }
    [[nodiscard]] const std::string& datasetCategory() const override;
    [[nodiscard]] std::vector<std::string> tableNames() override;
    [[nodiscard]] FeatureSource* table(const std::string& name) override;
    [[nodiscard]] std::string refusalToSave() const override { return {}; }
    [[nodiscard]] bool savesSingleRowsCheaply() const override { return true; }
    void save(const ChangeSet& changes, const SaveObserver& observer) override;
    void addField(const std::string& table, const Field& field) override;

private:
    [[nodiscard]] MemoryTable& existing(const std::string& name);

    std::string name_;
    WorkspaceType type_;
    std::vector<std::unique_ptr<MemoryTable>> tables_;
};

} // namespace qz
