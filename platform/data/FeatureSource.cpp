#include "platform/data/FeatureSource.h"

#include <filesystem>

namespace qz {

std::string FeatureStore::pathBeside(const std::string& table, const std::string& ending) const {
    return (std::filesystem::path(path()).parent_path() / (table + ending)).string();
}

} // namespace qz
