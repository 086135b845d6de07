#pragma once

#include <cstdint>

#include "platform/app/Application.h"

namespace qz {

// Adds the fields that a layer of lines needs for directions and distances, in this order; those that it has already,
// in any letter case, stay as they are:
//   Direction       text of 16 characters
//   Distance        number of 12 characters with `linearDecimals`
//   Delta           number of 8 characters with `angularDecimals`
//   Radius, Tangent, ArcLength    like Distance
//   Side            text of 2 characters
//   XStart, YStart  like Distance
// A failure is reported and gives false: decimals below 0, or so many that no digit is left before the decimal mark,
// with nothing added, and a store that can't add a field.
[[nodiscard]] bool QZ_AddCogoFields(FeatureLayer& layer, std::int32_t linearDecimals, std::int32_t angularDecimals);

} // namespace qz
