#pragma once

#include "platform/data/FeatureSource.h"
#include "platform/store/ogr/FormatRules.h"
#include "platform/store/ogr/OgrSession.h"

namespace qz {

// Throws PlatformError that names row and field when the table's format can't hold the row as it is.
void checkStorable(const Schema& schema, const FormatRules& rules, OGRLayer& layer, const FeatureRecord& record);

} // namespace qz
