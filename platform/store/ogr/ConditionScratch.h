#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/data/FeatureSource.h"
#include "platform/store/ogr/OgrRecords.h"

namespace qz {

// Evaluates conditions on rows that are not stored as they are: they are copied into a layer of the same name and
// fields in memory, in the store's own dialect.
class ConditionScratch {
public:
    // Which records satisfy the condition, in their order. Throws UsageError with the store's words for a wrong one.
    // `model`: the stored layer.
    [[nodiscard]] std::vector<ObjectId> satisfying(OGRLayer& model, const OgrRecordMapper& mapper, bool sqlConditions,
                                                   const std::string& condition, std::span<const RecordPtr> records);
    // Needed after the model's fields changed.
    void reset() { dataset_.reset(); }

private:
    void create(OGRLayer& model, bool sqlConditions);

    DatasetPtr dataset_;
    OGRLayer* layer_ = nullptr;
};

} // namespace qz
