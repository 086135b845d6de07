#include "platform/data/Field.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include <fmt/format.h>

#include "platform/Error.h"
#include "platform/Rounding.h"
#include "platform/data/PlainText.h"

namespace qz {

namespace {

[[noreturn]] void refuse(const Field& field, const Value& value, const std::string& why) {
    throw PlatformError(
        fmt::format("The value {} can't be stored in the field {}: {}.", toText(value), field.name, why));
}

// Blanks around and a plus sign are let through.
template <typename Number> std::optional<Number> parsed(std::string_view text) {
    return readWhole<Number>(withoutPlusSign(withoutOuterBlanks(text)));
}

// Integers keep all their digits; everything else goes through a double.
using Number = std::variant<std::int64_t, double>;

std::optional<Number> asNumber(const Value& value) {
    return std::visit(
        [](const auto& content) -> std::optional<Number> {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_integral_v<Content>) {
                return Number(static_cast<std::int64_t>(content));
            } else if constexpr (std::is_floating_point_v<Content>) {
                return Number(static_cast<double>(content));
            } else if constexpr (std::is_same_v<Content, std::string>) {
                if (const auto integer = parsed<std::int64_t>(content)) {
                    return Number(*integer);
                }
                const auto number = parsed<double>(content);
                return number ? std::optional<Number>(*number) : std::nullopt;
            } else {
                return std::nullopt;
            }
        },
        value);
}

double asDouble(const Number& number) {
    return std::visit([](auto content) { return static_cast<double>(content); }, number);
}

std::int64_t asInteger(const Field& field, const Value& value, const Number& number) {
    if (const auto* integer = std::get_if<std::int64_t>(&number)) {
        return *integer;
    }
    const double rounded = roundedHalfToEven(std::get<double>(number));
    // 2^63 is the first double above the range.
    if (!(rounded >= -0x1p63 && rounded < 0x1p63)) {
        refuse(field, value, "it is out of the range of integers");
    }
    return static_cast<std::int64_t>(rounded);
}

template <typename Integer> Integer inRange(const Field& field, const Value& value, std::int64_t number) {
    if (number < std::numeric_limits<Integer>::min() || number > std::numeric_limits<Integer>::max()) {
        refuse(field, value,
               fmt::format("it is not within {} and {}", std::numeric_limits<Integer>::min(),
                           std::numeric_limits<Integer>::max()));
    }
    return static_cast<Integer>(number);
}

void checkWidth(const Field& field, const Value& value, const std::string& digits) {
    if (field.precision > 0 && std::cmp_greater(digits.size(), field.precision)) {
        refuse(field, value, fmt::format("it needs more than {} characters", field.precision));
    }
}

Value toInteger(const Field& field, const Value& value, const Number& number) {
    const std::int64_t integer = asInteger(field, value, number);
    checkWidth(field, value, fmt::format("{}", integer));
    if (field.type == FieldType::smallInteger) {
        return inRange<std::int16_t>(field, value, integer);
    }
    if (field.wideInteger) {
        return integer;
    }
    return inRange<std::int32_t>(field, value, integer);
}

// Decimals beyond the width are left out on writing; that is no loss where a double doesn't have so many digits.
bool fitsWithoutLastDecimals(const Field& field, const std::string& digits) {
    const auto width = static_cast<std::size_t>(field.precision);
    return digits.find('.') < width && parsed<double>(digits.substr(0, width)) == parsed<double>(digits);
}

Value toFloating(const Field& field, const Value& value, const Number& number) {
    double result = asDouble(number);
    if (!std::isfinite(result)) {
        refuse(field, value, "it is not a finite number");
    }
    if (field.precision > 0) {
        const std::string digits = fmt::format("{:.{}f}", result, field.scale);
        if (!fitsWithoutLastDecimals(field, digits)) {
            checkWidth(field, value, digits);
        }
        result = *parsed<double>(digits);
    }
    if (field.type == FieldType::doubleFloat) {
        return result;
    }
    const auto single = static_cast<float>(result);
    if (!std::isfinite(single)) {
        refuse(field, value, "it is out of the range of single precision");
    }
    return single;
}

Value toNumber(const Field& field, const Value& value) {
    const auto number = asNumber(value);
    if (!number) {
        refuse(field, value, "it is not a number");
    }
    const bool integer = field.type == FieldType::smallInteger || field.type == FieldType::integer;
    return integer ? toInteger(field, value, *number) : toFloating(field, value, *number);
}

// Continuation bytes of UTF-8 don't count.
std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

Value toTextField(const Field& field, const Value& value) {
    if (std::holds_alternative<Blob>(value)) {
        refuse(field, value, "it is not text");
    }
    std::string text = toText(value);
    if (field.length > 0 && std::cmp_greater(characterCount(text), field.length)) {
        refuse(field, value,
               fmt::format("it has {} characters, the field holds {}", characterCount(text), field.length));
    }
    return text;
}

Value toDate(const Field& field, const Value& value) {
    std::optional<DateTime> date;
    if (const auto* given = std::get_if<DateTime>(&value)) {
        date = *given;
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        date = readDate(*text);
    }
    if (!date) {
        refuse(field, value, "it is not a date such as 2024-05-17 or 2024-05-17T13:45:00");
    }
    if (field.dateOnly && (date->hour != 0 || date->minute != 0 || date->second != 0)) {
        refuse(field, value, "the field holds no time of day");
    }
    return *date;
}

Value toGuid(const Field& field, const Value& value) {
    if (const auto* guid = std::get_if<Guid>(&value)) {
        return *guid;
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        return Guid{*text};
    }
    refuse(field, value, "it is not an identifier");
}

Value toBlob(const Field& field, const Value& value) {
    if (std::holds_alternative<Blob>(value)) {
        return value;
    }
    refuse(field, value, "it is not binary data");
}

} // namespace

const char* nameOf(FieldType type) noexcept {
    switch (type) {
    case FieldType::smallInteger:
        return "small integer";
    case FieldType::integer:
        return "integer";
    case FieldType::single:
        return "single";
    case FieldType::doubleFloat:
        return "double";
    case FieldType::string:
        return "text";
    case FieldType::date:
        return "date";
    case FieldType::objectId:
        return "object id";
    case FieldType::geometry:
        return "geometry";
    case FieldType::blob:
        return "blob";
    case FieldType::raster:
        return "raster";
    case FieldType::guid:
        return "guid";
    case FieldType::globalId:
        return "global id";
    }
    return "unknown";
}

Value convertedTo(const Field& field, const Value& value) {
    if (isNull(value)) {
        if (field.refusesNull) {
            refuse(field, value, "the field must have a value");
        }
        return value;
    }
    switch (field.type) {
    case FieldType::smallInteger:
    case FieldType::integer:
    case FieldType::single:
    case FieldType::doubleFloat:
        return toNumber(field, value);
    case FieldType::string:
        return toTextField(field, value);
    case FieldType::date:
        return toDate(field, value);
    case FieldType::guid:
    case FieldType::globalId:
        return toGuid(field, value);
    case FieldType::blob:
    case FieldType::raster:
        return toBlob(field, value);
    case FieldType::objectId:
    case FieldType::geometry:
        break;
    }
    refuse(field, value, fmt::format("a field of type {} is not written", nameOf(field.type)));
}

bool checkValue(const Field& field, const Value& value) {
    if (isNull(value)) {
        return field.nullable && !field.refusesNull;
    }
    try {
        static_cast<void>(convertedTo(field, value));
        return true;
    } catch (const PlatformError&) {
        return false;
    }
}

Value freshValue(const Field& field) {
    if (field.nullable || field.type == FieldType::objectId || field.type == FieldType::geometry) {
        return {};
    }
    if (field.defaultValue) {
        return convertedTo(field, *field.defaultValue);
    }
    switch (field.type) {
    case FieldType::smallInteger:
    case FieldType::integer:
    case FieldType::single:
    case FieldType::doubleFloat:
        return convertedTo(field, std::int32_t{0});
    case FieldType::string:
        return std::string();
    case FieldType::date:
        return field.refusesNull ? Value(DateTime{.year = 1899, .month = 12, .day = 30}) : Value();
    case FieldType::guid:
    case FieldType::globalId:
        return Guid{};
    default:
        return {};
    }
}

} // namespace qz
