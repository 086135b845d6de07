#pragma once

#include <cstddef>
#include <vector>

#include "platform/app/Display.h"

namespace qz {

// The graphics of a map in memory.
class HeadlessGraphics final : public GraphicsContainer {
public:
    void add(GraphicElement element) override;
    [[nodiscard]] const std::vector<GraphicElement>& elements() const override { return elements_; }
    // Throws PlatformError, and removes nothing, when an index is beyond the last element or they don't ascend.
    void remove(const std::vector<std::size_t>& indexes) override;

    // A point in time for addedSince.
    [[nodiscard]] std::size_t mark() const noexcept { return nextSerial_; }
    // The elements added after the mark was taken that are still there, in the order of drawing.
    [[nodiscard]] std::vector<GraphicElement> addedSince(std::size_t mark) const;

private:
    std::vector<GraphicElement> elements_;
    std::vector<std::size_t> serials_; // one an element: the number of elements ever added before it
    std::size_t nextSerial_ = 0;
};

} // namespace qz
