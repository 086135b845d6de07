#pragma once

#include <tuple>
#include <utility>

#include "component/MethodTable.h"

namespace qz {

// How a row of the method table is written down: the member function and the names of its parameters; kinds, results
// and the call by name follow from the function's own type.

struct ParameterName {
    std::string name;
    bool byValue = false;
    bool optional = false;
    std::optional<Argument> defaultValue;
    ParameterUse use = ParameterUse::input;

    ParameterName(const char* text) : name(text) {}
};

[[nodiscard]] ParameterName byValue(ParameterName parameter);
[[nodiscard]] ParameterName optional(ParameterName parameter);
[[nodiscard]] ParameterName defaulted(ParameterName parameter, Argument value);
[[nodiscard]] ParameterName output(ParameterName parameter);
[[nodiscard]] ParameterName noEffect(ParameterName parameter);
[[nodiscard]] ParameterName updateCursor(ParameterName parameter);

// A method that begins and ends an edit operation itself.
[[nodiscard]] MethodInfo withOwnOperation(MethodInfo row);

// Gives the rows their numbers, from 1.
[[nodiscard]] std::vector<MethodInfo> numbered(std::vector<MethodInfo> rows);

namespace detail {

template <typename T> ParameterInfo parameterInfo(const ParameterName& given) {
    return {.name = given.name,
            .kind = Parameter<T>::kind,
            .byValue = given.byValue,
            .optional = given.optional,
            .defaultValue = given.defaultValue,
            .mayBeAbsent = Parameter<T>::mayBeAbsent,
            .writtenBack = Parameter<T>::writtenBack,
            .use = given.use};
}

template <typename R, typename... Ts, std::size_t count>
MethodInfo methodInfo(const char* name, const ParameterName (&names)[count]) {
    static_assert(sizeof...(Ts) == count, "every parameter of a method has a name");
    return [&]<std::size_t... I>(std::index_sequence<I...>) {
        return MethodInfo{.order = 0,
                          .name = name,
                          .parameters = {parameterInfo<Ts>(names[I])...},
                          .result = Returned<R>::kind,
                          .ownsOperation = false,
                          .call = {}};
    }
    (std::index_sequence_for<Ts...>{});
}

} // namespace detail

template <typename R, typename... Ts, std::size_t count>
MethodInfo method(R (MKQZGenFunRun::*member)(Ts...) noexcept, const char* name, const ParameterName (&names)[count]) {
    MethodInfo row = detail::methodInfo<R, Ts...>(name, names);
    row.call = [member](MKQZGenFunRun& component, std::span<Argument> arguments) {
        return [&]<std::size_t... I>(std::index_sequence<I...>) {
            return detail::toResult((component.*member)(detail::Parameter<Ts>::pass(arguments[I])...));
        }
        (std::index_sequence_for<Ts...>{});
    };
    return row;
}

} // namespace qz
