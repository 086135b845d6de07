#pragma once

#include <cstdint>

#include "platform/data/Schema.h"
#include "platform/store/ogr/FormatRules.h"
#include "platform/store/ogr/OgrSession.h"

namespace qz {

// The schema of a layer, with the grid of its spatial reference as far as the format tells it.
[[nodiscard]] Schema schemaOf(GDALDataset& dataset, OGRLayer& layer, const FormatRules& rules, std::int32_t classId,
                              const std::string& featureDataset);

// Adds a field to a layer. Throws DataError when the format refuses it or would change its name.
void createField(OGRLayer& layer, const Field& field);

} // namespace qz
