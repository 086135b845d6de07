#include "topology/QZArrowPoints.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <fmt/format.h>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/InReference.h"
#include "platform/Error.h"
#include "platform/geometry/Curve.h"
#include "topology/FinderSearch.h"

namespace qz {

namespace {

constexpr double degreesPerRadian = 180 / std::numbers::pi;

class ArrowPainter {
public:
    ArrowPainter(Display& display, const ArrowMarkerSymbol& symbol, double along)
        : display_(display), symbol_(symbol), along_(std::max(along, 0.0)) {}

    void paint(const Polyline& line) {
        for (const Path& path : line.paths) {
            for (std::size_t i = 0; i < path.segmentCount(); ++i) {
                paint(CurveSegment(path, i), line.spatialReference);
            }
        }
    }

private:
    void paint(const CurveSegment& segment, const SpatialReference& reference) {
        const double length = segment.length();
        if (!(length > 0)) {
            return;
        }
        const double ratio = std::min(along_ / length, 1.0);
        const XY place = segment.at(ratio), direction = segment.direction(ratio);
        symbol_.angle = std::atan2(direction.y, direction.x) * degreesPerRadian;
        Point point(Vertex{place.x, place.y});
        point.spatialReference = reference;
        display_.drawArrow(point, symbol_);
    }

    Display& display_;
    ArrowMarkerSymbol symbol_;
    double along_; // in the units of the map
};

} // namespace

bool QZ_ArrowPoints(const ActiveView& view, FeatureClass& featureClass, const SpatialReference& reference,
                    std::string_view sWhat, bool& bChecked, Display& display, const ArrowMarkerSymbol& symbol,
                    std::int32_t lMax, double dAlong) {
    bChecked = false;
    return withErrorExit(" QZ_ArrowPoints", false, [&] {
        if (!std::isfinite(dAlong)) {
            throw PlatformError(fmt::format("Arrows can't be {} points along their segments.", dAlong));
        }
        const CursorPtr lines = featuresToLookAt(view, featureClass, reference, sWhat, lMax);
        bChecked = lines != nullptr;
        if (!bChecked) {
            return false;
        }
        ArrowPainter painter(display, symbol, display.lengthOnMap(dAlong));
        forEachShaped(*lines, [&](const FeaturePtr& line) {
            painter.paint(inReference(line->shape()->as<Polyline>(), view.spatialReference()));
        });
        return true;
    });
}

} // namespace qz
