#pragma once

#include <lanecfg/host/ToolDRCModel.h>

#include <string>
#include <vector>

namespace sable_lanecfg::models {

/// One row of a model's table. Parameters are told without the prefixes that the host puts before
/// them.
struct updateProcedure {
    std::string parameter;               ///< what the procedure updates
    std::vector<std::string> arguments;  ///< all that it reads and writes
    ToolDRCModel::UpdateBody body;
};

/// The name by which the host evaluates the procedure.
std::string procedureName(const updateProcedure& procedure);

/// The keys of the arguments in the values of a record.
std::vector<std::string> argumentKeys(const updateProcedure& procedure);

}  // namespace sable_lanecfg::models
