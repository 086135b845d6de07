#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/data/overlay/OverlayWorkspace.h"
#include "platform/store/Stores.h"

namespace qz::test {

// The data sets of the folder that QZ_REAL_LAYERS names, sorted; none when it names none. Tests only read them.
inline std::vector<std::string> realDataSets() {
    const char* folder = std::getenv("QZ_REAL_LAYERS");
    std::vector<std::string> paths;
    if (folder != nullptr) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            const std::string ending = entry.path().extension().string();
            if (ending == ".gpkg" || ending == ".shp" || ending == ".gdb") {
                paths.push_back(entry.path().string());
            }
        }
    }
    std::ranges::sort(paths);
    return paths;
}

// Calls `see(class)` for every layer of the kind; what is edited is not saved.
template <typename See> void forEachRealLayer(GeometryKind kind, See see) {
    for (const std::string& path : realDataSets()) {
        OverlayWorkspace workspace(openStore(path, OpenMode::edit), {.saveObserver = {}, .withholdSaves = true});
        for (const std::string& name : workspace.tableNames()) {
            FeatureClass& featureClass = *workspace.table(name);
            const auto& shape = featureClass.schema().shape;
            if (shape && shape->kind == kind) {
                SCOPED_TRACE(path + ", " + name);
                see(featureClass);
            }
        }
    }
}

} // namespace qz::test
