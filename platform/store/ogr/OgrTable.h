#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/geometry/EnvelopeIndex.h"
#include "platform/store/ogr/ConditionScratch.h"
#include "platform/store/ogr/OgrRecords.h"

namespace qz {

// Where a table stands in its store.
struct TableIdentity {
    std::int32_t classId = -1;
    std::string featureDataset;
};

// A table read through GDAL. No walk of GDAL outlives a call, so that a save never meets an open one.
class OgrTable final : public FeatureSource {
public:
    OgrTable(const FormatRules& rules, GDALDataset& dataset, OGRLayer& layer, const TableIdentity& identity);

    // Goes on with another handle of the same table, after its file was replaced or a field added.
    void attach(GDALDataset& dataset, OGRLayer& layer);
    // A copy is known by its new name before it is there.
    void rename(const std::string& name);
    // Forgets what was remembered of the rows, after they were changed.
    void forgetRows();

    [[nodiscard]] GDALDataset& dataset() { return *dataset_; }
    [[nodiscard]] OGRLayer& layer() { return *layer_; }
    [[nodiscard]] const OgrRecordMapper& mapper() const { return mapper_; }

    [[nodiscard]] const Schema& schema() const override { return schema_; }
    [[nodiscard]] std::int64_t count() override;
    [[nodiscard]] Envelope extent() override;
    [[nodiscard]] std::vector<ObjectId> ids() override;
    [[nodiscard]] std::vector<ObjectId> idsIn(const Envelope& window) override;
    [[nodiscard]] std::vector<ObjectId> idsWhere(const std::string& condition) override;
    [[nodiscard]] std::vector<ObjectId> idsWhere(const std::string& condition,
                                                 std::span<const RecordPtr> records) override;
    [[nodiscard]] RecordPtr read(ObjectId id) override;
    [[nodiscard]] std::vector<RecordPtr> read(std::span<const ObjectId> ids) override;
    [[nodiscard]] ObjectId nextId() override;
    void checkStorable(const FeatureRecord& record) const override;

private:
    // The envelopes of all rows, for tables whose store has no index that answers by envelope.
    struct EnvelopeTree {
        std::vector<ObjectId> ids;
        std::vector<Envelope> envelopes;
        PackedEnvelopeTree tree;
    };

    [[nodiscard]] const EnvelopeTree& envelopeTree();
    [[nodiscard]] std::vector<ObjectId> idsInTree(const Envelope& window);
    [[nodiscard]] std::vector<ObjectId> idsInStoredIndex(const Envelope& window);
    [[nodiscard]] std::vector<RecordPtr> readFiltered(std::span<const ObjectId> ids);

    const FormatRules& rules_;
    TableIdentity identity_;
    std::string name_; // empty: that of the layer
    GDALDataset* dataset_;
    OGRLayer* layer_;
    Schema schema_;
    OgrRecordMapper mapper_;
    bool hasStoredIndex_ = false;
    std::optional<std::int64_t> count_;
    std::optional<EnvelopeTree> envelopeTree_;
    ConditionScratch scratch_;
};

} // namespace qz
