#pragma once

#include <memory>
#include <optional>

#include "platform/data/Feature.h"
#include "platform/data/FeatureSource.h"

namespace qz {

// A row as it was read, and what has been set since. The row read is shared and never changed.
class Draft {
public:
    Draft(const Schema& schema, RecordPtr record) : schema_(&schema), record_(std::move(record)) {}

    [[nodiscard]] const Schema& schema() const noexcept { return *schema_; }
    [[nodiscard]] ObjectId id() const noexcept { return record().id; }
    [[nodiscard]] const std::optional<Geometry>& shape() const noexcept { return record().shape; }
    void setShape(std::optional<Geometry> shape);
    [[nodiscard]] const Value& value(std::size_t field) const;
    void setValue(std::size_t field, const Value& value);

    [[nodiscard]] bool shapeChanged() const noexcept { return shapeChanged_; }
    // One a field, or empty when none changed.
    [[nodiscard]] const std::vector<bool>& changedValues() const noexcept { return changedValues_; }
    // The row as it is now; from here on the state that further changes are counted from.
    [[nodiscard]] RecordPtr settle();

private:
    [[nodiscard]] const FeatureRecord& record() const noexcept { return changed_ ? *changed_ : *record_; }
    [[nodiscard]] FeatureRecord& changedRecord();
    void checkField(std::size_t field) const;

    const Schema* schema_;
    RecordPtr record_;
    std::shared_ptr<FeatureRecord> changed_; // nothing while nothing is set
    bool shapeChanged_ = false;
    std::vector<bool> changedValues_;
};

// A record with a null shape and fresh values.
[[nodiscard]] std::shared_ptr<FeatureRecord> freshRecord(const Schema& schema, ObjectId id);

// The shape as a class holds it: of the right kind, projected to the class's reference, with the class's awareness.
// Throws PlatformError for a kind that the class doesn't hold.
[[nodiscard]] std::optional<Geometry> fitted(std::optional<Geometry> shape, const Schema& schema);

// Implements the part of Interface that concerns shape and values with a draft.
template <typename Interface> class DraftRow : public Interface {
public:
    [[nodiscard]] const Schema& schema() const override { return draft_.schema(); }
    [[nodiscard]] const std::optional<Geometry>& shape() const override { return draft_.shape(); }
    void setShape(std::optional<Geometry> shape) override { draft_.setShape(std::move(shape)); }
    [[nodiscard]] const Value& value(std::size_t field) const override { return draft_.value(field); }
    void setValue(std::size_t field, const Value& value) override { draft_.setValue(field, value); }

protected:
    explicit DraftRow(Draft draft) : draft_(std::move(draft)) {}

    Draft draft_;
};

} // namespace qz
