#include <sstream>

#include <gtest/gtest.h>

#include "component/MKQZGenFunRun.h"
#include "host/HeadlessHost.h"
#include "host/RefreshAreaRecord.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "tests/support/MemoryData.h"

namespace qz {
namespace {

using test::MemoryData;

// A class of any kind of shape, in a coordinate system with a millimetre grid.
Schema mixedSchema() {
    Schema schema = test::roadSchema();
    schema.shape->kind.reset();
    CoordinateGrid grid;
    grid.xyResolution = 0.001;
    schema.shape->spatialReference = SpatialReference::fromEpsg(25832).withGrid(grid);
    return schema;
}

struct Flip : testing::Test {
    Flip() {
        services().showMessage = [this](const std::string& text) { messages.push_back(text); };
        data.workspace->startEditing();
    }

    bool run(std::int32_t count) {
        const CursorPtr cursor = data.featureClass().search({});
        return component.QZ_Flip(*cursor, count, refresh, host);
    }
    [[nodiscard]] const ProgressRecord& progress() { return host.statusBar().stepProgressor().record(); }

    ScopedServices restored;
    std::vector<std::string> messages;
    std::ostringstream terminal;
    HeadlessHost host{terminal, false};
    RefreshAreaRecord refresh;
    MKQZGenFunRun component;
    MemoryData data{mixedSchema()};
};

TEST_F(Flip, ReversesEveryPartWithHeightsMeasuresAndArcs) {
    const std::pair<const char*, const char*> rows[] = {
        {"LINESTRING ZM (0 0 1 5,10 0 2 NaN,10 10 3 7)", "LINESTRING ZM (10 10 3 7,10 0 2 NaN,0 0 1 5)"},
        {"MULTILINESTRING ZM ((0 0 1 5,1 0 2 6),(5 5 3 7,6 6 4 8))",
         "MULTILINESTRING ZM ((1 0 2 6,0 0 1 5),(6 6 4 8,5 5 3 7))"},
        {"COMPOUNDCURVE ZM ((0 0 0 0,1 0 1 1),CIRCULARSTRING ZM (1 0 1 1,2 1 1.5 2,3 0 2 3))",
         "COMPOUNDCURVE ZM (CIRCULARSTRING ZM (3 0 2 3,2 1 1.5 2,1 0 1 1),(1 0 1 1,0 0 0 0))"},
        {"LINESTRING ZM (0.12345 0 0 0,1 0 0 0)", "LINESTRING ZM (1 0 0 0,0.123 0 0 0)"},
    };
    std::vector<ObjectId> ids;
    for (const auto& [given, flipped] : rows) {
        ids.push_back(data.add(given));
    }
    EXPECT_TRUE(run(static_cast<std::int32_t>(ids.size())));
    for (std::size_t i = 0; i < ids.size(); ++i) {
        EXPECT_EQ(data.wkt(ids[i]), rows[i].second);
    }
    EXPECT_EQ(refresh.count(), 4);
    EXPECT_TRUE(run(4));
    EXPECT_EQ(data.wkt(ids[0]), rows[0].first) << "flipped twice";
    EXPECT_EQ(data.wkt(ids[2]), rows[2].first);
}

TEST_F(Flip, LeavesNullAndEmptyShapesAlone) {
    const ObjectId null = data.add("");
    const ObjectId empty = data.add("LINESTRING EMPTY");
    const ObjectId line = data.add("LINESTRING ZM (0 0 0 0,1 0 0 0)");
    EXPECT_TRUE(run(3));
    EXPECT_EQ(data.wkt(null), "null");
    EXPECT_EQ(data.wkt(empty), "LINESTRING ZM EMPTY");
    EXPECT_EQ(data.wkt(line), "LINESTRING ZM (1 0 0 0,0 0 0 0)");
    EXPECT_EQ(refresh.count(), 1);
    EXPECT_EQ(progress().positions, 3) << "they count all the same";
    EXPECT_EQ(progress().text, "Flipping polylines: 2");
}

TEST_F(Flip, EndsAtTheFirstShapeThatIsNoPolyline) {
    const ObjectId first = data.add("LINESTRING ZM (0 0 0 0,1 0 0 0)");
    const ObjectId second = data.add("LINESTRING ZM (0 0 0 0,2 0 0 0)");
    data.add("POLYGON ZM ((0 0 0 0,0 1 0 0,1 1 0 0,0 0 0 0))");
    const ObjectId last = data.add("LINESTRING ZM (0 0 0 0,3 0 0 0)");
    EXPECT_FALSE(run(4));
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(data.wkt(first), "LINESTRING ZM (1 0 0 0,0 0 0 0)");
    EXPECT_EQ(data.wkt(second), "LINESTRING ZM (2 0 0 0,0 0 0 0)");
    EXPECT_EQ(data.wkt(last), "LINESTRING ZM (0 0 0 0,3 0 0 0)");
    EXPECT_EQ(progress().hideCount, 0) << "the progress stays on the error exit";
}

TEST_F(Flip, EmptyCursorSetsUpAndHidesTheProgress) {
    EXPECT_TRUE(run(250));
    EXPECT_EQ(progress().maximum, 251);
    EXPECT_EQ(progress().step, 2) << "2.5 rounded half to even";
    EXPECT_FALSE(progress().shown);
    EXPECT_EQ(progress().hideCount, 1);
}

TEST_F(Flip, ExpectedCountOnlyBoundsTheProgress) {
    for (int i = 0; i < 5; ++i) {
        data.add("LINESTRING ZM (0 0 0 0,1 0 0 0)");
    }
    EXPECT_TRUE(run(0));
    EXPECT_EQ(progress().positions, 0);
    EXPECT_EQ(data.wkt(5), "LINESTRING ZM (1 0 0 0,0 0 0 0)");
    EXPECT_TRUE(run(2));
    EXPECT_EQ(progress().positions, 2);
    EXPECT_EQ(progress().text, "Flipping polylines: 1");
    EXPECT_EQ(data.wkt(5), "LINESTRING ZM (0 0 0 0,1 0 0 0)");
    EXPECT_FALSE(run(2147483647)) << "a range that no 32-bit integer bounds";
}

// Whatever write fails, the method says so and the caller's abort takes everything back.
TEST_F(Flip, AbortAfterAFailureRestoresAll) {
    const ObjectId line = data.add("LINESTRING ZM (0 0 0 0,1 0 0 0)");
    data.add("POINT ZM (0 0 0 0)");
    data.workspace->startEditOperation();
    EXPECT_FALSE(run(2));
    EXPECT_EQ(data.wkt(line), "LINESTRING ZM (1 0 0 0,0 0 0 0)");
    data.workspace->abortEditOperation();
    EXPECT_EQ(data.wkt(line), "LINESTRING ZM (0 0 0 0,1 0 0 0)");
}

} // namespace
} // namespace qz
