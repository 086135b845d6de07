#pragma once

#include <memory>
#include <string>

#include <geos_c.h>

namespace qz {

// The calling thread's handle of GEOS. Its complaints are collected, never printed.
class GeosContext {
public:
    [[nodiscard]] static GeosContext& ofThread();
    ~GeosContext();
    GeosContext(const GeosContext&) = delete;
    GeosContext& operator=(const GeosContext&) = delete;

    [[nodiscard]] GEOSContextHandle_t handle() const noexcept { return handle_; }

    // What GEOS returned for a question that it answers with 0 or 1; it returns 2 when it failed. Throws PlatformError
    // with its words; `task` says what was asked of it, as in "testing whether two geometries touch".
    [[nodiscard]] bool answer(char returned, const char* task) const;
    [[noreturn]] void fail(const char* task) const;

private:
    GeosContext();

    GEOSContextHandle_t handle_;
    std::string complaint_;
};

struct GeosDeleter {
    void operator()(GEOSGeometry* geometry) const { GEOSGeom_destroy_r(GeosContext::ofThread().handle(), geometry); }
    void operator()(const GEOSPreparedGeometry* prepared) const {
        GEOSPreparedGeom_destroy_r(GeosContext::ofThread().handle(), prepared);
    }
};
using GeosGeometryPtr = std::unique_ptr<GEOSGeometry, GeosDeleter>;
using GeosPreparedPtr = std::unique_ptr<const GEOSPreparedGeometry, GeosDeleter>;

} // namespace qz
