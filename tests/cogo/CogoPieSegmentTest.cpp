#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "cogo/QZPieSegment.h"
#include "platform/app/Services.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/Simplify.h"

namespace qz {
namespace {

constexpr double degree = std::numbers::pi / 180;
constexpr double radius = 25;

struct PieSegment : testing::Test {
    PieSegment() {
        services().showMessage = [this](const std::string& text) { messages.push_back(text); };
    }
    ScopedServices restored;
    std::vector<std::string> messages;
    Point centre{{500000, 5800000, 12, 7}, {.zAware = true, .mAware = true}};
};

bool holds(const Polygon& pie, const Point& centre, double polarDegrees, double ratio) {
    const XY place = QZ_PolarLine(centre.vertex.xy(), polarDegrees, radius * ratio).end;
    return intersects(pie, Point({place.x, place.y}));
}

TEST_F(PieSegment, SectorsAboutTheirAxis) {
    for (const double angle : {0.5, 30.0, 90.0, 179.999, 180.0, 180.001, 270.0, 359.5}) {
        for (const double direction : {90.0, 0.0, -135.0, 777.7}) {
            SCOPED_TRACE(angle);
            double asked = angle;
            const auto pie = QZ_CreatePieSegment(centre, radius, asked, direction);
            ASSERT_TRUE(pie);
            EXPECT_EQ(asked, angle);
            EXPECT_TRUE(isSimple(*pie));
            ASSERT_EQ(pie->rings.size(), 1U);
            EXPECT_EQ(pie->rings[0].arcs().size(), 1U);
            EXPECT_NEAR(area(*pie), radius * radius * angle * degree / 2, 1e-5);
            EXPECT_NEAR(perimeter(*pie), radius * (2 + angle * degree), 1e-6);
            const double margin = std::min(angle, 360 - angle) / 8;
            EXPECT_TRUE(holds(*pie, centre, direction, 0.99));
            EXPECT_TRUE(holds(*pie, centre, direction + angle / 2 - margin, 0.99));
            EXPECT_TRUE(holds(*pie, centre, direction - angle / 2 + margin, 0.99));
            EXPECT_FALSE(holds(*pie, centre, direction + angle / 2 + margin, 0.99));
            EXPECT_FALSE(holds(*pie, centre, direction - angle / 2 - margin, 0.99));
            EXPECT_FALSE(holds(*pie, centre, direction, 1.001));
            EXPECT_EQ(pie->rings[0].vertex(1).z, 12);
            EXPECT_EQ(pie->rings[0].vertex(1).m, 7);
        }
    }
    EXPECT_TRUE(messages.empty());
}

TEST_F(PieSegment, TheFullCircleIsTheDisc) {
    double asked = 360;
    const auto pie = QZ_CreatePieSegment(centre, radius, asked, 20);
    ASSERT_TRUE(pie);
    EXPECT_NEAR(area(*pie), std::numbers::pi * radius * radius, 1e-9 * radius * radius);
    EXPECT_EQ(pie->rings[0].segmentCount(), 1U);
}

TEST_F(PieSegment, BeyondTheFullCircleTheArcIsMinor) {
    double asked = 400;
    const auto pie = QZ_CreatePieSegment(centre, radius, asked, 0);
    ASSERT_TRUE(pie);
    EXPECT_EQ(asked, 90);
    EXPECT_NEAR(area(*pie), radius * radius * 40 * degree / 2, 1e-5);
    EXPECT_TRUE(holds(*pie, centre, 180, 0.99)); // 160 to 200 degrees
}

TEST_F(PieSegment, WhatIsNoPieIsRefused) {
    for (const double refused : {0.0, -90.0, std::nan(""), HUGE_VAL}) {
        double asked = refused;
        EXPECT_FALSE(QZ_CreatePieSegment(centre, radius, asked, 0));
        asked = 90;
        EXPECT_FALSE(QZ_CreatePieSegment(centre, refused, asked, 0));
    }
    double asked = 90;
    EXPECT_FALSE(QZ_CreatePieSegment(Point(), radius, asked, 0));
    EXPECT_FALSE(QZ_CreatePieSegment(centre, 1e-9, asked, 0));
    EXPECT_EQ(messages.size(), 10U);
}

} // namespace
} // namespace qz
