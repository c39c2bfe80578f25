#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

/// Working record of one update procedure.
struct updater {
    std::string name;                           ///< name of the procedure
    std::map<std::string, std::string> values;  ///< parameter name to value, in and out
    std::vector<std::string> range;             ///< out: values offered for the parameter
    bool enabled = false;                       ///< out: whether the parameter can be edited
};

/// Base of the design-rule models: what follows from an edit of the parameters of one IP.
///
/// A model registers its procedures in `init`; the host evaluates them by name. Whatever a body
/// throws reaches the host, and the arguments of that call are then as they were.
class ToolDRCModel {
  public:
    using UpdateBody = void (*)(updater&);
    /// Gives true when the values are valid, and otherwise a message for the user.
    using ValidateBody = bool (*)(updater&, std::string& message);

    virtual ~ToolDRCModel();
    ToolDRCModel(const ToolDRCModel&) = delete;
    ToolDRCModel& operator=(const ToolDRCModel&) = delete;

    // The order of the virtual operations is the one a host calls them by.

    /// Registers the procedures of the model.
    virtual void init() = 0;
    /// Runs the update procedure `procName` on a copy of its registered record that holds `values`
    /// alone, an empty range and is not enabled; then gives back what the body left in the three.
    /// An unknown name changes nothing.
    virtual void evalUpdateProc(const std::string& procName,
                                std::map<std::string, std::string>& values, bool& enabled,
                                std::vector<std::string>& range);
    /// Runs the validation procedure `procName` in the same way and gives its message, which is
    /// empty when the values are valid. An unknown name changes nothing.
    virtual void evalValidateProc(const std::string& procName,
                                  std::map<std::string, std::string>& values, std::string& message);
    /// As `evalUpdateProc`, with the procedures for the display of a parameter.
    virtual void evalUpdateGuiProc(const std::string& procName,
                                   std::map<std::string, std::string>& values, bool& enabled,
                                   std::vector<std::string>& range);
    /// Gives the declared parameter names of an update procedure, in alphabetical order. An unknown
    /// name changes nothing.
    virtual void getProcArgNames(const std::string& procName, std::vector<std::string>& argNames);

    /// The IP identifier that the model was made for.
    const std::string& getName() const { return name_; }
    /// Names of all update procedures, in alphabetical order.
    std::vector<std::string> getUpdateProcNames() const;

  protected:
    using UpdateProcs = std::map<std::string, std::pair<updater, UpdateBody>>;
    using ValidateProcs = std::map<std::string, std::pair<updater, ValidateBody>>;

    /// Starts with the IP identifier and without procedures.
    explicit ToolDRCModel(std::string name);

    /// Enters an update procedure that reads and writes the parameters `argNames`. The last
    /// registration of a name stands.
    void registerUpdateProc(const std::string& procName, const std::vector<std::string>& argNames,
                            UpdateBody body);

    UpdateProcs updateProcs_;
    ValidateProcs validateProcs_;
    UpdateProcs updateGuiProcs_;

  private:
    std::string name_;
};
