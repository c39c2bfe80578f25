#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

RuleCase driveCase(bool pcie, double rate, unsigned int mode) {
    return fieldCase("PIPE_TX_EQ_CFG0.TX_DRIVE_MODE",
                     {{"PCIE_ENABLE", pcie}, {"TX_LINE_RATE", rate}}, mode);
}

INSTANTIATE_TEST_SUITE_P(OfTheDriveMode, SxbLaneRule,
                         testing::Values(driveCase(false, 2.5, 0), driveCase(false, 16.0, 0),
                                         driveCase(true, 2.5, 1), driveCase(true, 5.0, 1),
                                         driveCase(true, 8.0, 2), driveCase(true, 10.3125, 2)),
                         caseName);

TEST(SxbTxDriver, PcieAt16HasADriveModeOf2) {
    RuleAlone rule("PIPE_TX_EQ_CFG0.TX_DRIVE_MODE",
                   {{"PCIE_ENABLE", true}, {"TX_LINE_RATE", 16.0}});
    rule.runPass();
    EXPECT_EQ(rule.value("PIPE_TX_EQ_CFG0.TX_DRIVE_MODE"), ruleValue(2U));
}

struct SiliconField {
    std::string field;
    unsigned int early;
    unsigned int later;
};

std::vector<RuleCase> siliconCases() {
    const std::vector<SiliconField> fields{{"PIPE_TX_EQ_CFG3.TX_DEEMPH_0", 9, 18},
                                           {"PIPE_TX_EQ_CFG3.TX_DEEMPH_1", 6, 12},
                                           {"TX_DRV_CFG0.TX_CTL_DRV_EN", 0, 4}};
    std::vector<RuleCase> cases;
    for (const SiliconField& row : fields) {
        for (const std::string early : {"es1", "ES1"}) {
            cases.push_back(fieldCase(row.field, {{"siliconRev", early}}, row.early));
        }
        for (const std::string later : {"es2", "Es1", "ES10", ""}) {
            cases.push_back(fieldCase(row.field, {{"siliconRev", later}}, row.later));
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfTheSilicon, SxbLaneRule, testing::ValuesIn(siliconCases()), caseName);

}  // namespace
}  // namespace lanecfg_test
