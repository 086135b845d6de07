#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// The plan of Ellerbrook, a small town that doesn't exist: plain coordinates in metres, the same on every machine.
namespace town {

struct Place {
    double x = 0;
    double y = 0;
};

enum class StreetClass { residential, main, ring, rural, lane };

struct Street {
    std::string name;
    StreetClass kind = StreetClass::residential;
    std::vector<Place> line;
    int firstNumber = 1; // of the odd side; the even side begins one higher
};

// A corner of a ring: sharp, or rounded by an arc from `begin` through `middle` to `end`.
struct Corner {
    Place begin;
    Place middle;
    Place end;
    bool isRounded = false;
};

struct Parcel {
    std::vector<Corner> corners; // clockwise
    bool isOpenSpace = false;
};

// Straight walls, clockwise.
struct Building {
    std::vector<Place> corners;
};

struct SurveyPoint {
    Place at;
    double height = 0;
    double chainage = 0; // NaN where it was not taken
};

// Runs straight and in arcs in turn, beginning straight: stations 0-1 straight, 1-2-3 an arc, 3-4 straight, ...
struct SurveyLine {
    std::string code;
    std::vector<SurveyPoint> stations;
};

struct Plan {
    std::vector<Street> streets;
    std::vector<Parcel> parcels;
    std::vector<SurveyLine> surveyLines;
};

// Numbers that are alike on every machine, unlike those of the standard library's distributions.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : state_(seed) {}
    // In [low, high).
    double between(double low, double high);
    // In [0, count).
    std::size_t below(std::size_t count);

private:
    std::uint64_t state_;
};

Plan drawPlan(Dice& dice);

// A house on most parcels, along their longest side; some with a wing, some measured badly.
std::vector<Building> drawBuildings(const std::vector<Parcel>& parcels, Dice& dice);

double distance(Place a, Place b);
double lengthOf(const std::vector<Place>& line);

} // namespace town
