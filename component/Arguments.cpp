#include "component/Arguments.h"

namespace qz {

bool isNothing(const Argument& argument) noexcept {
    return std::visit(
        [](const auto& content) {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_pointer_v<Content> || std::is_same_v<Content, FeaturePtr>) {
                return content == nullptr;
            } else {
                return std::is_same_v<Content, std::monostate>;
            }
        },
        argument);
}

const char* nameOf(ParameterKind kind) noexcept {
    switch (kind) {
    case ParameterKind::boolean:
        return "Boolean";
    case ParameterKind::integer16:
        return "16-bit integer";
    case ParameterKind::integer32:
        return "32-bit integer";
    case ParameterKind::doubleFloat:
        return "double";
    case ParameterKind::text:
        return "text";
    case ParameterKind::point:
        return "point";
    case ParameterKind::polyline:
        return "polyline";
    case ParameterKind::polygon:
        return "polygon";
    case ParameterKind::geometry:
        return "geometry";
    case ParameterKind::envelope:
        return "envelope";
    case ParameterKind::geometryCollection:
        return "geometry collection";
    case ParameterKind::spatialReference:
        return "spatial reference";
    case ParameterKind::dictionary:
        return "dictionary";
    case ParameterKind::feature:
        return "feature";
    case ParameterKind::featureLayer:
        return "feature layer";
    case ParameterKind::featureClass:
        return "feature class";
    case ParameterKind::featureCursor:
        return "feature cursor";
    case ParameterKind::featureBuffer:
        return "feature buffer";
    case ParameterKind::activeView:
        return "active view";
    case ParameterKind::application:
        return "application";
    case ParameterKind::refreshArea:
        return "refresh area";
    case ParameterKind::display:
        return "display";
    case ParameterKind::symbol:
        return "symbol";
    case ParameterKind::fillSymbol:
        return "fill symbol";
    case ParameterKind::arrowMarkerSymbol:
        return "arrow marker symbol";
    }
    return "unknown";
}

const char* nameOf(ResultKind kind) noexcept {
    switch (kind) {
    case ResultKind::boolean:
        return "Boolean";
    case ResultKind::text:
        return "text";
    case ResultKind::pointCollection:
        return "point collection";
    case ResultKind::polyline:
        return "polyline";
    case ResultKind::polygon:
        return "polygon";
    case ResultKind::geometryCollection:
        return "geometry collection";
    }
    return "unknown";
}

} // namespace qz
