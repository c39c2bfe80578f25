#include "expected_catalogue.h"

namespace lanecfg_test {

namespace {

using sable_lanecfg::catalogueEntry;
using sable_lanecfg::entryKind;
using sable_lanecfg::fieldKind;
using sable_lanecfg::registerField;

std::string lineOf(const std::string& field, fieldKind kind, unsigned int value,
                   const std::string& source) {
    if (field.empty()) {
        return "the word is " + std::to_string(value) + "\n";
    }
    if (kind == fieldKind::constant) {
        return field + " = " + std::to_string(value) + "\n";
    }
    return field + (kind == fieldKind::copy ? " copies " + source : " is computed") + "\n";
}

std::string textOf(const std::vector<registerField>& fields) {
    std::string text;
    for (const registerField& field : fields) {
        text += lineOf(std::string(field.name), field.kind, field.value, std::string(field.source));
    }
    return text;
}

}  // namespace

std::vector<registerText> registersOfSet(const std::vector<ExpectedField>& rows,
                                         const std::string& set) {
    std::vector<registerText> registers;
    for (const ExpectedField& row : rows) {
        if (row.set != set) {
            continue;
        }
        if (registers.empty() || registers.back().first != row.registerName) {
            registers.emplace_back(row.registerName, "");
        }
        registers.back().second += lineOf(row.field, row.kind, row.value, row.source);
    }
    return registers;
}

std::vector<registerText> registersOf(const sable_lanecfg::register_catalogue& catalogue) {
    std::vector<registerText> registers;
    for (const catalogueEntry& entry : catalogue.entries()) {
        const std::string name(entry.name);
        if (entry.kind == entryKind::constantWord) {
            registers.emplace_back(name, lineOf("", fieldKind::constant, entry.value, ""));
        } else if (entry.kind == entryKind::wholeRegister || entry.kind == entryKind::word) {
            registers.emplace_back(name, textOf(catalogue.fieldsOf(name)));
        }
    }
    return registers;
}

}  // namespace lanecfg_test
