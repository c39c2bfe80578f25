#include "families/sxb/sxb_output_clocks.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace sable_lanecfg {

namespace {

std::string textIn(const variableMap& pass, const std::string& name) {
    const auto found = pass.find(name);
    return found == pass.end() ? std::string() : rule_engine_base::textOf(found->second.value);
}

double frequencyIn(const variableMap& pass, const std::string& name) {
    const auto found = pass.find(name);
    const double* const frequency =
        found == pass.end() ? nullptr : boost::get<double>(&found->second.value);
    return frequency == nullptr ? 0.0 : *frequency;
}

/// The pass with the highest value above 0, the first of several; null without one.
const variableMap* fastestPass(const std::vector<variableMap>& passes, const std::string& name) {
    const variableMap* fastest = nullptr;
    double greatest = 0.0;
    for (const variableMap& pass : passes) {
        const double frequency = frequencyIn(pass, name);
        if (frequency > greatest) {
            greatest = frequency;
            fastest = &pass;
        }
    }
    return fastest;
}

/// Lanes that the request lists in either direction and that have run.
std::size_t lanesOfRequest(const gt_rule_engine& engine) {
    std::size_t lanes = 0;
    for (const auto& direction : engine.userParams) {
        lanes = std::max(lanes, direction.size());
    }
    return std::min(lanes, engine.blockVarMap.size());
}

/// Calls `report(lane, clock, pass)` for each output clock ("TXOUTCLK", "RXOUTCLK") that a lane
/// has, with the pass in which it is fastest.
template <class Report>
void visitOutputClocks(const gt_rule_engine& engine, const Report& report) {
    const std::size_t lanes = lanesOfRequest(engine);
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        for (const std::string clock : {"TXOUTCLK", "RXOUTCLK"}) {
            const variableMap* const pass =
                fastestPass(engine.blockVarMap[lane], "INT_" + clock + "_FREQ");
            if (pass != nullptr) {
                report(lane, clock, *pass);
            }
        }
    }
}

std::string keyOf(std::size_t lane, const std::string& clock) {
    return "CH" + std::to_string(lane) + "_" + clock;
}

}  // namespace

std::map<std::string, std::string> outputClocks(const gt_rule_engine& engine) {
    std::map<std::string, std::string> clocks;
    visitOutputClocks(
        engine, [&clocks](std::size_t lane, const std::string& clock, const variableMap& pass) {
            clocks[keyOf(lane, clock)] = textIn(pass, "INT_" + clock + "_FREQ");
        });
    return clocks;
}

std::map<std::string, std::string> outputClocksWithReferences(const gt_rule_engine& engine) {
    std::map<std::string, std::string> clocks;
    visitOutputClocks(
        engine, [&clocks](std::size_t lane, const std::string& clock, const variableMap& pass) {
            const std::string key = keyOf(lane, clock);
            const std::string port = lane > 1 ? "HSCLK1_" : "HSCLK0_";
            clocks[key + "_FREQ"] = textIn(pass, "INT_" + clock + "_FREQ");
            clocks[key + "_REF_FREQ"] = textIn(pass, "INT_" + clock + "_REFCLK_FREQ");
            clocks[key + "_REF_SOURCE"] = port + textIn(pass, "INT_" + clock + "_REFCLK_SOURCE");
        });
    return clocks;
}

}  // namespace sable_lanecfg
