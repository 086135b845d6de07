#pragma once

#include <string_view>

#include "platform/app/Application.h"

namespace qz {

// Gaps are grounds that polygons of a layer enclose without covering them. False after a failure, which is reported.

// Finds the gaps among the polygons that meet an envelope in the map's units; none means what the view shows. Gaps
// that reach over the envelope, or to its inner frame of a two-thousandth of its size, are left out, and so is what is
// open to the outside. The gaps are painted on the map's display, or filled when `bAdd` is set. The envelope is added
// to the refresh area, and then shrinks by a thousandth.
[[nodiscard]] bool QZ_DrawGaps(Application& application, FeatureLayer& layer, Envelope* envelope, RefreshArea& refresh,
                               const FillSymbol& symbol, bool bAdd, std::string_view sHow);

// Stores the gaps, which may be in another spatial reference: as new features without values when `sHow` is
// "New Polygon", else each as part of the largest polygon that shares a boundary line with it, the first found when two
// are alike. A gap that touches polygons in points alone stays.
[[nodiscard]] bool QZ_FillGaps(FeatureLayer& layer, const GeometryCollection& gaps, std::string_view sHow);

} // namespace qz
