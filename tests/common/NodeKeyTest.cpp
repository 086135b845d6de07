#include <random>

#include <gtest/gtest.h>

#include "common/NodeKey.h"
#include "common/NumberText.h"
#include "platform/Error.h"

namespace qz::test {
namespace {

// Coordinates of all sizes, on short decimals and beside them.
double coordinate(std::mt19937_64& random) {
    const double size = std::pow(10.0, static_cast<double>(random() % 15) - 6);
    double value = (static_cast<double>(random() % 2000001) - 1e6) / 1e6 * size;
    if (random() % 2 == 0) {
        value = std::round(value * 1e4) / 1e4;
    }
    return random() % 3 == 0 ? std::nextafter(value, random() % 2 == 0 ? 1e300 : -1e300) : value;
}

TEST(NodeKey, NamesThePlaceThatTheTextNames) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; ++i) {
        const auto decimals = static_cast<std::int16_t>(1 + i % 14);
        const XY place{coordinate(random), coordinate(random)};
        const XY key = nodeKey(place, decimals);
        EXPECT_EQ(formatUngrouped(key.x, decimals), formatUngrouped(place.x, decimals)) << place.x;
        EXPECT_TRUE(sameBits(nodeKey({key.y, key.x}, decimals), {key.y, key.x})) << place.y;
    }
}

TEST(NodeKey, EqualExactlyWhenTheTextsAre) {
    std::mt19937_64 random(4);
    int same = 0;
    for (int i = 0; i < 20000; ++i) {
        const auto decimals = static_cast<std::int16_t>(1 + i % 9);
        const double x = coordinate(random);
        const double step = std::pow(10.0, -decimals) * static_cast<double>(random() % 100) / 50;
        const bool isSame = formatUngrouped(x, decimals) == formatUngrouped(x + step, decimals);
        EXPECT_EQ(nodeKey({x, 0}, decimals) == nodeKey({x + step, 0}, decimals), isSame) << x;
        same += isSame ? 1 : 0;
    }
    EXPECT_GT(same, 5000);
    EXPECT_LT(same, 15000);
}

TEST(NodeKey, ZeroHasNoSign) {
    EXPECT_TRUE(sameBits(nodeKey({-0.04, -0.0}, 1), {0, 0}));
}

TEST(NodeKey, HalvesGoAwayFromZero) {
    // The number nearest to 500000.05 is a little less; its text is not.
    EXPECT_EQ(nodeKey({500000.05, -0.25}, 1), (XY{500000.1, -0.3}));
}

TEST(NodeKey, RefusesWhatIsNoPlace) {
    EXPECT_THROW((void)nodeKey({1, undefined}, 1), PlatformError);
}

TEST(NodeNumbers, InTheOrderOfAppearance) {
    NodeNumbers nodes(1);
    EXPECT_EQ(nodes.add({7, 7}), 0U);
    EXPECT_EQ(nodes.add({1, 1}), 1U);
    EXPECT_EQ(nodes.add({7.04, 6.96}), 0U);
    EXPECT_EQ(nodes.add({7.06, 7}), 2U);
    EXPECT_EQ(nodes.size(), 3U);
}

} // namespace
} // namespace qz::test
