#pragma once

#include <filesystem>
#include <optional>

#include "platform/store/ogr/DatasetStore.h"

namespace qz {

// A GeoPackage. While it is open for editing it is switched to a write-ahead log with the first save, and put back into
// a single file when it is closed.
class GpkgStore final : public DatasetStore {
public:
    GpkgStore(const std::string& path, OpenMode mode);
    // Reads `source` until the first save makes `output` of it.
    GpkgStore(const std::string& source, const std::string& output);
    ~GpkgStore() override;

    [[nodiscard]] std::string refusalToSave() const override;
    [[nodiscard]] bool savesSingleRowsCheaply() const override { return !source_; }
    void save(const ChangeSet& changes, const SaveObserver& observer) override;
    void addField(const std::string& table, const Field& field) override;

private:
    void saveInPlace(const ChangeSet& changes, const SaveObserver& observer);
    void saveAsCopy(const ChangeSet& changes, const SaveObserver& observer);
    void copySource(const std::filesystem::path& target);
    void useWriteAheadLog();
    void requireUnchanged();
    void rollBack();
    void writeAll(GDALDataset& dataset, const ChangeSet& changes, class SaveProgress& progress);
    void rememberVersion();

    OpenMode mode_;
    std::optional<std::string> source_; // until the copy is made
    std::int64_t version_ = 0;          // of the database, as this connection saw it last
    bool changedByOthers_ = false;
    bool endsInSingleFile_ = false;
};

} // namespace qz
