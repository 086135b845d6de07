#include "host/run/ChangeRecorder.h"

namespace qz {

ChangeRecorder::ChangeRecorder(OverlayWorkspace& workspace, OverlayClass& featureClass, bool keepShapes)
    : workspace_(workspace), class_(featureClass), keepShapes_(keepShapes) {
    workspace_.listen([this](EditedTable& table, ObjectId id, const EditedRow& next) { note(table, id, next); });
}

ChangeRecorder::~ChangeRecorder() {
    workspace_.listen({});
}

void ChangeRecorder::note(EditedTable& table, ObjectId id, const EditedRow& next) {
    if (&table != &class_.editedTable() || rows_.contains(id)) {
        return;
    }
    const EditedRow* edited = table.edited(id);
    Before before{.existed = edited ? edited->record != nullptr : !next.isNew, .shape = nullptr};
    if (before.existed && keepShapes_) {
        const RecordPtr record = table.read(id);
        before.shape = record->shape ? std::make_unique<Geometry>(*record->shape) : nullptr;
    }
    rows_.emplace_hint(rows_.end(), id, std::move(before));
}

RowChanges ChangeRecorder::changes() {
    RowChanges changes;
    for (const auto& [id, before] : rows_) {
        const RecordPtr now = class_.editedTable().read(id);
        if (before.shape) {
            changes.shapesBefore.push_back(*before.shape);
        }
        if (now && now->shape && keepShapes_) {
            changes.shapesAfter.push_back(*now->shape);
        }
        if (now) {
            (before.existed ? changes.updated : changes.inserted).push_back(now);
        } else if (before.existed) {
            changes.deleted.push_back(id);
        }
    }
    return changes;
}

} // namespace qz
