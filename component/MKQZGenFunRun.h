#pragma once

#include <cstdint>
#include <string>

#include "common/Dictionary.h"
#include "platform/app/Application.h"
#include "topology/QZAnalyseNodes.h"

namespace qz {

// The editing component: each method is one whole operation on the features it is given. The caller starts an edit
// operation before the call and stops it after, or aborts it when the result is false, so that one call is one step of
// undo; only the cleaning of whole classes begins and ends its own. No exception leaves a method. One instance serves
// any number of calls; it has no state.
//
// Unless a method says otherwise:
//
//   coordinates     shapes and points given bring their own spatial reference; lengths and tolerances are in the units
//                   of the class
//   pointers        may be nothing
//   null shapes     and empty ones are passed over
//   pRefresh        gets the shapes whose places are to be drawn anew
//   fCount, lCount  the number of features to expect: sizes the progress, nothing else
//   bOver           of ranges divided among pieces: each piece begins where the one before it ends, else a step after
//   bEditing        false: data in a database are saved at once, in an edit session of the call's own
//   a failure       is shown to the user with its description, and gives false or nothing; what was stored before it is
//                   for the caller to take back
//
// All methods can be called by name: see MethodTable.h.
class MKQZGenFunRun {
public:
    // --- Lines ---

    // Reverses every polyline that the cursor delivers: the first vertex of each part becomes its last. Null and empty
    // shapes are left alone. Coordinates are snapped to the spatial reference of the class; z, m and arcs go along.
    // `fCount` is the number of features to expect and sizes the progress ("Flipping polylines: "), nothing else.
    // False, without a message, at the first shape that is no polyline; what was flipped before stays stored.
    bool QZ_Flip(FeatureCursor& pFeatureCursor, std::int32_t fCount, RefreshArea& pRefresh, Application& pApp) noexcept;

    // Replaces every line of several parts, and every polygon of several exterior rings with their holes, by a feature
    // for each; the sources are deleted. `fCount` sizes the progress; `pInSref` has no effect on what is stored.
    // False after a failure, which is reported.
    bool QZ_Explode(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, std::int32_t fCount, RefreshArea& pRefresh,
                    const SpatialReference& pInSref, Application& pApp) noexcept;

    // Lengthens the first line of the cursor, at its end nearer to `pStartPoint`, along its tangent to the nearest
    // other line of the layer within the distance of the two points, which are in `pInSref`. With `bSplit` the line met
    // is cut there when within `dFuzzy` of the new end lie just the two; its pieces get values as in QZ_SplitInPoint2.
    // False, with a notice, for a line of several parts and when nothing is met; false after a failure, which is
    // reported.
    bool QZ_ExtendPolyline2(FeatureCursor& pFeatureCursor, FeatureLayer& pFLayer, const SpatialReference& pInSref,
                            const Point& pStartPoint, const Point& pEndPoint, const Envelope* pEnv, double dFuzzy,
                            RefreshArea& pRefresh, bool bSplit, bool bOver, Application& pApp) noexcept;

    // Cuts every line of the cursor where it crosses itself and where it meets the others. The pieces are new features
    // with values by the layer's attribute rules; with `bOver` the range of each piece starts where that of the piece
    // before ends, else a step after. The lines cut are deleted. `fCount` sizes the progress, `dFuzzy` has no effect:
    // places within the tolerance of the layer's reference are one.
    // False when fewer than two lines are left or none meet, and after a failure, which is reported.
    bool QZ_SelectAndIntersectRun(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, std::int32_t fCount,
                                  RefreshArea& pRefresh, double dFuzzy, bool bOver, Application& pApp) noexcept;

    // Cuts the first line of the cursor: at its place ("Point") or vertex ("Vertex") nearest to `pPoint`, halfway
    // ("Middle"), at every vertex inside ("AllVertices"), or `dSplitLength` from its start ("Distance", in the units of
    // `pSRef`). `pPoint` is in `pSRef`; the other words do without. Any other word cuts nothing. The line is deleted
    // once its pieces are stored; cut at an end it becomes a copy of itself. `dFuzzy`, `pMapSRef` and `pEnv1` have no
    // effect. False, with a notice, for a line of several parts and a distance beyond its length; false after a
    // failure, which is reported.
    bool QZ_SplitInPoint2(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, const Point* pPoint,
                          RefreshArea& pRefresh, const std::string& sOption, double dFuzzy,
                          const SpatialReference& pSRef, const SpatialReference& pMapSRef, const Envelope* pEnv1,
                          Application& pApp, bool bOver, double dSplitLength) noexcept;

    // Gives the line `pFeature` the course of the sketch between their first and last contact and writes it through the
    // update cursor; the ends of the line stay. Nothing happens without a feature or with fewer than two contacts.
    // False, with a notice, for a sketch that isn't one part once simplified; false after a failure, which is reported.
    bool QZ_ReshapePolyline(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor, Feature* pFeature,
                            const Polyline& pReshPolyline, RefreshArea& pRefresh, Application& pApp) noexcept;

    // Finds the lines of the cursor that the sketch meets in two places or more, ends within `dSearchTol` of it
    // included. Places equal to `iPrec` decimals count once. `bSingle` tells whether it is just one line, `pReshapeID`
    // becomes the object id of the last.
    // False after a failure, which is reported.
    bool QZ_GetReshFeature(FeatureCursor& pFeatureCursor, const Polyline& pReshPolyline, double dSearchTol,
                           bool& bSingle, std::int32_t& pReshapeID, std::int16_t iPrec) noexcept;

    // Puts a line into the layer so that lines end where they meet: with `bAdd` it is stored, and it and all lines that
    // it meets are cut; without it only cuts the others. `sAction` "Add" stores it and cuts nothing. `fCount` sizes the
    // progress: a negative one switches the cutting off, and 0 becomes 1 with `bAdd`. The new line has no attributes.
    // False after a failure, which is reported.
    bool QZ_AddPolyline(FeatureLayer& pFLayer, const Polyline& pPolyline, RefreshArea& pRefresh, std::int32_t& fCount,
                        bool bAdd, const std::string& sAction, bool bOver, Application& pApp) noexcept;

    // The same; the new line has the values of `fieldDic`, as in QZ_AddPointA, and the height 0.
    // False after a failure, which is reported.
    bool QZ_AddPolylineA(FeatureLayer& pFLayer, const Polyline& pPolyline, RefreshArea& pRefresh, std::int32_t& fCount,
                         bool bAdd, const std::string& sAction, bool bOver, const Dictionary* fieldDic, bool bEditing,
                         Application& pApp) noexcept;

    // The same with the boundary of a polygon. `sAction` "Erase" deletes the lines whose middle lies inside it too.
    // False after a failure, which is reported.
    bool QZ_PolygonAsPolylineRun(FeatureLayer& pFLayer, const Polygon& pPolygon, RefreshArea& pRefresh,
                                 std::int32_t& fCount, bool bAdd, const std::string& sAction, bool bOver,
                                 Application& pApp) noexcept;

    // Adds a parallel copy of the first line of the cursor, `dOffDist` away in units of the map on the side of
    // `pEndPoint`, which is in the map's reference, with the attributes of the line. `vMethod` 2 points outer corners,
    // 4 cuts them, 8 rounds them. Without `bCopy` the line is deleted. When the copy would vanish nothing changes.
    // False after a failure, which is reported.
    bool QZ_OffsetPolyline(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor, const Point& pEndPoint,
                           std::int16_t vMethod, double dOffDist, bool bCopy, RefreshArea& pRefresh,
                           const SpatialReference& pInSref, const SpatialReference& pMapSRef) noexcept;

    // Adds two parallel copies of every line of the cursor, one on each side. Lines of which one would vanish stay as
    // they are, which the user is told at the end. `fCount` sizes the progress.
    // False after a failure, which is reported.
    bool QZ_OffsetDouble(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor, std::int32_t fCount,
                         std::int16_t vMethod, double dOffDist, bool bCopy, RefreshArea& pRefresh,
                         const SpatialReference& pInSref, const SpatialReference& pMapSRef, Application& pApp) noexcept;

    // Adds `lNumber` parallel copies of the first line of the cursor, at 1, 2, ... times the distance on the side of
    // `pEndPoint`.
    // False after a failure, which is reported.
    bool QZ_OffsetPolylineMulti(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor, const Point& pEndPoint,
                                std::int16_t vMethod, double dOffDist, std::int32_t lNumber, RefreshArea& pRefresh,
                                const SpatialReference& pInSref, const SpatialReference& pMapSRef,
                                Application& pApp) noexcept;

    // Merges the lines that the cursor delivers at nodes where exactly two of them end; `lDisIndex`: the place of a
    // field among the fields that has to have the same text on both, -1 for none. Values follow the union rules of the
    // layer. `pEnv` has no effect. False after a failure, which is reported.
    bool QZ_RemovePseudo(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, std::int32_t lDisIndex,
                         std::int32_t fCount, RefreshArea& pRefresh, const Envelope* pEnv, Application& pApp) noexcept;

    // Moves all ends in `pEnv`, in map units, of the lines that the update cursor delivers onto one place in the middle
    // of them. `pInSref` has no effect.
    // False without an envelope and after a failure, which is reported.
    bool QZ_RemoveRedundantNodes(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor,
                                 const SpatialReference& pInSref, const Envelope* pEnv, std::int32_t fCount,
                                 RefreshArea& pRefresh, Application& pApp) noexcept;

    // Deletes lines in `pGeom` that end freely and are shorter than `dDangTol`, in the units of `inSref`; one that is
    // not above 0 means any length. What ends freely only afterwards stays. False after a failure, which is reported.
    bool QZ_DeleteSelectedDangles(FeatureClass& pFeatureClass, const SpatialReference& inSref, const Geometry& pGeom,
                                  double dDangTol, Application& pApp) noexcept;

    // --- Polygons ---

    // Replaces every polygon of the layer that the line crosses from side to side by its two pieces, with values by the
    // layer's attribute rules. A polygon that the line starts or ends in, or only touches, stays; it gets the vertices
    // that the cuts made on its boundary. A line that ends in a hole cuts nothing there: the user is told, and the
    // polygon is drawn in red.
    // False after a failure, which is reported.
    bool QZ_SplitPolygonRun(FeatureLayer& pFLayer, const Polyline& pPolyline, RefreshArea& pRefresh,
                            Application& pApp) noexcept;

    // The same for the polygon with the object id `lFID` alone; the others that the line meets are its neighbours.
    // False after a failure, which is reported.
    bool QZ_SplitPolygon2(FeatureLayer& pFLayer, double lFID, const Polyline& pPolyline, RefreshArea& pRefresh,
                          Application& pApp) noexcept;

    // Finds a line along the side "bot", "top", "left" or "right" of the polygon's envelope that cuts off `dRequired`,
    // an area (`bArea`) or a percentage, give or take `dDeltaA`. Areas are in the unit `sUin` and become those in
    // `sUout`, the unit of the coordinates squared; see QZ_ConvertArea for the units. The line rests at the last place
    // that cut off no more than required. When 32 tries don't suffice the user is told what was achieved, and gets that
    // line: measure shares above four fifths from the opposite side. Nothing, with a notice, for a share that the
    // polygon doesn't have and for an unknown side; nothing after a failure, which is reported.
    std::optional<Polyline> QZ_FindSplitAreaLine(const Polygon& pPg, const std::string& sStart, bool bArea,
                                                 double& dRequired, double& dDeltaA, const std::string& sUin,
                                                 const std::string& sUout, Application& pApp) noexcept;

    // Puts a sketched polygon into a layer free of overlaps; `iPriority` says what becomes of those it makes: -2, they
    // stay; -1, others lose the sketch's area, which isn't stored; 0, others keep theirs and the rest of the sketch is
    // stored; 1, each overlap becomes a polygon of its own; 2, the sketch is stored whole and others lose its area.
    // With any other code it is stored only when it meets nothing. New polygons have no attributes. False after a
    // failure, which is reported.
    bool QZ_AddPolygonRun(FeatureLayer& pFLayer, const Polygon& pNewPolygon, std::int16_t iPriority,
                          RefreshArea& pRefresh, Application& pApp) noexcept;

    // The same; new polygons have the values of `fieldDic`, as in QZ_AddPointA.
    // False after a failure, which is reported.
    bool QZ_AddPolygonA(FeatureLayer& pFLayer, const Polygon& pNewPolygon, std::int16_t iPriority,
                        RefreshArea& pRefresh, const Dictionary* fieldDic, bool bEditing, Application& pApp) noexcept;

    // Extends the polygon at `pStartPoint` by a sketched one. Where the sketch meets others, with the code 2 they lose
    // its area, with 0 they keep theirs; with any other code nothing happens then.
    // False after a failure, which is reported.
    bool QZ_ReshapePolygon(FeatureLayer& pFLayer, const Polygon& pNewPolygon, std::int16_t iPriority,
                           RefreshArea& pRefresh, const Point& pStartPoint, Application& pApp) noexcept;

    // Merges the polygon at `pSP` into the one at `pTP`, which gets values by the union rules of the layer.
    // False, with a notice and without a change, when there isn't one polygon at each point or both are in the same;
    // false after a failure, which is reported.
    bool QZ_MergePolygons(FeatureLayer& pFLayer, const Point& pSP, const Point& pTP, RefreshArea& pRefresh,
                          Application& pApp) noexcept;

    // Turns every overlap between selected polygons into a polygon of its own, without attributes. `fCount` sizes the
    // progress; `pEnv` has no effect.
    // False after a failure, which is reported.
    bool QZ_IntersectSelectedPolygons(FeatureLayer& pFLayer, std::int32_t fCount, RefreshArea& pRefresh,
                                      const Envelope* pEnv, Application& pApp) noexcept;

    // Stores the faces that the selected lines of the source layer enclose as polygons, with islands as holes, each as
    // QZ_AddPolygonRun does with `iPriority`. Lines meet at their ends; an outline whose two free ends are less than
    // `dFuzzy` apart is closed.
    // False, with a notice, without lines, a selection or faces; false after a failure, which is reported.
    bool QZ_BuildPolygonRun(FeatureLayer& pFLayer, FeatureLayer& pSourceLayer, double dFuzzy, std::int16_t iPriority,
                            RefreshArea& pRefresh, Application& pApp) noexcept;

    // --- Vertices and corners of lines and polygons ---

    // Inserts a vertex into the line or boundary of `pFeature` and writes it through the update cursor: exactly at the
    // point with `bSame`, else where the line is nearest to it. `pInsertPoint` becomes the new vertex. Nothing happens
    // where a vertex is already. `dSearchTol` has no effect.
    // False after a failure, which is reported.
    bool QZ_InsertVertexRun(FeatureCursor& pFeatureCursor, FeatureLayer& pFLayer, Feature* pFeature,
                            const Point& pPoint, double dSearchTol, RefreshArea& pRefresh, Point& pInsertPoint,
                            bool bSame, Application& pApp) noexcept;

    // Removes the vertices inside the envelope, which is in the reference of the layer, from every feature of the
    // cursor; straight segments close the gaps. Without an envelope nothing happens. A feature of which nothing is left
    // is deleted. `fCount` sizes the progress.
    // False after a failure, which is reported.
    bool QZ_DeleteMultiVertices(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, const Envelope* pEnv,
                                std::int32_t fCount, RefreshArea& pRefresh, Application& pApp) noexcept;

    // Moves the ends of lines to `pPoint`. `m_fDic`: object id to "f" (the start), "t" (the end) or "ft" (both). Each
    // line keeps its own z and m there.
    // False after a failure, which is reported; nothing is changed then.
    bool QZ_UpdateShared(FeatureClass& pFeatureClass, const Point& pPoint, const Dictionary* m_fDic,
                         Application& pApp) noexcept;

    // Moves vertices of polygons to `pPoint`. `m_fDic`: object id to "ring|vertex", both from 0 on.
    // False after a failure, which is reported; nothing is changed then.
    bool QZ_UpdateSharedPolygon(FeatureClass& pFeatureClass, const Point& pPoint, const Dictionary* m_fDic,
                                Application& pApp) noexcept;

    // Cuts every corner of `pF`, on which the update cursor stands, at the distance `dR` from it, or rounds it with an
    // arc of that radius when `bFillet` is set. A corner where that doesn't fit stays. False without a feature, for a
    // line of several parts, and after a failure, which is reported.
    bool QZ_ChamferAllRun(FeatureCursor& pFeatureCursor, FeatureClass& pFeatureClass, Feature* pF,
                          RefreshArea& pRefresh, double dR, bool bFillet, Application& pApp) noexcept;

    // The same for the one corner nearest to `pP`.
    bool QZ_ChamferSingleRun(FeatureCursor& pFeatureCursor, FeatureClass& pFeatureClass, Feature* pF, const Point& pP,
                             RefreshArea& pRefresh, double dR, bool bFillet, Application& pApp) noexcept;

    // Makes the corners of the first polygon of the update cursor right or straight: those that are so within `dAngTol`
    // degrees, above 0 up to 45, or all of them for any other number. The segment nearest to `pPoint` keeps its
    // direction when `bTool` is set and there is a point, else the longest one. False, without a change, when that
    // can't be done, which is told, and after a failure, which is reported.
    bool QZ_SquarePolygonAnglesRun(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor, const Point* pPoint,
                                   RefreshArea& pRefresh, bool bTool, double dAngTol, Application& pApp) noexcept;

    // Leaves out the vertices of lines and polygons that are no farther than `iPar0`, in units of the map, from what is
    // left (Douglas-Peucker). Polygons of which nothing would be left stay, which the user is told at the end.
    // False after a failure, which is reported; points are one.
    bool QZ_Generalize(FeatureCursor& pFeatureCursor, double iPar0, const SpatialReference& pInSref,
                       const SpatialReference& pMapSRef, std::int32_t fCount, RefreshArea& pRefresh,
                       Application& pApp) noexcept;

    // Divides the segments of lines and polygons into pieces of at most `iPar0` in units of the map; arcs become
    // straight pieces no farther from them than `iPar1` with the word "Normal", and with any other word pieces that
    // turn by at most `iPar1` radians.
    // False after a failure, which is reported; points are one.
    bool QZ_Densify(FeatureCursor& pFeatureCursor, const std::string& sGenType, double iPar0, double iPar1,
                    const SpatialReference& pInSref, const SpatialReference& pMapSRef, std::int32_t fCount,
                    RefreshArea& pRefresh, Application& pApp) noexcept;

    // Replaces lines and polygons by smooth curves with `iPar0` points for each vertex: "Bezier", near the vertices;
    // "bSpline", of order `iPar1`; "tSpline", through the vertices, under the tension `iPar1`.
    // False, with a notice and without a change, for numbers and words that make no curve; false after a failure, which
    // is reported.
    bool QZ_SmoothRun(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor, const std::string& sCurType,
                      std::int16_t iPar0, std::int16_t iPar1, std::int32_t fCount, RefreshArea& pRefresh,
                      const SpatialReference& pInSref, Application& pApp) noexcept;

    // --- Finders ---

    // These methods look at the features that meet what `pActiveView` shows when their word `what` is "Visible", else
    // at all of the class. Features in view that are more than `lMax` are not looked at: `bChecked` is false then, and
    // there is no result. `inSref`: that in which the view's bounds are compared with the features. Without a result
    // also after a failure, which is reported.

    // The nodes at which lines begin and end, with the number of line ends there less one: 0 is a dangle, 1 a pseudo
    // node, 2 and more a regular node. `nType`: "all", "dangle", "pseudo", "regular", "d_p", "d_r" or "p_r"; none for
    // another word. Two ends are one node when their coordinates are equal in decimals of the layer's tolerance; with
    // `bTrueCoords` false in those of 1e-15.
    std::optional<NodePoints> QZ_AnalyseNodes(ActiveView& pActiveView, FeatureLayer& pFeatureLayer,
                                              const SpatialReference& inSref, const std::string& what,
                                              const std::string& nType, bool bTrueCoords, std::int32_t lMax,
                                              bool& bChecked) noexcept;

    // The lines that repeat an earlier one, in either direction: those whose points at 0.1 % and 99.9 % of their length
    // are equal in the decimals of `dFuzzy`, in the units of the class.
    std::optional<GeometryCollection> QZ_FindDupPolylines(ActiveView& pActiveView, FeatureClass& pFeatureClass,
                                                          const SpatialReference& inSref, const std::string& sWhat,
                                                          double dFuzzy, std::int32_t lMax, bool& bChecked) noexcept;

    // The points that repeat an earlier one in the decimals of `dFuzzy`.
    std::optional<Multipoint> QZ_FindDupPoints(ActiveView& pActiveView, FeatureClass& pFeatureClass,
                                               const SpatialReference& inSref, const std::string& sWhat,
                                               std::int32_t lMax, double dFuzzy, bool& bChecked) noexcept;

    // All vertices of the features in view, `lMaxFeatures` features at most.
    std::optional<Multipoint> QZ_GetVertices(ActiveView& pActiveView, FeatureLayer& pFLayer,
                                             const SpatialReference& sRef, bool& bChecked,
                                             std::int32_t lMaxFeatures) noexcept;

    // The vertices without a measure of the features in view, 10,000 features at most; a notice tells when there are
    // more.
    std::optional<Multipoint> QZ_AnalyseNaNs(ActiveView& pActiveView, FeatureLayer& pFeatureLayer,
                                             const SpatialReference& inSref, bool& bChecked) noexcept;

    // Paints an arrow on every segment of the lines, `dAlong` points of 1/72 inch on the screen after its start and no
    // farther than its end. `pSymbol` has no effect.
    bool QZ_ArrowPoints(ActiveView& pActiveView, FeatureClass& pFeatureClass, const SpatialReference& inSref,
                        const std::string& sWhat, bool& bChecked, Display& display, const ArrowMarkerSymbol& pAMSymbol,
                        const Symbol& pSymbol, std::int32_t lMax, double dAlong, Application& pApp) noexcept;

    // --- Duplicates, overlaps and gaps; cleaning ---

    // Delete the features of the cursor that repeat an earlier one of it, as the finders find them; the lines with the
    // class's default tolerance. They are added to the refresh area. `fCount`: the number of features, for the
    // progress. False after a failure, which is reported.
    bool QZ_RemoveDupPolylines(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor, std::int32_t fCount,
                               RefreshArea& pRefresh, Application& pApp) noexcept;
    bool QZ_RemoveDupPoints(FeatureClass& pFeatureClass, FeatureCursor& pFeatureCursor, std::int32_t fCount,
                            RefreshArea& pRefresh, double dFuzzy, Application& pApp) noexcept;

    // Paints what two polygons of the layer share, once for each pair of those that meet `pEnv`, in map units; none
    // means what the view shows. The polygons are added to the refresh area. `fCount`: their number, for the progress.
    // False after a failure, which is reported.
    bool QZ_DrawOverlaps(FeatureLayer& pFLayer, std::int32_t fCount, RefreshArea& pRefresh, const Envelope* pEnv,
                         const FillSymbol& pOverlapSymbol, Application& pApp) noexcept;

    // Paints the "Overlaps" or "Gaps" (`sWhat`) of the polygons whose extents meet `pEnv`, found along the edges of a
    // topology graph with the cluster tolerance `dFuzzy`, in units of the layer.
    // False after a failure, which is reported.
    bool QZ_DrawOverlaps_Topo(FeatureLayer& pFLayer, const Envelope* pEnv, double dFuzzy, const std::string& sWhat,
                              const FillSymbol& pOverlapSymbol, Application& pApp) noexcept;

    // Finds the ground within `pEnv` (as QZ_DrawOverlaps has it) that polygons of the layer enclose without covering
    // it, and paints it, or hands it to QZ_FillGaps when `bAdd` is set. What reaches the edge of `pEnv` is no gap;
    // `pEnv` is a thousandth smaller afterwards. False after a failure, which is reported.
    bool QZ_DrawGaps(FeatureLayer& pFLayer, Envelope* pEnv, RefreshArea& pRefresh, const FillSymbol& pGapSymbol,
                     bool bAdd, const std::string& sHow, Application& pApp) noexcept;

    // Stores gaps as features without values when `sHow` is "New Polygon", else each as part of the largest polygon
    // that shares a boundary line with it.
    // False after a failure, which is reported.
    bool QZ_FillGaps(FeatureLayer& pFLayer, const GeometryCollection& pGapCol, const std::string& sHow,
                     Application& pApp) noexcept;

    // Cleans the boundaries of a polygon class, while its editor is editing and in an edit operation of its own:
    // vertices within `dFuzzy` become one, and boundaries are noded where they meet, so that neighbours share them bit
    // for bit. What needed no repair stays as it is; what did is replaced by copies with the same attributes, one for
    // each part of a polygon that fell apart. Polygons not larger than `dFuzzy` are deleted, which the user is told.
    // `iPrec` has no effect: nodes are told apart by where they are, to the last bit. A cancelled dialog ends its walk.
    // False, with a notice, for a class without features and when nothing is left; false when the editor isn't editing,
    // and after a failure, which is reported and takes everything back.
    bool QZ_TopoCleanPg(FeatureClass& pFeatureClass, double dFuzzy, std::int16_t iPrec, Application& pApp) noexcept;

    // The same for a class of lines: each is replaced by copies for its stretches between the places where lines meet.
    // False as above.
    bool QZ_TopoCleanPl(FeatureClass& pFeatureClass, double dFuzzy, Application& pApp) noexcept;

    // Puts the shape of every feature of the class onto the grid of its spatial reference.
    // False after a failure, which is reported.
    bool QZ_ValidateEdits(FeatureClass& pFeatureClass, Application& pApp) noexcept;

    // --- Graphics derived from features ---

    // These methods draw shapes derived from the features of the cursor as elements of the map's graphics, with the
    // default symbols. `sName`: the name of a field whose values label the elements, and then the last label; blank or
    // no field: the label of all. False after a failure, which is reported.

    // The shapes themselves.
    bool QZ_FeaturesToGraphicsRun(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                  Application& pApp) noexcept;

    // The centroids of polygons.
    bool QZ_CentroidGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                             Application& pApp) noexcept;

    // Every vertex of lines and polygons, the one that closes a ring included.
    bool QZ_VertexGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                           Application& pApp) noexcept;

    // The envelopes; `bSingle`, and points always: one around all, labelled like the last feature.
    bool QZ_EnvelopeGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount, Application& pApp,
                             bool bSingle) noexcept;

    // The convex hulls; `bSingle` as before.
    bool QZ_ConvexGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount, Application& pApp,
                           bool bSingle) noexcept;

    // The smallest enclosing circles; `bSingle` as before.
    bool QZ_BoundingCircleGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                   Application& pApp, bool bSingle) noexcept;

    // Rectangles along the main axis of lines and polygons, the line between the two farthest corners of the hull.
    bool QZ_BoundingRectangleGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                      Application& pApp) noexcept;

    // Circles of the area of polygons around their centroids.
    bool QZ_EACircleGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                             Application& pApp) noexcept;

    // Buffers at the distance `dBuf`, in the units of the layer.
    bool QZ_BufferGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount, double dBuf,
                           Application& pApp) noexcept;

    // The point at `dSplitLength` along the first line, or the boundary of the first polygon. `pEnv1` has no effect.
    // False also, with a notice, for a distance beyond the length.
    bool QZ_GraphicPointAtDistance(FeatureCursor& pFeatureCursor, std::string& sName, double dSplitLength,
                                   const Envelope* pEnv1, Application& pApp) noexcept;

    // `lNumPoints` random points inside each polygon; where there is no room for all, which is told, those found.
    bool QZ_RandomGraphicsPg(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                             std::int32_t lNumPoints, Application& pApp) noexcept;

    // `lNumPoints` random points on each line.
    bool QZ_RandomGraphicsPl(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                             std::int32_t lNumPoints, Application& pApp) noexcept;

    // --- Features from graphics and from other layers ---

    // Brings graphics of the map into the layer, only selected ones with `bSel`. `sIn1`: fills ("pg") or lines ("pl");
    // `sOut`: the kind of the layer, "pg", "pl" or "pnt". Fills are added to polygons by `iPriority` (see
    // QZ_AddPolygon), and to lines by `sPg2Pl`: "Add", "Split", "Split & Add", "Erase" or "Erase & Add". Lines are
    // added to lines by `sPlA`, one of the first three; in polygons "Buffer and Add" for `sPl2Pg` adds their buffers of
    // `dBuff`, in the units of the layer, any other word splits the polygons. Markers become points. `bOver`: see
    // QZ_SelectAndIntersectRun. `lCount`: the number of elements, for the progress. An element that doesn't fit or
    // can't be converted, which is reported, stays; with `bDelete` the others are deleted from the map. False after
    // another failure, which is reported.
    bool QZ_Gr2ShapeDo(FeatureLayer& pFLayer, RefreshArea& pRefresh, const std::string& sIn1, const std::string& sOut,
                       std::int16_t iPriority, const std::string& sPlA, const std::string& sPg2Pl,
                       const std::string& sPl2Pg, bool bSel, std::int32_t lCount, double dBuff, bool bDelete,
                       bool bOver, Application& pApp) noexcept;

    // Copies the selected features of another layer of the map, or those that meet `pEnv`, in the map's units, into the
    // layer, as QZ_Gr2ShapeDo does with lines and fills: lines into lines by `sPlPlA`, polygons into lines by `sPlPgA`,
    // lines into polygons by `sPgPlA` and `dBuf`, polygons into polygons by `sPgPgA`, the priority as a text. The
    // features that it writes have the source's values in the fields of the same names. `lCount`: the number of
    // features, for the progress. A feature that can't be copied, which is reported, is passed over. False, with a
    // notice, when none is selected; false after another failure, which is reported.
    bool QZ_CopySelectedFromLayer(FeatureLayer& pFLayer, const std::string& sSourceLayerName, RefreshArea& pRefresh,
                                  const Envelope* pEnv, const std::string& sPlPlA, const std::string& sPlPgA,
                                  const std::string& sPgPlA, const std::string& sPgPgA, double dBuf, Application& pApp,
                                  bool bOver, const std::int32_t* lCount) noexcept;

    // --- Coordinate geometry ---

    // Adds the fields that QZ_CogoInverse fills to a layer of lines: Direction, Distance, Delta, Radius, Tangent,
    // ArcLength, Side, XStart, YStart. `lLinPrec`, `lAngPrec`: decimals of the linear fields and of Delta. Fields that
    // are there stay. False after a failure, which is reported.
    bool QZ_AddCogoFields(FeatureLayer& pFLayer, std::int32_t lLinPrec, std::int32_t lAngPrec) noexcept;

    // Replaces the lines that the update cursor delivers by a feature for each segment, with the values of the line and
    // the segment's direction, distance and curve in the COGO fields. Directions are written as `sDirType`, `sDirUnits`
    // and `lAngPrec` say; see QZ_FormatDirection. `pInSref` and `lLinPrec` have no effect. False when a segment could
    // not be stored, and after a failure, which is reported.
    bool QZ_CogoInverse(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, std::int32_t fCount,
                        RefreshArea& pRefresh, const SpatialReference& pInSref, std::int16_t lLinPrec,
                        std::int16_t lAngPrec, const std::string& sDirType, const std::string& sDirUnits,
                        Application& pApp) noexcept;

    // A pie slice around `pPoint` with the radius `dDist`, `dCentralAngle` degrees wide, about the polar direction
    // `dPolarDir` in degrees; the arc is a true arc. An angle above 360 becomes 90 after the radii were placed.
    // `pFeatureClass` has no effect. Nothing after a failure, which is reported.
    std::optional<Polygon> QZ_CreatePieSegment(FeatureClass& pFeatureClass, const Point& pPoint, double dDist,
                                               double& dCentralAngle, double dPolarDir, Application& pApp) noexcept;

    // --- Single features; the version ---

    // Deletes every feature that the cursor delivers, null shapes included; shapes are added to the refresh area
    // before. `fCount` sizes the progress ("Deleting features: "), nothing else; `sSource` has no effect. False after a
    // failure, which is reported; what was deleted before it stays deleted.
    bool QZ_QuickDelete(FeatureCursor& pFeatureCursor, std::int32_t fCount, RefreshArea& pRefresh,
                        const std::string& sSource, Application& pApp) noexcept;

    // Inserts a copy of a feature with another shape through the insert cursor. Numeric fields whose split rule in
    // `updateDic`, an attribute rule dictionary, is "Proportion" get their value times the new shape's share of the old
    // one's length or area; all other editable fields are copied, except "QZ_ID".
    // False after a failure, which is reported; nothing is inserted then.
    bool QZ_InsertFeatureRun(FeatureCursor& pInsertFeatureCursor, FeatureBuffer& pInsertFeatureBuffer,
                             Feature* pOrigFeature, const Geometry& pGeometry, const Dictionary* updateDic) noexcept;

    // Stores a new point with the values of `fieldDic`: field name to value, "<NULL>" for null. z is 0 and m undefined
    // in classes that have them. Values that domains or subtypes forbid are shown and left out. With `bEditing` false
    // data in a database are saved at once, in an edit session of the method's own.
    // False after a failure, which is reported.
    bool QZ_AddPointA(FeatureLayer& pFLayer, const Point& pPoint, RefreshArea& pRefresh, const Dictionary* fieldDic,
                      bool bEditing, Application& pApp) noexcept;

    // Writes the values of `fieldDic`, as QZ_AddPointA does, into every feature with a shape that the update cursor
    // delivers. With `bEditing` false each feature of a database is saved by itself.
    // False at the first feature that can't be written, after the failure was reported; those before it are written.
    bool QZ_PasteAttributes(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, RefreshArea& pRefresh,
                            const Dictionary* fieldDic, bool bEditing, Application& pApp) noexcept;

    // "10.2", the version of the component. `sQZArcGIS` becomes the platform release it is built for ("9.2"),
    // `sQZBuilt` the day it was built ("30 May 2012").
    std::string GetQZVersion(std::string& sQZArcGIS, std::string& sQZBuilt) noexcept;
};

} // namespace qz
