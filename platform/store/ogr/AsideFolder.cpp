#include "platform/store/ogr/AsideFolder.h"

#include <string_view>

#include <unistd.h>

#include <fmt/format.h>

#include "platform/Error.h"
#include "platform/store/ogr/FileTools.h"

namespace qz {

namespace {

constexpr std::string_view prefix = ".qz-save-";
constexpr const char* markerName = "commit";
constexpr const char* unfinishedMarkerName = "commit.part";

// A line of the marker: what becomes of the file named after it.
constexpr char replaceLine = '+';
constexpr char removeLine = '-';

std::vector<std::filesystem::path> asideFolders(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (entry.path().filename().string().starts_with(prefix)) {
            found.push_back(entry.path());
        }
    }
    return found;
}

void carryOut(const std::filesystem::path& aside, std::string_view line) {
    const std::filesystem::path name = line.substr(1);
    const std::filesystem::path target = aside.parent_path() / name;
    if (line.front() == removeLine) {
        std::filesystem::remove(target);
    } else if (std::filesystem::exists(aside / name)) {
        renameOver(aside / name, target);
    }
}

// Every step leaves a state from which the whole can be carried out again.
void carryOutMarker(const std::filesystem::path& aside) {
    const std::string marker = readTextFile(aside / markerName);
    std::string_view rest = marker;
    while (!rest.empty()) {
        const auto end = rest.find('\n');
        carryOut(aside, rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    syncToDisk(aside.parent_path());
    std::filesystem::remove(aside / markerName);
}

void recover(const std::filesystem::path& aside) {
    const int lock = FolderLock::tryLock(aside);
    if (lock < 0) {
        return; // its process lives
    }
    try {
        if (std::filesystem::exists(aside / markerName)) {
            carryOutMarker(aside);
        }
        std::filesystem::remove_all(aside);
    } catch (const std::filesystem::filesystem_error& error) {
        close(lock);
        throw DataError(
            fmt::format("The interrupted save in {} can't be completed: {}.", aside.string(), error.what()));
    } catch (...) {
        close(lock);
        throw;
    }
    close(lock);
}

std::string lines(char kind, const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += kind + name + '\n';
    }
    return text;
}

} // namespace

AsideFolder::AsideFolder(const std::filesystem::path& parent) {
    std::string pattern = (parent / (std::string(prefix) + "XXXXXX")).string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw DataError(fmt::format("The folder {} can't be written to.", parent.string()));
    }
    path_ = pattern;
    lock_ = FolderLock::tryLock(path_);
}

AsideFolder::~AsideFolder() {
    std::error_code ignored;
    // A committed save that couldn't be completed here is completed by the next opening.
    if (!std::filesystem::exists(path_ / markerName, ignored)) {
        std::filesystem::remove_all(path_, ignored);
    }
    close(lock_);
}

void AsideFolder::commit(const std::vector<std::string>& files, const std::vector<std::string>& obsolete) {
    for (const std::string& file : files) {
        syncToDisk(path_ / file);
    }
    writeTextFile(path_ / unfinishedMarkerName, lines(replaceLine, files) + lines(removeLine, obsolete));
    renameOver(path_ / unfinishedMarkerName, path_ / markerName);
    syncToDisk(path_);
}

void AsideFolder::complete() {
    carryOutMarker(path_);
}

void recoverFolder(const std::filesystem::path& folder) {
    for (const std::filesystem::path& aside : asideFolders(folder)) {
        recover(aside);
    }
}

bool needsRecovery(const std::filesystem::path& folder) {
    return !asideFolders(folder).empty();
}

} // namespace qz
