// The tests run in the locale of the environment, as in a program that sets it for its texts. With
// QZ_TEST_DECIMAL_MARK="," numbers for the user are written as 1.234,5 also where the system has no such locale.

#include <clocale>
#include <cstdlib>

#include <gtest/gtest.h>

#include "platform/app/Services.h"

namespace {

struct DecimalMark : testing::Environment {
    void SetUp() override {
        std::setlocale(LC_ALL, "");
        if (const char* mark = std::getenv("QZ_TEST_DECIMAL_MARK")) {
            qz::services().locale = {mark};
        }
    }
};

const testing::Environment* const registered = testing::AddGlobalTestEnvironment(new DecimalMark);

} // namespace
