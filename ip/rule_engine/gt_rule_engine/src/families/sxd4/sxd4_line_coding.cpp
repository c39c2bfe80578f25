#include "families/common/data_widths.h"
#include "families/common/rule_shapes.h"
#include "families/sxd4/sxd4_rule_groups.h"

#include <string>

namespace sable_lanecfg {

void addSxd4LineCodingRules(logicRules& rules, const laneSide& side) {
    const auto field = [&side](const std::string& after) {
        return side.within("", "_PCS_CFG0.") + std::string(side.word) + after;
    };
    const auto copyOf = [&side](const std::string& flag) {
        return byFlag(side.parameter(flag), 1, 0);
    };
    rules.emplace(field("_GRAY_ENDIAN"), copyOf("GRAY_LITTLEENDIAN"));
    rules.emplace(field("_GRAY_BYP_EN"), copyOf("GRAY_BYP"));
    rules.emplace(field("_PRECODE_ENDIAN"), copyOf("PRECODE_LITTLEENDIAN"));
    rules.emplace(field("_PRECODE_BYP_EN"), copyOf("PRECODE_BYP"));
    rules.emplace(field("_DATA_WIDTH"), userWidthCode(side));
    rules.emplace(
        field("_INT_DATA_WIDTH"),
        codeOfVariable<unsigned int>(side.parameter("INT_DATA_WIDTH"), internalWidthCodes));
}

}  // namespace sable_lanecfg
