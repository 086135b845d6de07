#include "component/MKQZGenFunRun.h"

#include "common/ApplicationReference.h"
#include "polygon/QZChamfer.h"
#include "polygon/QZSquarePolygon.h"
#include "polygon/QZUpdateShared.h"
#include "polyline/QZVertexEditing.h"
#include "smooth/QZGeneralize.h"
#include "smooth/QZSmooth.h"

namespace qz {

namespace {

CornerCut cornerCut(double dR, bool bFillet) {
    return {bFillet ? CornerForm::fillet : CornerForm::chamfer, dR};
}

} // namespace

bool MKQZGenFunRun::QZ_InsertVertexRun(FeatureCursor& pFeatureCursor, FeatureLayer&, Feature* pFeature,
                                       const Point& pPoint, double, RefreshArea& pRefresh, Point& pInsertPoint,
                                       bool bSame, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_InsertVertexRun(pFeatureCursor, pFeature, pPoint, pRefresh, pInsertPoint, bSame);
}

bool MKQZGenFunRun::QZ_DeleteMultiVertices(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, const Envelope* pEnv,
                                           std::int32_t fCount, RefreshArea& pRefresh, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_DeleteMultiVertices(pApp, pFLayer, pFeatureCursor, pEnv, fCount, pRefresh);
}

bool MKQZGenFunRun::QZ_UpdateShared(FeatureClass& pFeatureClass, const Point& pPoint, const Dictionary* m_fDic,
                                    Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_UpdateShared(pFeatureClass, pPoint, m_fDic ? *m_fDic : Dictionary());
}

bool MKQZGenFunRun::QZ_UpdateSharedPolygon(FeatureClass& pFeatureClass, const Point& pPoint, const Dictionary* m_fDic,
                                           Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_UpdateSharedPolygon(pFeatureClass, pPoint, m_fDic ? *m_fDic : Dictionary());
}

bool MKQZGenFunRun::QZ_ChamferAllRun(FeatureCursor& pFeatureCursor, FeatureClass& pFeatureClass, Feature* pF,
                                     RefreshArea& pRefresh, double dR, bool bFillet, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_ChamferAllRun(pFeatureCursor, pFeatureClass, pF, pRefresh, cornerCut(dR, bFillet));
}

bool MKQZGenFunRun::QZ_ChamferSingleRun(FeatureCursor& pFeatureCursor, FeatureClass& pFeatureClass, Feature* pF,
                                        const Point& pP, RefreshArea& pRefresh, double dR, bool bFillet,
                                        Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_ChamferSingleRun(pFeatureCursor, pFeatureClass, pF, pP, pRefresh, cornerCut(dR, bFillet));
}

bool MKQZGenFunRun::QZ_SquarePolygonAnglesRun(FeatureClass&, FeatureCursor& pFeatureCursor, const Point* pPoint,
                                              RefreshArea& pRefresh, bool bTool, double dAngTol,
                                              Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_SquarePolygonAnglesRun(pFeatureCursor, bTool ? pPoint : nullptr, pRefresh, dAngTol);
}

bool MKQZGenFunRun::QZ_Generalize(FeatureCursor& pFeatureCursor, double iPar0, const SpatialReference& pInSref,
                                  const SpatialReference& pMapSRef, std::int32_t fCount, RefreshArea& pRefresh,
                                  Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_Generalize(pApp, pFeatureCursor, iPar0, {pInSref, pMapSRef}, fCount, pRefresh);
}

bool MKQZGenFunRun::QZ_Densify(FeatureCursor& pFeatureCursor, const std::string& sGenType, double iPar0, double iPar1,
                               const SpatialReference& pInSref, const SpatialReference& pMapSRef, std::int32_t fCount,
                               RefreshArea& pRefresh, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_Densify(pApp, pFeatureCursor, sGenType, iPar0, iPar1, {pInSref, pMapSRef}, fCount, pRefresh);
}

bool MKQZGenFunRun::QZ_SmoothRun(FeatureClass&, FeatureCursor& pFeatureCursor, const std::string& sCurType,
                                 std::int16_t iPar0, std::int16_t iPar1, std::int32_t fCount, RefreshArea& pRefresh,
                                 const SpatialReference& pInSref, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_SmoothRun(pApp, pFeatureCursor, {sCurType, iPar0, iPar1}, fCount, pRefresh, pInSref);
}

} // namespace qz
