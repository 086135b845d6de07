#include <random>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "platform/Error.h"
#include "tests/support/MemoryData.h"

namespace qz {
namespace {

using test::insertRow;
using test::MemoryData;
using test::setShape;

constexpr const char* east = "LINESTRING ZM (0 0 1 2,10 0 3 4)";
constexpr const char* north = "LINESTRING ZM (0 0 1 2,0 10 3 4)";
constexpr const char* far = "LINESTRING ZM (1000 1000 1 2,1010 1000 3 4)";

FeatureFilter around(double x, double y) {
    FeatureFilter filter;
    filter.shape = geometryFromWkt(fmt::format("LINESTRING ({} {},{} {})", x - 5, y, x + 5, y));
    filter.relation = SpatialRelation::intersects;
    return filter;
}

FeatureFilter where(const std::string& condition) {
    FeatureFilter filter;
    filter.where = condition;
    return filter;
}

using Ids = std::vector<ObjectId>;

TEST(Overlay, ReadsShowTheEditsOfTheOpenSession) {
    MemoryData data;
    const ObjectId moved = data.add(east, {std::string("A")});
    const ObjectId deleted = data.add(east, {std::string("B")});
    const ObjectId untouched = data.add(east, {std::string("C")});
    OverlayClass& roads = data.featureClass();
    data.workspace->startEditing();
    data.workspace->startEditOperation();
    setShape(roads, moved, far);
    roads.feature(deleted)->remove();
    const ObjectId added = insertRow(roads, east);

    EXPECT_EQ(roads.count(), 3);
    EXPECT_EQ(roads.ids({}), (Ids{moved, untouched, added}));
    EXPECT_EQ(roads.ids(around(5, 0)), (Ids{untouched, added}));
    EXPECT_EQ(roads.ids(around(1005, 1000)), (Ids{moved}));
    EXPECT_EQ(roads.ids(where("NAME >= 'A'")), (Ids{moved, untouched}));
    EXPECT_EQ(roads.ids(where("NAME IS NULL")), (Ids{added}));
    EXPECT_EQ(roads.feature(deleted), nullptr);
    EXPECT_TRUE(roads.extent().contains(XY{1010, 1000}));
    EXPECT_EQ(data.storedWkt(moved), east) << "the stored layer is not touched while editing";
}

TEST(Overlay, OperationsAreUndoneAndRedoneWhole) {
    MemoryData data;
    const ObjectId row = data.add(east);
    OverlayClass& roads = data.featureClass();
    data.workspace->startEditing();
    data.workspace->startEditOperation();
    setShape(roads, row, north);
    setShape(roads, row, far);
    const ObjectId added = insertRow(roads, north);
    EXPECT_TRUE(data.workspace->stopEditOperation());
    data.workspace->startEditOperation();
    roads.feature(added)->remove();
    EXPECT_TRUE(data.workspace->stopEditOperation());

    EXPECT_TRUE(data.workspace->undo());
    EXPECT_EQ(data.wkt(added), north);
    EXPECT_TRUE(data.workspace->undo());
    EXPECT_EQ(data.wkt(row), east);
    EXPECT_EQ(data.wkt(added), "none");
    EXPECT_FALSE(data.workspace->undo());
    EXPECT_TRUE(data.workspace->redo());
    EXPECT_EQ(data.wkt(row), far);
    EXPECT_EQ(data.wkt(added), north) << "the same id again";
    EXPECT_EQ(roads.count(), 2);

    data.workspace->startEditOperation();
    setShape(roads, row, north);
    data.workspace->stopEditOperation();
    EXPECT_FALSE(data.workspace->redo()) << "a new operation clears redo";
}

// The same row between writes to another table: what it was first is what undo gives back.
TEST(Overlay, OperationsOnTwoTablesAreUndoneAndRedoneWhole) {
    auto store = std::make_unique<MemoryStore>();
    for (const char* name : {"roads", "rails"}) {
        Schema schema = test::roadSchema();
        schema.name = name;
        store->addTable(std::move(schema)).add(geometryFromWkt(east));
    }
    OverlayWorkspace workspace(std::move(store));
    FeatureClass& roads = *workspace.table("roads");
    FeatureClass& rails = *workspace.table("rails");
    const auto states = [&] { return toWkt(*roads.feature(1)->shape()) + toWkt(*rails.feature(1)->shape()); };
    const std::string before = states();
    workspace.startEditing();
    workspace.startEditOperation();
    setShape(roads, 1, north);
    setShape(rails, 1, far);
    setShape(roads, 1, far);
    setShape(rails, 1, north);
    workspace.stopEditOperation();
    const std::string after = states();
    EXPECT_TRUE(workspace.undo());
    EXPECT_EQ(states(), before);
    EXPECT_TRUE(workspace.redo());
    EXPECT_EQ(states(), after);
    EXPECT_TRUE(workspace.undo());
    EXPECT_EQ(states(), before);
}

TEST(Overlay, AbortTakesBackAllAndIdsAreNeverReused) {
    MemoryData data;
    const ObjectId row = data.add(east);
    OverlayClass& roads = data.featureClass();
    data.workspace->startEditing();
    data.workspace->startEditOperation();
    setShape(roads, row, far);
    const ObjectId given = insertRow(roads, far);
    data.workspace->abortEditOperation();
    EXPECT_EQ(data.wkt(row), east);
    EXPECT_EQ(data.wkt(given), "none");
    EXPECT_FALSE(data.workspace->undo());
    data.workspace->startEditOperation();
    EXPECT_GT(insertRow(roads, far), given);
    data.workspace->stopEditOperation();
    data.workspace->stopEditing(true);
    EXPECT_EQ(data.table->ids(), (Ids{row, given + 1}));
}

TEST(Overlay, SessionIsSavedOrDiscardedWhole) {
    MemoryData data;
    const ObjectId row = data.add(east);
    const ObjectId other = data.add(east);
    data.workspace->startEditing();
    setShape(data.featureClass(), row, far);
    data.workspace->stopEditing(false);
    EXPECT_EQ(data.wkt(row), east);
    data.workspace->startEditing();
    setShape(data.featureClass(), row, far);
    data.featureClass().feature(other)->remove();
    data.workspace->stopEditing(true);
    EXPECT_EQ(data.storedWkt(row), far);
    EXPECT_EQ(data.table->ids(), (Ids{row}));
    EXPECT_EQ(data.featureClass().count(), 1);
}

TEST(Overlay, MisusedSessionsAreErrors) {
    MemoryData data;
    EXPECT_THROW(data.workspace->startEditOperation(), PlatformError);
    EXPECT_THROW(data.workspace->stopEditing(true), PlatformError);
    data.workspace->startEditing();
    EXPECT_THROW(data.workspace->startEditing(), PlatformError);
    EXPECT_THROW(data.workspace->stopEditOperation(), PlatformError);
    data.workspace->startEditOperation();
    EXPECT_THROW(data.workspace->startEditOperation(), PlatformError);
    EXPECT_THROW(data.workspace->undo(), PlatformError);
    EXPECT_THROW(data.workspace->stopEditing(true), PlatformError);
    EXPECT_TRUE(data.workspace->isInEditOperation());
}

TEST(Overlay, FailedSaveWritesNothingAndKeepsTheSession) {
    for (std::size_t failing = 0;; ++failing) {
        std::size_t writes = 0;
        const SaveObserver observer = [&](std::size_t, std::size_t) {
            if (writes++ == failing) {
                throw DataError("the disk is full");
            }
        };
        MemoryData data(test::roadSchema(), {.saveObserver = observer, .withholdSaves = false});
        const ObjectId row = data.add(east);
        const ObjectId deleted = data.add(east);
        data.workspace->startEditing();
        setShape(data.featureClass(), row, far);
        data.featureClass().feature(deleted)->remove();
        insertRow(data.featureClass(), north);
        try {
            data.workspace->stopEditing(true);
            EXPECT_EQ(failing, 3U) << "one write for each change, and none beyond";
            break;
        } catch (const DataError&) {
            EXPECT_EQ(data.storedWkt(row), east);
            EXPECT_EQ(data.table->ids(), (Ids{row, deleted}));
            EXPECT_TRUE(data.workspace->isBeingEdited());
            EXPECT_EQ(data.wkt(row), far);
        }
    }
}

TEST(Overlay, WritesOutsideASessionAreSavedAtOnce) {
    MemoryData data;
    const ObjectId row = data.add(east);
    setShape(data.featureClass(), row, far);
    EXPECT_EQ(data.storedWkt(row), far);
    EXPECT_FALSE(data.workspace->isBeingEdited());
    const CursorPtr cursor = data.featureClass().insert();
    const auto buffer = data.featureClass().createBuffer();
    buffer->setShape(geometryFromWkt(north));
    const ObjectId inserted = cursor->insert(*buffer);
    EXPECT_EQ(data.storedWkt(inserted), "none") << "rows may stay unwritten until the cursor is flushed";
    EXPECT_EQ(data.wkt(inserted), north);
    cursor->flush();
    EXPECT_EQ(data.storedWkt(inserted), north);
}

TEST(Overlay, WithheldSavesAreSeenButNotStored) {
    MemoryData data(test::roadSchema(), {.saveObserver = {}, .withholdSaves = true});
    const ObjectId row = data.add(east);
    data.workspace->startEditing();
    setShape(data.featureClass(), row, far);
    data.workspace->stopEditing(true);
    EXPECT_EQ(data.wkt(row), far);
    EXPECT_EQ(data.storedWkt(row), east);
    EXPECT_EQ(data.workspace->saveCount(), 0);
}

TEST(Overlay, UnchangedValuesAndShapesAreNotWritten) {
    class Watch final : public FeatureStore {
    public:
        explicit Watch(ChangeSet& saved) : saved_(saved) { store_.addTable(test::roadSchema()).add(std::nullopt); }
        const std::string& path() const override { return store_.path(); }
        WorkspaceType workspaceType() const override { return store_.workspaceType(); }
        const std::string& datasetCategory() const override { return store_.datasetCategory(); }
        std::vector<std::string> tableNames() override { return store_.tableNames(); }
        FeatureSource* table(const std::string& name) override { return store_.table(name); }
        std::string refusalToSave() const override { return {}; }
        bool savesSingleRowsCheaply() const override { return true; }
        void save(const ChangeSet& changes, const SaveObserver&) override { saved_ = changes; }
        void addField(const std::string&, const Field&) override {}

    private:
        MemoryStore store_;
        ChangeSet& saved_;
    };
    ChangeSet saved;
    OverlayWorkspace workspace(std::make_unique<Watch>(saved));
    FeatureClass& roads = *workspace.table("roads");
    const FeaturePtr row = roads.feature(1);
    row->setValue(test::lanesField, std::int32_t{2});
    row->setValue(test::nameField, Value());
    row->store();
    ASSERT_EQ(saved.size(), 1U);
    ASSERT_EQ(saved[0].updates.size(), 1U);
    EXPECT_FALSE(saved[0].updates[0].shapeChanged);
    EXPECT_EQ(saved[0].updates[0].changedValues, (std::vector<bool>{false, false, false, true}));
}

TEST(Cursor, WalksASnapshotInOrderOfId) {
    MemoryData data;
    const ObjectId first = data.add(east);
    const ObjectId second = data.add(east);
    const ObjectId third = data.add(east);
    OverlayClass& roads = data.featureClass();
    data.workspace->startEditing();
    const CursorPtr cursor = roads.search({});
    EXPECT_EQ(cursor->next()->objectId(), first);
    roads.feature(second)->remove();
    setShape(roads, third, far);
    insertRow(roads, east);
    const FeaturePtr changed = cursor->next();
    EXPECT_EQ(changed->objectId(), third) << "the deleted one is skipped";
    EXPECT_EQ(toWkt(*changed->shape()), far) << "the changed one comes as it is";
    EXPECT_EQ(cursor->next(), nullptr) << "the new one doesn't come";
}

TEST(Cursor, SeesRowsThatWereSavedDuringTheWalk) {
    MemoryData data;
    data.add(east);
    const ObjectId second = data.add(east);
    const CursorPtr cursor = data.featureClass().search({});
    static_cast<void>(cursor->next());
    setShape(data.featureClass(), second, far);
    EXPECT_EQ(toWkt(*cursor->next()->shape()), far);
}

TEST(Cursor, WritesOnlyWhereItStands) {
    MemoryData data;
    data.add(east);
    const ObjectId second = data.add(east);
    OverlayClass& roads = data.featureClass();
    const CursorPtr search = roads.search({});
    const FeaturePtr row = search->next();
    EXPECT_THROW(search->update(*row), PlatformError);
    EXPECT_THROW(search->remove(), PlatformError);

    const CursorPtr update = roads.update({});
    EXPECT_THROW(update->remove(), PlatformError) << "before the first row";
    const FeaturePtr first = update->next();
    EXPECT_THROW(update->update(*roads.feature(second)), PlatformError);
    first->setShape(geometryFromWkt(far));
    update->update(*first);
    EXPECT_EQ(data.wkt(first->objectId()), far);
    update->remove();
    EXPECT_THROW(update->update(*first), PlatformError);
    EXPECT_THROW(first->store(), PlatformError) << "a deleted row can't be written";
    EXPECT_EQ(roads.count(), 1);
}

TEST(Cursor, BufferIsFreshAfterEachInsert) {
    MemoryData data;
    const CursorPtr cursor = data.featureClass().insert();
    const auto buffer = data.featureClass().createBuffer();
    buffer->setValue(test::nameField, std::string("High Street"));
    buffer->setShape(geometryFromWkt(east));
    const ObjectId first = cursor->insert(*buffer);
    const ObjectId second = cursor->insert(*buffer);
    EXPECT_EQ(data.featureClass().feature(first)->value(test::nameField), Value(std::string("High Street")));
    EXPECT_EQ(data.featureClass().feature(second)->value(test::nameField), Value());
    EXPECT_EQ(data.wkt(second), "null");
}

TEST(Row, TakesOnlyShapesAndFieldsOfItsClass) {
    MemoryData data;
    const FeaturePtr row = data.featureClass().createFeature();
    EXPECT_THROW(row->setShape(geometryFromWkt("POINT (1 2)")), PlatformError);
    EXPECT_THROW(row->setValue(0, std::int32_t{5}), PlatformError) << "the object id";
    EXPECT_THROW(row->setValue(99, std::int32_t{5}), PlatformError);
    row->setShape(geometryFromWkt("LINESTRING (0 0,1 1)"));
    EXPECT_TRUE(row->shape()->traits().zAware) << "the class has z";
}

// Whatever is done, in whatever order of operations, aborts, undos and saves: the overlay reads like a plain table that
// the same things are done to.
TEST(Overlay, AgreesWithAPlainTableOnRandomEdits) {
    std::mt19937 random(20240517);
    MemoryData data;
    std::map<ObjectId, std::string> plain;
    for (int i = 0; i < 20; ++i) {
        plain[data.add(east)] = east;
    }
    OverlayClass& roads = data.featureClass();
    data.workspace->startEditing();
    std::vector<std::map<ObjectId, std::string>> past;
    int operations = 0;
    for (int round = 0; round < 300; ++round) {
        const auto before = plain;
        data.workspace->startEditOperation();
        for (int edit = 0; edit < 3; ++edit) {
            auto row = plain.begin();
            std::advance(row, random() % plain.size());
            const int kind = static_cast<int>(random() % 3);
            if (kind == 0 || plain.size() < 5) {
                plain[insertRow(roads, north)] = north;
            } else if (kind == 1) {
                setShape(roads, row->first, far);
                row->second = far;
            } else {
                roads.feature(row->first)->remove();
                plain.erase(row);
            }
        }
        if (random() % 4 == 0) {
            data.workspace->abortEditOperation();
            plain = before;
        } else {
            data.workspace->stopEditOperation();
            past.push_back(before);
            ++operations;
        }
        if (random() % 3 == 0 && !past.empty()) {
            ASSERT_TRUE(data.workspace->undo());
            plain = past.back();
            past.pop_back();
        }
        if (random() % 20 == 0) {
            data.workspace->saveEdits();
            past.clear();
        }
        Ids expected;
        for (const auto& [id, wkt] : plain) {
            expected.push_back(id);
            ASSERT_EQ(data.wkt(id), wkt);
        }
        ASSERT_EQ(roads.ids({}), expected);
        ASSERT_EQ(roads.count(), static_cast<std::int64_t>(expected.size()));
        Ids beyond;
        for (const auto& [id, wkt] : plain) {
            if (wkt == far) {
                beyond.push_back(id);
            }
        }
        ASSERT_EQ(roads.ids(around(1005, 1000)), beyond);
    }
    EXPECT_GT(operations, 150);
}

} // namespace
} // namespace qz
