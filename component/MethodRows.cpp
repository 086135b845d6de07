#include "component/MKQZGenFunRun.h"
#include "component/MethodRow.h"

namespace qz {

// The order is part of the interface. A planned method has its parameters and result fixed; it becomes available by
// putting the member function in their place.
const std::vector<MethodInfo>& methodTable() {
    static const std::vector<MethodInfo> table = numbered({
        available(&MKQZGenFunRun::QZ_AddCogoFields, "QZ_AddCogoFields",
                  {"pFLayer", defaulted("lLinPrec", std::int32_t{2}), defaulted("lAngPrec", std::int32_t{2})}),
        available(&MKQZGenFunRun::QZ_ValidateEdits, "QZ_ValidateEdits", {"pFeatureClass", "pApp"}),
        withOwnOperation(available(&MKQZGenFunRun::QZ_TopoCleanPg, "QZ_TopoCleanPg",
                                   {"pFeatureClass", "dFuzzy", noEffect("iPrec"), "pApp"})),
        withOwnOperation(
            available(&MKQZGenFunRun::QZ_TopoCleanPl, "QZ_TopoCleanPl", {"pFeatureClass", "dFuzzy", "pApp"})),
        available(&MKQZGenFunRun::QZ_Explode, "QZ_Explode",
                  {"pFLayer", "pFeatureCursor", "fCount", "pRefresh", "pInSref", "pApp"}),
        planned<std::optional<Multipoint>(ActiveView&, FeatureLayer&, const SpatialReference&, const std::string&,
                                          const std::string&, bool, std::int32_t, bool&)>(
            "QZ_AnalyseNodes",
            {"pActiveView", "pFeatureLayer", "inSref", "what", "nType", "bTrueCoords", "lMax", output("bChecked")}),
        planned<std::optional<GeometryCollection>(ActiveView&, FeatureClass&, const SpatialReference&,
                                                  const std::string&, double, std::int32_t, bool&)>(
            "QZ_FindDupPolylines",
            {"pActiveView", "pFeatureClass", "inSref", "sWhat", "dFuzzy", "lMax", output("bChecked")}),
        planned<bool(ActiveView&, FeatureClass&, const SpatialReference&, const std::string&, bool&, Display&,
                     const ArrowMarkerSymbol&, const Symbol&, std::int32_t, double, Application&)>(
            "QZ_ArrowPoints", {"pActiveView", "pFeatureClass", "inSref", "sWhat", output("bChecked"),
                               byValue("Display"), "pAMSymbol", "pSymbol", "lMax", "dAlong", "pApp"}),
        planned<std::optional<Multipoint>(ActiveView&, FeatureLayer&, const SpatialReference&, bool&, std::int32_t)>(
            "QZ_GetVertices", {"pActiveView", "pFLayer", "sRef", output("bChecked"), "lMaxFeatures"}),
        available(&MKQZGenFunRun::QZ_ExtendPolyline2, "QZ_ExtendPolyline2",
                  {"pFeatureCursor", "pFLayer", "pInSref", "pStartPoint", "pEndPoint", noEffect("pEnv"), "dFuzzy",
                   "pRefresh", "bSplit", "bOver", "pApp"}),
        available(&MKQZGenFunRun::QZ_SelectAndIntersectRun, "QZ_SelectAndIntersectRun",
                  {"pFLayer", "pFeatureCursor", "fCount", "pRefresh", noEffect("dFuzzy"), "bOver", "pApp"}),
        available(&MKQZGenFunRun::QZ_DeleteSelectedDangles, "QZ_DeleteSelectedDangles",
                  {"pFeatureClass", "inSref", "pGeom", "dDangTol", "pApp"}),
        available(&MKQZGenFunRun::QZ_RemoveRedundantNodes, "QZ_RemoveRedundantNodes",
                  {"pFeatureClass", "pFeatureCursor", noEffect("pInSref"), "pEnv", "fCount", "pRefresh", "pApp"}),
        available(&MKQZGenFunRun::QZ_Flip, "QZ_Flip", {"pFeatureCursor", "fCount", "pRefresh", "pApp"}),
        available(&MKQZGenFunRun::QZ_RemovePseudo, "QZ_RemovePseudo",
                  {"pFLayer", "pFeatureCursor", "lDisIndex", "fCount", "pRefresh", noEffect("pEnv"), "pApp"}),
        planned<bool(FeatureClass&, FeatureCursor&, std::int32_t, RefreshArea&, Application&)>(
            "QZ_RemoveDupPolylines", {"pFeatureClass", "pFeatureCursor", "fCount", "pRefresh", "pApp"}),
        available(&MKQZGenFunRun::QZ_OffsetPolyline, "QZ_OffsetPolyline",
                  {"pFeatureClass", "pFeatureCursor", "pEndPoint", "vMethod", byValue("dOffDist"), "bCopy", "pRefresh",
                   "pInSref", "pMapSRef"}),
        available(&MKQZGenFunRun::QZ_OffsetDouble, "QZ_OffsetDouble",
                  {"pFeatureClass", "pFeatureCursor", "fCount", "vMethod", byValue("dOffDist"), "bCopy", "pRefresh",
                   "pInSref", "pMapSRef", "pApp"}),
        available(&MKQZGenFunRun::QZ_OffsetPolylineMulti, "QZ_OffsetPolylineMulti",
                  {"pFeatureClass", "pFeatureCursor", "pEndPoint", "vMethod", byValue("dOffDist"), "lNumber",
                   "pRefresh", "pInSref", "pMapSRef", "pApp"}),
        available(&MKQZGenFunRun::QZ_SplitInPoint2, "QZ_SplitInPoint2",
                  {"pFLayer", "pFeatureCursor", "pPoint", "pRefresh", "sOption", noEffect("dFuzzy"), "pSRef",
                   noEffect("pMapSRef"), noEffect("pEnv1"), "pApp", "bOver", defaulted("dSplitLength", 0.0)}),
        available(&MKQZGenFunRun::QZ_ReshapePolyline, "QZ_ReshapePolyline",
                  {"pFeatureClass", updateCursor("pFeatureCursor"), "pFeature", "pReshPolyline", "pRefresh", "pApp"}),
        available(&MKQZGenFunRun::QZ_GetReshFeature, "QZ_GetReshFeature",
                  {"pFeatureCursor", "pReshPolyline", "dSearchTol", output("bSingle"), output("pReshapeID"), "iPrec"}),
        available(&MKQZGenFunRun::QZ_Generalize, "QZ_Generalize",
                  {updateCursor("pFeatureCursor"), "iPar0", "pInSref", "pMapSRef", "fCount", "pRefresh", "pApp"}),
        available(&MKQZGenFunRun::QZ_Densify, "QZ_Densify",
                  {updateCursor("pFeatureCursor"), "sGenType", "iPar0", "iPar1", "pInSref", "pMapSRef", "fCount",
                   "pRefresh", "pApp"}),
        available(&MKQZGenFunRun::QZ_SmoothRun, "QZ_SmoothRun",
                  {"pFeatureClass", updateCursor("pFeatureCursor"), "sCurType", "iPar0", "iPar1", "fCount", "pRefresh",
                   "pInSref", "pApp"}),
        available(&MKQZGenFunRun::QZ_AddPolyline, "QZ_AddPolyline",
                  {"pFLayer", "pPolyline", "pRefresh", "fCount", "bAdd", "sAction", "bOver", "pApp"}),
        available(&MKQZGenFunRun::QZ_AddPolygonRun, "QZ_AddPolygonRun",
                  {"pFLayer", "pNewPolygon", "iPriority", "pRefresh", "pApp"}),
        available(&MKQZGenFunRun::QZ_SplitPolygonRun, "QZ_SplitPolygonRun",
                  {"pFLayer", "pPolyline", "pRefresh", "pApp"}),
        available(&MKQZGenFunRun::QZ_PolygonAsPolylineRun, "QZ_PolygonAsPolylineRun",
                  {"pFLayer", "pPolygon", "pRefresh", "fCount", "bAdd", "sAction", "bOver", "pApp"}),
        available(&MKQZGenFunRun::QZ_CreatePieSegment, "QZ_CreatePieSegment",
                  {noEffect("pFeatureClass"), "pPoint", "dDist", "dCentralAngle", "dPolarDir", "pApp"}),
        available(&MKQZGenFunRun::QZ_UpdateShared, "QZ_UpdateShared", {"pFeatureClass", "pPoint", "m_fDic", "pApp"}),
        available(&MKQZGenFunRun::QZ_UpdateSharedPolygon, "QZ_UpdateSharedPolygon",
                  {"pFeatureClass", "pPoint", "m_fDic", "pApp"}),
        available(&MKQZGenFunRun::QZ_ReshapePolygon, "QZ_ReshapePolygon",
                  {"pFLayer", "pNewPolygon", "iPriority", "pRefresh", "pStartPoint", "pApp"}),
        available(&MKQZGenFunRun::QZ_IntersectSelectedPolygons, "QZ_IntersectSelectedPolygons",
                  {"pFLayer", "fCount", "pRefresh", noEffect("pEnv"), "pApp"}),
        available(&MKQZGenFunRun::QZ_DrawOverlaps, "QZ_DrawOverlaps",
                  {"pFLayer", "fCount", "pRefresh", "pEnv", "pOverlapSymbol", "pApp"}),
        available(&MKQZGenFunRun::QZ_DrawGaps, "QZ_DrawGaps",
                  {"pFLayer", "pEnv", "pRefresh", "pGapSymbol", "bAdd", "sHow", "pApp"}),
        available(&MKQZGenFunRun::QZ_FillGaps, "QZ_FillGaps", {"pFLayer", "pGapCol", "sHow", "pApp"}),
        available(&MKQZGenFunRun::QZ_MergePolygons, "QZ_MergePolygons", {"pFLayer", "pSP", "pTP", "pRefresh", "pApp"}),
        available(&MKQZGenFunRun::QZ_DrawOverlaps_Topo, "QZ_DrawOverlaps_Topo",
                  {"pFLayer", "pEnv", "dFuzzy", "sWhat", "pOverlapSymbol", "pApp"}),
        planned<bool(FeatureLayer&, const std::string&, RefreshArea&, const Envelope*, const std::string&,
                     const std::string&, const std::string&, const std::string&, double, Application&, bool,
                     const std::int32_t*)>("QZ_CopySelectedFromLayer",
                                           {"pFLayer", "sSourceLayerName", "pRefresh", "pEnv", "sPlPlA", "sPlPgA",
                                            "sPgPlA", "sPgPgA", "dBuf", "pApp", "bOver", optional("lCount")}),
        available(&MKQZGenFunRun::QZ_DeleteMultiVertices, "QZ_DeleteMultiVertices",
                  {"pFLayer", "pFeatureCursor", "pEnv", "fCount", "pRefresh", "pApp"}),
        available(&MKQZGenFunRun::QZ_QuickDelete, "QZ_QuickDelete",
                  {"pFeatureCursor", "fCount", "pRefresh", noEffect("sSource"), "pApp"}),
        available(&MKQZGenFunRun::QZ_InsertVertexRun, "QZ_InsertVertexRun",
                  {updateCursor("pFeatureCursor"), "pFLayer", "pFeature", "pPoint", noEffect("dSearchTol"), "pRefresh",
                   output("pInsertPoint"), "bSame", "pApp"}),
        available(&MKQZGenFunRun::QZ_BuildPolygonRun, "QZ_BuildPolygonRun",
                  {"pFLayer", "pSourceLayer", "dFuzzy", "iPriority", "pRefresh", "pApp"}),
        planned<bool(FeatureCursor&, const std::string&, std::int32_t, Application&)>(
            "QZ_FeaturesToGraphicsRun", {"pFeatureCursor", "sName", "lCount", "pApp"}),
        planned<bool(FeatureCursor&, const std::string&, std::int32_t, Application&)>(
            "QZ_CentroidGraphics", {"pFeatureCursor", "sName", "lCount", "pApp"}),
        planned<bool(FeatureCursor&, const std::string&, std::int32_t, Application&)>(
            "QZ_VertexGraphics", {"pFeatureCursor", "sName", "lCount", "pApp"}),
        planned<bool(FeatureCursor&, const std::string&, std::int32_t, Application&, bool)>(
            "QZ_EnvelopeGraphics", {"pFeatureCursor", "sName", "lCount", "pApp", defaulted("bSingle", false)}),
        planned<bool(FeatureCursor&, const std::string&, std::int32_t, Application&, bool)>(
            "QZ_ConvexGraphics", {"pFeatureCursor", "sName", "lCount", "pApp", defaulted("bSingle", false)}),
        planned<bool(FeatureCursor&, const std::string&, std::int32_t, Application&, bool)>(
            "QZ_BoundingCircleGraphics", {"pFeatureCursor", "sName", "lCount", "pApp", defaulted("bSingle", false)}),
        planned<bool(FeatureCursor&, const std::string&, std::int32_t, Application&)>(
            "QZ_BoundingRectangleGraphics", {"pFeatureCursor", "sName", "lCount", "pApp"}),
        planned<bool(FeatureCursor&, const std::string&, std::int32_t, Application&)>(
            "QZ_EACircleGraphics", {"pFeatureCursor", "sName", "lCount", "pApp"}),
        planned<bool(FeatureCursor&, const std::string&, std::int32_t, double, Application&)>(
            "QZ_BufferGraphics", {"pFeatureCursor", "sName", "lCount", "dBuf", "pApp"}),
        planned<bool(FeatureCursor&, const std::string&, double, const Envelope*, Application&)>(
            "QZ_GraphicPointAtDistance", {"pFeatureCursor", "sName", "dSplitLength", noEffect("pEnv1"), "pApp"}),
        planned<bool(FeatureCursor&, const std::string&, std::int32_t, std::int32_t, Application&)>(
            "QZ_RandomGraphicsPg", {"pFeatureCursor", "sName", "lCount", "lNumPoints", "pApp"}),
        planned<bool(FeatureCursor&, const std::string&, std::int32_t, std::int32_t, Application&)>(
            "QZ_RandomGraphicsPl", {"pFeatureCursor", "sName", "lCount", "lNumPoints", "pApp"}),
        planned<bool(FeatureLayer&, RefreshArea&, const std::string&, const std::string&, std::int16_t,
                     const std::string&, const std::string&, const std::string&, bool, std::int32_t, double, bool, bool,
                     Application&)>("QZ_Gr2ShapeDo",
                                    {"pFLayer", "pRefresh", "sIn1", "sOut", "iPriority", "sPlA", "sPg2Pl", "sPl2Pg",
                                     "bSel", "lCount", "dBuff", "bDelete", "bOver", "pApp"}),
        planned<std::optional<Multipoint>(ActiveView&, FeatureClass&, const SpatialReference&, const std::string&,
                                          std::int32_t, double, bool&)>(
            "QZ_FindDupPoints",
            {"pActiveView", "pFeatureClass", "inSref", "sWhat", "lMax", "dFuzzy", output("bChecked")}),
        planned<bool(FeatureClass&, FeatureCursor&, std::int32_t, RefreshArea&, double, Application&)>(
            "QZ_RemoveDupPoints", {"pFeatureClass", "pFeatureCursor", "fCount", "pRefresh", "dFuzzy", "pApp"}),
        planned<std::optional<Multipoint>(ActiveView&, FeatureLayer&, const SpatialReference&, bool&)>(
            "QZ_AnalyseNaNs", {"pActiveView", "pFeatureLayer", "inSref", output("bChecked")}),
        available(&MKQZGenFunRun::QZ_InsertFeatureRun, "QZ_InsertFeatureRun",
                  {"pInsertFeatureCursor", "pInsertFeatureBuffer", "pOrigFeature", "pGeometry", "updateDic"}),
        available(&MKQZGenFunRun::QZ_ChamferAllRun, "QZ_ChamferAllRun",
                  {updateCursor("pFeatureCursor"), "pFeatureClass", "pF", "pRefresh", "dR", "bFillet", "pApp"}),
        available(&MKQZGenFunRun::QZ_ChamferSingleRun, "QZ_ChamferSingleRun",
                  {updateCursor("pFeatureCursor"), "pFeatureClass", "pF", "pP", "pRefresh", "dR", "bFillet", "pApp"}),
        available(&MKQZGenFunRun::QZ_SquarePolygonAnglesRun, "QZ_SquarePolygonAnglesRun",
                  {noEffect("pFeatureClass"), updateCursor("pFeatureCursor"), "pPoint", "pRefresh", "bTool", "dAngTol",
                   "pApp"}),
        available(&MKQZGenFunRun::QZ_FindSplitAreaLine, "QZ_FindSplitAreaLine",
                  {"pPg", "sStart", "bArea", "dRequired", "dDeltaA", "sUin", "sUout", "pApp"}),
        available(&MKQZGenFunRun::QZ_SplitPolygon2, "QZ_SplitPolygon2",
                  {"pFLayer", "lFID", "pPolyline", "pRefresh", "pApp"}),
        available(&MKQZGenFunRun::QZ_CogoInverse, "QZ_CogoInverse",
                  {"pFLayer", "pFeatureCursor", "fCount", "pRefresh", noEffect("pInSref"), noEffect("lLinPrec"),
                   "lAngPrec", "sDirType", "sDirUnits", "pApp"}),
        available(
            &MKQZGenFunRun::QZ_AddPolylineA, "QZ_AddPolylineA",
            {"pFLayer", "pPolyline", "pRefresh", "fCount", "bAdd", "sAction", "bOver", "fieldDic", "bEditing", "pApp"}),
        available(&MKQZGenFunRun::QZ_AddPointA, "QZ_AddPointA",
                  {"pFLayer", "pPoint", "pRefresh", "fieldDic", "bEditing", "pApp"}),
        available(&MKQZGenFunRun::QZ_AddPolygonA, "QZ_AddPolygonA",
                  {"pFLayer", "pNewPolygon", "iPriority", "pRefresh", "fieldDic", "bEditing", "pApp"}),
        available(&MKQZGenFunRun::QZ_PasteAttributes, "QZ_PasteAttributes",
                  {"pFLayer", updateCursor("pFeatureCursor"), "pRefresh", "fieldDic", "bEditing", "pApp"}),
        available(&MKQZGenFunRun::GetQZVersion, "GetQZVersion", {output("sQZArcGIS"), output("sQZBuilt")}),
    });
    return table;
}

} // namespace qz
