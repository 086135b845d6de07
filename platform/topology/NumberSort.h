#pragma once

#include <cstddef>
#include <numeric>
#include <span>
#include <vector>

namespace qz {

// For items that have a number below `count`: in time in proportion to the items and the count, which a sort by
// comparisons doesn't reach (distribution counting; Seward, 1954).

// Where the items of each number start when they are sorted by number, and how many items there are at last.
template <typename Item, typename NumberOf>
[[nodiscard]] std::vector<std::size_t> firstOfEach(std::span<const Item> items, std::size_t count, NumberOf numberOf) {
    std::vector<std::size_t> first(count + 1);
    for (const Item& item : items) {
        ++first[numberOf(item) + 1];
    }
    std::partial_sum(first.begin(), first.end(), first.begin());
    return first;
}

// The items by number; those of one number stay in their order.
template <typename Item, typename NumberOf>
[[nodiscard]] std::vector<Item> sortedByNumber(std::span<const Item> items, std::size_t count, NumberOf numberOf) {
    std::vector<std::size_t> next = firstOfEach(items, count, numberOf);
    std::vector<Item> sorted(items.size());
    for (const Item& item : items) {
        sorted[next[numberOf(item)]++] = item;
    }
    return sorted;
}

} // namespace qz
