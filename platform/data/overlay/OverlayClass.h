#pragma once

#include <memory>

#include "platform/data/overlay/DraftRow.h"
#include "platform/data/overlay/OverlayWorkspace.h"

namespace qz {

// A table of an OverlayWorkspace.
class OverlayClass final : public FeatureClass {
public:
    OverlayClass(OverlayWorkspace& workspace, FeatureSource& source) : workspace_(workspace), table_(source) {}

    [[nodiscard]] EditedTable& editedTable() noexcept { return table_; }

    [[nodiscard]] const Schema& schema() const override { return table_.schema(); }
    [[nodiscard]] Workspace& workspace() const override { return workspace_; }
    [[nodiscard]] std::int64_t count() override { return table_.count(); }
    [[nodiscard]] std::int64_t count(const FeatureFilter& filter) override;
    [[nodiscard]] Envelope extent() override { return table_.extent(); }
    [[nodiscard]] std::vector<ObjectId> ids(const FeatureFilter& filter) override { return table_.select(filter); }
    [[nodiscard]] CursorPtr search(const FeatureFilter& filter) override;
    [[nodiscard]] CursorPtr update(const FeatureFilter& filter) override;
    [[nodiscard]] CursorPtr insert() override;
    [[nodiscard]] FeaturePtr feature(ObjectId id) override;
    [[nodiscard]] FeaturePtr createFeature() override;
    [[nodiscard]] std::unique_ptr<FeatureBuffer> createBuffer() override;
    void addField(const Field& field) override;

    // Writes the draft of an existing row. Throws PlatformError when the row was deleted.
    void storeRow(Draft& draft);
    // Writes the draft as a new row with the draft's id.
    void insertRow(Draft& draft);
    void deleteRow(ObjectId id);
    [[nodiscard]] ObjectId newId() { return table_.newId(); }
    // Direct writes made so far are saved where that is cheap.
    void settleDirectWrites() { workspace_.settleDirectWrites(); }

private:
    OverlayWorkspace& workspace_;
    EditedTable table_;
};

// A feature of an OverlayClass; one that is new exists for others after its first store().
class OverlayFeature final : public DraftRow<Feature> {
public:
    OverlayFeature(OverlayClass& featureClass, RecordPtr record, bool isNew)
        : DraftRow(Draft(featureClass.schema(), std::move(record))), class_(featureClass), isNew_(isNew) {}

    [[nodiscard]] const OverlayClass& featureClass() const noexcept { return class_; }
    [[nodiscard]] ObjectId objectId() const override { return draft_.id(); }
    void store() override;
    void remove() override;

private:
    OverlayClass& class_;
    bool isNew_;
};

class OverlayBuffer final : public DraftRow<FeatureBuffer> {
public:
    explicit OverlayBuffer(const OverlayClass& featureClass)
        : DraftRow(Draft(featureClass.schema(), freshRecord(featureClass.schema(), 0))) {}

    void clear() override { draft_ = Draft(schema(), freshRecord(schema(), 0)); }
};

} // namespace qz
