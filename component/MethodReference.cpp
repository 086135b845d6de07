#include "component/MethodReference.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include "component/MethodHelp.h"

namespace qz {

namespace {

using Json = nlohmann::ordered_json;

Json defaultAsJson(const Argument& value) {
    return std::visit(
        [](const auto& content) -> Json {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_arithmetic_v<Content> || std::is_same_v<Content, std::string>) {
                return content;
            } else {
                return nullptr;
            }
        },
        value);
}

std::string remarks(const ParameterInfo& parameter) {
    std::vector<std::string> notes;
    if (parameter.byValue) {
        notes.emplace_back("by value");
    }
    if (parameter.optional) {
        notes.push_back(parameter.defaultValue ? "default " + defaultAsJson(*parameter.defaultValue).dump()
                                               : "optional, no default");
    }
    if (parameter.mayBeAbsent && !parameter.optional) {
        notes.emplace_back("may be absent");
    }
    if (parameter.use == ParameterUse::output) {
        notes.emplace_back("returned");
    } else if (parameter.writtenBack) {
        notes.emplace_back("changed");
    }
    if (parameter.use == ParameterUse::noEffect) {
        notes.emplace_back("no effect");
    }
    if (parameter.use == ParameterUse::updateCursor) {
        notes.emplace_back("update cursor");
    }
    return fmt::format("{}", fmt::join(notes, ", "));
}

std::string signature(const MethodInfo& method) {
    std::vector<std::string> names;
    for (const ParameterInfo& parameter : method.parameters) {
        names.push_back(parameter.name);
    }
    return fmt::format("{}({})", method.name, fmt::join(names, ", "));
}

Json asJson(const ParameterInfo& parameter) {
    Json object{{"name", parameter.name},
                {"kind", nameOf(parameter.kind)},
                {"byReference", !parameter.byValue},
                {"optional", parameter.optional},
                {"mayBeAbsent", parameter.mayBeAbsent},
                {"returned", parameter.use == ParameterUse::output},
                {"noEffect", parameter.use == ParameterUse::noEffect}};
    if (parameter.defaultValue) {
        object["default"] = defaultAsJson(*parameter.defaultValue);
    }
    return object;
}

Json asJson(const MethodInfo& method) {
    Json parameters = Json::array();
    for (const ParameterInfo& parameter : method.parameters) {
        parameters.push_back(asJson(parameter));
    }
    return {{"order", method.order},
            {"name", method.name},
            {"purpose", helpFor(method.name).purpose},
            {"parameters", std::move(parameters)},
            {"result", nameOf(method.result)}};
}

std::string exampleOf(const MethodInfo& method) {
    return fmt::format("qz run {} {}", method.name, helpFor(method.name).example);
}

std::string inFull(const MethodInfo& method) {
    std::string text = fmt::format("{}  ({} of {})\n  result: {}\n", method.name, method.order, methodTable().size(),
                                   nameOf(method.result));
    const MethodHelp help = helpFor(method.name);
    text += fmt::format("  {}\n", help.purpose);
    for (const ParameterInfo& parameter : method.parameters) {
        const std::string notes = remarks(parameter);
        text += fmt::format("  --{:<18} {}{}{}\n", parameter.name, nameOf(parameter.kind), notes.empty() ? "" : ", ",
                            notes);
    }
    return text + fmt::format("Example:\n  {}\n", exampleOf(method));
}

} // namespace

MethodSelection selectMethods(const std::string& name) {
    if (!name.empty()) {
        return {&findMethod(name)};
    }
    MethodSelection all;
    for (const MethodInfo& method : methodTable()) {
        all.push_back(&method);
    }
    return all;
}

std::string methodsAsText(const MethodSelection& methods) {
    if (methods.size() == 1) {
        return inFull(*methods.front());
    }
    std::string text;
    for (const MethodInfo* method : methods) {
        text += fmt::format("{:>3} {} -> {}\n", method->order, signature(*method), nameOf(method->result));
    }
    return text;
}

std::string methodsAsJson(const MethodSelection& methods) {
    Json list = Json::array();
    for (const MethodInfo* method : methods) {
        list.push_back(asJson(*method));
    }
    return methods.size() == 1 ? list.front().dump(2) : list.dump(2);
}

std::string methodsAsMarkdown(const MethodSelection& methods) {
    std::string text = "# Methods\n\n"
                       "Written by `qz methods --markdown`. Parameters are passed by reference unless marked. The "
                       "examples run on copies of the sample, `examples/town.gpkg`.\n";
    for (const MethodInfo* method : methods) {
        text += fmt::format("\n## {}. {}\n\n{}\n\n```sh\n{}\n```\n\nResult: {}.\n\n", method->order, method->name,
                            helpFor(method->name).purpose, exampleOf(*method), nameOf(method->result));
        text += "| parameter | kind | remarks |\n|---|---|---|\n";
        for (const ParameterInfo& parameter : method->parameters) {
            text += fmt::format("| `{}` | {} | {} |\n", parameter.name, nameOf(parameter.kind), remarks(parameter));
        }
    }
    return text;
}

} // namespace qz
