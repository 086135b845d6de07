#pragma once

#include "platform/store/ogr/DatasetStore.h"

namespace qz {

// A PostGIS database ("PG:dbname=…"); a save is one transaction of the server.
class PostgisStore final : public DatasetStore {
public:
    PostgisStore(const std::string& path, OpenMode mode);

    [[nodiscard]] std::string refusalToSave() const override;
    [[nodiscard]] bool savesSingleRowsCheaply() const override { return true; }
    void save(const ChangeSet& changes, const SaveObserver& observer) override;
    void addField(const std::string& table, const Field& field) override;

private:
    OpenMode mode_;
};

} // namespace qz
