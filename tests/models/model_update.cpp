#include "model_update.h"

namespace lanecfg_test {

namespace {

const std::string valuePrefix = "PARAM_VALUE.";

}  // namespace

bool operator==(const ModelUpdate& first, const ModelUpdate& second) {
    return first.values == second.values && first.enabled == second.enabled &&
           first.range == second.range;
}

std::ostream& operator<<(std::ostream& stream, const ModelUpdate& update) {
    return stream << testing::PrintToString(update.values) << (update.enabled ? "" : ", disabled")
                  << ", range " << testing::PrintToString(update.range);
}

std::map<std::string, std::string> hostValues(const Parameters& parameters) {
    std::map<std::string, std::string> values;
    for (const auto& [name, text] : parameters) {
        values[valuePrefix + name] = text;
    }
    return values;
}

ModelUpdate evaluate(ToolDRCModel& model, const std::string& parameter, const Parameters& given) {
    std::map<std::string, std::string> values = hostValues(given);
    ModelUpdate update;
    model.evalUpdateProc("update_" + valuePrefix + parameter, values, update.enabled, update.range);
    for (const auto& [key, text] : values) {
        EXPECT_EQ(key.compare(0, valuePrefix.size(), valuePrefix), 0) << key;
        update.values[key.substr(valuePrefix.size())] = text;
    }
    return update;
}

std::ostream& operator<<(std::ostream& stream, const UpdateCase& tested) {
    return stream << tested.parameter << " from " << testing::PrintToString(tested.given);
}

void expectUpdate(ToolDRCModel& model, const UpdateCase& tested) {
    Parameters given = tested.given;
    given.emplace(tested.parameter, before);
    Parameters expected = given;
    expected[tested.parameter] = tested.value;
    EXPECT_EQ(evaluate(model, tested.parameter, given),
              (ModelUpdate{expected, tested.enabled, tested.range}));
}

}  // namespace lanecfg_test
