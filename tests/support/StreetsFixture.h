#pragma once

#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "common/ApplicationReference.h"
#include "component/MKQZGenFunRun.h"
#include "host/HeadlessHost.h"
#include "host/RefreshAreaRecord.h"
#include "platform/app/Services.h"
#include "tests/support/MemoryData.h"

namespace qz::test {

// A layer of lines "streets" with NAME, FROM_L, TO_L and LENGTH, under a map; its rules are those of a table: address
// ranges from FROM_L to TO_L and a proportional LENGTH.
struct Streets {
    explicit Streets(GeometryKind kind = GeometryKind::polyline,
                     const SpatialReference& spatialReference = SpatialReference::fromEpsg(25832))
        : reference(spatialReference) {
        services().showMessage = [this](const std::string& text) { messages.push_back(text); };
        auto store = std::make_unique<MemoryStore>();
        Schema schema = roadSchema();
        schema.name = "streets";
        schema.shape->kind = kind;
        schema.shape->spatialReference = reference;
        schema.fields = {field("NAME", FieldType::string), field("FROM_L", FieldType::integer),
                         field("TO_L", FieldType::integer), field("LENGTH", FieldType::doubleFloat),
                         field("PHOTO", FieldType::blob)};
        table = &store->addTable(std::move(schema));
        Schema rules;
        rules.name = "streets_QZAttributeRules";
        rules.classId = 2;
        rules.fields = {field("FieldName", FieldType::string), field("SplitRule", FieldType::string),
                        field("PairField", FieldType::string), field("UnionRule", FieldType::string)};
        MemoryTable& ruleTable = store->addTable(std::move(rules));
        const auto text = [](const char* content) { return Value(std::string(content)); };
        ruleTable.add(std::nullopt, {text("FROM_L"), text("Range Address"), text("TO_L"), text("Range Address")});
        ruleTable.add(std::nullopt, {text("LENGTH"), text("Proportion"), text("None"), text("Sum")});
        workspace = std::make_unique<OverlayWorkspace>(std::move(store));
        layer = &host.focusMap().addLayer("streets", *workspace->table("streets"));
        setApplication(host);
    }

    ObjectId add(const std::string& wkt, const std::vector<Value>& values = {}) {
        std::optional<Geometry> shape;
        if (!wkt.empty()) {
            shape = geometryFromWkt(wkt);
            shape->traits().spatialReference = reference;
        }
        return table->add(std::move(shape), values);
    }

    // Object ids with their shapes, "7 LINESTRING …", as they are now.
    [[nodiscard]] std::vector<std::string> shapes() { return listed({}); }
    // Without the ids, sorted.
    [[nodiscard]] std::vector<std::string> sortedShapes() {
        std::vector<std::string> found = shapes();
        std::ranges::for_each(found, [](std::string& shape) { shape.erase(0, shape.find(' ') + 1); });
        std::ranges::sort(found);
        return found;
    }
    // The same with the values of a field behind.
    [[nodiscard]] std::vector<std::string> listed(const std::vector<const char*>& fields) {
        std::vector<std::string> rows;
        const CursorPtr cursor = streets().search({});
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            std::string text = row->shape() ? toWkt(*row->shape()) : "null";
            for (const char* name : fields) {
                text += " " + toText(row->value(*streets().schema().findField(name)));
            }
            rows.push_back(std::to_string(row->objectId()) + " " + text);
        }
        return rows;
    }

    [[nodiscard]] FeatureClass& streets() { return layer->featureClass(); }
    [[nodiscard]] CursorPtr all() { return streets().update({}); }
    [[nodiscard]] CursorPtr only(ObjectId id) {
        FeatureFilter filter;
        filter.ids = std::vector{id};
        return streets().update(filter);
    }

    ScopedServices restored;
    std::vector<std::string> messages;
    std::ostringstream terminal;
    HeadlessHost host{terminal, false};
    RefreshAreaRecord refresh;
    MKQZGenFunRun component;
    SpatialReference reference;
    MemoryTable* table = nullptr;
    std::unique_ptr<OverlayWorkspace> workspace;
    FeatureLayer* layer = nullptr;
};

using Rows = std::vector<std::string>;

} // namespace qz::test
