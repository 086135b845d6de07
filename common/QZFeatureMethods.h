#pragma once

#include <cstdint>

#include "common/Dictionary.h"
#include "platform/app/Application.h"

namespace qz {

// The whole operations on single features. Each reports a failure and gives false.

// Deletes every feature that the cursor delivers, those without a shape as well. Shapes are added to the refresh area
// before. `expected` sizes the progress only. What was deleted before a failure stays deleted.
[[nodiscard]] bool QZ_QuickDelete(Application& application, FeatureCursor& cursor, std::int32_t expected,
                                  RefreshArea& refresh);

// Stores the point, which may be in another spatial reference, as a new feature of a class of points without values;
// where the class has heights and the point has none, with the height 0. It is added to the refresh area.
[[nodiscard]] bool QZ_AddPoint(FeatureLayer& layer, const Point& point, RefreshArea& refresh);

// Stores the point as a new feature, with z = 0 and an undefined m where the class has them; see QZ_StoreFeature.
[[nodiscard]] bool QZ_AddPointA(FeatureLayer& layer, const Point& point, RefreshArea& refresh,
                                const Dictionary* fieldDic, bool bEditing);

// Writes the values into every feature with a shape that the update cursor delivers; see QZ_UpdateAttributes. Ends at
// the first that could not be written.
[[nodiscard]] bool QZ_PasteAttributes(FeatureLayer& layer, FeatureCursor& cursor, RefreshArea& refresh,
                                      const Dictionary* fieldDic, bool bEditing);

} // namespace qz
