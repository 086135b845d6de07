#pragma once

#include <cstddef>
#include <functional>
#include <unordered_set>
#include <vector>

#include "common/QZSort.h"
#include "platform/geometry/Geometry.h"

namespace qz {

// Lines gathered for cutting them where they meet, with the numbers they are known by.
class LineNetwork {
public:
    // A number that is there already is not added again.
    void add(ObjectId id, const Polyline& line);

    [[nodiscard]] std::size_t size() const noexcept { return lines_.size(); }

    // Where two lines, or a line and itself, meet: crossings, touches, common ends and the ends of shared stretches.
    // Two records a place, one on the first line and one on the second, in the order of a double loop over the lines. x
    // and y are the same on both, z is that of the first line; m is 0. Places within the tolerance of the lines'
    // reference are one place, that of a vertex where there is one. `progress` gets the number of lines dealt with.
    // O((n + k) log(n + k)) for n segments and k meetings.
    [[nodiscard]] std::vector<SplitPoint> crossings(const std::function<void(std::size_t)>& progress) const;

    // Where the lines meet another one, one record a place, without z and m.
    [[nodiscard]] std::vector<SplitPoint> crossingsWith(const Polyline& cutter,
                                                        const std::function<void(std::size_t)>& progress) const;

private:
    struct Line {
        ObjectId id;
        Polyline shape;
    };

    std::vector<Line> lines_;
    std::unordered_set<ObjectId> known_;
};

} // namespace qz
