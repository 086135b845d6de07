#pragma once

#include <cstddef>

#include "platform/app/Display.h"

namespace qz {

// Quiet tones that tell layers apart and let graphics and changes stand out; they repeat after the sixth layer.
[[nodiscard]] Symbol layerSymbol(std::size_t layer);

} // namespace qz
