#include <csignal>
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "platform/Error.h"
#include "platform/app/Services.h"

namespace qz {

std::atomic<bool> interruptSignalled = false;

namespace detail {

ExitStatus statusOfCurrentException() {
    try {
        throw;
    } catch (const Interrupted& error) {
        std::cerr << "qz: " << error.what() << " Nothing was saved.\n";
        return ExitStatus::interrupted;
    } catch (const UsageError& error) {
        std::cerr << "qz: " << error.what() << "\n";
        return ExitStatus::wrongUsage;
    } catch (const DataError& error) {
        std::cerr << "qz: " << error.what() << "\n";
        return ExitStatus::dataError;
    } catch (const std::exception& error) {
        std::cerr << "qz: " << error.what() << "\n";
        return ExitStatus::refused;
    }
}

} // namespace detail

namespace {

constexpr const char* examples = R"(Examples:
  qz info roads.gpkg
  qz methods QZ_Flip
  qz run QZ_Flip --data roads.gpkg:roads --where "name = 'High Street'"
  qz run QZ_Flip --data roads.shp --fid 3,7 --picture flipped.png --dry-run
Exit status: 0 done, 1 refused or failed, 2 wrong usage, 3 data that can't be read or written, 130 interrupted.)";

void stopOnInterrupt() {
    std::signal(SIGINT, [](int) { interruptSignalled = true; });
    services().interruptRequested = [] { return interruptSignalled.load(); };
    services().interruptTaken = [] { interruptSignalled = false; };
}

ExitStatus parseAndRun(CLI::App& app, int argc, char** argv, const ExitStatus& status) {
    try {
        app.parse(argc, argv);
        return status;
    } catch (const CLI::Success& help) {
        app.exit(help);
        return ExitStatus::done;
    } catch (const CLI::ParseError& error) {
        app.exit(error);
        return ExitStatus::wrongUsage;
    }
}

int runProgram(int argc, char** argv) {
    CLI::App app("Edits the features of GIS layers: GeoPackages, shapefiles, file geodatabases, PostGIS.", "qz");
    app.footer(examples);
    app.require_subcommand(1);
    ExitStatus status = ExitStatus::done;
    addMethodsCommand(app, status);
    addInfoCommand(app, status);
    addRunCommand(app, status);
    addScriptCommand(app, status);
    return static_cast<int>(withExitStatus([&] { return parseAndRun(app, argc, argv, status); }));
}

} // namespace

} // namespace qz

int main(int argc, char** argv) {
    qz::stopOnInterrupt();
    return qz::runProgram(argc, argv);
}
