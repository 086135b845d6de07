#include "cogo/QZDirections.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "platform/Rounding.h"
#include "platform/geometry/AngularConverter.h"

namespace qz {

namespace {

constexpr std::pair<std::string_view, DirectionType> directionTypes[] = {
    {"North Azimuth", DirectionType::northAzimuth},
    {"South Azimuth", DirectionType::southAzimuth},
    {"Polar", DirectionType::polar},
    {"Quadrant Bearing", DirectionType::quadrantBearing},
};

constexpr std::pair<std::string_view, DirectionUnit> directionUnits[] = {
    {"Radians", DirectionUnit::radians},
    {"Decimal Degrees", DirectionUnit::decimalDegrees},
    {"Degrees Minutes Seconds", DirectionUnit::degreesMinutesSeconds},
    {"Gradians", DirectionUnit::gradians},
    {"Gons", DirectionUnit::gons},
};

// The mile and the acre are rounded to seven digits.
constexpr std::pair<std::string_view, std::optional<double>> squareMeters[] = {
    {"SquareMeters", 1},
    {"SquareKilometers", 1000000},
    {"Hectares", 10000},
    {"SquareFeet", 0.09290304},
    {"SquareMiles", 2589988},
    {"Acres", 4046.856},
    {"SquareYards", 0.8361274},
    {"Decares", 1000},
    {"Ares", 100},
};

// Unknown, or nothing, for a word that isn't in the table.
template <typename Meaning, std::size_t count>
Meaning meaningOf(std::string_view word, const std::pair<std::string_view, Meaning> (&table)[count]) {
    const auto* row = std::ranges::find(table, word, &std::pair<std::string_view, Meaning>::first);
    return row == std::end(table) ? Meaning{} : row->second;
}

double leadingNumber(std::string_view text) {
    double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

// Bearings keep the letter behind their seconds; the other types have none.
std::string withSecondsCarried(const std::string& text) {
    const std::size_t minutesAt = text.find('-') + 1;
    const std::size_t secondsAt = text.rfind('-') + 1;
    const std::string_view seconds = std::string_view(text).substr(secondsAt);
    if (leadingNumber(seconds) != 60) {
        return text;
    }
    const std::string_view suffix = seconds.substr(std::min(seconds.find(' '), seconds.size()));
    const double minutes = leadingNumber(std::string_view(text).substr(minutesAt));
    return fmt::format("{}{:.0f}-0.00{}", text.substr(0, minutesAt), minutes + 1, suffix);
}

double roundedToTenDecimals(double number) {
    constexpr double scale = 1e10;
    constexpr double firstWithoutFraction = 0x1p53;
    const double scaled = number * scale;
    return std::abs(scaled) < firstWithoutFraction ? roundedHalfToEven(scaled) / scale : number;
}

} // namespace

std::string QZ_FormatDirection(double angle, const std::string& type, const std::string& unit, std::int16_t precision) {
    const DirectionUnit directionUnit = meaningOf(unit, directionUnits);
    AngularConverter converter;
    if (!converter.setAngle(angle, DirectionType::polar, DirectionUnit::decimalDegrees)) {
        return {};
    }
    const std::string text = converter.text(meaningOf(type, directionTypes), directionUnit, precision);
    return directionUnit == DirectionUnit::degreesMinutesSeconds ? withSecondsCarried(text) : text;
}

std::optional<double> QZ_ReadDirection(const std::string& text, const std::string& type, const std::string& unit) {
    AngularConverter converter;
    if (!converter.setText(text, meaningOf(type, directionTypes), meaningOf(unit, directionUnits))) {
        return std::nullopt;
    }
    return converter.polarDegrees();
}

double QZ_ConvertArea(double value, const std::string& fromUnit, const std::string& toUnit) {
    const auto from = meaningOf(fromUnit, squareMeters);
    const auto to = meaningOf(toUnit, squareMeters);
    return from && to && fromUnit != toUnit ? roundedToTenDecimals(value * *from / *to) : value;
}

} // namespace qz
