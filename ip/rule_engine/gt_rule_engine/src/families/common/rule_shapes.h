#pragma once

#include "families/common/rule_arithmetic.h"
#include "families/common/rule_declaration.h"

#include <string>
#include <utility>

namespace sable_lanecfg {

/// Field with one value where the flag is set and another where it is not.
ruleDeclarer byFlag(std::string flagName, unsigned int whereSet, unsigned int whereUnset);
/// Field with one value where an unsigned variable is not 0 and another where it is.
ruleDeclarer byNumber(std::string numberName, unsigned int whereNotZero, unsigned int whereZero);
/// Field with the value of another unsigned variable.
ruleDeclarer sameNumber(std::string numberName);
/// Field that is 1 when an unsigned variable has the number, else 0.
ruleDeclarer oneAt(std::string numberName, unsigned int number);
/// Field that is 1 when a text variable is the word, else 0.
ruleDeclarer oneForWord(std::string textName, std::string word);
/// Field with the code of a PLL's reference divider: the dividers 2 to 5 have the codes 0 to 3, any
/// other one passes the clock undivided.
ruleDeclarer referenceDividerCode(std::string dividerName);

/// Field with the code of a variable of type `Value`.
template <class Value, class Table>
ruleDeclarer codeOfVariable(std::string name, const Table& table) {
    return [name = std::move(name), table](rule_declaration& rule) {
        const auto value = rule.reads<Value>(name);
        rule.gives([=] { return codeOf(table, value()); });
    };
}

}  // namespace sable_lanecfg
