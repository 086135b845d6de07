#pragma once

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "component/MKQZGenFunRun.h"
#include "host/HeadlessHost.h"
#include "host/RefreshAreaRecord.h"
#include "platform/data/overlay/OverlayClass.h"
#include "platform/store/memory/MemoryStore.h"

namespace qz::bench {

inline Field fieldOf(const char* name, FieldType type) {
    Field field;
    field.name = field.alias = name;
    field.type = type;
    return field;
}

// A layer in memory being edited, under a map in UTM: its features have a name and an address range, and no rules but
// the default ones.
struct MemoryLayer {
    explicit MemoryLayer(std::vector<Geometry> shapes) {
        auto store = std::make_unique<MemoryStore>();
        Schema schema;
        schema.name = "features";
        schema.classId = 1;
        schema.shape.emplace();
        schema.shape->kind = shapes.front().kind();
        schema.shape->spatialReference = reference;
        schema.fields = {fieldOf("NAME", FieldType::string), fieldOf("FROM_L", FieldType::integer),
                         fieldOf("TO_L", FieldType::integer)};
        MemoryTable& table = store->addTable(std::move(schema));
        for (Geometry& shape : shapes) {
            shape.traits().spatialReference = reference;
            table.add(std::move(shape), {std::string("Elm Row"), 1.0, 99.0});
        }
        workspace = std::make_unique<OverlayWorkspace>(std::move(store));
        layer = &host.focusMap().addLayer("features", *workspace->table("features"));
        workspace->startEditing();
    }

    [[nodiscard]] FeatureClass& featureClass() { return layer->featureClass(); }

    SpatialReference reference = SpatialReference::fromEpsg(25832);
    std::ostringstream terminal;
    HeadlessHost host{terminal, false};
    RefreshAreaRecord refresh;
    MKQZGenFunRun component;
    std::unique_ptr<OverlayWorkspace> workspace;
    FeatureLayer* layer = nullptr;
};

} // namespace qz::bench
