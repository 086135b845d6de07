#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace qz {

// Numbers in groups, in two flat tables.
class Groups {
public:
    // The group of a number that is in none.
    static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

    Groups() = default;
    // `groupOf`: the group of each number, below `count`, or none. The members of a group ascend.
    Groups(std::span<const std::uint32_t> groupOf, std::size_t count) : first_(count + 1, 0) {
        for (const std::uint32_t group : groupOf) {
            first_[group == none ? 0 : group + 1] += group == none ? 0 : 1;
        }
        for (std::size_t group = 0; group < count; ++group) {
            first_[group + 1] += first_[group];
        }
        members_.resize(first_[count]);
        std::vector<std::uint32_t> next(first_.begin(), first_.end() - 1);
        for (std::uint32_t number = 0; number < groupOf.size(); ++number) {
            if (groupOf[number] != none) {
                members_[next[groupOf[number]]++] = number;
            }
        }
    }

    [[nodiscard]] std::size_t size() const noexcept { return first_.empty() ? 0 : first_.size() - 1; }
    [[nodiscard]] std::span<const std::uint32_t> operator[](std::size_t group) const noexcept {
        return {members_.data() + first_[group], first_[group + 1] - first_[group]};
    }
    [[nodiscard]] std::span<std::uint32_t> operator[](std::size_t group) noexcept {
        return {members_.data() + first_[group], first_[group + 1] - first_[group]};
    }

    // Groups one after the other.
    void append(std::span<const std::uint32_t> members) {
        if (first_.empty()) {
            first_.push_back(0);
        }
        members_.insert(members_.end(), members.begin(), members.end());
        first_.push_back(static_cast<std::uint32_t>(members_.size()));
    }

private:
    std::vector<std::uint32_t> first_; // of each group in `members_`, and the end of the last
    std::vector<std::uint32_t> members_;
};

} // namespace qz
