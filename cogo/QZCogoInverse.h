#pragma once

#include <cstdint>
#include <string>

#include "platform/app/Application.h"
#include "platform/geometry/Curve.h"

namespace qz {

// How directions are written; the words are those of QZ_FormatDirection.
struct DirectionFormat {
    std::string type;
    std::string unit;
    std::int16_t decimals = 2;
};

// Replaces every line of the cursor by a feature for each of its segments, with the values of the line, z, m and arcs
// kept. Fields of these names, in any letter case, get the course of the segment:
//   Direction                    text of its polar direction, of an arc that of its chord
//   Distance                     its length, of an arc that of its chord
//   XStart, YStart, XEnd, YEnd   its ends
//   Delta, Radius, Tangent, ArcLength, Side    of arcs only, see ArcCogo
// Numbers are stored as computed; fields round them to their scale. Segments without length, and lines of such only,
// are passed over. A line is deleted also when not all of its segments could be stored; the result is then false, and
// the caller gives up the edit operation. `expected` sizes the progress.
// False, with a notice and without a change, for a direction type or unit that is not known; false after a failure,
// which is reported.
[[nodiscard]] bool QZ_CogoInverse(Application& application, FeatureLayer& layer, FeatureCursor& cursor,
                                  std::int32_t expected, RefreshArea& refresh, const DirectionFormat& format);

// Inserts one segment, `shape` being nothing else, with the values of the source. False, with a notice, for a shape
// that is neither a line nor a polygon; false after a failure, which is reported.
[[nodiscard]] bool QZ_InsertInversedFeature(FeatureCursor& insertCursor, FeatureBuffer& buffer, const Feature& source,
                                            const Geometry& shape, const CurveSegment& segment,
                                            const DirectionFormat& format);

struct ArcCogo {
    double direction = 0; // of the chord, polar, degrees
    double distance = 0;  // the chord
    double delta = 0;     // central angle in degrees, below 0 for an arc that runs clockwise
    double radius = 0;
    double tangent = 0; // from an end to where the tangents of both ends meet: radius * tan(delta / 2)
    double arcLength = 0;
    std::string side; // "L": counter-clockwise, the centre is on the left; else "R"
};
// Arcs as long as a half circle within the tolerance, in the units of the arc, have the tangent 0.
[[nodiscard]] ArcCogo QZ_ArcCogo(const CircularArc& arc, XY start, XY end, double tolerance);

// The polar direction in degrees, above -180 up to 180, counter-clockwise from east; 0 when the ends are one place.
[[nodiscard]] double QZ_LineAngle(XY start, XY end);

} // namespace qz
