#pragma once

#include <string>

namespace qz {

// A file that is written aside, in the folder of its target, and renamed into place when it is complete, so that a
// reader finds the old file or the new one and never half of it. What was not completed is removed.
class ReplacedFile {
public:
    explicit ReplacedFile(const std::string& target);
    ~ReplacedFile();
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;

    // Where to write; it has the ending of the target. No file is there yet.
    [[nodiscard]] const std::string& asidePath() const noexcept { return aside_; }
    // Puts the file written in the target's place. Throws DataError when that fails; the target is then as it was.
    void complete();

private:
    std::string target_;
    std::string aside_;
};

// Throws DataError when no file can be put there: the folder doesn't exist or may not be written to.
void requireWritablePlace(const std::string& target);

// The ending in lower case with its dot, such as ".png"; empty when there is none.
[[nodiscard]] std::string lowerCaseEnding(const std::string& path);

} // namespace qz
