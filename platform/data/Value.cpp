#include "platform/data/Value.h"

#include <cmath>
#include <type_traits>

#include <fmt/format.h>

namespace qz {

namespace {

template <typename Number> bool sameNumber(Number a, Number b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

bool identical(const Value& a, const Value& b) {
    if (const auto* x = std::get_if<double>(&a), *y = std::get_if<double>(&b); x && y) {
        return sameNumber(*x, *y);
    }
    if (const auto* x = std::get_if<float>(&a), *y = std::get_if<float>(&b); x && y) {
        return sameNumber(*x, *y);
    }
    return a == b;
}

std::string toText(const DateTime& date) {
    std::string text = fmt::format("{:04}-{:02}-{:02}", date.year, date.month, date.day);
    if (date.hour == 0 && date.minute == 0 && date.second == 0) {
        return text;
    }
    text += fmt::format("T{:02}:{:02}:", date.hour, date.minute);
    const bool wholeSeconds = date.second == std::floor(date.second);
    return text + (wholeSeconds ? fmt::format("{:02.0f}", date.second) : fmt::format("{:06.3f}", date.second));
}

std::string toText(const Value& value) {
    return std::visit(
        [](const auto& content) -> std::string {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, std::monostate>) {
                return "null";
            } else if constexpr (std::is_same_v<Content, DateTime>) {
                return toText(content);
            } else if constexpr (std::is_same_v<Content, Blob>) {
                return fmt::format("{} bytes", content.size());
            } else if constexpr (std::is_same_v<Content, Guid>) {
                return content.text;
            } else {
                return fmt::format("{}", content);
            }
        },
        value);
}

} // namespace qz
