#include "host/HeadlessGraphics.h"

#include <algorithm>

#include <fmt/format.h>

namespace qz {

namespace {

void checkIndexes(const std::vector<std::size_t>& indexes, std::size_t count) {
    if (!std::is_sorted(indexes.begin(), indexes.end(), std::less_equal<>())) {
        throw PlatformError("The indexes of graphics to remove must ascend, each given once.");
    }
    if (!indexes.empty() && indexes.back() >= count) {
        throw PlatformError(
            fmt::format("There is no graphic {} to remove; the map has {}, counted from 0.", indexes.back(), count));
    }
}

} // namespace

void HeadlessGraphics::add(GraphicElement element) {
    elements_.push_back(std::move(element));
    serials_.push_back(nextSerial_++);
}

void HeadlessGraphics::remove(const std::vector<std::size_t>& indexes) {
    checkIndexes(indexes, elements_.size());
    std::size_t kept = 0;
    auto nextRemoved = indexes.begin();
    for (std::size_t i = 0; i < elements_.size(); ++i) {
        if (nextRemoved != indexes.end() && *nextRemoved == i) {
            ++nextRemoved;
            continue;
        }
        if (kept != i) {
            elements_[kept] = std::move(elements_[i]);
            serials_[kept] = serials_[i];
        }
        ++kept;
    }
    elements_.resize(kept);
    serials_.resize(kept);
}

std::vector<GraphicElement> HeadlessGraphics::addedSince(std::size_t mark) const {
    const auto first = std::lower_bound(serials_.begin(), serials_.end(), mark);
    return {elements_.begin() + (first - serials_.begin()), elements_.end()};
}

} // namespace qz
