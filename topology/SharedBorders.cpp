#include "topology/SharedBorders.h"

#include <cstdint>

#include "platform/geometry/Vectors.h"
#include "platform/geometry/XYHash.h"

namespace qz {

namespace {

// A segment whichever way it is walked. The middle of a straight one is its lower end.
struct Border {
    XY low;
    XY high;
    XY middle;

    friend bool operator==(const Border&, const Border&) = default;
};

struct BorderHash {
    [[nodiscard]] std::size_t operator()(const Border& border) const noexcept {
        return DirectedEdgeHash()({border.low, border.high}) ^ XYHash()(border.middle) * 3;
    }
};

// Calls `see(Border, whether it is walked from the lower end)`.
template <typename See> void forEachBorder(const Polygon& polygon, See see) {
    for (const Path& ring : polygon.rings) {
        for (std::size_t i = 0; i < ring.segmentCount(); ++i) {
            const XY from = ring.xy()[i], to = ring.xy()[i + 1];
            const bool isUp = precedes(from, to);
            const XY low = isUp ? from : to;
            const ArcSegment* arc = ring.arcAt(i);
            see(Border{low, isUp ? to : from, arc ? arc->middle.xy() : low}, isUp);
        }
    }
}

} // namespace

std::vector<bool> freeBorders(const std::vector<Polygon>& polygons) {
    Numbering<Border, BorderHash> borders;
    std::vector<std::int32_t> balance; // walks upwards less walks downwards
    std::vector<std::uint32_t> numbers;
    for (const Polygon& polygon : polygons) {
        forEachBorder(polygon, [&](const Border& border, bool isUp) {
            const std::size_t number = borders.add(border);
            balance.resize(borders.size());
            balance[number] += isUp ? 1 : -1;
            numbers.push_back(static_cast<std::uint32_t>(number));
        });
    }
    std::vector<bool> isFree(polygons.size());
    auto number = numbers.begin();
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        forEachBorder(polygons[i], [&](const Border&, bool) {
            isFree[i] = isFree[i] || balance[*number] != 0;
            ++number;
        });
    }
    return isFree;
}

} // namespace qz
