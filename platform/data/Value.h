#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace qz {

using ObjectId = std::int64_t;

// A calendar date with the time of day, as a store keeps it; no time zone is applied. No larger than a text: it must
// not make every value of every row larger.
struct DateTime {
    int year = 0;
    int month = 1; // 1 to 12
    int day = 1;   // 1 to 31
    int hour = 0;
    int minute = 0;
    // OGR's code of the time zone: 0 unknown, 1 local, 100 UTC, a quarter of an hour a step around 100.
    int timeZone = 0;
    double second = 0; // [0, 60)

    friend bool operator==(const DateTime&, const DateTime&) = default;
    friend auto operator<=>(const DateTime&, const DateTime&) = default;
};

static_assert(sizeof(DateTime) <= sizeof(std::string));

using Blob = std::vector<std::uint8_t>;

// Text of a globally unique identifier, told apart from plain text.
struct Guid {
    std::string text;
    friend bool operator==(const Guid&, const Guid&) = default;
};

// One value of one field. std::monostate is null. The 64-bit integer occurs only in fields that a store keeps that
// wide.
using Value = std::variant<std::monostate, std::int16_t, std::int32_t, std::int64_t, float, double, std::string,
                           DateTime, Blob, Guid>;

[[nodiscard]] inline bool isNull(const Value& value) noexcept {
    return std::holds_alternative<std::monostate>(value);
}

// Equal kind and equal content; NaN equals NaN.
[[nodiscard]] bool identical(const Value& a, const Value& b);

// For messages and reports of the host: independent of the locale, "null" for null, ISO 8601 for dates, and as many
// digits as it takes to read the same number.
[[nodiscard]] std::string toText(const Value& value);

// ISO 8601: "2024-05-17" or "2024-05-17T13:45:00[.123]".
[[nodiscard]] std::string toText(const DateTime& date);

// Such a text, a blank in place of the T and blanks around let through; nothing for any other text, and for days that
// the calendar doesn't have.
[[nodiscard]] std::optional<DateTime> readDate(std::string_view text);

} // namespace qz
