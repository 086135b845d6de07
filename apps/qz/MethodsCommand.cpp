#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "Commands.h"
#include "component/MethodReference.h"

namespace qz {

namespace {

constexpr const char* examples = R"(Examples:
  qz methods                    all methods with their parameters
  qz methods QZ_Flip            one of them, with defaults and kinds
  qz methods --markdown         the reference in docs/methods.md)";

struct MethodsOptions {
    std::string method;
    bool json = false;
    bool markdown = false;
};

ExitStatus showMethods(const MethodsOptions& options) {
    const MethodSelection methods = selectMethods(options.method);
    if (options.json) {
        std::cout << methodsAsJson(methods) << "\n";
    } else if (options.markdown) {
        std::cout << methodsAsMarkdown(methods);
    } else {
        std::cout << methodsAsText(methods);
    }
    return ExitStatus::done;
}

} // namespace

void addMethodsCommand(CLI::App& app, ExitStatus& status) {
    CLI::App* command = app.add_subcommand("methods", "List the 72 methods, or show one with its parameters");
    command->footer(examples);
    auto options = std::make_shared<MethodsOptions>();
    command->add_option("METHOD", options->method, "Name of a method, letter case included");
    auto* json = command->add_flag("--json", options->json, "As JSON");
    command->add_flag("--markdown", options->markdown, "As Markdown")->excludes(json);
    command->callback([options, &status] { status = withExitStatus([&] { return showMethods(*options); }); });
}

} // namespace qz
