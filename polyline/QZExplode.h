#pragma once

#include "platform/app/Application.h"

namespace qz {

// Replaces every line of several parts that the cursor delivers by a feature for each part that has a length, and every
// polygon of several exterior rings, once simplified, by a feature for each of them with its holes. The features are
// copies of the source with shared values (see QZ_InsertFeature); the source is deleted once all are stored. Others
// stay as they are. False after a failure, which is reported.
[[nodiscard]] bool QZ_Explode(Application& application, FeatureLayer& layer, FeatureCursor& cursor,
                              std::int32_t expected, RefreshArea& refresh);

} // namespace qz
