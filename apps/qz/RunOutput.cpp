#include "RunOutput.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <optional>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "host/ReplacedFile.h"
#include "platform/Error.h"
#include "platform/geometry/WellKnown.h"

namespace qz {

namespace {

std::size_t drawn(const RunReport& report) {
    return report.graphics.size() + report.drawings.size();
}

// What was drawn, for methods that draw, and what became of the rows.
std::string counts(const RunReport& report) {
    const RowChanges& rows = report.changes;
    const std::string changes = fmt::format("{} inserted, {} updated, {} deleted", rows.inserted.size(),
                                            rows.updated.size(), rows.deleted.size());
    if (drawn(report) == 0) {
        return changes;
    }
    return fmt::format("{} drawn", drawn(report)) + (rows.empty() ? "" : "; " + changes);
}

constexpr std::size_t longestText = 1000;

// Not to flood a terminal; the report has all.
std::string shortened(const std::string& text) {
    return text.size() <= longestText ? text : text.substr(0, longestText) + "... (whole with --report)";
}

// Nothing for a result that is no shape.
std::optional<std::string> wellKnownText(const Result& result) {
    return std::visit(
        [](const auto& content) -> std::optional<std::string> {
            if constexpr (requires { toWkt(content); }) {
                return toWkt(content);
            } else {
                return std::nullopt;
            }
        },
        result);
}

// Finders refuse in silence, by their parameter bChecked.
bool hadTooManyInView(const RunReport& report) {
    return !report.succeeded() && report.messages.empty() &&
           std::ranges::any_of(report.parameters, [](const auto& parameter) {
               const bool* checked = std::get_if<bool>(&parameter.second);
               return parameter.first == "bChecked" && checked && !*checked;
           });
}

std::string failure(const RunReport& report) {
    if (report.saved) {
        return "failed; what it had saved by itself stays";
    }
    return report.messages.empty() ? fmt::format("refused without a reason given; nothing was saved. `qz methods {}` "
                                                 "tells what it works on",
                                                 report.method)
                                   : "refused or failed; nothing was saved";
}

std::string outcome(const RunReport& report) {
    if (report.interrupted) {
        return "interrupted; nothing was saved";
    }
    if (!report.refusal.empty()) {
        return report.refusal;
    }
    if (hadTooManyInView(report)) {
        return "refused: the view shows more features than the limit; zoom in with --extent or raise the limit";
    }
    if (!report.succeeded()) {
        return failure(report);
    }
    const std::string changes = counts(report) + (report.saved ? "; saved" : "");
    if (const auto* text = std::get_if<std::string>(&report.result)) {
        return *text;
    }
    if (const auto shape = wellKnownText(report.result)) {
        const bool onlyFound = report.changes.empty() && drawn(report) == 0;
        return shortened(*shape) + (onlyFound ? "" : "; " + changes);
    }
    return changes;
}

} // namespace

std::string summary(const RunReport& report) {
    return fmt::format("{}: {}", report.method, outcome(report));
}

ExitStatus statusOf(const RunReport& report) {
    if (report.interrupted) {
        return ExitStatus::interrupted;
    }
    if (!report.refusal.empty()) {
        return ExitStatus::dataError;
    }
    return report.succeeded() ? ExitStatus::done : ExitStatus::refused;
}

void writeReport(const RunReport& report, const std::string& path) {
    if (path.empty()) {
        return;
    }
    const std::string text = toJson(report).dump(2);
    if (path == "-") {
        std::cout << text << std::endl;
        return;
    }
    ReplacedFile target(path);
    std::ofstream file(target.asidePath());
    file << text << "\n";
    if (!file.flush()) {
        throw DataError(
            fmt::format("The report {} can't be written.{}", path, report.saved ? " The edits are saved." : ""));
    }
    target.complete();
}

} // namespace qz
