#include "families/sxb/sxb_reset_done.h"

#include "families/common/rule_shapes.h"

#include <string>
#include <string_view>

namespace sable_lanecfg {

namespace {

// By the lane's place in the chain of its lanes.
constexpr code_table<std::string_view, 3> northCodes{{{"top", 0}, {"middle", 3}, {"bottom", 2}}};
constexpr code_table<std::string_view, 3> southCodes{{{"top", 0}, {"middle", 1}, {"bottom", 0}}};
constexpr code_table<std::string_view, 3> consumptionCodes{
    {{"top", 1}, {"middle", 1}, {"bottom", 3}}};

}  // namespace

void addResetDoneRules(logicRules& rules, const laneSide& side) {
    for (const std::string lane : {"CH0", "CH1", "CH2", "CH3"}) {
        const std::string position = side.parameter(lane + "_RESETDONE_POSITION");
        const std::string fields = side.within({}, "RSTDONE_DIST_SEL." + lane);
        rules[fields + "_DISTNORTH_SEL"] = codeOfVariable<std::string>(position, northCodes);
        rules[fields + "_DISTSOUTH_SEL"] = codeOfVariable<std::string>(position, southCodes);
        rules[fields + "_CONSUMPT_SEL"] = codeOfVariable<std::string>(position, consumptionCodes);
    }
}

}  // namespace sable_lanecfg
