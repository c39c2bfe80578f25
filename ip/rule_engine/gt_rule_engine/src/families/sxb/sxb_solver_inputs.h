#pragma once

#include "families/common/rule_declaration.h"

#include <string>
#include <vector>

namespace sable_lanecfg {

/// What the input selection hands to the solvers of both PLLs.
class solver_inputs {
  public:
    explicit solver_inputs(rule_declaration& rule)
        : lcpllClocks_(rule.writes<std::vector<double>>("INT_LCPLL_PLLCLKOUT_VECTOR")),
          rpllClocks_(rule.writes<std::vector<double>>("INT_RPLL_PLLCLKOUT_VECTOR")),
          rpllReferenceClock_(rule.writes<double>("INT_RPLL_REFCLKFREQ")),
          lcpllReferenceClock_(rule.writes<double>("INT_LCPLL_REFCLKFREQ")),
          rpllPowerDown_(rule.writes<bool>("INT_RPLL_POWERDOWN")),
          lcpllPowerDown_(rule.writes<bool>("INT_LCPLL_POWERDOWN")),
          lcpllSource_(rule.writes<std::string>("INT_LCPLL_REFCLK_SOURCE")),
          rpllSource_(rule.writes<std::string>("INT_RPLL_REFCLK_SOURCE")),
          lcpllIdentifier_(rule.writes("INT_LCPLL_REFCLK_ID")),
          rpllIdentifier_(rule.writes("INT_RPLL_REFCLK_ID")) {}

    /// A description answers `clocks`, `referenceClock`, `powerDown`, `source` and `identifier`.
    template <class Description>
    void set(const Description& lcpll, const Description& rpll) const {
        lcpllClocks_.set(lcpll.clocks());
        rpllClocks_.set(rpll.clocks());
        rpllReferenceClock_.set(rpll.referenceClock());
        lcpllReferenceClock_.set(lcpll.referenceClock());
        rpllPowerDown_.set(rpll.powerDown());
        lcpllPowerDown_.set(lcpll.powerDown());
        lcpllSource_.set(lcpll.source());
        rpllSource_.set(rpll.source());
        lcpllIdentifier_.set(lcpll.identifier());
        rpllIdentifier_.set(rpll.identifier());
    }

  private:
    rule_output<std::vector<double>> lcpllClocks_;
    rule_output<std::vector<double>> rpllClocks_;
    rule_output<double> rpllReferenceClock_;
    rule_output<double> lcpllReferenceClock_;
    rule_output<bool> rpllPowerDown_;
    rule_output<bool> lcpllPowerDown_;
    rule_output<std::string> lcpllSource_;
    rule_output<std::string> rpllSource_;
    rule_output<unsigned int> lcpllIdentifier_;
    rule_output<unsigned int> rpllIdentifier_;
};

}  // namespace sable_lanecfg
