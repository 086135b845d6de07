#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "cogo/QZCogoFields.h"
#include "cogo/QZCogoInverse.h"
#include "cogo/QZDirections.h"
#include "host/HeadlessHost.h"
#include "host/RefreshAreaRecord.h"
#include "platform/app/Services.h"
#include "platform/geometry/ArcConstruction.h"
#include "platform/geometry/Measures.h"
#include "tests/support/MemoryData.h"

namespace qz::test {
namespace {

using Texts = std::vector<std::string>;

// The layer "roads" with a NAME, and with the COGO fields once `addFields` was called.
struct CogoInverse : testing::Test {
    CogoInverse() : data(lines()) {
        services().showMessage = [this](const std::string& text) { messages.push_back(text); };
    }

    static Schema lines() {
        Schema schema = roadSchema();
        schema.fields = {field("NAME", FieldType::string), field("XEnd", FieldType::doubleFloat),
                         field("yend", FieldType::doubleFloat), field("SOURCE", FieldType::integer)};
        schema.fields.back().editable = false;
        return schema;
    }
    bool addFields(int linearDecimals, int angularDecimals) {
        return QZ_AddCogoFields(layer, linearDecimals, angularDecimals);
    }
    bool invert(const DirectionFormat& format) {
        const CursorPtr cursor = data.featureClass().update({});
        return QZ_CogoInverse(host, layer, *cursor, 1, refresh, format);
    }
    std::vector<FeaturePtr> rows() {
        std::vector<FeaturePtr> found;
        const CursorPtr cursor = data.featureClass().search({});
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            found.push_back(row);
        }
        return found;
    }
    static Value value(const Feature& row, const char* name) { return row.value(*row.schema().findField(name)); }
    static double number(const Feature& row, const char* name) { return std::get<double>(value(row, name)); }
    static std::string listed(const Feature& row, std::initializer_list<const char*> names) {
        std::string text;
        for (const char* name : names) {
            text += (text.empty() ? "" : " | ") + toText(value(row, name));
        }
        return text;
    }

    ScopedServices restored;
    std::vector<std::string> messages;
    std::ostringstream terminal;
    HeadlessHost host{terminal, false};
    RefreshAreaRecord refresh;
    MemoryData data;
    FeatureLayer& layer = host.focusMap().addLayer("roads", data.featureClass());
};

TEST_F(CogoInverse, NineFieldsAreAddedOnce) {
    EXPECT_TRUE(addFields(3, 4));
    EXPECT_TRUE(addFields(1, 1));
    Texts added;
    for (const Field& made : data.featureClass().schema().fields) {
        if (made.length > 0 || made.precision > 0) {
            added.push_back(made.name + " " + std::to_string(made.length) + " " + std::to_string(made.precision) + " " +
                            std::to_string(made.scale));
        }
    }
    EXPECT_EQ(added, (Texts{"Direction 16 0 0", "Distance 0 12 3", "Delta 0 8 4", "Radius 0 12 3", "Tangent 0 12 3",
                            "ArcLength 0 12 3", "Side 2 0 0", "XStart 0 12 3", "YStart 0 12 3"}));
    EXPECT_EQ(messages, Texts());
}

TEST_F(CogoInverse, DecimalsThatLeaveNoDigitAddNothing) {
    const std::size_t before = data.featureClass().schema().fields.size();
    EXPECT_FALSE(addFields(11, 2));
    EXPECT_FALSE(addFields(2, 7));
    EXPECT_FALSE(addFields(-1, 2));
    EXPECT_EQ(data.featureClass().schema().fields.size(), before);
    EXPECT_EQ(messages.size(), 3U);
}

TEST_F(CogoInverse, EverySegmentBecomesAFeature) {
    ASSERT_TRUE(addFields(2, 2));
    data.add("LINESTRING ZM (0 0 1 5,30 40 2 6,30 40 3 7,30 140 4 8,30 140 4 8,20 140 5 9)",
             {std::string("Elm"), 1.0, 2.0, std::int32_t{7}});
    data.add("", {std::string("null shape")});
    ASSERT_TRUE(invert({"Quadrant Bearing", "Degrees Minutes Seconds", 0}));
    Texts found;
    for (const FeaturePtr& row : rows()) {
        if (row->shape()) {
            found.push_back(
                toWkt(*row->shape()) + " " +
                listed(*row, {"NAME", "Direction", "Distance", "XStart", "YStart", "XEnd", "yend", "Delta", "Side"}));
        }
    }
    EXPECT_EQ(found, (Texts{
                         "LINESTRING ZM (0 0 1 5,30 40 2 6) Elm | N 36-52-12 E | 50 | 0 | 0 | 30 | 40 | null | null",
                         "LINESTRING ZM (30 40 3 7,30 140 4 8) Elm | N 0-00-00 E | 100 | 30 | 40 | 30 | 140 | null | "
                         "null",
                         "LINESTRING ZM (30 140 4 8,20 140 5 9) Elm | N 90-00-00 W | 10 | 30 | 140 | 20 | 140 | null | "
                         "null",
                     }));
    EXPECT_EQ(data.wkt(1), "none");
    EXPECT_EQ(data.wkt(2), "null");
    EXPECT_EQ(refresh.count(), 1);
}

TEST_F(CogoInverse, ArcsHaveTheirChordAndTheirCurve) {
    ASSERT_TRUE(addFields(2, 2));
    const struct {
        const char* wkt;
        const char* direction;
        const char* values; // distance, delta, radius, tangent, arc length, side
    } arcs[] = {
        {"CIRCULARSTRING (0 0,5 5,10 0)", "0.00", "10 | -180 | 5 | 0 | 15.71 | R"},
        {"CIRCULARSTRING (0 0,5.0001 -5.0001,10 0)", "0.00", "10 | 180 | 5 | 0 | 15.71 | L"},
        {"CIRCULARSTRING (10 0,7.0710678118654755 7.0710678118654755,0 10)", "135.00",
         "14.14 | 90 | 10 | 10 | 15.71 | L"},
        {"CIRCULARSTRING (0 10,-7.0710678118654755 -7.0710678118654755,10 0)", "315.00",
         "14.14 | 270 | 10 | -10 | 47.12 | L"},
        {"CIRCULARSTRING (0 10,7.0710678118654755 7.0710678118654755,10 0)", "315.00",
         "14.14 | -90 | 10 | -10 | 15.71 | R"},
    };
    for (const auto& arc : arcs) {
        const ObjectId id = insertRow(data.featureClass(), arc.wkt);
        const std::string before = data.wkt(id);
        ASSERT_TRUE(invert({"Polar", "Decimal Degrees", 2}));
        const auto found = rows();
        ASSERT_EQ(found.size(), 1U);
        EXPECT_NE(found[0]->objectId(), id);
        EXPECT_EQ(toWkt(*found[0]->shape()), before);
        EXPECT_EQ(std::get<std::string>(value(*found[0], "Direction")), arc.direction);
        EXPECT_EQ(listed(*found[0], {"Distance", "Delta", "Radius", "Tangent", "ArcLength", "Side"}), arc.values);
        found[0]->remove();
    }
}

TEST_F(CogoInverse, AnArcAsGoodAsStraightHasNoCurve) {
    ASSERT_TRUE(addFields(2, 2));
    data.add("CIRCULARSTRING (0 0,50 0.0000001,100 0)");
    ASSERT_TRUE(invert({"Polar", "Decimal Degrees", 2}));
    EXPECT_EQ(listed(*rows().front(), {"Distance", "Delta", "Radius", "Side"}), "100 | null | null | null");
    EXPECT_TRUE(rows().front()->shape()->as<Polyline>().paths[0].hasArcs());
}

TEST_F(CogoInverse, ASegmentThatCantBeStoredMakesTheResultFalse) {
    ASSERT_TRUE(addFields(2, 2));
    data.add("LINESTRING (0 0,10 0,2000000000000 0,2000000000000 10)");
    data.add("LINESTRING (0 0,10 0)");
    EXPECT_FALSE(invert({"Polar", "Decimal Degrees", 2}));
    ASSERT_EQ(messages.size(), 2U); // the length of one segment, the start of the other
    EXPECT_NE(messages[0].find("Distance"), std::string::npos) << messages[0];
    EXPECT_NE(messages[1].find("XStart"), std::string::npos) << messages[1];
    EXPECT_EQ(rows().size(), 2U);
    EXPECT_EQ(data.wkt(1), "none");
}

TEST_F(CogoInverse, DirectionsTooLongForTheirFieldAreNotCutOff) {
    ASSERT_TRUE(addFields(2, 2));
    data.add("LINESTRING (0 0,30 40)");
    EXPECT_FALSE(invert({"Quadrant Bearing", "Degrees Minutes Seconds", 6}));
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_NE(messages[0].find("Direction"), std::string::npos) << messages[0];
    EXPECT_NE(messages[0].find("N 36-52-11"), std::string::npos) << messages[0];
}

TEST_F(CogoInverse, UnknownWordsChangeNothing) {
    data.add("LINESTRING (0 0,30 40)");
    EXPECT_FALSE(invert({"polar", "Gons", 2}));
    EXPECT_FALSE(invert({"Polar", "Degrees", 2}));
    EXPECT_EQ(messages.size(), 2U);
    EXPECT_EQ(data.wkt(1), "LINESTRING ZM (0 0 NaN NaN,30 40 NaN NaN)");
}

Path randomTraverse(std::mt19937& random) {
    std::uniform_real_distribution<double> place(-200, 200);
    std::uniform_real_distribution<double> radius(0.5, 3); // of the chord
    Path path;
    path.addVertex({500000 + place(random), 5800000 + place(random)});
    for (int i = 0; i < 12; ++i) {
        const Vertex next{500000 + place(random), 5800000 + place(random)};
        if (i % 3 != 1) {
            path.addVertex(next);
            continue;
        }
        const Vertex last = path.back();
        const double chord = std::hypot(next.x - last.x, next.y - last.y);
        const auto sense = i % 2 == 0 ? ArcSense::clockwise : ArcSense::counterClockwise;
        path.append(arcBetween(last, next, chord * (0.1 + radius(random)), sense, ArcSize::minor));
    }
    return path;
}

// Half a unit of the last decimal, as an angle in radians.
double angularRounding(const std::string& unit, int decimals) {
    const double degree = std::numbers::pi / 180;
    const double last = std::pow(10, -decimals) / 2;
    return last * (unit == "Radians"                   ? 1
                   : unit == "Degrees Minutes Seconds" ? degree / 3600
                   : unit == "Decimal Degrees"         ? degree
                                                       : degree * 0.9);
}

constexpr std::int16_t traverseDecimals = 2;
constexpr double distanceRounding = 0.0005; // three decimals

struct Walk {
    XY reached;
    double allowed = 1e-6; // from the end of the line, by what the texts and numbers are rounded
    double length = 0;
    int arcs = 0;

    // One segment on, by what its row says.
    void follow(const Feature& row, const std::string& type, const std::string& unit) {
        const std::string text = std::get<std::string>(CogoInverse::value(row, "Direction"));
        const double radians = QZ_ReadDirection(text, type, unit).value() * std::numbers::pi / 180;
        const double distance = CogoInverse::number(row, "Distance");
        reached = {reached.x + distance * std::cos(radians), reached.y + distance * std::sin(radians)};
        allowed += distanceRounding + distance * angularRounding(unit, traverseDecimals);
        length += qz::length(row.shape()->as<Polyline>());
        if (!isNull(CogoInverse::value(row, "Radius"))) {
            ++arcs;
            const double radius = CogoInverse::number(row, "Radius");
            const double half = CogoInverse::number(row, "Delta") * std::numbers::pi / 360;
            EXPECT_EQ(half > 0, std::get<std::string>(CogoInverse::value(row, "Side")) == "L");
            // Delta has two decimals, so that half of it is off by up to 5E-5.
            EXPECT_NEAR(2 * radius * std::abs(std::sin(half)), distance, 1e-4 * radius + 2 * distanceRounding);
        }
    }
};

TEST_F(CogoInverse, WalkingTheTraverseBackReachesItsEnd) {
    ASSERT_TRUE(addFields(3, 2));
    std::mt19937 random(4711);
    for (const char* type : {"North Azimuth", "South Azimuth", "Polar", "Quadrant Bearing"}) {
        for (const char* unit : {"Radians", "Decimal Degrees", "Degrees Minutes Seconds", "Gradians", "Gons"}) {
            Polyline line;
            line.paths = {randomTraverse(random)};
            const FeaturePtr made = data.featureClass().createFeature();
            made->setShape(line);
            made->store();
            ASSERT_TRUE(invert({type, unit, traverseDecimals}));
            Walk walk{line.paths[0].front().xy()};
            for (const FeaturePtr& row : rows()) {
                walk.follow(*row, type, unit);
                row->remove();
            }
            const Vertex end = line.paths[0].back();
            EXPECT_LE(std::hypot(walk.reached.x - end.x, walk.reached.y - end.y), walk.allowed) << type << ", " << unit;
            EXPECT_NEAR(walk.length, length(line), 1e-6);
            EXPECT_EQ(walk.arcs, 4);
        }
    }
}

} // namespace
} // namespace qz::test
