#include "families/sxb/sxb_pll_catalogue.h"

#include <gtest/gtest.h>

namespace sable_lanecfg {
namespace {

TEST(SxbPllCatalogue, Registers898Rules) {
    EXPECT_EQ(sxbPllCatalogue().ruleCount(), 898U);
}

}  // namespace
}  // namespace sable_lanecfg
