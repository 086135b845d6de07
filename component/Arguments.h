#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>

#include "common/Dictionary.h"
#include "platform/app/Application.h"
#include "topology/QZAnalyseNodes.h"

namespace qz {

// What a caller by name passes for one parameter, and finds changed afterwards when the method writes it back.
// std::monostate is "nothing". Objects are the caller's.
using Argument = std::variant<std::monostate, bool, std::int16_t, std::int32_t, double, std::string, Point, Polyline,
                              Polygon, Geometry, Envelope, GeometryCollection, SpatialReference, Dictionary, FeaturePtr,
                              FeatureLayer*, FeatureClass*, FeatureCursor*, FeatureBuffer*, ActiveView*, Application*,
                              RefreshArea*, Display*, Symbol, FillSymbol, ArrowMarkerSymbol>;

// std::monostate, a null feature or a null object.
[[nodiscard]] bool isNothing(const Argument& argument) noexcept;

// What a method gives back; std::monostate stands for "no geometry".
using Result =
    std::variant<std::monostate, bool, std::string, Multipoint, NodePoints, Polyline, Polygon, GeometryCollection>;

// In the order of the alternatives of Argument.
enum class ParameterKind {
    boolean,
    integer16,
    integer32,
    doubleFloat,
    text,
    point,
    polyline,
    polygon,
    geometry,
    envelope,
    geometryCollection,
    spatialReference,
    dictionary,
    feature,
    featureLayer,
    featureClass,
    featureCursor,
    featureBuffer,
    activeView,
    application,
    refreshArea,
    display,
    symbol,
    fillSymbol,
    arrowMarkerSymbol
};

// The alternative of Argument that holds a kind; the first is "nothing".
[[nodiscard]] constexpr std::size_t alternativeOf(ParameterKind kind) noexcept {
    return static_cast<std::size_t>(kind) + 1;
}

// "Boolean", "32-bit integer", "feature layer", ...
[[nodiscard]] const char* nameOf(ParameterKind kind) noexcept;

enum class ResultKind { boolean, text, pointCollection, polyline, polygon, geometryCollection };

// "Boolean", "text", "point collection", ...
[[nodiscard]] const char* nameOf(ResultKind kind) noexcept;

namespace detail {

// Which alternative of Argument holds a parameter of the C++ type T, and what late-bound callers call it. Objects that
// belong to the caller travel as pointers.
template <typename T> struct Binding;

template <typename Stored, ParameterKind theKind> struct ValueBinding {
    using Alternative = Stored;
    static constexpr ParameterKind kind = theKind;
    static constexpr bool isValue = true;
    static Stored& object(Argument& argument) { return std::get<Stored>(argument); }
};
template <typename Object, ParameterKind theKind> struct ObjectBinding {
    using Alternative = Object*;
    static constexpr ParameterKind kind = theKind;
    static constexpr bool isValue = false;
    static Object& object(Argument& argument) { return *std::get<Object*>(argument); }
};

template <> struct Binding<bool> : ValueBinding<bool, ParameterKind::boolean> {};
template <> struct Binding<std::int16_t> : ValueBinding<std::int16_t, ParameterKind::integer16> {};
template <> struct Binding<std::int32_t> : ValueBinding<std::int32_t, ParameterKind::integer32> {};
template <> struct Binding<double> : ValueBinding<double, ParameterKind::doubleFloat> {};
template <> struct Binding<std::string> : ValueBinding<std::string, ParameterKind::text> {};
template <> struct Binding<Point> : ValueBinding<Point, ParameterKind::point> {};
template <> struct Binding<Polyline> : ValueBinding<Polyline, ParameterKind::polyline> {};
template <> struct Binding<Polygon> : ValueBinding<Polygon, ParameterKind::polygon> {};
template <> struct Binding<Geometry> : ValueBinding<Geometry, ParameterKind::geometry> {};
template <> struct Binding<Envelope> : ValueBinding<Envelope, ParameterKind::envelope> {};
template <> struct Binding<GeometryCollection> : ValueBinding<GeometryCollection, ParameterKind::geometryCollection> {};
template <> struct Binding<SpatialReference> : ValueBinding<SpatialReference, ParameterKind::spatialReference> {};
template <> struct Binding<Dictionary> : ValueBinding<Dictionary, ParameterKind::dictionary> {};
template <> struct Binding<Feature> {
    using Alternative = FeaturePtr;
    static constexpr ParameterKind kind = ParameterKind::feature;
    static constexpr bool isValue = false;
    static Feature& object(Argument& argument) { return *std::get<FeaturePtr>(argument); }
};
template <> struct Binding<Symbol> : ValueBinding<Symbol, ParameterKind::symbol> {};
template <> struct Binding<FillSymbol> : ValueBinding<FillSymbol, ParameterKind::fillSymbol> {};
template <> struct Binding<ArrowMarkerSymbol> : ValueBinding<ArrowMarkerSymbol, ParameterKind::arrowMarkerSymbol> {};
template <> struct Binding<FeatureLayer> : ObjectBinding<FeatureLayer, ParameterKind::featureLayer> {};
template <> struct Binding<FeatureClass> : ObjectBinding<FeatureClass, ParameterKind::featureClass> {};
template <> struct Binding<FeatureCursor> : ObjectBinding<FeatureCursor, ParameterKind::featureCursor> {};
template <> struct Binding<FeatureBuffer> : ObjectBinding<FeatureBuffer, ParameterKind::featureBuffer> {};
template <> struct Binding<ActiveView> : ObjectBinding<ActiveView, ParameterKind::activeView> {};
template <> struct Binding<Application> : ObjectBinding<Application, ParameterKind::application> {};
template <> struct Binding<RefreshArea> : ObjectBinding<RefreshArea, ParameterKind::refreshArea> {};
template <> struct Binding<Display> : ObjectBinding<Display, ParameterKind::display> {};

// A parameter as the member function declares it: T, const T&, T& (written back), or a pointer (may be absent; written
// back too unless it points to a constant).
template <typename T> struct Parameter {
    using Plain = std::remove_cv_t<std::remove_pointer_t<std::remove_reference_t<T>>>;
    static constexpr ParameterKind kind = Binding<Plain>::kind;
    static_assert(std::is_same_v<typename Binding<Plain>::Alternative,
                                 std::variant_alternative_t<alternativeOf(kind), Argument>>);
    static constexpr bool mayBeAbsent = std::is_pointer_v<T>;
    static constexpr bool writtenBack = Binding<Plain>::isValue && !std::is_same_v<T, Plain> &&
                                        !std::is_const_v<std::remove_pointer_t<std::remove_reference_t<T>>>;

    static T pass(Argument& argument) {
        if constexpr (mayBeAbsent) {
            return isNothing(argument) ? nullptr : &Binding<Plain>::object(argument);
        } else {
            return Binding<Plain>::object(argument);
        }
    }
};

template <typename R> struct Returned;
template <> struct Returned<bool> { static constexpr ResultKind kind = ResultKind::boolean; };
template <> struct Returned<std::string> { static constexpr ResultKind kind = ResultKind::text; };
template <> struct Returned<std::optional<Multipoint>> {
    static constexpr ResultKind kind = ResultKind::pointCollection;
};
template <> struct Returned<std::optional<NodePoints>> : Returned<std::optional<Multipoint>> {};
template <> struct Returned<std::optional<Polyline>> { static constexpr ResultKind kind = ResultKind::polyline; };
template <> struct Returned<std::optional<Polygon>> { static constexpr ResultKind kind = ResultKind::polygon; };
template <> struct Returned<std::optional<GeometryCollection>> {
    static constexpr ResultKind kind = ResultKind::geometryCollection;
};

template <typename T> Result toResult(T value) {
    return value;
}
template <typename T> Result toResult(std::optional<T> value) {
    return value ? Result(std::move(*value)) : Result();
}

} // namespace detail

} // namespace qz
