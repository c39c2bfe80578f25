#include "families/sxb/sxb_pll_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

/// The dual of the lane; it uses the slot of its own number, the other one idles.
class slot_use {
  public:
    slot_use(rule_declaration& rule, unsigned int slot)
        : dual_(rule.reads<unsigned int>("DUAL")), slot_(slot) {}

    bool operator()() const { return dual_() == slot_; }

  private:
    rule_input<unsigned int> dual_;
    unsigned int slot_;
};

/// The hardware counts two more than the field says.
ruleDeclarer slotFeedback(unsigned int slot, const std::string& pll) {
    return [slot, pll](rule_declaration& rule) {
        constexpr unsigned int idleFeedback = 78;
        const slot_use isUsed(rule, slot);
        const auto feedback = rule.reads<unsigned int>("INT_" + pll + "_FBDIV");
        rule.gives([=] { return isUsed() ? feedback() - 2 : idleFeedback; });
    };
}

ruleDeclarer slotFraction(unsigned int slot, const std::string& pll) {
    return [slot, pll](rule_declaration& rule) {
        const slot_use isUsed(rule, slot);
        const auto fraction = rule.reads<unsigned int>("INT_" + pll + "_SDMDATA");
        rule.gives([=] { return isUsed() ? fraction() : 0U; });
    };
}

ruleDeclarer slotPowerDown(unsigned int slot, const std::string& pll) {
    return [slot, pll](rule_declaration& rule) {
        const slot_use isUsed(rule, slot);
        const auto powerDown = rule.reads<bool>("INT_" + pll + "_POWERDOWN");
        rule.gives([=] { return isUsed() && powerDown() ? 1U : 0U; });
    };
}

/// Fraction and power of a PLL share a register, one for each slot.
void addSlot(logicRules& rules, unsigned int slot, const std::string& pll,
             const std::string& registerName) {
    const std::string field = "A_HS" + std::to_string(slot) + "_" + pll;
    rules.emplace("A_CFG1." + field + "FBDIV", slotFeedback(slot, pll));
    rules.emplace(registerName + "." + field + "SDMDATA", slotFraction(slot, pll));
    rules.emplace(registerName + "." + field + "PD", slotPowerDown(slot, pll));
}

}  // namespace

void addHighSpeedSlotRules(logicRules& rules) {
    addSlot(rules, 0, "LCPLL", "A_CFG2");
    addSlot(rules, 0, "RPLL", "A_CFG3");
    addSlot(rules, 1, "LCPLL", "A_CFG4");
    addSlot(rules, 1, "RPLL", "A_CFG5");
}

}  // namespace sable_lanecfg
