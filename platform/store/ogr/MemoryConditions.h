#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/data/FeatureSource.h"

namespace qz {

// Which records of a table in memory satisfy an SQL condition, in their order; by the rules of a GeoPackage. Throws
// UsageError with the database's words for a wrong one.
[[nodiscard]] std::vector<ObjectId> idsOfMatchingRecords(const Schema& schema, const std::string& condition,
                                                         std::span<const RecordPtr> records);

} // namespace qz
