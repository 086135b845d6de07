#include "platform/geometry/AngularConverter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <optional>

#include <fmt/format.h>

namespace qz {

namespace {

constexpr int mostDecimals = 15;
constexpr int minutesPerDegree = 60;
constexpr double secondsPerMinute = 60;
constexpr double secondsPerDegree = 3600;

// Every conversion rounds an angle by up to 1E-10 seconds, half the distance of doubles below 360 degrees; there and
// back there are fewer than ten.
constexpr double resolutionSeconds = 1e-9;
constexpr double resolutionDegrees = resolutionSeconds / secondsPerDegree;

bool isDecimal(DirectionUnit unit) {
    return unit != DirectionUnit::degreesMinutesSeconds;
}

double fullCircle(DirectionUnit unit) {
    switch (unit) {
    case DirectionUnit::radians:
        return 2 * std::numbers::pi;
    case DirectionUnit::gradians:
    case DirectionUnit::gons:
        return 400;
    case DirectionUnit::decimalDegrees:
    case DirectionUnit::degreesMinutesSeconds:
    case DirectionUnit::unknown:
        break;
    }
    return 360;
}

// The most whose last is well above the resolution.
int finestDecimals(DirectionUnit unit) {
    switch (unit) {
    case DirectionUnit::degreesMinutesSeconds:
        return 8;
    case DirectionUnit::radians:
        return 13;
    case DirectionUnit::decimalDegrees:
    case DirectionUnit::gradians:
    case DirectionUnit::gons:
    case DirectionUnit::unknown:
        break;
    }
    return 11;
}

double inUnit(double degrees, DirectionUnit unit) {
    return degrees * fullCircle(unit) / 360;
}

double inDegrees(double angle, DirectionUnit unit) {
    return angle * 360 / fullCircle(unit);
}

// In [0, 360).
double reduced(double degrees) {
    const double rest = std::fmod(degrees, 360);
    const double positive = rest < 0 ? rest + 360 : rest;
    return positive < 360 ? positive : 0;
}

// Each of these turns a polar angle into one of the type, and back.
double mirrored(double degrees, DirectionType type) {
    switch (type) {
    case DirectionType::northAzimuth:
    case DirectionType::quadrantBearing:
        return reduced(90 - degrees);
    case DirectionType::southAzimuth:
        return reduced(270 - degrees);
    case DirectionType::polar:
    case DirectionType::unknown:
        break;
    }
    return reduced(degrees);
}

struct TextForm {
    DirectionUnit unit;
    int decimals;
};

// Halves, also those that rounding left just below, go up.
std::string fixedText(double number, double resolution, int wholeDigits, const TextForm& form) {
    const int decimals = std::min(form.decimals, finestDecimals(form.unit));
    const int width = wholeDigits + (decimals > 0 ? decimals + 1 : 0);
    return fmt::format("{:0{}.{}f}", number + resolution, width, decimals)
        .append(static_cast<std::size_t>(form.decimals - decimals), '0');
}

std::string sexagesimalText(double degrees, const TextForm& form) {
    const double total = degrees * secondsPerDegree;
    const int minutes = static_cast<int>((total + resolutionSeconds) / secondsPerMinute);
    const double seconds = std::max(total - minutes * secondsPerMinute, 0.0);
    return fmt::format("{}-{:02}-{}", minutes / minutesPerDegree, minutes % minutesPerDegree,
                       fixedText(seconds, resolutionSeconds, 2, form));
}

std::string angleText(double degrees, const TextForm& form) {
    return isDecimal(form.unit) ? fixedText(inUnit(degrees, form.unit), inUnit(resolutionDegrees, form.unit), 1, form)
                                : sexagesimalText(degrees, form);
}

double firstField(std::string_view text) {
    double number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

bool isZero(std::string_view text) {
    return text.find_first_of("123456789") == std::string_view::npos;
}

std::string circleText(double degrees, const TextForm& form) {
    std::string text = angleText(degrees, form);
    return firstField(text) < fullCircle(form.unit) ? text : angleText(0, form);
}

std::string bearingText(double azimuth, const TextForm& form) {
    const bool north = azimuth <= 90 || azimuth >= 270;
    const bool east = azimuth <= 180;
    const double fromNorth = east ? azimuth : 360 - azimuth;
    const std::string text = angleText(north ? fromNorth : 180 - fromNorth, form);
    const bool rightAngle = firstField(text) >= fullCircle(form.unit) / 4;
    return fmt::format("{} {} {}", north || rightAngle ? 'N' : 'S', text, east || isZero(text) ? 'E' : 'W');
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

// Digits, at most with a decimal point between them.
std::optional<double> readUnsigned(std::string_view text) {
    if (text.empty() || !isDigit(text.front()) || !isDigit(text.back())) {
        return std::nullopt;
    }
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, std::chars_format::fixed);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::optional<double> readWhole(std::string_view text) {
    return text.find('.') == std::string_view::npos ? readUnsigned(text) : std::nullopt;
}

std::string_view withoutOuterBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// In degrees.
std::optional<double> readSexagesimal(std::string_view text) {
    const std::size_t first = text.find('-');
    const std::size_t second = text.rfind('-');
    if (first == second) {
        return std::nullopt;
    }
    const auto degrees = readWhole(text.substr(0, first));
    const auto minutes = readWhole(text.substr(first + 1, second - first - 1));
    const auto seconds = readUnsigned(text.substr(second + 1));
    if (!degrees || !minutes || !seconds || *seconds > 60 || *minutes > (*seconds > 0 ? 59 : 60)) {
        return std::nullopt;
    }
    return (*degrees * secondsPerDegree + *minutes * secondsPerMinute + *seconds) / secondsPerDegree;
}

// Half of the last decimal.
double roundingOf(std::string_view text) {
    const std::size_t mark = text.find('.');
    return mark == std::string_view::npos ? 0.5 : 0.5 * std::pow(10, -static_cast<double>(text.size() - mark - 1));
}

// In degrees. The limit, an irrational number of radians, may be exceeded by the rounding of the text.
std::optional<double> readAngle(std::string_view text, DirectionUnit unit, double limitDegrees) {
    if (!isDecimal(unit)) {
        const auto degrees = readSexagesimal(text);
        return degrees && *degrees <= limitDegrees ? degrees : std::nullopt;
    }
    const auto angle = readUnsigned(text);
    const double limit = inUnit(limitDegrees, unit);
    if (!angle || *angle - limit > (unit == DirectionUnit::radians ? roundingOf(text) : 0)) {
        return std::nullopt;
    }
    return std::min(inDegrees(*angle, unit), limitDegrees);
}

// As a north azimuth in degrees.
std::optional<double> readBearing(std::string_view text, DirectionUnit unit) {
    if (text.size() < 3) {
        return std::nullopt;
    }
    const char half = text.front();
    const char side = text.back();
    const auto angle = readAngle(withoutOuterBlanks(text.substr(1, text.size() - 2)), unit, 90);
    if (!angle || (half != 'N' && half != 'S') || (side != 'E' && side != 'W')) {
        return std::nullopt;
    }
    const double fromNorth = half == 'N' ? *angle : 180 - *angle;
    return side == 'E' ? fromNorth : 360 - fromNorth;
}

bool isKnown(DirectionType type, DirectionUnit unit) {
    return type != DirectionType::unknown && unit != DirectionUnit::unknown;
}

} // namespace

bool AngularConverter::setAngle(double angle, DirectionType type, DirectionUnit unit) {
    if (!std::isfinite(angle) || !isKnown(type, unit) || type == DirectionType::quadrantBearing) {
        return false;
    }
    polarDegrees_ = mirrored(inDegrees(std::fmod(angle, fullCircle(unit)), unit), type);
    return true;
}

bool AngularConverter::setText(std::string_view text, DirectionType type, DirectionUnit unit) {
    if (!isKnown(type, unit)) {
        return false;
    }
    const std::string_view body = withoutOuterBlanks(text);
    const auto degrees = type == DirectionType::quadrantBearing ? readBearing(body, unit) : readAngle(body, unit, 360);
    if (degrees) {
        polarDegrees_ = mirrored(*degrees, type);
    }
    return degrees.has_value();
}

std::string AngularConverter::text(DirectionType type, DirectionUnit unit, int decimals) const {
    if (!isKnown(type, unit)) {
        return {};
    }
    const TextForm form{unit, std::clamp(decimals, 0, mostDecimals)};
    const double degrees = mirrored(polarDegrees_, type);
    return type == DirectionType::quadrantBearing ? bearingText(degrees, form) : circleText(degrees, form);
}

} // namespace qz
