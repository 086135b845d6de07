#pragma once

#include <ogr_geometry.h>

namespace qz {

// GDAL 3.6 misjudges the orientation of some rings with arcs (those that start at their lowest vertex), and the writer
// of file geodatabases then makes a part of a hole or a hole of a part. Turns such rings round beforehand, so that they
// are written as what they are. Throws PlatformError for a ring that is misjudged either way round.
void prepareCurvedRings(OGRGeometry& shape);

} // namespace qz
