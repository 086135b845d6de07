#pragma once

#include <string>

namespace qz {

// How GDAL writes one kind of graphics file.
struct GraphicsFormat {
    const char* driver;
    bool keepsArcs;
    bool needsKnownReference; // can name a coordinate system only by its EPSG code
};

inline constexpr const char* graphicsLayerName = "graphics";
inline constexpr const char* nameField = "name";
inline constexpr const char* kindField = "kind";
inline constexpr const char* selectedField = "selected";

// By the ending. Throws UsageError that lists the endings.
[[nodiscard]] const GraphicsFormat& graphicsFormatOf(const std::string& path);

} // namespace qz
