#include "idle_run.h"

#include "message_capture.h"
#include "standard_output_guard.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

namespace sable_lanecfg::tool {
namespace {

template <class Frame>
IdleInstance owned(Frame* instance) {
    if (instance == nullptr) {
        return {};
    }
    // Shared, since the engine itself can't be deleted, only the frame around it.
    const std::shared_ptr<Frame> owner(instance);
    return {owner, [owner] { return owner->getAttributes(); }};
}

}  // namespace

gt_db_load loadIdle(const Database& database) {
    // A section without lanes is the smallest set of user parameters that loads.
    const userParamMap noLanes = {{"TX_SETTINGS", {}}};
    return {{},
            noLanes,
            {},
            {},
            database.parametersFile(),
            "",
            database.registersFile(),
            database.deviceFile(),
            ""};
}

IdleInstance buildIdle(const RuleSet& rules, const gt_db_load& loaded,
                       const std::map<std::string, attributeInfo>& registers) {
    const auto build = [&rules, &loaded, &registers](const auto& create) {
        const StandardOutputGuard guard;
        return owned(create("idle", rules.family, loaded.m_channelUsage, loaded.m_quadsUsage,
                            loaded.m_paramTypes, loaded.m_userParams, registers,
                            loaded.m_deviceData));
    };
    return rules.selector == "stable" ? build(lane_cfg_ip_mgr::createLaneCfgIterStableInstance)
                                      : build(lane_cfg_ip_mgr::createLaneCfgInstance);
}

bool isRuleSetBuilt(const RuleSet& rules, const Database& database) {
    const MessageCapture captured;
    try {
        const gt_db_load loaded = loadIdle(database);
        return buildIdle(rules, loaded, loaded.m_fields).engine != nullptr;
    } catch (...) {
        // Something ran and did not like the database.
        return true;
    }
}

}  // namespace sable_lanecfg::tool
