#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/Measures.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/RingNesting.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/RandomShapes.h"

namespace qz {
namespace {

std::vector<const Path*> pointersTo(const std::vector<Path>& rings) {
    std::vector<const Path*> pointers;
    std::ranges::transform(rings, std::back_inserter(pointers), [](const Path& ring) { return &ring; });
    return pointers;
}

bool haveNodes(const std::vector<Path>& rings) {
    return !std::ranges::all_of(nodesOf(pointersTo(rings)), &std::vector<Node>::empty);
}

Path square(double x, double y, double side) {
    return Path(std::vector<XY>{{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}, {x, y}});
}

TEST(RingNesting, TellsWhereRingsMeet) {
    const struct {
        const char* name;
        std::vector<Path> rings;
        bool meet;
    } rows[] = {
        {"side by side at one height", {square(0, 0, 1), square(2, 0, 1)}, false},
        {"one above the other at one x", {square(0, 0, 1), square(0, 2, 1)}, false},
        {"one in the other", {square(0, 0, 9), square(2, 2, 1)}, false},
        {"shared corner", {square(0, 0, 1), square(1, 1, 1)}, true},
        {"corner on an upright side", {square(0, 0, 4), Path(std::vector<XY>{{4, 2}, {6, 1}, {6, 3}, {4, 2}})}, true},
        {"corner on a level side", {square(0, 0, 4), Path(std::vector<XY>{{2, 4}, {3, 6}, {1, 6}, {2, 4}})}, true},
        {"sides that share a stretch", {square(0, 0, 4), square(4, 1, 2)}, true},
        {"sides on one line, apart", {square(0, 0, 2), square(3, 0, 2), square(0, 3, 2)}, false},
        {"crossing", {square(0, 0, 4), square(3, 3, 4)}, true},
        {"bow tie", {Path(std::vector<XY>{{0, 0}, {4, 4}, {4, 0}, {0, 4}, {0, 0}})}, true},
        {"spike", {Path(std::vector<XY>{{0, 0}, {0, 4}, {2, 4}, {2, 9}, {2, 4}, {4, 4}, {0, 0}})}, true},
        {"there and back", {Path(std::vector<XY>{{0, 0}, {3, 1}, {0, 0}})}, true},
        {"vertex amid a straight side", {Path(std::vector<XY>{{0, 0}, {2, 2}, {4, 4}, {4, 0}, {0, 0}})}, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::vector<Path> rings = row.rings;
        EXPECT_EQ(ringPlaces(pointersTo(rings)).has_value(), !row.meet);
        std::ranges::for_each(rings, &Path::reverse);
        EXPECT_EQ(ringPlaces(pointersTo(rings)).has_value(), !row.meet);
        EXPECT_EQ(haveNodes(rings), row.meet);
    }
}

// By the crossings of a ray; the place is on no ring.
bool surrounds(const Path& ring, XY place) {
    bool inside = false;
    for (std::size_t i = 1; i < ring.vertexCount(); ++i) {
        const XY a = ring.xy()[i - 1];
        const XY b = ring.xy()[i];
        if ((a.y > place.y) != (b.y > place.y) && place.x < a.x + (b.x - a.x) * (place.y - a.y) / (b.y - a.y)) {
            inside = !inside;
        }
    }
    return inside;
}

void expectPlace(const std::vector<Path>& rings, std::size_t ring, const RingPlace& place) {
    std::size_t smallest = noRing;
    std::size_t depth = 0;
    for (std::size_t i = 0; i < rings.size(); ++i) {
        if (i != ring && surrounds(rings[i], rings[ring].xy().front())) {
            ++depth;
            const bool isSmaller =
                smallest == noRing || std::abs(signedArea(rings[i])) < std::abs(signedArea(rings[smallest]));
            smallest = isSmaller ? i : smallest;
        }
    }
    EXPECT_EQ(place.surrounding, smallest);
    EXPECT_EQ(place.depth, depth);
}

std::vector<Path> randomRings(std::mt19937& random, double grid) {
    std::uniform_real_distribution<double> place(0, 60);
    std::exponential_distribution<double> size(0.2);
    std::vector<Path> rings;
    for (int ring = 0; ring < 6; ++ring) {
        const XY centre{place(random), place(random)};
        rings.push_back(randomStarRing(random, {centre, 3 + size(random), grid}, 9, 1, false));
        if (ring % 2 == 1) {
            rings.push_back(randomStarRing(random, {centre, 40, grid}, 7, 1, false));
            rings.back().reverse();
        }
    }
    return rings;
}

TEST(RingNesting, AgreesWithThePlainComparisonOfAllRings) {
    std::mt19937 random(17);
    std::size_t apart = 0;
    std::size_t nested = 0;
    for (int round = 0; round < 3000; ++round) {
        SCOPED_TRACE(round);
        std::vector<Path> rings = randomRings(random, round % 2 == 0 ? 1.0 : 0.0);
        rings.resize(2 + static_cast<std::size_t>(round % 5));
        const auto places = ringPlaces(pointersTo(rings));
        ASSERT_EQ(places.has_value(), !haveNodes(rings));
        for (std::size_t i = 0; places && i < rings.size(); ++i) {
            expectPlace(rings, i, (*places)[i]);
            nested += (*places)[i].depth > 0 ? 1 : 0;
        }
        apart += places ? 1 : 0;
    }
    EXPECT_GT(apart, 300u);
    EXPECT_LT(apart, 2700u);
    EXPECT_GT(nested, 300u);
}

// Needles all around a place, so that a quarter of them has overlapping envelopes.
Path urchin(std::size_t needles, double reach) {
    std::vector<XY> xy;
    for (std::size_t i = 0; i < 2 * needles; ++i) {
        const double angle = std::numbers::pi * static_cast<double>(i) / static_cast<double>(needles);
        const double radius = i % 2 == 0 ? 100 : (i == 7 ? reach : 1);
        xy.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    xy.push_back(xy.front());
    return Path(std::move(xy));
}

TEST(RingNesting, TellsNeedlesThatMeetNowhere) {
    for (const double reach : {1.0, -1.5}) {
        const std::array rings{urchin(300, reach)};
        EXPECT_EQ(meetNowhere(std::array{&rings[0]}), !haveNodes({rings.begin(), rings.end()})) << reach;
        EXPECT_EQ(meetNowhere(std::array{&rings[0]}), reach > 0) << reach;
    }
}

Polygon shuffled(std::mt19937& random, const std::vector<Path>& rings) {
    Polygon polygon;
    for (const Path& ring : rings) {
        polygon.rings.push_back(ring);
        if (random() % 2 == 0) {
            polygon.rings.back().reverse();
        }
    }
    std::ranges::shuffle(polygon.rings, random);
    return polygon;
}

TEST(RingNesting, GivesTheAreaThatGeneralSimplifyingGives) {
    std::mt19937 random(18);
    std::size_t withHoles = 0;
    for (int round = 0; round < 600; ++round) {
        std::vector<Path> rings = randomRings(random, 0);
        rings.resize(2 + static_cast<std::size_t>(round % 5));
        if (haveNodes(rings)) {
            continue;
        }
        const Polygon polygon = shuffled(random, rings);
        Polygon withDangle = polygon; // which takes the way through the faces of a graph
        withDangle.rings.emplace_back(std::vector<XY>{{500, 500}, {501, 500}});
        const Polygon simple = simplified(polygon);
        EXPECT_TRUE(isSimple(simple));
        EXPECT_EQ(simplified(simple).rings, simple.rings);
        if (!isSimple(polygon)) {
            EXPECT_EQ(toWkt(simple), toWkt(simplified(withDangle))) << toWkt(polygon);
            withHoles += exteriorRings(simple).size() < simple.rings.size() ? 1 : 0;
        }
    }
    EXPECT_GT(withHoles, 50u);
}

} // namespace
} // namespace qz
