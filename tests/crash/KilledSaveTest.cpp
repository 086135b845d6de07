#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogrsf_frmts.h>

#include "platform/store/Stores.h"

// A process that saves in a loop is killed at random instants. Every save moves a layer from one generation to the
// next: all rows get the generation's number and a line at its place, the oldest row goes and a new one comes. So any
// mixture of two generations shows.

namespace qz::test {
namespace {

struct Format {
    const char* name;
    const char* driver;
    const char* file;
    const char* output; // empty: saved in place
    int rows = 12;
};
// A GeoPackage of many rows gets a new spatial index with each save.
constexpr Format formats[] = {{"GeoPackage", "GPKG", "roads.gpkg", ""},
                              {"LargeGeoPackage", "GPKG", "roads.gpkg", "", 400},
                              {"Shapefile", "ESRI Shapefile", "roads.shp", ""},
                              {"FileGeodatabase", "OpenFileGDB", "roads.gdb", "saved.gdb"}};

Geometry lineOf(int generation) {
    Polyline line;
    const double x = generation;
    line.paths.push_back(Path({XY{x, 0}, XY{x + 1, 5}}));
    return line;
}

void makeLayer(const std::string& path, const Format& format) {
    GDALAllRegister();
    GDALDataset* dataset =
        GetGDALDriverManager()->GetDriverByName(format.driver)->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr);
    OGRLayer* layer = dataset->CreateLayer("roads", nullptr, wkbMultiLineString, nullptr);
    OGRFieldDefn field("generation", OFTInteger);
    ASSERT_EQ(layer->CreateField(&field), OGRERR_NONE);
    for (int i = 0; i < format.rows; ++i) {
        OGRFeature feature(layer->GetLayerDefn());
        feature.SetField(0, 0);
        OGRLineString line;
        line.addPoint(0, 0);
        line.addPoint(1, 5);
        OGRMultiLineString lines;
        ASSERT_EQ(lines.addGeometry(&line), OGRERR_NONE);
        feature.SetGeometry(&lines);
        ASSERT_EQ(layer->CreateFeature(&feature), OGRERR_NONE);
    }
    GDALClose(dataset);
}

int generationOf(const FeatureRecord& record) {
    return std::get<std::int32_t>(record.values[2]);
}

ChangeSet nextGeneration(FeatureSource& roads) {
    const std::vector<RecordPtr> rows = roads.read(roads.ids());
    const int generation = generationOf(*rows.front()) + 1;
    TableChanges changes;
    changes.table = "roads";
    changes.firstNewId = roads.nextId();
    changes.nextId = changes.firstNewId + 1;
    changes.deletes = {rows.front()->id};
    const auto image = [&](ObjectId id) {
        auto record = std::make_shared<FeatureRecord>();
        record->id = id;
        record->shape = lineOf(generation);
        record->values.resize(roads.schema().fields.size());
        record->values[2] = std::int32_t{generation};
        return record;
    };
    for (std::size_t i = 1; i < rows.size(); ++i) {
        std::vector<bool> changed(roads.schema().fields.size());
        changed[2] = true;
        changes.updates.push_back({image(rows[i]->id), true, changed});
    }
    changes.inserts = {image(changes.firstNewId)};
    return {changes};
}

const char* variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

// How often each format is killed: QZ_KILLS, or a few times.
int kills() {
    const int asked = std::atoi(variable("QZ_KILLS"));
    return asked > 0 ? asked : 50;
}

// Not a test of its own: what the process to be killed does.
TEST(KilledProcess, SavesInALoop) {
    const std::string path = variable("QZ_CRASH_PATH");
    if (path.empty()) {
        GTEST_SKIP() << "runs only in a process that is killed";
    }
    const std::string output = variable("QZ_CRASH_OUTPUT");
    const int ready = std::atoi(variable("QZ_CRASH_READY"));
    const auto store = output.empty() ? openStore(path, OpenMode::edit) : openCopy(path, output);
    FeatureSource& roads = *store->table("roads");
    ASSERT_EQ(write(ready, "r", 1), 1);
    for (;;) {
        store->save(nextGeneration(roads), {});
    }
}

pid_t startProcess(const std::string& path, const std::string& output, int ready) {
    const pid_t child = fork();
    if (child == 0) {
        setenv("QZ_CRASH_PATH", path.c_str(), 1);
        setenv("QZ_CRASH_OUTPUT", output.c_str(), 1);
        setenv("QZ_CRASH_READY", std::to_string(ready).c_str(), 1);
        execl("/proc/self/exe", "killed", "--gtest_filter=KilledProcess.*", "--gtest_brief=1", nullptr);
        _exit(127);
    }
    return child;
}

// What three saves take here and now; in that time most processes get further than one.
std::chrono::microseconds timeOfThreeSaves(const std::string& path, const std::string& output) {
    const auto store = output.empty() ? openStore(path, OpenMode::edit) : openCopy(path, output);
    FeatureSource& roads = *store->table("roads");
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 3; ++i) {
        store->save(nextGeneration(roads), {});
    }
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
}

// Kills it at a random instant once it began to save.
void runAndKill(const std::string& path, const std::string& output, std::chrono::microseconds after) {
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    const pid_t child = startProcess(path, output, pipeEnds[1]);
    close(pipeEnds[1]);
    char byte = 0;
    ASSERT_EQ(read(pipeEnds[0], &byte, 1), 1) << "the process didn't start saving";
    std::this_thread::sleep_for(after);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    close(pipeEnds[0]);
    EXPECT_TRUE(WIFSIGNALED(status)) << "the process ended by itself";
}

// The generation that all rows are of.
int wholeGeneration(const std::string& path, int rowCount) {
    const auto store = openStore(path, OpenMode::read);
    FeatureSource& roads = *store->table("roads");
    const std::vector<RecordPtr> rows = roads.read(roads.ids());
    EXPECT_EQ(rows.size(), static_cast<std::size_t>(rowCount));
    EXPECT_EQ(roads.count(), rowCount);
    const int generation = generationOf(*rows.front());
    for (const RecordPtr& row : rows) {
        EXPECT_EQ(generationOf(*row), generation) << "row " << row->id;
        EXPECT_EQ(row->shape->envelope(), lineOf(generation).envelope()) << "row " << row->id;
    }
    const double x = generation;
    EXPECT_EQ(roads.idsIn({x, 0, x, 0}).size(), static_cast<std::size_t>(rowCount));
    return generation;
}

std::vector<std::string> namesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

class KilledSave : public testing::TestWithParam<Format> {};

TEST_P(KilledSave, LeavesTheStateBeforeOrAfter) {
    const Format& format = GetParam();
    std::string pattern = (std::filesystem::temp_directory_path() / "qz_crash_XXXXXX").string();
    const std::filesystem::path folder = mkdtemp(pattern.data());
    const std::string path = folder / format.file;
    const std::string output = *format.output == '\0' ? "" : (folder / format.output).string();
    makeLayer(path, format);
    const std::chrono::microseconds longest = timeOfThreeSaves(path, output);
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    makeLayer(path, format);
    const std::vector<std::string> files = namesIn(folder);
    std::mt19937 random(20240517);
    std::uniform_int_distribution<std::int64_t> instant(0, longest.count());
    int last = 0;
    int progressed = 0;
    for (int i = 0; i < kills() && !HasFatalFailure(); ++i) {
        SCOPED_TRACE(i);
        runAndKill(path, output, std::chrono::microseconds(instant(random)));
        const int generation = wholeGeneration(path, format.rows);
        if (output.empty()) {
            EXPECT_GE(generation, last);
            progressed += generation > last ? 1 : 0;
            last = generation;
        } else {
            EXPECT_EQ(generation, 0) << "the source changed";
            if (std::filesystem::exists(output)) {
                progressed += wholeGeneration(output, format.rows) > 0 ? 1 : 0;
                std::filesystem::remove_all(output);
            }
        }
        EXPECT_EQ(namesIn(folder), files);
    }
    EXPECT_GT(progressed, kills() / 4); // enough of them were killed after a save
    std::filesystem::remove_all(folder);
}

INSTANTIATE_TEST_SUITE_P(Formats, KilledSave, testing::ValuesIn(formats),
                         [](const auto& formatInfo) { return formatInfo.param.name; });

} // namespace
} // namespace qz::test
