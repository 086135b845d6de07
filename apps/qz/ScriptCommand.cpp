#include <fstream>
#include <iostream>
#include <memory>

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "RunOptions.h"
#include "RunOutput.h"
#include "host/run/RunSession.h"
#include "platform/Error.h"

namespace qz {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* examples = R"(One JSON object a line; nothing is stored before "save" or the end of the script:
  {"run": "QZ_Flip", "data": "roads.gpkg:roads", "where": "name = 'High Street'"}
  {"undo": 1}
  {"run": "QZ_Flip", "data": "roads.gpkg:roads", "fid": [3, 7], "report": "flip.json"}
  {"save": true}
Also {"redo": 1} and {"discard": true}. Every option of `qz run` is a key, those of the method stand in "parameters".
A refused run is aborted and the script goes on (exit status 1); a line that can't be understood ends it (2), and what
was not saved before is not stored.
Example:
  qz script edits.jsonl)";

struct ScriptOptions {
    std::string file;
    bool dryRun = false;
};

// Runs the lines of a script one after the other.
class ScriptRunner {
public:
    explicit ScriptRunner(bool dryRun)
        : host_(std::cerr, isatty(STDERR_FILENO) == 1),
          session_(host_, std::cerr, {.dryRun = dryRun, .keepsEditing = true}) {}

    void line(const std::string& text) {
        const Json command = Json::parse(text, nullptr, false);
        if (!command.is_object() || command.empty()) {
            throw UsageError("it is no JSON object.");
        }
        if (command.contains("run")) {
            run(requestFromJson(command));
        } else {
            control(command);
        }
    }

    void end() { session_.save(); }

    [[nodiscard]] ExitStatus status() const noexcept { return status_; }

private:
    void run(const RunRequest& request) {
        if (request.dryRun) {
            throw UsageError("\"dry-run\" is an option of the whole script: qz script --dry-run FILE.");
        }
        try {
            const RunReport report = session_.run(request);
            writeReport(report, request.reportPath);
            std::cout << summary(report) << std::endl;
            settle(report);
        } catch (const UsageError&) {
            throw;
        } catch (const DataError&) {
            throw;
        } catch (const Interrupted&) {
            throw;
        } catch (const PlatformError& error) {
            std::cerr << "qz: " << error.what() << std::endl;
            status_ = ExitStatus::refused;
        }
    }

    void settle(const RunReport& report) {
        if (report.interrupted) {
            throw Interrupted();
        }
        if (!report.refusal.empty()) {
            throw DataError(report.refusal);
        }
        if (!report.succeeded()) {
            status_ = ExitStatus::refused;
        }
    }

    void control(const Json& command) {
        const std::string key = command.begin().key();
        const Json& value = command.front();
        if (command.size() != 1) {
            throw UsageError(fmt::format("it has several keys but no \"run\": {}.", command.dump()));
        }
        if (key == "undo" || key == "redo") {
            step(key, value);
        } else if (key == "save" || key == "discard") {
            requireTrue(key, value);
            key == "save" ? session_.save() : session_.discard();
        } else {
            throw UsageError(fmt::format("\"{}\" is none of \"run\", \"undo\", \"redo\", \"save\", \"discard\".", key));
        }
    }

    void step(const std::string& key, const Json& value) {
        if (!value.is_number_integer() || value.get<std::int64_t>() < 1 || value.get<std::int64_t>() > 1000000) {
            throw UsageError(fmt::format("\"{}\" is how many runs, 1 or more, not {}.", key, value.dump()));
        }
        const int wanted = value.get<int>();
        const int done = key == "undo" ? session_.undo(wanted) : session_.redo(wanted);
        std::cout << fmt::format("{}: {} of {}", key, done, wanted) << std::endl;
        if (done < wanted) {
            status_ = ExitStatus::refused;
        }
    }

    static void requireTrue(const std::string& key, const Json& value) {
        if (value != true) {
            throw UsageError(fmt::format("\"{}\" is true, not {}.", key, value.dump()));
        }
    }

    HeadlessHost host_;
    RunSession session_;
    ExitStatus status_ = ExitStatus::done;
};

ExitStatus runLines(std::istream& lines, const ScriptOptions& options) {
    ScriptRunner runner(options.dryRun);
    std::string text;
    for (int number = 1; std::getline(lines, text); ++number) {
        if (text.find_first_not_of(" \t\r") == std::string::npos) {
            continue;
        }
        try {
            runner.line(text);
        } catch (const UsageError& error) {
            throw UsageError(fmt::format("{}:{}: {}", options.file, number, error.what()));
        }
    }
    runner.end();
    return runner.status();
}

ExitStatus runScript(const ScriptOptions& options) {
    if (options.file == "-") {
        return runLines(std::cin, options);
    }
    std::ifstream file(options.file);
    if (!file) {
        throw DataError(fmt::format("The script {} can't be read.", options.file));
    }
    return runLines(file, options);
}

} // namespace

void addScriptCommand(CLI::App& app, ExitStatus& status) {
    CLI::App* command = app.add_subcommand("script", "Run several methods in one edit session");
    command->footer(examples);
    auto options = std::make_shared<ScriptOptions>();
    command->add_option("FILE", options->file, "Lines of JSON (- for standard input)")->required();
    command->add_flag("--dry-run", options->dryRun, "Run and report, save nothing");
    command->callback([options, &status] { status = withExitStatus([&] { return runScript(*options); }); });
}

} // namespace qz
