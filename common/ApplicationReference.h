#pragma once

#include "platform/app/Application.h"

namespace qz {

// The application that the running method works in. Every method that gets one puts it here first; it stays until the
// next call replaces it.
void setApplication(Application& application) noexcept;

// Throws PlatformError when no method set one yet.
[[nodiscard]] Application& application();

} // namespace qz
