#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qz {

// Directions and areas in the words and units of the user. Words are compared exactly, letter case included.
//   direction types   "North Azimuth", "South Azimuth", "Polar", "Quadrant Bearing"
//   direction units   "Radians", "Decimal Degrees", "Degrees Minutes Seconds", "Gradians", "Gons"
//   area units        "SquareMeters", "SquareKilometers", "Hectares", "SquareFeet", "SquareMiles", "Acres",
//                     "SquareYards", "Decares", "Ares"

// The text of a polar angle in decimal degrees (0 east, 90 north), with `precision` decimals in its last field; see
// AngularConverter. 60 seconds are carried into the minutes: "N 45-29-60.00 E" becomes "N 45-30-0.00 E", whatever the
// precision; 60 minutes stay. Empty for an angle that is not finite, and for an unknown type or unit.
[[nodiscard]] std::string QZ_FormatDirection(double angle, const std::string& type, const std::string& unit,
                                             std::int16_t precision);

// The polar angle in decimal degrees, in [0, 360), of such a text, carried or not. Nothing for a text that is no
// direction of the type in the unit, and for an unknown type or unit.
[[nodiscard]] std::optional<double> QZ_ReadDirection(const std::string& text, const std::string& type,
                                                     const std::string& unit);

// An area in another unit, rounded to 10 decimals, halves to even. The value itself when a unit is unknown or both are
// the same.
[[nodiscard]] double QZ_ConvertArea(double value, const std::string& fromUnit, const std::string& toUnit);

} // namespace qz
