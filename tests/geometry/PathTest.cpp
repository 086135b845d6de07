#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/Measures.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

Path pathOf(const char* wkt) {
    return geometryFromWkt(wkt).as<Polyline>().paths.at(0);
}

std::string textOf(const Path& path) {
    Polyline line;
    line.zAware = path.hasDefinedZ();
    line.paths = {path};
    return toWkt(line);
}

// A wild mixture of straight segments, arcs, full circles and gaps in z and m.
Path randomPath(std::mt19937& random) {
    std::uniform_real_distribution<double> coordinate(-100, 100);
    std::uniform_int_distribution<int> choice(0, 3);
    const auto vertex = [&] {
        return Vertex{coordinate(random), coordinate(random), choice(random) == 0 ? undefined : coordinate(random),
                      choice(random) == 0 ? coordinate(random) : undefined};
    };
    Path path;
    path.addVertex(vertex());
    for (int i = 0; i < 12; ++i) {
        const int kind = choice(random);
        if (kind < 2) {
            path.addVertex(vertex());
        } else if (kind == 2) {
            path.addArc(vertex(), vertex());
        } else {
            path.addArc(vertex(), path.back(), i % 2 == 0 ? ArcSense::clockwise : ArcSense::counterClockwise);
        }
    }
    return path;
}

TEST(Path, ReversingTurnsEverySegmentAndTwiceGivesTheSamePath) {
    std::mt19937 random(3);
    for (int i = 0; i < 200; ++i) {
        const Path path = randomPath(random);
        Path turned = path;
        turned.reverse();
        ASSERT_FALSE(turned == path);
        ASSERT_TRUE(sameBits(turned.front().z, path.back().z) && sameBits(turned.back().m, path.front().m));
        ASSERT_NEAR(length(turned), length(path), 1e-9 * length(path));
        // An arc through three points that nearly lie on one line may have any size; its area is known to some 12
        // digits.
        ASSERT_NEAR(signedArea(turned), -signedArea(path), 1e-6 + 1e-12 * std::abs(signedArea(path)));
        for (std::size_t s = 0; s < path.segmentCount(); ++s) {
            ASSERT_NEAR(segmentLength(turned, path.segmentCount() - 1 - s), segmentLength(path, s),
                        1e-9 * segmentLength(path, s));
        }
        turned.reverse();
        ASSERT_TRUE(turned == path);
    }
}

TEST(Path, PiecesAppendToTheWhole) {
    std::mt19937 random(4);
    for (int i = 0; i < 100; ++i) {
        const Path first = randomPath(random);
        Path second = randomPath(random);
        second.setVertex(0, first.back());
        Path whole = first;
        whole.append(second);
        ASSERT_EQ(whole.segmentCount(), first.segmentCount() + second.segmentCount());
        ASSERT_NEAR(length(whole), length(first) + length(second), 1e-8);
        const std::size_t joint = first.vertexCount() - 1;
        for (std::size_t v = 1; v < second.vertexCount(); ++v) {
            ASSERT_TRUE(sameBits(whole.vertex(joint + v).xy(), second.vertex(v).xy()));
            ASSERT_TRUE(sameBits(whole.vertex(joint + v).z, second.vertex(v).z));
            ASSERT_TRUE(sameBits(whole.vertex(joint + v).m, second.vertex(v).m));
        }
    }
}

TEST(Path, DegenerateArcsBecomeStraight) {
    const struct {
        const char* name;
        XY middle;
        XY end;
        const char* expected;
    } rows[] = {
        {"on one line", {5, 0}, {10, 0}, "LINESTRING (0 0,5 0,10 0)"},
        {"doubling back", {15, 0}, {10, 0}, "LINESTRING (0 0,15 0,10 0)"},
        {"middle at the start", {0, 0}, {10, 0}, "LINESTRING (0 0,10 0)"},
        {"middle at the end", {10, 0}, {10, 0}, "LINESTRING (0 0,10 0)"},
        {"radius beyond all numbers", {5, 1e-308}, {10, 0}, "LINESTRING (0 0,5 1e-308,10 0)"},
        {"flat, but an arc", {5, 1e-9}, {10, 0}, "CIRCULARSTRING (0 0,5 1e-09,10 0)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Path path;
        path.addVertex({0, 0});
        path.addArc({row.middle.x, row.middle.y}, {row.end.x, row.end.y});
        EXPECT_EQ(textOf(path), row.expected);
    }
}

TEST(Path, MovingVerticesKeepsArcsTrueToTheirControlPoints) {
    Path path = pathOf("CIRCULARSTRING (0 0,5 5,10 0)");
    path.transform([](Vertex& v) { v.y = -v.y; });
    EXPECT_EQ(path.arcs()[0].sense, ArcSense::counterClockwise);
    EXPECT_EQ(path.envelope(), (Envelope{0, -5, 10, 0}));

    path.setVertex(1, {10, -10});
    EXPECT_FALSE(path.hasArcs()) << "(0 0), (5 -5) and (10 -10) lie on one line";
    EXPECT_EQ(path.vertexCount(), 2U);
}

TEST(Path, FullCircleKeepsItsSenseWhenMoved) {
    Path circle;
    circle.addVertex({0, 0});
    circle.addArc({10, 0}, {0, 0}, ArcSense::clockwise);
    circle.transform([](Vertex& v) { v.x += 3; });
    ASSERT_TRUE(circle.hasArcs());
    EXPECT_EQ(circle.arcs()[0].sense, ArcSense::clockwise);
    EXPECT_EQ(circle.envelope(), (Envelope{3, -5, 13, 5}));
}

TEST(Path, ZAndMAppearWithTheFirstDefinedValue) {
    Path path;
    path.addVertex({0, 0});
    path.addVertex({1, 0});
    EXPECT_FALSE(path.hasDefinedZ());
    path.addVertex({2, 0, 7});
    EXPECT_TRUE(std::isnan(path.vertex(1).z));
    EXPECT_EQ(path.vertex(2).z, 7);
    EXPECT_FALSE(path.hasDefinedM());
}

TEST(Geometry, IsIdenticalOnlyWithTheSameBits) {
    const Geometry line = geometryFromWkt("LINESTRING Z (0 0 NaN,1 1 5)");
    for (const char* other :
         {"LINESTRING Z (-0 0 NaN,1 1 5)", "LINESTRING Z (0 0 0,1 1 5)", "LINESTRING M (0 0 NaN,1 1 5)",
          "LINESTRING Z (0 0 NaN,1 1 5,1 1 5)", "MULTIPOINT Z ((0 0 NaN),(1 1 5))"}) {
        EXPECT_FALSE(identical(line, geometryFromWkt(other))) << other;
    }
    EXPECT_TRUE(identical(line, geometryFromWkt("LINESTRING Z (0 0 NaN,1 1 5)")));
    EXPECT_FALSE(
        identical(geometryFromWkt("CIRCULARSTRING (0 0,5 5,10 0)"), geometryFromWkt("CIRCULARSTRING (0 0,5 -5,10 0)")));
}

TEST(Geometry, NamesBothKindsWhenItIsAnother) {
    const Geometry line = geometryFromWkt("LINESTRING (0 0,1 1)");
    try {
        (void)line.as<Polygon>();
        ADD_FAILURE() << "a polyline passed as polygon";
    } catch (const PlatformError& error) {
        EXPECT_STREQ(error.what(), "A polygon is needed, but the geometry is a polyline.");
    }
}

TEST(Envelope, GrowsAndShrinks) {
    const Envelope envelope{0, 0, 10, 20};
    EXPECT_EQ(envelope.expandedBy(1, 2), (Envelope{-1, -2, 11, 22}));
    EXPECT_TRUE(envelope.expandedBy(-6, 0).isEmpty());
    EXPECT_FALSE(envelope.intersects(Envelope()));
    EXPECT_TRUE(envelope.intersects({10, 20, 30, 30})) << "a common corner is enough";
    Envelope grown;
    grown.expandToInclude(XY{undefined, 1});
    EXPECT_TRUE(grown.isEmpty());
    grown.expandToInclude(XY{3, 4});
    EXPECT_EQ(grown, (Envelope{3, 4, 3, 4}));
}

} // namespace
} // namespace qz
