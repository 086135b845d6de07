#include <algorithm>

#include <gdal_priv.h>

#include "Program.h"

namespace qz::test {
namespace {

using RunCommand = ProgramTest;

TEST_F(RunCommand, FlipsTheSelectedFeaturesInPlace) {
    const std::string before = street(3);
    const Outcome run =
        qz("run QZ_Flip --data town.gpkg:streets --where \"name = 'Weaver Street'\" --report report.json");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("8 updated"), std::string::npos) << run.out;
    const auto report = nlohmann::json::parse(contentOf(folder / "report.json"));
    EXPECT_EQ(report["method"], "QZ_Flip");
    EXPECT_EQ(report["result"], true);
    EXPECT_EQ(report["saved"], true);
    EXPECT_EQ(report["updated"].size(), 8U);
    EXPECT_EQ(report["parameters"]["fCount"], 8);
    EXPECT_EQ(report["progress"]["text"], "Flipping polylines: 7");
    EXPECT_EQ(report["refresh"]["count"], 8);
    EXPECT_EQ(report["updated"][0]["values"]["name"], "Weaver Street");
    EXPECT_NE(street(3), before);
    EXPECT_EQ(files(), (std::vector<std::string>{"report.json", "town.gpkg"})) << "no side files are left";
}

TEST_F(RunCommand, DryRunAndOutputLeaveTheDataUntouched) {
    const std::string before = contentOf(folder / "town.gpkg");
    EXPECT_EQ(qz("run QZ_Flip --data town.gpkg:streets --all --dry-run").status, 0);
    EXPECT_EQ(contentOf(folder / "town.gpkg"), before);
    const std::string shape = street(3);
    EXPECT_EQ(qz("run QZ_Flip --data town.gpkg:streets --fid 3 --output flipped.gpkg").status, 0);
    EXPECT_EQ(contentOf(folder / "town.gpkg"), before);
    EXPECT_NE(street(3, "flipped.gpkg:streets"), shape);
    EXPECT_EQ(files(), (std::vector<std::string>{"flipped.gpkg", "town.gpkg"}));
}

TEST_F(RunCommand, SelectionsCombine) {
    const auto count = [&](const std::string& selection) -> int {
        return qz("run QZ_Flip --data town.gpkg:streets --dry-run --report - " + selection)
            .json()["parameters"]["fCount"];
    };
    EXPECT_EQ(count("--all"), 152);
    EXPECT_EQ(count("--where \"name = 'nowhere'\""), 0);
    const int box = count("--bbox 548300,5806200,548500,5806300");
    EXPECT_GT(box, 3);
    EXPECT_LT(box, 30);
    EXPECT_EQ(count("--bbox 548300,5806200,548500,5806300 --fid 3,140"), 1);
    EXPECT_EQ(count("--fid 3,7,3"), 2);
}

TEST_F(RunCommand, WrongUsageEndsWith2AndSaysWhatToDo) {
    const std::string before = contentOf(folder / "town.gpkg");
    const std::pair<const char*, const char*> rows[] = {
        {"run QZ_Flop --data town.gpkg:streets --all", "did you mean QZ_Flip?"},
        {"run QZ_Flip --data town.gpkg:streets --all --fcount 3", "did you mean --fCount?"},
        {"run QZ_Flip --data town.gpkg:streets --all --fCount three", "no whole number"},
        {"run QZ_Flip --data town.gpkg:streets --all --fCount", "has no value"},
        {"run QZ_Flip --data town.gpkg:streets --all --pApp x", "which the host supplies"},
        {"run QZ_Flip --data town.gpkg:streets", "--fid, --where, --bbox or --all"},
        {"run QZ_Flip --all", "name the layer with --data"},
        {"run QZ_Flip --data town.gpkg:streets --fid 99999", "no feature 99999"},
        {"run QZ_Flip --data town.gpkg:streets --fid 3,x", "no list of object ids"},
        {"run QZ_Flip --data town.gpkg:streets --where \"nmae = 1\"", "(nmae = 1"},
        {"run QZ_Flip --data town.gpkg:streets --where \"nmae = 1\"", "fields are fid, name, class"},
        {"run QZ_Flip --data town.gpkg:streets --bbox 1,2,3", "xmin,ymin,xmax,ymax"},
        {"run QZ_Flip --data town.gpkg:streets --all --map-crs EPSG:1", "EPSG:1"},
        {"run QZ_Flip --data town.gpkg:streets --all --picture a.gif", ".png or .svg"},
        {"run QZ_Flip --data town.gpkg:streets --all --locale xx_YY", "xx_YY"},
        {"run QZ_Flip --data town.gpkg:streets --all --seed -1", "--seed"},
        {"methods QZ_Flap", "did you mean QZ_Flip?"},
        {"script missing-argument-follows --nonsense", "nonsense"},
        {"", "subcommand"},
    };
    for (const auto& [arguments, hint] : rows) {
        SCOPED_TRACE(arguments);
        const Outcome run = qz(arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_NE(run.err.find(hint), std::string::npos) << run.err;
    }
    EXPECT_EQ(contentOf(folder / "town.gpkg"), before);
}

TEST_F(RunCommand, DataThatCannotBeReadOrWrittenEndsWith3) {
    write("text.gpkg", "this is no database");
    const std::string before = contentOf(folder / "town.gpkg");
    const std::pair<const char*, const char*> rows[] = {
        {"run QZ_Flip --data missing.gpkg:streets --all", "does not exist"},
        {"run QZ_Flip --data town.gpkg:street --all", "streets"},
        {"run QZ_Flip --data town.gpkg --all", "PATH:LAYER"},
        {"run QZ_Flip --data text.gpkg:a --all", "text.gpkg"},
        {"run QZ_Flip --data town.gpkg:streets --all --output missing/folder.gpkg", "missing"},
        {"run QZ_Flip --data town.gpkg:streets --all --output town.gpkg", "town.gpkg"},
        {"run QZ_Flip --data town.gpkg:streets --all --picture missing/a.png", "missing doesn't exist"},
        {"run QZ_Flip --data town.gpkg:streets --all --before-after missing/a.svg", "missing doesn't exist"},
        {"run QZ_Flip --data town.gpkg:streets --all --report missing/a.json", "missing doesn't exist"},
        {"run QZ_VertexGraphics --data town.gpkg:streets --all --sName V --graphics missing/a.gpkg", "doesn't exist"},
        {"info missing.gpkg", "does not exist"},
        {"info town.gpkg:street", "streets"},
        {"script missing.jsonl", "can't be read"},
    };
    for (const auto& [arguments, hint] : rows) {
        SCOPED_TRACE(arguments);
        const Outcome run = qz(arguments);
        EXPECT_EQ(run.status, 3);
        EXPECT_NE(run.err.find(hint), std::string::npos) << run.err;
    }
    EXPECT_EQ(contentOf(folder / "town.gpkg"), before);
}

TEST_F(RunCommand, RefusedRunsEndWith1AndSaveNothing) {
    const std::string before = contentOf(folder / "town.gpkg");
    const Outcome polygons = qz("run QZ_Flip --data town.gpkg:parcels --all --report -");
    EXPECT_EQ(polygons.status, 1);
    EXPECT_EQ(polygons.json()["result"], false);
    EXPECT_EQ(polygons.json()["saved"], false);
    EXPECT_NE(polygons.err.find("qz methods QZ_Flip"), std::string::npos) << polygons.err;
    const Outcome finder = qz("run QZ_AnalyseNodes --data town.gpkg:streets --what Visible --nType all "
                              "--bTrueCoords true --lMax 1");
    EXPECT_EQ(finder.status, 1);
    EXPECT_NE(finder.err.find("more features than the limit"), std::string::npos) << finder.err;
    EXPECT_EQ(contentOf(folder / "town.gpkg"), before);
}

TEST_F(RunCommand, FileLockedByAnotherProgramIsLeftAlone) {
    const std::string before = street(3);
    GDALAllRegister();
    auto* other = static_cast<GDALDataset*>(
        GDALOpenEx((folder / "town.gpkg").c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE, nullptr, nullptr, nullptr));
    ASSERT_NE(other, nullptr);
    other->ExecuteSQL("BEGIN IMMEDIATE", nullptr, nullptr);
    const Outcome run = qz("run QZ_Flip --data town.gpkg:streets --fid 3");
    other->ExecuteSQL("ROLLBACK", nullptr, nullptr);
    GDALClose(other);
    EXPECT_EQ(run.status, 3) << run.err;
    EXPECT_NE(run.err.find("town.gpkg"), std::string::npos) << run.err;
    EXPECT_EQ(street(3), before);
}

// Two processes edit one file at the same time: each saves whole or ends with 3 and has saved nothing.
TEST_F(RunCommand, TwoProcessesNeverMixTheirSaves) {
    const std::pair<int, std::string> streets[] = {{3, street(3)}, {7, street(7)}};
    write("worker", "for i in 1 2 3 4 5 6 7; do " QZ_PROGRAM " run QZ_Flip --data town.gpkg:streets --fid $1; "
                    "echo $? >> status$1; done\n");
    EXPECT_EQ(shell("sh worker 3 & sh worker 7; wait").status, 0);
    for (const auto& [id, before] : streets) {
        const std::string statuses = contentOf(folder / fmt::format("status{}", id));
        const auto saved = std::count(statuses.begin(), statuses.end(), '0');
        EXPECT_EQ(saved + std::count(statuses.begin(), statuses.end(), '3'), 7) << statuses;
        EXPECT_EQ(street(id) == before, saved % 2 == 0) << statuses;
    }
    EXPECT_EQ(qz("info town.gpkg").status, 0);
}

// The run is stopped while the method works: the shapes of a long selection are flipped one after the other.
TEST_F(RunCommand, InterruptAbortsAndSavesNothing) {
    const std::string before = street(3);
    int interrupted = 0;
    for (int attempt = 0; attempt < 40; ++attempt) {
        const Outcome run = shell(fmt::format(QZ_PROGRAM " run QZ_Flip --data town.gpkg:streets --all & pid=$!; "
                                                         "sleep 0.{:03}; kill -INT $pid; wait $pid",
                                              attempt * 3));
        if (run.status == 130) {
            ++interrupted;
            EXPECT_EQ(street(3), before);
        } else if (run.status == 0) {
            EXPECT_EQ(qz("run QZ_Flip --data town.gpkg:streets --all").status, 0);
        }
    }
    EXPECT_GT(interrupted, 0);
}

TEST_F(RunCommand, MethodsWithoutDataNeedNone) {
    const Outcome run = qz("run GetQZVersion --report -");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.json()["result"], "10.2");
    EXPECT_EQ(run.json()["parameters"]["sQZBuilt"], "30 May 2012");
}

TEST_F(RunCommand, TheSameSeedDrawsTheSamePoints) {
    const auto points = [this](const char* seed, const char* file) {
        const Outcome run = qz(fmt::format("run QZ_RandomGraphicsPg --data town.gpkg:parcels --all --sName P "
                                           "--lNumPoints 5 --seed {} --graphics {}",
                                           seed, file));
        EXPECT_EQ(run.status, 0) << run.err;
        return nlohmann::json::parse(contentOf(folder / file))["features"];
    };
    const auto first = points("7", "a.geojson");
    EXPECT_EQ(points("7", "b.geojson"), first);
    EXPECT_NE(points("8", "c.geojson"), first);
}

TEST_F(RunCommand, PictureIsDrawnAndHelpHasExamples) {
    EXPECT_EQ(qz("run QZ_Flip --data town.gpkg:streets --fid 3 --picture map.svg --dry-run").status, 0);
    EXPECT_NE(contentOf(folder / "map.svg").find("<svg"), std::string::npos);
    EXPECT_EQ(qz("run QZ_Flip --data town.gpkg:streets --fid 3 --before-after both.svg --dry-run").status, 0);
    EXPECT_GT(contentOf(folder / "both.svg").size(), 1.5 * static_cast<double>(contentOf(folder / "map.svg").size()));
    for (const char* command : {"", "run", "info", "methods", "script"}) {
        const Outcome help = qz(fmt::format("{} --help", command));
        EXPECT_EQ(help.status, 0);
        EXPECT_NE(help.out.find("Example"), std::string::npos) << command;
    }
}

} // namespace
} // namespace qz::test
