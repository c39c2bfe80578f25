#include "families/sxb/sxb_channel_positions.h"

#include "families/sxb/sxb_rate_groups.h"
#include "packing/lane_parameters.h"

#include <lanecfg/rule_engine_utilities.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace sable_lanecfg {

namespace {

/// Where a channel lies; as it stands, one that no quad lists.
struct channelPosition {
    std::string reset = "middle";
    std::string alignment = "single";
    bool maintainsMaster = false;
};

/// Channels of one quad or of several in a row, each by the name of its link, and which of them
/// are masters. The lists may differ in length.
struct channelChain {
    std::vector<std::string> links;
    std::vector<std::string> masters;
};

using chainsBySuffix = std::map<std::string, channelChain>;

/// All quads of a request, and the suffix of the one that is configured.
struct quadChains {
    std::array<chainsBySuffix, 2> ofDirection;
    std::string currentSuffix;
    bool hasCurrent = false;
};

/// A quad of one direction in the order of numbers.
struct quad_info {
    std::string name;
    int number;
};

/// "TXQUAD_3" gives "3"; a name without "_" is its own suffix.
std::string suffixOf(const std::string& quadName) {
    return quadName.substr(quadName.find('_') + 1);
}

channelChain chainOf(const quadsUsageInfo& quad) {
    channelChain chain;
    for (const std::string& channel : quad.channels) {
        chain.links.push_back(channel.substr(0, channel.find('.')));
    }
    chain.masters = quad.MSTRCLK;
    return chain;
}

quadChains chainsOf(const std::map<std::string, quadsUsageInfo*>& quads) {
    quadChains chains;
    for (const auto& [name, quad] : quads) {
        if (quad == nullptr) {
            continue;
        }
        const std::string suffix = suffixOf(quad->quadName);
        const std::size_t direction = quad->usageKey == "TX_QUAD_CH" ? 0 : 1;
        chains.ofDirection[direction][suffix] = chainOf(*quad);
        if (quad->IS_CURRENT_QUAD) {
            chains.currentSuffix = suffix;
            chains.hasCurrent = true;
        }
    }
    return chains;
}

std::vector<quad_info> sortedQuads(const chainsBySuffix& chains) {
    std::vector<quad_info> quads;
    for (const auto& [suffix, chain] : chains) {
        const unsigned int number = rule_engine_utilities::getInt(suffix) + 1;
        quads.push_back({suffix, static_cast<int>(number)});
    }
    std::stable_sort(quads.begin(), quads.end(), [](const quad_info& left, const quad_info& right) {
        return left.number < right.number;
    });
    return quads;
}

channelChain joined(const chainsBySuffix& chains, const std::vector<quad_info>& order) {
    channelChain all;
    for (const quad_info& quad : order) {
        const channelChain& chain = chains.at(quad.name);
        all.links.insert(all.links.end(), chain.links.begin(), chain.links.end());
        all.masters.insert(all.masters.end(), chain.masters.begin(), chain.masters.end());
    }
    return all;
}

/// Walks the channels of one link from the bottom to the top.
class link_walk {
  public:
    void count() { ++channels_; }
    bool isSingle() const { return channels_ == 1; }

    /// The next channel's position; the mark of the maintained master is not its matter.
    channelPosition next(const std::string& master) {
        ++walked_;
        channelPosition position;
        position.reset = resetPlace();
        position.alignment = alignment(master);
        return position;
    }

    /// Whether the last channel is the first one of the upper half.
    bool isBehindMiddle() const { return walked_ == channels_ / 2 + 1; }

  private:
    std::string resetPlace() const {
        if (walked_ == 1) {
            return "bottom";
        }
        return walked_ == channels_ ? "top" : "middle";
    }

    std::string alignment(const std::string& master) {
        if (masterSeen_) {
            return "above";
        }
        if (master == "1") {
            masterSeen_ = true;
            return "IM";
        }
        return master == "0" ? "below" : "single";
    }

    std::size_t channels_ = 0;
    std::size_t walked_ = 0;
    bool masterSeen_ = false;
};

bool isUnused(const std::string& link) {
    return link.empty() || link == "undef";
}

std::vector<channelPosition> positionsIn(const channelChain& chain) {
    std::map<std::string, link_walk> walks;
    for (const std::string& link : chain.links) {
        walks[link].count();
    }
    std::vector<channelPosition> positions;
    for (std::size_t index = 0; index < chain.links.size(); ++index) {
        const std::string& link = chain.links[index];
        link_walk& walk = walks.at(link);
        if (isUnused(link) || walk.isSingle()) {
            positions.push_back({"single", "single", false});
            continue;
        }
        const std::string master =
            index < chain.masters.size() ? chain.masters[index] : std::string();
        positions.push_back(walk.next(master));
        if (walk.isBehindMiddle()) {
            // The master does not maintain itself; the channel before it does. There is one: a
            // link of several channels is never behind its middle at the first.
            positions[master == "1" ? index - 1 : index].maintainsMaster = true;
        }
    }
    return positions;
}

/// Positions of the current quad's channels.
std::vector<channelPosition> positionsOfQuad(const chainsBySuffix& chains, const quadChains& all,
                                             std::size_t channels) {
    const std::vector<quad_info> order = sortedQuads(chains);
    const auto current = std::find_if(order.begin(), order.end(), [&all](const quad_info& quad) {
        return all.hasCurrent && quad.name == all.currentSuffix;
    });
    const std::size_t quad =
        current == order.end() ? 0 : static_cast<std::size_t>(current - order.begin());
    const std::vector<channelPosition> positions = positionsIn(joined(chains, order));
    std::vector<channelPosition> own(channels);
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const std::size_t index = quad * channels + channel;
        if (index < positions.size()) {
            own[channel] = positions[index];
        }
    }
    return own;
}

void enterLane(const std::string& word, std::size_t lane,
               const std::vector<channelPosition>& positions,
               std::map<std::string, ruleValue>& values) {
    values[word + "_PIPE_POSITION"] = positions[lane].reset;
    for (std::size_t channel = 0; channel < positions.size(); ++channel) {
        const std::string prefix = word + "_CH" + std::to_string(channel);
        values[prefix + "_RESETDONE_POSITION"] = positions[channel].reset;
        values[prefix + "_SYNCDONE_POSITION"] = positions[channel].alignment;
    }
    values[word + "_SYNCDONE_POSITION"] = positions[lane].alignment;
    values[word + "_MAINTAIN_MASTER"] = positions[lane].maintainsMaster;
    // Only the user knows whether lanes share their clock; what is not given is not shared.
    values.emplace(word + "_COMMON_USRCLK", false);
}

}  // namespace

void enterChannelPositions(gt_rule_engine& engine,
                           const std::map<std::string, quadsUsageInfo*>& quads) {
    if (quads.empty()) {
        return;
    }
    const quadChains chains = chainsOf(quads);
    const auto channels =
        static_cast<std::size_t>(rule_engine_utilities::ChPerBlock(engine.family));
    for (const laneDirection direction : laneDirections) {
        const auto side = static_cast<std::size_t>(direction);
        if (side >= engine.userParams.size()) {
            continue;
        }
        const auto positions = positionsOfQuad(chains.ofDirection.at(side), chains, channels);
        auto& lanes = engine.userParams[side];
        for (std::size_t lane = 0; lane < std::min(channels, lanes.size()); ++lane) {
            const int rates = numberOfRates(engine.channelUsage, static_cast<int>(direction),
                                            static_cast<int>(lane));
            const std::size_t slots = std::min(lanes[lane].size(), static_cast<std::size_t>(rates));
            for (std::size_t slot = 0; slot < slots; ++slot) {
                enterLane(wordOf(direction), lane, positions, lanes[lane][slot]);
            }
        }
    }
}

}  // namespace sable_lanecfg
