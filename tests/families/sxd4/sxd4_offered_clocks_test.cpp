#include "sxd4_passes.h"

#include <lanecfg/ToolSXD4DRCModel.h>

#include <boost/lexical_cast.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::Sxd4Passes;
using lanecfg_test::VariableValues;

/// One direction in use, with an output clock of its programmable divider.
struct OutputLine {
    std::string direction;
    double symbolRate;  ///< GHz
    bool isPam4;
    int internalWidth;

    double lineRate() const { return isPam4 ? 2.0 * symbolRate : symbolRate; }
};

/// The output clocks (MHz) that the host's model offers, as the texts of its list.
std::vector<std::string> offeredClocks(ToolSXD4DRCModel& model, const OutputLine& line) {
    const std::string prefix = "PARAM_VALUE." + line.direction;
    std::map<std::string, std::string> values{
        {prefix + "_LINE_RATE", boost::lexical_cast<std::string>(line.lineRate())},
        {prefix + "_INT_DATA_WIDTH", std::to_string(line.internalWidth)},
        {prefix + "_PAM_SEL", line.isPam4 ? "PAM4" : "NRZ"},
        {prefix + "PROGDIV_FREQ_ENABLE", "true"},
        {prefix + "PROGDIV_FREQ_VAL", ""}};
    bool isEditable = true;
    std::vector<std::string> offered;
    model.evalUpdateProc("update_" + prefix + "PROGDIV_FREQ_VAL", values, isEditable, offered);
    return offered;
}

VariableValues parametersOf(const OutputLine& line, const std::string& clock) {
    const std::string other = line.direction == "TX" ? "RX" : "TX";
    return {{other + "_ENABLE", false},
            {line.direction + "_LINE_RATE", line.lineRate()},
            {line.direction + "_PAM_SEL", line.isPam4 ? 0U : 1U},
            {line.direction + "PROGDIV_FREQ_ENABLE", true},
            {line.direction + "PROGDIV_FREQ_VAL", std::stod(clock)}};
}

/// GHz, 0 when the rules find none.
double pllClock(const OutputLine& line, const std::string& clock) {
    return Sxd4Passes({parametersOf(line, clock)}).valueOf<double>("INT_PLL_VCO");
}

/// The lines of a band of symbol rates, and by the model's divider whether the rules find a clock
/// for what it makes.
struct BandCase {
    std::string name;
    std::string direction;
    bool isPam4;
    std::vector<double> symbolRates;
    double dividedPerSymbolRate;  ///< what the model divides, of the symbol rate
    double clockPerSymbolRate;    ///< of the line alone
    std::map<int, bool> dividers;
};

void PrintTo(const BandCase& row, std::ostream* output) {
    *output << row.name;
}

class Sxd4OfferedClocks : public testing::TestWithParam<BandCase> {
  protected:
    /// Every width at each symbol rate of the band.
    static std::vector<OutputLine> lines() {
        std::vector<OutputLine> all;
        for (const double symbolRate : GetParam().symbolRates) {
            for (const int width : {16, 20, 32, 40, 64, 80, 128, 160}) {
                all.push_back({GetParam().direction, symbolRate, GetParam().isPam4, width});
            }
        }
        return all;
    }

    /// By which the model comes to a clock.
    static int dividerOf(const OutputLine& line, const std::string& clock) {
        const double divided = GetParam().dividedPerSymbolRate * line.symbolRate * 1000.0;
        return static_cast<int>(std::lround(divided / std::stod(clock)));
    }

    ToolSXD4DRCModel model_{"model"};
};

TEST_P(Sxd4OfferedClocks, HaveAPllClockWhereTheRulesHaveTheDivider) {
    std::map<int, bool> found;
    for (const OutputLine& line : lines()) {
        for (const std::string& clock : offeredClocks(model_, line)) {
            SCOPED_TRACE(testing::Message() << line.symbolRate << " Gbaud, " << line.internalWidth
                                            << " bits, " << clock << " MHz");
            const int divider = dividerOf(line, clock);
            const double expected = GetParam().clockPerSymbolRate * line.symbolRate;
            const bool isExpected = GetParam().dividers.at(divider);
            EXPECT_EQ(pllClock(line, clock), isExpected ? expected : 0.0);
            found[divider] = isExpected;
        }
    }
    EXPECT_EQ(found, GetParam().dividers);
}

const std::vector<double> slowSymbols{10.0, 10.3125, 12.0, 12.5, 14.0625};
const std::vector<double> fastSymbols{20.625, 25.78125, 26.5625, 28.125};

// The rules divide twice the PLL clock, or with PAM4 four times, by 40, 64, 80, 128 and twice that.
// Fast lines have a PLL clock of half the symbol rate, slow ones the whole. So the model's divider
// of half the symbol rate has to be doubled once for fast NRZ, twice for slow NRZ and fast PAM4,
// three times for slow PAM4, and to come out as one of those.
INSTANTIATE_TEST_SUITE_P(
    Bands, Sxd4OfferedClocks,
    testing::Values(
        BandCase{"SlowNrzToTransmit",
                 "TX",
                 false,
                 slowSymbols,
                 0.5,
                 1.0,
                 {{10, true}, {16, true}, {20, true}, {32, true}}},
        BandCase{"SlowNrzToReceive",
                 "RX",
                 false,
                 slowSymbols,
                 0.5,
                 1.0,
                 {{10, true}, {16, true}, {20, true}, {32, true}}},
        BandCase{"FastNrzToTransmit",
                 "TX",
                 false,
                 fastSymbols,
                 0.5,
                 0.5,
                 {{16, false}, {20, true}, {32, true}}},
        BandCase{"FastNrzToReceive",
                 "RX",
                 false,
                 fastSymbols,
                 0.5,
                 0.5,
                 {{16, false}, {20, true}, {32, true}}},
        // 980 MHz; above 20 Gbaud a tenth of the half is more than the model offers.
        BandCase{"SlowestOfFastNrz",
                 "TX",
                 false,
                 {19.6},
                 0.5,
                 0.5,
                 {{10, false}, {16, false}, {20, true}, {32, true}}},
        BandCase{"SlowPam4ToTransmit",
                 "TX",
                 true,
                 slowSymbols,
                 0.5,
                 1.0,
                 {{20, true}, {32, true}, {40, false}}},
        BandCase{"FastPam4ToTransmit",
                 "TX",
                 true,
                 fastSymbols,
                 0.5,
                 0.5,
                 {{20, true}, {32, true}, {40, true}}},
        // Here the model divides the symbol rate, and the rules' dividers take no such clock.
        BandCase{"Pam4ToReceive",
                 "RX",
                 true,
                 {5.15625, 6.0, 7.0, 7.25},
                 1.0,
                 0.0,
                 {{20, false}, {32, false}, {40, false}, {64, false}}}),
    [](const auto& row) { return row.param.name; });

TEST(Sxd4OfferedClock, OfAFastPam4ReceiverIsNone) {
    ToolSXD4DRCModel model("model");
    for (const double symbolRate : fastSymbols) {
        for (const int width : {64, 80, 128, 160}) {
            EXPECT_THAT(offeredClocks(model, {"RX", symbolRate, true, width}), testing::IsEmpty());
        }
    }
}

TEST(Sxd4OfferedClock, CanBeLostToRounding) {
    ToolSXD4DRCModel model("model");
    const OutputLine line{"TX", 27.9525, false, 40};
    EXPECT_THAT(offeredClocks(model, line), testing::ElementsAre("698.8125000000"));
    // 0.6988125 times 40 is not the same number as 27.9525.
    EXPECT_EQ(pllClock(line, "698.8125"), 0.0);
}

}  // namespace
}  // namespace sable_lanecfg
