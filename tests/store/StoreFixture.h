#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogrsf_frmts.h>

#include "platform/geometry/WellKnown.h"
#include "platform/store/Stores.h"

namespace qz::test {

// A folder of its own that disappears with its content.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::string operator/(const std::string& name) const { return (path_ / name).string(); }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    // Names of everything in it, sorted; hidden ones too.
    [[nodiscard]] std::vector<std::string> names() const;

private:
    std::filesystem::path path_;
};

// A format in which tests keep layers.
struct TestFormat {
    const char* name;
    const char* driver;
    const char* ending;
};
inline constexpr TestFormat geoPackage{"GeoPackage", "GPKG", ".gpkg"};
inline constexpr TestFormat shapefile{"Shapefile", "ESRI Shapefile", ".shp"};
inline constexpr TestFormat fileGeodatabase{"FileGeodatabase", "OpenFileGDB", ".gdb"};

inline void PrintTo(const TestFormat& format, std::ostream* out) {
    *out << format.name;
}

// Rows of a layer "roads" with the fields name (text, 20), lanes (integer), width (real) and built (date), written
// by GDAL alone. A shape "" is null. Row i is named "road i", has i lanes and the width i / 2.
void makeRoads(const std::string& path, const TestFormat& format, OGRwkbGeometryType type,
               const std::vector<std::string>& shapes, const std::vector<std::string>& layerOptions = {});

// Changes to one table, as an edit session collects them.
class Edits {
public:
    explicit Edits(FeatureSource& table);

    ObjectId insert(const std::string& wkt, const std::string& name = "new");
    // An id that is handed out and not used.
    void giveUpId() { ++changes_.nextId; }
    void reshape(ObjectId id, const std::string& wkt);
    void reshape(ObjectId id, std::optional<Geometry> shape);
    void setValue(ObjectId id, const std::string& field, const Value& value);
    void remove(ObjectId id) { changes_.deletes.push_back(id); }

    [[nodiscard]] ChangeSet changeSet() const;

private:
    RecordChange& changeOf(ObjectId id);

    FeatureSource& table_;
    TableChanges changes_;
    std::map<ObjectId, FeatureRecord> records_;
    std::map<ObjectId, RecordChange> updates_;
};

// A shape of the table's reference; nothing for "".
[[nodiscard]] std::optional<Geometry> shapeOf(const std::string& wkt);

// "id | wkt | value | value …" for every row, as a fresh opening reads them.
[[nodiscard]] std::vector<std::string> rowsOf(const std::string& path, const std::string& table = "roads");
[[nodiscard]] std::vector<std::string> rowsOf(FeatureSource& table);

// Answers of SQL on a GeoPackage, one text a row, columns separated by '|'.
[[nodiscard]] std::vector<std::string> sqlRows(const std::string& path, const std::string& sql);

} // namespace qz::test
