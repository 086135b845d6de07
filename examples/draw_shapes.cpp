// Draws a union and a cut of shapes with circular arcs: sources in outline, results filled, their vertices as dots.

#include <cstdio>
#include <string>

#include "host/cairo/Canvas.h"
#include "platform/geometry/Cut.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/WellKnown.h"

namespace {

using namespace qz;

constexpr int sheetWidth = 900;
constexpr int sheetHeight = 430;
constexpr Color ink{55, 65, 80};
constexpr Color quiet{120, 130, 145};
constexpr FillSymbol blue{{70, 130, 180, 120}, {{35, 85, 135}, 1.6}};
constexpr FillSymbol sand{{225, 165, 80, 120}, {{165, 100, 25}, 1.6}};

// A yard with rounded corners and a round well in it.
constexpr const char* yard =
    "CURVEPOLYGON (COMPOUNDCURVE ((0 10,0 50),CIRCULARSTRING (0 50,2.929 57.071,10 60),(10 60,70 60),"
    "CIRCULARSTRING (70 60,77.071 57.071,80 50),(80 50,80 10),CIRCULARSTRING (80 10,77.071 2.929,70 0),(70 0,10 0),"
    "CIRCULARSTRING (10 0,2.929 2.929,0 10)),CIRCULARSTRING (18 30,34 30,18 30))";
constexpr const char* pond = "CURVEPOLYGON (CIRCULARSTRING (52 46,108 46,52 46))";
constexpr const char* fence = "CIRCULARSTRING (-14 12,6 22,26 30,52 46,62 76)";

PixelRect panel(double left) {
    return {left, 62, 418, 316};
}

void drawTitle(Canvas& canvas, double left, const std::string& title, const std::string& note) {
    canvas.drawText(title, {left, 32}, {.size = 19, .color = ink, .bold = true});
    canvas.drawText(note, {left, 51}, {.size = 12.5, .color = quiet});
    canvas.strokeRect(panel(left), {{215, 220, 226}, 0.8});
}

void drawVertices(Canvas& canvas, const Polygon& polygon, const Color& color) {
    for (const Path& ring : polygon.rings) {
        Multipoint vertices;
        for (const XY p : ring.xy()) {
            vertices.vertices.push_back({p.x, p.y});
        }
        canvas.drawMarkers(vertices, {color, 4.5});
    }
}

void drawResult(Canvas& canvas, const Polygon& polygon, const FillSymbol& symbol) {
    canvas.drawFill(polygon, symbol);
    drawVertices(canvas, polygon, symbol.outline.color);
}

std::string countOfArcs(const Polygon& polygon) {
    std::size_t arcs = 0;
    std::size_t segments = 0;
    for (const Path& ring : polygon.rings) {
        arcs += ring.arcs().size();
        segments += ring.segmentCount();
    }
    return std::to_string(segments) + " segments, " + std::to_string(arcs) + " arcs";
}

void drawUnion(Canvas& canvas) {
    const double left = 22;
    const Geometry a = geometryFromWkt(yard);
    const Geometry b = geometryFromWkt(pond);
    const Polygon all = unionOf(a, b).as<Polygon>();
    drawTitle(canvas, left, "Union", "a rounded yard with a well, and a full circle");
    canvas.setWindow({-17, -8, 112, 82}, panel(left));
    drawResult(canvas, all, blue);
    for (const Geometry* source : {&a, &b}) {
        canvas.drawLines(*source, {{90, 40, 40, 200}, 0.9}, {4, 3});
    }
    canvas.drawText("result: " + countOfArcs(all), {left, 402}, {.size = 12.5, .color = ink});
}

void drawCut(Canvas& canvas) {
    const double left = 460;
    const Geometry line = geometryFromWkt(fence);
    const auto pieces = cut(geometryFromWkt(yard).as<Polygon>(), line.as<Polyline>());
    drawTitle(canvas, left, "Cut", "the yard, along a line of two arcs through the well");
    canvas.setWindow({-17, -8, 112, 82}, panel(left));
    drawResult(canvas, pieces->left, blue);
    drawResult(canvas, pieces->right, sand);
    canvas.drawLines(line, {{90, 40, 40, 220}, 1.1}, {4, 3});
    canvas.drawArrow({62, 76}, {.color = {90, 40, 40}, .length = 10, .width = 7, .angle = 70});
    canvas.drawLabel("left", {22, 48},
                     {.size = 14, .color = blue.outline.color, .anchor = TextAnchor::centre, .bold = true});
    canvas.drawLabel("right", {56, 20},
                     {.size = 14, .color = sand.outline.color, .anchor = TextAnchor::centre, .bold = true});
    canvas.drawText("left: " + countOfArcs(pieces->left) + " · right: " + countOfArcs(pieces->right), {left, 402},
                    {.size = 12.5, .color = ink});
}

void drawShapes(const std::string& path) {
    Canvas canvas(path, sheetWidth, sheetHeight);
    drawUnion(canvas);
    drawCut(canvas);
    canvas.save();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("Usage: draw_shapes PATH.png\n", stderr);
        return 2;
    }
    try {
        drawShapes(argv[1]);
    } catch (const PlatformError& error) {
        std::fprintf(stderr, "Can't draw %s: %s\n", argv[1], error.what());
        return 1;
    }
    return 0;
}
