#include "sxb_instance_engine.h"

namespace lanecfg_test {

namespace {

/// As many equal elements in each row as there are frequencies.
template <class Element>
std::vector<std::vector<Element>> likeRows(const sable_lanecfg::packingNumbers& frequencies,
                                           const Element& element) {
    std::vector<std::vector<Element>> rows;
    for (const auto& row : frequencies) {
        rows.emplace_back(row.size(), element);
    }
    return rows;
}

}  // namespace

PllRows rowsOf(const sable_lanecfg::packingNumbers& frequencies, double shared) {
    return {frequencies, likeRows(frequencies, shared), likeRows(frequencies, 156.25),
            likeRows(frequencies, 0.0), likeRows<std::string>(frequencies, "R0")};
}

void ServiceEngine::make(const PackingRequest& request) {
    engine = std::make_unique<sable_lanecfg::gt_rule_engine>(
        "SXB", request.channels, std::map<std::string, sable_lanecfg::paramTypeInfo>(),
        request.userParams, std::map<std::string, sable_lanecfg::attributeInfo>(), request.limits);
}

void ServiceEngine::enterRows(const std::string& dual, const std::string& group,
                              const std::string& pll, const PllRows& rows) {
    engine->intersectedCoordinates[dual][group][pll] = {{"pllClkFreqs", rows.frequencies},
                                                        {"pllShared", rows.shared},
                                                        {"refclks", rows.clocks},
                                                        {"refclkIDs", rows.clockIds}};
    engine->refclkSourceIntersectedCoordinates[dual][group][pll] = {
        {"refclkSources", rows.sources}};
}

const std::map<std::string, sable_lanecfg::ruleValue>& ServiceEngine::parametersAt(
    std::size_t direction, std::size_t lane, std::size_t slot) const {
    return engine->userParams.at(direction).at(lane).at(slot);
}

bool ServiceEngine::has(std::size_t direction, std::size_t lane, std::size_t slot,
                        const std::string& name) const {
    return parametersAt(direction, lane, slot).count(name) != 0;
}

}  // namespace lanecfg_test
