#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/data/FeatureSource.h"

namespace qz {

// What an edit session made of one row of the store.
struct EditedRow {
    RecordPtr record;                                       // nothing: deleted
    std::unique_ptr<const std::vector<bool>> changedValues; // one a field, or nothing when none changed
    bool isNew = false;
    bool shapeChanged = false;
};

// Edited rows by id. Neighbouring ids share a page, since a large edit adds or deletes rows in runs: there a row takes
// little more memory than its state. A row stays in its place while others come and go.
class EditedRows {
public:
    [[nodiscard]] bool empty() const noexcept { return pages_.empty(); }
    // Nothing for a row that isn't among them.
    [[nodiscard]] const EditedRow* find(ObjectId id) const;
    // Puts a row into another state (nothing: it isn't among them any more) and gives the state it had.
    std::optional<EditedRow> exchange(ObjectId id, std::optional<EditedRow> state);
    // Calls `see(id, row)` for all, ascending.
    template <typename See> void forEach(See see) const;

private:
    static constexpr ObjectId pageSize = 16;

    struct Page {
        std::uint32_t used = 0; // a bit a row
        std::array<EditedRow, pageSize> rows;
    };

    [[nodiscard]] static ObjectId pageOf(ObjectId id) noexcept { return id >> 4; }
    [[nodiscard]] static std::size_t placeOf(ObjectId id) noexcept {
        return static_cast<std::size_t>(id & (pageSize - 1));
    }
    [[nodiscard]] static bool isUsed(const Page& page, std::size_t place) noexcept { return page.used >> place & 1U; }
    [[nodiscard]] std::vector<ObjectId> pageNumbers() const;
    std::optional<EditedRow> take(ObjectId id);

    std::unordered_map<ObjectId, Page> pages_;
};

template <typename See> void EditedRows::forEach(See see) const {
    for (const ObjectId number : pageNumbers()) {
        const Page& page = pages_.at(number);
        for (std::size_t place = 0; place < page.rows.size(); ++place) {
            if (isUsed(page, place)) {
                see(number * pageSize + static_cast<ObjectId>(place), page.rows[place]);
            }
        }
    }
}

} // namespace qz
