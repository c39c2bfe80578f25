#include "support/captured_output.h"
#include "support/undefined_name.h"
#include "sxb_rule_alone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;
using testing::StartsWith;

RuleCase modeCase(const std::string& chosen, float loss, const std::string& mode) {
    return {"INT_RX_EQ_MODE",
            {{"RX_EQ_MODE", chosen}, {"INS_LOSS_NYQ", loss}},
            {{"INT_RX_EQ_MODE", mode}}};
}

INSTANTIATE_TEST_SUITE_P(OfTheEqualiser, SxbLaneRule,
                         testing::Values(modeCase("AUTO", 20.0F, "DFE"),
                                         modeCase("AUTO", std::nextafter(15.0F, 0.0F), "LPM"),
                                         modeCase("AUTO", 0.0F, "LPM"),
                                         modeCase("DFE", 1.0F, "DFE"),
                                         modeCase("LPM", 30.0F, "LPM"),
                                         modeCase("auto", 30.0F, "auto")),
                         caseName);

TEST(SxbRxEqualiser, AutoWithALossOfExactly15IsDfe) {
    RuleAlone rule("INT_RX_EQ_MODE", {{"RX_EQ_MODE", "AUTO"s}, {"INS_LOSS_NYQ", 15.0F}});
    rule.runPass();
    EXPECT_EQ(rule.value("INT_RX_EQ_MODE"), ruleValue("DFE"s));
}

TEST(SxbRxEqualiser, AutoWithoutALossIsReportedOnStandardOutput) {
    RuleAlone rule("INT_RX_EQ_MODE", {{"RX_EQ_MODE", "AUTO"s}});
    const CapturedOutput output;
    EXPECT_EQ(undefinedName([&] { rule.runPass(); }), "INS_LOSS_NYQ");
    EXPECT_THAT(output.text(), StartsWith("ERROR: Key Not found - INS_LOSS_NYQ"));
}

TEST(SxbRxEqualiser, AChosenModeNeedsNoLoss) {
    RuleAlone rule("INT_RX_EQ_MODE", {{"RX_EQ_MODE", "LPM"s}});
    rule.runPass();
    EXPECT_EQ(rule.value("INT_RX_EQ_MODE"), ruleValue("LPM"s));
}

struct ModeField {
    std::string field;
    unsigned int withDfe;
    unsigned int without;
};

std::vector<RuleCase> modeFieldCases() {
    const std::vector<ModeField> fields{{"ADAPT_GEN_CFG0.gc1_disloop", 0, 1},
                                        {"ADAPT_KH_CFG0.khcdeg_mshift", 2, 12},
                                        {"ADAPT_KL_CFG0.kl_mshift", 1, 12},
                                        {"ADAPT_KL_CFG0.kl_initdac", 16, 15}};
    std::vector<RuleCase> cases;
    for (const ModeField& row : fields) {
        cases.push_back(fieldCase(row.field, {{"INT_RX_EQ_MODE", "DFE"s}}, row.withDfe));
        cases.push_back(fieldCase(row.field, {{"INT_RX_EQ_MODE", "LPM"s}}, row.without));
        cases.push_back(fieldCase(row.field, {{"INT_RX_EQ_MODE", ""s}}, row.without));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfFieldsByEqualiser, SxbLaneRule, testing::ValuesIn(modeFieldCases()),
                         caseName);

RuleCase xModeCase(const std::string& mode, double rate, unsigned int value) {
    return fieldCase("RX_MISC_CFG0.RX_XMODE_SEL",
                     {{"INT_RX_EQ_MODE", mode}, {"RX_LINE_RATE", rate}}, value);
}

INSTANTIATE_TEST_SUITE_P(OfTheXMode, SxbLaneRule,
                         testing::Values(xModeCase("DFE", 10.3125, 1), xModeCase("DFE", 10.4, 0),
                                         xModeCase("DFE", 25.0, 0), xModeCase("LPM", 5.0, 0)),
                         caseName);

std::vector<RuleCase> lowPowerCases() {
    std::vector<RuleCase> cases;
    for (const std::string field : {"RX_CTLE_CFG0.RX_AGC1_LOW_PWR", "RX_CTLE_CFG0.RX_AGC2_LOW_PWR",
                                    "RX_CTLE_CFG0.RX_CTLE1_LOW_PWR"}) {
        for (const bool pcie : {false, true}) {
            for (const double rate : {2.5, 32.0}) {
                for (const std::string mode : {"DFE", "LPM"}) {
                    cases.push_back(fieldCase(
                        field,
                        {{"PCIE_ENABLE", pcie}, {"TX_LINE_RATE", rate}, {"INT_RX_EQ_MODE", mode}},
                        0));
                }
            }
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfLowPower, SxbLaneRule, testing::ValuesIn(lowPowerCases()), caseName);

}  // namespace
}  // namespace lanecfg_test
