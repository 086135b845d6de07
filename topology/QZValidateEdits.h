#pragma once

#include "platform/app/Application.h"

namespace qz {

// Puts the shape of every feature of the class onto the grid of its spatial reference, z and m too where they have one.
// Shapes that are there already are not written. False after a failure, which is reported.
[[nodiscard]] bool QZ_ValidateEdits(FeatureClass& featureClass, Application& application);

} // namespace qz
