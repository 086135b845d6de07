#include "common/NodeKey.h"

#include <array>
#include <charconv>
#include <cmath>

#include <fmt/format.h>

#include "common/NumberText.h"
#include "common/PlatformRelease.h"
#include "common/QZPrecision.h"
#include "platform/Error.h"
#include "platform/app/Services.h"

namespace qz {

namespace {

// All that double represents exactly, and more than there are decimals.
constexpr std::array<double, 16> powersOfTen = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

double powerOfTen(std::int16_t decimals) {
    return powersOfTen.at(static_cast<std::size_t>(decimals));
}

double numberNamedByText(double coordinate, std::int16_t decimals) {
    std::string text = formatUngrouped(coordinate, decimals);
    const std::string& mark = services().locale.decimalMark;
    text.replace(text.size() - static_cast<std::size_t>(decimals) - mark.size(), mark.size(), ".");
    double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

// The number nearest to the coordinate's text. Texts have 15 digits at most, so that different ones name different
// numbers. Where the text's last digit is clear from plain arithmetic, it is not written: rounding to 15 digits and
// scaling move the coordinate by less than 6e-15 of it.
double rounded(double coordinate, std::int16_t decimals) {
    const double power = powerOfTen(decimals);
    const double scaled = std::abs(coordinate) * power;
    const double whole = std::floor(scaled);
    const double beyondHalf = scaled - whole - 0.5;
    if (!(std::abs(beyondHalf) > 1e-14 * scaled)) {
        return numberNamedByText(coordinate, decimals);
    }
    const double magnitude = (beyondHalf > 0 ? whole + 1 : whole) / power;
    return coordinate < 0 ? 0 - magnitude : magnitude;
}

double numberOfFifteenDigits(double coordinate) {
    const std::string text = fmt::format("{:.15g}", coordinate);
    double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

double roundedToEven(double coordinate, std::int16_t decimals) {
    constexpr double sixteenDigits = 1e15;
    const double power = powerOfTen(decimals);
    const double whole = std::nearbyint(coordinate * power);
    return std::abs(whole) < sixteenDigits ? whole / power : numberOfFifteenDigits(coordinate);
}

void requirePlace(XY place) {
    if (!isFinite(place)) {
        throw PlatformError(fmt::format("A shape has a vertex at ({}, {}), which is no place; correct or delete it.",
                                        place.x, place.y));
    }
}

} // namespace

XY nodeKey(XY place, std::int16_t decimals) {
    requirePlace(place);
    return {rounded(place.x, decimals), rounded(place.y, decimals)};
}

XY duplicateKey(XY place, std::int16_t decimals) {
    requirePlace(place);
    return {roundedToEven(place.x, decimals), roundedToEven(place.y, decimals)};
}

std::int16_t nodeDecimals(const FeatureClass& featureClass) {
    const double tolerance =
        QZ_PlatformAtLeast92() ? featureClass.spatialReference().grid().xyTolerance : finestTolerance;
    return QZ_DecimalsFromTolerance(tolerance);
}

double nodeWidth(std::int16_t decimals) {
    return 1 / powerOfTen(decimals);
}

} // namespace qz
