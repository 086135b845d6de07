#pragma once

#include <string>

#include "platform/geometry/Geometry.h"
#include "polyline/QZAddPolyline.h"

namespace qz {

// The words that say what a shape does to the layer it is brought into. All throw PlatformError for another word.

// A line in a layer of lines: "Add", "Split" or "Split & Add".
[[nodiscard]] NetworkAction lineActionOf(const std::string& word, bool bOver);

// The outline of a polygon in a layer of lines: these, "Erase" or "Erase & Add".
[[nodiscard]] NetworkAction outlineActionOf(const std::string& word, bool bOver);

// A line in a layer of polygons: the word for adding its buffer; with any other it splits them.
inline constexpr const char* bufferAndAdd = "Buffer and Add";

// The buffer of a line, in the spatial reference; the distance is in its units. Throws PlatformError for a distance
// that isn't above 0.
[[nodiscard]] Polygon bufferToAdd(const Polyline& line, const SpatialReference& reference, double distance);

} // namespace qz
