#include "component/MKQZGenFunRun.h"

#include "common/ApplicationReference.h"
#include "common/QZFeatureMethods.h"
#include "common/QZInsertFeature.h"

namespace qz {

bool MKQZGenFunRun::QZ_QuickDelete(FeatureCursor& pFeatureCursor, std::int32_t fCount, RefreshArea& pRefresh,
                                   const std::string&, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_QuickDelete(pApp, pFeatureCursor, fCount, pRefresh);
}

bool MKQZGenFunRun::QZ_InsertFeatureRun(FeatureCursor& pInsertFeatureCursor, FeatureBuffer& pInsertFeatureBuffer,
                                        Feature* pOrigFeature, const Geometry& pGeometry,
                                        const Dictionary* updateDic) noexcept {
    return QZ_InsertFeature(pInsertFeatureCursor, pInsertFeatureBuffer, pOrigFeature, pGeometry, updateDic);
}

bool MKQZGenFunRun::QZ_AddPointA(FeatureLayer& pFLayer, const Point& pPoint, RefreshArea& pRefresh,
                                 const Dictionary* fieldDic, bool bEditing, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_AddPointA(pFLayer, pPoint, pRefresh, fieldDic, bEditing);
}

bool MKQZGenFunRun::QZ_PasteAttributes(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, RefreshArea& pRefresh,
                                       const Dictionary* fieldDic, bool bEditing, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_PasteAttributes(pFLayer, pFeatureCursor, pRefresh, fieldDic, bEditing);
}

std::string MKQZGenFunRun::GetQZVersion(std::string& sQZArcGIS, std::string& sQZBuilt) noexcept {
    sQZArcGIS = "9.2";
    sQZBuilt = "30 May 2012";
    return "10.2";
}

} // namespace qz
