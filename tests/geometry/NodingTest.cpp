#include <algorithm>
#include <cmath>
#include <random>
#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "platform/geometry/Curve.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/RandomShapes.h"

namespace qz {
namespace {

// "segment+ratio(x y)kind" of every node, a path a line: c crossing, t touch, e shared end, b and f overlap begin, end.
std::string nodesText(const char* wkt, const ContactTolerance& tolerance = {}) {
    const Geometry geometry = geometryFromWkt(wkt);
    std::string text;
    for (const std::vector<Node>& nodes : nodesOf(pathsOf(geometry), tolerance)) {
        for (const Node& node : nodes) {
            text += fmt::format("{:g}({:g} {:g}){} ", static_cast<double>(node.segment) + node.ratio, node.position.x,
                                node.position.y, "ctebf"[static_cast<int>(node.kind)]);
        }
        text += "| ";
    }
    return text;
}

TEST(Noding, FindsWhatSegmentsShare) {
    const struct {
        const char* name;
        const char* wkt;
        const char* nodes;
    } rows[] = {
        {"a crossing", "MULTILINESTRING ((0 0,10 10),(0 10,10 0))", "0.5(5 5)c | 0.5(5 5)c | "},
        {"no contact", "MULTILINESTRING ((0 0,10 10),(6 5,10 0))", "| | "},
        {"end inside", "MULTILINESTRING ((0 0,10 0),(4 0,4 5))", "0.4(4 0)t | 0(4 0)t | "},
        {"end on an inner vertex", "MULTILINESTRING ((0 0,4 0,10 0),(4 0,4 5))", "1(4 0)e | 0(4 0)e | "},
        {"end to end", "MULTILINESTRING ((0 0,4 0),(4 0,9 9))", "1(4 0)e | 0(4 0)e | "},
        {"line crossing itself", "LINESTRING (0 0,10 0,10 5,5 5,5 -5)", "0.5(5 0)c 3.5(5 0)c | "},
        {"closed line", "LINESTRING (0 0,10 0,10 5,0 0)", "| "},
        {"closed line through its start", "LINESTRING (0 0,10 0,0 0,0 5,5 5,0 0)",
         "0(0 0)e 0(0 0)b 1(10 0)b 1(10 0)f 2(0 0)e 2(0 0)f 2(0 0)e 5(0 0)e | "},
        {"opposite stretch", "MULTILINESTRING ((0 0,10 0),(7 0,3 0))", "0.3(3 0)b 0.7(7 0)f | 0(7 0)b 1(3 0)f | "},
        {"stretch over vertices", "MULTILINESTRING ((0 0,4 0,8 0),(2 0,6 0))",
         "0.5(2 0)b 1(4 0)b 1(4 0)f 1.5(6 0)f | 0(2 0)b 0.5(4 0)b 0.5(4 0)f 1(6 0)f | "},
        {"spike", "LINESTRING (0 0,10 0,4 0)", "0.4(4 0)b 1(10 0)b 1(10 0)f 2(4 0)f | "},
        {"repeated vertices are no contact", "LINESTRING (0 0,5 0,5 0,5 0,9 9)", "| "},
        {"line through an arc", "MULTICURVE (CIRCULARSTRING (-5 0,0 5,5 0),(0 0,0 9))",
         "0.5(0 5)c | 0.555556(0 5)c | "},
        {"line along the tangent", "MULTICURVE (CIRCULARSTRING (-5 0,0 5,5 0),(-9 5,9 5))", "0.5(0 5)t | 0.5(0 5)t | "},
        {"line from the end of an arc", "MULTICURVE (CIRCULARSTRING (-5 0,0 5,5 0),(5 0,9 0))", "1(5 0)e | 0(5 0)e | "},
        {"line leaving along the tangent", "MULTICURVE (CIRCULARSTRING (-5 0,0 5,5 0),(5 0,5 -4))",
         "1(5 0)e | 0(5 0)e | "},
        {"two arcs", "MULTICURVE (CIRCULARSTRING (-5 0,0 5,5 0),CIRCULARSTRING (-5 6,0 1,5 6))",
         "0.204833(-4 3)c 0.795167(4 3)c | 0.204833(-4 3)c 0.795167(4 3)c | "},
        {"circles that graze", "MULTICURVE (CIRCULARSTRING (-5 0,0 5,5 0),CIRCULARSTRING (-5 10,0 5,5 10))",
         "0.5(0 5)t | 0.5(0 5)t | "},
        {"arcs of one circle", "MULTICURVE (CIRCULARSTRING (-5 0,0 5,5 0),CIRCULARSTRING (3 4,5 0,3 -4))",
         "0.704833(3 4)b 1(5 0)f | 0(3 4)b 0.5(5 0)f | "},
        {"arcs of one circle, opposite", "MULTICURVE (CIRCULARSTRING (-5 0,0 5,5 0),CIRCULARSTRING (3 -4,5 0,3 4))",
         "0.704833(3 4)b 1(5 0)f | 0.5(5 0)b 1(3 4)f | "},
        {"arcs that make a circle", "MULTICURVE (CIRCULARSTRING (-5 0,0 5,5 0),CIRCULARSTRING (5 0,0 -5,-5 0))",
         "0(-5 0)e 1(5 0)e | 0(5 0)e 1(-5 0)e | "},
        {"full circle and part of it", "MULTICURVE (CIRCULARSTRING (-5 0,5 0,-5 0),CIRCULARSTRING (-3 4,-5 0,-3 -4))",
         "0(-5 0)b 0.147584(-3 -4)f 0.852416(-3 4)b 1(-5 0)f | 0(-3 4)b 0.5(-5 0)b 0.5(-5 0)f 1(-3 -4)f | "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(nodesText(row.wkt), row.nodes);
    }
}

TEST(Noding, JoinsEndsWithinTheTolerance) {
    const ContactTolerance tolerance{0.001, 0};
    EXPECT_EQ(nodesText("MULTILINESTRING ((0 0,10 0),(4 0.0009,4 5))", tolerance), "0.4(4 0.0009)t | 0(4 0.0009)t | ");
    EXPECT_EQ(nodesText("MULTILINESTRING ((0 0,10 0),(4 0.0011,4 5))", tolerance), "| | ");
    EXPECT_EQ(nodesText("MULTILINESTRING ((0 0,10 0),(10.0005 0,14 5))", tolerance), "1(10 0)e | 0(10 0)e | ");
    EXPECT_EQ(nodesText("MULTILINESTRING ((0 0,10 0),(2 0.0005,8 -0.0005))", tolerance),
              "0.2(2 0.0005)b 0.8(8 -0.0005)f | 0(2 0.0005)b 1(8 -0.0005)f | ");
}

TEST(Noding, TakesOneCircleDigitisedTwiceForOne) {
    const char* twice = "MULTICURVE (CIRCULARSTRING (-5 0,0 5,5 0),CIRCULARSTRING (-3 4.00005,0 5.00005,3 4.00005))";
    EXPECT_EQ(nodesText(twice, {0, 0.001}),
              "0.295169(-3 4.00005)b 0.704831(3 4.00005)f | 0(-3 4.00005)b 1(3 4.00005)f | ");
}

Path randomPath(std::mt19937& random, std::size_t vertices, double extent, double step, bool onGrid) {
    std::uniform_real_distribution<double> place(0, extent);
    std::uniform_real_distribution<double> move(-step, step);
    const auto rounded = [onGrid](double value) { return onGrid ? std::round(value) : value; };
    Path path;
    XY p{place(random), place(random)};
    for (std::size_t i = 0; i < vertices; ++i) {
        const Vertex vertex{rounded(p.x), rounded(p.y)};
        if (i > 0 && i % 5 == 0) {
            path.addArc({rounded(p.x + move(random)), rounded(p.y + move(random))}, vertex);
        } else {
            path.addVertex(vertex);
        }
        p = {p.x + move(random), p.y + move(random)};
    }
    return path;
}

std::vector<const Path*> refs(const std::vector<Path>& paths) {
    std::vector<const Path*> pointers;
    for (const Path& path : paths) {
        pointers.push_back(&path);
    }
    return pointers;
}

// Distinct contacts of different paths by a plain double loop over their segments.
std::vector<std::size_t> contactCounts(const std::vector<Path>& paths) {
    std::vector<std::size_t> counts;
    Contacts contacts;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        std::size_t& count = counts.emplace_back();
        for (std::size_t j = 0; j < paths.size(); ++j) {
            forEachSegment(paths[i], [&](std::size_t, const CurveSegment& a) {
                forEachSegment(paths[j], [&](std::size_t, const CurveSegment& b) {
                    if (i == j || (!a.circle() && a.start() == a.end()) || (!b.circle() && b.start() == b.end())) {
                        return;
                    }
                    findContacts({a.start(), a.end(), a.circle() ? &*a.circle() : nullptr},
                                 {b.start(), b.end(), b.circle() ? &*b.circle() : nullptr}, {}, contacts);
                    for (const Contact& contact : contacts.points) {
                        const bool inside =
                            contact.ratioA > 0 && contact.ratioA < 1 && contact.ratioB > 0 && contact.ratioB < 1;
                        count += inside ? 1 : 0;
                    }
                });
            });
        }
    }
    return counts;
}

TEST(Noding, FindsWhatADoubleLoopFinds) {
    std::mt19937 random(7);
    std::size_t total = 0;
    for (int round = 0; round < 60; ++round) {
        std::vector<Path> paths;
        for (int i = 0; i < 12; ++i) {
            paths.push_back(randomPath(random, 12, 40, 12, round % 2 == 0));
        }
        const auto nodes = nodesOf(refs(paths));
        const std::vector<std::size_t> expected = contactCounts(paths);
        for (std::size_t i = 0; i < paths.size(); ++i) {
            const auto inside = std::ranges::count_if(nodes[i], [i](const Node& node) {
                return node.ratio > 0 && node.otherRatio > 0 && node.otherPath != i && node.kind <= NodeKind::touch;
            });
            EXPECT_EQ(static_cast<std::size_t>(inside), expected[i]) << "round " << round << " path " << i;
            total += expected[i];
        }
    }
    EXPECT_GT(total, 5000u);
}

TEST(Noding, FindsTheSameForSomeOfThePaths) {
    std::mt19937 random(19);
    std::size_t found = 0;
    for (int round = 0; round < 50; ++round) {
        const Polygon one = randomScribble(random, round % 2 == 0, round % 3 == 0);
        const Polygon other = randomScribble(random, round % 2 == 0, round % 3 == 0);
        std::vector<Path> paths = one.rings;
        paths.insert(paths.end(), other.rings.begin(), other.rings.end());
        const ContactTolerance tolerance{.endDistance = 0.001};
        auto all = nodesOf(refs(paths), tolerance);
        all.resize(one.rings.size());
        EXPECT_EQ(nodesOfFirst(one.rings.size(), refs(paths), tolerance), all);
        found += all[0].size();
    }
    EXPECT_GT(found, 200u);
}

TEST(Noding, PutsTheSameBitsOnBothPathsAndOnTheirSegments) {
    std::mt19937 random(11);
    std::size_t total = 0;
    for (int round = 0; round < 60; ++round) {
        std::vector<Path> paths;
        for (int i = 0; i < 8; ++i) {
            paths.push_back(randomPath(random, 12, 40, 12, round % 2 == 0));
        }
        const auto nodes = nodesOf(refs(paths));
        for (std::size_t i = 0; i < paths.size(); ++i) {
            for (const Node& node : nodes[i]) {
                const auto mirrored = std::ranges::find_if(nodes[node.otherPath], [&](const Node& other) {
                    return other.otherPath == i && other.segment == node.otherSegment &&
                           other.ratio == node.otherRatio && other.otherSegment == node.segment &&
                           other.otherRatio == node.ratio;
                });
                ASSERT_NE(mirrored, nodes[node.otherPath].end());
                EXPECT_TRUE(sameBits(node.position, mirrored->position));
                if (node.ratio > 0) {
                    const CurveSegment segment(paths[i], node.segment);
                    // Some 30 units in the last place of coordinates of arcs that are up to 1e4 in radius.
                    EXPECT_LT(std::sqrt(segment.squaredDistance(node.position, node.ratio)), 1e-7);
                }
                ++total;
            }
        }
    }
    EXPECT_GT(total, 5000u);
}

TEST(Noding, GivesTheSameCrossingsForTurnedAndSwappedLines) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(5e6, 5e6 + 100);
    for (int round = 0; round < 500; ++round) {
        std::vector<Path> paths(2);
        for (Path& path : paths) {
            path.addVertex({place(random), place(random)});
            path.addVertex({place(random), place(random)});
        }
        const auto nodes = nodesOf(refs(paths));
        std::swap(paths[0], paths[1]);
        paths[0].reverse();
        const auto turned = nodesOf(refs(paths));
        ASSERT_EQ(nodes[0].size(), turned[0].size());
        if (!nodes[0].empty()) {
            EXPECT_TRUE(sameBits(nodes[0][0].position, turned[0][0].position));
        }
    }
}

TEST(Noding, DecidesNeighbouringNumbersExactly) {
    // An end is moved through the line in steps of one unit in the last place.
    for (int step = -8; step <= 8; ++step) {
        double y = 0.5;
        for (int i = 0; i < std::abs(step); ++i) {
            y = std::nextafter(y, step < 0 ? 0.0 : 1.0);
        }
        const std::vector<Path> paths{Path({{0, 0}, {1, 1}}), Path({{0.5, 2}, {0.5, y}})};
        const auto nodes = nodesOf(refs(paths));
        ASSERT_EQ(nodes[0].size(), step > 0 ? 0u : 1u) << step;
        if (step <= 0) {
            EXPECT_EQ(nodes[0][0].kind == NodeKind::touch, step == 0 || nodes[0][0].position.y == y);
        }
    }
}

TEST(Noding, TellsRingsThatMeetNowhere) {
    std::mt19937 random(71);
    std::uniform_real_distribution<double> place(0, 60);
    std::size_t apart = 0;
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE(round);
        std::vector<Path> rings;
        for (int ring = 0; ring < 3; ++ring) {
            const ShapeFrame frame{{place(random), place(random)}, 12, round % 2 == 0 ? 1.0 : 0.0};
            rings.push_back(randomStarRing(random, frame, 9, 1, round % 3 == 0));
        }
        const auto nodes = nodesOf(refs(rings));
        const bool none = std::ranges::all_of(nodes, [](const std::vector<Node>& own) { return own.empty(); });
        EXPECT_EQ(meetNowhere(refs(rings)), none);
        apart += none ? 1 : 0;
    }
    EXPECT_GT(apart, 50u);
    EXPECT_LT(apart, 350u);
}

TEST(Noding, PutsVerticesAtNodes) {
    const Geometry lines =
        geometryFromWkt("MULTICURVE ZM (CIRCULARSTRING ZM (-5 0 1 10,0 5 2 20,5 0 3 30),(0 0 5 5,0 10 15 15))");
    const std::vector<const Path*> paths = pathsOf(lines);
    const auto nodes = nodesOf(paths);
    Polyline noded;
    noded.zAware = noded.mAware = true;
    noded.paths = {withVerticesAt(*paths[0], nodes[0]), withVerticesAt(*paths[1], nodes[1])};
    ASSERT_EQ(noded.paths[0].vertexCount(), 3u);
    EXPECT_EQ(noded.paths[0].arcs().size(), 2u);
    EXPECT_NEAR(noded.paths[0].vertex(1).z, 2, 1e-12);
    EXPECT_NEAR(noded.paths[0].vertex(1).m, 20, 1e-12);
    EXPECT_NEAR(noded.paths[1].vertex(1).z, 10, 1e-12);
    EXPECT_TRUE(sameBits(noded.paths[0].xy()[1], noded.paths[1].xy()[1]));
}

} // namespace
} // namespace qz
