#pragma once

#include <filesystem>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

namespace qz {

// An empty folder of the running test's own, removed with all that is in it.
class ScratchFolder {
public:
    ScratchFolder() : path_(std::filesystem::path(testing::TempDir()) / uniqueName()) {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~ScratchFolder() { std::filesystem::remove_all(path_); }

    [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }
    [[nodiscard]] std::size_t fileCount() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(path_), std::filesystem::directory_iterator()));
    }

private:
    static std::string uniqueName() {
        const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
        return std::string("qz_") + test->test_suite_name() + "_" + test->name() + "_" + std::to_string(getpid());
    }

    std::filesystem::path path_;
};

} // namespace qz
