#pragma once

#include "platform/app/Application.h"

namespace qz {

// Deletes the lines that end freely, lie wholly in a geometry and are shorter than a length in the units of
// `reference`; one that is not above 0 means any length. Lines that meet the geometry tell whether an end is free: its
// node (see NodeKey.h) is that of no other end. One pass: what ends freely only now stays.
// False after a failure, which is reported.
[[nodiscard]] bool QZ_DeleteSelectedDangles(FeatureClass& featureClass, const SpatialReference& reference,
                                            const Geometry& area, double dDangTol);

} // namespace qz
