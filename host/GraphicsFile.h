#pragma once

#include <memory>
#include <string>

#include "host/HeadlessMap.h"
#include "host/ReplacedFile.h"

namespace qz {

// Graphics of a map in a file of their own: a GeoPackage (.gpkg) or GeoJSON (.geojson, .json) with one layer,
// "graphics", of mixed shapes and the fields `name`, `kind` ("marker", "line", "fill") and `selected`. Symbols are not
// kept.
//
// A GeoPackage keeps every shape as it is. GeoJSON knows neither arcs nor measures: arcs become chords of at most 4
// degrees, m is left out. It is written in the map's coordinates with a "crs" member where the map has an EPSG code,
// which GDAL and QGIS read rightly; in WGS 84 where it has another coordinate system; as they are where it has none.

// Adds the file's graphics to the map, projected to its reference. A missing file has none. An element without a kind
// gets that of its shape, and one without a shape is left out. Throws UsageError for another ending and for a file that
// holds anything else than graphics, DataError when it can't be read.
void readGraphics(const std::string& path, HeadlessMap& map);

// Writes the map's graphics aside; completing the result replaces the file by them. Throws UsageError for another
// ending and rather than overwrite a file that holds anything else than graphics, DataError when it can't be written.
[[nodiscard]] std::unique_ptr<ReplacedFile> writeGraphicsAside(const std::string& path, const HeadlessMap& map);
// Replaces the file as a whole, or leaves it as it was. Throws likewise.
void writeGraphics(const std::string& path, const HeadlessMap& map);

} // namespace qz
