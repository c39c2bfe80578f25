#include "families/common/data_widths.h"

#include <string>

namespace sable_lanecfg {

namespace {

constexpr code_table<unsigned int, 8> paddedWidthCodes{
    {{16, 3}, {20, 3}, {32, 5}, {40, 5}, {64, 7}, {80, 7}, {128, 9}, {160, 9}}};
constexpr code_table<unsigned int, 8> bitsOfCodes{
    {{2, 16}, {3, 20}, {4, 32}, {5, 40}, {6, 64}, {7, 80}, {8, 128}, {9, 160}}};

}  // namespace

ruleDeclarer userWidthCode(const laneSide& side) {
    return [side](rule_declaration& rule) {
        const auto width = rule.reads<unsigned int>(side.parameter("USER_DATA_WIDTH"));
        const auto coding = rule.reads<std::string>(std::string(side.coding));
        rule.gives([=] {
            return coding() == "8B10B" ? codeOf(plainWidthCodes, width())
                                       : codeOf(paddedWidthCodes, width());
        });
    };
}

unsigned int bitsOfWidthCode(unsigned int code) {
    return codeOf(bitsOfCodes, code);
}

}  // namespace sable_lanecfg
