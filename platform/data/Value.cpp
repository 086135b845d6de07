#include "platform/data/Value.h"

#include <chrono>
#include <cmath>
#include <type_traits>

#include <fmt/format.h>

#include "platform/data/PlainText.h"

namespace qz {

namespace {

template <typename Number> bool sameNumber(Number a, Number b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

std::optional<int> digits(std::string_view text, std::size_t at, std::size_t count) {
    return at + count <= text.size() ? readWhole<int>(text.substr(at, count)) : std::nullopt;
}

bool isCalendarDate(const DateTime& date) {
    const std::chrono::year_month_day day{std::chrono::year(date.year),
                                          std::chrono::month(static_cast<unsigned>(date.month)),
                                          std::chrono::day(static_cast<unsigned>(date.day))};
    return day.ok() && date.hour >= 0 && date.hour < 24 && date.minute >= 0 && date.minute < 60 && date.second >= 0 &&
           date.second < 60;
}

bool readTimeOfDay(std::string_view text, DateTime& date) {
    const auto hour = digits(text, 0, 2);
    const auto minute = digits(text, 3, 2);
    if (!hour || !minute || text[2] != ':') {
        return false;
    }
    date.hour = *hour;
    date.minute = *minute;
    if (text.size() == 5) {
        return true;
    }
    const auto second = text[5] == ':' ? readWhole<double>(text.substr(6)) : std::nullopt;
    date.second = second.value_or(0);
    return second.has_value();
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

std::optional<DateTime> readDate(std::string_view text) {
    text = withoutOuterBlanks(text);
    const auto year = digits(text, 0, 4);
    const auto month = digits(text, 5, 2);
    const auto day = digits(text, 8, 2);
    if (!year || !month || !day || text[4] != '-' || text[7] != '-') {
        return std::nullopt;
    }
    DateTime date{.year = *year, .month = *month, .day = *day};
    const bool readable = text.size() == 10 || ((text[10] == 'T' || text[10] == ' ') && text.size() >= 16 &&
                                                readTimeOfDay(text.substr(11), date));
    return readable && isCalendarDate(date) ? std::optional(date) : std::nullopt;
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
