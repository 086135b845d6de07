#include "platform/data/overlay/OverlayCursor.h"

#include <algorithm>
#include <span>

#include <fmt/format.h>

#include "platform/geometry/Project.h"

namespace qz {

namespace {

// Rows read ahead: enough for the store's range reads to pay, few enough to stay small in memory.
constexpr std::size_t chunkSize = 1024;

[[noreturn]] void refuse(CursorKind kind, const char* action) {
    constexpr const char* names[] = {"search", "update", "insert"};
    throw PlatformError(fmt::format("A cursor for {} can't {}.", names[static_cast<int>(kind)], action));
}

} // namespace

OverlayReadCursor::OverlayReadCursor(OverlayClass& featureClass, CursorKind kind, std::vector<ObjectId> ids,
                                     SpatialReference outputReference)
    : class_(featureClass), kind_(kind), ids_(std::move(ids)), outputReference_(std::move(outputReference)) {}

void OverlayReadCursor::readChunk() {
    const std::size_t size = std::min(chunkSize, ids_.size() - position_);
    chunk_ = class_.editedTable().source().read(std::span(ids_).subspan(position_, size));
    chunkBegin_ = position_;
    chunkRevision_ = class_.editedTable().storeRevision();
}

RecordPtr OverlayReadCursor::current() {
    const ObjectId id = ids_[position_];
    EditedTable& table = class_.editedTable();
    if (const EditedRow* edited = table.edited(id)) {
        return edited->record;
    }
    if (position_ >= chunkBegin_ + chunk_.size()) {
        readChunk();
    }
    // After a save the rows read ahead may be out of date.
    return chunkRevision_ == table.storeRevision() ? chunk_[position_ - chunkBegin_] : table.read(id);
}

RecordPtr OverlayReadCursor::inOutputReference(RecordPtr record) const {
    if (outputReference_.isNone() || !record->shape) {
        return record;
    }
    auto moved = std::make_shared<FeatureRecord>(*record);
    project(*moved->shape, outputReference_);
    return moved;
}

FeaturePtr OverlayReadCursor::next() {
    last_.reset();
    for (; position_ < ids_.size(); ++position_) {
        if (RecordPtr record = current()) {
            last_ = ids_[position_++];
            return std::make_shared<OverlayFeature>(class_, inOutputReference(std::move(record)), false);
        }
    }
    return nullptr;
}

void OverlayReadCursor::requireUpdateCursor() const {
    if (kind_ != CursorKind::update) {
        refuse(kind_, "write rows");
    }
    if (!last_) {
        throw PlatformError("The cursor stands on no row: nothing was fetched, or the row was deleted.");
    }
}

void OverlayReadCursor::update(Feature& feature) {
    requireUpdateCursor();
    if (feature.objectId() != *last_) {
        throw PlatformError(fmt::format("The cursor stands on row {}, not on row {}.", *last_, feature.objectId()));
    }
    feature.store();
}

void OverlayReadCursor::remove() {
    requireUpdateCursor();
    class_.deleteRow(*last_);
    last_.reset();
}

ObjectId OverlayReadCursor::insert(FeatureBuffer& /*buffer*/) {
    refuse(kind_, "insert rows");
}

void OverlayReadCursor::flush() {
    refuse(kind_, "be flushed");
}

FeaturePtr OverlayInsertCursor::next() {
    refuse(kind(), "fetch rows");
}

void OverlayInsertCursor::update(Feature& /*feature*/) {
    refuse(kind(), "update rows");
}

void OverlayInsertCursor::remove() {
    refuse(kind(), "delete rows");
}

ObjectId OverlayInsertCursor::insert(FeatureBuffer& buffer) {
    const Schema& schema = class_.schema();
    const ObjectId id = class_.newId();
    Draft draft(schema, freshRecord(schema, id));
    draft.setShape(buffer.shape());
    for (std::size_t field = 0; field < schema.fields.size(); ++field) {
        if (schema.fields[field].editable) {
            draft.setValue(field, buffer.value(field));
        }
    }
    class_.insertRow(draft);
    buffer.clear();
    return id;
}

void OverlayInsertCursor::flush() {
    class_.settleDirectWrites();
}

} // namespace qz
