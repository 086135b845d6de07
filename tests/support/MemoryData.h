#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/data/overlay/OverlayClass.h"
#include "platform/geometry/WellKnown.h"
#include "platform/store/memory/MemoryStore.h"

namespace qz::test {

inline Field field(const std::string& name, FieldType type) {
    Field result;
    result.name = name;
    result.alias = name;
    result.type = type;
    return result;
}

// A class of lines, "roads", with a text "NAME" and an integer "LANES".
inline Schema roadSchema() {
    Schema schema;
    schema.name = "roads";
    schema.classId = 1;
    schema.shape.emplace();
    schema.shape->kind = GeometryKind::polyline;
    schema.shape->hasZ = true;
    schema.shape->hasM = true;
    schema.fields = {field("NAME", FieldType::string), field("LANES", FieldType::integer)};
    return schema;
}

// Field indexes of roadSchema() after the object id and the shape.
inline constexpr std::size_t nameField = 2;
inline constexpr std::size_t lanesField = 3;

// A workspace in memory with one class. Rows are added before the first edit.
struct MemoryData {
    explicit MemoryData(Schema schema = roadSchema(), OverlayOptions options = {}) {
        auto made = std::make_unique<MemoryStore>();
        name = schema.name;
        table = &made->addTable(std::move(schema));
        workspace = std::make_unique<OverlayWorkspace>(std::move(made), std::move(options));
    }

    ObjectId add(const std::string& wkt, const std::vector<Value>& values = {}) {
        return table->add(wkt.empty() ? std::optional<Geometry>() : geometryFromWkt(wkt), values);
    }
    [[nodiscard]] OverlayClass& featureClass() { return static_cast<OverlayClass&>(*workspace->table(name)); }
    // As a reader sees it now; "null" for a null shape, "none" for a missing row.
    [[nodiscard]] std::string wkt(ObjectId id) {
        const FeaturePtr row = featureClass().feature(id);
        if (!row) {
            return "none";
        }
        return row->shape() ? toWkt(*row->shape()) : "null";
    }
    // As the store holds it.
    [[nodiscard]] std::string storedWkt(ObjectId id) {
        const RecordPtr record = table->read(id);
        return record && record->shape ? toWkt(*record->shape) : "none";
    }

    std::string name;
    MemoryTable* table = nullptr;
    std::unique_ptr<OverlayWorkspace> workspace;
};

inline void setShape(FeatureClass& featureClass, ObjectId id, const std::string& wkt) {
    const FeaturePtr row = featureClass.feature(id);
    row->setShape(geometryFromWkt(wkt));
    row->store();
}

inline ObjectId insertRow(FeatureClass& featureClass, const std::string& wkt) {
    const FeaturePtr row = featureClass.createFeature();
    row->setShape(geometryFromWkt(wkt));
    row->store();
    return row->objectId();
}

} // namespace qz::test
