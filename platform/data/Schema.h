#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/data/Field.h"
#include "platform/geometry/Geometry.h"

namespace qz {

// What the shapes of a class can be.
struct ShapeDefinition {
    std::optional<GeometryKind> kind; // nothing: a class of mixed kinds
    bool hasZ = false;
    bool hasM = false;
    bool allowsMultipart = true;
    bool allowsArcs = true;
    bool allowsEmpty = true; // else an empty shape can't be told from a null one
    bool allowsUndefinedZ = true;
    SpatialReference spatialReference; // with the grid of the class
};

struct Subtypes {
    std::string field;
    std::int32_t defaultCode = 0;
    std::vector<std::pair<std::int32_t, std::string>> codes; // code and name
};

// The description of a feature class, or of a table of attributes when it has no shapes. The object id and the shape
// are fields like others, so that field indexes count them.
struct Schema {
    std::string name;
    std::vector<Field> fields;
    std::optional<std::size_t> objectIdField;
    std::optional<std::size_t> shapeField;
    std::optional<ShapeDefinition> shape;
    std::optional<Subtypes> subtypes;
    std::int32_t classId = -1;  // -1: file-based data, not registered with a geodatabase
    std::string featureDataset; // empty: belongs to none

    // Letter case is ignored.
    [[nodiscard]] std::optional<std::size_t> findField(std::string_view name) const;
};

} // namespace qz
