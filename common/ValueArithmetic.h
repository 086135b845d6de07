#pragma once

#include "platform/data/Value.h"

namespace qz {

// Arithmetic with field values. Numbers and numeric texts are combined; null with anything is null, and is neither
// less nor greater than anything. Integers are combined and compared exactly.
// Throws PlatformError: "Overflow" for a result out of range, "Type mismatch" for a value that is no number.

[[nodiscard]] Value times(const Value& value, double factor);
[[nodiscard]] Value sum(const Value& a, const Value& b);
[[nodiscard]] Value mean(const Value& a, const Value& b);
[[nodiscard]] bool isLess(const Value& a, const Value& b);

} // namespace qz
