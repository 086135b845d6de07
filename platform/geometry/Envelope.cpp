#include "platform/geometry/Envelope.h"

namespace qz {

namespace {

void include(double value, double& low, double& high) noexcept {
    // Written so that NaN sides of an empty envelope give way.
    low = low <= value ? low : value;
    high = high >= value ? high : value;
}

} // namespace

void Envelope::expandToInclude(XY p) noexcept {
    if (isFinite(p)) {
        include(p.x, xMin, xMax);
        include(p.y, yMin, yMax);
    }
}

void Envelope::expandToInclude(const Envelope& other) noexcept {
    if (!other.isEmpty()) {
        expandToInclude(XY{other.xMin, other.yMin});
        expandToInclude(XY{other.xMax, other.yMax});
    }
}

Envelope Envelope::expandedBy(double dx, double dy) const noexcept {
    const Envelope moved{xMin - dx, yMin - dy, xMax + dx, yMax + dy};
    return moved.isEmpty() ? Envelope{} : moved;
}

Envelope Envelope::scaledBy(double ratio) const noexcept {
    return expandedBy((ratio - 1) / 2 * width(), (ratio - 1) / 2 * height());
}

} // namespace qz
