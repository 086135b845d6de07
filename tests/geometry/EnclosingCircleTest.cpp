#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/EnclosingCircle.h"

namespace qz {
namespace {

double distance(XY a, XY b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

double farthest(const std::vector<XY>& places, XY from) {
    double most = 0;
    for (const XY place : places) {
        most = std::max(most, distance(place, from));
    }
    return most;
}

// The distance to the farthest place is a convex function of the centre; narrowed down in x, for each x in y.
double leastRadius(const std::vector<XY>& places) {
    const auto least = [](double low, double high, const auto& value) {
        for (int i = 0; i < 100; ++i) {
            const double third = (high - low) / 3;
            (value(low + third) < value(high - third) ? high : low) =
                value(low + third) < value(high - third) ? high - third : low + third;
        }
        return value((low + high) / 2);
    };
    return least(-200, 200, [&](double x) {
        return least(-200, 200, [&](double y) { return farthest(places, {x, y}); });
    });
}

TEST(EnclosingCircle, OfFewPlaces) {
    EXPECT_FALSE(smallestEnclosingCircle({}));
    EXPECT_EQ(smallestEnclosingCircle({{3, 4}, {3, 4}})->radius, 0);
    const struct {
        std::vector<XY> places;
        XY centre;
        double radius;
    } rows[] = {
        {{{0, 0}, {4, 0}}, {2, 0}, 2},
        {{{1, 1}, {0, 0}, {3, 3}}, {1.5, 1.5}, std::sqrt(4.5)},
        {{{0, 0}, {0, 2}, {2, 2}, {2, 0}}, {1, 1}, std::sqrt(2.0)},
        {{{500000, 5500000}, {500010, 5500000}, {500005, 5500000.001}}, {500005, 5500000}, 5},
    };
    for (const auto& row : rows) {
        const auto circle = smallestEnclosingCircle(row.places);
        EXPECT_NEAR(circle->radius, row.radius, 1e-9);
        EXPECT_NEAR(distance(circle->centre, row.centre), 0, 1e-8);
    }
}

TEST(EnclosingCircle, IsTheSmallestAndHasAllInside) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(-100, 100), angle(0, 2 * std::numbers::pi);
    for (int round = 0; round < 30; ++round) {
        std::vector<XY> places;
        for (int i = 0; i < 40; ++i) {
            const double a = angle(random);
            places.push_back(round % 3 == 0   ? XY{std::round(place(random) / 20), std::round(place(random) / 20)}
                             : round % 3 == 1 ? XY{place(random), place(random)}
                                              : XY{80 * std::cos(a), 80 * std::sin(a)});
        }
        const auto circle = smallestEnclosingCircle(places);
        EXPECT_LE(farthest(places, circle->centre), circle->radius * (1 + 1e-12));
        EXPECT_NEAR(circle->radius, leastRadius(places), 1e-6);
        std::ranges::shuffle(places, random);
        EXPECT_NEAR(smallestEnclosingCircle(places)->radius, circle->radius, 1e-12 * circle->radius);
    }
}

} // namespace
} // namespace qz
