#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_coding.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace sable_lanecfg {

namespace {

const char* const alignmentModeName = "RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE";
/// Transmitter and receiver are aligned as one; the receiver's positions count for both.
constexpr unsigned int commonAlignment = 3;

/// Where the transmitter stands in the chain of aligned lanes.
class transmit_position {
  public:
    explicit transmit_position(rule_declaration& rule)
        : mode_(rule.reads<unsigned int>(alignmentModeName)),
          own_(rule.reads<std::string>("TX_SYNCDONE_POSITION")),
          receiver_(rule.reads<std::string>("RX_SYNCDONE_POSITION")) {}

    const std::string& operator()() const {
        return mode_() == commonAlignment ? receiver_() : own_();
    }

  private:
    rule_input<unsigned int> mode_;
    rule_input<std::string> own_;
    rule_input<std::string> receiver_;
};

class receive_position {
  public:
    explicit receive_position(rule_declaration& rule)
        : own_(rule.reads<std::string>("RX_SYNCDONE_POSITION")) {}

    const std::string& operator()() const { return own_(); }

  private:
    rule_input<std::string> own_;
};

template <class Position>
void distributeNorth(rule_declaration& rule) {
    const Position position(rule);
    rule.gives([=] { return position() == "above" ? 3U : 0U; });
}

template <class Position>
void distributeSouth(rule_declaration& rule) {
    const Position position(rule);
    rule.gives([=] {
        const std::string& word = position();
        return word == "IM" || word == "single" || word == "above" ? 0U : 3U;
    });
}

template <class Position>
ruleDeclarer consumption(const laneSide& side) {
    return [side](rule_declaration& rule) {
        const Position position(rule);
        const auto coding = rule.reads<std::string>(std::string(side.coding));
        const width_ratio ratio(rule, side);
        rule.gives([=] {
            const std::string& word = position();
            const bool isAlone = word == "IM" || word == "single" ||
                                 (coding() == asynchronousGearbox && ratio() == 2);
            if (isAlone) {
                return 0U;
            }
            return word == "above" ? 1U : 4U;
        });
    };
}

/// Position words of the quad's channels.
class channel_positions {
  public:
    channel_positions(rule_declaration& rule, const laneSide& side) {
        for (std::size_t channel = 0; channel < channelsOfQuad; ++channel) {
            words_.push_back(rule.reads<std::string>(
                side.parameter("CH" + std::to_string(channel) + "_SYNCDONE_POSITION")));
        }
    }

    bool isIntermediate(std::size_t channel) const {
        return channel < words_.size() && words_[channel]() == "IM";
    }

  private:
    std::vector<rule_input<std::string>> words_;
};

/// An intermediate lane relays towards the master: the upper lanes of the duals when the master is
/// above, the lower ones when it is below.
bool relays(unsigned int lane, const std::string& position) {
    const bool isUpperLane = lane % 2 == 1;
    return position == (isUpperLane ? "above" : "below");
}

void rpllEnable(rule_declaration& rule) {
    const auto mode = rule.reads<unsigned int>(alignmentModeName);
    const auto transmitPosition = rule.reads<std::string>("TX_SYNCDONE_POSITION");
    const auto receivePosition = rule.reads<std::string>("RX_SYNCDONE_POSITION");
    const auto lane = rule.reads<unsigned int>("LaneNum");
    const channel_positions transmitChannels(rule, transmitSide);
    const channel_positions receiveChannels(rule, receiveSide);
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto xpuMode = rule.reads<float>("XPU_MODE");
    rule.gives([=] {
        if (!pcie() && xpuMode() != 0.0F) {
            return 0U;
        }
        const bool isCommon = mode() == commonAlignment;
        const std::string& position = isCommon ? receivePosition() : transmitPosition();
        const channel_positions& channels = isCommon ? receiveChannels : transmitChannels;
        const bool isEnabled = position == "IM" || position == "single" ||
                               (channels.isIntermediate(lane()) && relays(lane(), position));
        return isEnabled ? 1U : 0U;
    });
}

/// Clock of the coding sublayer; only asynchronous gearboxes need another than their own.
ruleDeclarer sublayerClock(const laneSide& side) {
    return [side](rule_declaration& rule) {
        const auto coding = rule.reads<std::string>(std::string(side.coding));
        const auto internalWidth = rule.reads<unsigned int>(side.parameter("INT_DATA_WIDTH"));
        const auto userWidth = rule.reads<unsigned int>(side.parameter("USER_DATA_WIDTH"));
        const auto position = rule.reads<std::string>(side.parameter("PIPE_POSITION"));
        rule.gives([=] {
            if (coding().find("ASYNC") == std::string::npos) {
                return 0U;
            }
            if (internalWidth() == userWidth()) {
                return 1U;
            }
            return position() == "single" ? 2U : 3U;
        });
    };
}

/// A field that the place of the lane in the pipe's chain decides.
template <class Table>
ruleDeclarer byPipePosition(const Table& codes, unsigned int elsewhere) {
    return [codes, elsewhere](rule_declaration& rule) {
        const auto position = rule.reads<std::string>("TX_PIPE_POSITION");
        rule.gives([=] {
            for (const auto& row : codes) {
                if (row.first == position()) {
                    return row.second;
                }
            }
            return elsewhere;
        });
    };
}

constexpr code_table<std::string_view, 2> pipeNorthCodes{{{"top", 0}, {"middle", 3}}};
constexpr code_table<std::string_view, 2> pipeSouthCodes{{{"top", 0}, {"middle", 1}}};
constexpr code_table<std::string_view, 3> pipeConsumptionCodes{
    {{"top", 1}, {"middle", 1}, {"bottom", 3}}};

}  // namespace

void addPhaseAlignmentRules(logicRules& rules) {
    const auto add = [&rules](const std::string& field, const ruleDeclarer& declarer) {
        rules.emplace("PIPE_CTRL_CFG9." + field, declarer);
    };
    add("TXSYNCDONE_DISTNORTH_SEL", distributeNorth<transmit_position>);
    add("RXSYNCDONE_DISTNORTH_SEL", distributeNorth<receive_position>);
    add("TXSYNCDONE_DISTSOUTH_SEL", distributeSouth<transmit_position>);
    add("RXSYNCDONE_DISTSOUTH_SEL", distributeSouth<receive_position>);
    add("TXSYNCDONE_CONSUMPT_SEL", consumption<transmit_position>(transmitSide));
    add("RXSYNCDONE_CONSUMPT_SEL", consumption<receive_position>(receiveSide));
    add("TXSYNCDONE_DIST_IN_SEL", oneAt(alignmentModeName, commonAlignment));
    rules.emplace("PIPE_CTRL_CFG1.RPLL_EN", rpllEnable);
}

void addPipePositionRules(logicRules& rules) {
    rules.emplace("PIPE_CTRL_CFG0.TX_PCSCLK_SEL", sublayerClock(transmitSide));
    rules.emplace("PIPE_CTRL_CFG0.RX_PCSCLK_SEL", sublayerClock(receiveSide));
    rules.emplace("PIPE_CTRL_CFG6.PIPE_DISTNORTH_SEL", byPipePosition(pipeNorthCodes, 2));
    rules.emplace("PIPE_CTRL_CFG6.PIPE_DISTSOUTH_SEL", byPipePosition(pipeSouthCodes, 0));
    rules.emplace("PIPE_CTRL_CFG6.PIPE_CONSUMPT_SEL", byPipePosition(pipeConsumptionCodes, 0));
}

}  // namespace sable_lanecfg
