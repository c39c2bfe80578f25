#include "sxa_expectations.h"

#include "support/reference_data.h"

namespace lanecfg_test {

namespace {

/// Keys under which the answer holds a register of a block type.
std::vector<std::string> answerKeys(const std::string& blockType, const std::string& name) {
    if (blockType == "channel") {
        return {"CH0_" + name, "CH1_" + name, "CH2_" + name, "CH3_" + name};
    }
    if (blockType == "hs_clk_0") {
        return {"HSCLK0_" + name, "HSCLK1_" + name};
    }
    if (blockType == "rcalbg_0") {
        return {"RCALBG0_" + name, "RCALBG1_" + name};
    }
    return {name};
}

}  // namespace

const std::vector<ExpectedField>& expectedSxaFields() {
    static const std::vector<ExpectedField> fields{
#define SXA_FIELD(registerName, field, value) {#registerName, #field, value},
#include "sxa_expected_fields.inc"
#undef SXA_FIELD
    };
    return fields;
}

std::map<std::string, unsigned int> expectedSxaVariables() {
    const nlohmann::json registers = referenceFile("SXA", "registers.json");
    std::map<std::string, unsigned int> variables;
    for (const ExpectedField& expected : expectedSxaFields()) {
        const std::string name = expected.registerName + "." + expected.field;
        const nlohmann::json& place = registers.at(expected.registerName).at("fields").at(name);
        const auto offset = place.at(0).get<unsigned int>();
        const auto width = place.at(1).get<unsigned int>();
        const unsigned long long low = expected.value % (1ULL << width);
        variables[name] = expected.value;
        variables[expected.registerName] += static_cast<unsigned int>(low << offset);
    }
    return variables;
}

std::map<std::string, std::string> expectedSxaAttributes() {
    const nlohmann::json registers = referenceFile("SXA", "registers.json");
    std::map<std::string, std::string> answer;
    for (const auto& [name, value] : expectedSxaVariables()) {
        if (registers.contains(name)) {
            for (const std::string& key :
                 answerKeys(registers.at(name).at("dstSubBlock").get<std::string>(), name)) {
                answer[key] = std::to_string(value);
            }
        }
    }
    return answer;
}

}  // namespace lanecfg_test
