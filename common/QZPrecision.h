#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qz {

// How many decimals a coordinate text needs to tell points apart that are a tolerance apart. Both read the text of the
// tolerance with 20 decimals, in the number format of the user's system.

// 0 to 15: the decimals up to the tolerance's last non-zero digit and five more; for tolerances of 1 and above the
// distance of the number of their integer digits from 7.
[[nodiscard]] std::int16_t QZ_PrecisionFromTolerance(double tolerance);

// 1 to 14: the decimals before the tolerance's first non-zero digit, at least one.
[[nodiscard]] std::int16_t QZ_DecimalsFromTolerance(double tolerance);

// Takes the character away from both ends of every blank-separated word; the words come joined by single blanks.
[[nodiscard]] std::string QZ_TrimChar(std::string_view text, char character);

// Takes the zeros away at the right end, then blanks at both ends.
[[nodiscard]] std::string QZ_StripTrailingZeros(std::string_view text);

} // namespace qz
