#include "town_plan.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace town {

namespace {

constexpr int columns = 9; // of crossings
constexpr int rows = 8;
constexpr double columnSpacing = 96;
constexpr double rowSpacing = 82;
constexpr double jitter = 7;
constexpr Place southWest{548120, 5806240};
constexpr Place centre{southWest.x + (columns - 1) * columnSpacing / 2, southWest.y + (rows - 1) * rowSpacing / 2};
constexpr double ringHalfWidth = (columns - 1) * columnSpacing / 2 + 110;
constexpr double ringHalfHeight = (rows - 1) * rowSpacing / 2 + 130;
constexpr double streetHalfWidth = 6;
constexpr double cornerRadius = 5;

const std::array<const char*, rows> rowNames{"Weaver Street", "Mill Street",    "Church Street",  "Market Street",
                                             "Linden Street", "Station Street", "Orchard Street", "Meadow Street"};
const std::array<const char*, columns> columnNames{"West Way",      "Cooper's Row", "School Lane",
                                                   "Bridge Road",   "High Street",  "Chapel Lane",
                                                   "Saddler's Row", "Park Avenue",  "East Way"};

// Millimetres, as a survey delivers them.
Place rounded(Place p) {
    return {std::round(p.x * 1000) / 1000, std::round(p.y * 1000) / 1000};
}

Place along(Place a, Place b, double ratio) {
    return {a.x + ratio * (b.x - a.x), a.y + ratio * (b.y - a.y)};
}

Place towards(Place from, double angle, double length) {
    return {from.x + length * std::cos(angle), from.y + length * std::sin(angle)};
}

struct Grid {
    std::array<std::array<Place, columns>, rows> crossings;
};

Grid drawGrid(Dice& dice) {
    Grid grid;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const double dx = dice.between(-jitter, jitter) + 5 * std::sin(row * 0.8);
            const double dy = dice.between(-jitter, jitter) + 6 * std::sin(column * 0.7);
            grid.crossings[row][column] =
                rounded({southWest.x + column * columnSpacing + dx, southWest.y + row * rowSpacing + dy});
        }
    }
    return grid;
}

// One block long, slightly bent: a vertex off the middle of the straight line.
std::vector<Place> block(Place from, Place to, Dice& dice) {
    const Place middle = along(from, to, dice.between(0.4, 0.6));
    return {from, rounded({middle.x + dice.between(-1, 1), middle.y + dice.between(-1, 1)}), to};
}

StreetClass classOf(int index, int mainIndex) {
    return index == mainIndex ? StreetClass::main : StreetClass::residential;
}

// Crossings that nobody drew: the streets pass each other there without a common vertex.
bool isDrawn(int row, int column) {
    return !(row == 4 && column == 2) && !(row == 6 && column == 5) && !(row == 2 && column == 6);
}

void addRowStreets(const Grid& grid, int row, Dice& dice, std::vector<Street>& streets) {
    std::vector<Place> line{grid.crossings[row][0]};
    int firstBlock = 0;
    for (int column = 1; column < columns; ++column) {
        const std::vector<Place> next = block(grid.crossings[row][column - 1], grid.crossings[row][column], dice);
        line.push_back(next[1]);
        if (isDrawn(row, column)) {
            line.push_back(next[2]);
            streets.push_back({rowNames[row], classOf(row, 3), line, 1 + 20 * firstBlock});
            line = {next[2]};
            firstBlock = column;
        }
    }
}

void addColumnStreets(const Grid& grid, int column, Dice& dice, std::vector<Street>& streets) {
    std::vector<Place> line{grid.crossings[0][column]};
    int firstBlock = 0;
    for (int row = 1; row < rows; ++row) {
        const std::vector<Place> next = block(grid.crossings[row - 1][column], grid.crossings[row][column], dice);
        line.insert(line.end(), next.begin() + 1, next.end());
        if (isDrawn(row, column)) {
            streets.push_back({columnNames[column], classOf(column, 4), line, 1 + 20 * firstBlock});
            line = {next[2]};
            firstBlock = row;
        }
    }
}

void addGridStreets(const Grid& grid, Dice& dice, std::vector<Street>& streets) {
    for (int row = 0; row < rows; ++row) {
        addRowStreets(grid, row, dice, streets);
    }
    for (int column = 0; column < columns; ++column) {
        addColumnStreets(grid, column, dice, streets);
    }
}

// A rounded rectangle: the curve |x / a|^4 + |y / b|^4 = 1.
Place onRing(double angle) {
    const double x = std::cos(angle);
    const double y = std::sin(angle);
    const double stretch = 1 / std::pow(std::pow(x, 4) + std::pow(y, 4), 0.25);
    return rounded({centre.x + ringHalfWidth * stretch * x, centre.y + ringHalfHeight * stretch * y});
}

// The direction in which the ring road is met when one goes on from a crossing away from the centre.
double ringAngle(Place p) {
    return std::atan2((p.y - centre.y) / ringHalfHeight, (p.x - centre.x) / ringHalfWidth);
}

// Where the main streets leave the town. `gap` is the distance by which the road misses the ring road's axis: positive
// when it ends short of it, negative when it runs over, as happens when roads are digitized by eye.
struct Exit {
    Place crossing;
    const char* name;
    double gap;
};

std::vector<Exit> exits(const Grid& grid) {
    const auto& at = grid.crossings;
    return {{at[3][8], "Market Street", 0}, {at[6][8], "Orchard Street", 0.35}, {at[7][6], "Saddler's Row", 0},
            {at[7][4], "High Street", 0},   {at[7][1], "Cooper's Row", -0.4},   {at[5][0], "Station Street", 0},
            {at[3][0], "Market Street", 0}, {at[1][0], "Mill Street", 0},       {at[0][2], "School Lane", 0.25},
            {at[0][4], "High Street", 0},   {at[0][7], "Park Avenue", 0},       {at[1][8], "Mill Street", -0.3}};
}

std::vector<Place> ringPiece(double from, double to) {
    constexpr double step = 0.035; // radians
    const int pieces = static_cast<int>(std::ceil((to - from) / step));
    std::vector<Place> line;
    for (int i = 0; i <= pieces; ++i) {
        line.push_back(onRing(from + (to - from) * i / pieces));
    }
    return line;
}

void addRingRoad(const Grid& grid, std::vector<Street>& streets) {
    std::vector<double> angles;
    for (const Exit& exit : exits(grid)) {
        const double angle = ringAngle(exit.crossing);
        angles.push_back(angle);
        const Place end = onRing(angle);
        const double ratio = 1 - exit.gap / distance(exit.crossing, end);
        streets.push_back(
            {exit.name, StreetClass::main, {exit.crossing, rounded(along(exit.crossing, end, ratio))}, 201});
    }
    std::sort(angles.begin(), angles.end());
    for (std::size_t i = 0; i < angles.size(); ++i) {
        const bool isLast = i + 1 == angles.size();
        const double end = isLast ? angles.front() + 2 * std::numbers::pi : angles[i + 1];
        std::vector<Place> line = ringPiece(angles[i], end);
        line.back() = onRing(isLast ? angles.front() : end);
        streets.push_back({"Ring Road", StreetClass::ring, line, 1 + 40 * static_cast<int>(i)});
    }
}

// Winds along the river at the western edge of the town, across the ring road and the roads out of it, without
// crossings of its own.
void addRiverRoad(std::vector<Street>& streets) {
    constexpr int pieces = 4;
    constexpr int steps = 14;
    const double x = centre.x - ringHalfWidth + 12;
    const double y = centre.y - ringHalfHeight - 40;
    const double stepLength = (2 * ringHalfHeight + 80) / (pieces * steps);
    for (int piece = 0; piece < pieces; ++piece) {
        std::vector<Place> line;
        for (int i = piece * steps; i <= (piece + 1) * steps; ++i) {
            line.push_back(rounded({x - 40 * std::sin(i * 0.11) + 9 * std::sin(i * 0.37), y + i * stepLength}));
        }
        streets.push_back({"River Road", StreetClass::rural, line, 1 + 30 * piece});
    }
}

struct Site {
    int row;
    int column;
};
constexpr std::array<Site, 3> parks{{{3, 3}, {5, 6}, {1, 1}}};

// Footpaths through the parks. They begin and end beside the streets' axes rather than on them.
void addParkWalks(const Grid& grid, std::vector<Street>& streets) {
    const std::array<const char*, 3> names{"Abbey Walk", "Potter's Walk", "Tanner's Walk"};
    for (std::size_t i = 0; i < parks.size(); ++i) {
        const auto& south = grid.crossings[parks[i].row];
        const auto& north = grid.crossings[parks[i].row + 1];
        const int column = parks[i].column;
        const Place from = along(south[column], south[column + 1], 0.35);
        const Place to = along(north[column], north[column + 1], 0.7);
        const Place bend = along(along(from, to, 0.5), north[column], 0.2);
        streets.push_back({names[i], StreetClass::lane, {rounded(from), rounded(bend), rounded(to)}, 1});
    }
}

// The point of a block at ratios from west to east and from south to north.
struct Block {
    Place southWest, southEast, northWest, northEast;

    [[nodiscard]] Place at(double u, double v) const {
        return rounded(along(along(southWest, southEast, u), along(northWest, northEast, u), v));
    }
};

Block insideStreets(const Grid& grid, int row, int column) {
    const auto& at = grid.crossings;
    const double inset = streetHalfWidth * std::numbers::sqrt2;
    const Place a = at[row][column], b = at[row][column + 1], c = at[row + 1][column], d = at[row + 1][column + 1];
    const auto inward = [inset](Place corner, Place opposite) {
        return along(corner, opposite, inset / distance(corner, opposite));
    };
    return {inward(a, d), inward(b, c), inward(c, b), inward(d, a)};
}

Corner sharp(Place p) {
    return {p, p, p, false};
}

// The arc that touches both sides `cornerRadius` away from the corner; the sides are nearly at right angles.
Corner roundedOff(Place before, Place corner, Place after) {
    const Place begin = along(corner, before, cornerRadius / distance(corner, before));
    const Place end = along(corner, after, cornerRadius / distance(corner, after));
    const Place chordMiddle = along(begin, end, 0.5);
    const double depth = distance(corner, chordMiddle);
    const Place middle = along(corner, chordMiddle, (std::numbers::sqrt2 - 1) * cornerRadius / depth);
    return {rounded(begin), rounded(middle), rounded(end), true};
}

Parcel parcelOf(const Block& block, const std::array<double, 2>& u, const std::array<double, 2>& v) {
    const std::array<std::array<double, 2>, 4> ratios{{{u[0], v[0]}, {u[0], v[1]}, {u[1], v[1]}, {u[1], v[0]}}};
    std::array<Place, 4> places;
    for (std::size_t i = 0; i < 4; ++i) {
        places[i] = block.at(ratios[i][0], ratios[i][1]);
    }
    Parcel parcel;
    for (std::size_t i = 0; i < 4; ++i) {
        const auto isOuter = [](double ratio) { return ratio == 0 || ratio == 1; };
        const bool atCrossing = isOuter(ratios[i][0]) && isOuter(ratios[i][1]);
        parcel.corners.push_back(atCrossing ? roundedOff(places[(i + 3) % 4], places[i], places[(i + 1) % 4])
                                            : sharp(places[i]));
    }
    return parcel;
}

// Two rows of lots back to back, three or four wide, with common corners.
void addLots(const Block& block, Dice& dice, std::vector<Parcel>& parcels) {
    const std::size_t lots = 3 - dice.below(4) / 3;
    std::vector<double> sides{0};
    for (std::size_t i = 1; i < lots; ++i) {
        sides.push_back((static_cast<double>(i) + dice.between(-0.15, 0.15)) / static_cast<double>(lots));
    }
    sides.push_back(1);
    const double back = dice.between(0.44, 0.56);
    for (std::size_t i = 0; i < lots; ++i) {
        parcels.push_back(parcelOf(block, {sides[i], sides[i + 1]}, {0, back}));
        parcels.push_back(parcelOf(block, {sides[i], sides[i + 1]}, {back, 1}));
    }
}

void addParcels(const Grid& grid, Dice& dice, std::vector<Parcel>& parcels) {
    for (int row = 0; row + 1 < rows; ++row) {
        for (int column = 0; column + 1 < columns; ++column) {
            const Block block = insideStreets(grid, row, column);
            const bool isOpenSpace =
                (row == 3 && column == 3) || (row == 5 && column == 6) || (row == 1 && column == 1);
            if (isOpenSpace) {
                parcels.push_back(parcelOf(block, {0, 1}, {0, 1}));
                parcels.back().isOpenSpace = true;
            } else {
                addLots(block, dice, parcels);
            }
        }
    }
}

// Walks on from the last station; chainage counts along the line.
class Survey {
public:
    Survey(Place start, double direction) : direction_(direction) { add(start, 0); }

    void goStraight(double length) { add(towards(last().at, direction_, length), length); }
    void turn(double radius, double angle) {
        const double side = angle > 0 ? std::numbers::pi / 2 : -std::numbers::pi / 2;
        const Place pivot = towards(last().at, direction_ + side, radius);
        for (int half = 0; half < 2; ++half) {
            direction_ += angle / 2;
            add(towards(pivot, direction_ - side, radius), radius * std::abs(angle) / 2);
        }
    }
    [[nodiscard]] std::vector<SurveyPoint>& stations() { return stations_; }

private:
    [[nodiscard]] const SurveyPoint& last() const { return stations_.back(); }
    void add(Place p, double length) {
        chainage_ += length;
        const Place place = rounded(p);
        const double height = 41.5 + 0.004 * (place.x - southWest.x) + 0.8 * std::sin(chainage_ / 37);
        stations_.push_back({place, std::round(height * 1000) / 1000, std::round(chainage_ * 1000) / 1000});
    }

    double direction_;
    double chainage_ = 0;
    std::vector<SurveyPoint> stations_;
};

void addSurveyLines(const Grid& grid, Dice& dice, std::vector<SurveyLine>& lines) {
    for (int i = 0; i < 12; ++i) {
        const Place start = grid.crossings[static_cast<int>(dice.below(rows))][static_cast<int>(dice.below(columns))];
        Survey survey({start.x + 2.75, start.y + 2.75}, dice.between(0, 2 * std::numbers::pi));
        const std::size_t bends = 1 + dice.below(3);
        survey.goStraight(dice.between(18, 45));
        for (std::size_t bend = 0; bend < bends; ++bend) {
            survey.turn(dice.between(12, 40), dice.between(0.5, 1.6) * (dice.below(2) == 0 ? 1 : -1));
            survey.goStraight(dice.between(15, 40));
        }
        if (i % 4 == 1) {
            survey.stations()[1].chainage = std::numeric_limits<double>::quiet_NaN();
        }
        lines.push_back({"SV-" + std::to_string(101 + i), survey.stations()});
    }
}

} // namespace

// After G. L. Steele, D. Lea and C. H. Flood, "Fast splittable pseudorandom number generators", 2014 (SplitMix64).
double Dice::between(double low, double high) {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    z ^= z >> 31U;
    constexpr double states = 9007199254740992; // 2^53
    return low + (high - low) * (static_cast<double>(z >> 11U) / states);
}

std::size_t Dice::below(std::size_t count) {
    return static_cast<std::size_t>(between(0, static_cast<double>(count)));
}

double distance(Place a, Place b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

double lengthOf(const std::vector<Place>& line) {
    double length = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        length += distance(line[i - 1], line[i]);
    }
    return length;
}

Plan drawPlan(Dice& dice) {
    const Grid grid = drawGrid(dice);
    Plan plan;
    addGridStreets(grid, dice, plan.streets);
    addRingRoad(grid, plan.streets);
    addRiverRoad(plan.streets);
    addParkWalks(grid, plan.streets);
    addParcels(grid, dice, plan.parcels);
    addSurveyLines(grid, dice, plan.surveyLines);
    return plan;
}

} // namespace town
