#include "platform/geometry/Envelope.h"

namespace qz {

void Envelope::expandToInclude(const Envelope& other) noexcept {
    if (!other.isEmpty()) {
        expandToInclude(XY{other.xMin, other.yMin});
        expandToInclude(XY{other.xMax, other.yMax});
    }
}

Envelope Envelope::scaledBy(double ratio) const noexcept {
    return expandedBy((ratio - 1) / 2 * width(), (ratio - 1) / 2 * height());
}

} // namespace qz
