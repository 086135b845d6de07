#pragma once

namespace qz {

// Whether the release of the platform, as the services tell it ("10.2.0.3348"), is 9.2 or later. False when it is not
// known, has fewer than three parts, or parts that are no numbers.
[[nodiscard]] bool QZ_PlatformAtLeast92();

} // namespace qz
