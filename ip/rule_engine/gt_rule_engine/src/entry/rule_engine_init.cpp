#include <lanecfg/RuleEngineInit.h>
#include <lanecfg/ToolGTDRCModel.h>
#include <lanecfg/ToolSXD4DRCModel.h>
#include <lanecfg/host/ToolHybridController.h>
#include <lanecfg/host/ToolParamMgr.h>

#include <array>

namespace {

/// Who serves the models of one IP.
struct ModelRegistration {
    const char* ipIdentifier;
    ToolHybridController::CreateFunction create;
    ToolHybridController::DeleteFunction deleteModel;
};

/// In the order in which the host gets to know them.
constexpr std::array<ModelRegistration, 3> modelRegistrations{{
    {"corvane:ip:sable_gt_subcore_ip:99.9", gtRulesObjInit, gtRulesObjDelete},
    {"corvane:ip:gt_subcore_ip:1.0", gtRulesObjInit, gtRulesObjDelete},
    {"corvane:ip:sxd_lane_cfg_brightspan:1.0", sxdRulesObjInit, sxdRulesObjDelete},
}};

template <class Model>
void createModel(const std::string& ipName, ToolDRCModel** model) {
    if (model != nullptr) {
        *model = new Model(ipName);
    }
}

void deleteModel(ToolDRCModel** model) {
    if (model != nullptr) {
        delete *model;
    }
}

}  // namespace

void RuleEngineInit::registerParams() {
    ToolParamMgr::getParamMgr().registerBoolParam(
        "gt.enableBlockAutomation", "Enables Block Automation for Sable GT IPs", false);
}

void RuleEngineInit::init() {
    for (const ModelRegistration& registration : modelRegistrations) {
        ToolHybridController::setDRCModelBasedonIP(registration.ipIdentifier, registration.create);
        ToolHybridController::setDeleteFuncOnDRCModelObject(registration.ipIdentifier,
                                                            registration.deleteModel);
    }
}

// The host hands the identifier over by value.
void gtRulesObjInit(std::string ipName, ToolDRCModel** model) {
    createModel<ToolGTDRCModel>(ipName, model);
}

void gtRulesObjDelete(std::string /*ipName*/, ToolDRCModel** model) {
    deleteModel(model);
}

void sxdRulesObjInit(std::string ipName, ToolDRCModel** model) {
    createModel<ToolSXD4DRCModel>(ipName, model);
}

void sxdRulesObjDelete(std::string /*ipName*/, ToolDRCModel** model) {
    deleteModel(model);
}

int Hostx_rule_engine_Init() {
    RuleEngineInit::registerParams();
    RuleEngineInit::init();
    return 0;
}
