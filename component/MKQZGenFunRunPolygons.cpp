#include "component/MKQZGenFunRun.h"

#include "common/ApplicationReference.h"
#include "polygon/QZAddPolygon.h"
#include "polygon/QZFindSplitAreaLine.h"
#include "polygon/QZIntersectSelectedPolygons.h"
#include "polygon/QZMergePolygons.h"
#include "polygon/QZReshapePolygon.h"
#include "polygon/QZSplitPolygon.h"
#include "topology/QZBuildPolygon.h"

namespace qz {

bool MKQZGenFunRun::QZ_SplitPolygonRun(FeatureLayer& pFLayer, const Polyline& pPolyline, RefreshArea& pRefresh,
                                       Application& pApp) noexcept {
    setApplication(pApp);
    return QZ_SplitPolygon(pFLayer, pPolyline, pRefresh);
}

bool MKQZGenFunRun::QZ_SplitPolygon2(FeatureLayer& pFLayer, double lFID, const Polyline& pPolyline,
                                     RefreshArea& pRefresh, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_SplitPolygon2(pFLayer, lFID, pPolyline, pRefresh);
}

std::optional<Polyline> MKQZGenFunRun::QZ_FindSplitAreaLine(const Polygon& pPg, const std::string& sStart, bool bArea,
                                                            double& dRequired, double& dDeltaA, const std::string& sUin,
                                                            const std::string& sUout, Application& pApp) noexcept {
    setApplication(pApp);
    const ShareKind kind = bArea ? ShareKind::area : ShareKind::percentage;
    return qz::QZ_FindSplitAreaLine(pPg, {sStart, kind, sUin, sUout}, dRequired, dDeltaA);
}

bool MKQZGenFunRun::QZ_AddPolygonRun(FeatureLayer& pFLayer, const Polygon& pNewPolygon, std::int16_t iPriority,
                                     RefreshArea& pRefresh, Application& pApp) noexcept {
    setApplication(pApp);
    return QZ_AddPolygon(pFLayer, pNewPolygon, iPriority, pRefresh);
}

bool MKQZGenFunRun::QZ_AddPolygonA(FeatureLayer& pFLayer, const Polygon& pNewPolygon, std::int16_t iPriority,
                                   RefreshArea& pRefresh, const Dictionary* fieldDic, bool bEditing,
                                   Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_AddPolygonA(pFLayer, pNewPolygon, iPriority, pRefresh, fieldDic, bEditing);
}

bool MKQZGenFunRun::QZ_ReshapePolygon(FeatureLayer& pFLayer, const Polygon& pNewPolygon, std::int16_t iPriority,
                                      RefreshArea& pRefresh, const Point& pStartPoint, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_ReshapePolygon(pFLayer, pNewPolygon, iPriority, pRefresh, pStartPoint);
}

bool MKQZGenFunRun::QZ_MergePolygons(FeatureLayer& pFLayer, const Point& pSP, const Point& pTP, RefreshArea& pRefresh,
                                     Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_MergePolygons(pFLayer, pSP, pTP, pRefresh);
}

bool MKQZGenFunRun::QZ_IntersectSelectedPolygons(FeatureLayer& pFLayer, std::int32_t fCount, RefreshArea& pRefresh,
                                                 const Envelope*, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_IntersectSelectedPolygons(pApp, pFLayer, fCount, pRefresh);
}

bool MKQZGenFunRun::QZ_BuildPolygonRun(FeatureLayer& pFLayer, FeatureLayer& pSourceLayer, double dFuzzy,
                                       std::int16_t iPriority, RefreshArea& pRefresh, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_BuildPolygonRun(pApp, pFLayer, pSourceLayer, {dFuzzy, iPriority}, pRefresh);
}

} // namespace qz
