#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/data/FieldValues.h"
#include "platform/data/Schema.h"

namespace qz {

// One stored or edited row. Immutable once shared: images of features are handed around, never changed.
struct FeatureRecord {
    ObjectId id = 0;
    std::optional<Geometry> shape; // nothing: a null shape
    FieldValues values;            // one a field; null for the object id and the shape
};
using RecordPtr = std::shared_ptr<const FeatureRecord>;

// What an edit changed of a row, so that everything else is left as it is stored.
struct RecordChange {
    RecordPtr record; // the row as it is to be
    bool shapeChanged = false;
    std::vector<bool> changedValues; // one a field, or empty when none changed
};

struct TableChanges {
    std::string table;
    std::vector<RecordPtr> inserts;    // ascending ids, all handed out by the edit session
    std::vector<RecordChange> updates; // ascending ids
    std::vector<ObjectId> deletes;     // ascending ids
    // The table's first free id and the first that this session has not handed out: ids between the two that are not
    // inserted were given up, and stay unused.
    ObjectId firstNewId = 0;
    ObjectId nextId = 0;
};

using ChangeSet = std::vector<TableChanges>;

// Told before every single write of a save: a record, a file copied or renamed, a commit. May throw to make the save
// fail there; nothing is then changed. `done` counts records, up to `total`.
using SaveObserver = std::function<void(std::size_t done, std::size_t total)>;

// One table of a store, for reading. Records are read as they are stored; edits are not its business.
class FeatureSource {
public:
    virtual ~FeatureSource() = default;

    [[nodiscard]] virtual const Schema& schema() const = 0;
    [[nodiscard]] virtual std::int64_t count() = 0;
    // As the store keeps it, without walking the rows where it keeps it; may be too large after deletions.
    [[nodiscard]] virtual Envelope extent() = 0;
    // All, ascending.
    [[nodiscard]] virtual std::vector<ObjectId> ids() = 0;
    // Rows whose envelope intersects the window, ascending; through an index.
    [[nodiscard]] virtual std::vector<ObjectId> idsIn(const Envelope& window) = 0;
    // Stored rows that satisfy the SQL condition, ascending. Throws UsageError with the store's words for a wrong one.
    [[nodiscard]] virtual std::vector<ObjectId> idsWhere(const std::string& condition) = 0;
    // Which of the given records, stored or not, satisfy the condition; by the same rules as idsWhere, in their order.
    [[nodiscard]] virtual std::vector<ObjectId> idsWhere(const std::string& condition,
                                                         std::span<const RecordPtr> records) = 0;
    // Nothing when there is no such row.
    [[nodiscard]] virtual RecordPtr read(ObjectId id) = 0;
    // One an id, ascending ids; nothing for those that don't exist. Fast for runs of neighbouring ids.
    [[nodiscard]] virtual std::vector<RecordPtr> read(std::span<const ObjectId> ids) = 0;
    // The id that the next new row gets.
    [[nodiscard]] virtual ObjectId nextId() = 0;
    // Throws PlatformError when the store can't hold the record as it is; called when an edit is made, so that the
    // refusal comes before anything is written.
    virtual void checkStorable(const FeatureRecord& record) const = 0;
};

enum class WorkspaceType { fileSystem = 0, localDatabase = 1, remoteDatabase = 2 };

// A data set with its tables: a GeoPackage, a folder of shapefiles seen through one of them, a file geodatabase, a
// database, or memory.
class FeatureStore {
public:
    virtual ~FeatureStore() = default;

    [[nodiscard]] virtual const std::string& path() const = 0;
    [[nodiscard]] virtual WorkspaceType workspaceType() const = 0;
    // "Shapefile Feature Class", "GeoPackage Feature Class", ...
    [[nodiscard]] virtual const std::string& datasetCategory() const = 0;
    // Shapes first, tables of attributes after them, each in the order of the store.
    [[nodiscard]] virtual std::vector<std::string> tableNames() = 0;
    // Nothing when there is none of that name. Letter case counts. Lives as long as the store.
    [[nodiscard]] virtual FeatureSource* table(const std::string& name) = 0;

    // Where a file with that ending would be kept beside the data of a table: next to a shapefile, and of its name.
    [[nodiscard]] virtual std::string pathBeside(const std::string& table, const std::string& ending) const;
    // Empty when it can be saved to, else what hinders ("is read-only", "needs a new file geodatabase").
    [[nodiscard]] virtual std::string refusalToSave() const = 0;
    // Whether a save of one row is cheap, or rewrites files.
    [[nodiscard]] virtual bool savesSingleRowsCheaply() const = 0;
    // All of it or nothing. Afterwards the tables read as saved. Throws DataError.
    virtual void save(const ChangeSet& changes, const SaveObserver& observer) = 0;
    // Takes effect at once, outside edit sessions; rows that exist get the default, or null. Throws DataError.
    virtual void addField(const std::string& table, const Field& field) = 0;
};

} // namespace qz
