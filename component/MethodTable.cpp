#include "component/MethodTable.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

#include <fmt/format.h>

#include "component/ArgumentKinds.h"
#include "platform/Error.h"

namespace qz {

namespace {

char lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

// Levenshtein's distance (1965), letter case ignored.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

std::vector<std::string> methodNames() {
    std::vector<std::string> names;
    for (const MethodInfo& method : methodTable()) {
        names.push_back(method.name);
    }
    return names;
}

void fillIn(const MethodInfo& method, const ParameterInfo& parameter, Argument& argument) {
    if (isNothing(argument)) {
        if (parameter.defaultValue) {
            argument = *parameter.defaultValue;
        } else if (!parameter.isRequired() && !parameter.mayBeAbsent) {
            argument = neutralArgument(parameter.kind);
        }
    }
    if (convertArgument(argument, parameter.kind)) {
        return;
    }
    const bool nothing = isNothing(argument);
    if (nothing && parameter.mayBeAbsent) {
        return;
    }
    throw UsageError(fmt::format("{}: {} must be a value of kind {}{}.", method.name, parameter.name,
                                 nameOf(parameter.kind), nothing ? ", but nothing was given" : ""));
}

} // namespace

const ParameterInfo* MethodInfo::findParameter(std::string_view parameter) const {
    const auto found = std::find_if(parameters.begin(), parameters.end(),
                                    [&](const ParameterInfo& candidate) { return candidate.name == parameter; });
    return found == parameters.end() ? nullptr : &*found;
}

std::string nearestName(std::string_view name, const std::vector<std::string>& names) {
    const auto nearest = std::min_element(names.begin(), names.end(), [&](const auto& a, const auto& b) {
        return editDistance(name, a) < editDistance(name, b);
    });
    return nearest == names.end() ? std::string() : *nearest;
}

const MethodInfo& findMethod(std::string_view name) {
    for (const MethodInfo& method : methodTable()) {
        if (method.name == name) {
            return method;
        }
    }
    throw UsageError(fmt::format("There is no method {}; did you mean {}?", name, nearestName(name, methodNames())));
}

Result invoke(MKQZGenFunRun& component, std::string_view name, std::span<Argument> arguments) {
    const MethodInfo& method = findMethod(name);
    if (arguments.size() != method.parameters.size()) {
        throw UsageError(fmt::format("{} takes {} arguments; {} were given.", method.name, method.parameters.size(),
                                     arguments.size()));
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        fillIn(method, method.parameters[i], arguments[i]);
    }
    return method.call(component, arguments);
}

} // namespace qz
