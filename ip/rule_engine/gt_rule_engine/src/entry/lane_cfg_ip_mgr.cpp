#include <lanecfg/lane_cfg_ip_mgr.h>
#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/case_conv.hpp>

#include <memory>
#include <utility>

namespace sable_lanecfg {

lane_cfg_ip_mgr* lane_cfg_ip_mgr::m_pIpMgr = nullptr;
std::map<std::string, lane_cfg_instance*> lane_cfg_ip_mgr::m_instances;
std::map<std::string, lane_cfg_instance_iter_stable*> lane_cfg_ip_mgr::m_iter_stable_instances;

namespace {

enum class instanceKind { live, stable, unknown };

/// The letters' case is folded as the current global locale does it.
instanceKind kindOf(const std::string& selector) {
    const std::string word = boost::algorithm::to_lower_copy(selector);
    if (word == "live") {
        return instanceKind::live;
    }
    return word == "stable" ? instanceKind::stable : instanceKind::unknown;
}

template <class Frame>
Frame* findInstance(const std::map<std::string, Frame*>& instances, const std::string& name) {
    const auto found = instances.find(name);
    return found == instances.end() ? nullptr : found->second;
}

template <class Frame>
using instanceEntry = typename std::map<std::string, Frame*>::const_iterator;

template <class Frame>
void releaseEntry(std::map<std::string, Frame*>& instances, const instanceEntry<Frame> entry) {
    if (entry != instances.end()) {
        delete entry->second;
        instances.erase(entry);
    }
}

/// Asks the instance that name and selector address; without one the answer is empty.
template <class Answer, class Query>
Answer ask(const std::string& name, const std::string& selector, const Query& query) {
    switch (kindOf(selector)) {
        case instanceKind::live:
            if (lane_cfg_instance* const instance = lane_cfg_ip_mgr::getIPInstance(name)) {
                return query(*instance);
            }
            break;
        case instanceKind::stable:
            if (lane_cfg_instance_iter_stable* const instance =
                    lane_cfg_ip_mgr::getIterStableIPInstance(name)) {
                return query(*instance);
            }
            break;
        case instanceKind::unknown:
            break;
    }
    return Answer();
}

/// Forgets all instances of the map and makes the new one; when its constructor throws, the map
/// stays empty. The forgotten ones are not deleted: callers may still use them. The registers, by
/// far the most of the database, move to the instance.
template <class Frame, class Create>
void replaceInstances(std::map<std::string, Frame*>& instances, const Create& create,
                      const std::string& name, const std::string& family, gt_db_load& database) {
    // The caller's text may be the key of an entry that is forgotten, so the keys go last.
    std::map<std::string, Frame*> forgotten;
    forgotten.swap(instances);
    std::unique_ptr<Frame> instance(
        create(name, family, database.m_channelUsage, database.m_quadsUsage, database.m_paramTypes,
               database.m_userParams, std::move(database.m_fields), database.m_deviceData));
    Frame*& entry = instances[name];
    entry = instance.release();
}

void initialise(const std::string& name, const std::string& family, const std::string& selector,
                gt_db_load& database) {
    if (!database.m_loaded) {
        return;
    }
    switch (kindOf(selector)) {
        case instanceKind::live:
            replaceInstances(lane_cfg_ip_mgr::m_instances, lane_cfg_ip_mgr::createLaneCfgInstance,
                             name, family, database);
            break;
        case instanceKind::stable:
            replaceInstances(lane_cfg_ip_mgr::m_iter_stable_instances,
                             lane_cfg_ip_mgr::createLaneCfgIterStableInstance, name, family,
                             database);
            break;
        case instanceKind::unknown:
            break;
    }
}

}  // namespace

void lane_cfg_ip_mgr::initilizeData(const std::string& instanceName, const std::string& family,
                                    const std::string& selector,
                                    const std::string& userParameterTypesFile,
                                    const std::string& userParametersFile,
                                    const std::string& fieldsFile,
                                    const std::string& deviceDataFile) {
    const std::string noPart;
    gt_db_load database(textMap(), userParamMap(), laneUsageMap(), quadUsageMap(),
                        userParameterTypesFile, userParametersFile, fieldsFile, deviceDataFile,
                        noPart);
    initialise(instanceName, family, selector, database);
}

void lane_cfg_ip_mgr::initilizeDataWithDict(
    const std::string& instanceName, const std::string& family, const std::string& selector,
    const std::string& partName, const textMap& options, const laneUsageMap& laneUsage,
    const quadUsageMap& quadUsage, const userParamMap& userParams,
    const std::string& userParameterTypesFile, const std::string& fieldsFile,
    const std::string& deviceDataFile) {
    const std::string noParametersFile;
    gt_db_load database(options, userParams, laneUsage, quadUsage, userParameterTypesFile,
                        noParametersFile, fieldsFile, deviceDataFile, partName);
    initialise(instanceName, family, selector, database);
}

std::map<std::string, std::string> lane_cfg_ip_mgr::getAttributes(const std::string& instanceName,
                                                                  const std::string& /*family*/,
                                                                  const std::string& selector) {
    return ask<textMap>(instanceName, selector,
                        [](auto& instance) { return instance.getAttributes(); });
}

std::map<std::string, std::string> lane_cfg_ip_mgr::getMemContent(const std::string& instanceName,
                                                                  const std::string& /*family*/,
                                                                  const std::string& selector) {
    return ask<textMap>(instanceName, selector,
                        [](auto& instance) { return instance.getMemContent(); });
}

std::map<std::string, std::string> lane_cfg_ip_mgr::getOutClkFrequencies(
    const std::string& instanceName, const std::string& /*family*/, const std::string& selector) {
    return ask<textMap>(instanceName, selector,
                        [](auto& instance) { return instance.getOutClkFrequencies(); });
}

int lane_cfg_ip_mgr::updateELF(const std::string& instanceName, const std::string& /*family*/,
                               const std::string& selector, const std::string& elfFile,
                               const std::string& workDir) {
    return ask<int>(instanceName, selector, [&elfFile, &workDir](auto& instance) {
        return instance.updateELF(elfFile, workDir) ? 1 : 0;
    });
}

bool lane_cfg_ip_mgr::isFabricBRAMNeeded(const std::string& instanceName) {
    lane_cfg_instance* const instance = getIPInstance(instanceName);
    return instance != nullptr && instance->isFabricBramNeeded();
}

std::vector<std::string> lane_cfg_ip_mgr::getLogContent() {
    return rule_engine_utilities::get_log_content();
}

void lane_cfg_ip_mgr::releaseData(const std::string& instanceName) {
    // The caller's text may be a key or live in an instance, so it is used up before either goes.
    const auto live = m_instances.find(instanceName);
    const auto stable = m_iter_stable_instances.find(instanceName);
    releaseEntry<lane_cfg_instance>(m_instances, live);
    releaseEntry<lane_cfg_instance_iter_stable>(m_iter_stable_instances, stable);
}

lane_cfg_instance* lane_cfg_ip_mgr::getIPInstance(const std::string& instanceName) {
    return findInstance(m_instances, instanceName);
}

lane_cfg_instance_iter_stable* lane_cfg_ip_mgr::getIterStableIPInstance(
    const std::string& instanceName) {
    return findInstance(m_iter_stable_instances, instanceName);
}

}  // namespace sable_lanecfg
