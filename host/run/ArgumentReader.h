#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "component/MethodTable.h"
#include "platform/geometry/Envelope.h"

namespace qz {

// Values as users write them. All throw UsageError that quotes the value and says what was expected.

// "xmin,ymin,xmax,ymax"
[[nodiscard]] Envelope readEnvelope(std::string_view text);
// "3,7,12"
[[nodiscard]] std::vector<ObjectId> readIds(std::string_view text);
// {"NAME": "value", "COUNT": 3, "DATE": null}; null items mean null.
[[nodiscard]] Dictionary readDictionary(std::string_view text);

// The value of a parameter that users can write: a plain value, a geometry (WKT, or "x,y" for a point), an envelope, a
// spatial reference ("EPSG:n"), a dictionary. Geometries are in `reference`. "null" is nothing for all but text.
// Nothing for the kinds that only a host can supply.
[[nodiscard]] std::optional<Argument> readArgument(const MethodInfo& method, const ParameterInfo& parameter,
                                                   const std::string& text, const SpatialReference& reference);

} // namespace qz
