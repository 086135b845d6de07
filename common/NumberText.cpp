#include "common/NumberText.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include <fmt/format.h>

#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/data/PlainText.h"

namespace qz {

namespace {

constexpr int significantDigits = 15;

// d[0].d[1]d[2]... x 10^exponent, 15 digits of it.
struct Decimal {
    bool negative = false;
    std::string digits;
    int exponent = 0;
};

Decimal decimalOf(double number) {
    if (!std::isfinite(number)) {
        throw PlatformError("Overflow");
    }
    const std::string text = fmt::format("{:.{}e}", std::abs(number), significantDigits - 1);
    const std::size_t mark = text.find('e');
    Decimal decimal{std::signbit(number), text.substr(0, 1) + text.substr(2, mark - 2), 0};
    decimal.exponent = std::stoi(text.substr(mark + 1));
    return decimal;
}

// Adds one to the last of the digits.
void increment(Decimal& decimal) {
    std::size_t place = decimal.digits.size();
    while (place > 0 && decimal.digits[place - 1] == '9') {
        decimal.digits[--place] = '0';
    }
    if (place > 0) {
        ++decimal.digits[place - 1];
        return;
    }
    decimal.digits.insert(0, "1");
    ++decimal.exponent;
}

// Keeps the digits up to the given place after the decimal mark.
void roundHalfAwayFromZero(Decimal& decimal, int decimals) {
    const int kept = decimal.exponent + 1 + decimals;
    if (kept >= significantDigits) {
        return;
    }
    if (kept < 0) {
        decimal = {decimal.negative, "0", 0};
        return;
    }
    const bool up = decimal.digits[static_cast<std::size_t>(kept)] >= '5';
    decimal.digits.resize(static_cast<std::size_t>(kept));
    if (decimal.digits.empty()) {
        decimal.digits = "0";
        decimal.exponent = -decimals;
    }
    if (up) {
        increment(decimal);
    }
}

char digitAt(const Decimal& decimal, int powerOfTen) {
    const int index = decimal.exponent - powerOfTen;
    return index >= 0 && index < static_cast<int>(decimal.digits.size())
               ? decimal.digits[static_cast<std::size_t>(index)]
               : '0';
}

std::string digitsBetween(const Decimal& decimal, int highestPower, int lowestPower) {
    std::string text;
    for (int power = highestPower; power >= lowestPower; --power) {
        text += digitAt(decimal, power);
    }
    return text;
}

bool isZero(const Decimal& decimal) {
    return decimal.digits.find_first_not_of('0') == std::string::npos;
}

std::string joined(const Decimal& decimal, const std::string& integerPart, const std::string& fraction) {
    const std::string sign = decimal.negative && !isZero(decimal) ? "-" : "";
    return sign + integerPart + (fraction.empty() ? "" : services().locale.decimalMark + fraction);
}

std::string scientific(const Decimal& decimal) {
    const char sign = decimal.exponent < 0 ? '-' : '+';
    return joined(decimal, decimal.digits.substr(0, 1), decimal.digits.substr(1)) +
           fmt::format("E{}{:02}", sign, std::abs(decimal.exponent));
}

// In the form that std::from_chars reads.
std::string inPlainForm(std::string_view text) {
    std::string plain(withoutPlusSign(withoutOuterBlanks(text)));
    const std::string& mark = services().locale.decimalMark;
    if (const auto at = plain.find(mark); !mark.empty() && at != std::string::npos) {
        plain.replace(at, mark.size(), ".");
    }
    if (const auto at = plain.find_first_of("dD"); at != std::string::npos) {
        plain[at] = 'e';
    }
    return plain;
}

// Keeps "inf" and "nan" out, which std::from_chars would let in.
bool looksLikeNumber(std::string_view plain) {
    const std::string_view unsignedPart = plain.substr(plain.starts_with('-') ? 1 : 0);
    return !unsignedPart.empty() &&
           (unsignedPart.front() == '.' || (unsignedPart.front() >= '0' && unsignedPart.front() <= '9'));
}

[[noreturn]] void refuseNonNumeric(const Value& value) {
    throw PlatformError(fmt::format("Type mismatch: {} is not a number", toText(value)));
}

} // namespace

std::string formatUngrouped(double number, int decimals) {
    Decimal decimal = decimalOf(number);
    roundHalfAwayFromZero(decimal, decimals);
    return joined(decimal, digitsBetween(decimal, std::max(decimal.exponent, 0), 0),
                  digitsBetween(decimal, -1, -decimals));
}

std::string defaultText(double number) {
    Decimal decimal = decimalOf(number);
    decimal.digits.erase(std::max<std::size_t>(decimal.digits.find_last_not_of('0') + 1, 1));
    const int lastPower = decimal.exponent - static_cast<int>(decimal.digits.size()) + 1;
    if (decimal.exponent >= significantDigits || lastPower < -significantDigits) {
        return scientific(decimal);
    }
    return joined(decimal, digitsBetween(decimal, std::max(decimal.exponent, 0), 0),
                  digitsBetween(decimal, -1, lastPower));
}

std::optional<Value> readNumber(std::string_view text) {
    const std::string plain = inPlainForm(text);
    if (!looksLikeNumber(plain)) {
        return std::nullopt;
    }
    if (const auto integer = readWhole<std::int64_t>(plain)) {
        return Value(*integer);
    }
    const auto number = readWhole<double>(plain);
    return number ? std::optional<Value>(*number) : std::nullopt;
}

Value toNumber(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        if (auto number = readNumber(*text)) {
            return std::move(*number);
        }
        refuseNonNumeric(value);
    }
    if (!isNumeric(value)) {
        refuseNonNumeric(value);
    }
    return value;
}

bool isNumeric(const Value& value) {
    return std::visit(
        [](const auto& content) {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, std::string>) {
                return readNumber(content).has_value();
            } else {
                return std::is_arithmetic_v<Content>;
            }
        },
        value);
}

double toDouble(const Value& value) {
    return std::visit(
        [&value](const auto& content) -> double {
            if constexpr (std::is_arithmetic_v<std::decay_t<decltype(content)>>) {
                return static_cast<double>(content);
            } else {
                refuseNonNumeric(value);
            }
        },
        toNumber(value));
}

} // namespace qz
