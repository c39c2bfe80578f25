#include "support/worked_request.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::aboveMaster;
using lanecfg_test::atMaster;
using lanecfg_test::belowMaster;
using lanecfg_test::feedbackWord;
using lanecfg_test::idleDivider;
using lanecfg_test::resetWord;
using lanecfg_test::syncDoneWord;
using testing::Each;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;

class SxcRequest : public lanecfg_test::WorkedRequest {
  protected:
    using WorkedRequest::WorkedRequest;

    /// Words of the rate table in hexadecimal digits.
    static std::vector<std::string> tableWords() {
        std::istringstream table(instance().generateRateTable(true));
        std::string header;
        std::getline(table, header);
        std::vector<std::string> words;
        for (std::string word; table >> word;) {
            words.push_back(word);
        }
        return words;
    }

    /// The values of a variable at all rates of lane 0.
    template <class Value>
    static std::vector<Value> atEachRate(const std::string& name) {
        return ofPasses<Value>(0, name);
    }
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
    // 66 times 156.25 MHz.
    EXPECT_EQ(word("A_CFG1"), feedbackWord(66, idleDivider, 66, idleDivider));
    expectRunning({true, false, true, false});
}

TEST_F(SxcTenGigabitRequest, ResetsLanesWithTheirLcpllButNotTheirOscillators) {
    // The interpolators are passed by.
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0xf, 0, 0xf, 0, 0, 0}));
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
    EXPECT_EQ(ofPasses<unsigned>(0, "RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MIN_LAT").front(), 15U);
    EXPECT_EQ(ofPasses<unsigned>(0, "RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MAX_LAT").front(), 47U);
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
    const auto clocks = outputClocks();
    // 10312.5 Mb/s in words of 80 bits.
    EXPECT_THAT(clocks, SizeIs(8));
    EXPECT_THAT(clocks, Each(testing::Field(&std::pair<const std::string, std::string>::second,
                                            "128.906")));
}

TEST_F(SxcTenGigabitRequest, WritesTheOutputClockControlsLaneByLane) {
    // All duplex in one group of channel 0, which has one rate of 12 words from word 10; the others
    // follow behind at word 22. A single lane (bit 25, its number from bit 26) and a mask (bits 24
    // and 23) for 0x90 at bits 13 and 3. Both aligners are passed by with code 1 of 2, at bits 3,
    // 6, 15, 19, 23 and 27; controls 2 at bits 0 and 12, and bit 11 without PCIe.
    EXPECT_THAT(
        tableWords(),
        ElementsAre("1e00001f", "1e00001f", "0010300a", "0010300a", "00100016", "00100016",
                    "00100016", "00100016", "00100016", "00100016",  //
                    "03920480", "00007007", "0888a84a", "07920480", "00007007", "0888a84a",
                    "0b920480", "00007007", "0888a84a", "0f920480", "00007007", "0888a84a"));
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
    EXPECT_EQ(word("A_CFG1"), feedbackWord(100, idleDivider, 100, idleDivider));
    expectRunning({true, false, true, false});
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
    // Beside the programmable divider of each transmitter.
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0xf, 0, 0xf, 0xf, 0, 0xf}));
}

TEST_F(SxcPcieRequest, PlacesTheLanesOfTheLink) {
    for (const std::string side : {"TX", "RX"}) {
        EXPECT_THAT(ofLanes<std::string>(side + "_PIPE_POSITION"),
                    ElementsAre("bottom", "middle", "middle", "top"));
        EXPECT_THAT(ofLanes<bool>(side + "_MAINTAIN_MASTER"),
                    ElementsAre(false, false, true, false));
    }
    EXPECT_THAT(
        fieldOfLanes("PIPE_CTRL_CFG9"),
        ElementsAre(syncDoneWord(belowMaster, belowMaster), syncDoneWord(atMaster, atMaster),
                    syncDoneWord(aboveMaster, aboveMaster),
                    syncDoneWord(aboveMaster, aboveMaster)));
    // Clock divider 3 at 2.5 Gb/s; alignment of delay and phase, many lanes, no buffer; the master
    // synchronises with mode 1.
    const unsigned long aligned = 3UL + (1UL << 10) + (1UL << 11) + (1UL << 16) + (1UL << 17);
    EXPECT_EQ(word("CH0_TX_PHALIGN_CFG0"), aligned);
    EXPECT_EQ(word("CH1_TX_PHALIGN_CFG0"), aligned + (1UL << 20));
}

TEST_F(SxcPcieRequest, ReportsTheFastestClockOfEachLane) {
    const auto clocks = outputClocks();
    EXPECT_THAT(clocks, ElementsAre(Pair("CH0_RXOUTCLK", "400"), Pair("CH0_TXOUTCLK", "500"),
                                    Pair("CH1_RXOUTCLK", "400"), Pair("CH1_TXOUTCLK", "500"),
                                    Pair("CH2_RXOUTCLK", "400"), Pair("CH2_TXOUTCLK", "500"),
                                    Pair("CH3_RXOUTCLK", "400"), Pair("CH3_TXOUTCLK", "500")));
}

TEST_F(SxcPcieRequest, HasOneTableForTheFourLanes) {
    std::vector<std::string> words = tableWords();
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
