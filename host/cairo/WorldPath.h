#pragma once

#include <cairo.h>

#include "platform/geometry/Geometry.h"

namespace qz {

// From world coordinates to pixels, y downward.
//   pixel = (x - left, top - y) * scale + offset
struct WorldToPixels {
    double left = 0;
    double top = 0;
    double scale = 1;
    XY offset;

    [[nodiscard]] XY operator()(XY p) const noexcept {
        return {(p.x - left) * scale + offset.x, (top - p.y) * scale + offset.y};
    }
};

// Adds the lines of a polyline, or the rings of a polygon, to the current path of the drawing context. Vertices closer
// than a quarter of a pixel to the one before are left out. What lies far outside `area`, in pixels, is cut off,
// since Cairo's coordinates end at eight million.
void addToPath(cairo_t* context, const Geometry& geometry, const WorldToPixels& toPixels, const Envelope& area);

} // namespace qz
