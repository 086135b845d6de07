#pragma once

#include <vector>

#include "host/Picture.h"
#include "host/cairo/Canvas.h"

namespace qz {

// A layer with shapes and how it is drawn.
struct DrawnLayer {
    FeatureLayer* layer = nullptr;
    Symbol symbol;
};

// In the order of the map.
[[nodiscard]] std::vector<DrawnLayer> drawnLayers(HeadlessMap& map);

// Everything that lies in the canvas's window: areas beneath lines beneath points, and within each the first layer on
// top; then graphics, drawings and changes.
void drawMapContent(Canvas& canvas, HeadlessMap& map, const std::vector<DrawnLayer>& layers,
                    const Highlight& highlight);

// How changes are drawn, for the legend as well.
inline constexpr LineSymbol lineBefore{.color = {214, 40, 40}, .width = 1.1};
inline constexpr LineSymbol lineAfter{.color = {20, 84, 196}, .width = 1.9};
inline constexpr MarkerSymbol lineEnd{.color = {10, 30, 80}, .size = 4};
[[nodiscard]] const Dashes& dashesBefore();

} // namespace qz
