#pragma once

#include "component/Arguments.h"

namespace qz {

// What stands for a parameter that nothing needs: false, 0, an empty text, an empty geometry. "Nothing" for objects.
[[nodiscard]] Argument neutralArgument(ParameterKind kind);

// Makes the argument one of the kind: numbers become numbers of another width (half to even), geometries of the four
// kinds become the one asked for. False when it is of another nature. Throws PlatformError ("Overflow") for a number
// that the kind can't hold.
[[nodiscard]] bool convertArgument(Argument& argument, ParameterKind kind);

} // namespace qz
