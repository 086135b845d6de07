#pragma once

#include <map>
#include <string>

#include <fmt/format.h>

#include "platform/data/FeatureSource.h"
#include "platform/geometry/WellKnown.h"

namespace qz::test {

// A row with its shape and all its values.
inline std::string rowText(const Schema& schema, const FeatureRecord& record) {
    std::string row = fmt::format("{} | {}", record.id, record.shape ? toWkt(*record.shape) : "null");
    const std::size_t first = schema.shapeField ? 2 : 1;
    for (std::size_t i = first; i < record.values.size(); ++i) {
        row += " | " + toText(record.values[i]);
    }
    return row;
}

// By object id.
inline std::map<ObjectId, RecordPtr> recordsOf(FeatureSource& table) {
    std::map<ObjectId, RecordPtr> records;
    for (RecordPtr& record : table.read(table.ids())) {
        records.emplace(record->id, std::move(record));
    }
    return records;
}

} // namespace qz::test
