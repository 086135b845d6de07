#include "host/cairo/LayerDrawing.h"

#include <variant>

#include "host/DirectionArrows.h"
#include "host/cairo/MapTones.h"
#include "platform/geometry/Boundary.h"
#include "platform/geometry/Project.h"

namespace qz {

namespace {

constexpr MarkerSymbol markerBefore{.color = lineBefore.color, .size = 7};
constexpr MarkerSymbol markerAfter{.color = lineAfter.color, .size = 5};
constexpr FillSymbol fillAfter{.color = {20, 84, 196, 45}, .outline = lineAfter};
constexpr ArrowMarkerSymbol arrowAfter{.color = lineAfter.color, .length = 8, .width = 7};
constexpr LineSymbol selectionHalo{.color = {0, 190, 220, 160}, .width = 5};
constexpr double arrowSpacing = 80; // pixels

enum class Stacking { areas, lines, points };

Stacking stackingOf(FeatureLayer& layer) {
    const std::optional<GeometryKind> kind = layer.featureClass().schema().shape->kind;
    if (!kind || *kind == GeometryKind::polygon) {
        return Stacking::areas;
    }
    return *kind == GeometryKind::polyline ? Stacking::lines : Stacking::points;
}

// The window's envelope in the class's own reference holds all of a window that is turned or bent there.
FeatureFilter inWindow(const Envelope& window, const SpatialReference& mapReference, const FeatureClass& featureClass) {
    const SpatialReference& reference = featureClass.spatialReference();
    FeatureFilter filter;
    filter.shape = rectangle(projected(window, mapReference, reference), reference);
    filter.relation = SpatialRelation::envelopeIntersects;
    filter.outputReference = mapReference;
    return filter;
}

void drawLayer(Canvas& canvas, const DrawnLayer& drawn, const SpatialReference& mapReference) {
    FeatureClass& featureClass = drawn.layer->featureClass();
    const CursorPtr cursor = featureClass.search(inWindow(canvas.window(), mapReference, featureClass));
    while (const FeaturePtr feature = cursor->next()) {
        if (feature->shape()) {
            canvas.draw(*feature->shape(), drawn.symbol);
        }
    }
}

void drawLayers(Canvas& canvas, const std::vector<DrawnLayer>& layers, const SpatialReference& mapReference) {
    for (const Stacking stacking : {Stacking::areas, Stacking::lines, Stacking::points}) {
        for (auto drawn = layers.rbegin(); drawn != layers.rend(); ++drawn) {
            if (stackingOf(*drawn->layer) == stacking) {
                drawLayer(canvas, *drawn, mapReference);
            }
        }
    }
}

bool isOfPoints(const Geometry& geometry) {
    return geometry.kind() == GeometryKind::point || geometry.kind() == GeometryKind::multipoint;
}

void drawGraphic(Canvas& canvas, const GraphicElement& element) {
    if (element.selected && !isOfPoints(element.geometry)) {
        canvas.drawLines(element.geometry, selectionHalo);
    } else if (element.selected) {
        canvas.drawMarkers(element.geometry, {selectionHalo.color, element.symbol.marker.size + selectionHalo.width});
    }
    canvas.draw(element.geometry, element.symbol);
}

struct DrawingPainter {
    Canvas& canvas;
    const Geometry& geometry;

    void operator()(const MarkerSymbol& symbol) const { canvas.drawMarkers(geometry, symbol); }
    void operator()(const ArrowMarkerSymbol& symbol) const {
        canvas.drawArrow(geometry.as<Point>().vertex.xy(), symbol);
    }
    void operator()(const LineSymbol& symbol) const { canvas.drawLines(geometry, symbol); }
    void operator()(const FillSymbol& symbol) const { canvas.drawFill(geometry, symbol); }
};

void drawBefore(Canvas& canvas, const Geometry& geometry) {
    if (isOfPoints(geometry)) {
        canvas.drawMarkers(geometry, markerBefore);
    } else {
        canvas.drawLines(geometry, lineBefore, dashesBefore());
    }
}

void drawArrows(Canvas& canvas, const Geometry& geometry, ArrowMarkerSymbol arrow) {
    for (const DirectionMark& mark : directionMarks(geometry, arrowSpacing / canvas.pixelsPerUnit(), canvas.window())) {
        arrow.angle = mark.polarAngleDegrees;
        canvas.drawArrow(mark.at, arrow);
    }
}

void drawAfter(Canvas& canvas, const Geometry& geometry) {
    canvas.draw(geometry, {markerAfter, lineAfter, fillAfter});
    if (geometry.kind() == GeometryKind::polyline) {
        drawArrows(canvas, geometry, arrowAfter);
    }
}

// Dots at the ends of lines show where a network has its nodes.
void drawEnds(Canvas& canvas, const Geometry& geometry) {
    if (const auto* polyline = geometry.getIf<Polyline>()) {
        canvas.drawMarkers(boundary(*polyline), lineEnd);
    }
}

// Without the shapes after, which would hide it, the direction before can be shown.
void drawDirectionBefore(Canvas& canvas, const Geometry& geometry) {
    if (geometry.kind() == GeometryKind::polyline) {
        ArrowMarkerSymbol arrow = arrowAfter;
        arrow.color = lineBefore.color;
        drawArrows(canvas, geometry, arrow);
    }
}

} // namespace

const Dashes& dashesBefore() {
    static const Dashes dashes{4, 3};
    return dashes;
}

std::vector<DrawnLayer> drawnLayers(HeadlessMap& map) {
    std::vector<DrawnLayer> result;
    for (FeatureLayer* layer : map.layers()) {
        if (layer->featureClass().schema().shape) {
            result.push_back({layer, layerSymbol(result.size())});
        }
    }
    return result;
}

void drawMapContent(Canvas& canvas, HeadlessMap& map, const std::vector<DrawnLayer>& layers,
                    const Highlight& highlight) {
    drawLayers(canvas, layers, map.spatialReference());
    for (const GraphicElement& element : map.activeView().graphics().elements()) {
        drawGraphic(canvas, element);
    }
    for (const Drawing& drawing : map.activeView().display().drawings()) {
        std::visit(DrawingPainter{canvas, drawing.geometry}, drawing.symbol);
    }
    for (const Geometry& geometry : highlight.after) {
        drawAfter(canvas, geometry);
    }
    for (const Geometry& geometry : highlight.before) {
        drawBefore(canvas, geometry);
        if (highlight.after.empty()) {
            drawDirectionBefore(canvas, geometry);
        }
    }
    for (const Geometry& geometry : highlight.after) {
        drawEnds(canvas, geometry);
    }
}

} // namespace qz
