#pragma once

#include <cstdint>
#include <string>

#include "platform/app/Application.h"

namespace qz {

// What becomes of which graphics.
struct GraphicsConversion {
    std::string sIn1;           // "pg": fills, "pl": lines
    std::string sOut;           // the kind of the layer: "pg", "pl" or "pnt"; markers become points of the last
    std::int16_t iPriority = 0; // of polygons added to polygons; see QZ_AddPolygon
    std::string sPlA;           // lines into lines: "Add", "Split", "Split & Add"
    std::string sPg2Pl;         // fills into lines: these, "Erase", "Erase & Add"
    std::string sPl2Pg;         // lines into polygons: "Buffer and Add"; any other word splits the polygons
    bool bSel = false;          // only selected elements
    double dBuff = 0;           // of "Buffer and Add", in the units of the layer
    bool bDelete = false;       // those that were converted are deleted from the map
    bool bOver = false;         // see QZ_SelectAndIntersectRun
};

// Brings graphics of the focus map into a layer. `expected` elements move the progress. An element that doesn't fit,
// has no place or can't be converted, which is reported, stays in the map. False after any other failure, which is
// reported; nothing is deleted then.
[[nodiscard]] bool QZ_Gr2ShapeDo(Application& application, FeatureLayer& layer, RefreshArea& refresh,
                                 const GraphicsConversion& conversion, std::int32_t expected);

} // namespace qz
