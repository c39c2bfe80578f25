#pragma once

#include <map>
#include <string>

/// The host's registry of tool parameters.
class ToolParamMgr {
  public:
    struct BoolParam {
        std::string description;
        bool defaultValue = false;
    };

    /// The one registry of the process.
    static ToolParamMgr& getParamMgr();

    /// Declares a parameter. A second registration of a name replaces the first.
    void registerBoolParam(const std::string& name, const std::string& description,
                           bool defaultValue);
    /// All declared parameters by name.
    const std::map<std::string, BoolParam>& getBoolParams() const { return boolParams_; }

  private:
    ToolParamMgr() = default;

    std::map<std::string, BoolParam> boolParams_;
};
