#include "host/ReplacedFile.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unistd.h>

#include "platform/Error.h"

namespace qz {

namespace {

namespace fs = std::filesystem;

// The process id keeps two runs that write one target apart; the ending tells drivers the format.
std::string pathAside(const std::string& target) {
    const fs::path path(target);
    const std::string name = "." + path.stem().string() + "." + std::to_string(getpid()) + path.extension().string();
    return (path.parent_path() / name).string();
}

void removeIfThere(const std::string& path) {
    std::error_code ignored;
    fs::remove(path, ignored);
}

} // namespace

ReplacedFile::ReplacedFile(const std::string& target) : target_(target), aside_(pathAside(target)) {
    removeIfThere(aside_);
}

ReplacedFile::~ReplacedFile() {
    removeIfThere(aside_);
}

void ReplacedFile::complete() {
    std::error_code failure;
    fs::rename(aside_, target_, failure);
    if (failure) {
        throw DataError("Can't write \"" + target_ + "\": " + failure.message() + ".");
    }
}

void requireWritablePlace(const std::string& target) {
    const fs::path folder = fs::absolute(target).parent_path();
    std::error_code ignored;
    if (!fs::is_directory(folder, ignored)) {
        throw DataError("Can't write \"" + target + "\": the folder " + folder.string() + " doesn't exist.");
    }
    if (access(folder.c_str(), W_OK) != 0) {
        throw DataError("Can't write \"" + target + "\": the folder " + folder.string() + " is read-only.");
    }
}

std::string lowerCaseEnding(const std::string& path) {
    std::string ending = fs::path(path).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(), [](char c) {
        const bool isUpper = c >= 'A' && c <= 'Z';
        return isUpper ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return ending;
}

} // namespace qz
