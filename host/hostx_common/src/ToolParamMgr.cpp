#include <lanecfg/host/ToolParamMgr.h>

ToolParamMgr& ToolParamMgr::getParamMgr() {
    static ToolParamMgr manager;
    return manager;
}

void ToolParamMgr::registerBoolParam(const std::string& name, const std::string& description,
                                     bool defaultValue) {
    boolParams_[name] = {description, defaultValue};
}
