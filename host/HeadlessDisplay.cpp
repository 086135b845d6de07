#include "host/HeadlessDisplay.h"

namespace qz {

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

} // namespace qz
