#include "host/run/ChangeRecorder.h"

#include <algorithm>

namespace qz {

namespace {

void sortUnique(std::vector<ObjectId>& ids) {
    std::ranges::sort(ids);
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
}

} // namespace

ChangeRecorder::ChangeRecorder(OverlayWorkspace& workspace, OverlayClass& featureClass, bool keepShapes)
    : workspace_(workspace), class_(featureClass), keepShapes_(keepShapes) {
    workspace_.listen([this](EditedTable& table, ObjectId id, const EditedRow& next) { note(table, id, next); });
}

ChangeRecorder::~ChangeRecorder() {
    workspace_.listen({});
}

void ChangeRecorder::note(EditedTable& table, ObjectId id, const EditedRow& next) {
    if (&table != &class_.editedTable()) {
        return;
    }
    const EditedRow* edited = table.edited(id);
    const bool exists = edited ? edited->record != nullptr : !next.isNew;
    (exists ? changed_ : added_).push_back(id);
    if (exists && keepShapes_ && !shapesBefore_.contains(id)) {
        shapesBefore_.emplace(id, table.read(id)->shape);
    }
}

RowChanges ChangeRecorder::changes() {
    sortUnique(added_);
    sortUnique(changed_);
    std::erase_if(changed_, [this](ObjectId id) { return std::ranges::binary_search(added_, id); });
    RowChanges changes;
    for (const ObjectId id : changed_) {
        addChanged(id, changes);
    }
    changes.inserted.reserve(added_.size());
    for (const ObjectId id : added_) {
        if (RecordPtr now = class_.editedTable().read(id)) {
            addShapeAfter(*now, changes);
            changes.inserted.push_back(std::move(now));
        }
    }
    return changes;
}

void ChangeRecorder::addChanged(ObjectId id, RowChanges& changes) const {
    const auto before = shapesBefore_.find(id);
    if (before != shapesBefore_.end() && before->second) {
        changes.shapesBefore.push_back(*before->second);
    }
    if (RecordPtr now = class_.editedTable().read(id)) {
        addShapeAfter(*now, changes);
        changes.updated.push_back(std::move(now));
    } else {
        changes.deleted.push_back(id);
    }
}

void ChangeRecorder::addShapeAfter(const FeatureRecord& record, RowChanges& changes) const {
    if (keepShapes_ && record.shape) {
        changes.shapesAfter.push_back(*record.shape);
    }
}

} // namespace qz
