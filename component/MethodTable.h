#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "component/Arguments.h"

namespace qz {

class MKQZGenFunRun;

// What a parameter is for, where its type doesn't tell.
enum class ParameterUse {
    input,
    output,      // only returns something
    noEffect,    // accepted and not used
    updateCursor // a cursor that the method writes through
};

// One parameter as callers by name see it. All are passed by reference unless `byValue`.
struct ParameterInfo {
    std::string name;
    ParameterKind kind = ParameterKind::boolean;
    bool byValue = false;
    bool optional = false;                // may be left out of the call
    std::optional<Argument> defaultValue; // used when it is left out; an optional one without a default is then absent
    bool mayBeAbsent = false;             // may be nothing
    bool writtenBack = false;
    ParameterUse use = ParameterUse::input;

    // Whether a caller has to give it a value.
    [[nodiscard]] bool isRequired() const noexcept {
        return !optional && !mayBeAbsent && use != ParameterUse::output && use != ParameterUse::noEffect;
    }
};

// One method of the component.
struct MethodInfo {
    int order = 0; // 1 to 72
    std::string name;
    std::vector<ParameterInfo> parameters;
    ResultKind result = ResultKind::boolean;
    // The caller only starts editing: the method begins and ends its edit operation.
    bool ownsOperation = false;
    // Calls the member function with arguments that fit the parameters.
    std::function<Result(MKQZGenFunRun&, std::span<Argument>)> call;

    // Nothing when there is none of that name; letter case counts.
    [[nodiscard]] const ParameterInfo* findParameter(std::string_view parameter) const;
};

// All methods in their order.
[[nodiscard]] const std::vector<MethodInfo>& methodTable();

// Throws UsageError that names the nearest method when there is none of that name; letter case counts.
[[nodiscard]] const MethodInfo& findMethod(std::string_view name);

// Calls a method by name. `arguments` are in the order of its parameters, each of the parameter's kind; numbers are
// converted between the numeric kinds, rounding half to even. std::monostate gives the default of an optional
// parameter, and a neutral value to one that only returns something or has no effect.
// What the method writes back stands in `arguments` afterwards.
// Throws UsageError for a wrong name, number or kind of arguments.
Result invoke(MKQZGenFunRun& component, std::string_view name, std::span<Argument> arguments);

// The one of `names` that takes the fewest single-letter edits to become `name`, letter case ignored; for hints.
[[nodiscard]] std::string nearestName(std::string_view name, const std::vector<std::string>& names);

} // namespace qz
