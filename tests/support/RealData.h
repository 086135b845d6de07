#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

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

} // namespace qz::test
