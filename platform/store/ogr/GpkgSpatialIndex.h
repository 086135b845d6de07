#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/data/Schema.h"
#include "platform/store/ogr/OgrSession.h"

namespace qz {

// The spatial index of a table of a GeoPackage while many rows of the table are written inside one transaction. The
// triggers that follow each row cost more than everything else of a save. So they are put aside, the entries that no
// longer fit are noted, and afterwards the index gets the entries that the triggers would have given it.
class GpkgSpatialIndex {
public:
    // Of a table with a shape; whether it has such an index or not.
    [[nodiscard]] static std::string nameFor(const Schema& schema);

    // For a table that has one.
    GpkgSpatialIndex(GDALDataset& dataset, const Schema& schema);

    // Puts the triggers aside. From now on, entries are noted as follows.
    void takeOver();
    void noteRemoved(ObjectId id) { outdated_.push_back(id); }
    void noteAdded(ObjectId id) { missing_.push_back(id); }
    void noteMoved(ObjectId id);
    // Brings the entries up to date, for rows that are written by now, and puts the triggers back as they were.
    void complete();

private:
    [[nodiscard]] bool isMadeAnewFaster() const;
    void makeAnew();
    void removeOutdated();
    void addMissing();
    void addEntries(const std::string& condition);

    GDALDataset& dataset_;
    std::string table_;
    std::string name_;
    std::string quotedName_;
    std::string id_; // quoted, as is the next
    std::string shape_;
    std::vector<std::string> triggers_; // that were put aside: their SQL
    std::vector<ObjectId> outdated_;
    std::vector<ObjectId> missing_;
};

} // namespace qz
