#pragma once

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "host/run/RunRequest.h"

namespace CLI {
class App;
}

namespace qz {

// The host options of a run are one table that the command line and the lines of a script share.

// Adds the options to the command; parsing writes them into the request.
void addRunOptions(CLI::App& command, RunRequest& request);

// Method parameters as they stand on the command line: --NAME VALUE or --NAME=VALUE, one after the other. Throws
// UsageError for a name without a value and for a word that is no name.
void addParameters(RunRequest& request, const std::vector<std::string>& words);

// {"run": "QZ_Flip", "data": "roads.gpkg:roads", "where": "...", "parameters": {...}}: the keys are the options without
// their dashes. Throws UsageError for other keys and for values that can't be read.
[[nodiscard]] RunRequest requestFromJson(const nlohmann::ordered_json& line);

} // namespace qz
