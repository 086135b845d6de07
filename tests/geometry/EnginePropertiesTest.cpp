#include <numbers>
#include <random>
#include <string>

#include "tests/geometry/EngineProperties.h"
#include "tests/geometry/HeightSamples.h"
#include "tests/geometry/RandomShapes.h"

namespace qz {
namespace {

double uniform(std::mt19937& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

Path rectangleRing(const ShapeFrame& frame, XY low, XY high) {
    Path ring;
    for (const XY corner : {low, XY{low.x, high.y}, high, XY{high.x, low.y}, low}) {
        const XY p = frame.at(std::atan2(corner.y, corner.x), std::hypot(corner.x, corner.y));
        ring.addVertex({p.x, p.y});
    }
    return ring;
}

Polygon squareWithHoles(std::mt19937& random, const ShapeFrame& frame) {
    Polygon polygon;
    polygon.rings.push_back(rectangleRing(frame, {-1, -1}, {uniform(random, 0.8, 1.2), uniform(random, 0.8, 1.2)}));
    for (const XY at : {XY{-0.7, -0.7}, XY{-0.7, 0.1}, XY{0.1, -0.7}, XY{0.1, 0.1}}) {
        const double size = uniform(random, 0.1, 0.5);
        polygon.rings.push_back(rectangleRing(frame, at, {at.x + size, at.y + size}));
        polygon.rings.back().reverse();
    }
    return polygon;
}

Polygon star(std::mt19937& random, const ShapeFrame& frame) {
    return randomStar(random, frame, 20, random() % 2 == 0, false);
}

Polygon starWithArcs(std::mt19937& random, const ShapeFrame& frame) {
    return randomStar(random, frame, 20, random() % 2 == 0, true);
}

Polygon nestedRings(std::mt19937& random, const ShapeFrame& frame) {
    Polygon polygon;
    for (const double ratio : {1.0, 0.5, 0.25, 0.12}) {
        polygon.rings.push_back(randomStarRing(random, frame, 12, ratio, false));
    }
    return polygon;
}

// A comb of teeth that are from some ten resolutions to a hundredth of the frame wide.
Polygon slivers(std::mt19937& random, const ShapeFrame& frame) {
    Polygon polygon;
    for (int tooth = 0; tooth < 6; ++tooth) {
        const double left = -1 + 0.3 * tooth;
        const double width = std::pow(10, uniform(random, -5, -2));
        polygon.rings.push_back(rectangleRing(frame, {left, -1}, {left + width, uniform(random, 0, 1)}));
    }
    return polygon;
}

struct Family {
    const char* name;
    Polygon (*make)(std::mt19937&, const ShapeFrame&);
    bool withArcs = false;
};

constexpr Family families[] = {{"squares with holes", squareWithHoles},
                               {"stars", star},
                               {"stars with arcs", starWithArcs, true},
                               {"nested rings", nestedRings},
                               {"slivers", slivers}};

struct Place {
    const char* name;
    ShapeFrame frame;
};

constexpr Place places[] = {{"at the origin", {{0, 0}, 100, 0}},
                            {"at 1e7 on a grid", {{1.2e7, 1e7}, 250, 1e-4}},
                            {"in degrees", {{11.5, 48.1}, 0.01, 1e-9}}};

Polygon shapeOf(const Family& family, const Place& place, std::mt19937& random) {
    Polygon polygon = family.make(random, place.frame);
    polygon.spatialReference =
        SpatialReference::unknown(place.frame.size < 1 ? CoordinateGrid::forDegrees() : CoordinateGrid());
    return polygon;
}

Polygon shifted(Polygon polygon, double dx, double dy) {
    for (Path& ring : polygon.rings) {
        ring.transform([&](Vertex& vertex) {
            vertex.x += dx;
            vertex.y += dy;
        });
    }
    return polygon;
}

// The other operand in turn: a shape of the family elsewhere, the same one with nearly the same edges, a star.
Polygon otherFor(const Polygon& shape, const Family& family, const Place& place, std::mt19937& random, int round) {
    const double resolution = shape.spatialReference.grid().xyResolution;
    const double size = place.frame.size;
    switch (round % 3) {
    case 0:
        return shifted(shapeOf(family, place, random), uniform(random, -size, size), uniform(random, -size, size));
    case 1:
        return shifted(shape, uniform(random, 0.01, 20) * resolution, uniform(random, -3, 3) * resolution);
    default:
        return shapeOf(families[1], place, random);
    }
}

template <typename Check> void forEachShape(int rounds, Check check) {
    for (const Place& place : places) {
        for (const Family& family : families) {
            std::mt19937 random(71);
            for (int round = 0; round < rounds; ++round) {
                SCOPED_TRACE(std::string(family.name) + " " + place.name + ", " + std::to_string(round));
                check(family, place, random, round);
            }
        }
    }
}

TEST(EngineProperties, AreasAddUp) {
    int overlapping = 0;
    forEachShape(30, [&](const Family& family, const Place& place, std::mt19937& random, int round) {
        const Polygon a = simplified(shapeOf(family, place, random));
        const Polygon b = simplified(otherFor(a, family, place, random, round));
        overlapping += expectAreasAddUp(a, b) ? 1 : 0;
    });
    EXPECT_GT(overlapping, 300);
}

// Of three vertices inside the frame, from one side of it to the other.
Polyline cutterThrough(const ShapeFrame& frame, std::mt19937& random, bool withArcs) {
    const double from = uniform(random, -3, 3);
    const auto vertex = [&](double angle, double ratio) {
        const XY p = frame.at(angle, ratio);
        return Vertex{p.x, p.y};
    };
    Polyline line;
    Path& path = line.paths.emplace_back();
    path.addVertex(vertex(from, 2));
    path.addVertex(vertex(uniform(random, -3, 3), 0.6));
    const Vertex inside = vertex(uniform(random, -3, 3), 0.6);
    if (withArcs) {
        path.addArc(vertex(uniform(random, -3, 3), 0.3), inside);
    } else {
        path.addVertex(inside);
    }
    path.addVertex(vertex(from + uniform(random, 2, 4), 2));
    return line;
}

TEST(EngineProperties, PiecesOfACutAddUp) {
    int cuts = 0;
    forEachShape(20, [&](const Family& family, const Place& place, std::mt19937& random, int round) {
        const Polygon source = simplified(shapeOf(family, place, random));
        cuts += expectPiecesAddUp(source, cutterThrough(place.frame, random, round % 4 == 0)) ? 1 : 0;
    });
    EXPECT_GT(cuts, 200);
}

TEST(EngineProperties, SubCurvesJoin) {
    forEachShape(20, [](const Family& family, const Place& place, std::mt19937& random, int) {
        Polygon shape = shapeOf(family, place, random);
        raise(shape, shape.rings, random);
        for (const Path& ring : shape.rings) {
            Polyline line;
            line.paths.push_back(ring);
            expectSubCurvesJoin(line);
        }
    });
}

TEST(EngineProperties, SimplifyIsIdempotent) {
    forEachShape(20, [](const Family& family, const Place& place, std::mt19937& random, int round) {
        Polygon shape = shapeOf(family, place, random);
        // Rings over each other, which cross.
        for (const Path& ring : otherFor(shape, family, place, random, round).rings) {
            shape.rings.push_back(ring);
        }
        const Polygon simple = simplified(shape);
        EXPECT_TRUE(isSimple(simple)) << toWkt(simple);
        expectIdempotent(simple);
    });
}

// Without arcs: along an arc heights run by way of its middle point.
TEST(EngineProperties, HeightsAreThoseOfTheSource) {
    std::size_t crossings = 0;
    forEachShape(10, [&](const Family& family, const Place& place, std::mt19937& random, int) {
        if (family.withArcs) {
            return;
        }
        Polygon a = simplified(shapeOf(family, place, random));
        Polygon b = simplified(otherFor(a, family, place, random, 2));
        raise(a, a.rings, random);
        raise(b, b.rings, random);
        for (const Geometry& result : {intersection(a, b, ResultDimension::areas), difference(a, b), unionOf(a, b)}) {
            forEachVertex(result, [&](const Vertex& vertex) {
                EXPECT_LE(heightError(a, b, vertex), 1e-9) << vertex.x << " " << vertex.y;
                crossings += heightsOfVertices(a, vertex.xy()).empty() ? 1 : 0;
            });
        }
    });
    EXPECT_GT(crossings, 1000U);
}

Polygon fullCircle(XY centre, double radius) {
    Polygon polygon;
    Path& ring = polygon.rings.emplace_back();
    ring.addVertex({centre.x, centre.y + radius});
    ring.addArc({centre.x, centre.y - radius}, ring.front(), ArcSense::clockwise);
    return polygon;
}

// Expects all arcs on the circle.
double arcLengthOn(const Polygon& polygon, XY centre, double radius) {
    double sum = 0;
    for (const Path& ring : polygon.rings) {
        for (const ArcSegment& arc : ring.arcs()) {
            const CircularArc circle = ring.circularArc(arc);
            // A short piece tells its centre as much worse as its rise is less than its radius.
            const double rise = radius * (1 - std::cos(circle.sweep / 2));
            const double bound = 1e-4 * std::max(1.0, 1e-2 / rise);
            EXPECT_NEAR(circle.radius, radius, bound);
            EXPECT_NEAR(circle.centre.x, centre.x, bound);
            EXPECT_NEAR(circle.centre.y, centre.y, bound);
            sum += circle.length();
        }
    }
    return sum;
}

TEST(EngineProperties, ACutCircleStaysOnItsCircle) {
    std::mt19937 random(73);
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        const ShapeFrame frame{round % 2 == 0 ? XY{3, 4} : XY{1.2e7, 1e7}, 100, 0};
        const double radius = uniform(random, 20, 90);
        const Polyline line = cutterThrough(frame, random, false);
        const auto pieces = cut(fullCircle(frame.centre, radius), line);
        ASSERT_TRUE(pieces || radius < 65) << toWkt(line);
        if (pieces) {
            const double onCircle =
                arcLengthOn(pieces->left, frame.centre, radius) + arcLengthOn(pieces->right, frame.centre, radius);
            EXPECT_NEAR(onCircle, 2 * std::numbers::pi * radius, 1e-4 * radius) << toWkt(line);
        }
    }
}

bool hasArc(const Polygon& polygon, const Path& source, const ArcSegment& wanted) {
    const XY ends[] = {source.xy()[wanted.segment], source.xy()[wanted.segment + 1]};
    return std::ranges::any_of(polygon.rings, [&](const Path& ring) {
        return std::ranges::any_of(ring.arcs(), [&](const ArcSegment& arc) {
            const XY start = ring.xy()[arc.segment];
            const XY end = ring.xy()[arc.segment + 1];
            return sameBits(arc.middle.xy(), wanted.middle.xy()) && sameBits(start, ends[0]) && sameBits(end, ends[1]);
        });
    });
}

TEST(EngineProperties, AnUntouchedArcComesBackTheSame) {
    std::mt19937 random(79);
    std::size_t untouched = 0;
    for (int round = 0; round < 100; ++round) {
        SCOPED_TRACE(round);
        const Place& place = places[round % 3];
        const Polygon source = simplified(shapeOf(families[2], place, random));
        // Covers what is right of the middle.
        Polygon half = source;
        half.rings = {rectangleRing(place.frame, {0, -2}, {2, 2})};
        const Polygon rest = difference(source, half).as<Polygon>();
        const double edge = half.envelope().xMin;
        for (const Path& ring : source.rings) {
            for (const ArcSegment& arc : ring.arcs()) {
                const Envelope box = ring.circularArc(arc).envelope();
                if (box.xMax < edge) {
                    ++untouched;
                    EXPECT_TRUE(hasArc(rest, ring, arc)) << toWkt(source);
                }
            }
        }
    }
    EXPECT_GT(untouched, 300U);
}

} // namespace
} // namespace qz
