#include "support/worked_request.h"

#include <boost/algorithm/string/predicate.hpp>
#include <gmock/gmock.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

/// `LCPLL_CFG0`: code 4 of reference divider 1, the charge pump at 3, the regulator on at 11 and
/// 12, 4 for its voltage at 14.
constexpr unsigned long lcpllPump(unsigned long current) {
    return 4UL + (current << 3) + (1UL << 11) + (1UL << 12) + (4UL << 14);
}

/// `LCPLL_CFG2`: capacitors on at 0 and 4, the second one at 1 and its resistor at 3 where there is
/// a fraction, the resistance at 5, 8 at 19, on at 24.
struct LoopFilter {
    unsigned long resistance;
    unsigned long firstCapacitor = 1;
    unsigned long secondCapacitor = 0;
    unsigned long secondResistor = 0;
};

constexpr unsigned long lcpllFilter(const LoopFilter& filter) {
    return 1UL + (filter.secondCapacitor << 1) + (filter.secondResistor << 3) +
           (filter.firstCapacitor << 4) + (filter.resistance << 5) + (8UL << 19) + (1UL << 24);
}

/// `LCPLL_LGC_CFG1` and `RPLL_LGC_CFG1`: a wait after the reset, 101 at 8, 3 at 13, and at 17
/// whether the modulator of the fraction is passed by.
constexpr unsigned long logic(unsigned long wait, unsigned long bypass) {
    return wait + (5UL << 8) + (3UL << 13) + (bypass << 17);
}

constexpr unsigned long usualWait = 148;

/// A reference clock word: the source at 1, maps 7, 6, 5, 4 and 3 to themselves from 4 on, and 2
/// and 1, which are exchanged in the second dual.
constexpr unsigned long referenceOfSecondDual(unsigned long source) {
    return (source << 1) + (7UL << 4) + (6UL << 7) + (5UL << 10) + (4UL << 13) + (3UL << 16) +
           (1UL << 19) + (2UL << 22);
}

/// The words of a PLL of a dual of a bundled request, and the lane that uses it.
struct ClockWords {
    std::string request;
    std::size_t dual;
    std::string pll;
    std::size_t lane;
    std::map<std::string, unsigned long> words;
};

std::map<std::string, unsigned long> pcieWords() {
    // Gen1: the pump and the resistance of PCIe, the first capacitor off; a wait of 1.
    return {{"LCPLL_CFG0", lcpllPump(255)},
            {"LCPLL_CFG2", lcpllFilter({5, 0})},
            {"LCPLL_LGC_CFG1", logic(1, 1)}};
}

/// Words of an LCPLL without a fraction, whose resistance is of its feedback and its oscillator.
std::map<std::string, unsigned long> wholeWords(unsigned long resistance) {
    return {{"LCPLL_CFG0", lcpllPump(15)},
            {"LCPLL_CFG2", lcpllFilter({resistance})},
            {"LCPLL_LGC_CFG1", logic(usualWait, 1)}};
}

std::map<std::string, unsigned long> fractionalWords(unsigned long resistance) {
    return {{"LCPLL_CFG0", lcpllPump(3)},
            {"LCPLL_CFG2", lcpllFilter({resistance, 1, 2, 1})},
            {"LCPLL_LGC_CFG1", logic(usualWait, 0)}};
}

/// Words of an RPLL without a fraction with a feedback of 10 to 25.
std::map<std::string, unsigned long> rpllWords() {
    // On at 0, a pump of 511 at 7, code 4 of reference divider 1 at 17.
    return {{"RPLL_CFG0", 1UL + (511UL << 7) + (4UL << 17)},
            // A doubler's voltage of 4 at 7, a current of 6 at 10, on at 13, a resistance of 7 at
            // 17, off at 20, and the one of 22 at 21.
            {"RPLL_CFG2",
             (4UL << 7) + (6UL << 10) + (1UL << 13) + (7UL << 17) + (1UL << 20) + (22UL << 21)},
            {"RPLL_LGC_CFG1", logic(usualWait, 1)}};
}

std::map<std::string, unsigned long> with(std::map<std::string, unsigned long> words,
                                          const std::string& name, unsigned long word) {
    words[name] = word;
    return words;
}

std::vector<ClockWords> clockWords() {
    return {
        {"sxb_pcie_gen4_x1", 0, "LCPLL", 0, pcieWords()},
        {"sxb_pcie_gen4_x2", 0, "LCPLL", 0, pcieWords()},
        {"sxb_pcie_gen4_x4", 0, "LCPLL", 0, pcieWords()},
        {"sxb_pcie_gen4_x4", 1, "LCPLL", 2, pcieWords()},
        // A feedback of 68 and a fraction of 10.709 GHz.
        {"sxb_otu2_fractional", 0, "LCPLL", 0, fractionalWords(102)},
        {"sxb_xaui", 0, "RPLL", 0, rpllWords()},
        {"sxb_xaui", 1, "RPLL", 2, rpllWords()},
        // 64 of 10 GHz, 40 of 11.88 GHz; the second dual's reference is R1, code 2.
        {"sxb_partly_used", 0, "LCPLL", 0, wholeWords(102)},
        {"sxb_partly_used", 1, "LCPLL", 2,
         with(wholeWords(74), "LCPLL_REFCLK_IPS", referenceOfSecondDual(2))},
        {"sxb_partly_used", 1, "RPLL", 3,
         with(rpllWords(), "RPLL_REFCLK_IPS", referenceOfSecondDual(2))},
    };
}

class SxbClockWords : public lanecfg_test::WorkedRequest,
                      public testing::WithParamInterface<ClockWords> {
  protected:
    SxbClockWords() : WorkedRequest(GetParam().request) {}

    static std::string key(const std::string& name) {
        return "HSCLK" + std::to_string(GetParam().dual) + "_" + name;
    }
};

TEST_P(SxbClockWords, AreThoseWorkedOutByHand) {
    for (const auto& [name, expected] : GetParam().words) {
        EXPECT_EQ(word(key(name)), expected) << name;
    }
}

TEST_P(SxbClockWords, AreThoseOfTheLaneThatUsesThePll) {
    const std::map<std::string, std::string> answer = attributes();
    std::size_t compared = 0;
    for (const auto& [name, info] : instance().attributes) {
        if (boost::algorithm::starts_with(name, GetParam().pll + "_")) {
            ++compared;
            EXPECT_EQ(answer.at(key(name)),
                      std::to_string(ofPasses<unsigned int>(GetParam().lane, name).front()))
                << name;
        }
    }
    // Three configurations, three of the logic, and the reference.
    EXPECT_EQ(compared, 7U);
}

INSTANTIATE_TEST_SUITE_P(Bundled, SxbClockWords, testing::ValuesIn(clockWords()),
                         [](const testing::TestParamInfo<ClockWords>& test) {
                             return test.param.request + "_dual_" +
                                    std::to_string(test.param.dual) + "_" + test.param.pll;
                         });

/// The last lane of the quad isn't used, and has the parameters of those that are.
class SxbQuadWords : public lanecfg_test::WorkedRequest,
                     public testing::WithParamInterface<std::string> {
  protected:
    SxbQuadWords() : WorkedRequest(GetParam()) {}
};

TEST_P(SxbQuadWords, AreThoseOfTheLink) {
    for (const std::string name : {"PIN_CFG0", "TXRSTDONE_DIST_SEL", "RXRSTDONE_DIST_SEL"}) {
        EXPECT_EQ(word(name), ofPasses<unsigned int>(0, name).front()) << name;
    }
    // PCIe takes its pins from no fabric.
    EXPECT_EQ(word("PIN_CFG0") >> 7 & 1, 0U);
}

INSTANTIATE_TEST_SUITE_P(Pcie, SxbQuadWords,
                         testing::Values("sxb_pcie_gen4_x1", "sxb_pcie_gen4_x2"),
                         [](const testing::TestParamInfo<std::string>& test) {
                             return test.param;
                         });

/// PCIe on lanes 0 and 1.
class SxbQuadWordsOfTwoLanes : public lanecfg_test::WorkedRequest {
  protected:
    SxbQuadWordsOfTwoLanes() : WorkedRequest("sxb_pcie_gen4_x2") {}
};

TEST_F(SxbQuadWordsOfTwoLanes, HandTheEndOfTheResetAlong) {
    // The bottom lane hands it north, 2 at 18, and takes it, 3 at 22; the top one takes it, 1 at
    // 14.
    const unsigned long expected = (2UL << 18) + (3UL << 22) + (1UL << 14);
    EXPECT_EQ(word("TXRSTDONE_DIST_SEL"), expected);
    EXPECT_EQ(word("RXRSTDONE_DIST_SEL"), expected);
}

}  // namespace
}  // namespace sable_lanecfg
