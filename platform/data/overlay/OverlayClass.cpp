#include "platform/data/overlay/OverlayClass.h"

#include <algorithm>
#include <functional>

#include <fmt/format.h>

#include "platform/data/overlay/OverlayCursor.h"

namespace qz {

namespace {

// Nothing when none changed.
std::unique_ptr<const std::vector<bool>> changedInAll(const EditedRow* before, std::vector<bool> since) {
    if (before && before->changedValues) {
        since.resize(before->changedValues->size());
        std::transform(since.begin(), since.end(), before->changedValues->begin(), since.begin(), std::logical_or());
    }
    return since.empty() ? nullptr : std::make_unique<const std::vector<bool>>(std::move(since));
}

} // namespace

std::int64_t OverlayClass::count(const FeatureFilter& filter) {
    return static_cast<std::int64_t>(ids(filter).size());
}

CursorPtr OverlayClass::search(const FeatureFilter& filter) {
    return std::make_unique<OverlayReadCursor>(*this, CursorKind::search, ids(filter), filter.outputReference);
}

CursorPtr OverlayClass::update(const FeatureFilter& filter) {
    return std::make_unique<OverlayReadCursor>(*this, CursorKind::update, ids(filter), filter.outputReference);
}

CursorPtr OverlayClass::insert() {
    return std::make_unique<OverlayInsertCursor>(*this);
}

FeaturePtr OverlayClass::feature(ObjectId id) {
    RecordPtr record = table_.read(id);
    return record ? std::make_shared<OverlayFeature>(*this, std::move(record), false) : nullptr;
}

FeaturePtr OverlayClass::createFeature() {
    return std::make_shared<OverlayFeature>(*this, freshRecord(schema(), newId()), true);
}

std::unique_ptr<FeatureBuffer> OverlayClass::createBuffer() {
    return std::make_unique<OverlayBuffer>(*this);
}

void OverlayClass::addField(const Field& field) {
    if (table_.hasEdits()) {
        throw PlatformError(
            fmt::format("The field {} can't be added to {} before its edits are saved.", field.name, schema().name));
    }
    workspace_.store().addField(schema().name, field);
    table_.editsSaved();
}

void OverlayClass::storeRow(Draft& draft) {
    const ObjectId id = draft.id();
    if (table_.isDeleted(id)) {
        throw PlatformError(fmt::format("The feature {} of {} was deleted.", id, schema().name));
    }
    const EditedRow* before = table_.edited(id);
    EditedRow state{.record = nullptr,
                    .changedValues = changedInAll(before, draft.changedValues()),
                    .isNew = before && before->isNew,
                    .shapeChanged = draft.shapeChanged() || (before && before->shapeChanged)};
    state.record = draft.settle();
    table_.source().checkStorable(*state.record);
    workspace_.write(table_, id, std::move(state));
}

void OverlayClass::insertRow(Draft& draft) {
    EditedRow state{.record = draft.settle(), .changedValues = nullptr, .isNew = true, .shapeChanged = true};
    table_.source().checkStorable(*state.record);
    workspace_.write(table_, draft.id(), std::move(state));
}

void OverlayClass::deleteRow(ObjectId id) {
    if (table_.isDeleted(id)) {
        throw PlatformError(fmt::format("The feature {} of {} was deleted already.", id, schema().name));
    }
    const EditedRow* before = table_.edited(id);
    workspace_.write(
        table_, id,
        {.record = nullptr, .changedValues = nullptr, .isNew = before && before->isNew, .shapeChanged = false});
    settleDirectWrites();
}

void OverlayFeature::store() {
    if (isNew_) {
        class_.insertRow(draft_);
        isNew_ = false;
    } else {
        class_.storeRow(draft_);
    }
    class_.settleDirectWrites();
}

void OverlayFeature::remove() {
    class_.deleteRow(objectId());
}

} // namespace qz
