#include "platform/store/ogr/FileTools.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "platform/Error.h"

namespace qz {

namespace {

// How long another process may hold a folder: a save of a large layer takes seconds.
constexpr auto longestWait = std::chrono::seconds(30);
constexpr auto pause = std::chrono::milliseconds(5);

[[noreturn]] void failWithErrno(const std::filesystem::path& path, const char* what) {
    throw DataError(fmt::format("{} can't be {}: {}.", path.string(), what, std::strerror(errno)));
}

void requireDone(bool done, const std::filesystem::path& path, const char* what) {
    if (!done) {
        failWithErrno(path, what);
    }
}

} // namespace

int FolderLock::tryLock(const std::filesystem::path& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    requireDone(descriptor >= 0, folder, "opened");
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
        return descriptor;
    }
    close(descriptor);
    return -1;
}

FolderLock::FolderLock(const std::filesystem::path& folder) {
    const auto end = std::chrono::steady_clock::now() + longestWait;
    descriptor_ = tryLock(folder);
    while (descriptor_ < 0) {
        if (std::chrono::steady_clock::now() > end) {
            throw DataError(
                fmt::format("{} is locked by another program; try again when it is done.", folder.string()));
        }
        std::this_thread::sleep_for(pause);
        descriptor_ = tryLock(folder);
    }
}

FolderLock::~FolderLock() {
    close(descriptor_);
}

FileSignature signatureOf(const std::filesystem::path& path) {
    FileSignature signature;
    signature.path = path;
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) {
        signature.inode = status.st_ino;
        signature.size = status.st_size;
        signature.modifiedNanoseconds =
            std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + std::int64_t{status.st_mtim.tv_nsec};
    }
    return signature;
}

std::vector<FileSignature> signaturesIn(const std::filesystem::path& folder) {
    std::vector<FileSignature> signatures;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        signatures.push_back(signatureOf(entry.path()));
    }
    std::ranges::sort(signatures, {}, &FileSignature::path);
    return signatures;
}

void copyFile(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::error_code error;
    if (!std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing, error)) {
        throw DataError(fmt::format("{} can't be copied to {}: {}.", from.string(), to.string(), error.message()));
    }
}

void syncToDisk(const std::filesystem::path& fileOrFolder) {
    const int descriptor = open(fileOrFolder.c_str(), O_RDONLY | O_CLOEXEC);
    requireDone(descriptor >= 0, fileOrFolder, "opened");
    const bool done = fsync(descriptor) == 0;
    close(descriptor);
    requireDone(done, fileOrFolder, "written to the disk");
}

void writeTextFile(const std::filesystem::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    requireDone(!file.fail(), path, "written");
    syncToDisk(path);
}

std::string readTextFile(const std::filesystem::path& path) {
    const std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    requireDone(file.good(), path, "read");
    return text.str();
}

void renameOver(const std::filesystem::path& from, const std::filesystem::path& to) {
    requireDone(std::rename(from.c_str(), to.c_str()) == 0, to, "put in place");
}

void renameToNew(const std::filesystem::path& from, const std::filesystem::path& to) {
    requireDone(renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0, to, "put in place");
}

void exchange(const std::filesystem::path& a, const std::filesystem::path& b) {
    requireDone(renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0, b, "put in place");
}

bool isWritable(const std::filesystem::path& fileOrFolder) {
    return access(fileOrFolder.c_str(), W_OK) == 0;
}

std::filesystem::path folderOf(const std::filesystem::path& path) {
    const std::filesystem::path absolute = std::filesystem::absolute(path).lexically_normal();
    return absolute.has_filename() ? absolute.parent_path() : absolute.parent_path().parent_path();
}

} // namespace qz
