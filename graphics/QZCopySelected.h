#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/app/Application.h"

namespace qz {

// What copies do to the layer they come into.
struct CopyActions {
    std::string sPlPlA; // lines into lines: "Add", "Split", "Split & Add"
    std::string sPlPgA; // polygons into lines: these, "Erase", "Erase & Add"
    std::string sPgPlA; // lines into polygons: "Buffer and Add"; any other word splits the polygons
    std::string sPgPgA; // the priority of polygons added to polygons, as a number; see QZ_AddPolygon
    double dBuf = 0;    // of "Buffer and Add", in the units of the layer
    bool bOver = false; // see QZ_SelectAndIntersectRun
};

// The first layer of the focus map with the name. Throws PlatformError when there is none.
[[nodiscard]] FeatureLayer& QZ_FindLayerByName(Application& application, const std::string& name);

// Brings the selected features of another layer, or those that meet the envelope, which is in the map's spatial
// reference, into a layer of lines or polygons. Features that it writes have the source's values in the fields of the
// same names. A feature that can't be copied, which is reported, is passed over. `expected` of them move the progress;
// none: as many as there are. False, with a notice, when none is selected; false after a failure, which is reported.
[[nodiscard]] bool QZ_CopySelectedFromLayer(Application& application, FeatureLayer& layer,
                                            const std::string& sSourceLayerName, RefreshArea& refresh,
                                            const Envelope* envelope, const CopyActions& actions,
                                            std::optional<std::int32_t> expected);

} // namespace qz
