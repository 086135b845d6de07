#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/app/Application.h"

namespace qz {

// Elements of the graphics of the focus map. Geometries come in any spatial reference and are kept in the map's.

// The document's symbol: a marker, a line and a fill, of which drawing takes the one that fits.
[[nodiscard]] Symbol QZ_GetDefaultSymbol();

// Add an element with the default symbol, and redraw the graphics there.
void QZ_DrawPointGraphic(Application& application, const Geometry& point, const std::string& name);
void QZ_DrawPolylineGraphic(Application& application, const Geometry& line, const std::string& name);
void QZ_DrawPolygonGraphic(Application& application, const Geometry& polygon, const std::string& name);

// By its kind; a multipoint gives an element for each of its points.
void drawGraphic(Application& application, const Geometry& shape, const std::string& name);

void redrawGraphics(Application& application);

// Deletes the elements at these indexes, ascending, from the graphics of the focus map. A failure is reported, and
// deletes nothing.
void QZ_DeleteSelectedGraphics(Application& application, const std::vector<std::size_t>& indexes) noexcept;

// The names of elements: what features have in a field.
class GraphicLabel {
public:
    // `sName`: the name of a field, which then gets each feature's label; a blank text, or one that is no field of the
    // features, is the name of all elements.
    explicit GraphicLabel(std::string& sName);

    // Null gives an empty name.
    void read(const Feature& feature);
    [[nodiscard]] const std::string& text() const noexcept { return text_; }

private:
    std::string& text_;
    std::string field_;
};

} // namespace qz
