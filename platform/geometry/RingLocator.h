#pragma once

#include <vector>

#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/Path.h"

namespace qz {

enum class RingSide { outside, boundary, inside };

// A ring made ready for many questions of where places lie. Exact for straight segments; arcs count by strokes that
// leave them by no more than the distance. O(log n + crossings of the horizontal line to the right) a question.
class RingLocator {
public:
    RingLocator(const Path& ring, double strokeDistance);

    [[nodiscard]] RingSide sideOf(XY place) const;

private:
    std::vector<XY> xy_;
    double xMax_ = undefined;
    PackedEnvelopeTree tree_; // of the segments, unless there are few
};

} // namespace qz
