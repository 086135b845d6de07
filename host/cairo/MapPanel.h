#pragma once

#include <string>

#include "host/Picture.h"
#include "host/cairo/Canvas.h"

namespace qz {

// Draws the visible part of the map, with frame, title, legend and scale bar, into a part of the sheet. An empty title
// takes no room.
void drawMapPanel(Canvas& canvas, const PixelRect& panel, HeadlessMap& map, const Highlight& highlight,
                  const std::string& title);

} // namespace qz
