#pragma once

#include <map>
#include <optional>
#include <vector>

#include "platform/data/overlay/OverlayClass.h"

namespace qz {

// What a run did to the rows of one class, whatever it did to a row in between.
struct RowChanges {
    std::vector<RecordPtr> inserted;    // ascending ids, as they are after the run
    std::vector<RecordPtr> updated;     // ascending ids, as they are after the run
    std::vector<ObjectId> deleted;      // ascending
    std::vector<Geometry> shapesBefore; // of the rows updated and deleted, in the class's reference
    std::vector<Geometry> shapesAfter;  // of the rows inserted and updated

    [[nodiscard]] bool empty() const noexcept { return inserted.empty() && updated.empty() && deleted.empty(); }
};

// Listens to the writes of a workspace from its making to its end and remembers which rows of the class they concern.
class ChangeRecorder {
public:
    // `keepShapes`: remember the shapes as they were, at the cost of reading each row once more.
    ChangeRecorder(OverlayWorkspace& workspace, OverlayClass& featureClass, bool keepShapes);
    ~ChangeRecorder();
    ChangeRecorder(const ChangeRecorder&) = delete;
    ChangeRecorder& operator=(const ChangeRecorder&) = delete;

    [[nodiscard]] RowChanges changes();

private:
    void note(EditedTable& table, ObjectId id, const EditedRow& next);
    void addChanged(ObjectId id, RowChanges& changes) const;
    void addShapeAfter(const FeatureRecord& record, RowChanges& changes) const;

    OverlayWorkspace& workspace_;
    OverlayClass& class_;
    bool keepShapes_;
    // In the order of the writes. A large run writes millions of rows: no more than the id is kept of each.
    std::vector<ObjectId> added_;
    std::vector<ObjectId> changed_;                            // some of them added before
    std::map<ObjectId, std::optional<Geometry>> shapesBefore_; // when shapes are kept
};

} // namespace qz
