#pragma once

#include <optional>

#include "platform/store/ogr/DatasetStore.h"
#include "platform/store/ogr/FileTools.h"
#include "platform/store/ogr/SaveProgress.h"

namespace qz {

// A file geodatabase. Never written to: a save writes a whole new one aside, with the changes, and renames it into
// place.
class FileGdbStore final : public DatasetStore {
public:
    explicit FileGdbStore(const std::string& path);
    // Reads `source` until the first save makes `output` of it.
    FileGdbStore(const std::string& source, const std::string& output);

    [[nodiscard]] std::string refusalToSave() const override;
    [[nodiscard]] bool savesSingleRowsCheaply() const override { return false; }
    void save(const ChangeSet& changes, const SaveObserver& observer) override;
    void addField(const std::string& table, const Field& field) override;

private:
    struct NewField {
        std::string table;
        Field field;
    };
    void saveWith(const ChangeSet& changes, const SaveObserver& observer, const std::optional<NewField>& newField);
    void writeAll(const std::filesystem::path& prepared, const ChangeSet& changes,
                  const std::optional<NewField>& newField, SaveProgress& progress);
    void putInPlace(const std::filesystem::path& prepared, const std::filesystem::path& target) const;
    void requireUnchanged() const;

    std::string readFrom_;
    bool hasOutput_ = false;
    std::vector<FileSignature> signatures_;
};

} // namespace qz
