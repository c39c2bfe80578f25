#pragma once

#include <string>
#include <vector>

class ToolDRCModel;

/// The host's registry of design-rule models: who makes and deletes the model of which IP.
class ToolHybridController {
  public:
    /// Makes the model for an IP identifier and stores it in `*model`.
    using CreateFunction = void (*)(std::string ipIdentifier, ToolDRCModel** model);
    /// Deletes `*model`, unless it is null, and leaves the pointer as it is.
    using DeleteFunction = void (*)(std::string ipIdentifier, ToolDRCModel** model);

    /// Registers how the model of an IP is made. A second registration replaces the function and
    /// keeps the place of the identifier.
    static void setDRCModelBasedonIP(const std::string& ipIdentifier, CreateFunction create);
    /// Registers how the model of an IP is deleted, with the same rule.
    static void setDeleteFuncOnDRCModelObject(const std::string& ipIdentifier,
                                              DeleteFunction deleteModel);

    /// All registered IP identifiers, in registration order.
    static std::vector<std::string> getIPIdentifiers();
    /// Makes a model of the IP, which the caller gives back to `deleteDRCModel`. Gives null when no
    /// create function is registered for the identifier.
    static ToolDRCModel* createDRCModel(const std::string& ipIdentifier);
    /// Deletes the model and sets `*model` to null. Gives false, and changes nothing, when no
    /// delete function is registered for the identifier.
    static bool deleteDRCModel(const std::string& ipIdentifier, ToolDRCModel** model);
};
