#include "families/common/rule_shapes.h"

namespace sable_lanecfg {

ruleDeclarer byFlag(std::string flagName, unsigned int whereSet, unsigned int whereUnset) {
    return [name = std::move(flagName), whereSet, whereUnset](rule_declaration& rule) {
        const auto flag = rule.reads<bool>(name);
        rule.gives([=] { return flag() ? whereSet : whereUnset; });
    };
}

ruleDeclarer byNumber(std::string numberName, unsigned int whereNotZero, unsigned int whereZero) {
    return [name = std::move(numberName), whereNotZero, whereZero](rule_declaration& rule) {
        const auto number = rule.reads<unsigned int>(name);
        rule.gives([=] { return number() != 0 ? whereNotZero : whereZero; });
    };
}

ruleDeclarer sameNumber(std::string numberName) {
    return [name = std::move(numberName)](rule_declaration& rule) {
        const auto number = rule.reads<unsigned int>(name);
        rule.gives([=] { return number(); });
    };
}

ruleDeclarer oneAt(std::string numberName, unsigned int number) {
    return [name = std::move(numberName), number](rule_declaration& rule) {
        const auto value = rule.reads<unsigned int>(name);
        rule.gives([=] { return value() == number ? 1U : 0U; });
    };
}

ruleDeclarer oneForWord(std::string textName, std::string word) {
    return [name = std::move(textName), word = std::move(word)](rule_declaration& rule) {
        const auto text = rule.reads<std::string>(name);
        rule.gives([=] { return text() == word ? 1U : 0U; });
    };
}

ruleDeclarer referenceDividerCode(std::string dividerName) {
    return [name = std::move(dividerName)](rule_declaration& rule) {
        constexpr unsigned int undivided = 4;
        const auto divider = rule.reads<unsigned int>(name);
        rule.gives([=] {
            const bool divides = divider() >= 2 && divider() <= 5;
            return divides ? divider() - 2 : undivided;
        });
    };
}

}  // namespace sable_lanecfg
