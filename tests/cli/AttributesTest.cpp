#include <gtest/gtest.h>

#include "tests/cli/Program.h"

namespace qz::test {
namespace {

using AttributeMethods = ProgramTest;

TEST_F(AttributeMethods, PasteSavesTheSameFeatureByFeatureOrInOneOperation) {
    std::filesystem::copy_file(folder / "town.gpkg", folder / "other.gpkg");
    const std::string paste = R"(--fid 1,2 --fieldDic '{"name":"Elm Row","MAXSPEED":200,"BUILT":"2001-02-03"}')";
    const Outcome each =
        qz("run QZ_PasteAttributes --data town.gpkg:streets " + paste + " --bEditing false --report -");
    const Outcome once =
        qz("run QZ_PasteAttributes --data other.gpkg:streets " + paste + " --bEditing true --report -");
    EXPECT_EQ(each.status, 0) << each.err;
    EXPECT_EQ(each.json()["updated"], once.json()["updated"]);
    EXPECT_EQ(each.json()["updated"][1]["values"]["name"], "Elm Row");
    EXPECT_EQ(each.json()["updated"][1]["values"]["BUILT"], "2001-02-03");
    EXPECT_EQ(each.json()["messages"], (std::vector<std::string>(2, "Invalid value for field: MAXSPEED")));
    EXPECT_EQ(each.json()["updated"][0]["values"]["MAXSPEED"], 30) << "the domain ends at 130";
}

TEST_F(AttributeMethods, AValueThatDoesNotFitSavesNothing) {
    for (const char* editing : {"true", "false"}) {
        const Outcome refused =
            qz(std::string(R"(run QZ_PasteAttributes --data town.gpkg:streets --fid 1 --report - --fieldDic )") +
               R"('{"FROM_L":9,"class":"a text of more than twelve"}' --bEditing )" + editing);
        EXPECT_EQ(refused.status, 1);
        EXPECT_NE(refused.err.find("class"), std::string::npos) << refused.err;
        EXPECT_NE(refused.err.find(" QZ_UpdateAttributes w=13"), std::string::npos) << refused.err;
        EXPECT_FALSE(refused.json()["saved"]);
    }
    const Outcome dryRun = qz("run QZ_Flip --data town.gpkg:streets --fid 1 --dry-run --report -");
    EXPECT_EQ(dryRun.json()["updated"][0]["values"]["FROM_L"], 1);
}

TEST_F(AttributeMethods, DeletesAndInserts) {
    const Outcome deleted = qz("run QZ_QuickDelete --data town.gpkg:streets --fid 3,4 --report -");
    EXPECT_EQ(deleted.json()["deleted"], (std::vector<int>{3, 4}));
    EXPECT_EQ(deleted.json()["refresh"]["count"], 2);
    const Outcome inserted = qz("run QZ_InsertFeatureRun --data town.gpkg:parcels --fid 1 --report - "
                                "--pGeometry 'POLYGON ((0 0,0 10,10 10,10 0,0 0))' "
                                "--updateDic '{\"AREA_M2\":\"Proportion|None|Sum\"}'");
    ASSERT_EQ(inserted.status, 0) << inserted.err;
    const nlohmann::json values = inserted.json()["inserted"][0]["values"];
    EXPECT_NEAR(values["AREA_M2"].get<double>(), 100, 0.1)
        << "the area of the new shape, as the old one's was recorded";
    EXPECT_EQ(inserted.json()["inserted"][0]["id"], 292);
}

TEST_F(AttributeMethods, InfoTellsEachRuleAndWhereItCameFrom) {
    const Outcome table = qz("info town.gpkg:streets");
    EXPECT_NE(table.out.find("from table streets_QZAttributeRules\n"), std::string::npos) << table.out;
    EXPECT_NE(table.out.find("    LENGTH_M             Proportion|None|Sum  table\n"), std::string::npos) << table.out;
    EXPECT_NE(table.out.find("    BUILT                Copy|None|First  default\n"), std::string::npos) << table.out;
    EXPECT_NE(qz("info town.gpkg:parcels").out.find("(none there)"), std::string::npos);
}

} // namespace
} // namespace qz::test
