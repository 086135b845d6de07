#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace qz {

// A hidden folder beside the data in which a save prepares files. Removed with its content at the end of its life; when
// the process is killed, recoverFolder() of a later opening removes it, or completes a save that was committed.
class AsideFolder {
public:
    // The caller holds the lock of `parent`.
    explicit AsideFolder(const std::filesystem::path& parent);
    ~AsideFolder();
    AsideFolder(const AsideFolder&) = delete;
    AsideFolder& operator=(const AsideFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }

    // The instant from which the save holds: after it, every file named here takes the place of the file of the same
    // name in the parent, and the obsolete ones disappear, even when this process is killed.
    void commit(const std::vector<std::string>& files, const std::vector<std::string>& obsolete);
    // Carries the commit out.
    void complete();

private:
    std::filesystem::path path_;
    int lock_ = -1;
};

// Completes or removes what killed processes left in the folder. The caller holds its lock.
void recoverFolder(const std::filesystem::path& folder);
// Whether there is anything of that kind.
[[nodiscard]] bool needsRecovery(const std::filesystem::path& folder);

} // namespace qz
