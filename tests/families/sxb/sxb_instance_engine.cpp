#include "sxb_instance_engine.h"

#include "support/reference_data.h"

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

std::map<std::string, sable_lanecfg::ruleValue> passOfLane(
    unsigned int lane, const std::vector<std::string>& referencePrefixes) {
    std::map<std::string, sable_lanecfg::ruleValue> pass{{"TX", 0U}, {"RX", 0U}};
    for (const std::string word : {"A_CFG2", "A_CFG3", "A_CFG4", "A_CFG5"}) {
        pass[word] = 100 + lane;
    }
    for (const std::string dual : {"HS0", "HS1"}) {
        pass["A_CFG1.A_" + dual + "_LCPLLFBDIV"] = 10 + lane;
        pass["A_CFG1.A_" + dual + "_RPLLFBDIV"] = 20 + lane;
    }
    for (const std::string& prefix : referencePrefixes) {
        pass[prefix + "_IPS_PIN_EN"] = lane % 2;
        pass[prefix + "_IPS_REFCLK_SEL"] = 1 + lane;
        for (unsigned int map = 0; map < 8; ++map) {
            pass[prefix + "_REFCLK_MAP" + std::to_string(map)] = (map + lane) % 8;
        }
    }
    return pass;
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

void QuadWordsEngine::makeQuad(const std::string& database,
                               const std::vector<std::string>& registers,
                               const std::vector<std::string>& referencePrefixes) {
    make(PackingRequest());
    const sable_lanecfg::gt_db_load loaded = referenceDatabase(database);
    for (const std::string& name : registers) {
        engine->attributes[name] = loaded.m_fields.at(name);
        for (const auto& [field, place] : loaded.m_fields.at(name).fields) {
            engine->setVal(field, 0U);
        }
    }
    for (unsigned int lane = 0; lane < 4; ++lane) {
        engine->blockVarMap.push_back({{}});
        for (const auto& [name, value] : passOfLane(lane, referencePrefixes)) {
            set(lane, name, value);
        }
    }
}

void QuadWordsEngine::set(std::size_t lane, const std::string& name,
                          const sable_lanecfg::ruleValue& value) {
    engine->blockVarMap.at(lane).at(0)[name].value = value;
}

}  // namespace lanecfg_test
