#include "component/MKQZGenFunRun.h"

#include "common/ApplicationReference.h"
#include "topology/QZArrowPoints.h"
#include "topology/QZDrawOverlaps.h"
#include "topology/QZFindDuplicates.h"
#include "topology/QZGaps.h"
#include "topology/QZTopoClean.h"
#include "topology/QZValidateEdits.h"
#include "topology/QZVertices.h"

namespace qz {

std::optional<NodePoints> MKQZGenFunRun::QZ_AnalyseNodes(ActiveView& pActiveView, FeatureLayer& pFeatureLayer,
                                                         const SpatialReference& inSref, const std::string& what,
                                                         const std::string& nType, bool bTrueCoords, std::int32_t lMax,
                                                         bool& bChecked) noexcept {
    return qz::QZ_AnalyseNodes(pActiveView, pFeatureLayer, inSref, what, nType, bTrueCoords, lMax, bChecked);
}

std::optional<GeometryCollection> MKQZGenFunRun::QZ_FindDupPolylines(ActiveView& pActiveView,
                                                                     FeatureClass& pFeatureClass,
                                                                     const SpatialReference& inSref,
                                                                     const std::string& sWhat, double dFuzzy,
                                                                     std::int32_t lMax, bool& bChecked) noexcept {
    return qz::QZ_FindDupPolylines(pActiveView, pFeatureClass, inSref, sWhat, dFuzzy, lMax, bChecked);
}

std::optional<Multipoint> MKQZGenFunRun::QZ_FindDupPoints(ActiveView& pActiveView, FeatureClass& pFeatureClass,
                                                          const SpatialReference& inSref, const std::string& sWhat,
                                                          std::int32_t lMax, double dFuzzy, bool& bChecked) noexcept {
    return qz::QZ_FindDupPoints(pActiveView, pFeatureClass, inSref, sWhat, lMax, dFuzzy, bChecked);
}

std::optional<Multipoint> MKQZGenFunRun::QZ_GetVertices(ActiveView& pActiveView, FeatureLayer& pFLayer,
                                                        const SpatialReference& sRef, bool& bChecked,
                                                        std::int32_t lMaxFeatures) noexcept {
    return qz::QZ_GetVertices(pActiveView, pFLayer, sRef, bChecked, lMaxFeatures);
}

std::optional<Multipoint> MKQZGenFunRun::QZ_AnalyseNaNs(ActiveView& pActiveView, FeatureLayer& pFeatureLayer,
                                                        const SpatialReference& inSref, bool& bChecked) noexcept {
    return qz::QZ_AnalyseNaNs(pActiveView, pFeatureLayer, inSref, bChecked);
}

bool MKQZGenFunRun::QZ_ArrowPoints(ActiveView& pActiveView, FeatureClass& pFeatureClass, const SpatialReference& inSref,
                                   const std::string& sWhat, bool& bChecked, Display& display,
                                   const ArrowMarkerSymbol& pAMSymbol, const Symbol&, std::int32_t lMax, double dAlong,
                                   Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_ArrowPoints(pActiveView, pFeatureClass, inSref, sWhat, bChecked, display, pAMSymbol, lMax, dAlong);
}

bool MKQZGenFunRun::QZ_RemoveDupPolylines(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor,
                                          std::int32_t fCount, RefreshArea& pRefresh, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_RemoveDupPolylines(pApp, pFeatureClass, pFeatureCursor, fCount, pRefresh);
}

bool MKQZGenFunRun::QZ_RemoveDupPoints(FeatureClass&, FeatureCursor& pFeatureCursor, std::int32_t fCount,
                                       RefreshArea& pRefresh, double dFuzzy, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_RemoveDupPoints(pApp, pFeatureCursor, fCount, pRefresh, dFuzzy);
}

bool MKQZGenFunRun::QZ_DrawOverlaps(FeatureLayer& pFLayer, std::int32_t fCount, RefreshArea& pRefresh,
                                    const Envelope* pEnv, const FillSymbol& pOverlapSymbol,
                                    Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_DrawOverlaps(pApp, pFLayer, fCount, pRefresh, pEnv, pOverlapSymbol);
}

bool MKQZGenFunRun::QZ_DrawOverlaps_Topo(FeatureLayer& pFLayer, const Envelope* pEnv, double dFuzzy,
                                         const std::string& sWhat, const FillSymbol& pOverlapSymbol,
                                         Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_DrawOverlaps_Topo(pApp, pFLayer, pEnv, dFuzzy, sWhat, pOverlapSymbol);
}

bool MKQZGenFunRun::QZ_DrawGaps(FeatureLayer& pFLayer, Envelope* pEnv, RefreshArea& pRefresh,
                                const FillSymbol& pGapSymbol, bool bAdd, const std::string& sHow,
                                Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_DrawGaps(pApp, pFLayer, pEnv, pRefresh, pGapSymbol, bAdd, sHow);
}

bool MKQZGenFunRun::QZ_FillGaps(FeatureLayer& pFLayer, const GeometryCollection& pGapCol, const std::string& sHow,
                                Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_FillGaps(pFLayer, pGapCol, sHow);
}

bool MKQZGenFunRun::QZ_TopoCleanPg(FeatureClass& pFeatureClass, double dFuzzy, std::int16_t,
                                   Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_TopoCleanPg(pFeatureClass, dFuzzy, pApp);
}

bool MKQZGenFunRun::QZ_TopoCleanPl(FeatureClass& pFeatureClass, double dFuzzy, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_TopoCleanPl(pFeatureClass, dFuzzy, pApp);
}

bool MKQZGenFunRun::QZ_ValidateEdits(FeatureClass& pFeatureClass, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_ValidateEdits(pFeatureClass, pApp);
}

} // namespace qz
