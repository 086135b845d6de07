#include "host/HeadlessDisplay.h"

#include <algorithm>

namespace qz {

namespace {

// In points.
constexpr double screenWidth = 900;
constexpr double screenHeight = 675;

} // namespace

void HeadlessDisplay::drawPoint(const Geometry& geometry, const MarkerSymbol& symbol) {
    drawings_.push_back({"point", geometry, symbol});
}

void HeadlessDisplay::drawArrow(const Point& point, const ArrowMarkerSymbol& symbol) {
    drawings_.push_back({"arrow", point, symbol});
}

void HeadlessDisplay::drawPolyline(const Geometry& geometry, const LineSymbol& symbol) {
    drawings_.push_back({"polyline", geometry, symbol});
}

void HeadlessDisplay::drawPolygon(const Geometry& geometry, const FillSymbol& symbol) {
    drawings_.push_back({"polygon", geometry, symbol});
}

double HeadlessDisplay::lengthOnMap(double points) const {
    const Envelope bounds = view_.visibleBounds();
    return points * std::max(bounds.width() / screenWidth, bounds.height() / screenHeight);
}

} // namespace qz
