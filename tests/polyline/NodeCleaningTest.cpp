#include <array>
#include <cmath>
#include <random>

#include <fmt/format.h>

#include "common/NumberText.h"
#include "platform/geometry/Measures.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

bool removePseudo(Streets& streets, std::int32_t lDisIndex = -1) {
    return streets.component.QZ_RemovePseudo(*streets.layer, *streets.all(), lDisIndex, 10, streets.refresh, nullptr,
                                             streets.host);
}

TEST(RemovePseudo, ChainsRunFromTheLowerEnd) {
    const struct {
        const char* name;
        Rows lines; // with ids from 1 on
        Rows merged;
    } rows[] = {
        {"one after the other",
         {"LINESTRING ZM (0 0 1 5,1 0 2 6)", "LINESTRING ZM (1 0 3 7,2 0 4 8)"},
         {"1 LINESTRING ZM (0 0 1 5,1 0 2 6,2 0 4 8) lowest 2"}},
        {"end to end",
         {"LINESTRING (0 0,1 0)", "LINESTRING (2 0,1 0)"},
         {"1 LINESTRING ZM (0 0 NaN NaN,1 0 NaN NaN,2 0 NaN NaN) lowest 2"}},
        {"the first runs into the second",
         {"LINESTRING (1 0,0 0)", "LINESTRING (2 0,1 0)"},
         {"1 LINESTRING ZM (2 0 NaN NaN,1 0 NaN NaN,0 0 NaN NaN) lowest 2"}},
        {"start to start",
         {"LINESTRING (1 0,0 0)", "LINESTRING (1 0,2 0)"},
         {"1 LINESTRING ZM (0 0 NaN NaN,1 0 NaN NaN,2 0 NaN NaN) lowest 2"}},
        {"the lowest in the middle",
         {"LINESTRING (1 0,2 0)", "LINESTRING (3 0,2 0)", "LINESTRING (0 0,1 0)"},
         {"2 LINESTRING ZM (3 0 NaN NaN,2 0 NaN NaN,1 0 NaN NaN,0 0 NaN NaN) - 3"}},
        {"a ring",
         {"LINESTRING (0 0,1 0)", "LINESTRING (1 0,1 1)", "LINESTRING (0 0,1 1)"},
         {"1 LINESTRING ZM (0 0 NaN NaN,1 0 NaN NaN,1 1 NaN NaN,0 0 NaN NaN) lowest 3"}},
        {"a loop is no chain with itself",
         {"LINESTRING (0 0,1 0,1 1,0 0)"},
         {"1 LINESTRING ZM (0 0 NaN NaN,1 0 NaN NaN,1 1 NaN NaN,0 0 NaN NaN) lowest 1"}},
        {"a crossing of three stays",
         {"LINESTRING (0 0,1 0)", "LINESTRING (1 0,2 0)", "LINESTRING (1 0,1 1)"},
         {"1 LINESTRING ZM (0 0 NaN NaN,1 0 NaN NaN) lowest 1", "2 LINESTRING ZM (1 0 NaN NaN,2 0 NaN NaN) - 1",
          "3 LINESTRING ZM (1 0 NaN NaN,1 1 NaN NaN) - 1"}},
        {"arcs stay arcs",
         {"CIRCULARSTRING (0 0,1 1,2 0)", "CIRCULARSTRING (4 0,3 -1,2 0)"},
         {"1 CIRCULARSTRING ZM (0 0 NaN NaN,1 1 NaN NaN,2 0 NaN NaN,3 -1 NaN NaN,4 0 NaN NaN) lowest 2"}},
        {"one node by its key",
         {"LINESTRING (0 0,1 0)", "LINESTRING (1.0001 0,2 0)"},
         {"1 LINESTRING ZM (0 0 NaN NaN,1 0 NaN NaN,1.0001 0 NaN NaN,2 0 NaN NaN) lowest 2"}},
    };
    for (const auto& row : rows) {
        Streets streets;
        for (std::size_t i = 0; i < row.lines.size(); ++i) {
            streets.add(row.lines[i], {std::string(i == 0 ? "lowest" : "-"), 0.0, 0.0, 1.0});
        }
        EXPECT_TRUE(removePseudo(streets)) << row.name;
        EXPECT_EQ(streets.listed({"NAME", "LENGTH"}), row.merged) << row.name;
    }
}

TEST(RemovePseudo, AddressesCoverTheChain) {
    const struct {
        const char* name;
        std::vector<std::array<double, 2>> ranges; // of lines that follow each other; negative: the line runs back
        std::array<double, 2> merged;
    } rows[] = {
        {"ascending", {{1, 9}, {11, 19}, {21, 29}}, {1, 29}},
        {"descending", {{29, 21}, {19, 11}}, {29, 11}},
        {"the second runs back", {{1, 9}, {-19, -11}}, {1, 19}},
        {"the first runs back", {{-9, -1}, {11, 19}}, {1, 19}},
        {"not in their order", {{21, 29}, {1, 9}, {31, 39}}, {1, 39}},
    };
    for (const auto& row : rows) {
        Streets streets;
        double x = 0;
        for (const auto& [from, to] : row.ranges) {
            const bool runsBack = from < 0;
            streets.add(fmt::format("LINESTRING ({} 0,{} 0)", runsBack ? x + 1 : x, runsBack ? x : x + 1),
                        {std::string("A"), std::abs(from), std::abs(to), 2.5});
            ++x;
        }
        EXPECT_TRUE(removePseudo(streets)) << row.name;
        const FeaturePtr kept = streets.streets().feature(1);
        const auto& fields = streets.streets().schema();
        EXPECT_EQ(toDouble(kept->value(*fields.findField("FROM_L"))), row.merged[0]) << row.name;
        EXPECT_EQ(toDouble(kept->value(*fields.findField("TO_L"))), row.merged[1]) << row.name;
        EXPECT_EQ(toDouble(kept->value(*fields.findField("LENGTH"))), 2.5 * x) << row.name;
    }
}

TEST(RemovePseudo, OnlyWhereTheFieldAgrees) {
    Streets streets;
    const char* names[] = {"Elm", "Elm", "Oak", "", ""};
    for (int i = 0; i < 5; ++i) {
        const Value name = i < 3 ? Value(std::string(names[i])) : Value();
        streets.add(fmt::format("LINESTRING ({} 0,{} 0)", i, i + 1), {name, 0.0, 0.0, 1.0});
    }
    const auto index = static_cast<std::int32_t>(*streets.streets().schema().findField("NAME"));
    EXPECT_TRUE(removePseudo(streets, index));
    EXPECT_EQ(streets.shapes(), (Rows{"1 LINESTRING ZM (0 0 NaN NaN,1 0 NaN NaN,2 0 NaN NaN)",
                                      "3 LINESTRING ZM (2 0 NaN NaN,3 0 NaN NaN)",
                                      "4 LINESTRING ZM (3 0 NaN NaN,4 0 NaN NaN,5 0 NaN NaN)"}));
    EXPECT_FALSE(removePseudo(streets, 99));
    EXPECT_EQ(streets.messages.size(), 1U);
    EXPECT_EQ(streets.shapes().size(), 3U);
}

double totalLength(Streets& streets) {
    double sum = 0;
    const CursorPtr cursor = streets.all();
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        sum += length(row->shape()->as<Polyline>());
    }
    return sum;
}

// Random cuts of a grid of streets: the grid's own nodes stay, and nothing but them.
TEST(RemovePseudo, LeavesNoPseudoNodeAndAllOfTheLength) {
    std::mt19937 random(4);
    std::uniform_int_distribution<int> pieces(1, 4), coin(0, 1);
    Streets streets;
    int crossings = 0;
    for (int street = 0; street < 24; ++street) {
        const bool across = street % 2 == 0;
        for (int block = 0; block < 12; ++block, ++crossings) {
            const int count = pieces(random);
            for (int piece = 0; piece < count; ++piece) {
                double from = block + 1.0 * piece / count, to = block + 1.0 * (piece + 1) / count;
                if (coin(random) == 1) {
                    std::swap(from, to);
                }
                const int offset = street / 2;
                streets.add(across ? fmt::format("LINESTRING ({} {},{} {})", from, offset, to, offset)
                                   : fmt::format("LINESTRING ({} {},{} {})", offset, from, offset, to));
            }
        }
    }
    const double before = totalLength(streets);
    EXPECT_TRUE(removePseudo(streets));
    EXPECT_NEAR(totalLength(streets), before, 1e-9);
    EXPECT_EQ(streets.shapes().size(), 288U - 1U) << "a corner of the grid is a pseudo node too";
}

TEST(RemoveRedundantNodes, EndsComeOntoOnePlace) {
    const struct {
        const char* name;
        Rows lines;
        Rows moved;
    } rows[] = {
        {"two: halfway",
         {"LINESTRING ZM (-9 0 1 1,0 0 2 2)", "LINESTRING ZM (1 0 4 3,9 9 5 4)"},
         {"1 LINESTRING ZM (-9 0 1 1,0.5 0 3 2)", "2 LINESTRING ZM (0.5 0 3 3,9 9 5 4)"}},
        {"one without a height",
         {"LINESTRING ZM (-9 0 1 1,0 0 2 2)", "LINESTRING ZM (1 0 NaN 3,9 9 5 4)"},
         {"1 LINESTRING ZM (-9 0 1 1,0.5 0 2 2)", "2 LINESTRING ZM (0.5 0 NaN 3,9 9 5 4)"}},
        {"more: the middle of their circle",
         {"LINESTRING ZM (-9 0 1 1,0 0 2 2)", "LINESTRING ZM (1 0 4 3,9 9 5 4)",
          "LINESTRING ZM (-9 9 0 0,0.5 0.1 7 7)"},
         {"1 LINESTRING ZM (-9 0 1 1,0.5 0 2 2)", "2 LINESTRING ZM (0.5 0 4 3,9 9 5 4)",
          "3 LINESTRING ZM (-9 9 0 0,0.5 0 7 7)"}},
        {"one node only",
         {"LINESTRING ZM (-9 0 1 1,0 0 2 2)", "LINESTRING ZM (0 0 4 3,9 9 5 4)"},
         {"1 LINESTRING ZM (-9 0 1 1,0 0 2 2)", "2 LINESTRING ZM (0 0 4 3,9 9 5 4)"}},
        {"a line between two of them keeps its length",
         {"LINESTRING ZM (0 0 1 1,1 0 1 1)"},
         {"1 LINESTRING ZM (0 0 1 1,1 0 1 1)"}},
        {"both ends of a line with a bend",
         {"LINESTRING ZM (0 0 1 1,0 5 9 9,1 0 1 1)"},
         {"1 LINESTRING ZM (0.5 0 1 1,0 5 9 9,0.5 0 1 1)"}},
    };
    const Envelope envelope{-2, -2, 2, 2};
    for (const auto& row : rows) {
        Streets streets;
        for (const std::string& line : row.lines) {
            streets.add(line);
        }
        streets.add("LINESTRING ZM EMPTY");
        EXPECT_TRUE(streets.component.QZ_RemoveRedundantNodes(streets.streets(), *streets.all(), streets.reference,
                                                              &envelope, 10, streets.refresh, streets.host))
            << row.name;
        EXPECT_EQ(streets.shapes(), row.moved) << row.name;
    }
}

TEST(DeleteSelectedDangles, ShortFreeLinesInTheArea) {
    Streets streets;
    streets.add("LINESTRING (0 0,10 0)");         // 1 between 2 and 3
    streets.add("LINESTRING (10 0,20 0)");        // 2 ends freely outside of the area
    streets.add("LINESTRING (0 0,0 5)");          // 3 exactly as long as the limit
    streets.add("LINESTRING (10 0,10 4)");        // 4 short
    streets.add("LINESTRING (2 2,3 3)");          // 5 free at both ends
    streets.add("LINESTRING (0 0,-0.5 0,0 0.5)"); // 6 reaches out of the area
    streets.add("LINESTRING (10 4,11 4)");        // 7 its end is 4's end
    streets.add("LINESTRING (50 50,51 50)");      // 8 elsewhere
    const auto run = [&](double limit) {
        Geometry area = geometryFromWkt("POLYGON ((-0.2 -1,-0.2 10,15 10,15 -1,-0.2 -1))");
        area.traits().spatialReference = streets.reference;
        return streets.component.QZ_DeleteSelectedDangles(streets.streets(), streets.reference, area, limit,
                                                          streets.host);
    };
    const auto left = [&] {
        std::string ids;
        for (const std::string& row : streets.shapes()) {
            ids += row.substr(0, row.find(' '));
        }
        return ids;
    };
    EXPECT_TRUE(run(5));
    EXPECT_EQ(left(), "123468") << "4 ends freely only now";
    EXPECT_TRUE(run(5));
    EXPECT_EQ(left(), "12368");
    EXPECT_TRUE(run(-1));
    EXPECT_EQ(left(), "1268");
}

} // namespace
} // namespace qz::test
