#include "host/ScaleBar.h"

#include <cmath>

#include <fmt/format.h>

namespace qz {

namespace {

double roundNumberUpTo(double longest) {
    const double power = std::pow(10, std::floor(std::log10(longest)));
    for (const double factor : {5.0, 2.0}) {
        if (factor * power <= longest) {
            return factor * power;
        }
    }
    return power;
}

// The tolerance of the default grid is a millimetre in the reference's unit.
double unitsPerMetre(const SpatialReference& reference) {
    return SpatialReference::fromText(reference.wkt()).grid().xyTolerance * 1000;
}

std::string metresText(double metres) {
    return metres >= 1000 ? fmt::format("{:g} km", metres / 1000) : fmt::format("{:g} m", metres);
}

} // namespace

std::optional<ScaleBar> scaleBarFor(double longest, const SpatialReference& reference) {
    if (!std::isfinite(longest) || longest <= 0) {
        return std::nullopt;
    }
    if (reference.isNone() || reference.isUnknown()) {
        const double units = roundNumberUpTo(longest);
        return ScaleBar{units, fmt::format("{:g}", units)};
    }
    if (reference.isGeographic()) {
        const double degrees = roundNumberUpTo(longest);
        return ScaleBar{degrees, fmt::format("{:g}°", degrees)};
    }
    const double metres = roundNumberUpTo(longest / unitsPerMetre(reference));
    return ScaleBar{metres * unitsPerMetre(reference), metresText(metres)};
}

} // namespace qz
