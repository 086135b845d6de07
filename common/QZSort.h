#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <span>
#include <type_traits>

#include "platform/data/Value.h"

namespace qz {

// A place on a line, kept while the line is split or joined into a network.
struct SplitPoint {
    double x = 0;
    double y = 0;
    double z = 0;     // 0 when not known
    double m = 0;     // 0 when not known
    double pos = 0;   // ratio of the length of its line: 0 at the start, 1 at the end
    ObjectId fid = 0; // of the feature it comes from; 0 when only one is involved
};

enum class SortOrder { ascending, descending };

namespace detail {

// Undefined numbers come after all others, so that every array has an order.
template <typename Key> bool precedes(const Key& a, const Key& b) {
    if constexpr (std::is_floating_point_v<Key>) {
        if (std::isnan(a) || std::isnan(b)) {
            return !std::isnan(a) && std::isnan(b);
        }
    }
    return a < b;
}

template <typename Record, typename KeyOf> void sortBy(std::span<Record> records, SortOrder order, KeyOf keyOf) {
    std::stable_sort(records.begin(), records.end(), [&](const Record& a, const Record& b) {
        return order == SortOrder::ascending ? precedes(std::invoke(keyOf, a), std::invoke(keyOf, b))
                                             : precedes(std::invoke(keyOf, b), std::invoke(keyOf, a));
    });
}

} // namespace detail

// In place; equal values keep their order. To sort the first part of an array only, give that part.
template <typename T> void QZ_SortArray(std::span<T> values, SortOrder order) {
    detail::sortBy(values, order, std::identity());
}

// The same by one field of the records: `&SplitPoint::pos`.
template <typename Field> void QZ_SortPoints(std::span<SplitPoint> points, Field SplitPoint::*key, SortOrder order) {
    detail::sortBy(points, order, key);
}

} // namespace qz
