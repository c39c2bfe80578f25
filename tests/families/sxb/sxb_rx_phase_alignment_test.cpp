#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

struct CommonClockRow {
    unsigned int transmitBuffer;
    unsigned int receiveBuffer;
    unsigned int aligned;
};

std::vector<RuleCase> commonClockCases() {
    const std::string field = "RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE";
    const std::vector<CommonClockRow> rows{{0, 1, 1}, {1, 0, 2}, {0, 0, 3},
                                           {1, 1, 0}, {0, 2, 1}, {2, 0, 2}};
    std::vector<RuleCase> cases;
    for (const CommonClockRow& row : rows) {
        const auto lane = [&row](bool commonClock, bool pcie) {
            return VariableValues{{"TX_BUFFER_MODE", row.transmitBuffer},
                                  {"RX_BUFFER_MODE", row.receiveBuffer},
                                  {"TX_COMMON_USRCLK", commonClock},
                                  {"PCIE_ENABLE", pcie}};
        };
        append(cases, {fieldCase(field, lane(true, false), row.aligned),
                       fieldCase(field, lane(false, true), row.aligned),
                       fieldCase(field, lane(true, true), row.aligned),
                       fieldCase(field, lane(false, false), 0)});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfACommonClock, SxbLaneRule, testing::ValuesIn(commonClockCases()),
                         caseName);

RuleCase bypassModeCase(const std::string& field, const std::string& mode, unsigned int value) {
    return fieldCase(field, {{"RX_BUFFER_BYPASS_MODE", mode}}, value);
}

INSTANTIATE_TEST_SUITE_P(
    OfTheBypassMode, SxbLaneRule,
    testing::Values(
        bypassModeCase("RX_PHALIGN_CFG4.FINE_ALIGN_BYPASS", "Fast_Sync", 0),
        bypassModeCase("RX_PHALIGN_CFG4.FINE_ALIGN_BYPASS", "Single_Sync", 1),
        bypassModeCase("RX_PHALIGN_CFG5.RX_BUFBYPASS_ML_NEGEDGE_MODE", "Fast_Sync", 1),
        bypassModeCase("RX_PHALIGN_CFG5.RX_BUFBYPASS_ML_NEGEDGE_MODE", "Single_Sync", 0),
        bypassModeCase("RX_PHALIGN_CFG5.TX_BUFBYPASS_ML_NEGEDGE_MODE", "Fast_Sync", 1),
        bypassModeCase("RX_PHALIGN_CFG5.TX_BUFBYPASS_ML_NEGEDGE_MODE", "Single_Sync", 0)),
    caseName);

}  // namespace
}  // namespace lanecfg_test
