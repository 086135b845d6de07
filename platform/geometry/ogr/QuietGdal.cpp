#include "platform/geometry/ogr/QuietGdal.h"

namespace qz {

void CPL_STDCALL QuietGdal::collect(CPLErr severity, CPLErrorNum, const char* text) {
    if (severity != CE_Debug) {
        static_cast<QuietGdal*>(CPLGetErrorHandlerUserData())->message_ = text;
    }
}

} // namespace qz
