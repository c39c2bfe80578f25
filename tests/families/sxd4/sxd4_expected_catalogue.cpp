#include "sxd4_expected_catalogue.h"

namespace lanecfg_test {

const std::vector<ExpectedField>& expectedSxd4Fields() {
    using sable_lanecfg::fieldKind;
    static const std::vector<ExpectedField> fields{
#define SXD4_CONSTANT(set, registerName, field, value) \
    {#set, #registerName, #field, fieldKind::constant, value, {}},
#define SXD4_COPY(set, registerName, field, flag) \
    {#set, #registerName, #field, fieldKind::copy, 0, #flag},
#define SXD4_LOGIC(set, registerName, field) {#set, #registerName, #field, fieldKind::logic, 0, {}},
#include "sxd4_expected_fields.inc"
#undef SXD4_CONSTANT
#undef SXD4_COPY
#undef SXD4_LOGIC
    };
    return fields;
}

std::vector<registerText> expectedSxd4Registers(const std::string& set) {
    return registersOfSet(expectedSxd4Fields(), set);
}

}  // namespace lanecfg_test
