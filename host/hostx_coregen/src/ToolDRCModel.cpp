#include <lanecfg/host/ToolDRCModel.h>

namespace {

using Values = std::map<std::string, std::string>;

/// A fresh record for one evaluation: what the caller gives replaces the declared values.
updater recordFor(const updater& registered, const Values& values) {
    updater record = registered;
    record.values = values;
    record.range.clear();
    record.enabled = false;
    return record;
}

void evaluate(const std::map<std::string, std::pair<updater, ToolDRCModel::UpdateBody>>& procs,
              const std::string& procName, Values& values, bool& enabled,
              std::vector<std::string>& range) {
    const auto proc = procs.find(procName);
    if (proc == procs.end()) {
        return;
    }
    const auto& [registered, body] = proc->second;
    updater record = recordFor(registered, values);
    body(record);
    values = std::move(record.values);
    enabled = record.enabled;
    range = std::move(record.range);
}

}  // namespace

ToolDRCModel::ToolDRCModel(std::string name) : name_(std::move(name)) {}

ToolDRCModel::~ToolDRCModel() = default;

void ToolDRCModel::evalUpdateProc(const std::string& procName, Values& values, bool& enabled,
                                  std::vector<std::string>& range) {
    evaluate(updateProcs_, procName, values, enabled, range);
}

void ToolDRCModel::evalValidateProc(const std::string& procName, Values& values,
                                    std::string& message) {
    const auto proc = validateProcs_.find(procName);
    if (proc == validateProcs_.end()) {
        return;
    }
    const auto& [registered, body] = proc->second;
    updater record = recordFor(registered, values);
    std::string complaint;
    const bool valid = body(record, complaint);
    values = std::move(record.values);
    message = valid ? std::string() : std::move(complaint);
}

void ToolDRCModel::evalUpdateGuiProc(const std::string& procName, Values& values, bool& enabled,
                                     std::vector<std::string>& range) {
    evaluate(updateGuiProcs_, procName, values, enabled, range);
}

void ToolDRCModel::getProcArgNames(const std::string& procName,
                                   std::vector<std::string>& argNames) {
    const auto proc = updateProcs_.find(procName);
    if (proc == updateProcs_.end()) {
        return;
    }
    argNames.clear();
    for (const auto& [argName, value] : proc->second.first.values) {
        argNames.push_back(argName);
    }
}

std::vector<std::string> ToolDRCModel::getUpdateProcNames() const {
    std::vector<std::string> names;
    for (const auto& [procName, proc] : updateProcs_) {
        names.push_back(procName);
    }
    return names;
}

void ToolDRCModel::registerUpdateProc(const std::string& procName,
                                      const std::vector<std::string>& argNames, UpdateBody body) {
    updater record;
    record.name = procName;
    for (const std::string& argName : argNames) {
        record.values[argName] = "";
    }
    updateProcs_[procName] = {std::move(record), body};
}
