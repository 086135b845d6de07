// Run with QZ_TEST_DECIMAL_MARK="," the tests of a program see a locale that writes 1.234,5.

#include <cstdlib>

#include <gtest/gtest.h>

#include "platform/app/Services.h"

namespace {

struct DecimalMark : testing::Environment {
    void SetUp() override {
        if (const char* mark = std::getenv("QZ_TEST_DECIMAL_MARK")) {
            qz::services().locale = {mark, mark[0] == ',' ? "." : ","};
        }
    }
};

const testing::Environment* const registered = testing::AddGlobalTestEnvironment(new DecimalMark);

} // namespace
