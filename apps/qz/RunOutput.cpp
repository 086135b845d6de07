#include "RunOutput.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <optional>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "platform/Error.h"
#include "platform/geometry/WellKnown.h"

namespace qz {

namespace {

// What was drawn, for methods that draw, and what became of the rows.
std::string counts(const RunReport& report) {
    const RowChanges& rows = report.changes;
    const std::string changes = fmt::format("{} inserted, {} updated, {} deleted", rows.inserted.size(),
                                            rows.updated.size(), rows.deleted.size());
    const std::size_t drawn = report.graphics.size() + report.drawings.size();
    if (drawn == 0) {
        return changes;
    }
    return fmt::format("{} drawn", drawn) + (rows.empty() ? "" : "; " + changes);
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
        return report.saved ? "failed; what it had saved by itself stays" : "refused or failed; nothing was saved";
    }
    const std::string changes = counts(report) + (report.saved ? "; saved" : "");
    if (const auto* text = std::get_if<std::string>(&report.result)) {
        return *text;
    }
    if (const auto shape = wellKnownText(report.result)) {
        return shortened(*shape) + "; " + changes;
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
    std::ofstream file(path);
    file << text << "\n";
    if (!file.flush()) {
        throw DataError(fmt::format("The report {} can't be written.", path));
    }
}

} // namespace qz
