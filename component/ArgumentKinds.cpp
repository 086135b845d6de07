#include "component/ArgumentKinds.h"

#include "common/Numbers.h"

namespace qz {

namespace {

// The alternative of Argument that holds a kind.
std::size_t alternativeOf(ParameterKind kind) {
    return neutralArgument(kind).index();
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
    switch (kind) {
    case ParameterKind::boolean:
        return false;
    case ParameterKind::integer16:
        return std::int16_t{0};
    case ParameterKind::integer32:
        return std::int32_t{0};
    case ParameterKind::doubleFloat:
        return 0.0;
    case ParameterKind::text:
        return std::string();
    case ParameterKind::point:
        return Point();
    case ParameterKind::polyline:
        return Polyline();
    case ParameterKind::polygon:
        return Polygon();
    case ParameterKind::geometry:
        return Geometry();
    case ParameterKind::envelope:
        return Envelope();
    case ParameterKind::geometryCollection:
        return GeometryCollection();
    case ParameterKind::spatialReference:
        return SpatialReference();
    case ParameterKind::dictionary:
        return Dictionary();
    case ParameterKind::feature:
        return FeaturePtr();
    case ParameterKind::featureLayer:
        return static_cast<FeatureLayer*>(nullptr);
    case ParameterKind::featureClass:
        return static_cast<FeatureClass*>(nullptr);
    case ParameterKind::featureCursor:
        return static_cast<FeatureCursor*>(nullptr);
    case ParameterKind::featureBuffer:
        return static_cast<FeatureBuffer*>(nullptr);
    case ParameterKind::activeView:
        return static_cast<ActiveView*>(nullptr);
    case ParameterKind::application:
        return static_cast<Application*>(nullptr);
    case ParameterKind::refreshArea:
        return static_cast<RefreshArea*>(nullptr);
    case ParameterKind::display:
        return static_cast<Display*>(nullptr);
    case ParameterKind::symbol:
        return Symbol();
    case ParameterKind::fillSymbol:
        return FillSymbol();
    case ParameterKind::arrowMarkerSymbol:
        return ArrowMarkerSymbol();
    }
    return {};
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
