#include "component/MKQZGenFunRun.h"

#include "common/ApplicationReference.h"
#include "common/ErrorExit.h"
#include "polyline/QZFlip.h"

namespace qz {

bool MKQZGenFunRun::QZ_Flip(FeatureCursor& pFeatureCursor, std::int32_t fCount, RefreshArea& pRefresh,
                            Application& pApp) noexcept {
    setApplication(pApp);
    return withSilentExit(false, [&] {
        flipPolylines(pApp, pFeatureCursor, fCount, pRefresh);
        return true;
    });
}

std::string MKQZGenFunRun::GetQZVersion(std::string& sQZArcGIS, std::string& sQZBuilt) noexcept {
    sQZArcGIS = "9.2";
    sQZBuilt = "30 May 2012";
    return "10.2";
}

} // namespace qz
