#pragma once

#include <string>
#include <string_view>

namespace qz {

// How the direction of a line is told, in degrees:
//
//                       north  east  south  west
//   north azimuth           0    90    180   270   clockwise from north
//   south azimuth         180   270      0    90   clockwise from south
//   polar                  90     0    270   180   counter-clockwise from east
//   quadrant bearing     N 0 E  N 90 E  S 0 E  N 90 W   from north or south towards east or west
enum class DirectionType { unknown = 0, northAzimuth = 1, southAzimuth = 2, polar = 3, quadrantBearing = 4 };

// The full circle has 400 gradians, which are also called gons.
enum class DirectionUnit {
    unknown = 0,
    decimalDegrees = 2,
    degreesMinutesSeconds = 3,
    radians = 9101,
    gradians = 9105,
    gons = 9106
};

// Turns the direction of a line, as a number or a text, into its text in any type and unit. Setting tells whether the
// direction was accepted; one that was not leaves the direction set before. The first is east.
//
// Texts, whatever the number format of the user's system:
//   decimal           "45.50"       in the unit, below the full circle
//   degrees, minutes and seconds    "45-30-00.00"; minutes and the whole seconds have two digits
//   quadrant bearing  "N 45.50 E", "N 45-30-00.00 E"
class AngularConverter {
public:
    // Any finite angle; turns of the full circle are dropped. Refuses what is not finite, unknown types and units, and
    // quadrant bearings, which are no numbers. An angle in degrees, minutes and seconds is one in degrees.
    [[nodiscard]] bool setAngle(double angle, DirectionType type, DirectionUnit unit);

    // Reads a text as `text` writes it; also with other digits and decimals, blanks around, and without the blanks of a
    // bearing. Minutes and seconds may be 60 where that carries: "45-29-60.00" is 45.5 degrees, "45-60-0.00" is 46.
    // Refuses all other texts: those with a sign, beyond the full circle, or, as a bearing, beyond the right angle.
    [[nodiscard]] bool setText(std::string_view text, DirectionType type, DirectionUnit unit);

    // Counter-clockwise from east, in [0, 360).
    [[nodiscard]] double polarDegrees() const noexcept { return polarDegrees_; }

    // `decimals`, 0 to 15 and else the nearest of these, belong to the last field; those finer than an angle in degrees
    // can hold (seconds 8, degrees and gons 11, radians 13) are zeros. Halves, and what is a billionth of a second
    // short of one, are rounded up. Empty for an unknown type or unit.
    //   setText(t) and text(...) == t for every t written with seconds below 60
    // Degrees and minutes are not rounded: 29 minutes 59.996 seconds are "29-60.00" with 2 decimals.
    // Decimal texts that round to the full circle are 0. Bearings that round to an axis are written as that axis.
    [[nodiscard]] std::string text(DirectionType type, DirectionUnit unit, int decimals) const;

private:
    double polarDegrees_ = 0;
};

} // namespace qz
