#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "platform/Error.h"
#include "platform/app/Services.h"
#include "tests/host/ScratchFolder.h"

namespace qz {
namespace {

TEST(NumberLocale, AMissingLocaleIsNamedInTheRefusal) {
    try {
        (void)NumberLocale::named("tlh_QO.UTF-8");
        FAIL() << "a locale that no system has was accepted";
    } catch (const PlatformError& error) {
        EXPECT_NE(std::string(error.what()).find("tlh_QO.UTF-8"), std::string::npos) << error.what();
    }
}

// Makes a locale known to this process only, compiled from its source where the system has that, so that the test
// doesn't depend on which locales are installed.
class CompiledLocale {
public:
    CompiledLocale(const ScratchFolder& folder, const std::string& source, const std::string& name) {
        const std::string path = folder.file(name);
        const std::string command = "localedef -c -f UTF-8 -i " + source + " " + path + " >/dev/null 2>&1";
        exists_ = std::system(command.c_str()) != -1 && std::filesystem::exists(path + "/LC_NUMERIC");
        setenv("LOCPATH", folder.file("").c_str(), 1);
    }
    ~CompiledLocale() { unsetenv("LOCPATH"); }
    CompiledLocale(const CompiledLocale&) = delete;
    CompiledLocale& operator=(const CompiledLocale&) = delete;

    [[nodiscard]] bool exists() const { return exists_; }

private:
    bool exists_ = false;
};

TEST(NumberLocale, TheMarkOfTheSystemsLocaleIsTakenOver) {
    EXPECT_EQ(NumberLocale::named("C").decimalMark, ".");
    const ScratchFolder folder;
    for (const auto& [source, mark] : {std::pair("de_DE", ","), std::pair("en_US", ".")}) {
        SCOPED_TRACE(source);
        const std::string name = std::string(source) + "_tested.UTF-8";
        const CompiledLocale compiled(folder, source, name);
        if (!compiled.exists()) {
            GTEST_SKIP() << "the system can't compile locales";
        }
        EXPECT_EQ(NumberLocale::named(name).decimalMark, mark);
    }
}

TEST(Services, AreAsBeforeWhenTheScopeEnds) {
    const ScopedServices outer;
    services().randomSeed = 1;
    services().locale.decimalMark = ".";
    {
        const ScopedServices inner;
        services().randomSeed = 2;
        services().locale.decimalMark = ",";
    }
    EXPECT_EQ(services().randomSeed, 1U);
    EXPECT_EQ(services().locale.decimalMark, ".");
}

TEST(Services, AWishToStopInterrupts) {
    const ScopedServices scope;
    services().interruptRequested = [] { return false; };
    EXPECT_NO_THROW(checkInterrupt());
    services().interruptRequested = [] { return true; };
    EXPECT_THROW(checkInterrupt(), Interrupted);
    services().interruptRequested = nullptr;
    EXPECT_NO_THROW(checkInterrupt());
}

} // namespace
} // namespace qz
