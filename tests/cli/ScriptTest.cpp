#include "Program.h"

namespace qz::test {
namespace {

using ScriptCommand = ProgramTest;

constexpr const char* flip3 = R"({"run": "QZ_Flip", "data": "town.gpkg:streets", "fid": [3]})"
                              "\n";
constexpr const char* flip7 =
    R"({"run": "QZ_Flip", "data": "town.gpkg:streets", "fid": "7", "parameters": {"fCount": 1}})"
    "\n";

TEST_F(ScriptCommand, IsOneSessionWithUndoAndRedo) {
    const std::string third = street(3);
    const std::string seventh = street(7);
    write("edits.jsonl", std::string(flip3) + flip7 + R"({"undo": 2}
{"redo": 1})");
    const Outcome run = qz("script edits.jsonl");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(street(3), third);
    EXPECT_EQ(street(7), seventh);
}

TEST_F(ScriptCommand, WrongLineEndsItAndKeepsOnlyWhatWasSaved) {
    const std::pair<const char*, const char*> lines[] = {
        {"{\"run\": \"QZ_Flip\", \"data\": \"town.gpkg:streets\", \"fidd\": 3}", "did you mean \"fid\"?"},
        {"{\"jump\": 1}", "jump"},
        {"not json", "no JSON object"},
        {"{\"undo\": \"all\"}", "undo"},
        {R"({"run": "QZ_PasteAttributes", "data": "town.gpkg:streets", "fid": 3, "parameters": {"fieldDic": "{}", )"
         R"("bEditing": false}})",
         "use qz run"},
        {"{\"run\": \"QZ_Flip\", \"data\": \"town.gpkg:streets\", \"all\": \"yes\"}", "true or false"},
    };
    for (const auto& [line, hint] : lines) {
        SCOPED_TRACE(line);
        const std::string third = street(3);
        const std::string seventh = street(7);
        write("edits.jsonl", fmt::format("{}{{\"save\": true}}\n\n{}{}\n{}", flip3, flip7, line, flip7));
        const Outcome run = qz("script edits.jsonl");
        EXPECT_EQ(run.status, 2);
        EXPECT_NE(run.err.find(hint), std::string::npos) << run.err;
        EXPECT_NE(run.err.find("edits.jsonl:5:"), std::string::npos) << run.err;
        EXPECT_NE(street(3), third) << "saved before";
        EXPECT_EQ(street(7), seventh) << "not saved";
    }
}

TEST_F(ScriptCommand, RefusedRunIsAbortedAndTheScriptGoesOn) {
    const std::string third = street(3);
    write("edits.jsonl", std::string(R"({"run": "QZ_Flip", "data": "town.gpkg:parcels", "all": true})"
                                     "\n") +
                             flip3);
    const Outcome run = qz("script edits.jsonl");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(street(3), third);
}

TEST_F(ScriptCommand, DiscardGivesUpWhatWasNotSaved) {
    const std::string third = street(3);
    const std::string seventh = street(7);
    write("edits.jsonl", std::string(flip3) + "{\"discard\": true}\n" + flip7);
    EXPECT_EQ(qz("script - < edits.jsonl").status, 0);
    EXPECT_EQ(street(3), third);
    EXPECT_NE(street(7), seventh);
}

TEST_F(ScriptCommand, RunsOnSeveralDataSetsShareTheUndo) {
    std::filesystem::copy_file(folder / "town.gpkg", folder / "other.gpkg");
    const std::string here = street(3);
    const std::string there = street(3, "other.gpkg:streets");
    write("edits.jsonl", std::string(flip3) + R"({"run": "QZ_Flip", "data": "other.gpkg:streets", "fid": 3})" + "\n" +
                             flip3 + "{\"undo\": 2}");
    EXPECT_EQ(qz("script edits.jsonl").status, 0);
    EXPECT_NE(street(3), here);
    EXPECT_EQ(street(3, "other.gpkg:streets"), there);
}

// Graphics go to their files when the edits do, also those of a file that the script left for another.
TEST_F(ScriptCommand, GraphicsAreSavedWithTheEdits) {
    const auto centroids = [](const char* file, int parcel) {
        return fmt::format(
            R"({{"run": "QZ_CentroidGraphics", "data": "town.gpkg:parcels", "fid": {}, "graphics": "{}",)"
            R"( "parameters": {{"sName": "P"}}}})"
            "\n",
            parcel, file);
    };
    const std::string good = centroids("a.geojson", 1) + centroids("b.geojson", 2) + centroids("a.geojson", 3);
    write("edits.jsonl", good + "{\"jump\": 1}");
    const std::vector<std::string> before = files();
    EXPECT_EQ(qz("script edits.jsonl").status, 2);
    EXPECT_EQ(files(), before);
    write("edits.jsonl", good);
    const Outcome run = qz("script edits.jsonl");
    EXPECT_EQ(run.status, 0) << run.err;
    const auto count = [this](const char* file) {
        return nlohmann::json::parse(contentOf(folder / file))["features"].size();
    };
    EXPECT_EQ(count("a.geojson"), 2U);
    EXPECT_EQ(count("b.geojson"), 1U);
    EXPECT_EQ(files().size(), before.size() + 2);
}

} // namespace
} // namespace qz::test
