#include <lanecfg/host/ToolHybridController.h>

#include <algorithm>

namespace {

struct Registration {
    std::string ipIdentifier;
    ToolHybridController::CreateFunction create = nullptr;
    ToolHybridController::DeleteFunction deleteModel = nullptr;
};

/// In registration order; a handful of entries, so a walk finds one soon enough.
std::vector<Registration>& registrations() {
    static std::vector<Registration> all;
    return all;
}

/// Null when the identifier is not registered.
Registration* findRegistration(const std::string& ipIdentifier) {
    std::vector<Registration>& all = registrations();
    const auto found =
        std::find_if(all.begin(), all.end(), [&ipIdentifier](const Registration& registration) {
            return registration.ipIdentifier == ipIdentifier;
        });
    return found == all.end() ? nullptr : &*found;
}

Registration& registrationOf(const std::string& ipIdentifier) {
    if (Registration* known = findRegistration(ipIdentifier)) {
        return *known;
    }
    return registrations().emplace_back(Registration{ipIdentifier});
}

}  // namespace

void ToolHybridController::setDRCModelBasedonIP(const std::string& ipIdentifier,
                                                CreateFunction create) {
    registrationOf(ipIdentifier).create = create;
}

void ToolHybridController::setDeleteFuncOnDRCModelObject(const std::string& ipIdentifier,
                                                         DeleteFunction deleteModel) {
    registrationOf(ipIdentifier).deleteModel = deleteModel;
}

std::vector<std::string> ToolHybridController::getIPIdentifiers() {
    std::vector<std::string> identifiers;
    for (const Registration& registration : registrations()) {
        identifiers.push_back(registration.ipIdentifier);
    }
    return identifiers;
}

ToolDRCModel* ToolHybridController::createDRCModel(const std::string& ipIdentifier) {
    const Registration* known = findRegistration(ipIdentifier);
    if (known == nullptr || known->create == nullptr) {
        return nullptr;
    }
    ToolDRCModel* model = nullptr;
    known->create(ipIdentifier, &model);
    return model;
}

bool ToolHybridController::deleteDRCModel(const std::string& ipIdentifier, ToolDRCModel** model) {
    const Registration* known = findRegistration(ipIdentifier);
    if (known == nullptr || known->deleteModel == nullptr) {
        return false;
    }
    known->deleteModel(ipIdentifier, model);
    *model = nullptr;
    return true;
}
