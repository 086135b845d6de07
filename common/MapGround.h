#pragma once

#include "platform/app/Application.h"

namespace qz {

// The envelope, or what the view of the focus map shows.
[[nodiscard]] Envelope shownWithin(Application& application, const Envelope* envelope);

// The ground of an envelope in the map's units, in the spatial reference of a class.
[[nodiscard]] Polygon groundOf(Application& application, const Envelope& envelope, const FeatureClass& featureClass);

// The features of a class that meet the ground, as they are stored. Throws PlatformError when the search failed.
[[nodiscard]] CursorPtr featuresOn(const Polygon& ground, FeatureClass& featureClass);

// On the display of the focus map, in its spatial reference.
void paint(Application& application, const Polygon& polygon, const FillSymbol& symbol);

} // namespace qz
