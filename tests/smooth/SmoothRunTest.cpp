#include "platform/geometry/Measures.h"
#include "smooth/QZSmooth.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

struct Curves : Streets {
    explicit Curves(GeometryKind kind = GeometryKind::polyline) : Streets(kind) {}

    bool smooth(const char* kind, int perVertex, int parameter) {
        return component.QZ_SmoothRun(streets(), *all(), kind, static_cast<std::int16_t>(perVertex),
                                      static_cast<std::int16_t>(parameter), 0, refresh, reference, host);
    }
    bool generalize(double distance) {
        return component.QZ_Generalize(*all(), distance, reference, map, 0, refresh, host);
    }
    bool densify(const char* kind, double length, double deviation) {
        return component.QZ_Densify(*all(), kind, length, deviation, reference, map, 0, refresh, host);
    }
    [[nodiscard]] Geometry shape(ObjectId id) { return *streets().feature(id)->shape(); }
    [[nodiscard]] const Path firstPart(ObjectId id) {
        const Geometry whole = shape(id);
        return whole.getIf<Polygon>() ? whole.as<Polygon>().rings.front() : whole.as<Polyline>().paths.front();
    }

    SpatialReference map = reference;
};

std::string zigzag(int vertices) {
    std::string text = "LINESTRING ZM (";
    for (int i = 0; i < vertices; ++i) {
        text += (i > 0 ? "," : "") + std::to_string(i) + " " + std::to_string(i % 2) + " " + std::to_string(i) + " 0";
    }
    return text + ")";
}

TEST(Smooth, PointsForEachVertex) {
    const struct {
        const char* name;
        int vertices;
        const char* kind;
        int parameter;
        std::size_t points;
    } rows[] = {
        {"Bezier", 10, "Bezier", 0, 41},
        {"B-spline", 10, "bSpline", 3, 41},
        {"tension", 10, "tSpline", 2, 41},
        {"fewer points than the order", 2, "bSpline", 3, 9},
        {"four points under tension stay", 4, "tSpline", 2, 4},
        {"chunks of 100, 100 and 50 points", 250, "bSpline", 3, 401 + 401 + 201},
        {"a last chunk of one point", 101, "bSpline", 3, 402},
        {"a last chunk of three points under tension", 103, "tSpline", 3, 404},
        {"a Bezier curve over all points", 250, "Bezier", 0, 1001},
    };
    for (const auto& row : rows) {
        Curves lines;
        lines.add(zigzag(row.vertices));
        EXPECT_TRUE(lines.smooth(row.kind, 4, row.parameter)) << row.name;
        const Path path = lines.firstPart(1);
        EXPECT_EQ(path.vertexCount(), row.points) << row.name;
        EXPECT_EQ(path.xy().front(), (XY{0, 0})) << row.name;
        EXPECT_EQ(path.xy().back().x, row.vertices - 1.0) << row.name;
        EXPECT_EQ(path.z().back(), row.vertices - 1.0) << row.name;
    }
}

TEST(Smooth, ClosedCurvesBeginAtAMiddle) {
    Curves lines;
    lines.add("LINESTRING (0 0,10 0,10 10,0 10,0 0)");
    EXPECT_TRUE(lines.smooth("bSpline", 4, 3));
    EXPECT_TRUE(lines.firstPart(1).isClosed());
    EXPECT_EQ(lines.firstPart(1).xy().front(), (XY{5, 0}));

    Curves areas(GeometryKind::polygon);
    areas.add("POLYGON ((0 0,0 10,10 10,10 0,0 0),(4 4,6 4,6 6,4 6,4 4))");
    areas.add("CURVEPOLYGON (CIRCULARSTRING (0 0,10 0,0 0))");
    EXPECT_TRUE(areas.smooth("Bezier", 6, 0));
    const Polygon smooth = areas.shape(1).as<Polygon>();
    ASSERT_EQ(smooth.rings.size(), 2u);
    EXPECT_LT(area(smooth), 96);
    EXPECT_GT(area(smooth), 20);
    EXPECT_TRUE(smooth.rings[1].isClosed());
}

TEST(Smooth, RefusalsLeaveEverythingAsItIs) {
    const struct {
        const char* kind;
        int perVertex;
        int parameter;
        const char* message;
    } rows[] = {
        {"bezier", 4, 3, "The curve \"bezier\" is not known. Curves are Bezier, bSpline and tSpline."},
        {"Bezier", 0, 3, "A curve needs at least 1 point for each vertex, not 0."},
        {"bSpline", 4, 1, "The order of a B-spline is at least 2, not 1."},
        {"tSpline", 4, 0, "The tension of a spline is at least 1, not 0."},
    };
    for (const auto& row : rows) {
        Curves lines;
        lines.add(zigzag(10));
        const Rows before = lines.shapes();
        EXPECT_FALSE(lines.smooth(row.kind, row.perVertex, row.parameter));
        EXPECT_EQ(lines.messages, Rows{row.message});
        EXPECT_EQ(lines.shapes(), before);
    }
}

TEST(Generalize, InUnitsOfTheMap) {
    Curves lines;
    lines.add("LINESTRING ZM (0 0 1 1,5 0.4 2 2,10 0 3 3,10 10 4 4)");
    EXPECT_TRUE(lines.generalize(0.5));
    EXPECT_EQ(lines.shapes(), (Rows{"1 LINESTRING ZM (0 0 1 1,10 0 3 3,10 10 4 4)"}));

    Curves areas(GeometryKind::polygon);
    areas.add("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    areas.add("POLYGON ((0 0,0 50,0.1 100,100 100,100 0,0 0))");
    EXPECT_TRUE(areas.generalize(20));
    EXPECT_EQ(areas.messages, (Rows{"Some of the selected features were not generalized!\nThe tolerance is too big"}));
    EXPECT_EQ(areas.firstPart(1).vertexCount(), 5u);
    EXPECT_EQ(areas.firstPart(2).vertexCount(), 5u);
}

TEST(Generalize, KeepsTheVerticesThatStayBitForBit) {
    Curves lines;
    lines.map = SpatialReference::fromEpsg(3857);
    lines.add("LINESTRING (500000.1 5500000.2,500005.3 5500000.4,500010.7 5500000.1,500010.3 5500010.9)");
    EXPECT_TRUE(lines.generalize(1));
    const Path path = lines.firstPart(1);
    ASSERT_EQ(path.vertexCount(), 3u);
    EXPECT_EQ(path.xy()[1], (XY{500010.7, 5500000.1}));
    EXPECT_TRUE(lines.densify("Normal", 5, 0));
    EXPECT_EQ(lines.firstPart(1).xy().front(), (XY{500000.1, 5500000.2}));
    EXPECT_GT(lines.firstPart(1).vertexCount(), 6u);
}

TEST(Densify, ByDeviationAndByAngle) {
    const char* half = "CIRCULARSTRING (0 0,10 10,20 0)";
    const struct {
        const char* word;
        double length, other;
        std::size_t vertices;
    } rows[] = {{"Normal", 0, 0.5, 6}, {"normal", 0, 0.5, 8}, {"Angle", 8, 0, 5}};
    for (const auto& row : rows) {
        Curves lines;
        lines.add(half);
        EXPECT_TRUE(lines.densify(row.word, row.length, row.other));
        EXPECT_EQ(lines.firstPart(1).vertexCount(), row.vertices) << row.word;
        EXPECT_FALSE(lines.firstPart(1).hasArcs());
    }
    Curves points(GeometryKind::point);
    points.add("POINT (1 1)");
    EXPECT_FALSE(points.densify("Normal", 1, 0));
    ASSERT_EQ(points.messages.size(), 1u);
    EXPECT_TRUE(points.messages[0].ends_with(" QZ_Densify")) << points.messages[0];
}

} // namespace
} // namespace qz::test
