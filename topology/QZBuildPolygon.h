#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/app/Application.h"

namespace qz {

struct BuildPolygonSettings {
    double dFuzzy = 0;          // in map units: closes a loose outline whose ends are less apart
    std::int16_t iPriority = 0; // for overlaps with polygons that are there, as QZ_AddPolygon has it
};

// Stores every face that the selected lines of the source layer enclose as a feature of the polygon layer, with islands
// as holes (see QZ_PolylineToPolygon). The lines meet at their ends; lines that only cross are not cut. True when
// polygons were stored. Refusals are shown: a source without lines or selection, no faces. False after a failure, which
// is reported; the polygons before it stay stored.
[[nodiscard]] bool QZ_BuildPolygonRun(Application& application, FeatureLayer& layer, FeatureLayer& source,
                                      const BuildPolygonSettings& settings, RefreshArea& refresh);

// The faces of the lines that the cursor delivers, every part being an edge of its own. Nothing when there is no line,
// which is shown, or after a failure, which is reported.
[[nodiscard]] std::vector<Polygon> QZ_BuildPolygon(Application& application, FeatureLayer& source,
                                                   FeatureCursor& cursor, double dFuzzy);

// The faces of lines of one part. `decimals`: from 1 to 14, of the node keys. Nothing after a failure, which is
// reported.
[[nodiscard]] std::vector<Polygon> QZ_BuildPolygonInDic(std::span<const Polyline> edges, std::int16_t decimals,
                                                        double dFuzzy);

} // namespace qz
