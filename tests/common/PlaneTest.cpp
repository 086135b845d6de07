#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "common/QZNaNs.h"
#include "common/QZPlane.h"
#include "common/QZSelfIntersection.h"
#include "common/QZSort.h"
#include "platform/app/Services.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

XY atDirection(double degrees) {
    const double radians = degrees * std::numbers::pi / 180;
    return {std::sin(radians), std::cos(radians)};
}

TEST(Plane, DirectionsRunClockwiseFromNorth) {
    const std::pair<XY, double> axes[] = {{{0, 1}, 0}, {{2, 0}, 90}, {{0, -3}, 180}, {{-1, 0}, 270}, {{0, 0}, 0}};
    for (const auto& [to, direction] : axes) {
        EXPECT_EQ(QZ_DirectionAngle({5, 5}, {5 + to.x, 5 + to.y}), direction);
    }
    for (double direction = 0.5; direction < 360; direction += 1) {
        EXPECT_NEAR(QZ_DirectionAngle({0, 0}, atDirection(direction)), direction, 1e-12);
    }
    EXPECT_LT(QZ_DirectionAngle({0, 0}, {-1e-300, 1}), 360);
}

TEST(Plane, AngleOfThreePointsOverTheFullCircle) {
    for (double from = 0; from < 360; from += 7.5) {
        for (double angle = 0; angle < 360; angle += 2.5) {
            const double found = QZ_Angle3Points({0, 0}, atDirection(from), atDirection(from + angle));
            const double off = std::remainder(found - angle, 360);
            ASSERT_NEAR(off, 0, 1e-11) << from << " + " << angle;
        }
    }
    const std::tuple<XY, XY, double> exact[] = {{{1, 0}, {5, 0}, 0},   {{1, 1}, {-3, -3}, 180}, {{0, 2}, {7, 0}, 90},
                                                {{7, 0}, {0, 2}, 270}, {{0, 0}, {1, 1}, 0},     {{1, 1}, {1, 1}, 0}};
    for (const auto& [from, to, angle] : exact) {
        EXPECT_EQ(QZ_Angle3Points({0, 0}, from, to), angle);
    }
    // The cosine law has lost this corner of a hundredth of a second.
    EXPECT_NEAR(180 - QZ_Angle3Points({0, 0}, {-1, 0}, {1, 5e-8}), std::atan(5e-8) * 180 / std::numbers::pi, 1e-12);
}

TEST(Plane, AngleOfAPointThatIsNowhereIsReported) {
    const ScopedServices restored;
    std::string message;
    services().showMessage = [&](const std::string& text) { message = text; };
    EXPECT_EQ(QZ_Angle3Points({0, 0}, {1, 0}, {undefined, 0}), 0);
    EXPECT_TRUE(message.ends_with(" QZ_Angle3Points")) << message;
}

TEST(Plane, EnvelopeAsPolyline) {
    EXPECT_EQ(toWkt(QZ_PolylineFromEnvelope({0, 0, 2, 1})), "LINESTRING (0 0,0 1,2 1,2 0,0 0)");
}

TEST(Sorting, BothOrdersAndPartsOfAnArray) {
    std::vector<double> values{3, undefined, 1, 2};
    QZ_SortArray(std::span(values), SortOrder::ascending);
    EXPECT_EQ((std::vector(values.begin(), values.begin() + 3)), (std::vector<double>{1, 2, 3}));
    EXPECT_TRUE(std::isnan(values[3]));
    QZ_SortArray(std::span(values).first(2), SortOrder::descending);
    EXPECT_EQ((std::vector(values.begin(), values.begin() + 3)), (std::vector<double>{2, 1, 3}));
    std::vector<SplitPoint> points{
        {.x = 1, .pos = 0.5, .fid = 3}, {.x = 2, .pos = 0.1, .fid = 9}, {.x = 0, .pos = 0.5, .fid = 1}};
    QZ_SortPoints(std::span(points), &SplitPoint::pos, SortOrder::ascending);
    EXPECT_EQ(points[0].fid, 9);
    EXPECT_EQ(points[1].fid, 3) << "equal keys keep their order";
    QZ_SortPoints(std::span(points), &SplitPoint::fid, SortOrder::descending);
    EXPECT_EQ(points[2].fid, 1);
}

TEST(SelfIntersection, PiecesRunInTheDirectionOfTheLine) {
    const auto pieces = SelfIntersectFind(
        geometryFromWkt("LINESTRING ZM (0 0 0 0,10 0 10 10,10 10 20 20,5 10 25 25,5 -5 40 40)").as<Polyline>());
    std::vector<std::string> texts;
    for (const Geometry& piece : pieces.geometries) {
        texts.push_back(toWkt(piece));
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"LINESTRING ZM (0 0 0 0,5 0 5 5)",
                                               "LINESTRING ZM (5 0 5 5,10 0 10 10,10 10 20 20,5 10 25 25,5 0 35 35)",
                                               "LINESTRING ZM (5 0 35 35,5 -5 40 40)"}));
    EXPECT_TRUE(SelfIntersectFind(geometryFromWkt("LINESTRING (0 0,10 0,10 10)").as<Polyline>()).geometries.empty());
    EXPECT_TRUE(SelfIntersectFind(Polyline()).geometries.empty());
}

TEST(UndefinedMeasures, AreFoundInOrder) {
    const std::pair<const char*, const char*> rows[] = {
        {"MULTILINESTRING M ((0 0 1,1 0 NaN),(2 0 NaN,3 0 4))", "MULTIPOINT M ((1 0 NaN),(2 0 NaN))"},
        {"LINESTRING (0 0,1 0)", "MULTIPOINT ((0 0),(1 0))"},
        {"POINT M (1 2 NaN)", "MULTIPOINT M ((1 2 NaN))"},
        {"POINT M EMPTY", "MULTIPOINT M EMPTY"},
        {"POLYGON M ((0 0 1,0 1 2,1 1 3,0 0 1))", "MULTIPOINT M EMPTY"},
    };
    for (const auto& [wkt, found] : rows) {
        EXPECT_EQ(toWkt(QZ_GetNaNs(geometryFromWkt(wkt))), found);
    }
    EXPECT_TRUE(QZ_IsValidZM({1, 2, 3, undefined}, true));
    EXPECT_FALSE(QZ_IsValidZM({1, 2, 3, undefined}, false));
}

} // namespace
} // namespace qz
