#include "host/ogr/GraphicsFormat.h"

#include "host/ReplacedFile.h"
#include "platform/Error.h"

namespace qz {

namespace {

constexpr GraphicsFormat geoPackage{.driver = "GPKG", .keepsArcs = true, .needsKnownReference = false};
constexpr GraphicsFormat geoJson{.driver = "GeoJSON", .keepsArcs = false, .needsKnownReference = true};

} // namespace

const GraphicsFormat& graphicsFormatOf(const std::string& path) {
    const std::string ending = lowerCaseEnding(path);
    if (ending == ".gpkg") {
        return geoPackage;
    }
    if (ending == ".geojson" || ending == ".json") {
        return geoJson;
    }
    throw UsageError("Can't tell the format of the graphics file \"" + path +
                     "\" by its ending; use .gpkg, .geojson or .json.");
}

} // namespace qz
