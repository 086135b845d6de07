#pragma once

#include <cstdint>

#include "platform/app/Application.h"

namespace qz {

// Moves the ends of lines that lie in the envelope, in the map's units, onto one place: halfway between two nodes, the
// centre of the smallest circle around more. Nodes are different when their keys are (see NodeKey.h). Only ends of
// lines of the cursor count. They get the mean of the heights of two nodes where both have one, else they keep their
// own, and they keep their measures. Lines that would have no length left stay as they are, which is told; features
// with an empty shape are deleted. `expected` moves the progress.
// False without an envelope and after a failure, which is reported.
[[nodiscard]] bool QZ_RemoveRedundantNodes(Application& application, FeatureClass& featureClass, FeatureCursor& cursor,
                                           const Envelope* envelope, std::int32_t expected, RefreshArea& refresh);

} // namespace qz
