#include "platform/store/ogr/OgrSession.h"

#include <algorithm>
#include <mutex>

#include <cpl_string.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "platform/Error.h"

namespace qz {

namespace {

void CPL_STDCALL keepError(CPLErr severity, CPLErrorNum, const char* text) {
    if (severity >= CE_Failure) {
        static_cast<QuietErrors*>(CPLGetErrorHandlerUserData())->add(text);
    }
}

void registerDrivers() {
    static std::once_flag once;
    std::call_once(once, [] { GDALAllRegister(); });
}

class ResultSet {
public:
    ResultSet(GDALDataset& dataset, const std::string& sql)
        : dataset_(dataset), layer_(dataset.ExecuteSQL(sql.c_str(), nullptr, nullptr)) {}
    ~ResultSet() {
        if (layer_ != nullptr) {
            dataset_.ReleaseResultSet(layer_);
        }
    }
    ResultSet(const ResultSet&) = delete;
    ResultSet& operator=(const ResultSet&) = delete;

    [[nodiscard]] OgrFeaturePtr next() { return OgrFeaturePtr(layer_ == nullptr ? nullptr : layer_->GetNextFeature()); }

private:
    GDALDataset& dataset_;
    OGRLayer* layer_;
};

std::string doubled(const std::string& text, char quote) {
    std::string result(1, quote);
    for (const char c : text) {
        result.append(c == quote ? 2 : 1, c);
    }
    return result + quote;
}

} // namespace

QuietErrors::QuietErrors() {
    CPLPushErrorHandlerEx(keepError, this);
}

QuietErrors::~QuietErrors() {
    CPLPopErrorHandler();
}

void QuietErrors::add(const std::string& text) {
    if (text_.empty()) {
        text_ = text;
        std::replace(text_.begin(), text_.end(), '\n', ' ');
    }
}

DatasetPtr openDataset(const std::string& path, const char* driver, DatasetAccess access,
                       const std::vector<std::string>& options) {
    registerDrivers();
    const QuietErrors errors;
    CPLStringList optionList;
    for (const std::string& option : options) {
        optionList.AddString(option.c_str());
    }
    const char* const drivers[] = {driver, nullptr};
    const unsigned flags = GDAL_OF_VECTOR | (access == DatasetAccess::update ? GDAL_OF_UPDATE : GDAL_OF_READONLY);
    DatasetPtr dataset(GDALDataset::Open(path.c_str(), flags, drivers, optionList.List()));
    if (!dataset) {
        throw DataError(errors.any() ? fmt::format("{} can't be opened: {}.", path, errors.text())
                                     : fmt::format("{} can't be opened: it is not of the format {}.", path, driver));
    }
    return dataset;
}

GDALDriver& ogrDriver(const char* name) {
    registerDrivers();
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(name);
    if (driver == nullptr) {
        throw DataError(fmt::format("The installed GDAL has no driver {}.", name));
    }
    return *driver;
}

void executeSql(GDALDataset& dataset, const std::string& sql) {
    forEachRow(dataset, sql, [](OGRFeature&) {});
}

void forEachRow(GDALDataset& dataset, const std::string& sql, const std::function<void(OGRFeature&)>& row) {
    const QuietErrors errors;
    ResultSet result(dataset, sql);
    while (const OgrFeaturePtr feature = result.next()) {
        row(*feature);
    }
    if (errors.any()) {
        throw DataError(fmt::format("{}: {}.", dataset.GetDescription(), errors.text()));
    }
}

std::optional<std::int64_t> queryInteger(GDALDataset& dataset, const std::string& sql) {
    std::optional<std::int64_t> number;
    forEachRow(dataset, sql, [&](OGRFeature& row) {
        if (!number && row.IsFieldSetAndNotNull(0)) {
            number = row.GetFieldAsInteger64(0);
        }
    });
    return number;
}

std::string queryText(GDALDataset& dataset, const std::string& sql) {
    std::string text;
    forEachRow(dataset, sql, [&](OGRFeature& row) { text = row.GetFieldAsString(0); });
    return text;
}

bool hasTable(GDALDataset& dataset, const std::string& name) {
    return queryInteger(dataset,
                        fmt::format("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = {}", quotedText(name)))
        .has_value();
}

std::string quotedName(const std::string& name) {
    return doubled(name, '"');
}

std::string quotedText(const std::string& text) {
    return doubled(text, '\'');
}

std::string isOneOf(const std::string& column, std::span<const std::int64_t> ids) {
    const auto isGap = [](std::int64_t id, std::int64_t next) { return next != id + 1; };
    if (!ids.empty() && std::ranges::adjacent_find(ids, isGap) == ids.end()) {
        return fmt::format("{} BETWEEN {} AND {}", column, ids.front(), ids.back());
    }
    return fmt::format("{} IN ({})", column, fmt::join(ids, ","));
}

} // namespace qz
