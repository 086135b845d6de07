#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/data/Feature.h"
#include "platform/data/FeatureSource.h"
#include "platform/geometry/Relations.h"

namespace qz {

class Workspace;

enum class CursorKind { search, update, insert };

// A forward walk over rows, one after the other. The rows are fixed when it is opened, by ascending object id; a row
// deleted before its turn is skipped, a changed one comes as it is then, a new one doesn't come.
class FeatureCursor {
public:
    virtual ~FeatureCursor() = default;

    [[nodiscard]] virtual CursorKind kind() const = 0;
    // Nothing after the last. Each call gives a row object of its own.
    [[nodiscard]] virtual FeaturePtr next() = 0;
    // Update cursors: writes the row that next() gave last. Throws PlatformError for another row or cursor.
    virtual void update(Feature& feature) = 0;
    // Update cursors: deletes the row that next() gave last.
    virtual void remove() = 0;
    // Insert cursors: writes a row with the buffer's shape and values and gives its new id. The buffer is then cleared,
    // so that no value of one row leaks into the next.
    virtual ObjectId insert(FeatureBuffer& buffer) = 0;
    // Insert cursors: rows inserted before are seen by every read afterwards.
    virtual void flush() = 0;
};
using CursorPtr = std::unique_ptr<FeatureCursor>;

// All conditions must hold; one that is not set always does.
struct FeatureFilter {
    std::optional<Geometry> shape; // projected to the class's reference for the test when it has another one
    SpatialRelation relation = SpatialRelation::notSet;
    SpatialReference outputReference; // shapes come projected to it; none: as they are stored
    std::string where;
    std::optional<std::vector<ObjectId>> ids; // any order; ids that don't exist are skipped
};

// A feature class, or a table of attributes when its schema has no shapes. Reads show the edits of the open session.
class FeatureClass {
public:
    virtual ~FeatureClass() = default;

    [[nodiscard]] virtual const Schema& schema() const = 0;
    [[nodiscard]] virtual Workspace& workspace() const = 0;
    [[nodiscard]] virtual std::int64_t count() = 0;
    [[nodiscard]] virtual std::int64_t count(const FeatureFilter& filter) = 0;
    // Of all rows, without walking them; may be too large after deletions. Empty for no rows.
    [[nodiscard]] virtual Envelope extent() = 0;
    // Object ids that the filter lets pass, ascending.
    [[nodiscard]] virtual std::vector<ObjectId> ids(const FeatureFilter& filter) = 0;
    [[nodiscard]] virtual CursorPtr search(const FeatureFilter& filter) = 0;
    [[nodiscard]] virtual CursorPtr update(const FeatureFilter& filter) = 0;
    [[nodiscard]] virtual CursorPtr insert() = 0;
    // Nothing when there is no such row.
    [[nodiscard]] virtual FeaturePtr feature(ObjectId id) = 0;
    // A new row with null or default values; it exists for others after store().
    [[nodiscard]] virtual FeaturePtr createFeature() = 0;
    [[nodiscard]] virtual std::unique_ptr<FeatureBuffer> createBuffer() = 0;
    virtual void addField(const Field& field) = 0;

    [[nodiscard]] const SpatialReference& spatialReference() const;
};

// A data set that edits are made in. An edit session holds edit operations; each is one step of undo. What is stored
// outside a session is saved at once where saving a row is cheap, else with saveDirectWrites().
class Workspace {
public:
    virtual ~Workspace() = default;

    [[nodiscard]] virtual const std::string& path() const = 0;
    [[nodiscard]] virtual WorkspaceType type() const = 0;
    // True for folders of files. A file geodatabase, though a folder on disk, is a database.
    [[nodiscard]] virtual bool isDirectory() const = 0;
    [[nodiscard]] virtual const std::string& datasetCategory() const = 0;
    [[nodiscard]] virtual std::vector<std::string> tableNames() = 0;
    // Nothing when there is none of that name. Lives as long as the workspace.
    [[nodiscard]] virtual FeatureClass* table(const std::string& name) = 0;

    // Where a file with that ending would be kept beside the data of a table: next to a shapefile, and of its name.
    [[nodiscard]] virtual std::string pathBeside(const std::string& table, const std::string& ending) const = 0;

    // Throws PlatformError while a session is open, DataError when the data can't be saved to.
    virtual void startEditing() = 0;
    // Saves all that was stored since startEditing, or gives it up. Throws PlatformError while an operation is open,
    // DataError when the save failed; the session is then still open and nothing is written.
    virtual void stopEditing(bool saveEdits) = 0;
    [[nodiscard]] virtual bool isBeingEdited() const = 0;
    virtual void startEditOperation() = 0;
    // False when nothing was changed in it: there is then no step to undo.
    virtual bool stopEditOperation() = 0;
    virtual void abortEditOperation() = 0;
    [[nodiscard]] virtual bool isInEditOperation() const = 0;
    // False when there is nothing to undo or redo. Throws PlatformError while an operation is open.
    virtual bool undo() = 0;
    virtual bool redo() = 0;

    // Saves, or gives up, what was stored outside a session and is still pending.
    virtual void saveDirectWrites() = 0;
    virtual void discardDirectWrites() = 0;
};

} // namespace qz
