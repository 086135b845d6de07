#include "component/MKQZGenFunRun.h"

#include "cogo/QZCogoFields.h"
#include "cogo/QZCogoInverse.h"
#include "cogo/QZPieSegment.h"
#include "common/ApplicationReference.h"
#include "common/ErrorExit.h"
#include "common/QZFeatureMethods.h"
#include "common/QZInsertFeature.h"
#include "graphics/QZCopySelected.h"
#include "graphics/QZDerivedGraphics.h"
#include "graphics/QZGr2Shape.h"
#include "polygon/QZAddPolygon.h"
#include "polygon/QZChamfer.h"
#include "polygon/QZFindSplitAreaLine.h"
#include "polygon/QZIntersectSelectedPolygons.h"
#include "polygon/QZMergePolygons.h"
#include "polygon/QZReshapePolygon.h"
#include "polygon/QZSplitPolygon.h"
#include "polygon/QZSquarePolygon.h"
#include "polygon/QZUpdateShared.h"
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
#include "polyline/QZVertexEditing.h"
#include "smooth/QZGeneralize.h"
#include "smooth/QZSmooth.h"
#include "topology/QZArrowPoints.h"
#include "topology/QZBuildPolygon.h"
#include "topology/QZDrawOverlaps.h"
#include "topology/QZFindDuplicates.h"
#include "topology/QZGaps.h"
#include "topology/QZTopoClean.h"
#include "topology/QZValidateEdits.h"
#include "topology/QZVertices.h"

namespace qz {

namespace {

CornerCut cornerCut(double dR, bool bFillet) {
    return {bFillet ? CornerForm::fillet : CornerForm::chamfer, dR};
}

} // namespace

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

bool MKQZGenFunRun::QZ_DeleteMultiVertices(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, const Envelope* pEnv,
                                           std::int32_t fCount, RefreshArea& pRefresh, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_DeleteMultiVertices(pApp, pFLayer, pFeatureCursor, pEnv, fCount, pRefresh);
}

bool MKQZGenFunRun::QZ_InsertVertexRun(FeatureCursor& pFeatureCursor, FeatureLayer&, Feature* pFeature,
                                       const Point& pPoint, double, RefreshArea& pRefresh, Point& pInsertPoint,
                                       bool bSame, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_InsertVertexRun(pFeatureCursor, pFeature, pPoint, pRefresh, pInsertPoint, bSame);
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

bool MKQZGenFunRun::QZ_ValidateEdits(FeatureClass& pFeatureClass, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_ValidateEdits(pFeatureClass, pApp);
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

bool MKQZGenFunRun::QZ_FeaturesToGraphicsRun(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                             Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_FeaturesToGraphicsRun(pApp, pFeatureCursor, sName, lCount);
}

bool MKQZGenFunRun::QZ_CentroidGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                        Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_CentroidGraphics(pApp, pFeatureCursor, sName, lCount);
}

bool MKQZGenFunRun::QZ_VertexGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                      Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_VertexGraphics(pApp, pFeatureCursor, sName, lCount);
}

bool MKQZGenFunRun::QZ_EnvelopeGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                        Application& pApp, bool bSingle) noexcept {
    setApplication(pApp);
    return qz::QZ_EnvelopeGraphics(pApp, pFeatureCursor, sName, lCount, bSingle);
}

bool MKQZGenFunRun::QZ_ConvexGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                      Application& pApp, bool bSingle) noexcept {
    setApplication(pApp);
    return qz::QZ_ConvexGraphics(pApp, pFeatureCursor, sName, lCount, bSingle);
}

bool MKQZGenFunRun::QZ_BoundingCircleGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                              Application& pApp, bool bSingle) noexcept {
    setApplication(pApp);
    return qz::QZ_BoundingCircleGraphics(pApp, pFeatureCursor, sName, lCount, bSingle);
}

bool MKQZGenFunRun::QZ_BoundingRectangleGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                                 Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_BoundingRectangleGraphics(pApp, pFeatureCursor, sName, lCount);
}

bool MKQZGenFunRun::QZ_EACircleGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                        Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_EACircleGraphics(pApp, pFeatureCursor, sName, lCount);
}

bool MKQZGenFunRun::QZ_BufferGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                      double dBuf, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_BufferGraphics(pApp, pFeatureCursor, sName, lCount, dBuf);
}

bool MKQZGenFunRun::QZ_GraphicPointAtDistance(FeatureCursor& pFeatureCursor, std::string& sName, double dSplitLength,
                                              const Envelope*, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_GraphicPointAtDistance(pApp, pFeatureCursor, sName, dSplitLength);
}

bool MKQZGenFunRun::QZ_RandomGraphicsPg(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                        std::int32_t lNumPoints, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_RandomGraphicsPg(pApp, pFeatureCursor, sName, lCount, lNumPoints);
}

bool MKQZGenFunRun::QZ_RandomGraphicsPl(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                        std::int32_t lNumPoints, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_RandomGraphicsPl(pApp, pFeatureCursor, sName, lCount, lNumPoints);
}

bool MKQZGenFunRun::QZ_Gr2ShapeDo(FeatureLayer& pFLayer, RefreshArea& pRefresh, const std::string& sIn1,
                                  const std::string& sOut, std::int16_t iPriority, const std::string& sPlA,
                                  const std::string& sPg2Pl, const std::string& sPl2Pg, bool bSel, std::int32_t lCount,
                                  double dBuff, bool bDelete, bool bOver, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_Gr2ShapeDo(pApp, pFLayer, pRefresh,
                             {sIn1, sOut, iPriority, sPlA, sPg2Pl, sPl2Pg, bSel, dBuff, bDelete, bOver}, lCount);
}

bool MKQZGenFunRun::QZ_CopySelectedFromLayer(FeatureLayer& pFLayer, const std::string& sSourceLayerName,
                                             RefreshArea& pRefresh, const Envelope* pEnv, const std::string& sPlPlA,
                                             const std::string& sPlPgA, const std::string& sPgPlA,
                                             const std::string& sPgPgA, double dBuf, Application& pApp, bool bOver,
                                             const std::int32_t* lCount) noexcept {
    setApplication(pApp);
    return qz::QZ_CopySelectedFromLayer(pApp, pFLayer, sSourceLayerName, pRefresh, pEnv,
                                        {sPlPlA, sPlPgA, sPgPlA, sPgPgA, dBuf, bOver},
                                        lCount ? std::optional(*lCount) : std::nullopt);
}

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

bool MKQZGenFunRun::QZ_DrawOverlaps_Topo(FeatureLayer& pFLayer, const Envelope* pEnv, double dFuzzy,
                                         const std::string& sWhat, const FillSymbol& pOverlapSymbol,
                                         Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_DrawOverlaps_Topo(pApp, pFLayer, pEnv, dFuzzy, sWhat, pOverlapSymbol);
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

bool MKQZGenFunRun::QZ_BuildPolygonRun(FeatureLayer& pFLayer, FeatureLayer& pSourceLayer, double dFuzzy,
                                       std::int16_t iPriority, RefreshArea& pRefresh, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_BuildPolygonRun(pApp, pFLayer, pSourceLayer, {dFuzzy, iPriority}, pRefresh);
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
