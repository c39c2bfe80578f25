#include "families/common/rule_listing.h"
#include "families/frozen/sxb_stable_catalogue.h"
#include "families/frozen/sxb_stable_rules.h"
#include "families/sxa/sxa_catalogue.h"
#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_catalogue.h"
#include "families/sxb/sxb_tx_rules.h"
#include "families/sxc/sxc_catalogue.h"
#include "families/sxc/sxc_rules.h"
#include "families/sxd4/sxd4_pll_catalogue.h"
#include "families/sxd4/sxd4_pll_rules.h"
#include "families/sxd4/sxd4_rx_catalogue.h"
#include "families/sxd4/sxd4_rx_rules.h"
#include "families/sxd4/sxd4_tx_catalogue.h"
#include "families/sxd4/sxd4_tx_rules.h"

#include <lanecfg/gt_rule_engine.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace sable_lanecfg {

namespace {

/// One set of rules: its catalogue and the rules beside it.
struct ruleSet {
    std::string_view name;
    const register_catalogue& (*catalogue)();
    logicRules (*rules)(const gt_rule_engine&);
};

/// The sets of a family in the order of registration.
struct ruleSetsOfFamily {
    std::string_view family;
    std::string_view selector;
    std::vector<ruleSet> sets;
};

logicRules noRules(const gt_rule_engine& /*engine*/) {
    return {};
}

/// Rules that need nothing of their engine.
template <logicRules (*rules)()>
logicRules of(const gt_rule_engine& /*engine*/) {
    return rules();
}

const std::vector<ruleSetsOfFamily>& allRuleSets() {
    static const std::vector<ruleSetsOfFamily> all{
        {"SXA", "live", {{"all", sxaCatalogue, noRules}}},
        {"SXB",
         "live",
         {{"RX", sxbRxCatalogue, of<sxbRxLogicRules>},
          {"TX", sxbTxCatalogue, of<sxbTxLogicRules>},
          {"PLL", sxbPllCatalogue, sxbPllLogicRules}}},
        {"SXB",
         "stable",
         {{"RX", sxbStableRxCatalogue, of<sxbStableRxLogicRules>},
          {"TX", sxbStableTxCatalogue, of<sxbStableTxLogicRules>},
          {"PLL", sxbStablePllCatalogue, sxbStablePllLogicRules}}},
        {"SXC",
         "live",
         {{"RX", sxcRxCatalogue, of<sxcRxLogicRules>},
          {"TX", sxcTxCatalogue, of<sxcTxLogicRules>},
          {"PLL", sxcPllCatalogue, sxcPllLogicRules}}},
        {"SXD4",
         "live",
         {{"RX", sxd4RxCatalogue, of<sxd4RxLogicRules>},
          {"TX", sxd4TxCatalogue, of<sxd4TxLogicRules>},
          {"PLL", sxd4PllCatalogue, sxd4PllLogicRules}}}};
    return all;
}

std::vector<ruleDescription> describe(const ruleSetsOfFamily& family) {
    const gt_rule_engine engine(std::string(family.family), {}, {}, {}, {}, {});
    std::vector<ruleDescription> described;
    for (const ruleSet& set : family.sets) {
        std::vector<ruleDescription> added =
            describeCatalogue(std::string(set.name), set.catalogue(), set.rules(engine));
        std::move(added.begin(), added.end(), std::back_inserter(described));
    }
    return described;
}

}  // namespace

std::vector<ruleDescription> rulesOfFamily(const std::string& family, const std::string& selector) {
    const auto& all = allRuleSets();
    const auto found =
        std::find_if(all.begin(), all.end(), [&family, &selector](const ruleSetsOfFamily& row) {
            return row.family == family && row.selector == selector;
        });
    return found == all.end() ? std::vector<ruleDescription>() : describe(*found);
}

}  // namespace sable_lanecfg
