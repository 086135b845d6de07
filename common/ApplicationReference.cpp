#include "common/ApplicationReference.h"

#include "platform/Error.h"

namespace qz {

namespace {
Application* current = nullptr;
}

void setApplication(Application& application) noexcept {
    current = &application;
}

Application& application() {
    if (!current) {
        throw PlatformError("No application is known: call a method that is given one first.");
    }
    return *current;
}

} // namespace qz
