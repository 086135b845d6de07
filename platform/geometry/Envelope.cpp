#include "platform/geometry/Envelope.h"

namespace qz {

void Envelope::expandToInclude(const Envelope& other) noexcept {
    if (!other.isEmpty()) {
        expandToInclude(XY{other.xMin, other.yMin});
        expandToInclude(XY{other.xMax, other.yMax});
    }
}

} // namespace qz
