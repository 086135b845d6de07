#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/geometry/SpatialReference.h"
#include "platform/store/ogr/OgrSession.h"

namespace qz {

// The grid that a file geodatabase keeps for a layer's coordinates; nothing when it doesn't tell.
[[nodiscard]] std::optional<CoordinateGrid> fileGdbGrid(GDALDataset& dataset, const std::string& layer);

// Layer creation options ("XYSCALE=…") that make a new layer keep the grid of this one.
[[nodiscard]] std::vector<std::string> fileGdbGridOptions(GDALDataset& dataset, const std::string& layer);

} // namespace qz
