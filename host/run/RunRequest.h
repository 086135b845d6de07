#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/data/Value.h"
#include "platform/geometry/Envelope.h"

namespace qz {

// Which features of a layer are selected. Conditions that are given must all hold; without any, none is selected.
struct SelectionRequest {
    std::optional<std::vector<ObjectId>> ids;
    std::optional<std::string> where;
    std::optional<Envelope> bounds; // in the layer's spatial reference; features that intersect it
    bool all = false;

    [[nodiscard]] bool isGiven() const noexcept { return ids || where || bounds || all; }
};

// One run of a method as a user asks for it. Empty texts are options that were not given.
struct RunRequest {
    std::string method;
    std::string data;   // PATH[:LAYER]
    std::string source; // PATH[:LAYER]
    SelectionRequest selection;
    SelectionRequest sourceSelection;
    std::string mapReference; // "EPSG:n"
    std::optional<Envelope> extent;
    std::string graphicsPath;
    std::string picturePath;
    std::string beforeAfterPath;
    std::string outputPath;
    std::string reportPath; // "-" for standard output
    std::string localeName;
    std::optional<std::uint32_t> seed;
    bool dryRun = false;
    std::vector<std::pair<std::string, std::string>> parameters; // name and value as it was written
};

} // namespace qz
