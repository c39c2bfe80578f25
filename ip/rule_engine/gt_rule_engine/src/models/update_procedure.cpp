#include "models/update_procedure.h"

#include "models/parameter_values.h"

namespace sable_lanecfg::models {

std::string procedureName(const updateProcedure& procedure) {
    return "update_" + valueKey(procedure.parameter);
}

std::vector<std::string> argumentKeys(const updateProcedure& procedure) {
    std::vector<std::string> keys;
    keys.reserve(procedure.arguments.size());
    for (const std::string& parameter : procedure.arguments) {
        keys.push_back(valueKey(parameter));
    }
    return keys;
}

}  // namespace sable_lanecfg::models
