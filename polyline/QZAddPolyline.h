#pragma once

#include <string>

#include "common/Dictionary.h"
#include "platform/app/Application.h"

namespace qz {

// Putting a line, or the boundary of a polygon, into a layer of lines that is kept as a network: wherever two lines
// meet, both end there. The line may be in another spatial reference; it is simplified first. In a layer with heights
// it gets the height 0 where it has none.

struct NetworkAction {
    // False: the line is not stored; the lines it meets are cut there.
    bool bAdd = true;
    // "Add": the line is stored and nothing is cut. "Erase", of polygons: lines whose middle is inside go. Anything
    // else stores and cuts.
    std::string sAction = {};
    // See QZ_SelectAndIntersectRun.
    bool bOver = false;
};

// `expected` sizes the progress; a negative one switches the cutting off, and 0 becomes 1 where the line is stored.
// Only lines that meet the new one are looked at, so that the cost doesn't grow with the layer. All give false after a
// failure, which is reported; what was stored before it stays stored.

[[nodiscard]] bool QZ_AddPolyline(Application& application, FeatureLayer& layer, const Polyline& line,
                                  RefreshArea& refresh, std::int32_t& expected, const NetworkAction& action);

// The new line has the values of `fieldDic` and lies at the height 0 in layers with heights; see QZ_StoreFeature.
[[nodiscard]] bool QZ_AddPolylineA(Application& application, FeatureLayer& layer, const Polyline& line,
                                   RefreshArea& refresh, std::int32_t& expected, const NetworkAction& action,
                                   const Dictionary* fieldDic, bool bEditing);

// The new line has the values of a feature of any class in the fields of the same names; see QZ_FieldMatchingDic.
[[nodiscard]] bool QZ_AddPolylineCopyAttributes(Application& application, FeatureLayer& layer, const Polyline& line,
                                                const Feature& source, RefreshArea& refresh, std::int32_t& expected,
                                                const NetworkAction& action);

[[nodiscard]] bool QZ_PolygonAsPolyline(Application& application, FeatureLayer& layer, const Polygon& polygon,
                                        RefreshArea& refresh, std::int32_t& expected, const NetworkAction& action);

[[nodiscard]] bool QZ_PolygonAsPolylineCopyAttributes(Application& application, FeatureLayer& layer,
                                                      const Polygon& polygon, const Feature& source,
                                                      RefreshArea& refresh, std::int32_t& expected,
                                                      const NetworkAction& action);

} // namespace qz
