#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "component/Arguments.h"
#include "host/HeadlessDisplay.h"
#include "host/HeadlessStatusBar.h"
#include "host/run/ChangeRecorder.h"

namespace qz {

// What came of a run.
struct RunReport {
    std::string method;
    Result result;
    std::vector<std::pair<std::string, Argument>> parameters; // as they stand after the call
    std::vector<std::string> messages;
    const Schema* schema = nullptr; // of the rows changed; nothing without a layer
    RowChanges changes;
    std::vector<GraphicElement> graphics;
    std::vector<Drawing> drawings;
    std::int64_t refreshCount = 0;
    Envelope refreshExtent;
    ProgressRecord progress;
    bool saved = false;
    double seconds = 0;
    // Why writing was refused altogether, as for a read-only file; empty when it was not. Nothing was written then.
    std::string refusal;
    bool interrupted = false; // by the user; everything was given up

    // The method returned true, a geometry or a text, and nothing came between.
    [[nodiscard]] bool succeeded() const noexcept;
};

// The report as one JSON object. Geometries are WKT, envelopes [xmin, ymin, xmax, ymax] or null, dates ISO 8601.
[[nodiscard]] nlohmann::ordered_json toJson(const RunReport& report);

} // namespace qz
