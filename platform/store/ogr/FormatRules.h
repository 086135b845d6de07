#pragma once

#include <string>

#include "platform/store/Stores.h"

namespace qz {

enum class StoreFormat { geoPackage, shapefile, fileGeodatabase, postgis };

// What code must know of a format, beside what users are told of it.
struct FormatRules {
    StoreFormat format;
    const char* driver;          // of GDAL
    const char* datasetCategory; // "GeoPackage Feature Class"
    WorkspaceType workspaceType;
    FormatCapabilities capabilities;
    bool filtersByIdFast = false; // a condition on the object id walks only the rows asked for
    bool sqlConditions = false;   // conditions are evaluated by a database, not by GDAL
    bool holdsUndefinedZ = false;
    bool holdsEmptyShapes = false;         // apart from null ones
    bool singlePartKindsHoldParts = false; // a layer of lines takes lines of several parts as well
    bool keepsArcMiddleZm = false;
    bool textWidthInBytes = false;
    bool registersClasses = false;
};

[[nodiscard]] const FormatRules& rulesOf(StoreFormat format);

// Shapefiles know no undefined measure but treat everything below -1e38 as "no data"; this is what is written for it.
inline constexpr double shapefileNoData = -1e39;
inline constexpr double shapefileNoDataLimit = -1e38;

} // namespace qz
