#include "RunOutput.h"

#include <fstream>
#include <iostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "platform/Error.h"

namespace qz {

namespace {

std::string counts(const RowChanges& changes) {
    return fmt::format("{} inserted, {} updated, {} deleted", changes.inserted.size(), changes.updated.size(),
                       changes.deleted.size());
}

std::string outcome(const RunReport& report) {
    if (report.interrupted) {
        return "interrupted; nothing was saved";
    }
    if (!report.refusal.empty()) {
        return report.refusal;
    }
    if (!report.succeeded()) {
        return report.saved ? "failed; what it had saved by itself stays" : "refused or failed; nothing was saved";
    }
    if (const auto* text = std::get_if<std::string>(&report.result)) {
        return *text;
    }
    return counts(report.changes) + (report.saved ? "; saved" : "");
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
