#include "component/MethodTable.h"

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "common/PlatformRelease.h"
#include "component/MKQZGenFunRun.h"
#include "component/MethodHelp.h"
#include "component/MethodReference.h"
#include "host/HeadlessHost.h"
#include "host/RefreshAreaRecord.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "tests/support/MemoryData.h"

namespace qz {
namespace {

TEST(MethodTable, Has72MethodsInTheirOrder) {
    const std::vector<MethodInfo>& table = methodTable();
    ASSERT_EQ(table.size(), 72U);
    const std::pair<std::size_t, const char*> places[] = {{1, "QZ_AddCogoFields"},     {14, "QZ_Flip"},
                                                          {20, "QZ_SplitInPoint2"},    {36, "QZ_DrawGaps"},
                                                          {48, "QZ_EnvelopeGraphics"}, {61, "QZ_InsertFeatureRun"},
                                                          {66, "QZ_SplitPolygon2"},    {72, "GetQZVersion"}};
    for (const auto& [order, name] : places) {
        EXPECT_EQ(table[order - 1].name, name);
        EXPECT_EQ(table[order - 1].order, static_cast<int>(order));
    }
}

TEST(MethodTable, KnowsKindsDefaultsAndDirections) {
    const MethodInfo& split = findMethod("QZ_SplitInPoint2");
    ASSERT_EQ(split.parameters.size(), 12U);
    const ParameterInfo& splitLength = *split.findParameter("dSplitLength");
    EXPECT_TRUE(splitLength.optional);
    EXPECT_EQ(std::get<double>(splitLength.defaultValue.value()), 0.0);
    EXPECT_TRUE(split.findParameter("pEnv1")->mayBeAbsent);

    const ParameterInfo& distance = *findMethod("QZ_OffsetDouble").findParameter("dOffDist");
    EXPECT_TRUE(distance.byValue);
    EXPECT_EQ(distance.kind, ParameterKind::doubleFloat);
    EXPECT_EQ(findMethod("QZ_CogoInverse").findParameter("lLinPrec")->kind, ParameterKind::integer16);
    const ParameterInfo& count = *findMethod("QZ_CopySelectedFromLayer").findParameter("lCount");
    EXPECT_TRUE(count.optional);
    EXPECT_FALSE(count.defaultValue.has_value());
    EXPECT_FALSE(findMethod("QZ_AnalyseNodes").findParameter("bChecked")->isRequired());
    EXPECT_EQ(findMethod("QZ_AnalyseNodes").result, ResultKind::pointCollection);
    EXPECT_EQ(findMethod("QZ_FindSplitAreaLine").result, ResultKind::polyline);
}

TEST(MethodTable, AllHaveHelp) {
    for (const MethodInfo& method : methodTable()) {
        EXPECT_FALSE(helpFor(method.name).purpose.empty()) << method.name;
    }
}

TEST(MethodTable, WrongNamesGetAHint) {
    try {
        static_cast<void>(findMethod("qz_flp"));
        FAIL() << "found";
    } catch (const UsageError& error) {
        EXPECT_STREQ(error.what(), "There is no method qz_flp; did you mean QZ_Flip?");
    }
}

TEST(LateBinding, CallsMethodsAndWritesBack) {
    MKQZGenFunRun component;
    std::vector<Argument> arguments{std::string("x"), Argument()};
    EXPECT_EQ(std::get<std::string>(invoke(component, "GetQZVersion", arguments)), "10.2");
    EXPECT_EQ(std::get<std::string>(arguments[0]), "9.2");
    EXPECT_EQ(std::get<std::string>(arguments[1]), "30 May 2012") << "what only returns something may be left out";
}

TEST(LateBinding, RefusesWhatDoesNotFit) {
    MKQZGenFunRun component;
    std::vector<Argument> none;
    EXPECT_THROW(invoke(component, "GetQZVersion", none), UsageError);
    std::vector<Argument> numbers{1.0, std::string()};
    EXPECT_THROW(invoke(component, "GetQZVersion", numbers), UsageError);
    EXPECT_THROW(invoke(component, "QZ_Nothing", none), UsageError);
}

TEST(LateBinding, ConvertsNumbersHalfToEven) {
    test::MemoryData data;
    data.add("LINESTRING (0 0,1 1)");
    std::ostringstream terminal;
    HeadlessHost host(terminal, false);
    RefreshAreaRecord refresh;
    MKQZGenFunRun component;
    for (const auto& [given, used] : {std::pair{150.5, 150}, std::pair{151.5, 152}}) {
        const CursorPtr cursor = data.featureClass().search({});
        std::vector<Argument> arguments{cursor.get(), given, static_cast<RefreshArea*>(&refresh),
                                        static_cast<Application*>(&host)};
        EXPECT_TRUE(std::get<bool>(invoke(component, "QZ_Flip", arguments)));
        EXPECT_EQ(host.statusBar().stepProgressor().record().maximum, used + 1);
    }
}

TEST(MethodReference, ListsSignatures) {
    const std::string text = methodsAsText(selectMethods(""));
    EXPECT_NE(text.find(" 14 QZ_Flip(pFeatureCursor, fCount, pRefresh, pApp) -> Boolean\n"), std::string::npos) << text;
    EXPECT_NE(methodsAsJson(selectMethods("QZ_Flip")).find("\"order\": 14"), std::string::npos);
}

TEST(MethodReference, IsWrittenAnewWithTheTable) {
    std::ifstream file(QZ_SOURCE_DIR "/docs/methods.md");
    const std::string written{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(written == methodsAsMarkdown(selectMethods("")))
        << "docs/methods.md is not of today: qz methods --markdown > docs/methods.md";
}

TEST(PlatformRelease, ComparesMajorAndMinor) {
    const ScopedServices restored;
    const std::pair<std::optional<std::string>, bool> rows[] = {
        {"10.2.0.3348", true}, {"9.1.0", false}, {"9.2.0", true}, {"9.3.1", true},      {"11.0.1", true},
        {"8.9.9", false},      {"10.2", false},  {"10", false},   {"ten.two.0", false}, {std::nullopt, false}};
    for (const auto& [release, atLeast] : rows) {
        services().platformRelease = release;
        EXPECT_EQ(QZ_PlatformAtLeast92(), atLeast) << release.value_or("not known");
    }
}

} // namespace
} // namespace qz
