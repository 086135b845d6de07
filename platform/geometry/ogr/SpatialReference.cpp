#include "platform/geometry/SpatialReference.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "platform/Error.h"
#include "platform/geometry/ogr/OgrSpatialReference.h"
#include "platform/geometry/ogr/QuietGdal.h"
#include "platform/geometry/ogr/SpatialReferenceData.h"

namespace qz {

namespace {

bool beginsWith(const std::string& text, const char* prefix) {
    return EQUALN(text.c_str(), prefix, std::char_traits<char>::length(prefix));
}

std::string nameOf(const OGRSpatialReference& reference) {
    const char* name = reference.GetName();
    return name == nullptr ? std::string() : name;
}

// Stores put placeholders where a layer has no reference; some of them look like real geographic systems.
bool isPlaceholder(const OGRSpatialReference& reference) {
    if (reference.IsEmpty() || reference.IsLocal()) {
        return true;
    }
    const std::string name = nameOf(reference);
    return reference.GetAuthorityCode(nullptr) == nullptr &&
           (beginsWith(name, "Undefined") || beginsWith(name, "Unknown"));
}

int epsgCode(const OGRSpatialReference& reference) {
    const char* authority = reference.GetAuthorityName(nullptr);
    const char* code = reference.GetAuthorityCode(nullptr);
    return authority != nullptr && code != nullptr && EQUAL(authority, "EPSG") ? std::atoi(code) : 0;
}

std::string wktOf(const OGRSpatialReference& reference) {
    const char* const options[] = {"FORMAT=WKT2_2019", nullptr};
    char* text = nullptr;
    const QuietGdal quiet;
    reference.exportToWkt(&text, options);
    const std::string wkt = text == nullptr ? std::string() : text;
    CPLFree(text);
    return wkt;
}

CoordinateGrid defaultGrid(const CoordinateSystem& system) {
    if (system.unknown) {
        return {};
    }
    return system.geographic ? CoordinateGrid::forDegrees()
                             : CoordinateGrid::forLinearUnit(system.ogr.GetLinearUnits(nullptr));
}

std::shared_ptr<const CoordinateSystem> unknownSystem() {
    static const auto system = [] {
        auto made = std::make_shared<CoordinateSystem>();
        made->unknown = true;
        made->name = "unknown";
        return made;
    }();
    return system;
}

// The one place where coordinate systems are made, so that x is east everywhere.
SpatialReference makeReference(const OGRSpatialReference& ogr) {
    auto system = std::make_shared<CoordinateSystem>();
    system->ogr = ogr;
    system->ogr.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    system->geographic = ogr.IsGeographic() != 0;
    system->factoryCode = epsgCode(ogr);
    system->name = nameOf(ogr);
    system->wkt = wktOf(ogr);
    const CoordinateGrid grid = defaultGrid(*system);
    return SpatialReference(std::make_shared<SpatialReference::Data>(SpatialReference::Data{std::move(system), grid}));
}

std::optional<int> codeIn(const std::string& text) {
    if (!beginsWith(text, "EPSG:")) {
        return std::nullopt;
    }
    int code = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + 5, end, code);
    return error == std::errc() && stop == end ? std::optional(code) : std::nullopt;
}

const std::string emptyText;

} // namespace

CoordinateGrid CoordinateGrid::forLinearUnit(double metresPerUnit) {
    CoordinateGrid grid;
    // A little is added so that the power that is met exactly isn't missed by the rounding of the logarithm.
    const double decimals = -std::floor(std::log10(0.0001 / metresPerUnit) + 1e-9);
    grid.xyResolution = decimals >= 0 ? 1 / std::pow(10, decimals) : std::pow(10, -decimals);
    grid.xyTolerance = 0.001 / metresPerUnit;
    return grid;
}

CoordinateGrid CoordinateGrid::forDegrees() {
    CoordinateGrid grid;
    grid.xyResolution = 1e-9;
    // 0.001 m / (6378137 m · π / 180), the equator of WGS 84.
    grid.xyTolerance = 8.98315284119522e-9;
    return grid;
}

SpatialReference SpatialReference::fromEpsg(int code) {
    const QuietGdal quiet;
    OGRSpatialReference reference;
    if (reference.importFromEPSG(code) != OGRERR_NONE) {
        throw PlatformError(
            "EPSG:" + std::to_string(code) +
            " is no coordinate system of the EPSG registry. Give the number of one, such as EPSG:4326.");
    }
    return makeReference(reference);
}

SpatialReference SpatialReference::fromText(const std::string& text) {
    if (const auto code = codeIn(text)) {
        return fromEpsg(*code);
    }
    const QuietGdal quiet;
    OGRSpatialReference reference;
    if (reference.importFromWkt(text.c_str()) != OGRERR_NONE) {
        throw PlatformError("'" + text +
                            "' is no spatial reference. Give EPSG:n, such as EPSG:25832, or the WKT of a "
                            "coordinate system.");
    }
    return qz::fromOgr(&reference);
}

SpatialReference SpatialReference::unknown(const CoordinateGrid& grid) {
    return SpatialReference(std::make_shared<Data>(Data{unknownSystem(), grid}));
}

bool SpatialReference::isUnknown() const noexcept {
    return data_ != nullptr && data_->system->unknown;
}

int SpatialReference::factoryCode() const noexcept {
    return data_ == nullptr ? 0 : data_->system->factoryCode;
}

bool SpatialReference::isGeographic() const noexcept {
    return data_ != nullptr && data_->system->geographic;
}

const std::string& SpatialReference::name() const noexcept {
    return data_ == nullptr ? emptyText : data_->system->name;
}

const std::string& SpatialReference::wkt() const noexcept {
    return data_ == nullptr ? emptyText : data_->system->wkt;
}

std::string SpatialReference::text() const {
    if (isNone()) {
        return "none";
    }
    if (isUnknown()) {
        return "unknown";
    }
    return factoryCode() != 0 ? "EPSG:" + std::to_string(factoryCode()) : wkt();
}

const CoordinateGrid& SpatialReference::grid() const noexcept {
    static const CoordinateGrid defaultOne;
    return data_ == nullptr ? defaultOne : data_->grid;
}

SpatialReference SpatialReference::withGrid(const CoordinateGrid& grid) const {
    return isNone() ? *this : SpatialReference(std::make_shared<Data>(Data{data_->system, grid}));
}

bool isSameSystem(const SpatialReference& a, const SpatialReference& b) {
    if (a.isNone() || b.isNone()) {
        return false;
    }
    const CoordinateSystem& one = *a.data()->system;
    const CoordinateSystem& other = *b.data()->system;
    if (&one == &other || one.unknown || other.unknown) {
        return one.unknown == other.unknown;
    }
    return one.wkt == other.wkt || one.ogr.IsSame(&other.ogr) != 0;
}

bool operator==(const SpatialReference& a, const SpatialReference& b) {
    return a.data_ == b.data_ || (isSameSystem(a, b) && a.grid() == b.grid());
}

SpatialReference fromOgr(const OGRSpatialReference* reference) {
    if (reference == nullptr) {
        return {};
    }
    return isPlaceholder(*reference) ? SpatialReference::unknown() : makeReference(*reference);
}

const OGRSpatialReference* ogrReference(const SpatialReference& reference) {
    return reference.isNone() || reference.isUnknown() ? nullptr : &reference.data()->system->ogr;
}

} // namespace qz
