#include "component/MKQZGenFunRun.h"

#include "common/ApplicationReference.h"
#include "common/ErrorExit.h"
#include "polyline/QZAddPolyline.h"
#include "polyline/QZDangles.h"
#include "polyline/QZExplode.h"
#include "polyline/QZExtendPolyline.h"
#include "polyline/QZFlip.h"
#include "polyline/QZIntersectSelected.h"
#include "polyline/QZOffset.h"
#include "polyline/QZRedundantNodes.h"
#include "polyline/QZRemovePseudo.h"
#include "polyline/QZReshapePolyline.h"
#include "polyline/QZSplitInPoint.h"

namespace qz {

bool MKQZGenFunRun::QZ_Flip(FeatureCursor& pFeatureCursor, std::int32_t fCount, RefreshArea& pRefresh,
                            Application& pApp) noexcept {
    setApplication(pApp);
    return withSilentExit(false, [&] {
        flipPolylines(pApp, pFeatureCursor, fCount, pRefresh);
        return true;
    });
}

bool MKQZGenFunRun::QZ_Explode(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, std::int32_t fCount,
                               RefreshArea& pRefresh, const SpatialReference&, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_Explode(pApp, pFLayer, pFeatureCursor, fCount, pRefresh);
}

bool MKQZGenFunRun::QZ_ExtendPolyline2(FeatureCursor& pFeatureCursor, FeatureLayer& pFLayer,
                                       const SpatialReference& pInSref, const Point& pStartPoint,
                                       const Point& pEndPoint, const Envelope*, double dFuzzy, RefreshArea& pRefresh,
                                       bool bSplit, bool bOver, Application& pApp) noexcept {
    setApplication(pApp);
    const ExtensionClicks clicks{pStartPoint.vertex.xy(), pEndPoint.vertex.xy(), pInSref};
    return qz::QZ_ExtendPolyline2(pFLayer, pFeatureCursor, clicks, dFuzzy, pRefresh, bSplit, bOver);
}

bool MKQZGenFunRun::QZ_SelectAndIntersectRun(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, std::int32_t fCount,
                                             RefreshArea& pRefresh, double, bool bOver, Application& pApp) noexcept {
    setApplication(pApp);
    return IntersectSelected2(pApp, pFLayer, pFeatureCursor, fCount, pRefresh, bOver);
}

bool MKQZGenFunRun::QZ_SplitInPoint2(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, const Point* pPoint,
                                     RefreshArea& pRefresh, const std::string& sOption, double,
                                     const SpatialReference& pSRef, const SpatialReference&, const Envelope*,
                                     Application& pApp, bool bOver, double dSplitLength) noexcept {
    setApplication(pApp);
    const XY click = pPoint ? pPoint->vertex.xy() : XY{undefined, undefined};
    return qz::QZ_SplitInPoint2(pFLayer, pFeatureCursor, {sOption, click, dSplitLength, pSRef}, pRefresh, bOver);
}

bool MKQZGenFunRun::QZ_ReshapePolyline(FeatureClass&, FeatureCursor& pFeatureCursor, Feature* pFeature,
                                       const Polyline& pReshPolyline, RefreshArea& pRefresh,
                                       Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_ReshapePolyline(pFeatureCursor, pFeature, pReshPolyline, pRefresh);
}

bool MKQZGenFunRun::QZ_GetReshFeature(FeatureCursor& pFeatureCursor, const Polyline& pReshPolyline, double dSearchTol,
                                      bool& bSingle, std::int32_t& pReshapeID, std::int16_t iPrec) noexcept {
    return qz::QZ_GetReshFeature(pFeatureCursor, pReshPolyline, dSearchTol, bSingle, pReshapeID, iPrec);
}

bool MKQZGenFunRun::QZ_AddPolyline(FeatureLayer& pFLayer, const Polyline& pPolyline, RefreshArea& pRefresh,
                                   std::int32_t& fCount, bool bAdd, const std::string& sAction, bool bOver,
                                   Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_AddPolyline(pApp, pFLayer, pPolyline, pRefresh, fCount, {bAdd, sAction, bOver});
}

bool MKQZGenFunRun::QZ_AddPolylineA(FeatureLayer& pFLayer, const Polyline& pPolyline, RefreshArea& pRefresh,
                                    std::int32_t& fCount, bool bAdd, const std::string& sAction, bool bOver,
                                    const Dictionary* fieldDic, bool bEditing, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_AddPolylineA(pApp, pFLayer, pPolyline, pRefresh, fCount, {bAdd, sAction, bOver}, fieldDic, bEditing);
}

bool MKQZGenFunRun::QZ_PolygonAsPolylineRun(FeatureLayer& pFLayer, const Polygon& pPolygon, RefreshArea& pRefresh,
                                            std::int32_t& fCount, bool bAdd, const std::string& sAction, bool bOver,
                                            Application& pApp) noexcept {
    setApplication(pApp);
    return QZ_PolygonAsPolyline(pApp, pFLayer, pPolygon, pRefresh, fCount, {bAdd, sAction, bOver});
}

bool MKQZGenFunRun::QZ_OffsetPolyline(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor,
                                      const Point& pEndPoint, std::int16_t vMethod, double dOffDist, bool bCopy,
                                      RefreshArea& pRefresh, const SpatialReference& pInSref,
                                      const SpatialReference& pMapSRef) noexcept {
    return qz::QZ_OffsetPolyline(pFeatureClass, pFeatureCursor, pEndPoint, {dOffDist, vMethod, pInSref, pMapSRef},
                                 bCopy, pRefresh);
}

bool MKQZGenFunRun::QZ_OffsetDouble(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor, std::int32_t fCount,
                                    std::int16_t vMethod, double dOffDist, bool bCopy, RefreshArea& pRefresh,
                                    const SpatialReference& pInSref, const SpatialReference& pMapSRef,
                                    Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_OffsetDouble(pApp, pFeatureClass, pFeatureCursor, fCount, {dOffDist, vMethod, pInSref, pMapSRef},
                               bCopy, pRefresh);
}

bool MKQZGenFunRun::QZ_OffsetPolylineMulti(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor,
                                           const Point& pEndPoint, std::int16_t vMethod, double dOffDist,
                                           std::int32_t lNumber, RefreshArea& pRefresh, const SpatialReference& pInSref,
                                           const SpatialReference& pMapSRef, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_OffsetPolylineMulti(pFeatureClass, pFeatureCursor, pEndPoint, {dOffDist, vMethod, pInSref, pMapSRef},
                                      lNumber, pRefresh);
}

bool MKQZGenFunRun::QZ_RemovePseudo(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, std::int32_t lDisIndex,
                                    std::int32_t fCount, RefreshArea& pRefresh, const Envelope*,
                                    Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_RemovePseudo(pApp, pFLayer, pFeatureCursor, lDisIndex, fCount, pRefresh);
}

bool MKQZGenFunRun::QZ_RemoveRedundantNodes(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor,
                                            const SpatialReference&, const Envelope* pEnv, std::int32_t fCount,
                                            RefreshArea& pRefresh, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_RemoveRedundantNodes(pApp, pFeatureClass, pFeatureCursor, pEnv, fCount, pRefresh);
}

bool MKQZGenFunRun::QZ_DeleteSelectedDangles(FeatureClass& pFeatureClass, const SpatialReference& inSref,
                                             const Geometry& pGeom, double dDangTol, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_DeleteSelectedDangles(pFeatureClass, inSref, pGeom, dDangTol);
}

} // namespace qz
