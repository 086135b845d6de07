// What other programs put into a database or do with it while it is edited.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include <fmt/format.h>

#include "platform/data/overlay/OverlayWorkspace.h"
#include "platform/store/ogr/FileTools.h"
#include "platform/store/ogr/OgrSession.h"
#include "tests/store/StoreFixture.h"

namespace qz::test {
namespace {

std::string roadsIn(const TemporaryFolder& folder, std::size_t count = 4) {
    std::vector<std::string> shapes;
    for (std::size_t i = 0; i < count; ++i) {
        shapes.push_back(fmt::format("LINESTRING ({0} 0,{0} 5)", i));
    }
    const std::string path = folder / "roads.gpkg";
    makeRoads(path, geoPackage, wkbLineString, shapes);
    return path;
}

void execute(const std::string& path, const std::string& sql) {
    executeSql(*openDataset(path, "GPKG", DatasetAccess::update), sql);
}

TEST(GeoPackageSave, ThatTheDatabaseRefusesIsTakenBackWhole) {
    const TemporaryFolder folder;
    const std::string path = roadsIn(folder);
    execute(path, "CREATE TRIGGER keeps BEFORE DELETE ON roads WHEN old.fid = 3 BEGIN SELECT RAISE(ABORT, 'three "
                  "stays'); END");
    const std::vector<std::string> before = rowsOf(path);
    const auto store = openStore(path, OpenMode::edit);
    FeatureSource& roads = *store->table("roads");
    Edits refused(roads);
    refused.setValue(1, "lanes", std::int32_t{9});
    refused.remove(3);
    try {
        store->save(refused.changeSet(), {});
        ADD_FAILURE() << "a row that has to stay was deleted";
    } catch (const DataError& error) {
        EXPECT_NE(std::string(error.what()).find("three stays"), std::string::npos) << error.what();
    }
    EXPECT_EQ(rowsOf(path), before);
    EXPECT_EQ(rowsOf(roads), before);
    Edits accepted(roads);
    accepted.remove(2);
    store->save(accepted.changeSet(), {});
    EXPECT_EQ(roads.ids(), (std::vector<ObjectId>{1, 3, 4}));
}

// A file with a log belongs together with it: what is in the log only is copied too.
TEST(GeoPackageSave, CopiesWhatAnotherProgramsLogHolds) {
    const TemporaryFolder folder;
    const std::string path = roadsIn(folder);
    const DatasetPtr other = openDataset(path, "GPKG", DatasetAccess::update);
    executeSql(*other, "PRAGMA journal_mode = WAL");
    executeSql(*other, "PRAGMA wal_autocheckpoint = 0");
    executeSql(*other, "UPDATE roads SET name = 'in the log' WHERE fid = 2");
    const auto store = openCopy(path, folder / "saved.gpkg");
    Edits edits(*store->table("roads"));
    edits.setValue(1, "lanes", std::int32_t{9});
    store->save(edits.changeSet(), {});
    const std::vector<std::string> rows = rowsOf(folder / "saved.gpkg");
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_NE(rows[0].find("| 9 |"), std::string::npos) << rows[0];
    EXPECT_NE(rows[1].find("in the log"), std::string::npos) << rows[1];
    EXPECT_EQ(sqlRows(path, "SELECT lanes FROM roads WHERE fid = 1"), (std::vector<std::string>{"0"}));
}

// Thousands of candidates are not read one by one, with the same answer.
TEST(GeoPackageSelection, OfManyRowsByPlaceIdsAndCondition) {
    const TemporaryFolder folder;
    OverlayWorkspace workspace(openStore(roadsIn(folder, 5000), OpenMode::edit));
    FeatureClass& roads = *workspace.table("roads");
    workspace.startEditing();
    roads.feature(4000)->remove();
    const FeaturePtr moved = roads.feature(10);
    moved->setShape(shapeOf("LINESTRING (9000 0,9000 5)"));
    moved->store();
    const std::size_t lanes = *roads.schema().findField("lanes");
    const Envelope window{-1, -1, 4600, 9};
    std::vector<ObjectId> expected;
    const CursorPtr cursor = roads.search({});
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        const auto number = std::get<std::int32_t>(row->value(lanes));
        if (number >= 10 && number < 4500 && row->shape()->envelope().intersects(window)) {
            expected.push_back(row->objectId());
        }
    }
    FeatureFilter filter;
    filter.where = "lanes >= 10 AND lanes < 4500";
    filter.shape = rectangle(window, roads.spatialReference());
    EXPECT_EQ(roads.ids(filter), expected);
    EXPECT_GT(expected.size(), 4000U);
    filter.ids.emplace();
    for (ObjectId id = 5000; id > 0; id -= 2) {
        filter.ids->push_back(id);
    }
    std::erase_if(expected, [](ObjectId id) { return id % 2 == 1; });
    EXPECT_EQ(roads.ids(filter), expected);
}

TEST(FolderLock, IsWaitedFor) {
    const TemporaryFolder folder;
    auto held = std::make_unique<FolderLock>(folder.path());
    EXPECT_EQ(FolderLock::tryLock(folder.path()), -1);
    std::atomic<bool> isFree = false;
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        isFree = true;
        held.reset();
    });
    const FolderLock mine(folder.path());
    EXPECT_TRUE(isFree);
    other.join();
}

} // namespace
} // namespace qz::test
