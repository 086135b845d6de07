#include "common/ErrorExit.h"

#include <functional>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Error.h"
#include "platform/app/Services.h"

namespace qz {
namespace {

// Whatever fails inside, the caller gets the neutral value, and the user the text of the form.
TEST(ErrorExit, TellsEveryKindOfFailure) {
    const struct {
        const char* description; // nothing: not told
        std::function<int()> body;
    } failures[] = {
        {"no such street", []() -> int { throw PlatformError("no such street"); }},
        {"Out of memory", []() -> int { throw std::bad_alloc(); }},
        {"Automation error", []() -> int { throw 7; }},
        {nullptr, []() -> int { throw Interrupted(); }},
    };
    enum class Step { find = 1, cut = 2 };
    for (const auto& [description, body] : failures) {
        const ScopedServices restored;
        std::vector<std::string> shown;
        services().showMessage = [&shown](const std::string& text) { shown.push_back(text); };
        EXPECT_EQ(withSilentExit(-1, body), -1);
        EXPECT_EQ(withErrorExit(" QZ_Cut", -1, body), -1);
        EXPECT_EQ(withNumberedExit("QZ_Cut", -1, body), -1);
        EXPECT_EQ(withSteppedExit(
                      " QZ_Cut w=", Step::find, -1,
                      [&](Step& step) {
                          step = Step::cut;
                          return body();
                      },
                      "!"),
                  -1);
        if (description == nullptr) {
            EXPECT_TRUE(shown.empty());
            continue;
        }
        const std::string text = description;
        EXPECT_EQ(shown,
                  (std::vector<std::string>{text + " QZ_Cut", "Error -2147467259: " + text + "\nIn qz at QZ_Cut ",
                                            text + " QZ_Cut w=2!"}));
    }
}

TEST(ErrorExit, SurvivesANoticeThatFails) {
    const ScopedServices restored;
    services().showMessage = [](const std::string&) { throw PlatformError("no display"); };
    EXPECT_FALSE(withErrorExit("", false, []() -> bool { throw PlatformError("no such street"); }));
}

} // namespace
} // namespace qz
