#include "support/captured_messages.h"
#include "support/reference_data.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

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

/// A bundled request, by way of the manager.
class SxcRequest : public testing::Test {
  protected:
    explicit SxcRequest(const std::string& request) {
        initialiseBundledRequest(instanceName, request);
    }
    ~SxcRequest() override { lane_cfg_ip_mgr::releaseData(instanceName); }

    static lane_cfg_instance& instance() { return *lane_cfg_ip_mgr::getIPInstance(instanceName); }

    static std::map<std::string, std::string> attributes() {
        return lane_cfg_ip_mgr::getAttributes(instanceName, "SXC", "live");
    }

    static unsigned long word(const std::string& name) { return std::stoul(attributes().at(name)); }

    template <class Value>
    static Value valueIn(std::size_t lane, std::size_t rate, const std::string& name) {
        return boost::get<Value>(instance().blockVarMap.at(lane).at(rate).at(name).value);
    }

    /// The values of a variable at all rates of a lane.
    template <class Value>
    static std::vector<Value> atEachRate(const std::string& name, std::size_t lane = 0) {
        std::vector<Value> values;
        for (std::size_t rate = 0; rate < instance().blockVarMap.at(lane).size(); ++rate) {
            values.push_back(valueIn<Value>(lane, rate, name));
        }
        return values;
    }

    void expectPacked() const {
        EXPECT_THAT(instance().packedChannels, IsEmpty());
        for (const unsigned severity : {0x20000000U, 0x10000000U, 0x8000000U}) {
            EXPECT_THAT(messages.texts(severity), IsEmpty());
        }
    }

    CapturedMessages messages;
};

class SxcTenGigabitRequest : public SxcRequest {
  protected:
    SxcTenGigabitRequest() : SxcRequest("sxc_10gbase_r") {}
};

TEST_F(SxcTenGigabitRequest, PacksAndRunsOnePassForEachLane) {
    expectPacked();
    EXPECT_THAT(instance().blockVarMap, SizeIs(4));
    EXPECT_THAT(instance().blockVarMap, Each(SizeIs(1)));
}

TEST_F(SxcTenGigabitRequest, HasTheDividersOfBothDuals) {
    // 66 times 156.25 MHz, less 2; the idle 80, less 2.
    EXPECT_EQ(word("A_CFG1"), 64UL + (78UL << 8) + (64UL << 16) + (78UL << 24));
}

TEST_F(SxcTenGigabitRequest, ResetsLanesWithTheirLcpllButNotTheirOscillators) {
    // Transmit and receive channel in the five bits of each channel from bit 8, no divider; the
    // interpolators are passed by.
    unsigned long expected = 0xfUL + (0xfUL << 28);
    for (unsigned channel = 0; channel < 4; ++channel) {
        expected += 0b10100UL << (8 + 5 * channel);
    }
    EXPECT_EQ(word("MST_RESET_CFG"), expected);
    // A debug length of 3, and the oscillators of the receivers; nobody is on the RPLL.
    EXPECT_EQ(word("CTRL_RSV_CFG0"), (3UL << 3) + (0xfUL << 9));
}

TEST_F(SxcTenGigabitRequest, WaitsForTheLcpllOfReceiversInUse) {
    // Idle count 8, prescaler 5, reset on lock, receiver in use, reset on valid data; bits 25 and
    // 26 are for the RPLL.
    EXPECT_EQ(word("CH0_RESET_CFG"),
              (8UL << 2) + (5UL << 7) + (1UL << 14) + (1UL << 16) + (1UL << 21));
}

TEST_F(SxcTenGigabitRequest, ReservesTheInternalWidthInTheElasticBuffer) {
    // The least latency is a word of 4 of drift, 3 * 4 - 2 and 1; above it 32.
    EXPECT_EQ(valueIn<unsigned>(0, 0, "RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MIN_LAT"), 15U);
    EXPECT_EQ(valueIn<unsigned>(0, 0, "RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MAX_LAT"), 47U);
    EXPECT_EQ((word("CH0_RX_ELASTIC_BUF_CFG0") >> 1) & 0x7fU, 47U);
}

TEST_F(SxcTenGigabitRequest, HasTheWordsOfTheReservedRegisters) {
    const std::map<std::string, std::string> answer = attributes();
    for (const std::string channel : {"CH0", "CH1", "CH2", "CH3"}) {
        // 9, 12 at bit 8, and the two waits for the master at bits 20 and 21.
        EXPECT_EQ(answer.at(channel + "_CHL_RSV_CFG0"),
                  std::to_string(9U + (12U << 8) + (1U << 20) + (1U << 21)));
        // Two pins at bits 3 and 4, a delay of 3 at bit 9.
        EXPECT_EQ(answer.at(channel + "_CHL_RSV_CFG1"), std::to_string((3U << 3) + (3U << 9)));
        // Latencies 8 and 22 at bits 1 and 5, 31 at bit 11, one at bit 17; not enabled.
        EXPECT_EQ(answer.at(channel + "_CHL_RSV_CFG2"),
                  std::to_string((8U << 1) + (22U << 5) + (31U << 11) + (1U << 17)));
        EXPECT_EQ(answer.at(channel + "_CHL_RSV_CFG3"), "0");
    }
}

TEST_F(SxcTenGigabitRequest, HasTheWordsOfTheChangedConstants) {
    // Calibration overridden at bit 2 with 16 at bit 4; both clocks and the controller on.
    EXPECT_EQ(word("A_CFG0"), 1UL + (1UL << 2) + (16UL << 4) + (1UL << 9) + (1UL << 10));
    // No control; the voltage 3 at bit 5.
    EXPECT_EQ(word("HSCLK0_HSDIST_CFG"), 3UL << 5);
    // Four pins a direction at bits 0 and 25, the controller's at 10, clocks at 11 and 17, and the
    // resets of the PLLs at 12 to 15.
    EXPECT_EQ(word("PIN_CFG0"),
              15UL + (1UL << 10) + (1UL << 11) + (15UL << 12) + (1UL << 17) + (15UL << 25));
    EXPECT_EQ(word("CH0_RX_CTLE_CFG1"), 1UL << 14);
    EXPECT_EQ(word("CH0_TX_DRV_CFG0"), 0UL);
    EXPECT_EQ(word("CH0_PIPE_TX_EQ_CFG3"), 18UL + (12UL << 5));
}

TEST_F(SxcTenGigabitRequest, AnswersForEveryRegister) {
    // As in SXB: 160 registers for each of 4 channels, 15 for each of 2 clock groups, 20 for the
    // quad; 40 reference clock fields, the unchanged registers, and 175 bare names.
    EXPECT_THAT(attributes(), SizeIs(4 * 160 + 2 * 15 + 20 + 40 + 1 + 175));
}

TEST_F(SxcTenGigabitRequest, ReportsTheClocksOfTheCodingLayer) {
    const auto clocks = lane_cfg_ip_mgr::getOutClkFrequencies(instanceName, "SXC", "live");
    // 10312.5 Mb/s in words of 80 bits.
    EXPECT_THAT(clocks, SizeIs(8));
    EXPECT_THAT(clocks, Each(testing::Field(&std::pair<const std::string, std::string>::second,
                                            "128.906")));
}

/// Rates 0 to 4: 2.5, 5.0, 8.0, 16.0 and 32.0 Gb/s.
class SxcPcieRequest : public SxcRequest {
  protected:
    SxcPcieRequest() : SxcRequest("sxc_pcie") {}
};

TEST_F(SxcPcieRequest, PacksAndRunsAPassForEachRateOfEachLane) {
    expectPacked();
    EXPECT_THAT(instance().blockVarMap, SizeIs(4));
    EXPECT_THAT(instance().blockVarMap, Each(SizeIs(5)));
}

TEST_F(SxcPcieRequest, SolvesThePllOfEveryRate) {
    // The first candidate of 5 or 10 GHz; 8 GHz of 4, 8 and 16 since 8.0 Gb/s leaves out the first;
    // 8 of 8 and 16; 16. Below 8.1875 GHz the oscillator runs at twice the clock.
    EXPECT_THAT(atEachRate<double>("INT_LCPLL_PLLCLKOUT"), ElementsAre(5.0, 5.0, 8.0, 8.0, 16.0));
    EXPECT_THAT(atEachRate<std::string>("INT_LCPLLCLKOUTRATE"),
                ElementsAre("HALF", "HALF", "HALF", "HALF", "FULL"));
    // 10 and 16 GHz over 100 MHz.
    EXPECT_THAT(atEachRate<unsigned>("INT_LCPLL_FBDIV"), ElementsAre(100, 100, 160, 160, 160));
    EXPECT_THAT(atEachRate<unsigned>("INT_LCPLL_REF_DIV"), Each(1U));
    // Twice the clock over the rate.
    EXPECT_THAT(atEachRate<double>("INT_RX_OUTDIV"), ElementsAre(4.0, 2.0, 2.0, 1.0, 1.0));
}

TEST_F(SxcPcieRequest, HasTheDividersOfTheFirstRate) {
    EXPECT_EQ(word("A_CFG1"), 98UL + (78UL << 8) + (98UL << 16) + (78UL << 24));
}

TEST_F(SxcPcieRequest, MakesTheClockOfTheLinkAtEveryRate) {
    // 5, 8 and 16 GHz over 5, 4 and 8 are 1, 2 and 2 GHz, halved by the aligner.
    EXPECT_THAT(atEachRate<double>("INT_TXPROGDIV_SEL"), ElementsAre(5.0, 5.0, 4.0, 4.0, 8.0));
    EXPECT_THAT(atEachRate<unsigned>("INT_TXOUTCLKDIV_FOR_PROGDIV_PATH"),
                ElementsAre(1, 1, 2, 2, 2));
    EXPECT_THAT(atEachRate<double>("INT_TXOUTCLK_FREQ"), Each(500.0));
    // Words of 16, 16, 40, 40 and 80 bits at the five rates: 156.25, 312.5, 200, 400, 400 MHz. In
    // them fit 3.2, 1.6, 2.5, 1.25 and 1.25 clocks, rounded, in steps of the divider.
    EXPECT_THAT(atEachRate<double>("INT_RXOUTCLK_FREQ"),
                ElementsAre(156.25, 312.5, 200.0, 400.0, 400.0));
    EXPECT_THAT(atEachRate<unsigned>("TX_PHALIGN_CFG0.DAPI_BUFG_DIV"), ElementsAre(3, 2, 6, 2, 2));
}

TEST_F(SxcPcieRequest, DividesTheLinksClockForTheFabric) {
    // 500 MHz over 125, 250, 250 (32 bits at the third rate), 500 and both users' 250, less 1.
    const unsigned long divided = 1UL + (3UL << 6) + (0UL << 12) + (1UL << 17) + (1UL << 18) +
                                  (1UL << 22) + (1UL << 26) + (1UL << 30);
    EXPECT_EQ(word("CH0_PIPE_CTRL_CFG5"), divided);
    EXPECT_THAT(atEachRate<unsigned>("PIPE_CTRL_CFG5"), Each(divided));
}

TEST_F(SxcPcieRequest, RecoversTheClockOfEveryRateInItsWidth) {
    // The widths at bits 9, 13 and 17 and their override at bit 8.
    const auto eyescan = [](unsigned width, unsigned enable) {
        return (enable << 8) + (width << 9) + (width << 13) + (width << 17);
    };
    EXPECT_THAT(atEachRate<unsigned>("EYESCAN_CFG16"),
                ElementsAre(eyescan(11, 1), eyescan(1, 1), eyescan(10, 1), 0, eyescan(12, 1)));
    // The offset of 600 ppm at bit 0, the test source 2 at bit 10 and its enable at bit 12; mode
    // and latency at bits 1 and 5, the data width at bit 2.
    const auto recovery = [](unsigned dataWidth, unsigned select) {
        return 1U + (2U << 10) + (1U << 12) + (dataWidth << 2) + (select << 1) + (select << 5);
    };
    EXPECT_THAT(atEachRate<unsigned>("RX_CDR_CFG0"),
                ElementsAre(recovery(0, 0), recovery(0, 0), recovery(2, 1), recovery(4, 1),
                            recovery(0, 0)));
}

TEST_F(SxcPcieRequest, DividesTheDataOfTheAdaptationAtTheThirdAndTheFifthRate) {
    EXPECT_THAT(atEachRate<unsigned>("ADAPT_APT_CFG"), ElementsAre(0, 0, 1U << 29, 0, 1U << 29));
}

TEST_F(SxcPcieRequest, UsesTheElasticBufferOfEachRatesWord) {
    EXPECT_THAT(atEachRate<unsigned>("RX_ELASTIC_BUF_CFG0.ELASTICBUF_8B10B_EN"),
                ElementsAre(1, 1, 0, 0, 0));
    EXPECT_THAT(atEachRate<unsigned>("RX_ELASTIC_BUF_CFG8.ELASTICBUF_128B130B_EN"),
                ElementsAre(0, 0, 1, 1, 0));
    constexpr unsigned constants = (8U << 1) + (22U << 5) + (31U << 11) + (1U << 17);
    EXPECT_THAT(atEachRate<unsigned>("CHL_RSV_CFG2"),
                ElementsAre(constants, constants, constants, constants, constants + 1));
    // The plain buffer does not ask for the one of 64 bits.
    EXPECT_THAT(atEachRate<unsigned>("RX_PCS_CFG2.RX_PHASE_BUFFER_USE"),
                ElementsAre(0, 0, 0, 0, 1));
}

TEST_F(SxcPcieRequest, ResetsTheOscillatorOfEveryLane) {
    // All but the receiver's divider in the five bits of a channel.
    unsigned long expected = 0xfUL + (0xfUL << 28);
    for (unsigned channel = 0; channel < 4; ++channel) {
        expected += 0b10111UL << (8 + 5 * channel);
    }
    EXPECT_EQ(word("MST_RESET_CFG"), expected);
}

TEST_F(SxcPcieRequest, PlacesTheLanesOfTheLink) {
    const std::vector<std::string> positions{"bottom", "middle", "middle", "top"};
    const std::vector<std::string> alignments{"below", "IM", "above", "above"};
    for (std::size_t lane = 0; lane < 4; ++lane) {
        for (const std::string side : {"TX", "RX"}) {
            EXPECT_EQ(valueIn<std::string>(lane, 4, side + "_PIPE_POSITION"), positions[lane]);
            EXPECT_EQ(valueIn<std::string>(lane, 4, side + "_SYNCDONE_POSITION"), alignments[lane]);
            EXPECT_EQ(valueIn<bool>(lane, 4, side + "_MAINTAIN_MASTER"), lane == 2);
        }
    }
    // Clock divider 3 at 2.5 Gb/s; alignment of delay and phase, many lanes, no buffer; the master
    // synchronises with mode 1.
    const unsigned long aligned = 3UL + (1UL << 10) + (1UL << 11) + (1UL << 16) + (1UL << 17);
    EXPECT_EQ(word("CH0_TX_PHALIGN_CFG0"), aligned);
    EXPECT_EQ(word("CH1_TX_PHALIGN_CFG0"), aligned + (1UL << 20));
}

TEST_F(SxcPcieRequest, ReportsTheFastestClockOfEachLane) {
    const auto clocks = lane_cfg_ip_mgr::getOutClkFrequencies(instanceName, "SXC", "live");
    EXPECT_THAT(clocks, ElementsAre(Pair("CH0_RXOUTCLK", "400"), Pair("CH0_TXOUTCLK", "500"),
                                    Pair("CH1_RXOUTCLK", "400"), Pair("CH1_TXOUTCLK", "500"),
                                    Pair("CH2_RXOUTCLK", "400"), Pair("CH2_TXOUTCLK", "500"),
                                    Pair("CH3_RXOUTCLK", "400"), Pair("CH3_TXOUTCLK", "500")));
}

TEST_F(SxcPcieRequest, HasOneTableForTheFourLanes) {
    std::istringstream table(instance().generateRateTable(true));
    std::string header;
    std::getline(table, header);
    std::vector<std::string> words;
    for (std::string text; table >> text;) {
        words.push_back(text);
    }
    // All duplex, one group of channel 0; five rates of 49 words from word 10 in PCIe mode, and the
    // followers behind them at word 255.
    ASSERT_THAT(words, SizeIs(10 + 5 * 49));
    words.resize(10);
    EXPECT_THAT(words, ElementsAre("1e00001f", "1e00001f", "8050c40a", "8050c40a", "805000ff",
                                   "805000ff", "805000ff", "805000ff", "805000ff", "805000ff"));
    EXPECT_FALSE(instance().isFabricBramNeeded());
}

}  // namespace
}  // namespace sable_lanecfg
