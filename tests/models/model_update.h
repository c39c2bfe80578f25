#pragma once

#include <lanecfg/host/ToolDRCModel.h>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace lanecfg_test {

/// Parameters by their names without prefix.
using Parameters = std::map<std::string, std::string>;

/// Parameters, state and range as a host holds them around an update.
struct ModelUpdate {
    Parameters values;
    bool enabled = true;
    std::vector<std::string> range{"older"};
};

bool operator==(const ModelUpdate& first, const ModelUpdate& second);
std::ostream& operator<<(std::ostream& stream, const ModelUpdate& update);

/// The values of parameters by the names that a host has for them.
std::map<std::string, std::string> hostValues(const Parameters& parameters);

/// Evaluates the update procedure of `parameter`.
ModelUpdate evaluate(ToolDRCModel& model, const std::string& parameter, const Parameters& given);

using MakeModel = std::unique_ptr<ToolDRCModel> (*)();

template <class Model>
std::unique_ptr<ToolDRCModel> makeModel() {
    return std::make_unique<Model>("vendor:ip:model:1.0");
}

/// The value of a parameter before its update, where nothing else is said.
inline const std::string before = "before";

/// What an update makes of its parameter.
struct UpdateCase {
    std::string name;  ///< of the test
    std::string parameter;
    Parameters given;
    std::string value;  ///< `before` when it stays
    bool enabled = false;
    std::vector<std::string> range;
};

std::ostream& operator<<(std::ostream& stream, const UpdateCase& tested);

/// Holds a case against a model, also that nothing but its parameter changes.
void expectUpdate(ToolDRCModel& model, const UpdateCase& tested);

/// For the last argument of INSTANTIATE_TEST_SUITE_P.
template <class Case>
std::string caseName(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

}  // namespace lanecfg_test
