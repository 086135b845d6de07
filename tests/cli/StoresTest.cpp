#include <algorithm>
#include <cmath>
#include <functional>

#include <gdal_priv.h>
#include <gdal_utils.h>

#include "Program.h"
#include "platform/geometry/WellKnown.h"

namespace qz::test {
namespace {

// The sample's streets in every format.
class StoresCommand : public ProgramTest {
protected:
    StoresCommand() {
        GDALAllRegister();
        convert("ESRI Shapefile", "streets.shp", nullptr);
        convert("OpenFileGDB", "town.gdb", "streets_QZAttributeRules");
    }

    void convert(const char* driver, const char* name, const char* rules) const {
        GDALDatasetH source = GDALOpenEx((folder / "town.gpkg").c_str(), GDAL_OF_VECTOR, nullptr, nullptr, nullptr);
        const char* arguments[] = {"-f", driver, "streets", rules, nullptr};
        GDALVectorTranslateOptions* options = GDALVectorTranslateOptionsNew(const_cast<char**>(arguments), nullptr);
        GDALDatasetH copy = GDALVectorTranslate((folder / name).c_str(), nullptr, 1, &source, options, nullptr);
        ASSERT_NE(copy, nullptr) << name;
        GDALVectorTranslateOptionsFree(options);
        GDALClose(copy);
        GDALClose(source);
    }

    // In whole millimetres: a file geodatabase holds coordinates on a grid of its own.
    [[nodiscard]] static std::string inMillimetres(const std::string& wkt) {
        Geometry geometry = geometryFromWkt(wkt);
        transformVertices(geometry, [](Vertex& vertex) {
            vertex.x = std::round(vertex.x * 1000) / 1000;
            vertex.y = std::round(vertex.y * 1000) / 1000;
        });
        return toWkt(geometry);
    }

    // The report without what differs from format to format: the object ids, the time it took, and the extent of the
    // shapes as they were.
    [[nodiscard]] nlohmann::json comparable(const std::string& arguments) const {
        const Outcome run = qz("run QZ_Flip --report - " + arguments);
        EXPECT_EQ(run.status, 0) << run.err;
        nlohmann::json report = run.json();
        for (auto& row : report["updated"]) {
            row.erase("id");
            row["wkt"] = inMillimetres(row["wkt"]);
        }
        report.erase("seconds");
        report["refresh"].erase("extent");
        return report;
    }
};

void expectSame(const nlohmann::json& report, const nlohmann::json& expected) {
    if (report != expected) {
        ADD_FAILURE() << nlohmann::json::diff(expected, report).dump().substr(0, 500);
    }
}

TEST_F(StoresCommand, TheSameFlipGivesTheSameReport) {
    const std::string selection = " --where \"class = 'residential' AND MAXSPEED = 30\"";
    const nlohmann::json geoPackage = comparable("--data town.gpkg:streets" + selection);
    ASSERT_GT(geoPackage["updated"].size(), 20U);
    expectSame(comparable("--data streets.shp" + selection), geoPackage);
    expectSame(comparable("--data town.gdb:streets --output flipped.gdb" + selection), geoPackage);

    // And again, from what was saved: back to the shapes of the sample.
    const nlohmann::json again = comparable("--data town.gpkg:streets" + selection);
    EXPECT_TRUE(again != geoPackage);
    expectSame(comparable("--data streets.shp" + selection), again);
    expectSame(comparable("--data flipped.gdb:streets --output back.gdb" + selection), again);
    EXPECT_EQ(files(), (std::vector<std::string>{"back.gdb", "flipped.gdb", "streets.dbf", "streets.prj", "streets.shp",
                                                 "streets.shx", "town.gdb", "town.gpkg"}));
}

// A copy is saved to by the name that the layer has in the source.
TEST_F(StoresCommand, AShapefileOfAnotherNameHasTheEdits) {
    const nlohmann::json flipped = comparable("--data streets.shp:streets --fid 1 --output saved.shp")["updated"];
    EXPECT_NE(comparable("--data saved.shp:saved --fid 1 --dry-run")["updated"], flipped);
    EXPECT_EQ(comparable("--data streets.shp --fid 1 --dry-run")["updated"], flipped) << "the source stays";
}

// Pieces of the noded streets with their names and house numbers, sorted.
std::vector<std::string> piecesOf(const nlohmann::json& report,
                                  const std::function<std::string(const std::string&)>& rounded) {
    std::vector<std::string> pieces;
    for (const auto& row : report["inserted"]) {
        const nlohmann::json& values = row["values"];
        pieces.push_back(fmt::format("{} {} {}-{}", rounded(row["wkt"]), values["name"].dump(), values["FROM_L"].dump(),
                                     values["TO_L"].dump()));
    }
    std::ranges::sort(pieces);
    return pieces;
}

TEST_F(StoresCommand, TheSameNetworkGivesTheSamePieces) {
    write("streets.qza", "FROM_L,Range Address,TO_L,Range Address\n");
    const auto node = [this](const std::string& data) {
        const Outcome run = qz("run QZ_SelectAndIntersectRun --all --bOver false --report - --data " + data);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_TRUE(run.json()["saved"]);
        return run.json();
    };
    const nlohmann::json expected = node("town.gpkg:streets");
    EXPECT_GT(expected["inserted"].size(), 160U);
    EXPECT_EQ(piecesOf(node("streets.shp"), inMillimetres), piecesOf(expected, inMillimetres));
    // The grid of its own moves crossings of a file geodatabase by up to a cell.
    const auto anywhere = [](const std::string&) { return std::string(); };
    EXPECT_EQ(piecesOf(node("town.gdb:streets --output new.gdb"), anywhere), piecesOf(expected, anywhere));
}

TEST_F(StoresCommand, EditsOfSingleLines) {
    for (const char* data : {"--data town.gpkg:streets --fid 2", "--data streets.shp --fid 1",
                             "--data town.gdb:streets --fid 2 --output new.gdb"}) {
        const std::string place = std::string(" --report - ") + data;
        const Outcome split = qz("run QZ_SplitInPoint2 --sOption Middle --bOver false --dry-run" + place);
        EXPECT_EQ(split.status, 0) << split.err;
        EXPECT_EQ(split.json()["inserted"].size(), 2U) << data;
        const Outcome vertex = qz("run QZ_InsertVertexRun --pPoint 548240,5806250 --bSame false --dry-run" + place);
        EXPECT_EQ(vertex.json()["updated"].size(), 1U) << vertex.err;
        const Outcome exploded = qz("run QZ_Explode --dry-run" + place);
        EXPECT_EQ(exploded.status, 0) << exploded.err;
    }
}

TEST_F(StoresCommand, FileGeodatabaseIsNeverUpdatedInPlace) {
    const Outcome run = qz("run QZ_Flip --data town.gdb:streets --all");
    EXPECT_EQ(run.status, 3);
    EXPECT_NE(run.err.find("--output"), std::string::npos) << run.err;
    EXPECT_EQ(qz("run QZ_Flip --data town.gdb:streets --all --dry-run").status, 0);
}

TEST_F(StoresCommand, RulesOfAShapefileStandBesideIt) {
    write("streets.qza", "name,Nonsense,None,First\r\nLENGTH_M,Proportion,None,Sum\r\nNOWHERE,Copy,None,Sum\r\n");
    const std::string info = qz("info streets.shp").out;
    for (const char* line : {"    name                 Copy|None|First  corrected, the file has Nonsense|None|First\n",
                             "    LENGTH_M             Proportion|None|Sum  file\n",
                             "    NOWHERE              without effect: no such field takes rules\n"}) {
        EXPECT_NE(info.find(line), std::string::npos) << info;
    }
}

// A shapefile holds numbers as texts of a fixed width, and no null.
TEST_F(StoresCommand, ValuesThatAShapefileCannotHoldAreRefused) {
    const Outcome wide = qz(R"(run QZ_PasteAttributes --data streets.shp --fid 0 --bEditing true )"
                            R"(--fieldDic '{"FROM_L":3000000000}')");
    EXPECT_EQ(wide.status, 1);
    EXPECT_NE(wide.err.find("FROM_L"), std::string::npos) << wide.err;
    const Outcome null = qz(R"(run QZ_PasteAttributes --data streets.shp --fid 0 --bEditing false --report - )"
                            R"(--fieldDic '{"FROM_L":"<NULL>","name":"Elm Row"}')");
    EXPECT_EQ(null.json()["updated"][0]["values"]["FROM_L"], 1) << "it has no null, so the number stays";
    EXPECT_EQ(null.json()["updated"][0]["values"]["name"], "Elm Row");
    EXPECT_TRUE(null.json()["saved"]);
}

TEST_F(StoresCommand, ReadOnlyDataAreReadButNotWritten) {
    if (geteuid() == 0) {
        // The superuser may write everything: run as somebody who may not.
        std::filesystem::permissions(folder, std::filesystem::perms(0755));
    }
    std::filesystem::permissions(folder / "streets.shp", std::filesystem::perms(0444));
    const std::string as = geteuid() == 0 ? "setpriv --reuid=65534 --clear-groups " : "";
    const Outcome run = shell(as + QZ_PROGRAM " run QZ_Flip --data streets.shp --all");
    EXPECT_EQ(run.status, 3) << run.err;
    EXPECT_NE(run.err.find("streets"), std::string::npos) << run.err;
    EXPECT_EQ(shell(as + QZ_PROGRAM " info streets.shp").status, 0);
    EXPECT_EQ(shell(as + QZ_PROGRAM " info town.gpkg").status, 0);
    EXPECT_EQ(shell(as + QZ_PROGRAM " run QZ_Flip --data town.gpkg:streets --all").status, 3);
}

} // namespace
} // namespace qz::test
