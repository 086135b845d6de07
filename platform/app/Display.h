#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/geometry/Geometry.h"

namespace qz {

struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;

    friend bool operator==(const Color&, const Color&) = default;
};

// Sizes and widths in points of 1/72 inch.
struct MarkerSymbol {
    Color color{200, 30, 30};
    double size = 6;
};
struct ArrowMarkerSymbol {
    Color color{200, 30, 30};
    double length = 8;
    double width = 6;
    double angle = 0; // degrees counter-clockwise from east
};
struct LineSymbol {
    Color color{200, 30, 30};
    double width = 1.5;
};
struct FillSymbol {
    Color color{200, 30, 30, 110};
    LineSymbol outline;
};

// A symbol for each kind of geometry; drawing takes the one that fits.
struct Symbol {
    MarkerSymbol marker;
    LineSymbol line;
    FillSymbol fill;
};

enum class GraphicKind { marker, line, fill };

// "marker", "line", "fill".
[[nodiscard]] const char* nameOf(GraphicKind kind) noexcept;

// A graphic kept on the map, in the map's spatial reference.
struct GraphicElement {
    std::string name;
    GraphicKind kind = GraphicKind::marker;
    Geometry geometry;
    Symbol symbol;
    bool selected = false;
};

// The graphics of a map, in the order of drawing.
class GraphicsContainer {
public:
    virtual ~GraphicsContainer() = default;
    virtual void add(GraphicElement element) = 0;
    [[nodiscard]] virtual const std::vector<GraphicElement>& elements() const = 0;
    // Removes the elements at these indexes, ascending.
    virtual void remove(const std::vector<std::size_t>& indexes) = 0;
};

// Paints on the screen; what is painted is gone with the next refresh.
class Display {
public:
    virtual ~Display() = default;
    virtual void drawPoint(const Geometry& geometry, const MarkerSymbol& symbol) = 0;
    virtual void drawArrow(const Point& point, const ArrowMarkerSymbol& symbol) = 0;
    virtual void drawPolyline(const Geometry& geometry, const LineSymbol& symbol) = 0;
    virtual void drawPolygon(const Geometry& geometry, const FillSymbol& symbol) = 0;
    // What a length on the screen, in points of 1/72 inch, is on the map, in the map's units.
    [[nodiscard]] virtual double lengthOnMap(double points) const = 0;
};

} // namespace qz
