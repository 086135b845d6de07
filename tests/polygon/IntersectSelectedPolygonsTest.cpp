#include <numeric>

#include "platform/geometry/Relations.h"
#include "polygon/QZIntersectSelectedPolygons.h"
#include "tests/polygon/Coverage.h"
#include "tests/polygon/Pavement.h"
#include "tests/polygon/RandomSketches.h"

namespace qz::test {
namespace {

struct Selecting : Parcels {
    bool intersectFirst(std::size_t count) {
        std::vector<ObjectId> ids(count);
        std::iota(ids.begin(), ids.end(), 1);
        layer->selection().select(ids);
        return QZ_IntersectSelectedPolygons(host, *layer, static_cast<std::int32_t>(count), refresh);
    }
};

TEST(IntersectSelectedPolygons, OverlapsBecomePolygons) {
    Selecting parcels;
    parcels.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))", {std::string("A")});
    parcels.add("POLYGON ((8 0,8 10,20 10,20 0,8 0))", {std::string("B")});
    parcels.add("POLYGON ((20 4,20 20,30 20,30 4,20 4))", {std::string("C")});
    parcels.add("POLYGON ((0 8,0 20,9 20,9 8,0 8))", {std::string("not selected")});
    EXPECT_TRUE(parcels.intersectFirst(3));
    Rows rows = parcels.flatShapes();
    ASSERT_EQ(rows.size(), 5U);
    EXPECT_EQ(rows[0], "1 POLYGON ((0 0,0 10,8 10,8 0,0 0))");
    EXPECT_EQ(rows[1], "2 POLYGON ((10 0,10 10,20 10,20 4,20 0,10 0))");
    EXPECT_EQ(rows[2], "3 POLYGON ((20 4,20 10,20 20,30 20,30 4,20 4))");
    EXPECT_EQ(rows[4], "5 POLYGON ((8 0,8 10,10 10,10 0,8 0))");
    EXPECT_TRUE(parcels.listed({"NAME"})[4].ends_with(" null"));
}

TEST(IntersectSelectedPolygons, APolygonThatIsThereTwiceBecomesOneOverlap) {
    Selecting parcels;
    parcels.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    parcels.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    EXPECT_TRUE(parcels.intersectFirst(2));
    EXPECT_EQ(parcels.flatShapes(), (Rows{"3 POLYGON ((0 0,0 10,10 10,10 0,0 0))"}));
}

// Each overlap counts with the polygon of the smallest id in it; in a place of three, both overlaps with that one.
TEST(IntersectSelectedPolygons, PlacesOfThreePolygons) {
    Selecting parcels;
    parcels.add("POLYGON ((0 0,0 3,3 3,3 0,0 0))");
    parcels.add("POLYGON ((1 0,1 3,4 3,4 0,1 0))");
    parcels.add("POLYGON ((2 0,2 3,5 3,5 0,2 0))");
    EXPECT_TRUE(parcels.intersectFirst(3));
    std::vector<double> areas;
    const CursorPtr cursor = parcels.streets().search({});
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        areas.push_back(qz::area(row->shape()->as<Polygon>()));
    }
    EXPECT_EQ(areas, (std::vector<double>{3, 3, 6, 3, 3}));
}

// What a double loop over all pairs makes of polygons, as areas in the order of storing.
struct DoubleLoop {
    std::vector<double> rests;
    std::vector<double> overlaps;

    explicit DoubleLoop(const std::vector<Polygon>& polygons) {
        for (std::size_t i = 0; i < polygons.size(); ++i) {
            Geometry rest = polygons[i];
            for (std::size_t j = 0; j < polygons.size(); ++j) {
                if (i == j || disjoint(polygons[i], polygons[j])) {
                    continue;
                }
                const Geometry overlap = intersection(rest, polygons[j], ResultDimension::areas);
                if (j < i && !overlap.isEmpty()) {
                    overlaps.push_back(qz::area(overlap.as<Polygon>()));
                }
                rest = difference(rest, polygons[j]);
            }
            rests.push_back(qz::area(rest.as<Polygon>()));
        }
    }
};

TEST(IntersectSelectedPolygons, GivesWhatADoubleLoopGives) {
    std::mt19937 random(5);
    for (int round = 0; round < 20; ++round) {
        Selecting parcels;
        std::vector<Polygon> polygons;
        std::uniform_real_distribution<double> place(0, 60);
        for (int i = 0; i < 25; ++i) {
            const XY centre{500000 + place(random), 5600000 + place(random)};
            polygons.push_back(simplified(randomStar(random, {centre, 12, 0}, 7, i % 3 == 0, false)));
            polygons.back().spatialReference = parcels.reference;
            parcels.table->add(Geometry(polygons.back()), {});
        }
        const DoubleLoop expected(polygons);
        EXPECT_TRUE(parcels.intersectFirst(polygons.size()));
        for (std::size_t i = 0; i < polygons.size(); ++i) {
            const FeaturePtr rest = parcels.streets().feature(static_cast<ObjectId>(i + 1));
            EXPECT_NEAR(rest ? qz::area(rest->shape()->as<Polygon>()) : 0, expected.rests[i], 1e-3);
        }
        for (std::size_t i = 0; i < expected.overlaps.size(); ++i) {
            const FeaturePtr overlap = parcels.streets().feature(static_cast<ObjectId>(polygons.size() + i + 1));
            ASSERT_TRUE(overlap);
            EXPECT_NEAR(qz::area(overlap->shape()->as<Polygon>()), expected.overlaps[i], 1e-3);
        }
        EXPECT_EQ(parcels.messages, Rows());
    }
}

TEST(IntersectSelectedPolygons, WithoutASelectionNothingHappens) {
    Selecting parcels;
    parcels.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    parcels.add("POLYGON ((5 0,5 10,10 10,10 0,5 0))");
    const Rows before = parcels.shapes();
    EXPECT_TRUE(parcels.intersectFirst(0));
    EXPECT_EQ(parcels.shapes(), before);
}

} // namespace
} // namespace qz::test
