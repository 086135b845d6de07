#include <iostream>
#include <memory>

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "RunOptions.h"
#include "RunOutput.h"
#include "host/run/RunSession.h"

namespace qz {

namespace {

constexpr const char* examples =
    R"(Parameters of the method are given under their own names: --dFuzzy 0.001 --bOver false.
  points, lines, polygons   WKT, or x,y for a point
  envelopes                 xmin,ymin,xmax,ymax
  features                  object id; default: the first selected
  dictionaries              a JSON object: '{"NAME": "High Street"}'
  nothing                   null
`qz methods METHOD` lists them; layers, cursors and counts come from the options above.
Examples:
  qz run QZ_Flip --data roads.gpkg:roads --where "name = 'High Street'"
  qz run QZ_Flip --data roads.shp --fid 3,7 --report - --dry-run
  qz run QZ_Flip --data town.gdb:streets --all --output flipped.gdb --picture flipped.png)";

ExitStatus runMethod(const RunRequest& request) {
    HeadlessHost host(std::cerr, isatty(STDERR_FILENO) == 1);
    RunSession session(host, std::cerr, {.dryRun = request.dryRun, .keepsEditing = false});
    const RunReport report = session.run(request);
    writeReport(report, request.reportPath);
    const ExitStatus status = statusOf(report);
    std::ostream& out = status == ExitStatus::done && request.reportPath != "-" ? std::cout : std::cerr;
    out << summary(report) << std::endl;
    return status;
}

} // namespace

void addRunCommand(CLI::App& app, ExitStatus& status) {
    CLI::App* command = app.add_subcommand("run", "Run a method on the selected features of a layer");
    command->footer(examples);
    command->allow_extras();
    auto request = std::make_shared<RunRequest>();
    command->add_option("METHOD", request->method, "Name of a method, letter case included")->required();
    addRunOptions(*command, *request);
    command->callback([command, request, &status] {
        status = withExitStatus([&] {
            addParameters(*request, command->remaining());
            return runMethod(*request);
        });
    });
}

} // namespace qz
