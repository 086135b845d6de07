#include "component/MethodHelp.h"

#include <algorithm>
#include <iterator>

namespace qz {

namespace {

constexpr MethodHelp texts[] = {
    {"QZ_Flip", "Reverses the direction of the selected lines.",
     "--data town.gpkg:streets --where \"name = 'Mill Street'\""},
    {"QZ_Explode", "Replaces each selected line or polygon of several parts by a feature for each part.",
     "--data town.gpkg:streets --all"},
    {"QZ_ExtendPolyline2",
     "Lengthens the selected line, at its end nearer to the start point, to the next line within the distance of the "
     "two points. With bSplit that line is cut there.",
     "--data town.gpkg:streets --fid 7 --pStartPoint 548300,5806500 --pEndPoint 548320,5806500 --dFuzzy 0.001 --bSplit "
     "true --bOver false"},
    {"QZ_SelectAndIntersectRun",
     "Cuts the selected lines where they cross themselves and each other. Attributes follow the rules of the layer.",
     "--data town.gpkg:streets --all --bOver false"},
    {"QZ_SplitInPoint2",
     "Cuts the selected line at the place (Point) or vertex (Vertex) nearest to a point, in its middle (Middle), at "
     "every vertex (AllVertices) or at a distance from its start (Distance).",
     "--data town.gpkg:streets --fid 7 --sOption Distance --dSplitLength 25 --bOver false"},
    {"QZ_ReshapePolyline", "Gives the selected line the course of a sketch between their first and last contact.",
     "--data town.gpkg:streets --fid 7 --pReshPolyline \"LINESTRING (548720 5806220, 548720 5806240, 548760 5806240, "
     "548760 5806220)\""},
    {"QZ_GetReshFeature", "Finds the lines that a sketch meets in two places or more.",
     "--data town.gpkg:streets --all --pReshPolyline \"LINESTRING (548720 5806220, 548720 5806240, 548760 5806240, "
     "548760 5806220)\" --dSearchTol 1 --iPrec 3"},
    {"QZ_InsertVertexRun",
     "Inserts a vertex into the selected feature: at the point with bSame, else where the feature is nearest to it.",
     "--data town.gpkg:parcels --fid 3 --pPoint 548190,5806253 --bSame false"},
    {"QZ_DeleteMultiVertices", "Removes the vertices inside a rectangle from the selected features.",
     "--data town.gpkg:streets --all --pEnv 548740,5806220,548750,5806240"},
    {"QZ_AddPolyline",
     "Adds a line to a network and cuts it and all lines that it meets; without bAdd it only cuts the others. The "
     "action Add cuts nothing.",
     "--data town.gpkg:streets --pPolyline \"LINESTRING (548300 5806400, 548400 5806600)\" --bAdd true --sAction Node "
     "--bOver false"},
    {"QZ_AddPolylineA", "The same as QZ_AddPolyline, with attributes for the new line.",
     "--data town.gpkg:streets --pPolyline \"LINESTRING (548300 5806400, 548400 5806600)\" --bAdd true --sAction Node "
     "--bOver false --fieldDic '{\"name\": \"Elm Row\"}' --bEditing true"},
    {"QZ_PolygonAsPolylineRun",
     "Adds the boundary of a polygon to a network of lines as QZ_AddPolyline does. The action Erase deletes the lines "
     "inside it.",
     "--data town.gpkg:streets --pPolygon \"POLYGON ((548300 5806400, 548300 5806500, 548400 5806500, 548300 "
     "5806400))\" --bAdd true --sAction Erase --bOver false"},
    {"QZ_SplitPolygonRun",
     "Cuts every polygon that the line crosses from side to side. Neighbours get the new vertices on their boundaries.",
     "--data town.gpkg:parcels --pPolyline \"LINESTRING (548300 5806400, 548400 5806600)\""},
    {"QZ_SplitPolygon2", "Cuts one polygon, named by its object id, with a line.",
     "--data town.gpkg:parcels --lFID 3 --pPolyline \"LINESTRING (548190 5806240, 548190 5806300)\""},
    {"QZ_FindSplitAreaLine",
     "Finds the line along one side of a polygon (bot, top, left, right) that cuts off an area, or a percentage with "
     "bArea false. The polygon is pPg, or the first one selected. Measure shares above four fifths from the opposite "
     "side: from this one the search may leave the polygon, and then tells how far it came.",
     "--data town.gpkg:parcels --fid 3 --sStart bot --bArea true --dRequired 2 --dDeltaA 0.01 --sUin Ares --sUout "
     "SquareMeters"},
    {"QZ_ValidateEdits", "Puts every shape of a layer onto the coordinate grid of its spatial reference.",
     "--data town.gpkg:streets"},
    {"QZ_TopoCleanPg",
     "Cleans a polygon layer: vertices within the tolerance become one, boundaries are noded where they meet and "
     "shared bit for bit. Polygons not larger than the tolerance are deleted.",
     "--data town.gpkg:parcels --dFuzzy 0.01"},
    {"QZ_TopoCleanPl",
     "Cleans a line layer: vertices within the tolerance become one, and lines are cut where they meet.",
     "--data town.gpkg:streets --dFuzzy 0.01"},
    {"QZ_AddPolygonRun",
     "Adds a polygon to a layer without overlaps. The priority says what becomes of overlaps: -2 they stay, -1 others "
     "lose them and nothing is stored, 0 others keep them, 1 they become polygons of their own, 2 others lose them.",
     "--data town.gpkg:parcels --pNewPolygon \"POLYGON ((548300 5806400, 548300 5806420, 548320 5806420, 548300 "
     "5806400))\" --iPriority 0"},
    {"QZ_AddPolygonA", "The same as QZ_AddPolygonRun, with attributes for new polygons.",
     "--data town.gpkg:parcels --pNewPolygon \"POLYGON ((548300 5806400, 548300 5806420, 548320 5806420, 548300 "
     "5806400))\" --iPriority 0 --fieldDic '{\"OWNER\": \"Town\"}' --bEditing true"},
    {"QZ_ReshapePolygon",
     "Extends the polygon at a point by another one. Others that it meets keep their area with the priority 0 and lose "
     "it with 2.",
     "--data town.gpkg:parcels --pNewPolygon \"POLYGON ((548190 5806260, 548190 5806275, 548215 5806275, 548215 "
     "5806260, 548190 5806260))\" --iPriority 2 --pStartPoint 548191,5806261"},
    {"QZ_MergePolygons",
     "Merges the polygon at the first point into the one at the second; values follow the union rules.",
     "--data town.gpkg:parcels --pSP 548150,5806270 --pTP 548150,5806300"},
    {"QZ_IntersectSelectedPolygons", "Turns every overlap between the selected polygons into a polygon of its own.",
     "--data town.gpkg:parcels --all"},
    {"QZ_RemovePseudo",
     "Merges the selected lines where exactly two of them meet; lDisIndex is a field in which both must agree, or -1.",
     "--data town.gpkg:streets --all --lDisIndex -1"},
    {"QZ_RemoveRedundantNodes", "Moves the ends of the selected lines that lie in a rectangle onto one place.",
     "--data town.gpkg:streets --all --pEnv 548205,5806315,548255,5806335"},
    {"QZ_DeleteSelectedDangles", "Deletes the lines in an area that end freely and are shorter than a length.",
     "--data town.gpkg:streets --pGeom \"POLYGON ((547900 5806000, 547900 5807000, 549000 5807000, 549000 5806000, "
     "547900 5806000))\" --dDangTol 100"},
    {"QZ_FeaturesToGraphicsRun", "Draws the selected features' own shapes.",
     "--data town.gpkg:parcels --fid 3,7 --sName OWNER --graphics graphics.gpkg"},
    {"QZ_CentroidGraphics", "Draws the centroids of the selected polygons.",
     "--data town.gpkg:parcels --fid 3,7 --sName OWNER --graphics graphics.gpkg"},
    {"QZ_VertexGraphics", "Draws every vertex of the selected lines and polygons.",
     "--data town.gpkg:parcels --fid 3,7 --sName OWNER --graphics graphics.gpkg"},
    {"QZ_EnvelopeGraphics", "Draws the envelopes of the selected features, with bSingle one around all.",
     "--data town.gpkg:parcels --fid 3,7 --sName OWNER --graphics graphics.gpkg"},
    {"QZ_ConvexGraphics", "Draws the convex hulls of the selected features, with bSingle one around all.",
     "--data town.gpkg:parcels --fid 3,7 --sName OWNER --graphics graphics.gpkg"},
    {"QZ_BoundingCircleGraphics",
     "Draws the smallest circles around the selected features, with bSingle one around all.",
     "--data town.gpkg:parcels --fid 3,7 --sName OWNER --graphics graphics.gpkg"},
    {"QZ_BoundingRectangleGraphics", "Draws rectangles along the main axes of the selected lines and polygons.",
     "--data town.gpkg:parcels --fid 3,7 --sName OWNER --graphics graphics.gpkg"},
    {"QZ_EACircleGraphics", "Draws circles of the areas of the selected polygons around their centroids.",
     "--data town.gpkg:parcels --fid 3,7 --sName OWNER --graphics graphics.gpkg"},
    {"QZ_BufferGraphics", "Draws buffers around the selected features.",
     "--data town.gpkg:parcels --fid 3,7 --sName OWNER --dBuf 5 --graphics graphics.gpkg"},
    {"QZ_GraphicPointAtDistance", "Draws the point at a distance along the selected line or boundary.",
     "--data town.gpkg:streets --fid 7 --sName name --dSplitLength 25 --graphics graphics.gpkg"},
    {"QZ_RandomGraphicsPg", "Draws random points inside each selected polygon.",
     "--data town.gpkg:parcels --fid 3,7 --sName OWNER --lNumPoints 20 --graphics graphics.gpkg"},
    {"QZ_RandomGraphicsPl", "Draws random points on each selected line.",
     "--data town.gpkg:streets --fid 7 --sName name --lNumPoints 20 --graphics graphics.gpkg"},
    {"QZ_Gr2ShapeDo",
     "Brings graphics of the map into a layer: fills (sIn1 pg) or lines (pl) into polygons, lines or points (sOut pg, "
     "pl, pnt).",
     "--data town.gpkg:parcels --graphics graphics.gpkg --sIn1 pg --sOut pg --iPriority 0 --sPlA Add --sPg2Pl Add "
     "--sPl2Pg Split --bSel false --dBuff 0 --bDelete true --bOver false"},
    {"QZ_CopySelectedFromLayer",
     "Copies the selected features of another layer, or those that meet pEnv, into a layer, with their attributes.",
     "--data town.gpkg:streets --source town.gpkg:parcels --source-fid 1,2 --sPlPlA Add --sPlPgA \"Split & Add\" "
     "--sPgPlA Split --sPgPgA 0 --dBuf 0 --bOver false"},
    {"QZ_AnalyseNodes",
     "Finds the nodes at which lines begin and end: dangle, pseudo, regular, d_p, d_r, p_r or all. The ids in the "
     "report are the line ends there less one.",
     "--data town.gpkg:streets --what All --nType dangle --bTrueCoords true --lMax 1000"},
    {"QZ_FindDupPolylines", "Finds the lines that repeat an earlier one, in either direction.",
     "--data town.gpkg:streets --sWhat All --dFuzzy 0.001 --lMax 1000"},
    {"QZ_RemoveDupPolylines", "Deletes those of the selected lines that repeat an earlier one.",
     "--data town.gpkg:streets --all"},
    {"QZ_FindDupPoints", "Finds the points that repeat an earlier one.",
     "--data town.gpkg:survey_points --sWhat All --lMax 1000 --dFuzzy 0.001"},
    {"QZ_RemoveDupPoints", "Deletes those of the selected points that repeat an earlier one.",
     "--data town.gpkg:survey_points --all --dFuzzy 0.001"},
    {"QZ_GetVertices", "Gives all vertices of the features in view.",
     "--data town.gpkg:parcels --extent 548300,5806500,548400,5806600 --lMaxFeatures 1000"},
    {"QZ_AnalyseNaNs", "Finds the vertices without a measure of the features in view.",
     "--data town.gpkg:survey_lines"},
    {"QZ_ArrowPoints", "Paints an arrow on every segment of the lines, dAlong points on the screen after its start.",
     "--data town.gpkg:survey_lines --sWhat Visible --lMax 1000 --dAlong 6 --picture arrows.png"},
    {"QZ_DrawOverlaps", "Paints the ground that two polygons of the layer share.", "--data town.gpkg:parcels"},
    {"QZ_DrawGaps",
     "Paints the ground between polygons that none of them covers; with bAdd it is filled as QZ_FillGaps does.",
     "--data town.gpkg:parcels --bAdd true --sHow \"New Polygon\""},
    {"QZ_FillGaps", "Makes gaps new features (New Polygon) or part of their largest neighbour (any other word).",
     "--data town.gpkg:parcels --pGapCol \"GEOMETRYCOLLECTION (POLYGON ((548200 5806200,548200 5806210,548210 "
     "5806210,548200 5806200)))\" --sHow \"New Polygon\""},
    {"QZ_DrawOverlaps_Topo", "Paints the Overlaps or Gaps between polygons, corners within the tolerance being one.",
     "--data town.gpkg:parcels --dFuzzy 0.001 --sWhat Gaps"},
    {"QZ_ChamferAllRun",
     "Cuts all corners of the selected line or polygon at the distance dR from each, or rounds them with arcs of that "
     "radius.",
     "--data town.gpkg:buildings --fid 3 --dR 1.5 --bFillet true"},
    {"QZ_ChamferSingleRun", "Cuts or rounds the corner of the selected line or polygon that is nearest to a point.",
     "--data town.gpkg:buildings --fid 3 --pP 548198,5806280 --dR 1.5 --bFillet false"},
    {"QZ_SquarePolygonAnglesRun",
     "Makes the corners of the selected polygon right or straight: those within dAngTol degrees of it, or all when it "
     "is 0.",
     "--data town.gpkg:buildings --fid 3 --bTool false --dAngTol 0"},
    {"QZ_AddCogoFields", "Adds the fields for directions and distances to a layer of lines.",
     "--data town.gpkg:streets --lLinPrec 3"},
    {"QZ_CogoInverse",
     "Replaces the selected lines by a feature for each segment, with its direction, distance and curve in the COGO "
     "fields.",
     "--data town.gpkg:streets --fid 7 --lAngPrec 0 --sDirType \"Quadrant Bearing\" --sDirUnits \"Degrees Minutes "
     "Seconds\""},
    {"QZ_CreatePieSegment", "Makes a pie slice around a point; directions are polar, in degrees.",
     "--data town.gpkg:parcels --pPoint 548300,5806500 --dDist 25 --dCentralAngle 90 --dPolarDir 45"},
    {"QZ_UpdateShared", "Moves ends of lines to a point: object ids with f (start), t (end) or ft (both).",
     "--data town.gpkg:streets --pPoint 548300,5806400 --m_fDic '{\"3\": \"t\", \"7\": \"f\"}'"},
    {"QZ_UpdateSharedPolygon", "Moves vertices of polygons to a point: object ids with ring|vertex, from 0 on.",
     "--data town.gpkg:parcels --pPoint 548300,5806400 --m_fDic '{\"3\": \"0|2\"}'"},
    {"QZ_BuildPolygonRun",
     "Builds polygons of the faces that the selected lines of another layer enclose. The lines have to end where they "
     "meet: see QZ_SelectAndIntersectRun.",
     "--data town.gpkg:parcels --source town.gpkg:streets --source-all --dFuzzy 0.001 --iPriority 0"},
    {"QZ_OffsetPolyline",
     "Adds a parallel copy of the selected line on the side of a point, in units of the map. vMethod 2 points outer "
     "corners, 4 cuts them, 8 rounds them. Without bCopy the line itself is deleted.",
     "--data town.gpkg:streets --fid 7 --pEndPoint 548300,5806500 --vMethod 8 --dOffDist 5 --bCopy true"},
    {"QZ_OffsetDouble", "Adds parallel copies of the selected lines on both sides.",
     "--data town.gpkg:streets --fid 7 --vMethod 8 --dOffDist 5 --bCopy true"},
    {"QZ_OffsetPolylineMulti", "Adds several parallel copies of the selected line at multiples of a distance.",
     "--data town.gpkg:streets --fid 7 --pEndPoint 548300,5806500 --vMethod 2 --dOffDist 5 --lNumber 3"},
    {"QZ_Generalize", "Leaves out vertices of the selected lines and polygons that matter less than a distance.",
     "--data town.gpkg:streets --all --iPar0 0.5"},
    {"QZ_Densify",
     "Divides the segments of the selected lines and polygons into pieces of at most iPar0. Arcs become straight "
     "pieces, no farther off than iPar1 with sGenType Normal, else turning by at most iPar1 radians.",
     "--data town.gpkg:streets --all --sGenType Normal --iPar0 10 --iPar1 0.01"},
    {"QZ_SmoothRun",
     "Replaces the selected lines and polygons by smooth curves with iPar0 points for each vertex: Bezier, bSpline of "
     "order iPar1, or tSpline under the tension iPar1.",
     "--data town.gpkg:streets --all --sCurType bSpline --iPar0 5 --iPar1 3"},
    {"QZ_QuickDelete", "Deletes the selected features.", "--data town.gpkg:streets --fid 3,7"},
    {"QZ_InsertFeatureRun", "Inserts a copy of the selected feature with another shape.",
     "--data town.gpkg:survey_points --fid 3 --pGeometry \"POINT Z (548300 5806500 43)\""},
    {"QZ_AddPointA", "Adds a point with attributes.",
     "--data town.gpkg:survey_points --pPoint 548300,5806500 --fieldDic '{\"CODE\": \"P1\"}' --bEditing true"},
    {"QZ_PasteAttributes", "Writes attributes into the selected features.",
     "--data town.gpkg:streets --fid 3,7 --fieldDic '{\"name\": \"Elm Row\"}' --bEditing true"},
    {"GetQZVersion", "Tells the version, the platform release and the day of the build.", ""},
};

} // namespace

MethodHelp helpFor(std::string_view method) noexcept {
    const auto* found = std::ranges::find(texts, method, &MethodHelp::method);
    return found == std::end(texts) ? MethodHelp{} : *found;
}

} // namespace qz
