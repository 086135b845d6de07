#pragma once

#include "platform/app/Application.h"

namespace qz {

// Finds the lines that the cursor delivers and that the sketch meets in at least two places: crossings, and ends of the
// line within the tolerance of the sketch. A crossing within the tolerance of an end counts as that end; places whose x
// and y are equal as texts with `decimals` decimals count once. `single` tells whether it is just one line; `last`
// becomes the object id of the last of them and stays as it is when there is none.
// False after a failure, which is reported.
[[nodiscard]] bool QZ_GetReshFeature(FeatureCursor& cursor, const Polyline& sketch, double tolerance, bool& single,
                                     std::int32_t& last, std::int16_t decimals);

// Gives the line the course of the sketch between their first and last contact and writes it through the update cursor.
// The ends of the line stay where they are. Nothing happens without a feature, with an empty one, or where the sketch
// meets it in fewer than two places. A sketch that isn't one part once simplified is refused with a notice. False then,
// and after a failure, which is reported.
[[nodiscard]] bool QZ_ReshapePolyline(FeatureCursor& cursor, Feature* feature, const Polyline& sketch,
                                      RefreshArea& refresh);

} // namespace qz
