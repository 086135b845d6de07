#include "host/cairo/MapPanel.h"

#include <algorithm>

#include "host/ScaleBar.h"
#include "host/cairo/LayerDrawing.h"

namespace qz {

namespace {

// Pixels.
constexpr double margin = 20;
constexpr double titleHeight = 28;
constexpr double footHeight = 34;
constexpr double swatchWidth = 20;
constexpr double swatchHeight = 12;
constexpr double swatchGap = 6;
constexpr double entryGap = 22;
constexpr double longestScaleBar = 160;
constexpr double scaleBarTick = 6;

constexpr Color paper{252, 252, 250};
constexpr LineSymbol frameLine{.color = {90, 90, 90}, .width = 0.75};
constexpr TextStyle legendText{.size = 13, .color = {60, 60, 60}};
constexpr TextStyle titleText{.size = 16, .color = {40, 40, 40}, .bold = true};

struct PanelLayout {
    PixelRect map;
    double footMiddle = 0;
    double right = 0;
};

PanelLayout layoutOf(const PixelRect& panel, bool hasTitle) {
    const double top = panel.y + margin + (hasTitle ? titleHeight : 0);
    const double bottom = panel.y + panel.height - margin - footHeight;
    return {.map = {panel.x + margin, top, std::max(panel.width - 2 * margin, 1.0), std::max(bottom - top, 1.0)},
            .footMiddle = bottom + margin / 2 + footHeight / 2,
            .right = panel.x + panel.width - margin};
}

// Gives where its left end is.
double drawScaleBar(Canvas& canvas, const PanelLayout& layout, const SpatialReference& reference) {
    const auto bar = scaleBarFor(longestScaleBar / canvas.pixelsPerUnit(), reference);
    if (!bar) {
        return layout.right;
    }
    const double textWidth = canvas.textWidth(bar->text, legendText);
    const double right = layout.right - textWidth - swatchGap;
    const double left = right - bar->length * canvas.pixelsPerUnit();
    const double y = layout.footMiddle;
    canvas.drawText(bar->text, {right + swatchGap, y + legendText.size / 3}, legendText);
    canvas.strokeLine({left, y}, {right, y}, {.color = legendText.color, .width = 1.5});
    for (const double x : {left, right}) {
        canvas.strokeLine({x, y - scaleBarTick}, {x, y}, {.color = legendText.color, .width = 1.5});
    }
    return left;
}

// A row of entries from the left; those that would run into what is at `end` are left out.
class LegendRow {
public:
    LegendRow(Canvas& canvas, double begin, double end, double middle)
        : canvas_(canvas), x_(begin), end_(end), middle_(middle) {}

    // `drawSwatch(place)` draws the sample.
    template <typename DrawSwatch> void add(const std::string& text, DrawSwatch drawSwatch) {
        const double width = swatchWidth + swatchGap + canvas_.textWidth(text, legendText);
        isFull_ = isFull_ || x_ + width > end_;
        if (isFull_) {
            return;
        }
        drawSwatch(PixelRect{x_, middle_ - swatchHeight / 2, swatchWidth, swatchHeight});
        canvas_.drawText(text, {x_ + swatchWidth + swatchGap, middle_ + legendText.size / 3}, legendText);
        x_ += width + entryGap;
    }

private:
    Canvas& canvas_;
    double x_;
    double end_;
    double middle_;
    bool isFull_ = false;
};

XY middleOf(const PixelRect& rect) {
    return {rect.x + rect.width / 2, rect.y + rect.height / 2};
}

void drawLineSwatch(Canvas& canvas, const PixelRect& place, const LineSymbol& symbol, const Dashes& dashes) {
    const double y = middleOf(place).y;
    canvas.strokeLine({place.x, y}, {place.x + place.width, y}, symbol, dashes);
}

void drawLayerSwatch(Canvas& canvas, const PixelRect& place, const DrawnLayer& drawn) {
    const auto kind = drawn.layer->featureClass().schema().shape->kind;
    if (kind == GeometryKind::polyline) {
        drawLineSwatch(canvas, place, drawn.symbol.line, {});
    } else if (kind == GeometryKind::point || kind == GeometryKind::multipoint) {
        canvas.fillCircle(middleOf(place), drawn.symbol.marker.size * 2 / 3, drawn.symbol.marker.color);
    } else {
        canvas.fillRect(place, drawn.symbol.fill.color);
        canvas.strokeRect(place, drawn.symbol.fill.outline);
    }
}

bool hasLines(const std::vector<Geometry>& geometries) {
    return std::ranges::any_of(geometries,
                               [](const Geometry& geometry) { return geometry.kind() == GeometryKind::polyline; });
}

void drawLegend(Canvas& canvas, LegendRow legend, const std::vector<DrawnLayer>& layers, const Highlight& highlight) {
    for (const DrawnLayer& drawn : layers) {
        legend.add(drawn.layer->name(), [&](const PixelRect& place) { drawLayerSwatch(canvas, place, drawn); });
    }
    if (!highlight.before.empty()) {
        legend.add("before",
                   [&](const PixelRect& place) { drawLineSwatch(canvas, place, lineBefore, dashesBefore()); });
    }
    if (!highlight.after.empty()) {
        legend.add("after", [&](const PixelRect& place) { drawLineSwatch(canvas, place, lineAfter, {}); });
    }
    if (hasLines(highlight.after)) {
        legend.add("line ends", [&](const PixelRect& place) {
            canvas.fillCircle(middleOf(place), lineEnd.size * 2 / 3, lineEnd.color);
        });
    }
}

} // namespace

void drawMapPanel(Canvas& canvas, const PixelRect& panel, HeadlessMap& map, const Highlight& highlight,
                  const std::string& title) {
    const PanelLayout layout = layoutOf(panel, !title.empty());
    const std::vector<DrawnLayer> layers = drawnLayers(map);
    canvas.fillRect(layout.map, paper);
    if (!title.empty()) {
        canvas.drawText(title, {layout.map.x, layout.map.y - titleHeight / 3}, titleText);
    }
    double legendEnd = layout.right;
    if (const Envelope bounds = map.activeView().visibleBounds(); !bounds.isEmpty()) {
        canvas.setWindow(bounds, layout.map);
        drawMapContent(canvas, map, layers, highlight);
        legendEnd = drawScaleBar(canvas, layout, map.spatialReference()) - entryGap;
    }
    drawLegend(canvas, LegendRow(canvas, layout.map.x, legendEnd, layout.footMiddle), layers, highlight);
    canvas.strokeRect(layout.map, frameLine);
}

} // namespace qz
