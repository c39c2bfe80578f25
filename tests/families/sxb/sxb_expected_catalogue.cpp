#include "sxb_expected_catalogue.h"

namespace lanecfg_test {

const std::vector<ExpectedField>& expectedSxbFields() {
    using sable_lanecfg::fieldKind;
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
    return registersOfSet(expectedSxbFields(), set);
}

}  // namespace lanecfg_test
