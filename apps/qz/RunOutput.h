#pragma once

#include <iosfwd>
#include <string>

#include "Commands.h"
#include "host/run/RunReport.h"

namespace qz {

// One line for people: what came of the run.
[[nodiscard]] std::string summary(const RunReport& report);

[[nodiscard]] ExitStatus statusOf(const RunReport& report);

// Writes the report to a file, or to standard output for "-"; nothing for an empty path. Throws DataError.
void writeReport(const RunReport& report, const std::string& path);

} // namespace qz
