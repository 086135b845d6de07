#include "platform/store/ogr/MemoryConditions.h"

#include "platform/store/ogr/ConditionScratch.h"
#include "platform/store/ogr/OgrSchema.h"

namespace qz {

std::vector<ObjectId> idsOfMatchingRecords(const Schema& schema, const std::string& condition,
                                           std::span<const RecordPtr> records) {
    const DatasetPtr dataset(ogrDriver("Memory").Create("model", 0, 0, 0, GDT_Unknown, nullptr));
    OGRLayer& model = *dataset->CreateLayer(schema.name.c_str(), nullptr, schema.shape ? wkbUnknown : wkbNone);
    const OgrRecordMapper mapper(schema, rulesOf(StoreFormat::geoPackage));
    for (std::size_t field = mapper.firstAttribute(); field < schema.fields.size(); ++field) {
        createField(model, schema.fields[field]);
    }
    return ConditionScratch().satisfying(model, mapper, true, condition, records);
}

} // namespace qz
