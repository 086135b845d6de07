#include "component/MKQZGenFunRun.h"

#include "cogo/QZCogoFields.h"
#include "cogo/QZCogoInverse.h"
#include "cogo/QZPieSegment.h"
#include "common/ApplicationReference.h"

namespace qz {

bool MKQZGenFunRun::QZ_AddCogoFields(FeatureLayer& pFLayer, std::int32_t lLinPrec, std::int32_t lAngPrec) noexcept {
    return qz::QZ_AddCogoFields(pFLayer, lLinPrec, lAngPrec);
}

bool MKQZGenFunRun::QZ_CogoInverse(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, std::int32_t fCount,
                                   RefreshArea& pRefresh, const SpatialReference&, std::int16_t, std::int16_t lAngPrec,
                                   const std::string& sDirType, const std::string& sDirUnits,
                                   Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_CogoInverse(pApp, pFLayer, pFeatureCursor, fCount, pRefresh, {sDirType, sDirUnits, lAngPrec});
}

std::optional<Polygon> MKQZGenFunRun::QZ_CreatePieSegment(FeatureClass&, const Point& pPoint, double dDist,
                                                          double& dCentralAngle, double dPolarDir,
                                                          Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_CreatePieSegment(pPoint, dDist, dCentralAngle, dPolarDir);
}

} // namespace qz
