#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/data/FeatureClass.h"
#include "platform/data/overlay/EditLog.h"
#include "platform/data/overlay/EditedTable.h"

namespace qz {

class OverlayClass;

struct OverlayOptions {
    // Told of every single write of a save; see SaveObserver. By default nobody is.
    SaveObserver saveObserver;
    // Nothing is ever written: what a save would write stays merged into the reads. For trying things out.
    bool withholdSaves = false;
};

// Told of every row before it gets another state, with the row as it is to be.
using WriteListener = std::function<void(EditedTable& table, ObjectId id, const EditedRow& next)>;

// A workspace over a feature store. The stored data stay as they are until a save: edits are kept in memory, merged
// into every read, and written as one change set.
class OverlayWorkspace final : public Workspace {
public:
    explicit OverlayWorkspace(std::unique_ptr<FeatureStore> store, OverlayOptions options = {});
    ~OverlayWorkspace() override;

    [[nodiscard]] FeatureStore& store() noexcept { return *store_; }
    // Replaces the listener; an empty one listens to nothing.
    void listen(WriteListener listener) { listener_ = std::move(listener); }
    // Why a write was refused because the data can't be saved to; empty when none was.
    [[nodiscard]] const std::string& refusal() const noexcept { return refusal_; }
    // How often data were written to the store.
    [[nodiscard]] int saveCount() const noexcept { return saveCount_; }

    [[nodiscard]] const std::string& path() const override { return store_->path(); }
    [[nodiscard]] WorkspaceType type() const override { return store_->workspaceType(); }
    [[nodiscard]] bool isDirectory() const override { return type() == WorkspaceType::fileSystem; }
    [[nodiscard]] const std::string& datasetCategory() const override { return store_->datasetCategory(); }
    [[nodiscard]] std::vector<std::string> tableNames() override { return store_->tableNames(); }
    [[nodiscard]] FeatureClass* table(const std::string& name) override;
    [[nodiscard]] std::string pathBeside(const std::string& table, const std::string& ending) const override {
        return store_->pathBeside(table, ending);
    }

    void startEditing() override;
    void stopEditing(bool saveEdits) override;
    [[nodiscard]] bool isBeingEdited() const override { return editing_; }
    void startEditOperation() override;
    bool stopEditOperation() override;
    void abortEditOperation() override;
    [[nodiscard]] bool isInEditOperation() const override { return log_.isOpen(); }
    bool undo() override;
    bool redo() override;
    void saveDirectWrites() override;
    void discardDirectWrites() override;

    // Saves what was edited so far and goes on editing; undo ends there. As stopEditing(true), startEditing().
    void saveEdits();
    // Puts a row into a state: as a step of the open operation, as an operation of its own in a session, else as a
    // direct write.
    void write(EditedTable& table, ObjectId id, EditedRow state);
    // Direct writes are saved now when saving a row is cheap; when the save fails they are given up.
    void settleDirectWrites();

private:
    void requireNoOperation(const char* action) const;
    void requireSavable();
    [[nodiscard]] ChangeSet changes() const;
    void saveAll();
    void discardAll();

    std::unique_ptr<FeatureStore> store_;
    OverlayOptions options_;
    WriteListener listener_;
    std::string refusal_;
    int saveCount_ = 0;
    std::vector<std::unique_ptr<OverlayClass>> tables_; // in the order in which they were asked for
    EditLog log_;
    bool editing_ = false;
};

} // namespace qz
