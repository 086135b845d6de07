#include "platform/data/FieldValues.h"

#include <algorithm>
#include <utility>

namespace qz {

namespace {

const Value nullValue;

} // namespace

void FieldValues::resize(std::size_t count) {
    count_ = count;
    stored_.resize(std::min(stored_.size(), count - std::min(first_, count)));
}

void FieldValues::push_back(Value value) {
    ++count_;
    if (!isNull(value)) {
        (*this)[count_ - 1] = std::move(value);
    }
}

const Value& FieldValues::operator[](std::size_t field) const noexcept {
    const bool isStored = field >= first_ && field - first_ < stored_.size();
    return isStored ? stored_[field - first_] : nullValue;
}

Value& FieldValues::operator[](std::size_t field) {
    if (stored_.empty()) {
        first_ = field;
    }
    if (field < first_) {
        stored_.insert(stored_.begin(), first_ - field, Value());
        first_ = field;
    } else if (field - first_ >= stored_.size()) {
        stored_.reserve(count_ - first_);
        stored_.resize(field - first_ + 1);
    }
    return stored_[field - first_];
}

} // namespace qz
