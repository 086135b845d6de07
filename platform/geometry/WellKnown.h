#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geometry/Geometry.h"

namespace qz {

// Well-known text and binary of ISO 13249-3, with Z, M, ZM, CIRCULARSTRING, COMPOUNDCURVE, CURVEPOLYGON, MULTICURVE
// and MULTISURFACE. Polylines and polygons of one part are written as LINESTRING / POLYGON (or their curved kinds), of
// several as MULTI…; NaN stands for undefined z and m. Numbers have as many digits as it takes to read the same double.
// A clockwise full circle in a polyline is written as two half circles, since three points can't tell its direction.
// Polygon rings are put into the orientation and order of this library on reading, and written so.
[[nodiscard]] std::string toWkt(const Geometry& geometry);
[[nodiscard]] std::string toWkt(const GeometryCollection& collection);
// Throws PlatformError that quotes the text and says what was expected.
[[nodiscard]] Geometry geometryFromWkt(std::string_view wkt);
[[nodiscard]] GeometryCollection collectionFromWkt(std::string_view wkt);

[[nodiscard]] std::vector<std::uint8_t> toWkb(const Geometry& geometry);
[[nodiscard]] Geometry geometryFromWkb(std::span<const std::uint8_t> wkb);

} // namespace qz
