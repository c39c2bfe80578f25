#include "packing/lane_parameters.h"
#include "packing/packing_faults.h"

#include <lanecfg/gt_quad_packing.h>

#include <set>

namespace sable_lanecfg {

namespace {

/// How a transmitter is clocked at one rate.
struct transmitClocking {
    explicit transmitClocking(const laneParameters& parameters)
        : pll(parameters.get<std::string>("_PLL_TYPE")),
          isUnbuffered(parameters.get<unsigned int>("_BUFFER_MODE") == 0),
          isInterpolating(parameters.get<bool>("_PIPM_ENABLE")) {}

    bool canRunBeside(const std::string& receivePll) const {
        return pll == receivePll || !(isUnbuffered || isInterpolating);
    }

    std::string pll;
    bool isUnbuffered;
    bool isInterpolating;
};

/// Compares the transmit side of a lane with its receive side, rate by rate.
class bypassCheck {
  public:
    bypassCheck(const userParamStore& userParams, packingMessages& messages)
        : userParams_(userParams), messages_(messages) {}

    /// Both sides change rate independently, so every transmit rate meets every receive rate.
    void compareAll(int lane, const std::vector<int>& txRates, const std::vector<int>& rxRates) {
        for (const int txRate : txRates) {
            const transmitClocking transmit = transmitAt(lane, txRate);
            for (const int rxRate : rxRates) {
                if (!transmit.canRunBeside(receivePllAt(lane, rxRate))) {
                    add("TX rate " + std::to_string(txRate) + " and RX rate" +
                        std::to_string(rxRate) + " in LANE_" + std::to_string(lane));
                }
            }
        }
    }

    /// Both sides change rate together.
    void compareEach(int lane, const std::vector<int>& rates) {
        for (const int rate : rates) {
            const transmitClocking transmit = transmitAt(lane, rate);
            if (!transmit.canRunBeside(receivePllAt(lane, rate))) {
                add("TX and RX rate " + std::to_string(rate) + " in lane " + std::to_string(lane));
            }
        }
    }

  private:
    transmitClocking transmitAt(int lane, int rate) const {
        return transmitClocking({userParams_, laneDirection::transmit, lane, rate});
    }

    std::string receivePllAt(int lane, int rate) const {
        const laneParameters parameters(userParams_, laneDirection::receive, lane, rate);
        return parameters.get<std::string>("_PLL_TYPE");
    }

    void add(const std::string& where) {
        addPackingMessage(messages_,
                          "ChannelLevelCheck: Invalid ILO configuration at " + where +
                              ". TX Buffer bypass or TXPIPPM can only be used when both TX and RX "
                              "are connected to the same PLL.\n");
    }

    const userParamStore& userParams_;
    packingMessages& messages_;
};

/// Calls `visit(receivingChannel, rxPin)` for each place where a lane receives.
template <class Visit>
void visitReceivers(const std::vector<channelUsageInfo>& channels, int lane, const Visit& visit) {
    for (const channelUsageInfo& channel : channels) {
        for (std::size_t position = 0; position < channel.rx.size(); ++position) {
            if (channel.rx[position] == lane) {
                visit(channel, ratePinOf(channel, laneDirection::receive, position));
            }
        }
    }
}

/// The text behind the check's name, for the PLL of a dual.
std::string dualText(const std::string& cause, const std::string& pll, const std::string& dual) {
    const std::string lanes = dual == "DUAL_0" ? "lanes 0 and/or 1" : "lanes 2 and/or 3";
    return "DualLevelCheck: Cannot be packed because " + cause + " the " + pll + " used in " +
           lanes;
}

using coordinateRows = std::map<std::string, packingNumbers>;

const packingNumbers& rowOf(const coordinateRows& rows, const char* name) {
    static const packingNumbers none;
    const auto found = rows.find(name);
    return found == rows.end() ? none : found->second;
}

/// Messages about what the PLLs of the duals have in common.
class dualCheck {
  public:
    explicit dualCheck(packingMessages& messages) : messages_(messages) {}

    void add(const std::string& dual, const std::string& pll, const coordinateRows& rows) {
        int slot = 0;
        for (const std::vector<double>& frequencies : rowOf(rows, "pllClkFreqs")) {
            if (frequencies.empty()) {
                addPackingMessage(messages_,
                                  dualText("there is no VCO frequency solution for", pll, dual) +
                                      " at rate " + std::to_string(slot) + "\n");
            }
            ++slot;
        }
        addOnce(rowOf(rows, "refclk_valid"), "frequencies", dual, pll, dualsWithClocks_);
        addOnce(rowOf(rows, "refclkSourcesValid"), "sources", dual, pll, dualsWithSources_);
    }

  private:
    /// One disagreement of a kind is told of each dual.
    void addOnce(const packingNumbers& flags, const std::string& kind, const std::string& dual,
                 const std::string& pll, std::set<std::string>& toldDuals) {
        for (const std::vector<double>& flag : flags) {
            if (!flag.empty() && flag.front() != 1.0 && toldDuals.insert(dual).second) {
                addPackingMessage(
                    messages_,
                    dualText("the reference clock " + kind + " connected to", pll, dual) +
                        " are not compatible\n");
            }
        }
    }

    packingMessages& messages_;
    std::set<std::string> dualsWithClocks_;
    std::set<std::string> dualsWithSources_;
};

}  // namespace

std::map<int, std::string> gt_quad_packing::checkILOconfig(bool logErrors) {
    packingMessages messages;
    catchPackingFaults(__LINE__, logErrors, messages, [&] {
        bypassCheck check(userParams, messages);
        for (const channelUsageInfo& channel : channels) {
            for (std::size_t position = 0; position < channel.tx.size(); ++position) {
                const int lane = channel.tx[position];
                const std::string& txPin = ratePinOf(channel, laneDirection::transmit, position);
                visitReceivers(channels, lane,
                               [&](const channelUsageInfo& receiver, const std::string& rxPin) {
                                   if (txPin == rxPin) {
                                       check.compareEach(lane, channel.rates);
                                   } else {
                                       check.compareAll(lane, channel.rates, receiver.rates);
                                   }
                               });
            }
        }
    });
    return messages;
}

std::map<int, std::string> gt_quad_packing::canBePacked(bool logErrors) {
    packingMessages messages;
    addPackingMessages(messages, runIntersection(logErrors));
    addPackingMessages(messages, checkILOconfig(logErrors));
    addPackingMessages(messages, checkRefclkSourceResource(logErrors));
    catchPackingFaults(__LINE__, logErrors, messages, [&] {
        dualCheck check(messages);
        for (const auto& [dual, groups] : intersectedCoordinates) {
            for (const auto& [group, plls] : groups) {
                for (const auto& [pll, rows] : plls) {
                    check.add(dual, pll, rows);
                }
            }
        }
    });
    return messages;
}

}  // namespace sable_lanecfg
