#pragma once

#include <functional>
#include <string>

#include "platform/store/ogr/OgrSession.h"

namespace qz {

enum class WalkContent { nothing, shapes, attributes, everything };

// One walk over a layer's rows, complete in a call; the layer is left without filter and without an open walk.
// `condition`: of the store's dialect; empty for all rows. Throws UsageError with the store's words when the condition
// fails, DataError when the rows can't be read.
void walkLayer(OGRLayer& layer, WalkContent content, const std::string& condition,
               const std::function<void(OGRFeature&)>& row);

} // namespace qz
