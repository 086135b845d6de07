#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace qz::test {

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;

    [[nodiscard]] nlohmann::json json() const { return nlohmann::json::parse(out); }
};

inline std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Runs the program in a folder of its own that holds a copy of the sample town.
class ProgramTest : public testing::Test {
protected:
    ProgramTest() {
        std::filesystem::create_directories(folder);
        std::filesystem::copy_file(QZ_SOURCE_DIR "/examples/town.gpkg", folder / "town.gpkg");
    }
    ~ProgramTest() override { std::filesystem::remove_all(folder); }

    // `arguments` as in a shell.
    [[nodiscard]] Outcome qz(const std::string& arguments) const { return shell(QZ_PROGRAM " " + arguments); }

    [[nodiscard]] Outcome shell(const std::string& command) const {
        const std::string line = fmt::format("cd '{}' && {{ {}\n}} > .out 2> .err", folder.string(), command);
        const int status = std::system(line.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(folder / ".out"), contentOf(folder / ".err")};
    }

    void write(const std::string& name, const std::string& content) const { std::ofstream(folder / name) << content; }

    // The shape of a street as stored now.
    [[nodiscard]] std::string street(int id, const std::string& data = "town.gpkg:streets") const {
        const Outcome flipped = qz(fmt::format("run QZ_Flip --data {} --fid {} --dry-run --report -", data, id));
        EXPECT_EQ(flipped.status, 0) << flipped.err;
        return flipped.json()["updated"][0]["wkt"];
    }

    // Names of the files in the folder but the program's output, sorted.
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            const std::string name = entry.path().filename().string();
            if (name != ".out" && name != ".err") {
                names.push_back(name);
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() /
        fmt::format("qz-cli-{}-{}", getpid(), testing::UnitTest::GetInstance()->current_test_info()->name());
};

} // namespace qz::test
