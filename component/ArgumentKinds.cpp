#include "component/ArgumentKinds.h"

#include <array>
#include <utility>

#include "common/Numbers.h"

namespace qz {

namespace {

// What makes each alternative of Argument, without a value.
template <std::size_t... I> constexpr auto neutralArguments(std::index_sequence<I...>) {
    return std::array<Argument (*)(), sizeof...(I)>{[] { return Argument(std::in_place_index<I>); }...};
}

std::optional<double> asNumber(const Argument& argument) {
    return std::visit(
        [](const auto& content) -> std::optional<double> {
            using Content = std::decay_t<decltype(content)>;
            constexpr bool isNumber = std::is_arithmetic_v<Content> && !std::is_same_v<Content, bool>;
            if constexpr (isNumber) {
                return static_cast<double>(content);
            } else {
                return std::nullopt;
            }
        },
        argument);
}

bool convertNumber(Argument& argument, ParameterKind kind) {
    const std::optional<double> number = asNumber(argument);
    if (!number) {
        return false;
    }
    if (kind == ParameterKind::integer16) {
        argument = toInteger16(*number);
    } else if (kind == ParameterKind::integer32) {
        argument = toInteger32(*number);
    } else {
        argument = *number;
    }
    return true;
}

template <typename Shape> bool narrowGeometry(Argument& argument) {
    if (std::holds_alternative<Shape>(argument)) {
        return true;
    }
    auto* geometry = std::get_if<Geometry>(&argument);
    if (!geometry || geometry->kind() != Shape::kind) {
        return false;
    }
    Shape shape = std::move(geometry->as<Shape>());
    argument = std::move(shape);
    return true;
}

template <typename Shape> bool widenFrom(Argument& argument) {
    if (!std::holds_alternative<Shape>(argument)) {
        return false;
    }
    Geometry geometry(std::move(std::get<Shape>(argument)));
    argument = std::move(geometry);
    return true;
}

bool widenGeometry(Argument& argument) {
    return std::holds_alternative<Geometry>(argument) || widenFrom<Point>(argument) || widenFrom<Polyline>(argument) ||
           widenFrom<Polygon>(argument);
}

} // namespace

Argument neutralArgument(ParameterKind kind) {
    static constexpr auto neutrals = neutralArguments(std::make_index_sequence<std::variant_size_v<Argument>>());
    return neutrals[alternativeOf(kind)]();
}

bool convertArgument(Argument& argument, ParameterKind kind) {
    switch (kind) {
    case ParameterKind::integer16:
    case ParameterKind::integer32:
    case ParameterKind::doubleFloat:
        return convertNumber(argument, kind);
    case ParameterKind::point:
        return narrowGeometry<Point>(argument);
    case ParameterKind::polyline:
        return narrowGeometry<Polyline>(argument);
    case ParameterKind::polygon:
        return narrowGeometry<Polygon>(argument);
    case ParameterKind::geometry:
        return widenGeometry(argument);
    default:
        return argument.index() == alternativeOf(kind) && !isNothing(argument);
    }
}

} // namespace qz
