#pragma once

#include "support/captured_messages.h"
#include "support/packing_request.h"
#include "support/quad_usage.h"
#include "support/reference_data.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace lanecfg_test {

/// Whether instances of this class take the current rules; the others take the frozen ones.
template <class Instance>
inline constexpr bool isLiveInstance =
    std::is_base_of_v<sable_lanecfg::lane_cfg_instance, Instance>;

/// Makes instances of a family from requests, on the reference database.
///
/// `Instance` is the class of the family, or one of the frames lane_cfg_instance and
/// lane_cfg_instance_iter_stable: then the manager makes what belongs to the family's word.
template <class Instance>
class InstanceMaker {
  public:
    explicit InstanceMaker(const std::string& familyWord) : InstanceMaker(familyWord, familyWord) {}
    /// `folder` names the database, where it is not the family's word.
    InstanceMaker(std::string familyWord, const std::string& folder)
        : family(std::move(familyWord)), database(referenceDatabase(folder)) {}

    /// Receive buffers are in use, of which the rate table of the current rules wants to know.
    std::unique_ptr<Instance> made(const PackingRequest& request,
                                   const std::string& name = "quad") const {
        return made(
            name, request.channels, quads.quads, database.m_paramTypes,
            isLiveInstance<Instance> ? withReceiveBuffer(request.userParams) : request.userParams,
            database.m_fields, database.m_deviceData);
    }

    const std::string family;
    sable_lanecfg::gt_db_load database;  ///< as a test wants it for the next instance
    QuadUsage quads;

  private:
    template <class... Content>
    std::unique_ptr<Instance> made(const std::string& name, const Content&... content) const {
        using sable_lanecfg::lane_cfg_ip_mgr;
        if constexpr (std::is_same_v<Instance, sable_lanecfg::lane_cfg_instance>) {
            return std::unique_ptr<Instance>(
                lane_cfg_ip_mgr::createLaneCfgInstance(name, family, content...));
        } else if constexpr (std::is_same_v<Instance,
                                            sable_lanecfg::lane_cfg_instance_iter_stable>) {
            return std::unique_ptr<Instance>(
                lane_cfg_ip_mgr::createLaneCfgIterStableInstance(name, family, content...));
        } else {
            return std::make_unique<Instance>(name, content...);
        }
    }
};

/// Fixture of the tests of one family's instances.
template <class Instance>
class InstanceTest : public testing::Test, protected InstanceMaker<Instance> {
  protected:
    using InstanceMaker<Instance>::InstanceMaker;

    CapturedMessages messages;
};

/// A variable of a lane's pass; throws boost::bad_get when it is of another type.
template <class Value>
Value valueIn(const sable_lanecfg::gt_rule_engine& instance, std::size_t lane,
              const std::string& name, std::size_t pass = 0) {
    return boost::get<Value>(instance.blockVarMap.at(lane).at(pass).at(name).value);
}

/// Number of the rule that writes a variable, -1 for one that no rule writes.
inline int numberOfRule(const sable_lanecfg::gt_rule_engine& instance, const std::string& name) {
    return instance.varMap.at(name).ruleNumber.value_or(-1);
}

}  // namespace lanecfg_test
