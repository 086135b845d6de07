#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

namespace qz {

// What GDAL reports on this thread while one of these lives is kept in it; nothing reaches the error stream.
class QuietErrors {
public:
    QuietErrors();
    ~QuietErrors();
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

    [[nodiscard]] bool any() const noexcept { return !text_.empty(); }
    // The first failure, without line breaks; empty when there was none.
    [[nodiscard]] const std::string& text() const noexcept { return text_; }
    void clear() { text_.clear(); }
    void add(const std::string& text);

private:
    std::string text_;
};

struct CloseDataset {
    void operator()(GDALDataset* dataset) const { GDALClose(dataset); }
};
using DatasetPtr = std::unique_ptr<GDALDataset, CloseDataset>;

struct DestroyOgrFeature {
    void operator()(OGRFeature* feature) const { OGRFeature::DestroyFeature(feature); }
};
using OgrFeaturePtr = std::unique_ptr<OGRFeature, DestroyOgrFeature>;

enum class DatasetAccess { read, update };

// Opens vector data with one driver. Throws DataError with the driver's words.
[[nodiscard]] DatasetPtr openDataset(const std::string& path, const char* driver, DatasetAccess access,
                                     const std::vector<std::string>& options = {});

// The driver of GDAL. Throws DataError when this GDAL was built without it.
[[nodiscard]] GDALDriver& ogrDriver(const char* name);

// The driver's own SQL. Throws DataError with the driver's words.
void executeSql(GDALDataset& dataset, const std::string& sql);
// Calls `row(OGRFeature&)` for each row of the result. A column that is the key of a table is no field of the row,
// unless the SQL makes an expression of it.
void forEachRow(GDALDataset& dataset, const std::string& sql, const std::function<void(OGRFeature&)>& row);
// First column of the first row; nothing when there is no row or it is null.
[[nodiscard]] std::optional<std::int64_t> queryInteger(GDALDataset& dataset, const std::string& sql);
[[nodiscard]] std::string queryText(GDALDataset& dataset, const std::string& sql);
// Whether a GeoPackage has the table, whatever it holds.
[[nodiscard]] bool hasTable(GDALDataset& dataset, const std::string& name);

// A name or a text as SQL writes it.
[[nodiscard]] std::string quotedName(const std::string& name);
[[nodiscard]] std::string quotedText(const std::string& text);
// The condition that the column, quoted where it has to be, is one of the ids. Ids that follow each other are a range,
// which the database reads faster than a list.
[[nodiscard]] std::string isOneOf(const std::string& column, std::span<const std::int64_t> ids);

} // namespace qz
