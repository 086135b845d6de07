#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <unordered_set>
#include <vector>

#include "platform/data/FeatureClass.h"
#include "platform/data/overlay/EditedRows.h"
#include "platform/geometry/EnvelopeIndex.h"

namespace qz {

// A stored table with the edits of the open session merged into every read. Memory grows with the edits.
class EditedTable {
public:
    explicit EditedTable(FeatureSource& source) : source_(source) {}

    [[nodiscard]] FeatureSource& source() const noexcept { return source_; }
    [[nodiscard]] const Schema& schema() const { return source_.schema(); }

    [[nodiscard]] std::int64_t count();
    [[nodiscard]] Envelope extent();
    // Nothing when there is no such row, or it was deleted.
    [[nodiscard]] RecordPtr read(ObjectId id);
    // One an id, ascending ids.
    [[nodiscard]] std::vector<RecordPtr> read(std::span<const ObjectId> ids);
    // Ascending. A shape's reference is respected.
    [[nodiscard]] std::vector<ObjectId> select(const FeatureFilter& filter);

    // Nothing for a row that is as stored.
    [[nodiscard]] const EditedRow* edited(ObjectId id) const;
    [[nodiscard]] bool isDeleted(ObjectId id) const;
    // Puts a row into another state (nothing: as stored) and gives the state it had.
    std::optional<EditedRow> exchange(ObjectId id, std::optional<EditedRow> state);
    // Ids are never handed out twice, not even after undo.
    [[nodiscard]] ObjectId newId();

    [[nodiscard]] bool hasEdits() const noexcept { return !edits_.empty(); }
    [[nodiscard]] TableChanges changes() const;
    // The edits are in the store now, or given up.
    void editsSaved();
    void editsDiscarded();
    // Changes whenever stored rows may read differently than before.
    [[nodiscard]] std::uint64_t storeRevision() const noexcept { return storeRevision_; }

private:
    [[nodiscard]] std::vector<ObjectId> mergedIds(std::vector<ObjectId> stored,
                                                  const std::vector<ObjectId>& editedHits) const;
    [[nodiscard]] std::vector<ObjectId> allIds();
    [[nodiscard]] std::vector<ObjectId> idsIn(const Envelope& window);
    [[nodiscard]] std::vector<ObjectId> idsWhere(const std::string& condition);
    [[nodiscard]] std::vector<ObjectId> candidates(const FeatureFilter& filter, const std::optional<Geometry>& shape);
    [[nodiscard]] std::vector<ObjectId> existing(std::vector<ObjectId> ids);
    [[nodiscard]] std::vector<ObjectId> satisfying(const std::string& condition, std::vector<ObjectId> ids);
    [[nodiscard]] std::vector<ObjectId> related(const Geometry& shape, SpatialRelation relation,
                                                const std::vector<ObjectId>& ids);
    // Ascending ids of the rows that were changed or added.
    [[nodiscard]] std::vector<ObjectId> editedIds() const;
    [[nodiscard]] EnvelopeIndex& updatedIndex();

    FeatureSource& source_;
    EditedRows edits_;
    std::unordered_set<ObjectId> savedDeletions_;
    std::optional<EnvelopeIndex> index_; // of the edited rows; nothing until it is asked
    std::vector<ObjectId> notIndexed_;   // edited since it was last asked
    std::int64_t countDifference_ = 0;
    std::optional<ObjectId> firstNewId_; // of the store; asked for with the first new row
    ObjectId nextId_ = 0;
    std::uint64_t storeRevision_ = 0;
};

} // namespace qz
