#pragma once

#include <string>

namespace qz {

// Throws UsageError when the file holds anything else than graphics, DataError when it can't be read; a missing file is
// fine.
void requireGraphicsOnly(const std::string& path);

} // namespace qz
