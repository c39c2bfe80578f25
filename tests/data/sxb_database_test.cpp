#include "families/sxb/sxb_catalogue.h"
#include "support/reference_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::referenceFile;
using nlohmann::json;
using testing::SizeIs;
using testing::UnorderedElementsAreArray;

class SxbDatabase : public testing::Test {
  protected:
    json placeOf(const std::string& field) const {
        const std::string registerName = field.substr(0, field.find('.'));
        return registers.at(registerName).at("fields").at(field);
    }

    std::set<std::string> registersOfBlock(const std::string& type) const {
        std::set<std::string> names;
        for (const auto& [name, row] : registers.items()) {
            if (row.at("dstSubBlock") == type) {
                names.insert(name);
            }
        }
        return names;
    }

    const json registers = referenceFile("SXB", "registers.json");
    const json parameters = referenceFile("SXB", "parameters.json");
};

TEST_F(SxbDatabase, HasTheRangesOfTheFamilyInGigahertz) {
    EXPECT_EQ(referenceFile("SXB", "device.json"),
              json::parse(R"({"-3": {"FLCPLLRANGE_MIN": "8.0", "FLCPLLRANGE_MAX": "16.375",
                                     "FRPLLRANGE_MIN": "4.0", "FRPLLRANGE_MAX": "8.0"}})"));
}

TEST_F(SxbDatabase, HasEveryRegisterAndFieldOfTheThreeSets) {
    // 76 registers of the PLL set, 90 of the receive and 29 of the transmit set.
    EXPECT_THAT(registers, SizeIs(76 + 90 + 29));
    std::size_t fields = 0;
    for (const json& row : registers) {
        fields += row.at("fields").size();
    }
    EXPECT_EQ(fields, 816U + 747U + 171U);
}

TEST_F(SxbDatabase, NarrowsNoConstant) {
    for (const catalogueEntry& entry : sxbCatalogue().entries()) {
        for (const registerField& field : entry.fields) {
            const std::string name = fieldName(entry.name, field.name);
            const auto width = placeOf(name).at(1).get<unsigned>();
            EXPECT_LT(field.value, 1ULL << width) << name;
        }
    }
}

/// The largest value that the rule of a computed field gives, or that its parameter may have,
/// where that is more than 1.
const std::map<std::string, unsigned> largestValues{
    {"A_CFG1.A_HS0_LCPLLFBDIV", 158},  // the largest feedback divider, less 2
    {"A_CFG1.A_HS1_LCPLLFBDIV", 158},
    {"A_CFG1.A_HS0_RPLLFBDIV", 123},
    {"A_CFG1.A_HS1_RPLLFBDIV", 123},
    {"A_CFG2.A_HS0_LCPLLSDMDATA", 16777215},  // a fraction in parts of 2^24
    {"A_CFG3.A_HS0_RPLLSDMDATA", 16777215},
    {"A_CFG4.A_HS1_LCPLLSDMDATA", 16777215},
    {"A_CFG5.A_HS1_RPLLSDMDATA", 16777215},
    {"LCPLL_CFG0.LCPLL_PREDIV", 4},
    {"LCPLL_CFG0.LCPLL_CP", 255},
    {"LCPLL_CFG2.LCPLL_LFT_CP2", 2},
    {"LCPLL_CFG2.LCPLL_LFT_RZ", 254},
    {"LCPLL_LGC_CFG1.PLL_RESET_DLY_TIME", 148},
    {"RPLL_CFG0.RPLL_CP2CFG", 7},
    {"RPLL_CFG0.RPLL_CP1CFG", 2},
    {"RPLL_CFG0.RPLL_CPEN", 511},
    {"RPLL_CFG0.RPLL_REFDIV", 4},
    {"RPLL_CFG2.RPLL_DOUBLER_BAND_SEL", 7},
    {"RPLL_CFG2.RPLL_IF_CTRL_RZ", 42},
    {"CFG4.ibg_vc_50u_rpll1_ctrl", 2},
    {"PIPE_CTRL_CFG7.TXOUTCLKCTL", 6},
    {"PIPE_CTRL_CFG7.RXOUTCLKCTL", 6},
    {"PIPE_CTRL_CFG7.TX_DABYP_DIVSEL", 13},
    {"PIPE_CTRL_CFG7.TX_DA_DIVSEL", 13},
    {"PIPE_CTRL_CFG7.RX_DABYP_DIVSEL", 13},
    {"PIPE_CTRL_CFG7.RX_DA_DIVSEL", 13},
    {"PIPE_CTRL_CFG3.TXOUT_DIV", 7},
    {"PIPE_CTRL_CFG3.RXOUT_DIV", 7},
    {"PIPE_CTRL_CFG8.TXPROGDIVSEL", 920},
    {"PIPE_CTRL_CFG8.RXPROGDIVSEL", 920},
    {"PIPE_CTRL_CFG0.RX_PCSCLK_SEL", 3},
    {"PIPE_CTRL_CFG0.TX_PCSCLK_SEL", 3},
    {"PIPE_CTRL_CFG0.RX_ELECIDLE_MODE", 3},
    {"PIPE_CTRL_CFG10.PIPE_TXDAPI_RST_MASK", 3},
    {"PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK", 15},  // 2000 MHz over 125
    {"PIPE_CTRL_CFG5.BUFGTDIV_G2_PIPECLK", 7},
    {"PIPE_CTRL_CFG5.BUFGTDIV_G3_PIPECLK", 7},
    {"PIPE_CTRL_CFG5.BUFGTDIV_G4_PIPECLK", 3},
    {"PIPE_CTRL_CFG5.BUFGTDIV_USERCLK", 15},
    {"PIPE_CTRL_CFG5.BUFGTDIV_USERCLK2", 15},
    {"PIPE_CTRL_CFG6.BUFGTDIV_PIPECLK_OVRD", 15},
    {"PIPE_CTRL_CFG6.PIPE_DISTNORTH_SEL", 3},
    {"PIPE_CTRL_CFG6.PIPE_CONSUMPT_SEL", 3},
    {"PIPE_CTRL_CFG6.RXOOB_CLKDIV_VAL", 31},  // 800 MHz over 25
    {"PIPE_CTRL_CFG9.TXSYNCDONE_DISTNORTH_SEL", 3},
    {"PIPE_CTRL_CFG9.TXSYNCDONE_DISTSOUTH_SEL", 3},
    {"PIPE_CTRL_CFG9.TXSYNCDONE_CONSUMPT_SEL", 4},
    {"PIPE_CTRL_CFG9.RXSYNCDONE_DISTNORTH_SEL", 3},
    {"PIPE_CTRL_CFG9.RXSYNCDONE_DISTSOUTH_SEL", 3},
    {"PIPE_CTRL_CFG9.RXSYNCDONE_CONSUMPT_SEL", 4},
    {"FABRIC_INTF_CFG1.A_RXPD", 3},
    {"FABRIC_INTF_CFG3.A_TXPD", 3},
    {"CHCLK_MISC_CFG.CHCLK_FBDIV_VAL", 31},
    {"CHCLK_RXPI_CFG.RXPI_BAND_SEL", 3},
    {"CHCLK_TXPI_CFG0.TXPI_BAND_SEL", 3},
    {"CHCLK_TXPI_CFG0.TX_PROGCLK_SEL", 2},
    {"LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL", 7},
    {"LCPLL_REFCLK_IPS.LCPLL_REFCLK_MAP1", 2},
    {"LCPLL_REFCLK_IPS.LCPLL_REFCLK_MAP2", 2},
    {"RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL", 7},
    {"RPLL_REFCLK_IPS.RPLL_REFCLK_MAP1", 2},
    {"RPLL_REFCLK_IPS.RPLL_REFCLK_MAP2", 2},
    {"LCPLL_LGC_CFG2.REFCLK_ID", 7},
    {"RPLL_LGC_CFG2.REFCLK_ID", 7},
    {"RX_PCS_CFG0.RX_DATA_WIDTH", 9},
    {"RX_PCS_CFG0.RX_INT_DATA_WIDTH", 2},
    {"RX_PCS_CFG0.RX_ALIGN_PCOMMA_VAL", 1023},  // ten binary digits
    {"RX_PCS_CFG0.RX_ALIGN_MCOMMA_VAL", 1023},
    {"RX_PCS_CFG1.RX_ALIGN_COMMA_ENABLE", 1023},
    {"RX_PCS_CFG1.RX_ALIGN_COMMA_WORD", 4},
    {"RX_PCS_CFG1.RX_SLIDE_MODE", 3},
    {"RX_PCS_CFG1.RX_FABRIC_DATA_SEL", 5},
    {"RX_PCS_CFG1.RX_FIFO_DATA_SEL", 5},
    {"RX_PCS_CFG2.RX_EIEOS_PATTERN_SEL", 2},
    {"RX_PCS_CFG2.FIFO_INIT_RD_ADDR", 12},
    {"RX_PCS_CFG2.MODE", 21},  // "64B66B_ASYNC_CAUI": 1 + 4 (1 + 4)
    {"ADAPT_KH_CFG0.khcdeg_mshift", 12},
    {"ADAPT_KL_CFG0.kl_mshift", 12},
    {"ADAPT_KL_CFG0.kl_initdac", 16},
    {"EYESCAN_CFG16.RXPMA_ADAP_WIDTH_OVRD", 12},
    {"EYESCAN_CFG16.RXPMA_CDR_WIDTH_OVRD", 12},
    {"EYESCAN_CFG16.RXPMA_DES_WIDTH_OVRD", 12},
    {"RX_CDR_CFG0.DATAWIDTH_OVR", 7},
    {"RX_CDR_CFG2.PDIVFAC", 15},
    {"RX_CDR_CFG2.FDIVFAC", 7},
    {"RX_CDR_CFG2.PMULFAC", 7},
    {"RX_CDR_CFG2.VOTEWX", 7},
    {"RX_CDR_CFG2.VOTEWY", 7},
    {"RX_CTLE_CFG1.RCAL_OS_PAD", 8},
    {"RX_ELASTIC_BUF_CFG0.EB8B10B_OVFL_THRESH", 63},
    {"RX_ELASTIC_BUF_CFG0.EB8B10B_UDFL_THRESH", 8},
    {"RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MIN_LAT", 127},
    {"RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MAX_LAT", 127},
    {"RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_REPEAT_WAIT", 31},
    {"RX_ELASTIC_BUF_CFG2.EB8B10B_CLK_COR_SEQ_LEN", 3},
    {"RX_ELASTIC_BUF_CFG4.EB8B10B_CHAN_BOND_SEQ_LEN", 3},
    {"RX_ELASTIC_BUF_CFG3.EB8B10B_CLK_COR_SEQ_1_EN", 15},
    {"RX_ELASTIC_BUF_CFG3.EB8B10B_CLK_COR_SEQ_2_EN", 15},
    {"RX_ELASTIC_BUF_CFG6.EB8B10B_CHAN_BOND_SEQ_1_EN", 15},
    {"RX_ELASTIC_BUF_CFG6.EB8B10B_CHAN_BOND_SEQ_2_EN", 15},
    {"RX_ELASTIC_BUF_CFG7.EB8B10B_CHAN_BOND_MAX_SKEW", 14},
    {"RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_SEQ_1_1", 1023},
    {"RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_SEQ_1_2", 1023},
    {"RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_SEQ_1_3", 1023},
    {"RX_ELASTIC_BUF_CFG2.EB8B10B_CLK_COR_SEQ_1_4", 1023},
    {"RX_ELASTIC_BUF_CFG2.EB8B10B_CLK_COR_SEQ_2_1", 1023},
    {"RX_ELASTIC_BUF_CFG2.EB8B10B_CLK_COR_SEQ_2_2", 1023},
    {"RX_ELASTIC_BUF_CFG3.EB8B10B_CLK_COR_SEQ_2_3", 1023},
    {"RX_ELASTIC_BUF_CFG3.EB8B10B_CLK_COR_SEQ_2_4", 1023},
    {"RX_ELASTIC_BUF_CFG4.EB8B10B_CHAN_BOND_SEQ_1_1", 1023},
    {"RX_ELASTIC_BUF_CFG4.EB8B10B_CHAN_BOND_SEQ_1_2", 1023},
    {"RX_ELASTIC_BUF_CFG4.EB8B10B_CHAN_BOND_SEQ_1_3", 1023},
    {"RX_ELASTIC_BUF_CFG5.EB8B10B_CHAN_BOND_SEQ_1_4", 1023},
    {"RX_ELASTIC_BUF_CFG5.EB8B10B_CHAN_BOND_SEQ_2_1", 1023},
    {"RX_ELASTIC_BUF_CFG5.EB8B10B_CHAN_BOND_SEQ_2_2", 1023},
    {"RX_ELASTIC_BUF_CFG6.EB8B10B_CHAN_BOND_SEQ_2_3", 1023},
    {"RX_ELASTIC_BUF_CFG6.EB8B10B_CHAN_BOND_SEQ_2_4", 1023},
    {"RX_PHALIGN_CFG0.DAPI_BUFG_DIV", 640},  // 5 steps of 128, from another PLL than planned
    {"RX_PHALIGN_CFG0.SYNC_MODE", 2},
    {"RX_PHALIGN_CFG1.SETINIT_PH_CNT", 29},
    {"RX_PHALIGN_CFG1.CHAIN_MODE", 3},
    {"RX_PHALIGN_CFG3.MLDLY_SETINIT_PH_CNT", 29},
    {"RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE", 3},
    {"TX_PCS_CFG0.TX_DATA_WIDTH", 9},
    {"TX_PCS_CFG0.TX_INT_DATA_WIDTH", 2},
    {"TX_PCS_CFG0.TX_PMA_DATA_SEL", 5},
    {"TX_PCS_CFG0.FIFO_INIT_RD_ADDR", 12},
    {"TX_PCS_CFG0.MODE", 21},
    {"PIPE_TX_EQ_CFG0.TX_DRIVE_MODE", 2},
    {"PIPE_TX_EQ_CFG3.TX_DEEMPH_0", 18},
    {"PIPE_TX_EQ_CFG3.TX_DEEMPH_1", 12},
    {"TX_DRV_CFG0.TX_CTL_DRV_EN", 4},
    {"TX_PHALIGN_CFG0.DAPI_BUFG_DIV", 640},
    {"TX_PHALIGN_CFG0.SYNC_MODE", 2},
    {"TX_PHALIGN_CFG1.SETINIT_PH_CNT", 29},
    {"TX_PHALIGN_CFG1.CHAIN_MODE", 3},
    {"TX_PHALIGN_CFG2.TXPI_SETINIT_PH_CNT", 30},
    {"TX_PHALIGN_CFG4.MLDLY_SETINIT_PH_CNT", 29},
    {"TX_PHALIGN_CFG5.TXPI_PMA_DIV", 1280},  // 80 bits, an output divider of 32, by half
};

TEST_F(SxbDatabase, ComputedFieldsHaveRoomForTheLargestValueOfTheirRule) {
    for (const auto& [field, largest] : largestValues) {
        const auto width = placeOf(field).at(1).get<unsigned>();
        EXPECT_LT(largest, 1ULL << width) << field;
    }
}

TEST_F(SxbDatabase, DistributionSelectsHaveTwoBitsForEveryChannel) {
    for (const std::string registerName : {"RXRSTDONE_DIST_SEL", "TXRSTDONE_DIST_SEL"}) {
        for (const auto& [field, place] : registers.at(registerName).at("fields").items()) {
            EXPECT_EQ(place.at(1), 2) << field;
        }
    }
}

TEST_F(SxbDatabase, ReservedBitsAreWhereTheirNamesSay) {
    EXPECT_EQ(placeOf("CHCLK_ILO_CFG.RESERVED_BIT15"), json({15, 1}));
    EXPECT_EQ(placeOf("CHCLK_ILO_CFG.RESERVED_BIT17"), json({17, 1}));
}

TEST_F(SxbDatabase, RegistersOfADualAndOfTheQuadAreInTheirBlocks) {
    EXPECT_THAT(registersOfBlock("hs_clk_ips"),
                UnorderedElementsAreArray({"LCPLL_REFCLK_IPS", "RPLL_REFCLK_IPS"}));
    EXPECT_THAT(registersOfBlock("hs_clk_0"),
                UnorderedElementsAreArray({"HSDIST_CFG", "LCPLL_CFG0", "LCPLL_CFG1", "LCPLL_CFG2",
                                           "LCPLL_LGC_CFG0", "LCPLL_LGC_CFG1", "LCPLL_LGC_CFG2",
                                           "RPLL_CFG0", "RPLL_CFG1", "RPLL_CFG2", "RPLL_LGC_CFG0",
                                           "RPLL_LGC_CFG1", "RPLL_LGC_CFG2"}));
    EXPECT_THAT(registersOfBlock("ctrl_0"), UnorderedElementsAreArray({"A_CFG0",
                                                                       "A_CFG1",
                                                                       "A_CFG2",
                                                                       "A_CFG3",
                                                                       "A_CFG4",
                                                                       "A_CFG5",
                                                                       "CFG0",
                                                                       "CFG1",
                                                                       "CFG2",
                                                                       "CFG3",
                                                                       "CFG4",
                                                                       "CFG5",
                                                                       "CTRL_RSV_CFG0",
                                                                       "CTRL_RSV_CFG1",
                                                                       "MST_RESET_CFG",
                                                                       "PIN_CFG0",
                                                                       "POR_CFG",
                                                                       "UB_CFG0",
                                                                       "RXRSTDONE_DIST_SEL",
                                                                       "TXRSTDONE_DIST_SEL"}));
    EXPECT_THAT(registersOfBlock("channel"), SizeIs(195 - 2 - 13 - 20));
}

/// A parameter's type with the names that are read as this type.
struct ParameterTypeCase {
    std::string type;
    std::vector<std::string> names;
};

class SxbParameterTypes : public testing::TestWithParam<ParameterTypeCase> {};

TEST_P(SxbParameterTypes, AreThoseAsWhichRulesReadThem) {
    const json parameters = referenceFile("SXB", "parameters.json");
    for (const std::string& name : GetParam().names) {
        ASSERT_TRUE(parameters.contains(name)) << name;
        EXPECT_EQ(parameters.at(name).at("type"), GetParam().type) << name;
    }
}

/// The two directions' names of a parameter.
std::vector<std::string> bothDirections(const std::vector<std::string>& endings) {
    std::vector<std::string> names;
    for (const std::string& ending : endings) {
        names.push_back("TX" + ending);
        names.push_back("RX" + ending);
    }
    return names;
}

std::vector<std::string> joined(std::vector<std::string> first,
                                const std::vector<std::string>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// The names of the elements of both sequences, for clock correction and for channel bonding.
std::vector<std::string> sequenceNames(const std::vector<std::string>& kinds) {
    std::vector<std::string> names;
    for (const std::string use : {"RX_CC_", "RX_CB_"}) {
        for (const std::string& kind : kinds) {
            for (const char sequence : {'0', '1'}) {
                for (const char element : {'0', '1', '2', '3'}) {
                    names.push_back(use + kind + "_" + sequence + "_" + element);
                }
            }
        }
    }
    return names;
}

std::vector<std::string> channelPositions() {
    std::vector<std::string> names;
    for (const char channel : {'0', '1', '2', '3'}) {
        for (const std::string ending : {"_SYNCDONE_POSITION", "_RESETDONE_POSITION"}) {
            names.push_back(std::string("TX_CH") + channel + ending);
            names.push_back(std::string("RX_CH") + channel + ending);
        }
    }
    return names;
}

INSTANTIATE_TEST_SUITE_P(
    Types, SxbParameterTypes,
    testing::Values(
        ParameterTypeCase{
            "int", joined({"GEN3_INT_DATA_WIDTH", "MAX_RATE", "RX_PPM_OFFSET", "RX_SSC_PPM",
                           "RX_CC_NUM_SEQ", "RX_CB_NUM_SEQ", "RX_CC_LEN_SEQ", "RX_CB_LEN_SEQ",
                           "RX_CB_MAX_SKEW", "RX_CB_MAX_LEVEL", "RX_CC_PERIODICITY",
                           "RX_CC_REPEAT_WAIT", "RX_COMMA_ALIGN_WORD"},
                          bothDirections({"_BUFFER_MODE", "_INT_DATA_WIDTH", "_USER_DATA_WIDTH",
                                          "_LCPLL_REFCLK_ID", "_RPLL_REFCLK_ID"}))},
        ParameterTypeCase{
            "bool",
            joined(joined({"MULTI_RATE", "OOB_ENABLE", "PCIE_ENABLE",
                           "RPLL_USED_FOR_SERIAL_DATA_RATE0", "LCPLL_USED_FOR_SERIAL_DATA_RATE0",
                           "TX_PIPM_ENABLE", "RX_COMMA_DOUBLE_ENABLE", "RX_COMMA_M_ENABLE",
                           "RX_COMMA_P_ENABLE", "TX_COMMON_USRCLK", "RX_COMMON_USRCLK"},
                          bothDirections({"PROGDIV_FREQ_ENABLE", "_IN_USE", "_LCPLL_POWERDOWN",
                                          "_RPLL_POWERDOWN", "_MAINTAIN_MASTER"})),
                   sequenceNames({"K", "DISP", "MASK"}))},
        ParameterTypeCase{"float",
                          {"XPU_MODE", "PCIE_USERCLK_FREQ", "PCIE_USERCLK2_FREQ", "INS_LOSS_NYQ"}},
        ParameterTypeCase{
            "double", bothDirections({"_LINE_RATE", "PROGDIV_FREQ_VAL", "_LCPLL_REFCLK_FREQUENCY",
                                      "_RPLL_REFCLK_FREQUENCY", "_REFCLK_FREQUENCY"})},
        ParameterTypeCase{
            "string",
            joined(joined({"RX_DATA_DECODING", "TX_DATA_ENCODING", "RX_COMMA_MASK",
                           "RX_COMMA_M_VAL", "RX_COMMA_P_VAL", "RX_EQ_MODE", "RX_SLIDE_MODE",
                           "RX_CC_KEEP_IDLE", "RX_CC_PRECEDENCE"},
                          bothDirections({"PROGDIV_FREQ_SOURCE", "_BUFFER_BYPASS_MODE",
                                          "_LCPLL_REFCLK_SOURCE", "_RPLL_REFCLK_SOURCE",
                                          "_OUTCLK_SOURCE", "_PIPE_POSITION", "_PLL_TYPE",
                                          "_SYNCDONE_POSITION", "_RATE_GROUP", "_REFCLK_SOURCE"})),
                   joined(sequenceNames({"VAL"}), channelPositions()))}),
    [](const auto& test) { return test.param.type; });

TEST_F(SxbDatabase, HasThe171ParametersOfTheFamily) {
    EXPECT_THAT(parameters, SizeIs(171));
}

/// A parameter that differs from the default of its kind.
struct DefaultCase {
    std::string name;
    std::string value;
};

TEST_F(SxbDatabase, AnIdleLaneIsTheDefault) {
    const std::vector<DefaultCase> defaults{{"TX_LCPLL_POWERDOWN", "true"},
                                            {"RX_RPLL_POWERDOWN", "true"},
                                            {"TX_LCPLL_REFCLK_FREQUENCY", "0"},
                                            {"RX_RPLL_REFCLK_SOURCE", "R0"},
                                            {"RX_LCPLL_REFCLK_ID", "0"},
                                            {"TX_IN_USE", "false"},
                                            {"RX_PIPE_POSITION", "single"},
                                            {"TX_CH3_SYNCDONE_POSITION", "single"},
                                            {"RX_EQ_MODE", "AUTO"},
                                            {"INS_LOSS_NYQ", "20"}};
    for (const DefaultCase& row : defaults) {
        EXPECT_EQ(parameters.at(row.name).at("default_value"), row.value) << row.name;
    }
}

}  // namespace
}  // namespace sable_lanecfg
