#include <gtest/gtest.h>

#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/MeasureInterpolation.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/CurveSamples.h"

namespace qz {
namespace {

struct Row {
    const char* name;
    const char* before;
    const char* after;
};

template <typename Change> void expectChanged(const Row& row, Change change) {
    SCOPED_TRACE(row.name);
    Polyline line = geometryFromWkt(row.before).as<Polyline>();
    change(line);
    EXPECT_EQ(toWkt(line), row.after);
}

TEST(MeasureInterpolation, FillsBetweenKnownMeasures) {
    const Row rows[] = {
        {"by distance", "LINESTRING M (0 0 10,1 0 NaN,1 2 NaN,5 2 17)", "LINESTRING M (0 0 10,1 0 11,1 2 13,5 2 17)"},
        {"ends stay undefined", "LINESTRING M (0 0 NaN,1 0 1,2 0 NaN,3 0 3,4 0 NaN)",
         "LINESTRING M (0 0 NaN,1 0 1,2 0 2,3 0 3,4 0 NaN)"},
        {"none known", "LINESTRING M (0 0 NaN,1 0 NaN)", "LINESTRING M (0 0 NaN,1 0 NaN)"},
        {"segments without length", "LINESTRING M (0 0 1,1 0 NaN,1 0 NaN,2 0 3)",
         "LINESTRING M (0 0 1,1 0 2,1 0 2,2 0 3)"},
        {"no length at all", "LINESTRING M (0 0 1,0 0 NaN,0 0 3)", "LINESTRING M (0 0 1,0 0 1,0 0 3)"},
        {"parts on their own", "MULTILINESTRING M ((0 0 1,1 0 NaN),(2 0 NaN,3 0 4))",
         "MULTILINESTRING M ((0 0 1,1 0 NaN),(2 0 NaN,3 0 4))"},
        {"control point of an arc", "CIRCULARSTRING M (0 0 0,5 5 NaN,10 0 2)", "CIRCULARSTRING M (0 0 0,5 5 1,10 0 2)"},
    };
    for (const Row& row : rows) {
        expectChanged(row, [](Polyline& line) { interpolateMeasures(line); });
    }
}

TEST(MeasureInterpolation, ExtrapolatesAtTheRateOfTheNearestKnown) {
    const Row rows[] = {
        {"both ends", "LINESTRING M (0 0 NaN,1 0 NaN,2 0 4,3 0 6,5 0 7,7 0 NaN)",
         "LINESTRING M (0 0 0,1 0 2,2 0 4,3 0 6,5 0 7,7 0 8)"},
        {"between stays", "LINESTRING M (0 0 NaN,1 0 1,2 0 NaN,3 0 5)", "LINESTRING M (0 0 -1,1 0 1,2 0 NaN,3 0 5)"},
        {"one known", "LINESTRING M (0 0 NaN,1 0 1,2 0 NaN)", "LINESTRING M (0 0 NaN,1 0 1,2 0 NaN)"},
        {"two known at one place", "LINESTRING M (0 0 NaN,1 0 1,1 0 2,2 0 4)",
         "LINESTRING M (0 0 -2,1 0 1,1 0 2,2 0 4)"},
    };
    for (const Row& row : rows) {
        expectChanged(row, [](Polyline& line) { extrapolateMeasures(line); });
    }
}

TEST(MeasureInterpolation, SetsLinearMeasuresOverAllParts) {
    const Row rows[] = {
        {"parts", "MULTILINESTRING M ((0 0 7,1 0 NaN),(5 0 9,5 3 NaN))",
         "MULTILINESTRING M ((0 0 10,1 0 12),(5 0 12,5 3 18))"},
        {"no length", "LINESTRING M (0 0 NaN,0 0 NaN)", "LINESTRING M (0 0 10,0 0 10)"},
        {"empty", "LINESTRING M EMPTY", "LINESTRING M EMPTY"},
    };
    for (const Row& row : rows) {
        expectChanged(row, [](Polyline& line) { setLinearMeasures(line, 10, 18); });
    }
    const Row undefinedEnd{"undefined", "LINESTRING M (0 0 1,1 0 NaN)", "LINESTRING M (0 0 1,1 0 NaN)"};
    expectChanged(undefinedEnd, [](Polyline& line) { setLinearMeasures(line, undefined, 18); });
    expectChanged(undefinedEnd, [](Polyline& line) { setLinearMeasures(line, 10, undefined); });
}

TEST(MeasureInterpolation, LinearMeasureTellsTheDistanceAlong) {
    CurveSamples samples(41);
    for (int i = 0; i < 100; ++i) {
        Polyline line = samples.line(3, 5);
        const Polyline before = line;
        setLinearMeasures(line, 0, length(line));
        const double distance = samples.uniform(0, length(line));
        EXPECT_NEAR(pointAtDistance(line, distance)->m, distance, 1e-8);
        EXPECT_EQ(line.paths.back().back().m, length(line));
        EXPECT_TRUE(line.paths[1].hasSameXY(before.paths[1]) && line.paths[1].hasSameZ(before.paths[1]));
    }
}

TEST(MeasureInterpolation, RefusesWhatIsNotFinite) {
    Path broken(std::vector<XY>{{0, 0}, {undefined, 0}});
    EXPECT_THROW(interpolateMeasures(broken), PlatformError);
    EXPECT_THROW(extrapolateMeasures(broken), PlatformError);
    EXPECT_THROW(setLinearMeasures(broken, 0, 1), PlatformError);
}

} // namespace
} // namespace qz
