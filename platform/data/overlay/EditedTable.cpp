#include "platform/data/overlay/EditedTable.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/geometry/Project.h"

namespace qz {

namespace {

// Rows read at once while a selection is tested: large enough for the store's range reads, small in memory.
constexpr std::size_t chunkSize = 1024;

// Up to so many candidates are read and tested one by one; more are looked for in a list that the store makes.
constexpr std::size_t fewCandidates = 2000;

// What a row adds to the number of rows of the store.
std::int64_t countEffect(const std::optional<EditedRow>& row) {
    if (!row) {
        return 0;
    }
    return (row->record ? 1 : 0) - (row->isNew ? 0 : 1);
}

std::optional<Geometry> inReference(const std::optional<Geometry>& shape, const Schema& schema) {
    std::optional<Geometry> projectedShape = shape;
    if (projectedShape && schema.shape) {
        project(*projectedShape, schema.shape->spatialReference);
    }
    return projectedShape;
}

std::vector<ObjectId> sortedUnique(std::vector<ObjectId> ids) {
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
}

// Both ascending.
std::vector<ObjectId> inBoth(const std::vector<ObjectId>& a, const std::vector<ObjectId>& b) {
    std::vector<ObjectId> both;
    std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(both));
    return both;
}

} // namespace

std::int64_t EditedTable::count() {
    return source_.count() + countDifference_;
}

Envelope EditedTable::extent() {
    Envelope extent = source_.extent();
    edits_.forEach([&](ObjectId, const EditedRow& row) {
        if (row.record && row.record->shape) {
            extent.expandToInclude(row.record->shape->envelope());
        }
    });
    return extent;
}

const EditedRow* EditedTable::edited(ObjectId id) const {
    return edits_.find(id);
}

bool EditedTable::isDeleted(ObjectId id) const {
    const EditedRow* row = edited(id);
    return row ? row->record == nullptr : savedDeletions_.contains(id);
}

RecordPtr EditedTable::read(ObjectId id) {
    const EditedRow* row = edited(id);
    return row ? row->record : source_.read(id);
}

std::vector<RecordPtr> EditedTable::read(std::span<const ObjectId> ids) {
    std::vector<RecordPtr> records = source_.read(ids);
    if (!edits_.empty()) {
        for (std::size_t i = 0; i < ids.size(); ++i) {
            if (const EditedRow* row = edited(ids[i])) {
                records[i] = row->record;
            }
        }
    }
    return records;
}

std::vector<ObjectId> EditedTable::editedIds() const {
    std::vector<ObjectId> ids;
    edits_.forEach([&](ObjectId id, const EditedRow& row) {
        if (row.record) {
            ids.push_back(id);
        }
    });
    return ids;
}

std::vector<ObjectId> EditedTable::mergedIds(std::vector<ObjectId> stored,
                                             const std::vector<ObjectId>& editedHits) const {
    if (edits_.empty()) {
        return stored;
    }
    std::erase_if(stored, [this](ObjectId id) { return edited(id) != nullptr; });
    std::vector<ObjectId> merged;
    merged.reserve(stored.size() + editedHits.size());
    std::merge(stored.begin(), stored.end(), editedHits.begin(), editedHits.end(), std::back_inserter(merged));
    return merged;
}

std::vector<ObjectId> EditedTable::allIds() {
    return mergedIds(source_.ids(), editedIds());
}

EnvelopeIndex& EditedTable::updatedIndex() {
    const auto enter = [this](ObjectId id, const EditedRow* row) {
        if (row && row->record && row->record->shape) {
            index_->insert(id, row->record->shape->envelope());
        } else {
            index_->remove(id);
        }
    };
    if (index_) {
        std::ranges::for_each(notIndexed_, [&](ObjectId id) { enter(id, edited(id)); });
    } else {
        index_.emplace();
        edits_.forEach([&](ObjectId id, const EditedRow& row) { enter(id, &row); });
    }
    notIndexed_.clear();
    return *index_;
}

std::vector<ObjectId> EditedTable::idsIn(const Envelope& window) {
    return mergedIds(source_.idsIn(window), updatedIndex().query(window));
}

std::vector<ObjectId> EditedTable::idsWhere(const std::string& condition) {
    std::vector<ObjectId> stored = source_.idsWhere(condition);
    if (edits_.empty()) {
        return stored;
    }
    return mergedIds(std::move(stored), source_.idsWhere(condition, read(editedIds())));
}

std::vector<ObjectId> EditedTable::existing(std::vector<ObjectId> ids) {
    ids = sortedUnique(std::move(ids));
    if (ids.size() > fewCandidates) {
        return inBoth(ids, allIds());
    }
    const std::vector<RecordPtr> records = read(ids);
    std::vector<ObjectId> found;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (records[i]) {
            found.push_back(ids[i]);
        }
    }
    return found;
}

std::vector<ObjectId> EditedTable::satisfying(const std::string& condition, std::vector<ObjectId> ids) {
    if (ids.size() <= fewCandidates) {
        return source_.idsWhere(condition, read(ids));
    }
    return inBoth(ids, idsWhere(condition));
}

std::vector<ObjectId> EditedTable::related(const Geometry& shape, SpatialRelation relation,
                                           const std::vector<ObjectId>& ids) {
    const PreparedRelation prepared(shape, relation);
    std::vector<ObjectId> hits;
    for (std::size_t begin = 0; begin < ids.size(); begin += chunkSize) {
        const std::span<const ObjectId> chunk = std::span(ids).subspan(begin, std::min(chunkSize, ids.size() - begin));
        const std::vector<RecordPtr> records = read(chunk);
        for (std::size_t i = 0; i < chunk.size(); ++i) {
            if (records[i] && records[i]->shape && prepared.holdsFor(*records[i]->shape)) {
                hits.push_back(chunk[i]);
            }
        }
    }
    return hits;
}

std::vector<ObjectId> EditedTable::candidates(const FeatureFilter& filter, const std::optional<Geometry>& shape) {
    if (filter.ids) {
        return existing(*filter.ids);
    }
    if (shape) {
        const double tolerance = shape->spatialReference().grid().xyTolerance; // relations hold within it
        return idsIn(shape->envelope().expandedBy(tolerance, tolerance));
    }
    return filter.where.empty() ? allIds() : idsWhere(filter.where);
}

std::vector<ObjectId> EditedTable::select(const FeatureFilter& filter) {
    const std::optional<Geometry> shape = inReference(filter.shape, schema());
    std::vector<ObjectId> ids = candidates(filter, shape);
    if (!filter.where.empty() && (filter.ids || shape)) {
        ids = satisfying(filter.where, std::move(ids));
    }
    return shape ? related(*shape, filter.relation, ids) : ids;
}

std::optional<EditedRow> EditedTable::exchange(ObjectId id, std::optional<EditedRow> state) {
    countDifference_ += countEffect(state);
    std::optional<EditedRow> before = edits_.exchange(id, std::move(state));
    countDifference_ -= countEffect(before);
    if (index_) {
        notIndexed_.push_back(id);
    }
    return before;
}

ObjectId EditedTable::newId() {
    if (!firstNewId_) {
        firstNewId_ = source_.nextId();
        nextId_ = std::max(*firstNewId_, nextId_);
    }
    return nextId_++;
}

TableChanges EditedTable::changes() const {
    TableChanges changes{.table = schema().name,
                         .inserts = {},
                         .updates = {},
                         .deletes = {},
                         .firstNewId = firstNewId_.value_or(nextId_),
                         .nextId = nextId_};
    changes.inserts.reserve(static_cast<std::size_t>(nextId_ - changes.firstNewId));
    edits_.forEach([&](ObjectId id, const EditedRow& row) {
        if (row.isNew) {
            if (row.record) {
                changes.inserts.push_back(row.record);
            }
        } else if (row.record) {
            changes.updates.push_back(
                {row.record, row.shapeChanged, row.changedValues ? *row.changedValues : std::vector<bool>()});
        } else {
            changes.deletes.push_back(id);
        }
    });
    return changes;
}

void EditedTable::editsSaved() {
    edits_.forEach([this](ObjectId id, const EditedRow& row) {
        if (!row.record) {
            savedDeletions_.insert(id);
        }
    });
    ++storeRevision_;
    editsDiscarded();
}

void EditedTable::editsDiscarded() {
    edits_ = {};
    index_.reset();
    notIndexed_ = {};
    countDifference_ = 0;
    firstNewId_.reset();
}

} // namespace qz
