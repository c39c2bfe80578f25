#include "support/captured_messages.h"
#include "support/reference_data.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

namespace sable_lanecfg {
namespace {

using lanecfg_test::CapturedMessages;
using lanecfg_test::initialiseBundledRequest;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

const char* const instanceName = "quad_0";

/// 10GBASE-R on four lanes, by way of the manager.
class SxbTenGigabitRequest : public testing::Test {
  protected:
    SxbTenGigabitRequest() { initialiseBundledRequest(instanceName, "sxb_10gbase_r"); }
    ~SxbTenGigabitRequest() override { lane_cfg_ip_mgr::releaseData(instanceName); }

    static lane_cfg_instance& instance() { return *lane_cfg_ip_mgr::getIPInstance(instanceName); }

    static std::map<std::string, std::string> attributes() {
        return lane_cfg_ip_mgr::getAttributes(instanceName, "SXB", "live");
    }

    static unsigned long word(const std::string& name) { return std::stoul(attributes().at(name)); }

    CapturedMessages messages;
};

TEST_F(SxbTenGigabitRequest, PacksWithoutAMessageOfAFault) {
    EXPECT_THAT(instance().packedChannels, IsEmpty());
    EXPECT_THAT(messages.texts(0x20000000), IsEmpty());
    EXPECT_THAT(messages.texts(0x10000000), IsEmpty());
    EXPECT_THAT(messages.texts(0x8000000), IsEmpty());
}

TEST_F(SxbTenGigabitRequest, RunsOnePassForEachLane) {
    EXPECT_THAT(instance().blockVarMap, SizeIs(4));
    EXPECT_THAT(instance().blockVarMap, Each(SizeIs(1)));
}

TEST_F(SxbTenGigabitRequest, SolvesThePllOfEveryLane) {
    for (const auto& passes : instance().blockVarMap) {
        const variableMap& pass = passes.front();
        EXPECT_EQ(boost::get<unsigned int>(pass.at("INT_LCPLL_REF_DIV").value), 1U);
        EXPECT_EQ(boost::get<unsigned int>(pass.at("INT_LCPLL_FBDIV").value), 66U);
        EXPECT_EQ(boost::get<unsigned int>(pass.at("INT_LCPLL_SDMDATA").value), 0U);
        EXPECT_EQ(boost::get<std::string>(pass.at("INT_LCPLLCLKOUTRATE").value), "FULL");
        EXPECT_EQ(boost::get<double>(pass.at("INT_LCPLL_PLLCLKOUT").value), 10.3125);
    }
}

TEST_F(SxbTenGigabitRequest, HasTheFeedbackDividersOfBothDuals) {
    // 66 - 2 for the LCPLLs, the idle 80 - 2 for the RPLLs.
    EXPECT_EQ(word("A_CFG1"), 64UL + (78UL << 8) + (64UL << 16) + (78UL << 24));
}

TEST_F(SxbTenGigabitRequest, PowersTheRpllsDownAlone) {
    // No fraction anywhere. LCPLLs: the reset mask 3 at bits 28 and 1; RPLLs: the mask 3 at bits 3
    // and 0, and power down at bit 5 of both.
    EXPECT_EQ(word("A_CFG2"), 3UL << 28);
    EXPECT_EQ(word("A_CFG3"), (3UL << 3) + (1UL << 5));
    EXPECT_EQ(word("A_CFG4"), 3UL << 1);
    EXPECT_EQ(word("A_CFG5"), 3UL + (1UL << 5));
}

TEST_F(SxbTenGigabitRequest, ResetsEveryLaneWithItsLcpll) {
    // The LCPLL of transmit and receive at bits 0 to 3 and 28 to 31. In the five bits of a channel
    // from bit 8: oscillator, transmit and receive channel, but neither divider.
    unsigned long expected = 0xfUL + (0xfUL << 28);
    for (unsigned channel = 0; channel < 4; ++channel) {
        expected += 0b10101UL << (8 + 5 * channel);
    }
    EXPECT_EQ(word("MST_RESET_CFG"), expected);
    EXPECT_EQ(word("CTRL_RSV_CFG0") >> 28, 0U);
}

TEST_F(SxbTenGigabitRequest, SelectsTheReferenceClockInBothDuals) {
    const std::map<std::string, std::string> answer = attributes();
    // R0 has code 1; the second dual sees clocks 1 and 2 in the other order.
    for (const std::string dual : {"HS0_", "HS1_"}) {
        EXPECT_EQ(answer.at(dual + "LCPLL_IPS_REFCLK_SEL"), "1");
        EXPECT_EQ(answer.at(dual + "LCPLL_IPS_PIN_EN"), "0");
        EXPECT_EQ(answer.at(dual + "LCPLL_REFCLK_MAP7 "), "7");
    }
    EXPECT_EQ(answer.at("HS0_LCPLL_REFCLK_MAP1 "), "1");
    EXPECT_EQ(answer.at("HS0_LCPLL_REFCLK_MAP2 "), "2");
    EXPECT_EQ(answer.at("HS1_LCPLL_REFCLK_MAP1 "), "2");
    EXPECT_EQ(answer.at("HS1_RPLL_REFCLK_MAP2 "), "1");
}

TEST_F(SxbTenGigabitRequest, AnswersForEveryRegister) {
    // Beside its units' registers (160 for each of 4 channels, 15 for each of 2 clock groups, 20
    // for the quad) 40 reference clock fields, the list of unchanged registers, and the 175
    // registers of channels and clock groups under their bare names.
    EXPECT_THAT(attributes(), SizeIs(4 * 160 + 2 * 15 + 20 + 40 + 1 + 175));
}

TEST_F(SxbTenGigabitRequest, ReportsTheClocksOfTheCodingLayer) {
    const auto clocks = lane_cfg_ip_mgr::getOutClkFrequencies(instanceName, "SXB", "live");
    // 10312.5 Mb/s in words of 80 bits.
    EXPECT_THAT(clocks,
                ElementsAre(Pair("CH0_RXOUTCLK", "128.906"), Pair("CH0_TXOUTCLK", "128.906"),
                            Pair("CH1_RXOUTCLK", "128.906"), Pair("CH1_TXOUTCLK", "128.906"),
                            Pair("CH2_RXOUTCLK", "128.906"), Pair("CH2_TXOUTCLK", "128.906"),
                            Pair("CH3_RXOUTCLK", "128.906"), Pair("CH3_TXOUTCLK", "128.906")));
}

TEST_F(SxbTenGigabitRequest, PlacesEveryLaneForItself) {
    for (const auto& passes : instance().blockVarMap) {
        for (const char* const name : {"TX_PIPE_POSITION", "RX_PIPE_POSITION",
                                       "TX_CH3_RESETDONE_POSITION", "RX_CH0_SYNCDONE_POSITION"}) {
            EXPECT_EQ(boost::get<std::string>(passes.front().at(name).value), "single") << name;
        }
    }
}

}  // namespace
}  // namespace sable_lanecfg
