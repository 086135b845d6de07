#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace qz {

// An open descriptor that holds an advisory lock (flock) on a folder; given up at the end of its life.
class FolderLock {
public:
    // Waits for other processes for a while. Throws DataError when the folder can't be opened or stays locked.
    explicit FolderLock(const std::filesystem::path& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    // Without waiting; -1 when another process holds it.
    [[nodiscard]] static int tryLock(const std::filesystem::path& folder);

private:
    int descriptor_ = -1;
};

// What tells whether a file was replaced or rewritten.
struct FileSignature {
    std::filesystem::path path;
    std::uint64_t inode = 0; // 0: there is no such file
    std::int64_t size = 0;
    std::int64_t modifiedNanoseconds = 0;

    friend bool operator==(const FileSignature&, const FileSignature&) = default;
};
[[nodiscard]] FileSignature signatureOf(const std::filesystem::path& path);
// Of every file in a folder, by name.
[[nodiscard]] std::vector<FileSignature> signaturesIn(const std::filesystem::path& folder);

// All of these throw DataError that names the path.
void copyFile(const std::filesystem::path& from, const std::filesystem::path& to);
void syncToDisk(const std::filesystem::path& fileOrFolder);
void writeTextFile(const std::filesystem::path& path, const std::string& text);
[[nodiscard]] std::string readTextFile(const std::filesystem::path& path);
void renameOver(const std::filesystem::path& from, const std::filesystem::path& to);
// Fails when `to` exists.
void renameToNew(const std::filesystem::path& from, const std::filesystem::path& to);
// Both exist; one takes the place of the other at once.
void exchange(const std::filesystem::path& a, const std::filesystem::path& b);

[[nodiscard]] bool isWritable(const std::filesystem::path& fileOrFolder);
[[nodiscard]] std::filesystem::path folderOf(const std::filesystem::path& path);

} // namespace qz
