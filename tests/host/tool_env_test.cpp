#include "support/environment_variable.h"

#include <lanecfg/host/ToolEnv.h>

#include <gtest/gtest.h>

#include <optional>

using lanecfg_test::EnvironmentVariable;

namespace {

constexpr const char* variableName = "LANECFG_TOOL_ENV_TEST";

TEST(ToolEnv, GivesTheValueOfASetVariable) {
    const EnvironmentVariable variable(variableName, "some value");
    EXPECT_STREQ(ToolEnv::getEnv(variableName), "some value");
}

TEST(ToolEnv, GivesAnEmptyTextForAnEmptyVariable) {
    const EnvironmentVariable variable(variableName, "");
    EXPECT_STREQ(ToolEnv::getEnv(variableName), "");
}

TEST(ToolEnv, GivesNullForAnUnsetVariable) {
    const EnvironmentVariable variable(variableName, std::nullopt);
    EXPECT_EQ(ToolEnv::getEnv(variableName), nullptr);
}

TEST(ToolEnv, GivesNullForANullName) {
    EXPECT_EQ(ToolEnv::getEnv(nullptr), nullptr);
}

}  // namespace
