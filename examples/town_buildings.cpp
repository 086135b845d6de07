#include <algorithm>
#include <cmath>

#include "town_plan.h"

namespace town {

namespace {

Place middleOf(const Parcel& parcel) {
    Place sum;
    for (const Corner& corner : parcel.corners) {
        sum = {sum.x + corner.begin.x, sum.y + corner.begin.y};
    }
    const double count = static_cast<double>(parcel.corners.size());
    return {sum.x / count, sum.y / count};
}

struct Side {
    Place from;
    Place to;
};

std::vector<Side> sidesOf(const Parcel& parcel) {
    std::vector<Side> sides;
    Place last = parcel.corners.back().begin;
    for (const Corner& corner : parcel.corners) {
        sides.push_back({last, corner.begin});
        last = corner.begin;
    }
    return sides;
}

double distanceTo(const Side& side, Place p) {
    const double dx = side.to.x - side.from.x, dy = side.to.y - side.from.y;
    return std::abs(dx * (p.y - side.from.y) - dy * (p.x - side.from.x)) / std::hypot(dx, dy);
}

// Half the depth of a house in the middle that stays clear of all sides.
double roomIn(const Parcel& parcel, Place middle) {
    double room = 1000;
    for (const Side& side : sidesOf(parcel)) {
        room = std::min(room, distanceTo(side, middle));
    }
    return 0.5 * room;
}

// Corners along and across the house, in halves of its depth.
std::vector<Place> outlineOf(Dice& dice) {
    const double half = dice.between(1, 1.5);
    if (dice.below(3) == 0) {
        return {{-half, -1}, {-half, 1}, {0.2, 1}, {0.2, 0}, {half, 0}, {half, -1}};
    }
    return {{-half, -1}, {-half, 1}, {half, 1}, {half, -1}};
}

Building houseOn(const Parcel& parcel, Place middle, double room, Dice& dice) {
    const std::vector<Side> sides = sidesOf(parcel);
    const Side front = *std::max_element(sides.begin(), sides.end(), [](const Side& a, const Side& b) {
        return distance(a.from, a.to) < distance(b.from, b.to);
    });
    const double length = distance(front.from, front.to);
    const double ux = (front.to.x - front.from.x) / length, uy = (front.to.y - front.from.y) / length;
    const double error = dice.below(4) == 0 ? 0.25 : 0;
    Building house;
    for (const Place& corner : outlineOf(dice)) {
        const double along = room * corner.x + dice.between(-error, error);
        const double across = room * corner.y + dice.between(-error, error);
        house.corners.push_back({std::round(1000 * (middle.x + along * ux - across * uy)) / 1000,
                                 std::round(1000 * (middle.y + along * uy + across * ux)) / 1000});
    }
    return house;
}

} // namespace

std::vector<Building> drawBuildings(const std::vector<Parcel>& parcels, Dice& dice) {
    std::vector<Building> houses;
    for (const Parcel& parcel : parcels) {
        const Place middle = middleOf(parcel);
        const double room = roomIn(parcel, middle);
        if (!parcel.isOpenSpace && room > 3 && dice.below(10) > 0) {
            houses.push_back(houseOn(parcel, middle, room, dice));
        }
    }
    return houses;
}

} // namespace town
