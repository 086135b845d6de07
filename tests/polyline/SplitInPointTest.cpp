#include "platform/geometry/Project.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

struct SplitStreets : Streets {
    bool split(ObjectId id, const char* option, XY click = {0, 0}, double distance = 0, bool bOver = false,
               const SpatialReference& clicked = {}) {
        const CursorPtr cursor = only(id);
        const Point point({click.x, click.y});
        return component.QZ_SplitInPoint2(*layer, *cursor, &point, refresh, option, 0.001, clicked, {}, nullptr, host,
                                          bOver, distance);
    }
};

struct SplitInPoint : testing::Test, SplitStreets {};

// The pieces replace the line, from its start to its end.
TEST(SplitOptions, CutWhereTheySay) {
    const struct {
        const char* option;
        XY click;
        double distance;
        Rows pieces;
    } rows[] = {
        {"Point", {4, 3}, 0, {"LINESTRING ZM (0 0 0 0,4 0 4 4)", "LINESTRING ZM (4 0 4 4,10 0 10 10,10 10 20 20)"}},
        {"Vertex", {8, 1}, 0, {"LINESTRING ZM (0 0 0 0,10 0 10 10)", "LINESTRING ZM (10 0 10 10,10 10 20 20)"}},
        {"Middle", {}, 0, {"LINESTRING ZM (0 0 0 0,10 0 10 10)", "LINESTRING ZM (10 0 10 10,10 10 20 20)"}},
        {"AllVertices", {}, 0, {"LINESTRING ZM (0 0 0 0,10 0 10 10)", "LINESTRING ZM (10 0 10 10,10 10 20 20)"}},
        {"Distance",
         {},
         15,
         {"LINESTRING ZM (0 0 0 0,10 0 10 10,10 5 15 15)", "LINESTRING ZM (10 5 15 15,10 10 20 20)"}},
        {"Distance", {}, 20, {"LINESTRING ZM (0 0 0 0,10 0 10 10,10 10 20 20)"}},
        {"Point", {-5, -5}, 0, {"LINESTRING ZM (0 0 0 0,10 0 10 10,10 10 20 20)"}},
    };
    for (const auto& row : rows) {
        SplitStreets data;
        const ObjectId id = data.add("LINESTRING ZM (0 0 0 0,10 0 10 10,10 10 20 20)");
        EXPECT_TRUE(data.split(id, row.option, row.click, row.distance)) << row.option;
        EXPECT_EQ(data.sortedShapes(), row.pieces) << row.option;
        EXPECT_FALSE(data.streets().feature(id)) << "the line itself is deleted, copied if need be";
        EXPECT_TRUE(data.messages.empty());
    }
}

TEST_F(SplitInPoint, RefusalsLeaveTheLine) {
    const ObjectId parts = add("MULTILINESTRING ZM ((0 0 0 0,1 0 0 0),(5 0 0 0,6 0 0 0))");
    const ObjectId line = add("LINESTRING ZM (0 0 0 0,10 0 0 0)");
    const ObjectId point = add("LINESTRING ZM (3 3 0 0,3 3 0 0)");
    const Rows before = shapes();
    EXPECT_FALSE(split(parts, "Middle"));
    EXPECT_FALSE(split(line, "Distance", {}, 10.5));
    EXPECT_FALSE(split(point, "Distance", {}, 1));
    EXPECT_FALSE(split(line, "Point", {undefined, 0}));
    EXPECT_FALSE(split(99, "Point"));
    EXPECT_TRUE(split(line, "middle"));
    EXPECT_TRUE(split(line, "AllVertices")) << "there is none inside";
    EXPECT_EQ(shapes(), before);
    ASSERT_EQ(messages.size(), 5U);
    EXPECT_EQ(messages[0], "This polyline is multipart\nExplode and try again!");
    EXPECT_EQ(messages[1], "The Split distance is larger than the total length\nSplit will not occur!!!");
    EXPECT_TRUE(messages[2].ends_with(" QZ_SplitInPoint2 w=3")) << messages[2];
    EXPECT_TRUE(messages[3].ends_with(" QZ_SplitInPoint2 w=3")) << messages[3];
    EXPECT_TRUE(messages[4].ends_with(" QZ_SplitInPoint2 w=2")) << messages[4];
}

TEST_F(SplitInPoint, AttributesFollowTheRules) {
    const std::vector<Value> values{std::string("Elm Row"), std::int32_t{101}, std::int32_t{199}, 20.0, Blob{1, 2}};
    const ObjectId first = add("LINESTRING ZM (0 0 0 0,5 0 0 0,10 0 0 0,20 0 0 0)", values);
    EXPECT_TRUE(split(first, "AllVertices"));
    EXPECT_EQ(listed({"NAME", "FROM_L", "TO_L", "LENGTH", "PHOTO"}),
              (Rows{"2 LINESTRING ZM (0 0 0 0,5 0 0 0) Elm Row 101 125 5 2 bytes",
                    "3 LINESTRING ZM (5 0 0 0,10 0 0 0) Elm Row 127 151 5 2 bytes",
                    "4 LINESTRING ZM (10 0 0 0,20 0 0 0) Elm Row 153 199 10 2 bytes"}));
    EXPECT_TRUE(split(4, "Middle", {}, 0, true));
    const Rows rows = listed({"FROM_L", "TO_L"});
    EXPECT_TRUE(rows[2].ends_with(" 153 175")) << rows[2];
    EXPECT_TRUE(rows[3].ends_with(" 175 199")) << rows[3];
}

TEST_F(SplitInPoint, ArcsAreCutIntoArcsAndMeasuresFilled) {
    const ObjectId arc = add("CIRCULARSTRING ZM (0 0 0 0,5 5 0 NaN,10 0 0 10)");
    EXPECT_TRUE(split(arc, "Middle"));
    const Rows pieces = shapes();
    ASSERT_EQ(pieces.size(), 2U);
    for (const std::string& piece : pieces) {
        EXPECT_NE(piece.find("CIRCULARSTRING ZM"), std::string::npos) << piece;
    }
    EXPECT_NE(pieces[0].find("5 5 0 5"), std::string::npos) << "the measure in the middle: " << pieces[0];
}

// The click comes in degrees, the line is cut in its own metres.
TEST_F(SplitInPoint, ClicksInAnotherReferenceCutTheLineItself) {
    const ObjectId id = add("LINESTRING ZM (500000 5000000 0 0,500100 5000000 0 0)");
    Geometry click = geometryFromWkt("POINT (500040 5000010)");
    click.traits().spatialReference = reference;
    const SpatialReference degrees = SpatialReference::fromEpsg(4326);
    project(click, degrees);
    EXPECT_TRUE(split(id, "Point", click.as<Point>().vertex.xy(), 0, false, degrees));
    const Rows pieces = shapes();
    ASSERT_EQ(pieces.size(), 2U);
    const FeaturePtr first = streets().feature(2);
    const Vertex cut = first->shape()->as<Polyline>().paths.front().back();
    EXPECT_NEAR(cut.x, 500040, 0.001);
    EXPECT_NEAR(cut.y, 5000000, 0.001);
    EXPECT_EQ(first->shape()->as<Polyline>().paths.front().front().x, 500000);
}

// A store that fails at any write leaves the line where it was once the caller aborts.
TEST_F(SplitInPoint, AnAbortAfterAFailureRestoresTheLine) {
    const std::vector<Value> values{std::string("Elm Row"), std::int32_t{-2147483647}, std::int32_t{2147483647}};
    const ObjectId id = add("LINESTRING ZM (0 0 0 0,10 0 0 0)", values);
    const Rows before = shapes();
    workspace->startEditing();
    workspace->startEditOperation();
    EXPECT_FALSE(split(id, "Middle")) << "the range is out of the range of integers";
    workspace->abortEditOperation();
    EXPECT_EQ(shapes(), before);
}

} // namespace
} // namespace qz::test
