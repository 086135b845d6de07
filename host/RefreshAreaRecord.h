#pragma once

#include <cstdint>

#include "platform/app/Application.h"

namespace qz {

// Counts what is to be drawn again, for the report.
class RefreshAreaRecord final : public RefreshArea {
public:
    void add(const Geometry& geometry) override {
        ++count_;
        extent_.expandToInclude(geometry.envelope());
    }

    // Geometries added, empty ones among them.
    [[nodiscard]] std::int64_t count() const noexcept { return count_; }
    // Of all that was added, arcs with their true extent; empty when that is nothing.
    [[nodiscard]] Envelope extent() const noexcept { return extent_; }

private:
    std::int64_t count_ = 0;
    Envelope extent_;
};

} // namespace qz
