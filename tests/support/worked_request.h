#pragma once

#include "support/captured_messages.h"
#include "support/family_instance.h"
#include "support/reference_data.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace lanecfg_test {

/// A feedback divider of a PLL that nobody has used yet.
constexpr unsigned long idleDivider = 80;

/// `A_CFG1` for feedback dividers of the first and second dual: the hardware counts from two below.
constexpr unsigned long feedbackWord(unsigned long lcpll0, unsigned long rpll0,
                                     unsigned long lcpll1, unsigned long rpll1) {
    return (lcpll0 - 2) + ((rpll0 - 2) << 8) + ((lcpll1 - 2) << 16) + ((rpll1 - 2) << 24);
}

/// Lanes, a bit for each, that reset with what the member names.
struct ResettingLanes {
    unsigned long txLcpll = 0;
    unsigned long txRpll = 0;
    unsigned long rxLcpll = 0;
    unsigned long txDivider = 0;
    unsigned long rxDivider = 0;
    unsigned long oscillator = 0b1111;
};

/// `MST_RESET_CFG`: PLLs at bits 0, 4 and 28, and from bit 8 on five bits for each lane:
/// oscillator, and for each direction divider and channel, of which the channels are always
/// enabled.
constexpr unsigned long resetWord(const ResettingLanes& lanes) {
    unsigned long word = lanes.txLcpll + (lanes.txRpll << 4) + (lanes.rxLcpll << 28);
    for (unsigned lane = 0; lane < 4; ++lane) {
        const unsigned long own = (lanes.oscillator >> lane & 1) +
                                  ((lanes.txDivider >> lane & 1) << 1) +
                                  ((lanes.rxDivider >> lane & 1) << 3);
        word += (0b10100 + own) << (8 + 5 * lane);
    }
    return word;
}

/// Which PLLs of the first and second dual run; the others are powered down.
struct RunningPlls {
    bool lcpll0 = false;
    bool rpll0 = false;
    bool lcpll1 = false;
    bool rpll1 = false;
};

/// How a side of a lane hands the end of its phase alignment on.
struct SyncDone {
    unsigned int north = 0;
    unsigned int south = 0;
    unsigned int consumption = 0;
};

// By the place of the lane in its link.
constexpr SyncDone belowMaster{0, 3, 4};
constexpr SyncDone atMaster{0, 0, 0};
constexpr SyncDone aboveMaster{3, 0, 1};

/// `PIPE_CTRL_CFG9`, three fields of the transmitter from bit 1 on, of the receiver from bit 9 on.
constexpr unsigned int syncDoneWord(const SyncDone& tx, const SyncDone& rx) {
    const auto placed = [](const SyncDone& side) {
        return (side.north << 1) + (side.south << 3) + (side.consumption << 5);
    };
    return placed(tx) + (placed(rx) << 8);
}

/// A bundled request, by way of the manager, to be compared with values worked out by hand. `Frame`
/// is that of the rules which the request names.
template <class Frame>
class WorkedRequestOn : public testing::Test {
  protected:
    explicit WorkedRequestOn(const std::string& request)
        : family(bundledRequest(request).at("family").get<std::string>()) {
        initialiseBundledRequest(instanceName, request);
    }
    ~WorkedRequestOn() override { sable_lanecfg::lane_cfg_ip_mgr::releaseData(instanceName); }

    static Frame& instance() {
        if constexpr (isLiveInstance<Frame>) {
            return *sable_lanecfg::lane_cfg_ip_mgr::getIPInstance(instanceName);
        } else {
            return *sable_lanecfg::lane_cfg_ip_mgr::getIterStableIPInstance(instanceName);
        }
    }

    /// Expects that the user was told of no fault.
    void expectNoFault() const {
        for (const unsigned severity : {0x20000000U, 0x10000000U, 0x8000000U}) {
            EXPECT_EQ(messages.texts(severity), std::vector<std::string>());
        }
    }

    /// Expects that the channels fit their quad, without a fault.
    void expectPacked() const {
        EXPECT_EQ(instance().packedChannels, (std::map<int, std::string>()));
        expectNoFault();
    }

    std::map<std::string, std::string> attributes() const {
        return sable_lanecfg::lane_cfg_ip_mgr::getAttributes(instanceName, family, selector);
    }

    unsigned long word(const std::string& name) const { return std::stoul(attributes().at(name)); }

    /// Expects the words that the current rules have for PLLs without a fraction: a reset mask of
    /// 3, and whether the PLL is powered down.
    void expectRunning(const RunningPlls& plls) const {
        EXPECT_EQ(word("A_CFG2"), (3UL << 28) + (plls.lcpll0 ? 0UL : 1UL));
        EXPECT_EQ(word("A_CFG3"), (3UL << 3) + (plls.rpll0 ? 0UL : 1UL << 5));
        EXPECT_EQ(word("A_CFG4"), (3UL << 1) + (plls.lcpll1 ? 0UL : 1UL << 28));
        EXPECT_EQ(word("A_CFG5"), 3UL + (plls.rpll1 ? 0UL : 1UL << 5));
    }

    std::map<std::string, std::string> outputClocks() const {
        return sable_lanecfg::lane_cfg_ip_mgr::getOutClkFrequencies(instanceName, family, selector);
    }

    /// A variable of a lane in each of its passes.
    template <class Value>
    static std::vector<Value> ofPasses(std::size_t lane, const std::string& variable) {
        std::vector<Value> values;
        for (const auto& pass : instance().blockVarMap.at(lane)) {
            values.push_back(boost::get<Value>(pass.at(variable).value));
        }
        return values;
    }

    /// A variable of each lane in its first pass.
    template <class Value>
    static std::vector<Value> ofLanes(const std::string& variable) {
        std::vector<Value> values;
        for (std::size_t lane = 0; lane < instance().blockVarMap.size(); ++lane) {
            values.push_back(ofPasses<Value>(lane, variable).front());
        }
        return values;
    }

    static std::vector<unsigned int> fieldOfPasses(std::size_t lane, const std::string& field) {
        return ofPasses<unsigned int>(lane, field);
    }

    static std::vector<unsigned int> fieldOfLanes(const std::string& field) {
        return ofLanes<unsigned int>(field);
    }

    static constexpr const char* instanceName = "quad_0";
    static constexpr const char* selector = isLiveInstance<Frame> ? "live" : "stable";
    const std::string family;
    CapturedMessages messages;
};

class WorkedRequest : public WorkedRequestOn<sable_lanecfg::lane_cfg_instance> {
    using WorkedRequestOn::WorkedRequestOn;
};

class WorkedFrozenRequest : public WorkedRequestOn<sable_lanecfg::lane_cfg_instance_iter_stable> {
    using WorkedRequestOn::WorkedRequestOn;
};

}  // namespace lanecfg_test
