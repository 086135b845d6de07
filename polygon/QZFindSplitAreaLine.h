#pragma once

#include <optional>
#include <string>

#include "platform/geometry/Geometry.h"

namespace qz {

enum class ShareKind { area, percentage };

struct SplitAreaRequest {
    // The side of the envelope that the share is measured from: "bot", "top", "left" or "right".
    std::string start;
    // What is required: an area, or a percentage of the polygon's area.
    ShareKind kind = ShareKind::area;
    // Units of an area as it is given and as the map has it, squared; see QZ_ConvertArea.
    std::string unitIn;
    std::string unitOut;
};

// Finds a line along one side of the polygon's envelope, as long as this side, that cuts the required share off. The
// share lies between the side and the line, on the right hand of the line. The polygon counts as simplified.
//
// `required` and `deviation`, the greatest that is accepted, are areas, and are then converted from the one unit to the
// other, or percentages.
//
// The line moves inward by a fifth of the polygon's extent at a time; where it cuts too much off it goes back to the
// last place where it didn't, and its step becomes a fifth. It rests when the area last cut off is nearer than
// `deviation` to the required one, both in units of the map, in percentage mode too; when that area was too large the
// line is back at the place before. After 32 tries the user is told what was achieved, unless the share is within
// `deviation`, and the line is given as it is. That is so too when the required share is more than four fifths of the
// extent hold: a line that left the polygon at the far side, where it cuts nothing, goes on outward.
//
// Nothing, with a notice, when the polygon doesn't have more than what is required, or there is no such side. A failure
// is reported, and gives nothing.
[[nodiscard]] std::optional<Polyline> QZ_FindSplitAreaLine(const Polygon& polygon, const SplitAreaRequest& request,
                                                           double& required, double& deviation);

} // namespace qz
