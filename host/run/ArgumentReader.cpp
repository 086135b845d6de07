#include "host/run/ArgumentReader.h"

#include <charconv>
#include <cmath>
#include <limits>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "platform/Error.h"
#include "platform/geometry/WellKnown.h"

namespace qz {

namespace {

template <typename Number> std::optional<Number> parsed(std::string_view text) {
    while (text.starts_with(' ')) {
        text.remove_prefix(1);
    }
    while (text.ends_with(' ')) {
        text.remove_suffix(1);
    }
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

// Nothing when one item is no number.
template <typename Number> std::optional<std::vector<Number>> parsedList(std::string_view text) {
    std::vector<Number> numbers;
    while (true) {
        const std::size_t comma = text.find(',');
        const auto number = parsed<Number>(text.substr(0, comma));
        if (!number) {
            return std::nullopt;
        }
        numbers.push_back(*number);
        if (comma == std::string_view::npos) {
            return numbers;
        }
        text.remove_prefix(comma + 1);
    }
}

bool allFinite(const std::vector<double>& numbers) {
    for (const double number : numbers) {
        if (!std::isfinite(number)) {
            return false;
        }
    }
    return true;
}

Value toValue(const nlohmann::json& item, std::string_view text) {
    if (item.is_null()) {
        return {};
    }
    if (item.is_string()) {
        return item.get<std::string>();
    }
    if (item.is_number_integer()) {
        const auto number = item.get<std::int64_t>();
        const bool narrow =
            number >= std::numeric_limits<std::int32_t>::min() && number <= std::numeric_limits<std::int32_t>::max();
        return narrow ? Value(static_cast<std::int32_t>(number)) : Value(number);
    }
    if (item.is_number()) {
        return item.get<double>();
    }
    throw UsageError(fmt::format("{} in the dictionary {} is neither a text, a number nor null.", item.dump(), text));
}

bool readBoolean(const std::string& text) {
    if (text != "true" && text != "false") {
        throw UsageError(fmt::format("'{}' is neither true nor false.", text));
    }
    return text == "true";
}

template <typename Integer> Integer readInteger(const std::string& text) {
    if (const auto number = parsed<Integer>(text)) {
        return *number;
    }
    throw UsageError(fmt::format("'{}' is no whole number between {} and {}.", text,
                                 std::numeric_limits<Integer>::min(), std::numeric_limits<Integer>::max()));
}

double readDouble(const std::string& text) {
    const auto number = parsed<double>(text);
    if (!number || !std::isfinite(*number)) {
        throw UsageError(fmt::format("'{}' is no number such as 0.001 or 1e-9.", text));
    }
    return *number;
}

Geometry readGeometry(const std::string& text, const SpatialReference& reference) {
    Geometry geometry = geometryFromWkt(text);
    geometry.traits().spatialReference = reference;
    return geometry;
}

Point readPoint(const std::string& text, const SpatialReference& reference) {
    const auto numbers = parsedList<double>(text);
    if (numbers && numbers->size() == 2 && allFinite(*numbers)) {
        return Point({(*numbers)[0], (*numbers)[1]}, {false, false, reference});
    }
    return readGeometry(text, reference).as<Point>();
}

GeometryCollection readCollection(const std::string& text, const SpatialReference& reference) {
    GeometryCollection collection = collectionFromWkt(text);
    collection.spatialReference = reference;
    for (Geometry& geometry : collection.geometries) {
        geometry.traits().spatialReference = reference;
    }
    return collection;
}

std::optional<Argument> readValue(ParameterKind kind, const std::string& text, const SpatialReference& reference) {
    switch (kind) {
    case ParameterKind::boolean:
        return readBoolean(text);
    case ParameterKind::integer16:
        return readInteger<std::int16_t>(text);
    case ParameterKind::integer32:
        return readInteger<std::int32_t>(text);
    case ParameterKind::doubleFloat:
        return readDouble(text);
    case ParameterKind::text:
        return text;
    case ParameterKind::point:
        return readPoint(text, reference);
    case ParameterKind::polyline:
        return readGeometry(text, reference).as<Polyline>();
    case ParameterKind::polygon:
        return readGeometry(text, reference).as<Polygon>();
    case ParameterKind::geometry:
        return readGeometry(text, reference);
    case ParameterKind::envelope:
        return readEnvelope(text);
    case ParameterKind::geometryCollection:
        return readCollection(text, reference);
    case ParameterKind::spatialReference:
        return SpatialReference::fromText(text);
    case ParameterKind::dictionary:
        return readDictionary(text);
    default:
        return std::nullopt;
    }
}

} // namespace

Envelope readEnvelope(std::string_view text) {
    const auto sides = parsedList<double>(text);
    if (!sides || sides->size() != 4 || !allFinite(*sides)) {
        throw UsageError(fmt::format("'{}' is no envelope: four numbers xmin,ymin,xmax,ymax are expected.", text));
    }
    const Envelope envelope{(*sides)[0], (*sides)[1], (*sides)[2], (*sides)[3]};
    if (envelope.isEmpty()) {
        throw UsageError(fmt::format("The envelope '{}' has its minimum above its maximum.", text));
    }
    return envelope;
}

std::vector<ObjectId> readIds(std::string_view text) {
    auto ids = parsedList<ObjectId>(text);
    if (!ids) {
        throw UsageError(fmt::format("'{}' is no list of object ids such as 3,7,12.", text));
    }
    return std::move(*ids);
}

Dictionary readDictionary(std::string_view text) {
    const nlohmann::ordered_json json = nlohmann::ordered_json::parse(text, nullptr, false);
    if (!json.is_object()) {
        throw UsageError(fmt::format("'{}' is no dictionary such as {{\"NAME\": \"High Street\"}}.", text));
    }
    Dictionary dictionary;
    for (const auto& [key, item] : json.items()) {
        dictionary.set(key, toValue(item, text));
    }
    return dictionary;
}

std::optional<Argument> readArgument(const MethodInfo& method, const ParameterInfo& parameter, const std::string& text,
                                     const SpatialReference& reference) {
    if (text == "null" && parameter.kind != ParameterKind::text) {
        return Argument();
    }
    try {
        return readValue(parameter.kind, text, reference);
    } catch (const PlatformError& error) {
        throw UsageError(
            fmt::format("--{} of {} ({}): {}", parameter.name, method.name, nameOf(parameter.kind), error.what()));
    }
}

} // namespace qz
