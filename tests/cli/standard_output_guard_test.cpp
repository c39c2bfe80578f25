#include "standard_output_guard.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>
#include <unistd.h>

namespace lanecfg_test {
namespace {

using sable_lanecfg::tool::StandardOutputGuard;

TEST(StandardOutputGuard, SendsLinesOfRulesToStandardErrorAndGivesTheOutputBack) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::cout << "before ";
    {
        const StandardOutputGuard guard;
        std::cout << "by stream ";
        (void)std::printf("by printf");
    }
    std::cout << "after" << std::flush;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "by stream by printf");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "before after");
}

TEST(StandardOutputGuard, LeavesAClosedOutputClosed) {
    EXPECT_EXIT(
        {
            close(STDOUT_FILENO);
            { const StandardOutputGuard guard; }
            _exit(write(STDOUT_FILENO, "x", 1) == -1 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace lanecfg_test
