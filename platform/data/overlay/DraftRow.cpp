#include "platform/data/overlay/DraftRow.h"

#include <fmt/format.h>

#include "platform/geometry/Project.h"

namespace qz {

FeatureRecord& Draft::changedRecord() {
    if (!changed_) {
        changed_ = std::make_shared<FeatureRecord>(*record_);
    }
    return *changed_;
}

void Draft::checkField(std::size_t field) const {
    if (field >= record().values.size()) {
        throw PlatformError(fmt::format("{} has no field of index {}; it has {} fields.", schema_->name, field,
                                        record().values.size()));
    }
}

void Draft::setShape(std::optional<Geometry> shape) {
    std::optional<Geometry> accepted = fitted(std::move(shape), *schema_);
    if (!changed_) { // spares a copy of the shape that goes
        changed_ = std::make_shared<FeatureRecord>(record_->id, std::nullopt, record_->values);
    }
    changed_->shape = std::move(accepted);
    shapeChanged_ = true;
}

const Value& Draft::value(std::size_t field) const {
    checkField(field);
    return record().values[field];
}

void Draft::setValue(std::size_t field, const Value& value) {
    checkField(field);
    const Field& definition = schema_->fields[field];
    if (!definition.editable) {
        throw PlatformError(fmt::format("The field {} of {} is not editable.", definition.name, schema_->name));
    }
    Value converted = convertedTo(definition, value);
    if (identical(converted, record().values[field])) {
        return;
    }
    changedRecord().values[field] = std::move(converted);
    changedValues_.resize(schema_->fields.size());
    changedValues_[field] = true;
}

RecordPtr Draft::settle() {
    if (changed_) {
        record_ = std::move(changed_);
        changed_.reset();
    }
    shapeChanged_ = false;
    changedValues_.clear();
    return record_;
}

std::shared_ptr<FeatureRecord> freshRecord(const Schema& schema, ObjectId id) {
    auto record = std::make_shared<FeatureRecord>();
    record->id = id;
    for (const Field& field : schema.fields) {
        record->values.push_back(freshValue(field));
    }
    return record;
}

std::optional<Geometry> fitted(std::optional<Geometry> shape, const Schema& schema) {
    if (!shape) {
        return shape;
    }
    if (!schema.shape) {
        throw PlatformError(fmt::format("{} is a table without shapes.", schema.name));
    }
    const ShapeDefinition& definition = *schema.shape;
    if (definition.kind && *definition.kind != shape->kind()) {
        throw PlatformError(fmt::format("A {} can't be stored in {}, which holds shapes of kind {}.",
                                        nameOf(shape->kind()), schema.name, nameOf(*definition.kind)));
    }
    project(*shape, definition.spatialReference);
    shape->traits().zAware = definition.hasZ;
    shape->traits().mAware = definition.hasM;
    return shape;
}

} // namespace qz
