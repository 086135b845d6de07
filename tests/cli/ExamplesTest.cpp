#include "component/MethodHelp.h"
#include "component/MethodTable.h"
#include "tests/cli/Program.h"

namespace qz::test {
namespace {

using Examples = ProgramTest;

TEST_F(Examples, OfAllMethodsRun) {
    ASSERT_EQ(
        qz("run QZ_ConvexGraphics --data town.gpkg:buildings --fid 1,2 --sName Hull --graphics hulls.gpkg").status, 0);
    for (const MethodInfo& method : methodTable()) {
        constexpr auto overwrite = std::filesystem::copy_options::overwrite_existing;
        std::filesystem::copy_file(QZ_SOURCE_DIR "/examples/town.gpkg", folder / "town.gpkg", overwrite);
        std::filesystem::copy_file(folder / "hulls.gpkg", folder / "graphics.gpkg", overwrite);
        const Outcome run = qz(fmt::format("run {} {}", method.name, helpFor(method.name).example));
        EXPECT_EQ(run.status, 0) << method.name << ": " << run.err;
    }
}

} // namespace
} // namespace qz::test
