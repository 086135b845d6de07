#pragma once

#include <memory>
#include <string>

namespace qz {

// The grid that coordinates are snapped to and the distance below which two of them are one place. In the units of the
// reference; z and m have no grid unless their resolution is above 0.
struct CoordinateGrid {
    double xOrigin = 0;
    double yOrigin = 0;
    double xyResolution = 0.0001;
    double xyTolerance = 0.001;
    double zOrigin = 0;
    double zResolution = 0;
    double mOrigin = 0;
    double mResolution = 0;

    // A tenth of a millimetre and a millimetre, in a unit of `metresPerUnit`; the resolution is rounded down to a power
    // of ten, so that snapped coordinates stay short decimals.
    [[nodiscard]] static CoordinateGrid forLinearUnit(double metresPerUnit);
    // The angle of a millimetre on the equator.
    [[nodiscard]] static CoordinateGrid forDegrees();

    friend bool operator==(const CoordinateGrid&, const CoordinateGrid&) = default;
};

// A coordinate system with its grid: a cheap handle to an immutable value. A default one is "none".
// x is always easting or longitude, y northing or latitude, whatever order the authority prescribes.
class SpatialReference {
public:
    SpatialReference() = default;
    // Throws PlatformError for a code that the EPSG registry doesn't have.
    [[nodiscard]] static SpatialReference fromEpsg(int code);
    // "EPSG:n" or the WKT of a coordinate system. Throws PlatformError when neither.
    [[nodiscard]] static SpatialReference fromText(const std::string& text);
    // Coordinates of an unknown system.
    [[nodiscard]] static SpatialReference unknown(const CoordinateGrid& grid = {});

    [[nodiscard]] bool isNone() const noexcept { return data_ == nullptr; }
    [[nodiscard]] bool isUnknown() const noexcept;
    // The EPSG number; 0 for none, unknown and custom coordinate systems.
    [[nodiscard]] int factoryCode() const noexcept;
    [[nodiscard]] bool isGeographic() const noexcept;
    // Empty for none.
    [[nodiscard]] const std::string& name() const noexcept;
    [[nodiscard]] const std::string& wkt() const noexcept;
    // "EPSG:n", or the WKT of a custom system, "unknown", "none".
    [[nodiscard]] std::string text() const;

    // Default grid for none.
    [[nodiscard]] const CoordinateGrid& grid() const noexcept;
    [[nodiscard]] SpatialReference withGrid(const CoordinateGrid& grid) const;

    // The same handle, or the same definition and grid.
    friend bool operator==(const SpatialReference& a, const SpatialReference& b);

    struct Data;
    [[nodiscard]] const Data* data() const noexcept { return data_.get(); }
    explicit SpatialReference(std::shared_ptr<const Data> data) : data_(std::move(data)) {}

private:
    std::shared_ptr<const Data> data_;
};

} // namespace qz
