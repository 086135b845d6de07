#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/data/Value.h"

namespace qz {

// Numbers as texts in the number format of the user's system (services().locale).

// Exactly `decimals` digits (0 to 30) after the decimal mark, halves away from zero, without grouping: -1234.5 with 2
// is "-1234.50". The number counts with its first 15 significant digits, further places are "0". A number that rounds
// to zero has no sign. Throws PlatformError ("Overflow") for one that is not finite.
[[nodiscard]] std::string formatUngrouped(double number, int decimals);

// The shortest text of the first 15 significant digits: "0.075", "1E+15", "7.50750750750751E-02". Scientific when more
// than 15 digits would stand before or after the decimal mark. Throws PlatformError ("Overflow") for a number that is
// not finite.
[[nodiscard]] std::string defaultText(double number);

// Digits with an optional sign, decimal mark and exponent (E or D), blanks around. The mark is the point or the one of
// the locale; grouping marks are not read, since "1.500" would then be one number here and another there. An integer
// keeps all its digits. Nothing for any other text.
[[nodiscard]] std::optional<Value> readNumber(std::string_view text);

// A number, or a text that reads as one.
[[nodiscard]] bool isNumeric(const Value& value);

// Throws PlatformError ("Type mismatch") with the value when it is not numeric.
[[nodiscard]] double toDouble(const Value& value);

// The number itself, or the one that a text reads as. Throws PlatformError ("Type mismatch") with the value otherwise.
[[nodiscard]] Value toNumber(const Value& value);

} // namespace qz
