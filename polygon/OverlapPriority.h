#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "polygon/SketchFitting.h"

namespace qz {

// What happens where a sketched polygon overlaps polygons of a layer that is kept free of overlaps. The numbers are
// those that users know.
enum class OverlapPriority {
    asIs = -2,         // the sketch is stored, whatever it overlaps
    erase = -1,        // the polygons lose the sketch's area; nothing is stored
    existingFirst = 0, // the polygons keep their area; the rest of the sketch is stored
    overlapsApart = 1, // the polygons lose the sketch's area; the overlaps and the rest of the sketch are stored
    sketchFirst = 2    // the polygons lose the sketch's area; the whole sketch is stored
};

// Nothing for any other code.
[[nodiscard]] std::optional<OverlapPriority> overlapPriorityOf(std::int16_t code) noexcept;

struct ResolvedOverlaps {
    std::vector<Polygon> added; // what is to be stored beside the polygons, in this order; none is empty
    std::vector<Polygon> rest;  // what each polygon becomes; empty: nothing of it is left
};

// Polygons that the sketch doesn't overlap stay as they are. The cost is that of one set operation with the sketch for
// each polygon.
[[nodiscard]] ResolvedOverlaps resolvedOverlaps(OverlapPriority priority, const FittedSketch& fitted);

} // namespace qz
