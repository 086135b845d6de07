#pragma once

#include "platform/data/FeatureSource.h"

namespace qz {

// Tells the observer of a save before each write.
class SaveProgress {
public:
    SaveProgress(const SaveObserver& observer, const ChangeSet& changes) : observer_(observer) {
        for (const TableChanges& table : changes) {
            total_ += table.inserts.size() + table.updates.size() + table.deletes.size();
        }
    }

    void beforeRecord() {
        beforeStep();
        ++done_;
    }
    // A file copied or renamed, a marker, a commit.
    void beforeStep() const {
        if (observer_) {
            observer_(done_, total_);
        }
    }

private:
    const SaveObserver& observer_;
    std::size_t done_ = 0;
    std::size_t total_ = 0;
};

} // namespace qz
