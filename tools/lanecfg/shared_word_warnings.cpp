#include "shared_word_warnings.h"

#include "families.h"

#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <array>
#include <cstddef>

namespace sable_lanecfg::tool {
namespace {

using boost::algorithm::starts_with;

constexpr std::size_t lanesOfDual = 2;

/// What words are about: one of the PLLs, or no single one.
constexpr std::array<const char*, 3> subjects = {"LCPLL", "RPLL", ""};

/// Words of the quad that its services put together from the lanes that each part is about.
bool isPutTogether(const std::string& name) {
    constexpr std::array<const char*, 8> starts = {"A_CFG1",        "A_CFG2",  "A_CFG3",
                                                   "A_CFG4",        "A_CFG5",  "MST_RESET_CFG",
                                                   "CTRL_RSV_CFG0", "MEMCELLX"};
    return std::any_of(starts.begin(), starts.end(),
                       [&name](const char* start) { return starts_with(name, start); });
}

/// The PLL that a word is about, empty where it is about none or both.
std::string subjectOf(const std::string& name) {
    // The distribution goes by what the LCPLL puts out, a bias current by the RPLL's fraction.
    if (starts_with(name, "LCPLL_") || name == "HSDIST_CFG") {
        return "LCPLL";
    }
    return starts_with(name, "RPLL_") || name == "CFG4" ? "RPLL" : "";
}

/// A lane at its first rates, and which of its directions are used.
class FirstPass {
  public:
    FirstPass(const gt_rule_engine& engine, std::size_t lane)
        : lane_(lane), pass_(engine.blockVarMap[lane].front()) {
        for (const channelUsageInfo& usage : engine.channelUsage) {
            transmits_ = transmits_ || holds(usage.tx);
            receives_ = receives_ || holds(usage.rx);
        }
    }

    std::size_t lane() const { return lane_; }
    bool transmits() const { return transmits_; }
    bool receives() const { return receives_; }

    /// Whether the lane runs on a PLL, for its data or its programmable divider; of no PLL, whether
    /// it is used.
    bool uses(const std::string& pll) const {
        return (transmits_ && takes("TX", pll)) || (receives_ && takes("RX", pll));
    }

    /// Empty where the pass has no value.
    std::string text(const std::string& name) const {
        const auto found = pass_.find(name);
        return found == pass_.end() ? std::string() : rule_engine_base::textOf(found->second.value);
    }

  private:
    bool holds(const std::vector<int>& lanes) const {
        return std::find(lanes.begin(), lanes.end(), static_cast<int>(lane_)) != lanes.end();
    }

    bool takes(const std::string& side, const std::string& pll) const {
        return pll.empty() || text(side + "_PLL_TYPE") == pll ||
               (rule_engine_utilities::stringToBool(text(side + "PROGDIV_FREQ_ENABLE")) &&
                text(side + "PROGDIV_FREQ_SOURCE") == pll);
    }

    std::size_t lane_;
    const variableMap& pass_;
    bool transmits_ = false;
    bool receives_ = false;
};

/// Lanes that share words, in their order; the last one answers.
struct SharingLanes {
    std::string name;       ///< of the words, for people
    std::string keyStart;   ///< of the words' names in the answer
    std::string typeStart;  ///< of the registers' block type
    std::vector<FirstPass> lanes;
};

std::vector<std::string> differingWords(const gt_rule_engine& engine, const SharingLanes& shared,
                                        const std::string& subject, const FirstPass& user) {
    std::vector<std::string> names;
    for (const auto& [name, info] : engine.attributes) {
        if (starts_with(info.dstSubBlock, shared.typeStart) && subjectOf(name) == subject &&
            !isPutTogether(name) && shared.lanes.back().text(name) != user.text(name)) {
            names.push_back(shared.keyStart + name);
        }
    }
    return names;
}

std::string laneName(const FirstPass& pass) {
    return "lane " + std::to_string(pass.lane());
}

/// How to get the words of the user from the lane that answers. A lane that is not used takes its
/// PLLs from its receiver, as one that only transmits does with the PLL that it doesn't use.
std::string wayOut(const FirstPass& answering, const FirstPass& user) {
    if (answering.receives()) {
        return "Exchange the two lanes, or take these words from the pass of " + laneName(user) +
               ", which lanecfg snapshot shows.";
    }
    const bool isIdle = !answering.transmits();
    return "Give " + laneName(answering) + " the " + (isIdle ? "" : "receive ") +
           "parameters that " + laneName(user) + " has at its first rate" +
           (isIdle ? ", in both directions" : "") + ", and leave " +
           (isIdle ? "it" : "its receiver") + " out of laneUsage.";
}

std::string textOf(const SharingLanes& shared, const std::string& subject, const FirstPass& user,
                   const std::vector<std::string>& words) {
    const FirstPass& answering = shared.lanes.back();
    return shared.name + " are those of " + laneName(answering) + ", which " +
           (subject.empty() || !answering.uses("") ? "is not used" : "doesn't use the " + subject) +
           "; " + laneName(user) + " needs others in " + boost::algorithm::join(words, ", ") +
           ". " + wayOut(answering, user);
}

/// Adds the texts about words that the last lane answers without using what they are about. The
/// first lane that needs other words counts.
void addWarnings(const gt_rule_engine& engine, const SharingLanes& shared,
                 std::vector<std::string>& texts) {
    for (const std::string subject : subjects) {
        if (shared.lanes.back().uses(subject)) {
            continue;
        }
        for (const FirstPass& lane : shared.lanes) {
            const std::vector<std::string> words =
                lane.uses(subject) ? differingWords(engine, shared, subject, lane)
                                   : std::vector<std::string>();
            if (!words.empty()) {
                texts.push_back(textOf(shared, subject, lane, words));
                break;
            }
        }
    }
}

SharingLanes dualOf(std::size_t number, const std::vector<FirstPass>& lanes) {
    const auto first = lanes.begin() + static_cast<std::ptrdiff_t>(number * lanesOfDual);
    return {"the clock words of lanes " + std::to_string(first->lane()) + " and " +
                std::to_string(first->lane() + 1),
            "HSCLK" + std::to_string(number) + "_",
            "hs",
            {first, first + lanesOfDual}};
}

}  // namespace

std::vector<std::string> sharedWordWarnings(const gt_rule_engine& engine, bool isPacked) {
    std::vector<FirstPass> lanes;
    for (std::size_t lane = 0; lane < engine.blockVarMap.size(); ++lane) {
        if (engine.blockVarMap[lane].empty()) {
            return {};
        }
        lanes.emplace_back(engine, lane);
    }
    std::vector<std::string> texts;
    for (std::size_t dual = 0; dual < lanes.size() / lanesOfDual; ++dual) {
        addWarnings(engine, dualOf(dual, lanes), texts);
    }
    if (isPacked && !lanes.empty()) {
        addWarnings(engine, {"the words of the quad", "", "ctrl", lanes}, texts);
    }
    return texts;
}

void tellOfSharedWords(const Request& request, const gt_rule_engine& engine, Console& console) {
    for (const std::string& text : sharedWordWarnings(engine, request.rules->isPacked)) {
        console.warning("Request " + request.file + ": " + text);
    }
}

}  // namespace sable_lanecfg::tool
