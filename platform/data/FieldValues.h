#pragma once

#include <cstddef>
#include <vector>

#include "platform/data/Value.h"

namespace qz {

// The values of one row, one a field. What is null before the first other value, as object id and shape always are, and
// behind the last takes no memory: edits hold millions of rows.
class FieldValues {
public:
    [[nodiscard]] std::size_t size() const noexcept { return count_; }
    // New ones are null.
    void resize(std::size_t count);
    void push_back(Value value);

    // References hold until a field is written.
    [[nodiscard]] const Value& operator[](std::size_t field) const noexcept;
    [[nodiscard]] Value& operator[](std::size_t field);

private:
    std::vector<Value> stored_; // of the fields from the first on
    std::size_t first_ = 0;
    std::size_t count_ = 0;
};

} // namespace qz
