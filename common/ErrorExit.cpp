#include "common/ErrorExit.h"

#include <exception>
#include <new>

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

} // namespace

void showFailure(std::string_view labelBefore, std::string_view step, std::string_view labelAfter) noexcept {
    try {
        if (!isInterruption()) {
            showMessage(descriptionOfCurrentException().append(labelBefore).append(step).append(labelAfter));
        }
    } catch (...) { // A notice that can't be shown must not turn a handled failure into a crash.
    }
}

} // namespace qz::detail
