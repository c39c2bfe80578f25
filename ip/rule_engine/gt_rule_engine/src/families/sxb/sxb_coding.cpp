#include "families/sxb/sxb_coding.h"

#include "families/common/register_catalogue.h"

#include <optional>

namespace sable_lanecfg {

namespace {

constexpr code_table<unsigned int, 8> plainWidthCodes{
    {{16, 2}, {20, 3}, {32, 4}, {40, 5}, {64, 6}, {80, 7}, {128, 8}, {160, 9}}};
constexpr code_table<unsigned int, 8> paddedWidthCodes{
    {{16, 3}, {20, 3}, {32, 5}, {40, 5}, {64, 7}, {80, 7}, {128, 9}, {160, 9}}};
constexpr code_table<unsigned int, 8> bitsOfCodes{
    {{2, 16}, {3, 20}, {4, 32}, {5, 40}, {6, 64}, {7, 80}, {8, 128}, {9, 160}}};

bool holds(const std::string& word, const char* part) {
    return word.find(part) != std::string::npos;
}

unsigned int gearboxMode(const std::string& coding) {
    if (!holds(coding, "64B")) {
        return 0;
    }
    const unsigned int frame = holds(coding, "64B66B") ? 1 : 0;
    const unsigned int multiplexed = holds(coding, "CAUI") ? 1 : 0;
    const unsigned int asynchronous = holds(coding, "ASYNC") ? 4 : 0;
    return frame + 4 * (multiplexed + asynchronous);
}

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

ruleDeclarer gearbox(const laneSide& side, const std::string& registerName,
                     gearboxContent content) {
    return [side, registerName, content](rule_declaration& rule) {
        const auto coding = rule.reads<std::string>(std::string(side.coding));
        const auto inUse = rule.writes(fieldName(registerName, "USE_GB"));
        const auto mode = rule.writes(fieldName(registerName, "MODE"));
        std::optional<rule_output<unsigned int>> asynchronous;
        if (content == gearboxContent::fieldsAndAsynchronous) {
            asynchronous = rule.writes(side.within("INT_", "_ASYNC_GEARBOX_EN"));
        }
        rule.body([=] {
            const bool used = holds(coding(), "64B");
            inUse.set(used ? 1 : 0);
            mode.set(gearboxMode(coding()));
            if (asynchronous) {
                asynchronous->set(used && holds(coding(), "ASYNC") ? 1 : 0);
            }
        });
    };
}

}  // namespace sable_lanecfg
