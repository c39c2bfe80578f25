#include "registered_model.h"

#include "errors.h"

#include <lanecfg/RuleEngineInit.h>
#include <lanecfg/host/ToolHybridController.h>

#include <boost/algorithm/string/join.hpp>

namespace sable_lanecfg::tool {
namespace {

ToolDRCModel* makeModel(const std::string& identifier) {
    const std::vector<std::string> known = modelIdentifiers();
    ToolDRCModel* const model = ToolHybridController::createDRCModel(identifier);
    if (model == nullptr) {
        throw UsageError("No design-rule model is registered for \"" + identifier +
                         "\". There are models for " + boost::algorithm::join(known, ", ") + ".");
    }
    return model;
}

}  // namespace

std::vector<std::string> modelIdentifiers() {
    // As a host does after loading the library.
    Hostx_rule_engine_Init();
    return ToolHybridController::getIPIdentifiers();
}

RegisteredModel::RegisteredModel(const std::string& identifier)
    : identifier_(identifier), model_(makeModel(identifier)) {}

RegisteredModel::~RegisteredModel() {
    ToolHybridController::deleteDRCModel(identifier_, &model_);
}

std::vector<std::string> RegisteredModel::parametersOf(const std::string& procedure) const {
    std::vector<std::string> parameters;
    model_->getProcArgNames(procedure, parameters);
    return parameters;
}

updater RegisteredModel::evaluate(const std::string& procedure,
                                  const std::map<std::string, std::string>& values) const {
    updater result;
    result.name = procedure;
    result.values = values;
    model_->evalUpdateProc(procedure, result.values, result.enabled, result.range);
    return result;
}

}  // namespace sable_lanecfg::tool
