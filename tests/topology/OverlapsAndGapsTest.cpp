#include "common/OverlapCandidates.h"
#include "platform/geometry/Boundary.h"
#include "platform/geometry/Simplify.h"
#include "tests/geometry/RandomShapes.h"
#include "tests/polygon/Coverage.h"
#include "tests/polygon/Pavement.h"
#include "tests/topology/DirtyPavement.h"
#include "topology/QZOverGaps.h"

namespace qz::test {
namespace {

struct CoverageCheck : Parcels {
    explicit CoverageCheck(const Rows& polygons) {
        for (const std::string& polygon : polygons) {
            add(polygon);
        }
    }

    [[nodiscard]] Rows drawn() {
        Rows rows;
        for (const Drawing& drawing : host.focusMap().activeView().display().drawings()) {
            Geometry flat = drawing.geometry;
            flat.traits().zAware = flat.traits().mAware = false;
            rows.push_back(toWkt(flat));
        }
        return rows;
    }
    bool drawOverlaps() { return component.QZ_DrawOverlaps(*layer, 2, refresh, &extent, {}, host); }
    bool drawTopo(const char* what, double dFuzzy) {
        return component.QZ_DrawOverlaps_Topo(*layer, &extent, dFuzzy, what, {}, host);
    }
    bool drawGaps() { return component.QZ_DrawGaps(*layer, &extent, refresh, {}, false, "", host); }
    bool fillGaps(const char* sHow) { return component.QZ_DrawGaps(*layer, &extent, refresh, {}, true, sHow, host); }

    Envelope extent{-100, -100, 100, 100};
};

TEST(DrawOverlaps, OncePerPairInTheOrderOfTheLater) {
    const struct {
        const char* name;
        Rows polygons;
        Rows overlaps;
    } rows[] = {
        {"one",
         {"POLYGON ((0 0,0 10,10 10,10 0,0 0))", "POLYGON ((8 0,8 10,20 10,20 0,8 0))"},
         {"POLYGON ((8 0,8 10,10 10,10 0,8 0))"}},
        {"each of three with each",
         {"POLYGON ((0 0,0 4,4 4,4 0,0 0))", "POLYGON ((2 0,2 4,6 4,6 0,2 0))", "POLYGON ((0 3,0 7,6 7,6 3,0 3))"},
         {"POLYGON ((2 0,2 4,4 4,4 0,2 0))", "POLYGON ((0 3,0 4,4 4,4 3,0 3))", "POLYGON ((2 3,2 4,6 4,6 3,2 3))"}},
        {"the same twice",
         {"POLYGON ((0 0,0 4,4 4,4 0,0 0))", "POLYGON ((0 0,0 4,4 4,4 0,0 0))"},
         {"POLYGON ((0 0,0 4,4 4,4 0,0 0))"}},
        {"one inside, and one in the hole",
         {"POLYGON ((0 0,0 20,20 20,20 0,0 0),(10 1,19 1,19 19,10 19,10 1))", "POLYGON ((2 2,2 3,3 3,2 2))",
          "POLYGON ((12 2,12 3,13 3,12 2))"},
         {"POLYGON ((2 2,2 3,3 3,2 2))"}},
        {"along a part of a side, inside",
         {"POLYGON ((0 0,0 20,20 20,20 0,0 0))", "POLYGON ((0 5,0 9,4 9,4 5,0 5))"},
         {"POLYGON ((0 5,0 9,4 9,4 5,0 5))"}},
        {"from corner to corner, inside",
         {"POLYGON ((0 0,0 20,20 20,20 0,0 0))", "POLYGON ((0 0,5 9,20 20,9 5,0 0))"},
         {"POLYGON ((0 0,5 9,20 20,9 5,0 0))"}},
        {"neighbours",
         {"POLYGON ((0 0,0 4,4 4,4 0,0 0))", "POLYGON ((4 0,4 4,8 4,4 0))", "POLYGON ((4 4,4 8,8 8,4 4))",
          "POLYGON ((0 4,0 6,2 4,0 4))"},
         {}},
        {"neighbours along an arc",
         {"CURVEPOLYGON (COMPOUNDCURVE ((0 0,0 10),CIRCULARSTRING (0 10,2 5,0 0)))",
          "CURVEPOLYGON (COMPOUNDCURVE ((0 0,9 0,9 10,0 10),CIRCULARSTRING (0 10,2 5,0 0)))"},
         {}},
        {"a hole filled up", {"POLYGON ((0 0,0 9,9 9,9 0,0 0),(2 2,5 2,5 5,2 2))", "POLYGON ((2 2,5 5,5 2,2 2))"}, {}},
    };
    for (const auto& row : rows) {
        CoverageCheck check(row.polygons);
        EXPECT_TRUE(check.drawOverlaps()) << row.name;
        EXPECT_EQ(check.drawn(), row.overlaps) << row.name;
        EXPECT_EQ(check.refresh.count(), static_cast<std::int64_t>(row.polygons.size())) << row.name;
        EXPECT_EQ(check.messages, Rows()) << row.name;
    }
}

std::vector<Polygon> randomPolygons(std::mt19937& random, bool onGrid, bool withArcs) {
    std::vector<Polygon> polygons;
    for (int i = 0; i < 6; ++i) {
        Polygon scribble = simplified(randomScribble(random, onGrid, withArcs && i % 2 == 0));
        for (Geometry& part : exploded(scribble)) {
            polygons.push_back(std::move(part.as<Polygon>()));
        }
    }
    return polygons;
}

bool shareArea(const Polygon& a, const Polygon& b) {
    return !intersection(a, b, ResultDimension::areas).isEmpty();
}

// What is left out is a pair whose set operation gives nothing.
TEST(OverlapCandidates, LeaveOutNoOverlap) {
    std::mt19937 random(11);
    int leftOut = 0;
    for (int round = 0; round < 12; ++round) {
        const std::vector<Polygon> polygons = randomPolygons(random, round % 2 == 0, round % 3 == 0);
        const OverlapCandidates candidates(polygons);
        for (std::uint32_t later = 0; later < polygons.size(); ++later) {
            const auto earlier = candidates.earlierOf()[later];
            for (std::uint32_t other = 0; other < later; ++other) {
                if (!std::ranges::binary_search(earlier, other)) {
                    ++leftOut;
                    EXPECT_FALSE(shareArea(polygons[later], polygons[other])) << round << "\n"
                                                                              << toWkt(polygons[later]) << "\n"
                                                                              << toWkt(polygons[other]);
                }
            }
        }
    }
    EXPECT_GT(leftOut, 1000);
}

TEST(OverlapCandidates, AreNoneInACoverage) {
    Parcels parcels;
    std::mt19937 random(5);
    addPavement(parcels, random, 12);
    std::vector<Polygon> polygons;
    const CursorPtr cursor = parcels.streets().search({});
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        polygons.push_back(row->shape()->as<Polygon>());
    }
    const OverlapCandidates candidates(polygons);
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        EXPECT_TRUE(candidates.earlierOf()[i].empty()) << i;
    }
}

std::vector<Polygon> pavement(int size, double jitter, unsigned seed) {
    std::vector<Polygon> polygons;
    for (Path& ring : dirtyRings(size, jitter, seed)) {
        polygons.emplace_back().rings.push_back(std::move(ring));
    }
    return polygons;
}

double areaOf(const std::vector<Polygon>& polygons) {
    double sum = 0;
    for (const Polygon& polygon : polygons) {
        sum += area(polygon);
    }
    return sum;
}

// What is left of a ground around all polygons when one after the other is taken away, without the outermost piece.
std::vector<Polygon> gapsOneByOne(const std::vector<Polygon>& polygons) {
    Envelope extent;
    for (const Polygon& polygon : polygons) {
        extent.expandToInclude(polygon.envelope());
    }
    extent = extent.expandedBy(1, 1);
    Polygon rest = rectangle(extent, {});
    for (const Polygon& polygon : polygons) {
        rest = difference(rest, polygon).as<Polygon>();
    }
    std::vector<Polygon> gaps;
    for (Geometry& part : exploded(rest)) {
        if (part.envelope().xMin > extent.xMin) {
            gaps.push_back(std::move(part.as<Polygon>()));
        }
    }
    return gaps;
}

TEST(Gaps, AreWhatIsLeftOneByOne) {
    std::mt19937 random(23);
    std::vector<std::vector<Polygon>> cases{pavement(6, 0.2, 1), pavement(5, 1.5, 2)};
    for (int round = 0; round < 12; ++round) {
        cases.push_back(randomPolygons(random, round % 2 == 0, round % 3 == 0));
    }
    std::size_t count = 0;
    for (const std::vector<Polygon>& polygons : cases) {
        const std::vector<Polygon> gaps = gapsBetween(polygons), plain = gapsOneByOne(polygons);
        EXPECT_EQ(gaps.size(), plain.size());
        EXPECT_NEAR(areaOf(gaps), areaOf(plain), 1e-3); // strokes of arcs differ a little
        count += gaps.size();
    }
    EXPECT_GT(count, 100U);
}

// By the sum of faces against the sum over pairs, less what three or more share, counted by inclusion and exclusion.
TEST(Overlaps, AlongEdgesAreTheGroundUnderTwo) {
    std::mt19937 random(7);
    for (int round = 0; round < 6; ++round) {
        const std::vector<Polygon> polygons = randomPolygons(random, round % 2 == 0, false);
        std::vector<Geometry> shapes(polygons.begin(), polygons.end()), overlaps;
        for (std::size_t i = 0; i < polygons.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                overlaps.push_back(intersection(polygons[i], polygons[j], ResultDimension::areas));
            }
        }
        const TopologyGraph graph(shapes, 0);
        const std::vector<Polygon> faces = faultyGround(EdgeCover(graph), CoverFault::overlap);
        EXPECT_NEAR(areaOf(faces), area(unionOf(overlaps).as<Polygon>()), 1e-6) << round;
    }
}

const Rows ringOfFour = {"POLYGON ((0 0,0 10,4 10,4 0,0 0))", "POLYGON ((4 0,4 4,6 4,6 0,4 0))",
                         "POLYGON ((4 6,4 10,6 10,6 6,4 6))", "POLYGON ((6 0,6 10,9 10,9 0,6 0))"};

TEST(DrawGaps, OnlyWhatIsClosedIn) {
    CoverageCheck check(ringOfFour);
    EXPECT_TRUE(check.drawGaps());
    EXPECT_EQ(check.drawn(), Rows{"POLYGON ((4 4,4 6,6 6,6 4,4 4))"});
    EXPECT_NEAR(check.extent.xMin, -99.9, 1e-12);
    EXPECT_NEAR(check.extent.yMax, 99.9, 1e-12);
    EXPECT_EQ(check.shapes().size(), 4U);

    CoverageCheck cut(ringOfFour);
    cut.extent = {-1, -1, 5, 11};
    EXPECT_TRUE(cut.drawGaps());
    EXPECT_EQ(cut.drawn(), Rows()) << "the gap reaches over the extent";

    CoverageCheck empty({});
    EXPECT_TRUE(empty.drawGaps());
    EXPECT_EQ(empty.drawn(), Rows());
}

TEST(DrawGaps, AnIslandDividesThemAndSurroundedPolygonsAreNone) {
    Rows polygons;
    for (int i = 0; i < 25; ++i) {
        const int x = 2 * (i % 5), y = 2 * (i / 5);
        polygons.push_back(fmt::format("POLYGON (({0} {1},{0} {3},{2} {3},{2} {1},{0} {1}))", x, y, x + 2, y + 2));
    }
    CoverageCheck whole(polygons);
    EXPECT_TRUE(whole.drawGaps());
    EXPECT_EQ(whole.drawn(), Rows());

    polygons[12] = "POLYGON ((4.5 4.5,4.5 5,5 5,4.5 4.5))";
    CoverageCheck holed(polygons);
    EXPECT_TRUE(holed.drawGaps());
    EXPECT_EQ(holed.drawn(), Rows{"POLYGON ((6 4,4 4,4 6,6 6,6 4),(4.5 4.5,5 5,4.5 5,4.5 4.5))"});
}

TEST(FillGaps, AsPolygonsOrPartsOfTheLargestNeighbour) {
    CoverageCheck added(ringOfFour);
    EXPECT_TRUE(added.fillGaps("New Polygon"));
    EXPECT_EQ(added.flatShapes().back(), "5 POLYGON ((4 4,4 6,6 6,6 4,4 4))");
    EXPECT_EQ(added.shapes().size(), 5U);

    CoverageCheck merged(ringOfFour);
    EXPECT_TRUE(merged.fillGaps("Merge"));
    EXPECT_EQ(merged.flatShapes(), (Rows{"1 POLYGON ((0 0,0 10,4 10,4 6,6 6,6 4,4 4,4 0,0 0))", "2 " + ringOfFour[1],
                                         "3 " + ringOfFour[2], "4 " + ringOfFour[3]}));
}

TEST(FillGaps, GrowingNeighboursCountWithWhatTheyHave) {
    const auto collection = [](const CoverageCheck& check, const Rows& gaps) {
        GeometryCollection collected;
        for (const std::string& gap : gaps) {
            collected.geometries.push_back(check.shape(gap));
        }
        return collected;
    };
    // The second gap lies against the first alone, and against polygon 1 only once that has it.
    CoverageCheck chain({"POLYGON ((0 0,0 4,4 4,4 0,0 0))", "POLYGON ((20 0,20 4,24 4,20 0))"});
    EXPECT_TRUE(chain.component.QZ_FillGaps(
        *chain.layer, collection(chain, {"POLYGON ((4 0,4 4,6 4,6 0,4 0))", "POLYGON ((6 0,6 4,8 4,8 0,6 0))"}), "",
        chain.host));
    EXPECT_EQ(chain.flatShapes().front(), "1 POLYGON ((0 0,0 4,4 4,6 4,8 4,8 0,6 0,4 0,0 0))");

    // Alike at first: the earlier one. Then it is the larger, for the gap on its other side too.
    CoverageCheck pair({"POLYGON ((0 0,0 4,4 4,4 0,0 0))", "POLYGON ((6 0,6 4,10 4,10 0,6 0))"});
    EXPECT_TRUE(pair.component.QZ_FillGaps(
        *pair.layer,
        collection(pair, {"POLYGON ((4 0,4 1,6 1,6 0,4 0))", "POLYGON ((4 3,4 4,6 4,6 3,4 3))",
                          "POLYGON ((10 4,10 6,12 6,10 4))"}),
        "", pair.host));
    EXPECT_EQ(pair.flatShapes(), (Rows{"1 POLYGON ((0 0,0 4,4 4,6 4,6 3,4 3,4 1,6 1,6 0,4 0,0 0))",
                                       "2 POLYGON ((6 0,6 4,10 4,10 0,6 0))"}))
        << "and a gap that touches in a point only stays";
}

TEST(DrawOverlapsTopo, OverlapsGapsAndNothing) {
    CoverageCheck check({"POLYGON ((0 0,0 10,4 10,4 0,0 0))", "POLYGON ((4 0,4 4,6.5 4,6.5 0,4 0))",
                         "POLYGON ((4.0004 6,4 10,6 10,6 6,4.0004 6))", "POLYGON ((6 0,6 10,9 10,9 0,6 0))"});
    EXPECT_TRUE(check.drawTopo("Overlaps", 0.001));
    EXPECT_EQ(check.drawn(), Rows{"POLYGON ((6 4,6.5 4,6.5 0,6 0,6 4))"});
    check.host.focusMap().activeView().display().clear();
    EXPECT_TRUE(check.drawTopo("Gaps", 0.001));
    EXPECT_EQ(check.drawn(), Rows{"POLYGON ((4 4,4.0004 6,6 6,6 4,4 4))"});
    check.host.focusMap().activeView().display().clear();
    EXPECT_TRUE(check.drawTopo("Anything", 0.001));
    EXPECT_EQ(check.drawn(), Rows());
    EXPECT_FALSE(check.drawTopo("Gaps", -1));
    EXPECT_EQ(check.messages.size(), 1U);
}

TEST(FillGaps, LeavesACoverageWithoutGaps) {
    for (const char* sHow : {"New Polygon", "Merge"}) {
        CoverageCheck check({});
        for (const Path& ring : dirtyRings(8, 0.3, 3)) {
            Polygon polygon;
            polygon.rings.push_back(ring);
            check.add(toWkt(polygon));
        }
        check.extent = check.streets().extent().expandedBy(10, 10);
        const double covered = area(coveredBy(check.streets()));
        EXPECT_TRUE(check.drawGaps());
        std::vector<Polygon> gaps;
        for (const Drawing& drawing : check.host.focusMap().activeView().display().drawings()) {
            gaps.push_back(drawing.geometry.as<Polygon>());
        }
        EXPECT_GT(gaps.size(), 30U);
        EXPECT_TRUE(check.fillGaps(sHow));
        EXPECT_NEAR(area(coveredBy(check.streets())), covered + areaOf(gaps), 1e-6);
        check.host.focusMap().activeView().display().clear();
        EXPECT_TRUE(check.drawGaps());
        EXPECT_EQ(check.drawn(), Rows()) << sHow;
    }
}

} // namespace
} // namespace qz::test
