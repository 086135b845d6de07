#include "platform/data/overlay/OverlayWorkspace.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/data/overlay/OverlayClass.h"

namespace qz {

OverlayWorkspace::OverlayWorkspace(std::unique_ptr<FeatureStore> store, OverlayOptions options)
    : store_(std::move(store)), options_(std::move(options)) {
    if (!options_.saveObserver) {
        options_.saveObserver = [](std::size_t, std::size_t) {};
    }
}

OverlayWorkspace::~OverlayWorkspace() = default;

FeatureClass* OverlayWorkspace::table(const std::string& name) {
    FeatureSource* source = store_->table(name);
    if (!source) {
        return nullptr;
    }
    // A table that is found by two names is edited as one.
    const auto known =
        std::ranges::find_if(tables_, [source](const auto& table) { return &table->editedTable().source() == source; });
    if (known != tables_.end()) {
        return known->get();
    }
    return tables_.emplace_back(std::make_unique<OverlayClass>(*this, *source)).get();
}

void OverlayWorkspace::requireNoOperation(const char* action) const {
    if (log_.isOpen()) {
        throw PlatformError(
            fmt::format("{} can't {} while an edit operation is open: stop or abort it first.", path(), action));
    }
}

void OverlayWorkspace::requireSavable() {
    const std::string hindrance = options_.withholdSaves ? std::string() : store_->refusalToSave();
    if (!hindrance.empty()) {
        refusal_ = fmt::format("{} can't be edited: {}", path(), hindrance);
        throw DataError(refusal_);
    }
}

void OverlayWorkspace::startEditing() {
    if (editing_) {
        throw PlatformError(fmt::format("{} is being edited already.", path()));
    }
    requireSavable();
    saveDirectWrites();
    editing_ = true;
}

void OverlayWorkspace::stopEditing(bool saveEdits) {
    if (!editing_) {
        throw PlatformError(fmt::format("{} is not being edited.", path()));
    }
    requireNoOperation("stop editing");
    if (saveEdits) {
        saveAll();
    } else {
        discardAll();
    }
    editing_ = false;
}

void OverlayWorkspace::saveEdits() {
    stopEditing(true);
    startEditing();
}

void OverlayWorkspace::startEditOperation() {
    if (!editing_) {
        throw PlatformError(fmt::format("{} is not being edited: start editing before an edit operation.", path()));
    }
    requireNoOperation("start an edit operation");
    log_.begin();
}

bool OverlayWorkspace::stopEditOperation() {
    if (!log_.isOpen()) {
        throw PlatformError(fmt::format("{} has no open edit operation to stop.", path()));
    }
    return log_.commit();
}

void OverlayWorkspace::abortEditOperation() {
    if (!log_.isOpen()) {
        throw PlatformError(fmt::format("{} has no open edit operation to abort.", path()));
    }
    log_.abort();
}

bool OverlayWorkspace::undo() {
    requireNoOperation("undo");
    return log_.undo();
}

bool OverlayWorkspace::redo() {
    requireNoOperation("redo");
    return log_.redo();
}

void OverlayWorkspace::saveDirectWrites() {
    if (!editing_) {
        saveAll();
    }
}

void OverlayWorkspace::discardDirectWrites() {
    if (!editing_) {
        discardAll();
    }
}

void OverlayWorkspace::settleDirectWrites() {
    if (editing_ || !store_->savesSingleRowsCheaply()) {
        return;
    }
    try {
        saveAll();
    } catch (...) {
        discardAll();
        throw;
    }
}

ChangeSet OverlayWorkspace::changes() const {
    ChangeSet changes;
    for (const auto& featureClass : tables_) {
        if (featureClass->editedTable().hasEdits()) {
            changes.push_back(featureClass->editedTable().changes());
        }
    }
    return changes;
}

void OverlayWorkspace::write(EditedTable& table, ObjectId id, EditedRow state) {
    if (listener_) {
        listener_(table, id, state);
    }
    if (log_.isOpen()) {
        log_.apply(table, id, std::move(state));
    } else if (editing_) {
        log_.begin();
        log_.apply(table, id, std::move(state));
        log_.commit();
    } else {
        requireSavable();
        table.exchange(id, std::move(state));
    }
}

void OverlayWorkspace::saveAll() {
    if (options_.withholdSaves) {
        log_.clear();
        return;
    }
    if (const ChangeSet all = changes(); !all.empty()) {
        store_->save(all, options_.saveObserver);
        ++saveCount_;
    }
    log_.clear();
    for (const auto& featureClass : tables_) {
        if (featureClass->editedTable().hasEdits()) {
            featureClass->editedTable().editsSaved();
        }
    }
}

void OverlayWorkspace::discardAll() {
    log_.clear();
    for (const auto& featureClass : tables_) {
        featureClass->editedTable().editsDiscarded();
    }
}

} // namespace qz
