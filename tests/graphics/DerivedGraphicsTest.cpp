#include <cmath>
#include <numbers>
#include <random>
#include <set>

#include "graphics/BoundingShapes.h"
#include "graphics/RandomPoints.h"
#include "platform/geometry/Grid.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Motion.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/WellKnown.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

struct Drawing : Streets {
    explicit Drawing(GeometryKind kind = GeometryKind::polygon) : Streets(kind) {}

    [[nodiscard]] const std::vector<GraphicElement>& elements() {
        return host.focusMap().activeView().graphics().elements();
    }
    // "name kind WKT" without z and m.
    [[nodiscard]] Rows drawn() {
        Rows rows;
        for (const GraphicElement& element : elements()) {
            Geometry flat = element.geometry;
            flat.traits().zAware = flat.traits().mAware = false;
            snapToSpatialReference(flat);
            rows.push_back(element.name + " " + nameOf(element.kind) + " " + toWkt(flat));
        }
        return rows;
    }
};

TEST(DerivedGraphics, ShapesOfEachKind) {
    struct Run {
        const char* name;
        GeometryKind kind;
        Rows shapes;
        bool (*draw)(Drawing& d, std::string& sName);
        Rows drawn;
    };
    using enum GeometryKind;
    const Run runs[] = {
        {"points themselves",
         point,
         {"POINT (1 2)"},
         [](Drawing& d, std::string& sName) {
             return d.component.QZ_FeaturesToGraphicsRun(*d.all(), sName, 1, d.host);
         },
         {"A0 marker POINT (1 2)"}},
        {"lines themselves",
         polyline,
         {"LINESTRING (0 0,1 2)", "", "LINESTRING EMPTY"},
         [](Drawing& d, std::string& sName) {
             return d.component.QZ_FeaturesToGraphicsRun(*d.all(), sName, 1, d.host);
         },
         {"A0 line LINESTRING (0 0,1 2)"}},
        {"centroid",
         polygon,
         {"POLYGON ((0 0,0 4,4 4,4 0,0 0))"},
         [](Drawing& d, std::string& sName) { return d.component.QZ_CentroidGraphics(*d.all(), sName, 1, d.host); },
         {"A0 marker POINT (2 2)"}},
        {"vertices",
         polygon,
         {"POLYGON ((0 0,0 4,4 4,0 0))"},
         [](Drawing& d, std::string& sName) { return d.component.QZ_VertexGraphics(*d.all(), sName, 1, d.host); },
         {"A0 marker POINT (0 0)", "A0 marker POINT (0 4)", "A0 marker POINT (4 4)", "A0 marker POINT (0 0)"}},
        {"envelopes",
         polyline,
         {"LINESTRING (0 0,1 2)", "LINESTRING (5 5,4 6)"},
         [](Drawing& d, std::string& sName) {
             return d.component.QZ_EnvelopeGraphics(*d.all(), sName, 2, d.host, false);
         },
         {"A0 fill POLYGON ((0 0,0 2,1 2,1 0,0 0))", "A1 fill POLYGON ((4 5,4 6,5 6,5 5,4 5))"}},
        {"one envelope",
         polyline,
         {"LINESTRING (0 0,1 2)", "LINESTRING (5 5,4 6)"},
         [](Drawing& d, std::string& sName) {
             return d.component.QZ_EnvelopeGraphics(*d.all(), sName, 2, d.host, true);
         },
         {"A1 fill POLYGON ((0 0,0 6,5 6,5 0,0 0))"}},
        {"points have one envelope",
         point,
         {"POINT (0 0)", "POINT (5 6)"},
         [](Drawing& d, std::string& sName) {
             return d.component.QZ_EnvelopeGraphics(*d.all(), sName, 2, d.host, false);
         },
         {"A1 fill POLYGON ((0 0,0 6,5 6,5 0,0 0))"}},
        {"one hull",
         polyline,
         {"LINESTRING (0 0,1 1)", "LINESTRING (0 4,4 0)"},
         [](Drawing& d, std::string& sName) { return d.component.QZ_ConvexGraphics(*d.all(), sName, 2, d.host, true); },
         {"A1 fill POLYGON ((0 0,0 4,4 0,0 0))"}},
        {"circles, none of a single place",
         polyline,
         {"LINESTRING (0 0,4 0)", "LINESTRING (7 7,7 7)"},
         [](Drawing& d, std::string& sName) {
             return d.component.QZ_BoundingCircleGraphics(*d.all(), sName, 2, d.host, false);
         },
         {"A0 fill CURVEPOLYGON (CIRCULARSTRING (2 2,2 -2,2 2))"}},
        {"the rectangle of a square stands on its corner",
         polygon,
         {"POLYGON ((0 0,0 2,2 2,2 0,0 0))"},
         [](Drawing& d, std::string& sName) {
             return d.component.QZ_BoundingRectangleGraphics(*d.all(), sName, 2, d.host);
         },
         {"A0 fill POLYGON ((1 -1,-1 1,1 3,3 1,1 -1))"}},
        {"along a line",
         polyline,
         {"LINESTRING (0 0,0 10,2 10)"},
         [](Drawing& d, std::string& sName) {
             return d.component.QZ_GraphicPointAtDistance(*d.all(), sName, 12, nullptr, d.host);
         },
         {"A0 marker POINT (2 10)"}},
        {"along a boundary",
         polygon,
         {"POLYGON ((0 0,0 4,4 4,4 0,0 0))"},
         [](Drawing& d, std::string& sName) {
             return d.component.QZ_GraphicPointAtDistance(*d.all(), sName, 6, nullptr, d.host);
         },
         {"A0 marker POINT (2 4)"}},
        {"no buffer is left",
         polygon,
         {"POLYGON ((0 0,0 4,4 4,4 0,0 0))"},
         [](Drawing& d, std::string& sName) { return d.component.QZ_BufferGraphics(*d.all(), sName, 1, -3, d.host); },
         {}},
        {"no random points",
         polygon,
         {"POLYGON ((0 0,0 4,4 4,4 0,0 0))"},
         [](Drawing& d, std::string& sName) { return d.component.QZ_RandomGraphicsPg(*d.all(), sName, 1, 0, d.host); },
         {}},
    };
    for (const Run& run : runs) {
        Drawing drawing(run.kind);
        for (std::size_t i = 0; i < run.shapes.size(); ++i) {
            drawing.add(run.shapes[i], {"A" + std::to_string(i)});
        }
        std::string sName = " name ";
        EXPECT_TRUE(run.draw(drawing, sName)) << run.name;
        Rows drawn = drawing.drawn();
        EXPECT_EQ(drawn, run.drawn) << run.name;
    }
}

TEST(DerivedGraphics, LabelsAndRefusals) {
    Drawing drawing(GeometryKind::polyline);
    drawing.add("LINESTRING (0 0,1 0)", {std::string("Elm")});
    drawing.add("LINESTRING (0 1,1 1)");
    std::string sName = "NAME";
    EXPECT_TRUE(drawing.component.QZ_FeaturesToGraphicsRun(*drawing.all(), sName, 2, drawing.host));
    EXPECT_EQ(sName, "") << "the last label: null is empty";
    sName = "no field";
    EXPECT_TRUE(drawing.component.QZ_FeaturesToGraphicsRun(*drawing.all(), sName, 2, drawing.host));
    std::string names;
    for (const GraphicElement& element : drawing.elements()) {
        names += element.name + ";";
    }
    EXPECT_EQ(names, "Elm;;no field;no field;");
    EXPECT_FALSE(drawing.component.QZ_GraphicPointAtDistance(*drawing.all(), sName, 1.001, nullptr, drawing.host));
    EXPECT_EQ(drawing.messages, Rows{"The Split distance is larger than the total length\nSplit will not occur!!!"});
}

Polygon polygonOf(const char* wkt) {
    return geometryFromWkt(wkt).as<Polygon>();
}

TEST(BoundingShapes, OfCurvesAndOfTurnedShapes) {
    EXPECT_NEAR(QZ_MinBoundingCircle(geometryFromWkt("CIRCULARSTRING (0 0,5 5,10 0)"))->radius, 5, 1e-9);
    EXPECT_NEAR(area(*QZ_EACircle(polygonOf("POLYGON ((0 0,0 4,9 4,9 0,0 0))"))), 36, 1e-9);
    EXPECT_FALSE(QZ_EACircle(polygonOf("POLYGON ((0 0,9 9,0 0))")));
    std::mt19937 random(2);
    std::uniform_real_distribution<double> angle(-3, 3), place(-1, 1);
    for (int round = 0; round < 50; ++round) {
        Polyline line; // within a rhombus whose long diagonal is the main axis
        line.paths.emplace_back(std::vector<XY>{{0, 0}, {50, 10}, {30, -5}, {100, 0}, {70, 8 + place(random)}});
        Geometry turned = line;
        rotate(turned, {3, 4}, angle(random));
        const auto bounding = QZ_BoundingRectangle(turned);
        EXPECT_NEAR(bounding->longSide, 100, 1e-9);
        EXPECT_NEAR(bounding->shortSide, 15, 1e-9);
        EXPECT_NEAR(area(bounding->rectangle), 1500, 1e-8);
        EXPECT_TRUE(within(turned, bounding->rectangle));
    }
}

// Every pair of corners, the first of equally long ones.
double longestDiagonal(const std::vector<XY>& places) {
    double most = 0;
    for (std::size_t i = 0; i < places.size(); ++i) {
        for (std::size_t j = i + 1; j < places.size(); ++j) {
            most = std::max(most, std::hypot(places[i].x - places[j].x, places[i].y - places[j].y));
        }
    }
    return most;
}

TEST(BoundingShapes, TheMainAxisIsTheLongestDiagonal) {
    std::mt19937 random(9);
    std::uniform_real_distribution<double> place(0, 10);
    for (int round = 0; round < 200; ++round) {
        std::vector<XY> places;
        for (int i = 0; i < 3 + round % 12; ++i) {
            const XY p{place(random), place(random)};
            places.push_back(round % 2 == 0 ? p : XY{std::round(p.x), std::round(p.y)});
        }
        Polyline line;
        line.paths.emplace_back(places);
        const double longest = longestDiagonal(places);
        if (longest > 0) {
            EXPECT_NEAR(QZ_BoundingRectangle(line)->longSide, longest, 1e-9) << round;
        }
    }
}

TEST(RandomPoints, AreInsideDistinctEvenlySpreadAndRepeatable) {
    const ScopedServices restored;
    services().randomSeed = 7;
    const Polygon polygon = polygonOf("POLYGON ((0 0,0 10,10 10,10 0,0 0),(2 2,2 4,4 4,4 2,2 2))");
    UniformNumbers numbers, again;
    const Multipoint points = QZ_RandomPointsInPolygon(polygon, 9600, numbers);
    EXPECT_EQ(toWkt(points), toWkt(QZ_RandomPointsInPolygon(polygon, 9600, again)));
    ASSERT_EQ(points.vertices.size(), 9600U);
    std::set<std::pair<double, double>> places;
    std::vector<int> cells(100);
    for (const Vertex& vertex : points.vertices) {
        places.emplace(vertex.x, vertex.y);
        ++cells[static_cast<std::size_t>(vertex.y) * 10 + static_cast<std::size_t>(vertex.x)];
    }
    EXPECT_EQ(places.size(), points.vertices.size());
    double chiSquare = 0;
    for (std::size_t cell = 0; cell < cells.size(); ++cell) {
        const bool inHole = cell % 10 / 2 == 1 && cell / 10 / 2 == 1;
        const double expected = inHole ? 0 : 100;
        chiSquare += inHole ? cells[cell] * 1e9 : std::pow(cells[cell] - expected, 2) / expected;
    }
    EXPECT_LT(chiSquare, 150) << "95 degrees of freedom: exceeded once in 3,000 runs";

    const auto line = geometryFromWkt("MULTILINESTRING ((0 0,30 0),(0 5,10 5))").as<Polyline>();
    const Multipoint along = QZ_RandomPointsOnPolyline(line, 4000, numbers);
    const auto onFirst = std::ranges::count(along.vertices, 0.0, &Vertex::y);
    EXPECT_NEAR(static_cast<double>(onFirst), 3000, 110); // four standard deviations
}

TEST(RandomPoints, WithoutRoomAreTold) {
    Drawing drawing;
    const ScopedServices restored;
    services().randomSeed = 1;
    drawing.add("POLYGON ((0 0,0 4e-7,4e-7 4e-7,0 0))");
    drawing.add("POLYGON ((0 0,5 5,0 0))");
    std::string sName;
    EXPECT_TRUE(drawing.component.QZ_RandomGraphicsPg(*drawing.all(), sName, 1, 50, drawing.host));
    EXPECT_LT(drawing.elements().size(), 50U);
    EXPECT_EQ(drawing.messages.size(), 2U);
}

} // namespace
} // namespace qz::test
