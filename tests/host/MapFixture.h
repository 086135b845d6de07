#pragma once

#include <string>

#include "host/HeadlessMap.h"
#include "platform/data/overlay/OverlayWorkspace.h"
#include "platform/geometry/WellKnown.h"
#include "platform/store/memory/MemoryStore.h"

namespace qz {

// A workspace in memory with tables made of well-known text.
class MapFixture {
public:
    MapFixture() : owned_(std::make_unique<MemoryStore>()), store_(*owned_) {}

    // Object ids are 1, 2, … in the order of the shapes. To be called before the workspace is asked for.
    void addTable(const std::string& name, GeometryKind kind, int epsg, const std::vector<std::string>& shapes) {
        Schema schema;
        schema.name = name;
        schema.shape.emplace();
        schema.shape->kind = kind;
        schema.shape->spatialReference = SpatialReference::fromEpsg(epsg);
        MemoryTable& table = store_.addTable(std::move(schema));
        for (const std::string& wkt : shapes) {
            Geometry shape = geometryFromWkt(wkt);
            shape.traits().spatialReference = SpatialReference::fromEpsg(epsg);
            table.add(std::move(shape));
        }
    }

    OverlayWorkspace& workspace() {
        if (!workspace_) {
            workspace_ = std::make_unique<OverlayWorkspace>(std::move(owned_));
        }
        return *workspace_;
    }
    FeatureClass& table(const std::string& name) { return *workspace().table(name); }

private:
    std::unique_ptr<MemoryStore> owned_;
    MemoryStore& store_;
    std::unique_ptr<OverlayWorkspace> workspace_;
};

} // namespace qz
