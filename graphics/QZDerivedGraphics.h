#pragma once

#include <cstdint>
#include <string>

#include "platform/app/Application.h"

namespace qz {

// Draw shapes derived from the features of a cursor as elements of the map's graphics, with the default symbols;
// nothing is written to classes. `sName` labels them, see GraphicLabel. `expected` moves the progress. Features without
// a shape are passed over, and so are kinds of shapes that a method doesn't speak of. False after a failure, which is
// reported.

// The shapes themselves.
[[nodiscard]] bool QZ_FeaturesToGraphicsRun(Application& application, FeatureCursor& cursor, std::string& sName,
                                            std::int32_t expected);
// The centroids of polygons.
[[nodiscard]] bool QZ_CentroidGraphics(Application& application, FeatureCursor& cursor, std::string& sName,
                                       std::int32_t expected);
// Every vertex of lines and polygons, the one that closes a ring included.
[[nodiscard]] bool QZ_VertexGraphics(Application& application, FeatureCursor& cursor, std::string& sName,
                                     std::int32_t expected);

// One shape for each line or polygon; with `bSingle`, and always for points, one around all, with the label of the last
// feature.

// Axis-parallel rectangles.
[[nodiscard]] bool QZ_EnvelopeGraphics(Application& application, FeatureCursor& cursor, std::string& sName,
                                       std::int32_t expected, bool bSingle);
// Convex hulls; of points on one line the line between the outermost, of one place a point.
[[nodiscard]] bool QZ_ConvexGraphics(Application& application, FeatureCursor& cursor, std::string& sName,
                                     std::int32_t expected, bool bSingle);
// Smallest circles; none where all points are at one place.
[[nodiscard]] bool QZ_BoundingCircleGraphics(Application& application, FeatureCursor& cursor, std::string& sName,
                                             std::int32_t expected, bool bSingle);

// Rectangles along the main axes of lines and polygons, see QZ_BoundingRectangle.
[[nodiscard]] bool QZ_BoundingRectangleGraphics(Application& application, FeatureCursor& cursor, std::string& sName,
                                                std::int32_t expected);
// Circles of the areas of polygons around their centroids.
[[nodiscard]] bool QZ_EACircleGraphics(Application& application, FeatureCursor& cursor, std::string& sName,
                                       std::int32_t expected);
// Buffers at the distance, in the units of the shapes; none where nothing is left at a negative one.
[[nodiscard]] bool QZ_BufferGraphics(Application& application, FeatureCursor& cursor, std::string& sName,
                                     std::int32_t expected, double dBuf);
// The point at the distance along the first line, or along the boundary of the first polygon. False, with a notice, for
// a distance beyond its length.
[[nodiscard]] bool QZ_GraphicPointAtDistance(Application& application, FeatureCursor& cursor, std::string& sName,
                                             double dSplitLength);
// Random points inside each polygon. Where there is no room for all, those that were found, which a notice tells.
[[nodiscard]] bool QZ_RandomGraphicsPg(Application& application, FeatureCursor& cursor, std::string& sName,
                                       std::int32_t expected, std::int32_t lNumPoints);
// Random points on each line.
[[nodiscard]] bool QZ_RandomGraphicsPl(Application& application, FeatureCursor& cursor, std::string& sName,
                                       std::int32_t expected, std::int32_t lNumPoints);

} // namespace qz
