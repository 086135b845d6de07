#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/app/Display.h"

namespace qz {

// A rectangle of the picture in pixels, y downward from the top.
struct PixelRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

enum class TextAnchor { left, centre, right };

struct TextStyle {
    double size = 13; // pixels
    Color color{60, 60, 60};
    TextAnchor anchor = TextAnchor::left;
    bool bold = false;
};

// Lengths of dashes and gaps in turn, in points; empty for a solid line.
using Dashes = std::vector<double>;

// A white sheet to draw geometries and texts on, saved as PNG or SVG. A picture has 96 pixels an inch, so that a point
// of 1/72 inch is 4/3 of a pixel.
//
// Geometries are drawn in a window: a part of the world shown in a rectangle of the sheet, with one scale for x and y
// and north upward. Nothing is drawn outside the rectangle. Before a window is set the world is the sheet.
class Canvas {
public:
    // The format is chosen by the ending of the path. Throws UsageError for another one, and for a size below 1 or
    // above 32767 pixels.
    Canvas(const std::string& path, int width, int height);
    ~Canvas();
    Canvas(Canvas&&) noexcept;
    Canvas& operator=(Canvas&&) noexcept;

    // Shows the whole envelope, which must not be empty or without extent, in the middle of the area.
    void setWindow(const Envelope& world, const PixelRect& area);
    // The part of the world that the area shows: the envelope, and more on two sides when its proportions differ.
    [[nodiscard]] Envelope window() const;
    [[nodiscard]] double pixelsPerUnit() const;

    // With the part of the symbol that fits the geometry. Arcs are drawn as arcs. Empty geometries leave no trace.
    void draw(const Geometry& geometry, const Symbol& symbol);
    void drawMarkers(const Geometry& geometry, const MarkerSymbol& symbol);
    // A triangle whose centre is at the point.
    void drawArrow(XY point, const ArrowMarkerSymbol& symbol);
    // Polylines, and boundaries of polygons.
    void drawLines(const Geometry& geometry, const LineSymbol& symbol, const Dashes& dashes = {});
    void drawFill(const Geometry& geometry, const FillSymbol& symbol);
    // Text on a white halo, its baseline starting, centred or ending at the point.
    void drawLabel(const std::string& text, XY point, const TextStyle& style = {});

    // In pixels of the sheet, inside and outside the window.
    void fillRect(const PixelRect& rect, const Color& color);
    void strokeRect(const PixelRect& rect, const LineSymbol& symbol);
    void strokeLine(XY from, XY to, const LineSymbol& symbol, const Dashes& dashes = {});
    void fillCircle(XY centre, double radius, const Color& color);
    void drawText(const std::string& text, XY baseline, const TextStyle& style = {});
    [[nodiscard]] double textWidth(const std::string& text, const TextStyle& style = {}) const;

    // Replaces the file as a whole. Throws DataError when it can't be written. To be called once, at the end.
    void save();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace qz
