#include "host/run/DataSets.h"

#include <filesystem>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "platform/store/Stores.h"

namespace qz {

namespace {

std::string canonical(const std::string& path) {
    std::error_code ignored;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, ignored);
    return ignored || path.starts_with("PG:") ? path : resolved.string();
}

std::string onlyLayer(OverlayWorkspace& workspace) {
    std::vector<std::string> layers;
    for (const std::string& name : workspace.tableNames()) {
        if (workspace.table(name)->schema().shape) {
            layers.push_back(name);
        }
    }
    if (layers.size() != 1) {
        throw DataError(layers.empty()
                            ? fmt::format("{} has no layer with shapes.", workspace.path())
                            : fmt::format("{} has several layers: name one as PATH:LAYER. The layers are {}.",
                                          workspace.path(), fmt::join(layers, ", ")));
    }
    return layers.front();
}

} // namespace

std::pair<std::string, std::string> splitPlace(const std::string& place) {
    std::error_code ignored;
    const std::size_t colon = place.rfind(':');
    const bool isPrefix = colon == 2 && place.starts_with("PG:");
    if (colon == std::string::npos || isPrefix || std::filesystem::exists(place, ignored)) {
        return {place, ""};
    }
    return {place.substr(0, colon), place.substr(colon + 1)};
}

OverlayWorkspace& DataSets::workspace(const std::string& path, const std::string& output) {
    const std::pair key(canonical(path), output.empty() ? output : canonical(output));
    const auto known = workspaces_.find(key);
    if (known != workspaces_.end()) {
        return *known->second;
    }
    auto store =
        output.empty() ? openStore(path, withholdSaves_ ? OpenMode::read : OpenMode::edit) : openCopy(path, output);
    auto opened = std::make_unique<OverlayWorkspace>(std::move(store), OverlayOptions{observer_, withholdSaves_});
    return *workspaces_.emplace(key, std::move(opened)).first->second;
}

OpenLayer DataSets::open(const std::string& place, const std::string& output) {
    const auto [path, layer] = splitPlace(place);
    OverlayWorkspace& opened = workspace(path, withholdSaves_ ? std::string() : output);
    FeatureClass* table = opened.table(layer.empty() ? onlyLayer(opened) : layer);
    if (!table) {
        throw DataError(
            fmt::format("{} has no layer {}; its layers are {}.", path, layer, fmt::join(opened.tableNames(), ", ")));
    }
    return {&opened, static_cast<OverlayClass*>(table)};
}

} // namespace qz
