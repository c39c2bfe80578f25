#include "clocking_domains.h"
#include "user_clock.h"

#include <lanecfg/rule_engine_utilities.h>

#include <algorithm>
#include <set>

/// Output clocks that the programmable dividers offer to the fabric.
namespace sable_lanecfg {

using namespace clocking;

namespace {

/// Collects the clocks that go with a user clock.
class offeredClocks {
  public:
    /// `target` is the user clock in MHz.
    explicit offeredClocks(double target) : target_(target) {}

    /// Takes a divided clock (GHz) when it, or a fraction of it by one of the ratios, agrees with
    /// the target; what is taken is the clock itself, in MHz.
    void offer(double dividedClock) {
        const double clock = megahertzPerGigahertz * dividedClock;
        if (clock <= outputClockCeiling && matches(dividedClock)) {
            clocks_.insert(clock);
        }
    }

    const std::set<double>& clocks() const { return clocks_; }

  private:
    bool matches(double dividedClock) const {
        return std::any_of(outputClockRatios.begin(), outputClockRatios.end(), [&](int ratio) {
            return agree(megahertzPerGigahertz * (dividedClock / ratio), target_);
        });
    }

    double target_;
    std::set<double> clocks_;
};

/// A clock at the input of the output dividers, and the VCO clock it comes from (both GHz).
struct dividerInput {
    double vco;
    double clock;
};

/// Where both edges of the VCO clock carry data, the VCO runs at half the rate and goes to the
/// dividers as it is; else it runs at the rate and half of it goes there. So the dividers get half
/// the rate either way.
dividerInput dividerInputOf(double rate, bool vcoAtHalfRate) {
    const double half = rate * 0.5;
    return {vcoAtHalfRate ? half : rate, half};
}

double userClock(double lineRate, float userDataWidth, const std::string& encoding) {
    return lineRate * megahertzPerGigahertz / effectiveWidth(userDataWidth, encoding);
}

/// Offers what the two divider stages make of `clock` (GHz).
void walkOutputDividers(double clock, bool buffered, offeredClocks& offered) {
    for (const double firstStage : firstStageDividers) {
        const double stageClock = clock / firstStage;
        if (!buffered && !unbufferedStageClock.contains(stageClock)) {
            continue;
        }
        // Without buffer the clock is halved once more.
        const double secondInput = buffered ? stageClock : 0.5 * stageClock;
        for (const int secondStage : secondStageDividers) {
            offered.offer(secondInput / secondStage);
        }
    }
}

/// Offers what comes from the PLL that runs the line.
void walkLinePll(double lineRate, const std::string& pllType, bool buffered,
                 offeredClocks& offered) {
    const bool isLcpll = pllType == lcpllWord;
    // An unknown word has the limits of the RPLL and the formula of an LCPLL at a low rate.
    const interval& vcoLimits = isLcpll ? lcpll::vco : rpll::vco;
    const bool vcoAtHalfRate = isLcpll ? lineRate > lcpll::halvingThreshold : pllType == rpllWord;
    for (const int lineDivider : lcpll::lineDividers) {
        const dividerInput input = dividerInputOf(lineDivider * lineRate, vcoAtHalfRate);
        if (vcoLimits.contains(input.vco)) {
            walkOutputDividers(input.clock, buffered, offered);
        }
    }
}

/// Offers what an RPLL makes that runs no line and so may take any of its settings.
void walkFreeRpll(double refclk, bool buffered, offeredClocks& offered) {
    for (const int preDivider : rpll::preDividers) {
        for (const int feedback : rpll::freeFeedbackDividers) {
            const double vco = feedback * (refclk / preDivider) / megahertzPerGigahertz;
            if (rpll::vco.contains(vco)) {
                walkOutputDividers(vco, buffered, offered);
            }
        }
    }
}

/// Both directions of SXD: `codedRate` is the rate after line coding.
std::set<double> sxdClocks(double lineRate, bool pam4, double intDataWidth,
                           const dividerInput& input) {
    if (!sxdPll::vco.contains(input.vco)) {
        return {};
    }
    offeredClocks offered(megahertzPerGigahertz * lineRate / intDataWidth);
    for (const int divider : pam4 ? sxdPam4Dividers : sxdNrzDividers) {
        offered.offer(input.clock / divider);
    }
    return offered.clocks();
}

/// Symbols of an SXD line in GHz: PAM4 carries two bits in each.
double symbolRate(double lineRate, bool pam4) {
    return pam4 ? 0.5 * lineRate : lineRate;
}

}  // namespace

std::set<double> rule_engine_utilities::findTXOUTCLKlist(
    double lineRate, double refclk, std::string txPllType, std::string rxPllType,
    std::string progDivSource, float userDataWidth, std::string encoding, std::string bufferMode) {
    const bool buffered = bufferMode == bufferedWord;
    offeredClocks offered(userClock(lineRate, userDataWidth, encoding));
    // Any other combination of the words offers nothing, an unknown word included.
    if (txPllType == progDivSource && (txPllType == lcpllWord || txPllType == rpllWord)) {
        walkLinePll(lineRate, txPllType, buffered, offered);
    } else if (txPllType == lcpllWord && progDivSource == rpllWord && rxPllType != rpllWord) {
        walkFreeRpll(refclk, buffered, offered);
    }
    return offered.clocks();
}

std::set<double> rule_engine_utilities::findRXOUTCLKlist(double lineRate, std::string pllType,
                                                         float userDataWidth, std::string encoding,
                                                         std::string bufferMode) {
    offeredClocks offered(userClock(lineRate, userDataWidth, encoding));
    walkLinePll(lineRate, pllType, bufferMode == bufferedWord, offered);
    return offered.clocks();
}

std::set<double> rule_engine_utilities::findTXOUTCLKlist_SXD(double lineRate, int notPam4,
                                                             double intDataWidth) {
    const bool pam4 = notPam4 == 0;
    const double symbols = symbolRate(lineRate, pam4);
    return sxdClocks(lineRate, pam4, intDataWidth,
                     dividerInputOf(symbols, symbols > sxdPll::halvingThreshold));
}

std::set<double> rule_engine_utilities::findRXOUTCLKlist_SXD(double lineRate, int notPam4,
                                                             double intDataWidth) {
    const bool pam4 = notPam4 == 0;
    // Unlike on the transmit side the symbol rate only decides; the line rate itself is what is
    // halved, so that PAM4 tests twice the VCO clock.
    const double symbols = symbolRate(lineRate, pam4);
    return sxdClocks(lineRate, pam4, intDataWidth,
                     dividerInputOf(lineRate, symbols > sxdPll::halvingThreshold));
}

}  // namespace sable_lanecfg
