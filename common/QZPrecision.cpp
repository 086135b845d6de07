#include "common/QZPrecision.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "common/NumberText.h"
#include "platform/app/Services.h"
#include "platform/data/PlainText.h"

namespace qz {

namespace {

constexpr int formattedDecimals = 20;
constexpr int mostDecimals = 15;

struct NumberParts {
    std::string integer;
    std::string fraction;
};

NumberParts splitAtDecimalMark(const std::string& text) {
    const std::string& mark = services().locale.decimalMark;
    const std::size_t at = text.find(mark);
    return at == std::string::npos ? NumberParts{text, "0"}
                                   : NumberParts{text.substr(0, at), text.substr(at + mark.size())};
}

int length(const std::string& text) {
    return static_cast<int>(text.size());
}

// The zeros at the start of the fraction, and those at its end.
int outerZeros(const std::string& fraction) {
    return length(fraction) - length(QZ_TrimChar(fraction, '0'));
}

int distanceFromSevenDigits(const std::string& integer) {
    return std::abs(length(integer) - 7);
}

std::string withoutOuter(std::string word, char character) {
    std::replace(word.begin(), word.end(), character, ' ');
    word = withoutOuterBlanks(word);
    std::replace(word.begin(), word.end(), ' ', character);
    return word;
}

} // namespace

std::int16_t QZ_PrecisionFromTolerance(double tolerance) {
    const NumberParts parts = splitAtDecimalMark(formatUngrouped(tolerance, formattedDecimals));
    const int decimals = parts.integer != "0" ? distanceFromSevenDigits(parts.integer) : outerZeros(parts.fraction) + 5;
    return static_cast<std::int16_t>(std::min(decimals, mostDecimals));
}

std::int16_t QZ_DecimalsFromTolerance(double tolerance) {
    const NumberParts parts = splitAtDecimalMark(QZ_StripTrailingZeros(formatUngrouped(tolerance, formattedDecimals)));
    const int decimals = parts.integer != "0" ? distanceFromSevenDigits(parts.integer) : outerZeros(parts.fraction);
    return static_cast<std::int16_t>(std::clamp(decimals, 2, mostDecimals) - 1);
}

std::string QZ_TrimChar(std::string_view text, char character) {
    std::string joined;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        joined += withoutOuter(std::string(text.substr(0, end)), character) + ' ';
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return std::string(withoutOuterBlanks(joined));
}

std::string QZ_StripTrailingZeros(std::string_view text) {
    return std::string(withoutOuterBlanks(text.substr(0, text.find_last_not_of('0') + 1)));
}

} // namespace qz
