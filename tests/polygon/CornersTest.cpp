#include <cmath>
#include <numbers>
#include <random>

#include "common/InReference.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Simplify.h"
#include "polygon/QZChamfer.h"
#include "tests/geometry/RandomShapes.h"
#include "tests/polygon/CornerArea.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

constexpr CornerForm chamfer = CornerForm::chamfer;
constexpr CornerForm fillet = CornerForm::fillet;
constexpr const char* square10 = "POLYGON ((0 0,0 10,10 10,10 0,0 0))";

std::string atPoint(const char* wkt, double x, double y, const CornerCut& cut) {
    const Geometry shape = geometryFromWkt(wkt);
    const Point point({x, y});
    if (const auto* polygon = shape.getIf<Polygon>()) {
        const auto result = QZ_ChamferPg(*polygon, point, cut);
        return result ? toWkt(*result) : "none";
    }
    const auto result = QZ_Chamfer(shape.as<Polyline>(), point, cut);
    return result ? toWkt(*result) : "none";
}

TEST(Corners, TheNearestCornerIsCut) {
    const struct {
        const char* name;
        const char* wkt;
        XY click;
        double size;
        const char* cut;
    } rows[] = {
        {"corner of a square", square10, {9, 11}, 2, "POLYGON ((0 0,0 10,8 10,10 8,10 0,0 0))"},
        {"start of a ring", square10, {1, 1}, 2, "POLYGON ((0 2,0 10,10 10,10 0,2 0,0 2))"},
        {"a hole",
         "POLYGON ((0 0,0 10,10 10,10 0,0 0),(2 2,6 2,6 6,2 6,2 2))",
         {5, 5.5},
         1,
         "POLYGON ((0 0,0 10,10 10,10 0,0 0),(2 2,6 2,6 5,5 6,2 6,2 2))"},
        {"heights and measures run along the segments",
         "LINESTRING ZM (0 0 0 0,10 0 10 20,10 10 10 40)",
         {11, 0},
         5,
         "LINESTRING ZM (0 0 0 0,5 0 5 10,10 5 10 30,10 10 10 40)"},
        {"start of a closed line",
         "LINESTRING (0 0,0 10,10 10,0 0)",
         {-1, 0},
         1,
         "LINESTRING (0 1,0 10,10 10,0.7071067811865475 0.7071067811865475,0 1)"},
        {"a reflex corner",
         "POLYGON ((0 0,0 10,10 10,10 5,5 5,5 0,0 0))",
         {5, 5},
         1,
         "POLYGON ((0 0,0 10,10 10,10 5,6 5,5 4,5 0,0 0))"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(atPoint(row.wkt, row.click.x, row.click.y, {chamfer, row.size}), row.cut) << row.name;
    }
}

TEST(Corners, CornersThatStay) {
    const struct {
        const char* name;
        const char* wkt;
        XY click;
        CornerCut cut;
    } rows[] = {
        {"a side not longer than the distance", "POLYGON ((0 0,0 5,5 5,5 0,0 0))", {5, 5}, {chamfer, 5}},
        {"a side not longer than the radius", "POLYGON ((0 0,0 5,5 5,5 0,0 0))", {5, 5}, {fillet, 5}},
        {"the arc touches beyond a side", "POLYGON ((0 0,10 10,10 0,0 0))", {0, 0}, {fillet, 5}},
        {"the same on a line", "LINESTRING (10 10,0 0,10 0)", {0, 0}, {fillet, 5}},
        {"nearly straight", "LINESTRING (0 0,100 0,200 0.87)", {100, 0}, {fillet, 5}},
        {"straight", "LINESTRING (0 0,100 0,200 0)", {100, 0}, {chamfer, 5}},
        {"back over itself", "LINESTRING (0 0,100 0,0 0.0001)", {100, 0}, {chamfer, 5}},
        {"next to an arc", "COMPOUNDCURVE ((0 0,10 0),CIRCULARSTRING (10 0,15 5,10 10))", {10, 0}, {chamfer, 1}},
        {"end of a line", "LINESTRING (0 0,10 0,10 10)", {0, 0}, {chamfer, 1}},
        {"start of a line", "LINESTRING (0 0,10 0,10 10)", {10, 10}, {fillet, 1}},
        {"a hole in the corner",
         "POLYGON ((0 0,0 10,10 10,10 0,0 0),(9 8.5,9.5 8.5,9.5 9,9 8.5))",
         {10, 10},
         {chamfer, 5}},
        {"a notch in the corner", "POLYGON ((0 0,0 10,10 10,10 0,9 0,9 8,8 0,0 0))", {10, 10}, {chamfer, 5}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(atPoint(row.wkt, row.click.x, row.click.y, row.cut), toWkt(geometryFromWkt(row.wkt))) << row.name;
    }
}

TEST(Corners, AFilletClearsAHoleThatAChamferMeets) {
    const char* wkt = "POLYGON ((0 0,0 10,10 10,10 0,0 0),(8 7.5,8 7.9,8.4 7.5,8 7.5))";
    EXPECT_EQ(atPoint(wkt, 10, 10, {chamfer, 5}), toWkt(geometryFromWkt(wkt)));
    EXPECT_NE(atPoint(wkt, 10, 10, {fillet, 5}), toWkt(geometryFromWkt(wkt)));
}

TEST(Corners, ASizeThatIsNoneIsRefused) {
    ScopedServices restored;
    std::vector<std::string> messages;
    services().showMessage = [&](const std::string& text) { messages.push_back(text); };
    for (const double size : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
        EXPECT_EQ(atPoint(square10, 0, 0, {chamfer, size}), "none");
    }
    EXPECT_EQ(messages.size(), 4U);
}

struct AllCorners : testing::Test {
    explicit AllCorners(GeometryKind kind = GeometryKind::polygon) : layer(kind) {}

    bool cut(ObjectId id, const CornerCut& how) {
        const CursorPtr cursor = layer.only(id);
        const FeaturePtr feature = cursor->next();
        return QZ_ChamferAllRun(*cursor, layer.streets(), feature.get(), layer.refresh, how);
    }
    Polygon polygon(ObjectId id) { return layer.streets().feature(id)->shape()->as<Polygon>(); }

    Streets layer;
};
struct AllLineCorners : AllCorners {
    AllLineCorners() : AllCorners(GeometryKind::polyline) {}
};

TEST_F(AllCorners, NeighboursShareTheirSegment) {
    layer.add("POLYGON ZM ((0 0 1 2,0 10 1 2,10 10 1 2,10 0 1 2,0 0 1 2))");
    layer.add("POLYGON ZM ((0 0 1 2,0 3 1 2,10 3 1 2,10 0 1 2,0 0 1 2))");
    EXPECT_TRUE(cut(1, {chamfer, 2}));
    EXPECT_TRUE(cut(2, {chamfer, 2}));
    EXPECT_EQ(layer.shapes(),
              (Rows{"1 POLYGON ZM ((0 2 1 2,0 8 1 2,2 10 1 2,8 10 1 2,10 8 1 2,10 2 1 2,8 0 1 2,2 0 1 2,0 2 1 2))",
                    "2 POLYGON ZM ((0 0 1 2,0 1 1 2,2 3 1 2,8 3 1 2,10 1 1 2,10 0 1 2,0 0 1 2))"}));
    EXPECT_EQ(layer.refresh.count(), 4);
    EXPECT_TRUE(layer.messages.empty());
}

TEST(SingleCorner, ClickedInTheMapInALayerWithoutArcs) {
    Schema schema = roadSchema();
    schema.shape->spatialReference = SpatialReference::fromEpsg(25832);
    schema.shape->allowsArcs = false;
    MemoryData data(schema);
    Geometry line = geometryFromWkt("LINESTRING (500000 5800000,500100 5800000,500100 5800100,500200 5800100)");
    line.traits().spatialReference = schema.shape->spatialReference;
    const ObjectId id = data.table->add(line, {});
    FeatureFilter all;
    const CursorPtr cursor = data.featureClass().update(all);
    const FeaturePtr feature = cursor->next();
    RefreshAreaRecord refresh;
    Point click({500099, 5800101},
                {.zAware = false, .mAware = false, .spatialReference = schema.shape->spatialReference});
    click = inReference(click, SpatialReference::fromEpsg(4326));
    ASSERT_TRUE(QZ_ChamferSingleRun(*cursor, data.featureClass(), feature.get(), click, refresh, {fillet, 10}));
    const Polyline rounded = data.featureClass().feature(id)->shape()->as<Polyline>();
    EXPECT_FALSE(rounded.paths[0].hasArcs());
    EXPECT_GT(rounded.paths[0].vertexCount(), 10U);
    EXPECT_NEAR(length(rounded), 300 - 20 + 5 * std::numbers::pi, 0.01); // strokes within the millimetre
    EXPECT_EQ(rounded.paths[0].xy()[1], (XY{500100, 5800000}));
    EXPECT_EQ(refresh.count(), 2);
}

TEST_F(AllCorners, NothingToCut) {
    layer.add("");
    EXPECT_FALSE(cut(1, {chamfer, 2}));
    const CursorPtr cursor = layer.all();
    EXPECT_FALSE(QZ_ChamferAllRun(*cursor, layer.streets(), nullptr, layer.refresh, {chamfer, 2}));
    EXPECT_TRUE(layer.messages.empty());
}

TEST_F(AllLineCorners, LinesKeepTheirEndsAndArcs) {
    layer.add("COMPOUNDCURVE ((0 0,10 0,10 10,20 10),CIRCULARSTRING (20 10,25 15,20 20),(20 20,0 20))");
    layer.add("MULTILINESTRING ((0 0,1 0,1 1),(5 5,6 6))");
    EXPECT_TRUE(cut(1, {fillet, 2}));
    EXPECT_FALSE(cut(2, {fillet, 0.1}));
    const Polyline line = layer.streets().feature(1)->shape()->as<Polyline>();
    ASSERT_EQ(line.paths[0].arcs().size(), 3U);
    // Two right angles, each shortened by what the arc is shorter than the corner.
    EXPECT_NEAR(length(line), 60 - 10 + 5 * std::numbers::pi - 2 * (4 - std::numbers::pi), 1e-9);
    EXPECT_EQ(layer.messages, Rows{"This polyline is multipart\nExplode and try again!"});
}

struct Prediction {
    double area = 0;
    int corners = 0;
};

// Of a star whose corners are all far enough apart for the cut.
Prediction predicted(const Polygon& star, const CornerCut& cut) {
    Prediction result{area(star), 0};
    for (const Path& ring : star.rings) {
        const std::size_t n = ring.segmentCount();
        for (std::size_t i = 0; i < n; ++i) {
            if (ring.arcAt(i) || ring.arcAt((i + n - 1) % n)) {
                continue;
            }
            const double turned = turnAt(ring, i);
            if (cut.size * std::sin(std::abs(turned) / 2) <= 0.001) {
                continue; // straight within the tolerance
            }
            result.area += areaAdded(turned, cut);
            ++result.corners;
        }
    }
    return result;
}

TEST_F(AllCorners, AreasChangeAsTheAnglesPredict) {
    std::mt19937 random(20);
    int cuts = 0;
    for (int round = 0; round < 100; ++round) {
        const bool withArcs = round % 4 == 3;
        const Polygon star = randomStar(random, {{500000, 5800000}, 100, 0}, 5 + round % 9, round % 2 == 0, withArcs);
        for (const CornerForm form : {chamfer, fillet}) {
            SCOPED_TRACE(round);
            const CornerCut how{form, 0.5};
            Polygon shape = star;
            shape.spatialReference = layer.reference;
            const FeaturePtr made = layer.streets().createFeature();
            made->setShape(shape);
            made->store();
            ASSERT_TRUE(cut(made->objectId(), how));
            const Polygon result = polygon(made->objectId());
            const Prediction expected = predicted(star, how);
            cuts += expected.corners;
            // Areas of 3E4 from coordinates of 6E6, whose rounding of 1E-9 counts along a perimeter of 800.
            EXPECT_NEAR(area(result), expected.area, 1e-5);
            EXPECT_TRUE(isSimple(result));
            for (std::size_t ring = 0; ring < star.rings.size(); ++ring) {
                EXPECT_TRUE(result.rings[ring].isClosed());
            }
        }
    }
    EXPECT_GT(cuts, 1000);
}

TEST_F(AllCorners, FilletsTouchBothSegments) {
    std::mt19937 random(21);
    for (int round = 0; round < 50; ++round) {
        const Polygon star = randomStar(random, {{500000, 5800000}, 100, 0}, 7, false, false);
        const Point corner(star.rings[0].vertex(3));
        const auto result = QZ_ChamferPg(star, corner, {fillet, 3});
        ASSERT_TRUE(result);
        const Path& ring = result->rings[0];
        ASSERT_EQ(ring.arcs().size(), 1U);
        const std::size_t segment = ring.arcs()[0].segment;
        const CircularArc arc = ring.circularArc(ring.arcs()[0]);
        EXPECT_NEAR(arc.radius, 3, 1e-6);
        for (const auto& [from, to] : {std::pair{segment - 1, segment}, std::pair{segment + 1, segment + 2}}) {
            const XY a = ring.xy()[from];
            const XY b = ring.xy()[to];
            const double offset = (b.x - a.x) * (arc.centre.y - a.y) - (b.y - a.y) * (arc.centre.x - a.x);
            EXPECT_NEAR(std::abs(offset) / std::hypot(b.x - a.x, b.y - a.y), arc.radius, 1e-6);
        }
    }
}

} // namespace
} // namespace qz::test
