#include "platform/geometry/geos/GeosContext.h"

#include "platform/Error.h"

namespace qz {

namespace {

void keepComplaint(const char* text, void* complaint) {
    *static_cast<std::string*>(complaint) = text;
}

} // namespace

GeosContext& GeosContext::ofThread() {
    thread_local GeosContext context;
    return context;
}

GeosContext::GeosContext() : handle_(GEOS_init_r()) {
    GEOSContext_setErrorMessageHandler_r(handle_, keepComplaint, &complaint_);
}

GeosContext::~GeosContext() {
    GEOS_finish_r(handle_);
}

bool GeosContext::answer(char returned, const char* task) const {
    if (returned != 0 && returned != 1) {
        fail(task);
    }
    return returned == 1;
}

void GeosContext::fail(const char* task) const {
    throw PlatformError(std::string("The geometry library failed at ") + task + ": " + complaint_);
}

} // namespace qz
