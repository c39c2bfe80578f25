#include "families/sxb/sxb_service_fault.h"

#include "support/captured_messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace sable_lanecfg {
namespace {

using lanecfg_test::CapturedMessages;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int line = 73;

TEST(SxbServiceFault, IsToldToTheUserWithLineAndFileOfTheService) {
    const CapturedMessages messages;
    catchServiceFaults(line, [] { throw std::out_of_range("no such lane"); });
    const std::string text =
        "Exception caught no such lane at 73 of file "
        "ip/rule_engine/gt_rule_engine/src/lane_cfg_sxb_instance.";
    EXPECT_THAT(messages.texts(), ElementsAre(text));
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error), ElementsAre(text));
}

TEST(SxbServiceFault, EndsTheServiceWhereItHappens) {
    const CapturedMessages messages;
    int steps = 0;
    catchServiceFaults(line, [&steps] {
        ++steps;
        if (steps == 1) {
            throw std::runtime_error("fault");
        }
        ++steps;
    });
    EXPECT_EQ(steps, 1);
}

TEST(SxbServiceFault, IsNoneWhenTheServiceDoesItsWork) {
    const CapturedMessages messages;
    bool isDone = false;
    catchServiceFaults(line, [&isDone] { isDone = true; });
    EXPECT_TRUE(isDone);
    EXPECT_THAT(messages.texts(), IsEmpty());
}

TEST(SxbServiceFault, IsOnlyAnExceptionOfTheStandardKind) {
    const CapturedMessages messages;
    // Rules throw the bare name of a variable that has no value.
    EXPECT_THROW(catchServiceFaults(line, [] { throw std::string("INT_TX_OUTDIV"); }), std::string);
    EXPECT_THAT(messages.texts(), IsEmpty());
}

}  // namespace
}  // namespace sable_lanecfg
