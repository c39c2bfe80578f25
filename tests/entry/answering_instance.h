#pragma once

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

namespace lanecfg_test {

/// Instance whose answers tell which operation of which instance was asked. The token, if given,
/// lives as long as the instance.
template <class Frame>
class AnsweringInstance : public Frame {
  public:
    explicit AnsweringInstance(const std::string& name, std::shared_ptr<int> token = nullptr)
        : Frame(name, "SXB", {}, {}, {}, {}, {}, {}), token_(std::move(token)) {}

    std::map<std::string, std::string> getAttributes() override {
        return {{"attributes", this->instanceName}};
    }
    std::map<std::string, std::string> getMemContent() override {
        return {{"memory", this->instanceName}};
    }
    std::map<std::string, std::string> getOutClkFrequencies() override {
        return {{"clocks", this->instanceName}};
    }
    bool updateELF(const std::string& elfFile, const std::string& workDir) override {
        return elfFile == "firmware.elf" && workDir == "work";
    }

  private:
    std::shared_ptr<int> token_;
};

/// Instance whose rules are at fault: every query throws the name of a variable.
template <class Frame>
class FaultyInstance : public Frame {
  public:
    explicit FaultyInstance(const std::string& name) : Frame(name, "SXB", {}, {}, {}, {}, {}, {}) {}

    std::map<std::string, std::string> getAttributes() override { throw std::string("RX_CFG"); }
    std::map<std::string, std::string> getMemContent() override { throw std::string("RX_CFG"); }
    std::map<std::string, std::string> getOutClkFrequencies() override {
        throw std::string("RX_CFG");
    }
    bool updateELF(const std::string& /*elfFile*/, const std::string& /*workDir*/) override {
        throw std::string("RX_CFG");
    }
};

/// The manager's side of one kind of instance.
template <class Frame>
struct Registry;

template <>
struct Registry<sable_lanecfg::lane_cfg_instance> {
    static constexpr const char* selector = "live";
    static constexpr const char* otherSelector = "stable";
    static auto& instances() { return sable_lanecfg::lane_cfg_ip_mgr::m_instances; }
    static auto* find(const std::string& name) {
        return sable_lanecfg::lane_cfg_ip_mgr::getIPInstance(name);
    }
};

template <>
struct Registry<sable_lanecfg::lane_cfg_instance_iter_stable> {
    static constexpr const char* selector = "stable";
    static constexpr const char* otherSelector = "live";
    static auto& instances() { return sable_lanecfg::lane_cfg_ip_mgr::m_iter_stable_instances; }
    static auto* find(const std::string& name) {
        return sable_lanecfg::lane_cfg_ip_mgr::getIterStableIPInstance(name);
    }
};

/// Leaves the manager without instances at the end of its life.
class EmptyRegistryAtEnd {
  public:
    EmptyRegistryAtEnd() = default;
    ~EmptyRegistryAtEnd() {
        releaseAll(sable_lanecfg::lane_cfg_ip_mgr::m_instances);
        releaseAll(sable_lanecfg::lane_cfg_ip_mgr::m_iter_stable_instances);
    }
    EmptyRegistryAtEnd(const EmptyRegistryAtEnd&) = delete;
    EmptyRegistryAtEnd& operator=(const EmptyRegistryAtEnd&) = delete;

  private:
    template <class Frame>
    static void releaseAll(std::map<std::string, Frame*>& instances) {
        for (const auto& entry : instances) {
            delete entry.second;
        }
        instances.clear();
    }
};

}  // namespace lanecfg_test
