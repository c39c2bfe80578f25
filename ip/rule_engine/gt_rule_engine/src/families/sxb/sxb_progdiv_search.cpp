#include "clocking_domains.h"
#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_pll_rule_groups.h"
#include "user_clock.h"

#include <string>

namespace sable_lanecfg {

namespace {

/// Finds the two dividers that make the output clock of one direction from a PLL.
class divider_search {
  public:
    divider_search(rule_declaration& rule, const laneSide& side)
        : userWidth_(rule.reads<unsigned int>(side.parameter("USER_DATA_WIDTH"))),
          rpllClock_(rule.reads<double>("INT_RPLL_PLLCLKOUT")),
          lcpllClock_(rule.reads<double>("INT_LCPLL_PLLCLKOUT")),
          isOwnFrequency_(rule.reads<bool>(side.within({}, "PROGDIV_FREQ_ENABLE"))),
          ownSource_(rule.reads<std::string>(side.within({}, "PROGDIV_FREQ_SOURCE"))),
          ownFrequency_(rule.reads<double>(side.within({}, "PROGDIV_FREQ_VAL"))),
          alignerBypass_(rule.reads<unsigned int>(side.within("PIPE_CTRL_CFG7.", "_DA_BYP"))),
          // Parameters of the rate, which are there before any rule runs.
          pllType_(rule.peeks<std::string>(side.parameter("PLL_TYPE"))),
          lineRate_(rule.peeks<double>(side.parameter("LINE_RATE"))),
          coding_(rule.peeks<std::string>(std::string(side.coding))),
          divider_(rule.writes<double>(side.within("INT_", "PROGDIV_SEL"))),
          pathDivider_(rule.writes(side.within("INT_", "OUTCLKDIV_FOR_PROGDIV_PATH"))),
          alignerClock_(rule.writes<double>(side.within("INT_FREQ_INTO_", "_DA"))) {}

    void operator()() const {
        const double pllClock = clockOf(isOwnFrequency_() ? ownSource_() : pllType_());
        const double wanted = isOwnFrequency_() ? ownFrequency_() : userClock();
        if (alignerBypass_() == 1) {
            searchAroundAligner(pllClock, wanted);
        } else {
            searchThroughAligner(pllClock, wanted);
        }
    }

  private:
    double clockOf(const std::string& pll) const {
        return pll == "RPLL" ? rpllClock_() : lcpllClock_();
    }

    /// User clock of the line rate in MHz.
    double userClock() const {
        const auto width = static_cast<float>(userWidth_());
        return lineRate_() * clocking::megahertzPerGigahertz /
               clocking::effectiveWidth(width, coding_());
    }

    /// The aligner is told the clock of the divider tried before the one found.
    void searchAroundAligner(double pllClock, double wanted) const {
        double clockBefore = 0.0;
        for (const double divider : clocking::firstStageDividers) {
            const double divided = pllClock / divider;
            if (takePathDivider(divider, divided, wanted)) {
                alignerClock_.set(clockBefore);
                return;
            }
            clockBefore = divided;
        }
        takeNone(clockBefore);
    }

    void searchThroughAligner(double pllClock, double wanted) const {
        double divided = 0.0;
        for (const double divider : clocking::firstStageDividers) {
            divided = pllClock / divider;
            const bool fitsAligner = clocking::unbufferedStageClock.contains(divided);
            if (fitsAligner && takePathDivider(divider, divided * 0.5, wanted)) {
                alignerClock_.set(divided);
                return;
            }
        }
        takeNone(divided);
    }

    bool takePathDivider(double divider, double clock, double wanted) const {
        for (const int pathDivider : clocking::secondStageDividers) {
            if (clocking::agree(clock / pathDivider * clocking::megahertzPerGigahertz, wanted)) {
                divider_.set(divider);
                pathDivider_.set(static_cast<unsigned int>(pathDivider));
                return true;
            }
        }
        return false;
    }

    void takeNone(double lastClock) const {
        divider_.set(0.0);
        pathDivider_.set(0);
        alignerClock_.set(lastClock);
    }

    rule_input<unsigned int> userWidth_;
    rule_input<double> rpllClock_;
    rule_input<double> lcpllClock_;
    rule_input<bool> isOwnFrequency_;
    rule_input<std::string> ownSource_;
    rule_input<double> ownFrequency_;
    rule_input<unsigned int> alignerBypass_;
    rule_peek<std::string> pllType_;
    rule_peek<double> lineRate_;
    rule_peek<std::string> coding_;
    rule_output<double> divider_;
    rule_output<unsigned int> pathDivider_;
    rule_output<double> alignerClock_;
};

ruleDeclarer dividerSearch(const laneSide& side) {
    return [side](rule_declaration& rule) { rule.body(divider_search(rule, side)); };
}

}  // namespace

void addDividerSearchRules(logicRules& rules) {
    rules.emplace(sxb_pll_step::transmitDividerSearch, dividerSearch(transmitSide));
    rules.emplace(sxb_pll_step::receiveDividerSearch, dividerSearch(receiveSide));
}

}  // namespace sable_lanecfg
