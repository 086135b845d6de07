#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "platform/geometry/ArcConstruction.h"
#include "platform/geometry/Measures.h"
#include "tests/geometry/CurveSamples.h"

namespace qz {
namespace {

using std::numbers::pi;

CircularArc circleOf(const Path& path) {
    EXPECT_EQ(path.segmentCount(), 1U);
    EXPECT_EQ(path.arcs().size(), 1U);
    return path.circularArc(path.arcs()[0]);
}

TEST(ArcConstruction, BetweenTwoPoints) {
    const Vertex start{0, 0, 10, 1};
    const Vertex end{8, 0, 20, 2};
    const double minor = 2 * std::asin(0.8);
    const struct {
        const char* name;
        double radius;
        ArcSense sense;
        ArcSize size;
        XY centre;
        double sweep;
    } rows[] = {
        {"counter-clockwise, minor", 5, ArcSense::counterClockwise, ArcSize::minor, {4, 3}, minor},
        {"clockwise, minor", 5, ArcSense::clockwise, ArcSize::minor, {4, -3}, -minor},
        {"counter-clockwise, major", 5, ArcSense::counterClockwise, ArcSize::major, {4, -3}, 2 * pi - minor},
        {"clockwise, major", 5, ArcSense::clockwise, ArcSize::major, {4, 3}, minor - 2 * pi},
        {"half circle", 4, ArcSense::counterClockwise, ArcSize::minor, {4, 0}, pi},
        {"half circle, short by rounding", 4 - 1e-10, ArcSense::clockwise, ArcSize::major, {4, 0}, -pi},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Path path = arcBetween(start, end, row.radius, row.sense, row.size);
        const CircularArc arc = circleOf(path);
        EXPECT_LT(distanceOf(arc.centre, row.centre), 1e-9);
        EXPECT_NEAR(arc.sweep, row.sweep, 1e-9);
        EXPECT_TRUE(sameVertex(path.front(), start) && sameVertex(path.back(), end));
        EXPECT_EQ(path.arcs()[0].middle.z, 15);
        EXPECT_EQ(path.arcs()[0].middle.m, 1.5);
    }
}

TEST(ArcConstruction, KeepsTheRadiusAskedFor) {
    CurveSamples samples(91);
    for (int i = 0; i < 1000; ++i) {
        const Vertex start = samples.vertexNear({0, 0}, 100);
        const Vertex end = samples.vertexNear({0, 0}, 100);
        const double radius = distanceOf(start.xy(), end.xy()) / 2 * samples.uniform(1.01, 100);
        const ArcSense sense = i % 2 == 0 ? ArcSense::clockwise : ArcSense::counterClockwise;
        const CircularArc minor = circleOf(arcBetween(start, end, radius, sense, ArcSize::minor));
        const CircularArc major = circleOf(arcBetween(start, end, radius, sense, ArcSize::major));
        EXPECT_NEAR(minor.radius / radius, 1, 1e-8);
        EXPECT_NEAR(major.radius / radius, 1, 1e-8);
        EXPECT_LT(std::abs(minor.sweep), pi);
        EXPECT_NEAR(std::abs(minor.sweep) + std::abs(major.sweep), 2 * pi, 1e-8);
        EXPECT_EQ(minor.sweep > 0, sense == ArcSense::counterClockwise);
        EXPECT_EQ(major.sweep > 0, sense == ArcSense::counterClockwise);
    }
}

TEST(ArcConstruction, ThroughThreePoints) {
    const CircularArc arc = circleOf(arcThroughPoints({5, 0}, {0, 5}, {0, -5}));
    EXPECT_LT(distanceOf(arc.centre, {0, 0}), 1e-12);
    EXPECT_NEAR(arc.sweep, 1.5 * pi, 1e-12);
}

TEST(ArcConstruction, CircleHasTheAreaOfACircle) {
    const Polygon polygon = circlePolygon({500000, 5500000}, 3, {});
    ASSERT_EQ(polygon.rings.size(), 1U);
    EXPECT_EQ(polygon.rings[0].segmentCount(), 1U);
    EXPECT_NEAR(area(polygon), 9 * pi, 1e-8);
    EXPECT_EQ(polygon.rings[0].front().xy(), (XY{500000, 5500003}));
    const Path counter = circleFrom({0, 0}, {4, 0, 7}, ArcSense::counterClockwise);
    EXPECT_NEAR(signedArea(counter), -16 * pi, 1e-12);
    EXPECT_EQ(counter.arcs()[0].middle.z, 7);
}

TEST(ArcConstruction, FilletOfARightAngleInTheQuadrantOfTheHint) {
    const Segment first{{0, 0}, {10, 0}};
    const Segment second{{0, 10}, {0, 0}}; // its line meets the first in (0, 0)
    const struct {
        XY hint;
        XY start;
        XY end;
        XY centre;
    } rows[] = {
        {{3, 3}, {2, 0}, {0, 2}, {2, 2}},    {{-3, 3}, {-2, 0}, {0, 2}, {-2, 2}},
        {{3, -1}, {2, 0}, {0, -2}, {2, -2}}, {{-1, -1}, {-2, 0}, {0, -2}, {-2, -2}},
        {{0, 0}, {2, 0}, {0, 2}, {2, 2}},    {{-5, 0}, {-2, 0}, {0, 2}, {-2, 2}},
        {{0, -4}, {2, 0}, {0, -2}, {2, -2}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.hint.x) + " " + std::to_string(row.hint.y));
        const Path path = filletArc(first, second, 2, row.hint);
        EXPECT_LT(distanceOf(path.front().xy(), row.start), 1e-12);
        EXPECT_LT(distanceOf(path.back().xy(), row.end), 1e-12);
        EXPECT_LT(distanceOf(circleOf(path).centre, row.centre), 1e-12);
        EXPECT_NEAR(std::abs(circleOf(path).sweep), pi / 2, 1e-12);
    }
}

TEST(ArcConstruction, FilletIsTangentToBothLines) {
    CurveSamples samples(92);
    for (int i = 0; i < 1000; ++i) {
        const double angle = samples.uniform(0.05, pi - 0.05);
        const double turned = samples.uniform(0, 2 * pi);
        const XY corner = samples.pointNear({0, 0}, 100);
        const XY one{corner.x + 50 * std::cos(turned), corner.y + 50 * std::sin(turned)};
        const XY other{corner.x + 50 * std::cos(turned + angle), corner.y + 50 * std::sin(turned + angle)};
        const double radius = samples.uniform(0.1, 10);
        const Path path = filletArc({one, corner}, {corner, other}, radius, corner);
        const double reach = radius / std::tan(angle / 2);
        EXPECT_NEAR(distanceOf(path.front().xy(), corner), reach, 1e-8 * (1 + reach));
        EXPECT_NEAR(distanceOf(path.back().xy(), corner), reach, 1e-8 * (1 + reach));
        const CircularArc arc = circleOf(path);
        EXPECT_NEAR(arc.radius, radius, 1e-5);
        EXPECT_NEAR(std::abs(arc.sweep), pi - angle, 1e-5);
    }
}

TEST(ArcConstruction, RefusesWhatCannotBeBuilt) {
    const auto between = [](XY end, double radius) {
        return arcBetween({0, 0}, {end.x, end.y}, radius, ArcSense::clockwise, ArcSize::minor);
    };
    EXPECT_THROW(between({10, 0}, 4.99), PlatformError);
    EXPECT_THROW(between({10, 0}, -5), PlatformError);
    EXPECT_THROW(between({10, 0}, undefined), PlatformError);
    EXPECT_THROW(between({0, 0}, 5), PlatformError);
    EXPECT_THROW(between({undefined, 0}, 5), PlatformError);
    EXPECT_THROW(static_cast<void>(arcThroughPoints({0, 0}, {1, 1}, {2, 2})), PlatformError);
    EXPECT_THROW(static_cast<void>(arcThroughPoints({0, 0}, {1, 1}, {0, 0})), PlatformError);
    EXPECT_THROW(static_cast<void>(circleRing({0, 0}, 0)), PlatformError);
    EXPECT_THROW(static_cast<void>(circleFrom({1, 1}, {1, 1}, ArcSense::clockwise)), PlatformError);
    const Segment east{{0, 0}, {1, 0}};
    const Segment north{{0, 0}, {0, 1}};
    EXPECT_THROW(static_cast<void>(filletArc(east, {{0, 1}, {5, 1}}, 1, {1, 0.5})), PlatformError);
    EXPECT_THROW(static_cast<void>(filletArc(east, north, 0, {1, 1})), PlatformError);
    EXPECT_THROW(static_cast<void>(filletArc(east, {{2, 2}, {2, 2}}, 1, {1, 1})), PlatformError);
    EXPECT_THROW(static_cast<void>(filletArc(east, north, 1, {undefined, 1})), PlatformError);
}

} // namespace
} // namespace qz
