#include "platform/data/overlay/EditedRows.h"

#include <algorithm>
#include <utility>

namespace qz {

const EditedRow* EditedRows::find(ObjectId id) const {
    const auto page = pages_.find(pageOf(id));
    const bool found = page != pages_.end() && isUsed(page->second, placeOf(id));
    return found ? &page->second.rows[placeOf(id)] : nullptr;
}

std::optional<EditedRow> EditedRows::exchange(ObjectId id, std::optional<EditedRow> state) {
    if (!state) {
        return take(id);
    }
    Page& page = pages_[pageOf(id)];
    const std::size_t place = placeOf(id);
    EditedRow before = std::exchange(page.rows[place], std::move(*state));
    const bool wasUsed = isUsed(page, place);
    page.used |= 1U << place;
    return wasUsed ? std::optional(std::move(before)) : std::nullopt;
}

std::optional<EditedRow> EditedRows::take(ObjectId id) {
    const auto page = pages_.find(pageOf(id));
    if (page == pages_.end() || !isUsed(page->second, placeOf(id))) {
        return std::nullopt;
    }
    EditedRow before = std::exchange(page->second.rows[placeOf(id)], {});
    page->second.used &= ~(1U << placeOf(id));
    if (page->second.used == 0) {
        pages_.erase(page);
    }
    return before;
}

std::vector<ObjectId> EditedRows::pageNumbers() const {
    std::vector<ObjectId> numbers;
    numbers.reserve(pages_.size());
    for (const auto& [number, page] : pages_) {
        numbers.push_back(number);
    }
    std::ranges::sort(numbers);
    return numbers;
}

} // namespace qz
