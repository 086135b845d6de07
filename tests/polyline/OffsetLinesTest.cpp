#include "platform/geometry/Measures.h"
#include "platform/geometry/Project.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

struct Parallels : Streets {
    [[nodiscard]] Point click(double x, double y) const { return Point({x, y}, {.spatialReference = map}); }
    bool single(const Point& at, int method, double distance, bool copy) {
        return component.QZ_OffsetPolyline(streets(), *all(), at, static_cast<std::int16_t>(method), distance, copy,
                                           refresh, reference, map);
    }
    bool both(int method, double distance, bool copy) {
        return component.QZ_OffsetDouble(streets(), *all(), 0, static_cast<std::int16_t>(method), distance, copy,
                                         refresh, reference, map, host);
    }

    SpatialReference map = reference;
};

constexpr const char* street = "LINESTRING ZM (0 0 1 1,100 0 1 1)";
constexpr const char* narrow = "CIRCULARSTRING ZM (0 50 1 1,2 52 1 1,4 50 1 1)";

TEST(OffsetPolyline, OnTheSideOfTheClick) {
    const struct {
        const char* name;
        double x, y, distance;
        const char* copy;
    } rows[] = {
        {"right", 50, -3, 10, "2 LINESTRING ZM (0 -10 1 1,100 -10 1 1) Elm Row"},
        {"left", 50, 3, 10, "2 LINESTRING ZM (0 10 1 1,100 10 1 1) Elm Row"},
        {"beyond the end", 500, -3, 10, "2 LINESTRING ZM (0 -10 1 1,100 -10 1 1) Elm Row"},
        {"the other side", 50, -3, -10, "2 LINESTRING ZM (0 10 1 1,100 10 1 1) Elm Row"},
    };
    for (const auto& row : rows) {
        Parallels lines;
        lines.add(street, {std::string("Elm Row")});
        EXPECT_TRUE(lines.single(lines.click(row.x, row.y), 8, row.distance, true)) << row.name;
        EXPECT_EQ(lines.listed({"NAME"}).back(), row.copy) << row.name;
    }
    Parallels replaced;
    replaced.add(street);
    EXPECT_TRUE(replaced.single(replaced.click(0, -1), 2, 10, false));
    EXPECT_EQ(replaced.shapes(), (Rows{"2 LINESTRING ZM (0 -10 1 1,100 -10 1 1)"}));
}

TEST(OffsetPolyline, CornersByTheMethod) {
    const char* corner = "LINESTRING ZM (0 0 1 1,10 0 1 1,10 10 1 1)";
    const struct {
        int method;
        bool isSingle;
        std::size_t vertices;
        bool hasArc;
    } rows[] = {
        {2, true, 3, false}, {4, true, 4, false}, {8, true, 4, true}, {3, true, 3, false}, {3, false, 4, false},
    };
    for (const auto& row : rows) {
        Parallels lines;
        lines.add(corner);
        EXPECT_TRUE(row.isSingle ? lines.single(lines.click(20, -20), row.method, 2, true)
                                 : lines.both(row.method, 2, true));
        const Path path = lines.streets().feature(2)->shape()->as<Polyline>().paths.front();
        EXPECT_EQ(path.vertexCount(), row.vertices) << row.method;
        EXPECT_EQ(path.hasArcs(), row.hasArc) << row.method;
    }
}

TEST(OffsetDouble, LinesTooTightStay) {
    Parallels lines;
    lines.add(street);
    lines.add(narrow);
    EXPECT_TRUE(lines.both(8, 10, false));
    EXPECT_EQ(lines.shapes(), (Rows{std::string("2 ") + narrow, "3 LINESTRING ZM (0 -10 1 1,100 -10 1 1)",
                                    "4 LINESTRING ZM (0 10 1 1,100 10 1 1)"}));
    EXPECT_EQ(lines.messages, (Rows{"Some of the selected features were not processed!\nCheck the offset distance"}));
}

TEST(OffsetPolylineMulti, AtMultiplesOfTheDistance) {
    Parallels lines;
    lines.add(street);
    EXPECT_TRUE(lines.component.QZ_OffsetPolylineMulti(lines.streets(), *lines.all(), lines.click(0, -5), 8, 10, 3,
                                                       lines.refresh, lines.reference, lines.map, lines.host));
    EXPECT_EQ(lines.shapes().back(), "4 LINESTRING ZM (0 -30 1 1,100 -30 1 1)");
    EXPECT_TRUE(lines.component.QZ_OffsetPolylineMulti(lines.streets(), *lines.only(1), lines.click(0, -5), 8, 10, 0,
                                                       lines.refresh, lines.reference, lines.map, lines.host));
    EXPECT_EQ(lines.shapes().size(), 4u);
}

TEST(OffsetPolyline, InUnitsOfTheMap) {
    Parallels lines;
    lines.map = SpatialReference::fromEpsg(3857); // stretched by 1 / cos(latitude)
    lines.add("LINESTRING ZM (500000 5500000 1 1,500100 5500000 1 1)");
    Geometry place(Point({500050, 5499990}, {.spatialReference = lines.reference}));
    project(place, lines.map);
    EXPECT_TRUE(lines.single(place.as<Point>(), 8, 100, true));
    const auto copy = lines.streets().feature(2)->shape()->as<Polyline>();
    EXPECT_NEAR(5500000 - copy.paths.front().xy().front().y, 100 * std::cos(49.65 * 3.14159265 / 180), 0.3);
}

TEST(OffsetPolyline, LayersWithoutArcsGetStraightSegments) {
    Schema schema = roadSchema();
    schema.shape->allowsArcs = false;
    MemoryData data(std::move(schema));
    data.add("LINESTRING ZM (0 0 1 1,10 0 1 1,10 10 1 1)");
    Parallels frame;
    const Point click = frame.click(20, -20);
    EXPECT_TRUE(frame.component.QZ_OffsetPolyline(data.featureClass(), *data.featureClass().search({}), click, 8, 2,
                                                  true, frame.refresh, {}, {}));
    const FeaturePtr copy = data.featureClass().feature(2);
    ASSERT_TRUE(copy);
    EXPECT_FALSE(copy->shape()->as<Polyline>().paths.front().hasArcs());
    EXPECT_NEAR(length(copy->shape()->as<Polyline>()), 20 + 3.14159265, 0.01);
}

TEST(OffsetPolyline, NothingSelectedIsTold) {
    Parallels lines;
    EXPECT_FALSE(lines.single(lines.click(0, 0), 8, 10, true));
    EXPECT_EQ(lines.messages, (Rows{"There is no line to offset. QZ_OffsetPolyline w=1"}));
}

} // namespace
} // namespace qz::test
