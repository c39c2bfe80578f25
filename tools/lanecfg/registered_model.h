#pragma once

#include <lanecfg/host/ToolDRCModel.h>

#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// Identifiers of the IPs that have a design-rule model, in the order of their registration.
std::vector<std::string> modelIdentifiers();

/// The design-rule model of one IP, made and deleted by the functions that the library has
/// registered with the host.
class RegisteredModel {
  public:
    /// Throws UsageError, with the known identifiers, when the IP has no model.
    explicit RegisteredModel(const std::string& identifier);
    ~RegisteredModel();
    RegisteredModel(const RegisteredModel&) = delete;
    RegisteredModel& operator=(const RegisteredModel&) = delete;

    /// Names of the update procedures, in alphabetical order.
    std::vector<std::string> procedures() const { return model_->getUpdateProcNames(); }
    /// Parameters that a procedure reads and writes, in alphabetical order.
    std::vector<std::string> parametersOf(const std::string& procedure) const;

    /// Runs a procedure and gives back what it left. Its `name` is the procedure.
    updater evaluate(const std::string& procedure,
                     const std::map<std::string, std::string>& values) const;

  private:
    std::string identifier_;
    ToolDRCModel* model_;
};

}  // namespace sable_lanecfg::tool
