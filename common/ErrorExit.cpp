#include "common/ErrorExit.h"

#include <exception>
#include <new>

#include <fmt/format.h>

#include "platform/Error.h"
#include "platform/app/Services.h"

namespace qz::detail {

namespace {

std::string descriptionOfCurrentException() {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return "Out of memory";
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "Automation error";
    }
}

bool isInterruption() {
    try {
        throw;
    } catch (const Interrupted&) {
        return true;
    } catch (...) {
        return false;
    }
}

// A notice that can't be shown must not turn a handled failure into a crash.
template <typename Compose> void showUnlessInterrupted(Compose compose) noexcept {
    try {
        if (!isInterruption()) {
            showMessage(compose(descriptionOfCurrentException()));
        }
    } catch (...) {
    }
}

} // namespace

void showFailure(std::string_view labelBefore, std::string_view step, std::string_view labelAfter) noexcept {
    showUnlessInterrupted(
        [&](std::string description) { return description.append(labelBefore).append(step).append(labelAfter); });
}

void showNumberedFailure(std::string_view procedure) noexcept {
    constexpr int unspecified = -2147467259; // what the platform's errors without a number of their own have
    showUnlessInterrupted([&](const std::string& description) {
        return fmt::format("Error {}: {}\nIn qz at {} ", unspecified, description, procedure);
    });
}

} // namespace qz::detail
