#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Rules of the coding layer that both directions have alike.

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

struct Side {
    std::string word;
    std::string coding;
    std::string gearboxRegister;
};

const std::vector<Side>& sides() {
    static const std::vector<Side> both{{"RX", "RX_DATA_DECODING", "RX_PCS_CFG2"},
                                        {"TX", "TX_DATA_ENCODING", "TX_PCS_CFG0"}};
    return both;
}

struct UserWidthRow {
    unsigned int bits;
    unsigned int of8b10b;
    unsigned int ofOthers;
};

const std::vector<UserWidthRow>& userWidthRows() {
    static const std::vector<UserWidthRow> rows{{16, 2, 3}, {20, 3, 3}, {32, 4, 5},  {40, 5, 5},
                                                {64, 6, 7}, {80, 7, 7}, {128, 8, 9}, {160, 9, 9},
                                                {24, 0, 0}, {0, 0, 0}};
    return rows;
}

std::vector<RuleCase> userWidthCases() {
    std::vector<RuleCase> cases;
    for (const Side& side : sides()) {
        const std::string field = side.word + "_PCS_CFG0." + side.word + "_DATA_WIDTH";
        for (const UserWidthRow& row : userWidthRows()) {
            const VariableValues width{{side.word + "_USER_DATA_WIDTH", row.bits}};
            cases.push_back(fieldCase(field, with(width, {{side.coding, "8B10B"s}}), row.of8b10b));
            cases.push_back(fieldCase(field, with(width, {{side.coding, "RAW"s}}), row.ofOthers));
            cases.push_back(
                fieldCase(field, with(width, {{side.coding, "64B66B_ASYNC"s}}), row.ofOthers));
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfUserWidths, SxbLaneRule, testing::ValuesIn(userWidthCases()), caseName);

struct InternalWidthRow {
    unsigned int bits;
    unsigned int code;
    unsigned int bytes;
};

const std::vector<InternalWidthRow>& internalWidthRows() {
    static const std::vector<InternalWidthRow> rows{{16, 0, 2}, {32, 1, 4}, {64, 2, 8}, {20, 0, 2},
                                                    {40, 1, 4}, {80, 2, 8}, {128, 0, 0}};
    return rows;
}

std::vector<RuleCase> internalWidthCases() {
    std::vector<RuleCase> cases;
    for (const InternalWidthRow& row : internalWidthRows()) {
        cases.push_back({"RX_PCS_CFG0.RX_INT_DATA_WIDTH",
                         {{"RX_INT_DATA_WIDTH", row.bits}},
                         {{"RX_PCS_CFG0.RX_INT_DATA_WIDTH", row.code}, {"INT_WID", row.bytes}}});
        cases.push_back(fieldCase("TX_PCS_CFG0.TX_INT_DATA_WIDTH",
                                  {{"TX_INT_DATA_WIDTH", row.bits}}, row.code));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfInternalWidths, SxbLaneRule, testing::ValuesIn(internalWidthCases()),
                         caseName);

struct GearboxRow {
    std::string coding;
    unsigned int inUse;
    unsigned int mode;
    unsigned int asynchronous;
};

const std::vector<GearboxRow>& gearboxRows() {
    // 1 for 64B66B, 4 for CAUI, 16 for ASYNC.
    static const std::vector<GearboxRow> rows{{"RAW", 0, 0, 0},
                                              {"8B10B", 0, 0, 0},
                                              {"128B130B", 0, 0, 0},
                                              {"PRBS", 0, 0, 0},
                                              {"64B66B_SYNC", 1, 1, 0},
                                              {"64B67B", 1, 0, 0},
                                              {"64B66B_CAUI", 1, 5, 0},
                                              {"64B67B_CAUI", 1, 4, 0},
                                              {"64B66B_ASYNC", 1, 17, 1},
                                              {"64B66B_ASYNC_CAUI", 1, 21, 1},
                                              {"64B67B_ASYNC", 1, 16, 1},
                                              {"ASYNC_CAUI", 0, 0, 0},
                                              {"", 0, 0, 0}};
    return rows;
}

std::vector<RuleCase> gearboxCases() {
    std::vector<RuleCase> cases;
    for (const Side& side : sides()) {
        for (const GearboxRow& row : gearboxRows()) {
            cases.push_back({side.gearboxRegister + ".USE_GB",
                             {{side.coding, row.coding}},
                             {{side.gearboxRegister + ".USE_GB", row.inUse},
                              {side.gearboxRegister + ".MODE", row.mode},
                              {"INT_" + side.word + "_ASYNC_GEARBOX_EN", row.asynchronous}}});
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfGearboxes, SxbLaneRule, testing::ValuesIn(gearboxCases()), caseName);

/// Fields that are 1 for one coding and 0 for all others.
std::vector<RuleCase> codingFlagCases() {
    const std::vector<std::vector<std::string>> flags{
        {"RX_DATA_DECODING", "8B10B", "RX_PCS_CFG2.RX_8B10B_EN"},
        {"RX_DATA_DECODING", "8B10B", "RX_PCS_CFG2.RX_CBCC_DATA_SEL"},
        {"RX_DATA_DECODING", "8B10B", "RX_ELASTIC_BUF_CFG3.EB8B10B_DATA_SOURCE_SEL"},
        {"RX_DATA_DECODING", "8B10B", "RX_PCS_CFG4.RXVALID_GEN_EN"},
        {"RX_DATA_DECODING", "64B66B_ASYNC", "RX_PHALIGN_CFG1.ASYNC_GBOX_PHALIGN_EN"},
        {"TX_DATA_ENCODING", "8B10B", "TX_PCS_CFG0.TX_8B10B_EN"},
        {"TX_DATA_ENCODING", "64B66B_ASYNC", "TX_PHALIGN_CFG1.ASYNC_GBOX_PHALIGN_EN"}};
    const std::vector<std::string> words{
        "RAW",         "8B10B",       "128B130B",     "64B66B_SYNC",       "64B67B",
        "64B66B_CAUI", "64B67B_CAUI", "64B66B_ASYNC", "64B66B_ASYNC_CAUI", "PRBS"};
    std::vector<RuleCase> cases;
    for (const auto& flag : flags) {
        for (const std::string& word : words) {
            cases.push_back(fieldCase(flag[2], {{flag[0], word}}, word == flag[1] ? 1U : 0U));
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfCodings, SxbLaneRule, testing::ValuesIn(codingFlagCases()), caseName);

}  // namespace
}  // namespace lanecfg_test
