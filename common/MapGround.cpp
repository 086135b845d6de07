#include "common/MapGround.h"

#include <fmt/format.h>

#include "common/InReference.h"
#include "common/QZSpatialSearch.h"

namespace qz {

Envelope shownWithin(Application& application, const Envelope* envelope) {
    return envelope ? *envelope : application.focusMap().activeView().visibleBounds();
}

Polygon groundOf(Application& application, const Envelope& envelope, const FeatureClass& featureClass) {
    Polygon ground =
        inReference(rectangle(envelope, application.focusMap().spatialReference()), featureClass.spatialReference());
    ground.spatialReference = featureClass.spatialReference();
    return ground;
}

CursorPtr featuresOn(const Polygon& ground, FeatureClass& featureClass) {
    return searchMeeting(
        ground, featureClass,
        fmt::format("The features of {} in the extent could not be found.", featureClass.schema().name));
}

void paint(Application& application, const Polygon& polygon, const FillSymbol& symbol) {
    Map& map = application.focusMap();
    map.activeView().display().drawPolygon(inReference(polygon, map.spatialReference()), symbol);
}

} // namespace qz
