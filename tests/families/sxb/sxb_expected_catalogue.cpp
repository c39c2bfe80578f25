#include "sxb_expected_catalogue.h"

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

const std::vector<ExpectedField>& expectedSxbFields() {
    static const std::vector<ExpectedField> fields{
#define SXB_CONSTANT(set, registerName, field, value) \
    {#set, #registerName, #field, fieldKind::constant, value, {}},
#define SXB_COPY(set, registerName, field, flag) \
    {#set, #registerName, #field, fieldKind::copy, 0, #flag},
#define SXB_LOGIC(set, registerName, field) {#set, #registerName, #field, fieldKind::logic, 0, {}},
#define SXB_WORD(set, registerName, value) \
    {#set, #registerName, {}, fieldKind::constant, value, {}},
#include "sxb_expected_fields.inc"
#undef SXB_CONSTANT
#undef SXB_COPY
#undef SXB_LOGIC
#undef SXB_WORD
    };
    return fields;
}

std::vector<registerText> expectedSxbRegisters(const std::string& set) {
    std::vector<registerText> registers;
    for (const ExpectedField& row : expectedSxbFields()) {
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
