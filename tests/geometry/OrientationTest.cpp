#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/Measures.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

__extension__ using Integer = __int128;

// In whole numbers below 2^62 the determinant is exact.
int exactTurn(long ax, long ay, long bx, long by, long cx, long cy) {
    const Integer left = static_cast<Integer>(bx - ax) * (cy - ay);
    const Integer right = static_cast<Integer>(by - ay) * (cx - ax);
    return left > right ? 1 : (left < right ? -1 : 0);
}

XY scaled(long x, long y) {
    return {std::ldexp(static_cast<double>(x), -53), std::ldexp(static_cast<double>(y), -53)};
}

// Around points of a slanted line the plain determinant gives a checkered pattern of signs; ours has to give that of
// whole numbers. The coordinates are multiples of 2^-53, so nothing is rounded on the way in.
TEST(Turn, IsExactAroundALine) {
    const long half = 1L << 52;
    const long bx = 12 * (1L << 53);
    const long cx = 24 * (1L << 53);
    int straight = 0;
    for (long i = 0; i < 64; ++i) {
        for (long j = 0; j < 64; ++j) {
            const int expected = exactTurn(half + i, half + j, bx, bx, cx, cx);
            straight += expected == 0 ? 1 : 0;
            ASSERT_EQ(static_cast<int>(turn(scaled(half + i, half + j), scaled(bx, bx), scaled(cx, cx))), expected)
                << i << ", " << j;
        }
    }
    EXPECT_EQ(straight, 64);
}

TEST(Turn, AgreesInEveryOrderOfItsPoints) {
    std::mt19937 random(8);
    std::uniform_real_distribution<double> unit(0, 1);
    int thin = 0;
    for (int i = 0; i < 20000; ++i) {
        const XY a{4.5e6 + unit(random), 5.5e6 + unit(random)};
        const XY b{4.5e6 + unit(random), 5.5e6 + unit(random)};
        const double t = unit(random);
        const XY c{a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)};
        const int side = static_cast<int>(turn(a, b, c));
        thin += side != 0 ? 1 : 0;
        ASSERT_EQ(static_cast<int>(turn(b, c, a)), side);
        ASSERT_EQ(static_cast<int>(turn(c, a, b)), side);
        ASSERT_EQ(static_cast<int>(turn(b, a, c)), -side);
        ASSERT_EQ(static_cast<int>(turn(a, c, b)), -side);
    }
    EXPECT_GT(thin, 10000) << "points computed on a line hardly ever lie on it";
}

TEST(Orientation, FollowsTheDirectionOfRings) {
    Polygon polygon = geometryFromWkt("POLYGON ((0 0,0 9,9 9,9 0,0 0),(1 1,2 1,2 2,1 1))").as<Polygon>();
    EXPECT_TRUE(isExterior(polygon.rings[0]));
    EXPECT_FALSE(isExterior(polygon.rings[1]));
    EXPECT_DOUBLE_EQ(area(polygon), 80.5);
    reverseOrientation(polygon);
    EXPECT_DOUBLE_EQ(area(polygon), -80.5);
    EXPECT_FALSE(isExterior(polygon.rings[0]));
}

TEST(Orientation, PartsBeginWithTheFirstRingWhateverItsDirection) {
    Polygon polygon =
        geometryFromWkt("MULTIPOLYGON (((0 0,0 9,9 9,9 0,0 0),(1 1,2 1,2 2,1 1)),((20 0,20 5,25 5,20 0)))")
            .as<Polygon>();
    const auto sizes = [&polygon] {
        std::vector<std::size_t> found;
        for (const auto part : polygonParts(polygon)) {
            found.push_back(part.size());
        }
        return found;
    };
    EXPECT_EQ(sizes(), (std::vector<std::size_t>{2, 1}));
    polygon.rings[0].reverse();
    EXPECT_EQ(sizes(), (std::vector<std::size_t>{2, 1}));
}

} // namespace
} // namespace qz
