#pragma once

#include <memory>
#include <optional>

#include "platform/data/Schema.h"

namespace qz {

// A shape and the values of the fields of a class.
class Row {
public:
    virtual ~Row() = default;

    [[nodiscard]] virtual const Schema& schema() const = 0;
    // Nothing for a null shape. For reading; a caller that changes it copies it.
    [[nodiscard]] virtual const std::optional<Geometry>& shape() const = 0;
    // The shape is projected to the class's spatial reference when it has another known one, and takes over whether the
    // class has z and m. Snapping is the caller's. Throws PlatformError for a kind that the class doesn't hold.
    virtual void setShape(std::optional<Geometry> shape) = 0;
    // Null for the object id and the shape field. Throws PlatformError when there is no such field.
    [[nodiscard]] virtual const Value& value(std::size_t field) const = 0;
    // Converts the value to the field's type (see convertedTo). Throws PlatformError when it can't be held, or the
    // field is not editable; the old value then stays.
    virtual void setValue(std::size_t field, const Value& value) = 0;
};

// A row in the making, that an insert cursor writes.
class FeatureBuffer : public Row {
public:
    // As it was when created: a null shape and fresh values.
    virtual void clear() = 0;
};

// A row of a class. What is set is seen by others after store().
class Feature : public Row {
public:
    [[nodiscard]] virtual ObjectId objectId() const = 0;
    // Throws PlatformError when the row was deleted meanwhile, or the store can't hold it as it is.
    virtual void store() = 0;
    virtual void remove() = 0;
};
using FeaturePtr = std::shared_ptr<Feature>;

} // namespace qz
