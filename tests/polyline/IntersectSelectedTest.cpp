#include <cmath>
#include <map>
#include <random>
#include <set>

#include <fmt/format.h>

#include "platform/geometry/Measures.h"
#include "polyline/QZIntersectSelected.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

struct NodedStreets : Streets {
    bool intersect(bool bOver = true) {
        const CursorPtr cursor = all();
        return component.QZ_SelectAndIntersectRun(*layer, *cursor, static_cast<std::int32_t>(streets().count()),
                                                  refresh, 0.001, bOver, host);
    }
};

struct IntersectSelected : testing::Test, NodedStreets {};

TEST(Noding, LinesAreCutAtCrossingsTouchesAndEndsOfSharedStretches) {
    const struct {
        const char* what;
        Rows lines;
        Rows pieces;
    } rows[] = {
        {"crossing",
         {"LINESTRING ZM (0 5 1 0,10 5 3 10)", "LINESTRING ZM (5 0 9 0,5 10 9 10)"},
         {"LINESTRING ZM (0 5 1 0,5 5 2 5)", "LINESTRING ZM (5 5 2 5,10 5 3 10)", "LINESTRING ZM (5 0 9 0,5 5 2 5)",
          "LINESTRING ZM (5 5 2 5,5 10 9 10)"}},
        {"an end on the other line",
         {"LINESTRING ZM (0 0 0 0,10 0 0 0)", "LINESTRING ZM (4 0 0 0,4 5 0 0)"},
         {"LINESTRING ZM (0 0 0 0,4 0 0 0)", "LINESTRING ZM (4 0 0 0,10 0 0 0)", "LINESTRING ZM (4 0 0 0,4 5 0 0)"}},
        {"an end a hair off the other line",
         {"LINESTRING ZM (0 0 0 0,10 0 0 0)", "LINESTRING ZM (4 0.0006 0 0,4 5 0 0)"},
         {"LINESTRING ZM (0 0 0 0,4 0.0006 0 0)", "LINESTRING ZM (4 0.0006 0 0,10 0 0 0)",
          "LINESTRING ZM (4 0.0006 0 0,4 5 0 0)"}},
        {"a shared stretch",
         {"LINESTRING ZM (0 0 0 0,10 0 0 0)", "LINESTRING ZM (3 1 0 0,4 0 0 0,6 0 0 0,7 1 0 0)"},
         {"LINESTRING ZM (0 0 0 0,4 0 0 0)", "LINESTRING ZM (4 0 0 0,6 0 0 0)", "LINESTRING ZM (6 0 0 0,10 0 0 0)",
          "LINESTRING ZM (3 1 0 0,4 0 0 0)", "LINESTRING ZM (4 0 0 0,6 0 0 0)", "LINESTRING ZM (6 0 0 0,7 1 0 0)"}},
        {"both ends shared",
         {"LINESTRING ZM (0 0 0 0,10 0 0 0)", "LINESTRING ZM (0 0 0 0,5 5 0 0,10 0 0 0)"},
         {"LINESTRING ZM (0 0 0 0,10 0 0 0)", "LINESTRING ZM (0 0 0 0,5 5 0 0,10 0 0 0)"}},
        {"a line that crosses itself",
         {"LINESTRING ZM (0 0 0 0,10 0 0 0,10 5 0 0,5 5 0 0,5 -5 0 0)", "LINESTRING ZM (4 -5 0 0,6 -5 0 0)"},
         {"LINESTRING ZM (0 0 0 0,5 0 0 0)", "LINESTRING ZM (5 0 0 0,10 0 0 0,10 5 0 0,5 5 0 0,5 0 0 0)",
          "LINESTRING ZM (5 0 0 0,5 -5 0 0)", "LINESTRING ZM (4 -5 0 0,5 -5 0 0)",
          "LINESTRING ZM (5 -5 0 0,6 -5 0 0)"}},
        {"a line that ends on itself",
         {"LINESTRING ZM (0 0 0 0,10 0 0 0,10 5 0 0,5 0 0 0)", "LINESTRING ZM (0 0 0 0,0 5 0 0)"},
         {"LINESTRING ZM (0 0 0 0,5 0 0 0)", "LINESTRING ZM (5 0 0 0,10 0 0 0,10 5 0 0,5 0 0 0)",
          "LINESTRING ZM (0 0 0 0,0 5 0 0)"}},
    };
    for (const auto& row : rows) {
        NodedStreets data;
        for (const std::string& line : row.lines) {
            data.add(line);
        }
        EXPECT_TRUE(data.intersect()) << row.what;
        Rows expected = row.pieces;
        std::ranges::sort(expected);
        EXPECT_EQ(data.sortedShapes(), expected) << row.what;
        EXPECT_TRUE(data.messages.empty());
    }
}

TEST_F(IntersectSelected, NothingToCutIsFalseAndChangesNothing) {
    EXPECT_FALSE(intersect()) << "no line";
    add("LINESTRING ZM (0 0 0 0,10 0 0 0)");
    EXPECT_FALSE(intersect()) << "one line";
    add("LINESTRING ZM (0 5 0 0,10 5 0 0)");
    add("");
    add("LINESTRING ZM EMPTY");
    const Rows before = shapes();
    EXPECT_FALSE(intersect()) << "lines apart";
    EXPECT_EQ(shapes(), before);
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(host.statusBar().stepProgressor().record().text, "Intersecting polylines: 1");
}

// A line alone that crosses itself is cut all the same.
TEST_F(IntersectSelected, SelfCrossingsAreCutBeforeAnythingElse) {
    add("LINESTRING ZM (0 0 0 0,10 0 0 0,10 5 0 0,5 5 0 0,5 -5 0 0)",
        {std::string("Loop"), std::int32_t{1}, std::int32_t{61}, 60.0});
    EXPECT_TRUE(intersect(false));
    const Rows rows = listed({"NAME", "FROM_L", "TO_L", "LENGTH"});
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_TRUE(rows[2].ends_with("55 61 10")) << rows[2] << ": the last piece ends the range";
}

TEST_F(IntersectSelected, ArcsAreCutIntoArcs) {
    add("CIRCULARSTRING ZM (0 0 0 0,5 5 0 5,10 0 0 10)");
    add("CIRCULARSTRING ZM (0 4 0 0,5 -1 0 5,10 4 0 10)");
    add("LINESTRING ZM (5 -10 0 0,5 10 0 0)");
    EXPECT_TRUE(intersect());
    int arcs = 0;
    std::multiset<std::pair<double, double>> ends;
    const CursorPtr cursor = all();
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        const Path& path = row->shape()->as<Polyline>().paths.front();
        arcs += path.hasArcs() ? 1 : 0;
        ends.insert({path.front().x, path.front().y});
        ends.insert({path.back().x, path.back().y});
    }
    EXPECT_EQ(arcs, 8) << "each arc is cut by the other arc twice and by the line once";
    EXPECT_EQ(ends.count({5, 5}), 4U);
    EXPECT_EQ(ends.count({5, -1}), 4U);
}

// Several lines that cross within the tolerance share one node, bit for bit.
TEST_F(IntersectSelected, CrossingsWithinTheToleranceAreOneNode) {
    add("LINESTRING ZM (0 0 0 0,10 10 0 0)");
    add("LINESTRING ZM (0 10 0 0,10 0 0 0)");
    add("LINESTRING ZM (0 5.0003 0 0,10 5.0001 0 0)");
    EXPECT_TRUE(intersect());
    std::map<std::pair<double, double>, int> ends;
    const CursorPtr cursor = all();
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        const Path& path = row->shape()->as<Polyline>().paths.front();
        ++ends[{path.front().x, path.front().y}];
        ++ends[{path.back().x, path.back().y}];
    }
    EXPECT_EQ(ends.size(), 7U) << "six ends and one node";
    EXPECT_EQ(std::ranges::max_element(ends, {}, [](const auto& entry) { return entry.second; })->second, 6);
}

struct Totals {
    double length = 0;
    double share = 0;
    std::vector<std::pair<int, int>> ranges;
};

// On a random network: pieces add up to their line in length and in value, ranges follow each other, every meeting is
// an end of all that meet there, and doing it again changes no geometry.
TEST_F(IntersectSelected, PropertiesOfANodedNetwork) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> place(0, 300);
    std::map<std::string, Totals> before;
    for (int i = 0; i < 150; ++i) {
        std::string wkt = "LINESTRING ZM (";
        XY at{place(random), place(random)};
        for (int k = 0; k < 6; ++k) {
            wkt += fmt::format("{}{:.4f} {:.4f} {:.2f} {}", k ? "," : "", at.x, at.y, place(random),
                               k == 0 || k == 5 ? fmt::format("{}", k * 7) : "NaN");
            at = {at.x + place(random) / 10 - 10, at.y + place(random) / 10 - 10};
        }
        const std::string name = fmt::format("{}", i);
        const ObjectId id = add(wkt + ")", {name, std::int32_t{2 * i + 1}, std::int32_t{2 * i + 2001}, 10.0});
        before[name] = {length(streets().feature(id)->shape()->as<Polyline>()), 10, {}};
    }
    ASSERT_TRUE(intersect(true)) << messages.size();
    std::map<std::string, Totals> after;
    const CursorPtr cursor = all();
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        const auto& line = row->shape()->as<Polyline>();
        Totals& totals = after[toText(row->value(2))];
        totals.length += length(line);
        totals.share += std::get<double>(row->value(5));
        totals.ranges.emplace_back(std::get<std::int32_t>(row->value(3)), std::get<std::int32_t>(row->value(4)));
        EXPECT_FALSE(std::isnan(line.paths.front().back().m)) << "measures are filled at the cuts";
    }
    for (auto& [name, totals] : after) {
        EXPECT_NEAR(totals.length, before[name].length, 0.01) << name;
        EXPECT_NEAR(totals.share, 10, 1e-4) << name;
        std::ranges::sort(totals.ranges);
        for (std::size_t i = 1; i < totals.ranges.size(); ++i) {
            EXPECT_EQ(totals.ranges[i].first, totals.ranges[i - 1].second) << name;
        }
        EXPECT_EQ(totals.ranges.back().second, 2 * std::stoi(name) + 2001);
    }
    const Rows once = sortedShapes();
    EXPECT_GT(once.size(), 300U);
    intersect(true);
    EXPECT_EQ(sortedShapes(), once);
}

TEST_F(IntersectSelected, SplittingWithAPolyline) {
    add("LINESTRING ZM (0 0 0 0,10 0 10 10)");
    add("LINESTRING ZM (0 8 0 0,10 8 0 0)");
    const Polyline cutter = geometryFromWkt("LINESTRING Z (4 -5 99,4 5 99,12 5 99,8 0 99,9 0 99)").as<Polyline>();
    EXPECT_TRUE(QZ_SplitWithPolyline2(host, *layer, *all(), cutter, 2, refresh, true));
    EXPECT_EQ(shapes(), (Rows{"2 LINESTRING ZM (0 8 0 0,10 8 0 0)", "3 LINESTRING ZM (0 0 0 0,4 0 4 4)",
                              "4 LINESTRING ZM (4 0 4 4,8 0 8 8)", "5 LINESTRING ZM (8 0 8 8,9 0 9 9)",
                              "6 LINESTRING ZM (9 0 9 9,10 0 10 10)"}))
        << "heights are the line's own";
    EXPECT_EQ(refresh.count(), 2);
}

} // namespace
} // namespace qz::test
